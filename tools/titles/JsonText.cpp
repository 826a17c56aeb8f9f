#include "tools/titles/JsonText.h"

#include <string>

namespace brisk::workbench {

namespace {

unsigned unitAt(std::string_view source, std::size_t backslash) {
    return static_cast<unsigned>(std::stoul(std::string(source.substr(backslash + 2, 4)), nullptr, 16));
}

struct Piece {
    std::size_t written; // bytes in the source
    std::size_t content; // bytes of the value
};

// The character that is written at the place.
Piece pieceAt(std::string_view source, std::size_t at) {
    if (source[at] != '\\') {
        return {1, 1};
    }
    if (source[at + 1] != 'u') {
        return {2, 1};
    }
    const unsigned unit = unitAt(source, at);
    if (unit < 0x80) {
        return {6, 1};
    }
    if (unit < 0x800) {
        return {6, 2};
    }
    const bool isPair = unit >= 0xD800 && unit <= 0xDBFF;
    return isPair ? Piece{12, 4} : Piece{6, 3};
}

} // namespace

std::size_t placeInText(std::string_view source, const JsonValue& text, std::size_t index) {
    std::size_t at = text.begin + 1;
    while (at + 1 < text.end) {
        const Piece piece = pieceAt(source, at);
        if (index < piece.content) {
            break;
        }
        index -= piece.content;
        at += piece.written;
    }
    return at;
}

} // namespace brisk::workbench
