#include "Text.h"

#include <cstdio>

#include <winstring.h>

namespace brisk::standin {

std::string toUtf8(std::wstring_view text) {
    const int size = static_cast<int>(text.size());
    std::string bytes(
        static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr)), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr);
    return bytes;
}

std::wstring fromUtf8(std::string_view text) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::wstring fromHString(HSTRING text) {
    UINT32 length = 0;
    const wchar_t* characters = WindowsGetStringRawBuffer(text, &length);
    return {characters, length};
}

std::string escaped(std::wstring_view text) {
    std::wstring line;
    for (size_t i = 0; i < text.size(); ++i) {
        const wchar_t c = text[i];
        const bool pair = IS_HIGH_SURROGATE(c) && i + 1 < text.size() && IS_LOW_SURROGATE(text[i + 1]);
        if (pair) {
            line += c;
            line += text[++i];
        } else if (c == L'\\') {
            line += L"\\\\";
        } else if (c == L'\n') {
            line += L"\\n";
        } else if (c == L'\r') {
            line += L"\\r";
        } else if (c == L'\t') {
            line += L"\\t";
        } else if (c < L' ' || IS_HIGH_SURROGATE(c) || IS_LOW_SURROGATE(c)) {
            wchar_t code[7];
            std::swprintf(code, std::size(code), L"\\u%04X", static_cast<unsigned>(c));
            line += code;
        } else {
            line += c;
        }
    }
    return toUtf8(line);
}

std::string hresultText(HRESULT result) {
    char text[11];
    std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(result));
    return text;
}

std::wstring environmentVariable(const wchar_t* name) {
    std::wstring value(GetEnvironmentVariableW(name, nullptr, 0), L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    return value;
}

} // namespace brisk::standin
