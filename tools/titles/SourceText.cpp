#include "tools/titles/SourceText.h"

#include <algorithm>

namespace brisk::workbench {

namespace {

constexpr std::size_t kBlock = 1024;

} // namespace

std::size_t countCharacters(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

SourceText::SourceText(std::string path, std::string bytes) : givenPath(std::move(path)), content(std::move(bytes)) {
    lineBegins.push_back(0);
    for (std::size_t end = content.find('\n'); end != std::string::npos; end = content.find('\n', end + 1)) {
        lineBegins.push_back(end + 1);
    }
    std::size_t characters = 0;
    for (std::size_t begin = 0; begin <= content.size(); begin += kBlock) {
        charactersBeforeBlock.push_back(characters);
        characters += countCharacters(text().substr(begin, kBlock));
    }
}

std::size_t SourceText::charactersBefore(std::size_t offset) const {
    const std::size_t block = offset / kBlock;
    return charactersBeforeBlock[block] + countCharacters(text().substr(block * kBlock, offset % kBlock));
}

Place SourceText::placeOf(std::size_t offset) const {
    offset = std::min(offset, content.size());
    const auto next = std::upper_bound(lineBegins.begin(), lineBegins.end(), offset);
    const std::size_t begin = *(next - 1);
    return {static_cast<std::size_t>(next - lineBegins.begin()),
            charactersBefore(offset) - charactersBefore(begin) + 1};
}

std::string_view SourceText::line(std::size_t number) const {
    const std::size_t begin = lineBegins[number - 1];
    const std::size_t end = number < lineBegins.size() ? lineBegins[number] - 1 : content.size();
    const std::string_view whole = text().substr(begin, end - begin);
    return whole.ends_with('\r') ? whole.substr(0, whole.size() - 1) : whole;
}

} // namespace brisk::workbench
