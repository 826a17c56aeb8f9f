#include "tools/titles/TextMode.h"

#include <algorithm>

namespace brisk::workbench {

std::string readAsText(std::string_view bytes) {
    bytes = bytes.substr(0, bytes.find('\x1A'));
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t begin = 0; begin < bytes.size();) {
        const std::size_t end = std::min(bytes.find("\r\n", begin), bytes.size());
        text += bytes.substr(begin, end - begin);
        begin = end;
        if (end < bytes.size()) {
            text += '\n';
            begin += 2;
        }
    }
    return text;
}

std::string writeAsText(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size() + static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')));
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        bytes += text.substr(begin, end - begin);
        begin = end;
        if (end < text.size()) {
            bytes += "\r\n";
            ++begin;
        }
    }
    return bytes;
}

} // namespace brisk::workbench
