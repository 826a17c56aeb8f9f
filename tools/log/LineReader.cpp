#include "tools/log/LineReader.h"

#include <algorithm>
#include <cstring>

namespace brisk::logbook {

namespace {

constexpr std::size_t kLongestLine = 16'384; // bytes
constexpr std::string_view kName = "Brisk ";

} // namespace

void LineReader::feed(std::string_view bytes) {
    take(decoder.decode(bytes));
}

void LineReader::finish() {
    take(decoder.finish());
    if (!rest.empty()) {
        const bool isWhole = rest.ends_with('\r');
        takeLine(rest, isWhole);
        rest.clear();
    }
}

void LineReader::take(std::string_view bytes) {
    hasReturns = hasReturns || bytes.find('\r') != std::string_view::npos;
    while (!bytes.empty()) {
        const void* found = std::memchr(bytes.data(), '\n', bytes.size());
        const std::size_t size =
            found ? static_cast<std::size_t>(static_cast<const char*>(found) - bytes.data()) : bytes.size();
        const std::string_view text = bytes.substr(0, size);
        if (found && rest.empty() && size <= kLongestLine) {
            takeLine(text, true);
        } else {
            append(text);
            if (found) {
                takeLine(rest, true);
                rest.clear();
            }
        }
        bytes.remove_prefix(found ? size + 1 : size);
    }
}

// What stands before an LF, or before the end of the file.
void LineReader::takeLine(std::string_view text, bool isWhole) {
    if (!hasReturns) {
        emit(text, isWhole);
        return;
    }
    while (text.ends_with('\r')) {
        text.remove_suffix(1);
    }
    for (const void* found = nullptr; (found = std::memchr(text.data(), '\r', text.size())) != nullptr;) {
        const auto size = static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
        emit(text.substr(0, size), true);
        text.remove_prefix(size + 1);
    }
    emit(text, isWhole);
}

void LineReader::emit(std::string_view text, bool isWhole) {
    number += isWithinLine ? 0 : 1;
    isWithinLine = false;
    if (!isSkipping) {
        handle(text, number, isWhole);
    }
    isSkipping = false;
}

void LineReader::append(std::string_view text) {
    while (!text.empty()) {
        const std::string_view part = text.substr(0, kLongestLine - std::min(kLongestLine, rest.size()));
        rest += part;
        text.remove_prefix(part.size());
        if (rest.size() >= kLongestLine) {
            relieve();
        }
    }
}

// The line is long: gives what it can of it.
void LineReader::relieve() {
    const std::string_view text = rest;
    // A CR at the very end may have its LF still to come.
    if (const std::size_t end = text.substr(0, text.size() - 1).find_last_of('\r'); end != std::string_view::npos) {
        takeLine(text.substr(0, end + 1), true);
        rest.erase(0, end + 1);
        return;
    }
    const std::size_t next = text.rfind(kName);
    const bool hasParts = !isSkipping && next != std::string_view::npos && next > 0;
    const std::string_view part = hasParts ? text.substr(0, next) : text;
    emit(part, true);
    isWithinLine = true;
    isSkipping = !hasParts;
    rest.erase(0, part.size());
}

} // namespace brisk::logbook
