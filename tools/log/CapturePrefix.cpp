#include "tools/log/CapturePrefix.h"

#include <algorithm>
#include <charconv>

namespace brisk::logbook {

namespace {

constexpr std::size_t kLongest = 200; // bytes; what is longer is no prefix

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

std::optional<std::uint32_t> toNumber(std::string_view text, int base) {
    std::uint32_t number = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return error == std::errc() && rest == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

// Decimal, or hexadecimal behind 0x.
std::optional<std::uint32_t> toProcessId(std::string_view text) {
    return text.starts_with("0x") ? toNumber(text.substr(2), 16) : toNumber(text, 10);
}

// "0020:0024:warn:...": a process and a thread, hexadecimal.
std::optional<std::uint32_t> readWineProcess(std::string_view token) {
    const std::size_t colon = token.find(':');
    const std::size_t second = colon == std::string_view::npos ? colon : token.find(':', colon + 1);
    if (second == std::string_view::npos || colon < 4 || second - colon - 1 < 4 ||
        !toNumber(token.substr(colon + 1, second - colon - 1), 16)) {
        return std::nullopt;
    }
    return toNumber(token.substr(0, colon), 16);
}

// What tells by its form that it is a process: "[1234]", "(1234)", "[1234:5678]", "brisk.exe[1234]:", "pid=1234".
std::optional<std::uint32_t> readMarkedProcess(std::string_view token) {
    for (const std::string_view mark : {"pid=", "PID="}) {
        if (token.starts_with(mark)) {
            return toProcessId(token.substr(mark.size()));
        }
    }
    if (const auto wine = readWineProcess(token)) {
        return wine;
    }
    if (token.ends_with(':')) {
        token.remove_suffix(1);
    }
    const std::size_t open = token.find_first_of("[(");
    if (open == std::string_view::npos || token.back() != (token[open] == '[' ? ']' : ')')) {
        return std::nullopt;
    }
    const std::string_view inside = token.substr(open + 1, token.size() - open - 2);
    return toProcessId(inside.substr(0, inside.find(':')));
}

// "2026-01-31", "31.01.2026", "1/31/2026".
bool isDate(std::string_view token) {
    const auto count = [token](char byte) { return std::count(token.begin(), token.end(), byte); };
    return token.size() >= 8 && token.size() <= 10 && isDigit(token.front()) && isDigit(token.back()) &&
           token.find_first_not_of("0123456789-./") == std::string_view::npos &&
           (count('-') == 2 || count('.') == 2 || count('/') == 2);
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
        if (!isDigit(byte) && std::string_view(":.,-/+TZ ").find(byte) == std::string_view::npos) {
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
    text = text.substr(0, kLongest);
    prefix.isQuoted = text.ends_with('"');
    // Of a table with commas, the columns stand between quotation marks.
    const std::string_view between = text.find("\",\"") == std::string_view::npos ? " \t" : "\"";
    std::string_view date;
    while (true) {
        const std::size_t begin = text.find_first_not_of(between);
        if (begin == std::string_view::npos) {
            return prefix;
        }
        text.remove_prefix(begin);
        const std::string_view token = text.substr(0, text.find_first_of(between));
        text.remove_prefix(token.size());
        const std::string_view bare = withoutBrackets(token);
        if (token == ",") {
            continue;
        }
        const auto marked = readMarkedProcess(token);
        if (!marked && isTime(bare)) {
            const char* const first = date.empty() || bare.size() != token.size() ? bare.data() : date.data();
            prefix.time = {first, static_cast<std::size_t>(bare.data() + bare.size() - first)};
        } else if (marked) {
            prefix.processId = prefix.processId ? prefix.processId : marked;
        } else if (!prefix.time.empty() && !prefix.processId) {
            prefix.processId = toProcessId(token);
        }
        date = isDate(token) ? token : std::string_view();
    }
}

} // namespace brisk::logbook
