#include "tools/log/CapturePrefix.h"

#include <charconv>

namespace brisk::logbook {

namespace {

constexpr std::size_t kLongest = 200; // bytes; what is longer is no prefix

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

std::optional<std::uint32_t> toProcessId(std::string_view token) {
    std::uint32_t number = 0;
    const auto [rest, error] = std::from_chars(token.data(), token.data() + token.size(), number);
    return error == std::errc() && rest == token.data() + token.size() ? std::optional(number) : std::nullopt;
}

// "12:34:56", "12:34:56.789", "2026-01-31T12:34:56.789Z", or seconds as "0.00012345".
bool isTime(std::string_view token) {
    if (token.empty() || !isDigit(token.front())) {
        return false;
    }
    std::size_t colons = 0;
    std::size_t points = 0;
    for (const char byte : token) {
        colons += byte == ':' ? 1U : 0U;
        points += byte == '.' || byte == ',' ? 1U : 0U;
        if (!isDigit(byte) && std::string_view(":.,-+TZ").find(byte) == std::string_view::npos) {
            return false;
        }
    }
    return colons >= 2 || (colons == 0 && points == 1 && isDigit(token.back()));
}

std::string_view withoutBrackets(std::string_view token) {
    if (token.size() > 2 &&
        ((token.front() == '[' && token.back() == ']') || (token.front() == '(' && token.back() == ')'))) {
        return token.substr(1, token.size() - 2);
    }
    return token;
}

} // namespace

CapturePrefix readCapturePrefix(std::string_view text) {
    CapturePrefix prefix;
    if (text.empty() || text.size() > kLongest) {
        text = text.substr(0, kLongest);
    }
    prefix.isQuoted = text.ends_with('"');
    constexpr std::string_view kBlanks = " \t";
    while (true) {
        const std::size_t begin = text.find_first_not_of(kBlanks);
        if (begin == std::string_view::npos) {
            return prefix;
        }
        text.remove_prefix(begin);
        const std::string_view token = text.substr(0, text.find_first_of(kBlanks));
        text.remove_prefix(token.size());
        const std::string_view bare = withoutBrackets(token);
        if (isTime(bare)) {
            prefix.time = bare;
        } else if (bare.size() != token.size() || !prefix.time.empty()) {
            if (const auto number = toProcessId(bare); number && !prefix.processId) {
                prefix.processId = number;
            }
        }
    }
}

} // namespace brisk::logbook
