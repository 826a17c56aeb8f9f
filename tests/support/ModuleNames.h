// How systems give a narrow module name in UTF-8: what their answer counts, and what comes of a name that does not fit.
#pragma once

#include <cstring>
#include <string>

#include <windows.h>

namespace brisk::testing {

// The bytes of the text's first UTF-16 units, counting down what is taken from them.
inline std::string takeUnits(const std::string& text, DWORD& units) {
    std::size_t end = 0;
    while (end < text.size()) {
        const auto lead = static_cast<unsigned char>(text[end]);
        const std::size_t bytes = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        const DWORD needed = bytes == 4 ? 2 : 1;
        if (needed > units) {
            break;
        }
        units -= needed;
        end += bytes;
    }
    return text.substr(0, end);
}

// Windows, as far as is known: the name is cut and the answer counted in UTF-16 units, before it is made narrow. What
// is then too long for the buffer fails, and leaves the buffer full and without a terminating zero.
inline DWORD giveNameAsWindows(const std::string& name, char* buffer, DWORD size) {
    DWORD left = size - 1;
    const std::string narrow = takeUnits(name, left);
    if (narrow.size() >= size) {
        narrow.copy(buffer, size);
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    narrow.copy(buffer, narrow.size());
    buffer[narrow.size()] = '\0';
    return narrow.size() < name.size() ? size : size - 1 - left;
}

// Wine: bytes, cut with a terminating zero.
inline DWORD giveNameAsWine(const std::string& name, char* buffer, DWORD size) {
    buffer[name.copy(buffer, size - 1)] = '\0';
    return name.size() < size ? static_cast<DWORD>(name.size()) : size;
}

} // namespace brisk::testing
