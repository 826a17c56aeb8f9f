#include "tools/titles/Progress.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace brisk::workbench {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::size_t kWidth = 40; // characters
constexpr milliseconds kPatience{1000};
constexpr milliseconds kInterval{100};

bool isErrorTerminal() {
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

} // namespace

Progress::Progress(std::size_t amount)
    : total(std::max<std::size_t>(1, amount)), isWanted(isErrorTerminal()), next(steady_clock::now() + kPatience) {}

Progress::~Progress() {
    if (isShown) {
        std::cerr << '\r' << std::string(kWidth + 8, ' ') << '\r' << std::flush;
    }
}

void Progress::advanceTo(std::size_t done) {
    if (!isWanted || steady_clock::now() < next) {
        return;
    }
    next = steady_clock::now() + kInterval;
    isShown = true;
    const double share = static_cast<double>(std::min(done, total)) / static_cast<double>(total);
    const auto filled = static_cast<std::size_t>(share * kWidth);
    std::string percent = std::to_string(static_cast<int>(share * 100));
    percent.insert(0, 3 - std::min<std::size_t>(3, percent.size()), ' ');
    std::cerr << "\r[" << std::string(filled, '#') << std::string(kWidth - filled, ' ') << "] " << percent << '%'
              << std::flush;
}

} // namespace brisk::workbench
