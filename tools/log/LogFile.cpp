#include "tools/log/LogFile.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

namespace brisk::logbook {

namespace {

constexpr std::size_t kBlock = 1 << 18;

std::filesystem::path toFile(const std::string& path) {
    return {std::u8string(path.begin(), path.end())};
}

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

bool readLog(const std::string& path, ByteSink& sink) {
    if (path == "-") {
        return readStream(std::cin, sink);
    }
    std::ifstream file(toFile(path), std::ios::binary);
    return file.is_open() && readStream(file, sink);
}

std::optional<std::string> readWholeFile(const std::string& path) {
    std::ifstream file(toFile(path), std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    std::string content((std::istreambuf_iterator<char>(file)), {});
    return file.bad() || !file ? std::nullopt : std::optional(std::move(content));
}

} // namespace brisk::logbook
