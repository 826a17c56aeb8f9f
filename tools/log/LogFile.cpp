#include "tools/log/LogFile.h"

#include "tools/console/Files.h"

#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

namespace brisk::logbook {

namespace {

constexpr std::size_t kBlock = 1 << 18;

bool readStream(std::istream& stream, ByteSink& sink) {
    std::vector<char> block(kBlock);
    while (stream.read(block.data(), static_cast<std::streamsize>(block.size())), stream.gcount() > 0) {
        sink.feed({block.data(), static_cast<std::size_t>(stream.gcount())});
    }
    if (stream.bad() || !stream.eof()) {
        return false;
    }
    sink.finish();
    return true;
}

} // namespace

bool LogFile::read(ByteSink& sink) {
    if (isKept) {
        if (!kept) {
            kept.emplace(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
        }
        sink.feed(*kept);
        sink.finish();
        return !std::cin.bad();
    }
    if (isStandardInput()) {
        return readStream(std::cin, sink);
    }
    std::ifstream file(fromUtf8(name), std::ios::binary);
    return file.is_open() && readStream(file, sink);
}

void learnNames(LogFile& log, Redaction& redaction) {
    redaction.learn(log.path());
    LineReader reader([&redaction](std::string_view line, std::uint64_t /*number*/, bool /*isWhole*/) {
        if (line.find_first_of("\\/") != std::string_view::npos) {
            redaction.learn(line);
        }
    });
    log.read(reader);
}

} // namespace brisk::logbook
