#include "tools/log/LineValues.h"

#include <charconv>
#include <cstdlib>
#include <limits>
#include <string>

namespace brisk::logbook {

std::optional<std::uint64_t> readNumber(std::string_view text) {
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (isHexadecimal) {
        text.remove_prefix(2);
    }
    std::uint64_t number = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number, isHexadecimal ? 16 : 10);
    return error == std::errc() ? std::optional(number) : std::nullopt;
}

std::optional<std::uint64_t> readNumberBehind(std::string_view text, std::string_view words) {
    const std::size_t at = text.find(words);
    return at == std::string_view::npos ? std::nullopt : readNumber(text.substr(at + words.size()));
}

std::optional<double> readReal(std::string_view text) {
    // Nearly all are short whole numbers.
    if (!text.empty() && text.size() < 10 && text.find_first_not_of("0123456789") == std::string_view::npos) {
        return static_cast<double>(*readNumber(text));
    }
    const std::string terminated(text.substr(0, 64));
    char* end = nullptr;
    const double number = std::strtod(terminated.c_str(), &end);
    return end == terminated.c_str() ? std::nullopt : std::optional(number);
}

std::string_view before(std::string_view text, std::string_view words) {
    return text.substr(0, text.find(words));
}

std::string_view behindLast(std::string_view text, std::string_view words) {
    const std::size_t at = text.rfind(words);
    return at == std::string_view::npos ? std::string_view() : text.substr(at + words.size());
}

} // namespace brisk::logbook
