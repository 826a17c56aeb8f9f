#include "hostile/HostileFixture.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace brisk::testing {

namespace {

double toMegabytes(std::size_t bytes) {
    return static_cast<double>(bytes) / (1024.0 * 1024.0);
}

// The log grows large: only its end is looked at.
std::string readTail(const std::filesystem::path& file) {
    constexpr std::streamoff kTail = 8192;
    std::ifstream stream(file, std::ios::binary | std::ios::ate);
    const std::streamoff size = stream.tellg();
    stream.seekg(std::max(std::streamoff{0}, size - kTail));
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

} // namespace

HostileFixture::HostileFixture() {
    setWaitLimit(std::chrono::seconds(60));
}

unsigned HostileFixture::scaled(unsigned usual, unsigned full) {
    const char* wanted = std::getenv("BRISK_HOSTILE_FULL");
    return wanted && std::string(wanted) == "1" ? full : usual;
}

void HostileFixture::setDatabase(const std::string& titles) const {
    writeFile(service.folder() / "titles_db.json", titles);
}

std::string HostileFixture::escaped(const std::string& path) {
    std::string text = path;
    for (std::size_t i = 0; (i = text.find('\\', i)) != std::string::npos; i += 2) {
        text.insert(i, "\\");
    }
    return text;
}

void HostileFixture::startStorm(const std::string& arguments) {
    begin = std::chrono::steady_clock::now();
    service.startAndWait(arguments);
    linesBefore = service.log().size();
    before = readCounters(service.processId());
}

void HostileFixture::beginStorm() {
    before = readCounters(service.processId());
    begin = std::chrono::steady_clock::now();
}

void HostileFixture::settle() {
    const std::string line = "Brisk : onAppFinished, p1 = " + std::to_string(1'000'000 + ++settled) + ", p2 = 0";
    service.post(BRISK_APP_FINISHED, 1'000'000 + settled);
    waitUntil("log line: " + line,
              [&] { return readTail(service.logFile()).find(line) != std::string::npos || !service.isRunning(); });
    if (!service.isRunning()) {
        throw std::runtime_error("the service has ended");
    }
}

std::uint32_t HostileFixture::waitForStormsEnd() {
    waitUntil("the service's end", [this] {
        peakBytes = std::max(peakBytes, readPeakWorkingSet(service.processId()));
        return !service.isRunning();
    });
    return service.waitForEnd();
}

ProcessCounters HostileFixture::endStorm(double megabytesMore) {
    const ProcessCounters after = readCounters(service.processId());
    printFigures(after);
    EXPECT_LE(toMegabytes(after.privateBytes), toMegabytes(before.privateBytes) + megabytesMore);
    return after;
}

void HostileFixture::printFigures(const ProcessCounters& after) const {
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    const char* const name = ::testing::UnitTest::GetInstance()->current_test_info()->name();
    const double peak = toMegabytes(std::max(peakBytes, after.peakWorkingSet));
    if (after.threads == 0) {
        std::printf("figures: %s: %.1f s to its end, peak of the working set %.1f MB\n", name, seconds.count(), peak);
        std::fflush(stdout);
        return;
    }
    std::printf("figures: %s: %.1f s, private MB %.1f -> %.1f, working set MB %.1f -> %.1f, its peak %.1f; handles of "
                "processes %u -> %u, of keys %u -> %u, others %u -> %u; GDI objects %u -> %u, windows %u -> %u, "
                "threads %u -> %u\n",
                name, seconds.count(), toMegabytes(before.privateBytes), toMegabytes(after.privateBytes),
                toMegabytes(before.workingSet), toMegabytes(after.workingSet), peak, before.processHandles,
                after.processHandles, before.keyHandles, after.keyHandles, before.otherHandles, after.otherHandles,
                before.gdiObjects, after.gdiObjects, before.windows, after.windows, before.threads, after.threads);
    std::fflush(stdout);
}

void HostileFixture::quitStorm() {
    service.post(BRISK_QUIT);
    EXPECT_EQ(waitForStormsEnd(), 0u);
    printFigures({});
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

} // namespace brisk::testing
