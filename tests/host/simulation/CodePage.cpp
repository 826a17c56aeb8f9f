// The process code page is UTF-8, as the program's manifest has it.
#include <string>

#include <windows.h>

namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Reads one character and goes on behind it. What is no character is one replacement for each lead byte with the
// following bytes that could have belonged to it.
char32_t decode(const unsigned char*& position, const unsigned char* end) {
    const unsigned char lead = *position++;
    if (lead < 0x80) {
        return lead;
    }
    const int following = lead >= 0xC2 && lead < 0xE0   ? 1
                          : lead >= 0xE0 && lead < 0xF0 ? 2
                          : lead >= 0xF0 && lead < 0xF5 ? 3
                                                        : 0;
    if (following == 0) {
        return kReplacement;
    }
    unsigned char lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    unsigned char highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    char32_t character = lead & (0x3Fu >> following);
    for (int i = 0; i < following; ++i, ++position) {
        if (position == end || *position < lowest || *position > highest) {
            return kReplacement;
        }
        character = (character << 6) | (*position & 0x3Fu);
        lowest = 0x80;
        highest = 0xBF;
    }
    return character;
}

void encode(char32_t character, std::string& text) {
    if (character > 0x10FFFF || (character >= 0xD800 && character < 0xE000)) {
        character = kReplacement;
    }
    if (character < 0x80) {
        text += static_cast<char>(character);
        return;
    }
    const int following = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    constexpr unsigned kLeads[] = {0, 0xC0, 0xE0, 0xF0};
    text += static_cast<char>(kLeads[following] | (character >> (6 * following)));
    for (int i = following - 1; i >= 0; --i) {
        text += static_cast<char>(0x80 | ((character >> (6 * i)) & 0x3F));
    }
}

// Both conversions answer the length they need, and fill the buffer only if there is room for all of it.
template <class Text, class Character>
int give(const Text& text, Character* buffer, int capacity) {
    const int length = static_cast<int>(text.size());
    if (capacity == 0) {
        return length;
    }
    if (capacity < length) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    text.copy(buffer, text.size());
    return length;
}

} // namespace

int MultiByteToWideChar(UINT /*codePage*/, DWORD /*flags*/, LPCSTR narrow, int length, LPWSTR wide, int capacity) {
    std::wstring text;
    const auto* position = reinterpret_cast<const unsigned char*>(narrow);
    for (const auto* end = position + length; position != end;) {
        text += static_cast<wchar_t>(decode(position, end));
    }
    return give(text, wide, capacity);
}

int WideCharToMultiByte(UINT /*codePage*/, DWORD /*flags*/, LPCWSTR wide, int length, LPSTR narrow, int capacity,
                        LPCSTR /*defaultCharacter*/, BOOL* /*usedDefault*/) {
    std::string text;
    for (int i = 0; i < length; ++i) {
        encode(static_cast<char32_t>(wide[i]), text);
    }
    return give(text, narrow, capacity);
}
