#include "pattern/ReplacementFormat.h"

#include <cstddef>

namespace brisk {

namespace {

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

} // namespace

void appendReplacement(std::string& output, std::string_view format, const std::vector<std::string_view>& groups,
                       std::string_view before, std::string_view after) {
    while (!format.empty()) {
        const std::size_t dollar = format.find('$');
        output += format.substr(0, dollar);
        if (dollar == std::string_view::npos) {
            return;
        }
        format.remove_prefix(dollar + 1);

        const char selector = format.empty() ? '\0' : format.front();
        if (isDigit(selector)) {
            const std::size_t digits = format.size() > 1 && isDigit(format[1]) ? 2 : 1;
            std::size_t number = 0;
            for (const char digit : format.substr(0, digits)) {
                number = number * 10 + static_cast<std::size_t>(digit - '0');
            }
            output += number < groups.size() ? groups[number] : std::string_view();
            format.remove_prefix(digits);
            continue;
        }
        switch (selector) {
        case '&':
            output += groups.front();
            break;
        case '`':
            output += before;
            break;
        case '\'':
            output += after;
            break;
        case '$':
            output += '$';
            break;
        default:
            output += '$';
            continue;
        }
        format.remove_prefix(1);
    }
}

} // namespace brisk
