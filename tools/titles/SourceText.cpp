#include "tools/titles/SourceText.h"

#include <algorithm>

namespace brisk::workbench {

std::size_t countCharacters(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

SourceText::SourceText(std::string path, std::string bytes) : givenPath(std::move(path)), content(std::move(bytes)) {
    lineBegins.push_back(0);
    for (std::size_t end = content.find('\n'); end != std::string::npos; end = content.find('\n', end + 1)) {
        lineBegins.push_back(end + 1);
    }
}

Place SourceText::placeOf(std::size_t offset) const {
    offset = std::min(offset, content.size());
    const auto next = std::upper_bound(lineBegins.begin(), lineBegins.end(), offset);
    const std::size_t begin = *(next - 1);
    return {static_cast<std::size_t>(next - lineBegins.begin()),
            countCharacters(text().substr(begin, offset - begin)) + 1};
}

std::string_view SourceText::line(std::size_t number) const {
    const std::size_t begin = lineBegins[number - 1];
    std::string_view rest = text().substr(begin);
    rest = rest.substr(0, rest.find('\n'));
    return rest.ends_with('\r') ? rest.substr(0, rest.size() - 1) : rest;
}

} // namespace brisk::workbench
