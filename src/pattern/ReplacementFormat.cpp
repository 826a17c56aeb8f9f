#include "pattern/ReplacementFormat.h"

namespace brisk {

namespace {

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

} // namespace

ReplacementFormat::ReplacementFormat(std::string_view format) {
    while (!format.empty()) {
        const std::size_t dollar = format.find('$');
        if (dollar != 0) {
            pieces.push_back({Piece::Kind::Text, format.substr(0, dollar)});
        }
        if (dollar == std::string_view::npos) {
            return;
        }
        format.remove_prefix(dollar);
        const std::size_t length = readReference(format.substr(1));
        if (length == 0) {
            pieces.push_back({Piece::Kind::Text, format.substr(0, 1)});
        }
        format.remove_prefix(1 + length);
    }
}

// Answers how many bytes behind the dollar sign belong to it.
std::size_t ReplacementFormat::readReference(std::string_view behindDollar) {
    const char selector = behindDollar.empty() ? '\0' : behindDollar.front();
    if (isDigit(selector)) {
        const std::size_t digits = behindDollar.size() > 1 && isDigit(behindDollar[1]) ? 2 : 1;
        std::size_t number = 0;
        for (const char digit : behindDollar.substr(0, digits)) {
            number = number * 10 + static_cast<std::size_t>(digit - '0');
        }
        pieces.push_back({Piece::Kind::Group, {}, number});
        return digits;
    }
    switch (selector) {
    case '&':
        pieces.push_back({Piece::Kind::Group, {}, 0});
        return 1;
    case '`':
        pieces.push_back({Piece::Kind::Before, {}});
        return 1;
    case '\'':
        pieces.push_back({Piece::Kind::After, {}});
        return 1;
    case '$':
        pieces.push_back({Piece::Kind::Text, behindDollar.substr(0, 1)});
        return 1;
    default:
        return 0;
    }
}

void ReplacementFormat::append(std::string& output, const std::vector<std::string_view>& groups,
                               std::string_view before, std::string_view after) const {
    for (const Piece& piece : pieces) {
        switch (piece.kind) {
        case Piece::Kind::Text:
            output += piece.text;
            break;
        case Piece::Kind::Group:
            output += piece.group < groups.size() ? groups[piece.group] : std::string_view();
            break;
        case Piece::Kind::Before:
            output += before;
            break;
        case Piece::Kind::After:
            output += after;
            break;
        }
    }
}

} // namespace brisk
