#include "tools/log/LineReader.h"

#include <algorithm>
#include <cstring>

namespace brisk::logbook {

namespace {

constexpr std::size_t kLongestLine = 16'384; // bytes

} // namespace

void LineReader::feed(std::string_view bytes) {
    take(decoder.decode(bytes));
}

void LineReader::finish() {
    take(decoder.finish());
    if (!rest.empty()) {
        handle(rest, ++number, false);
        rest.clear();
    }
}

void LineReader::take(std::string_view bytes) {
    while (!bytes.empty()) {
        const void* found = std::memchr(bytes.data(), '\n', bytes.size());
        const std::size_t size =
            found ? static_cast<std::size_t>(static_cast<const char*>(found) - bytes.data()) : bytes.size();
        const std::string_view text = bytes.substr(0, size);
        if (found && rest.empty()) {
            handle(text.substr(0, kLongestLine), ++number, true);
        } else {
            rest += text.substr(0, kLongestLine - std::min(kLongestLine, rest.size()));
            if (found) {
                handle(rest, ++number, true);
                rest.clear();
            }
        }
        bytes.remove_prefix(found ? size + 1 : size);
    }
}

} // namespace brisk::logbook
