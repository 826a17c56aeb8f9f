#include "base/TextEncoding.h"

#include <windows.h>

namespace brisk {

std::wstring toWide(const std::string& narrow) {
    const int length = static_cast<int>(narrow.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, narrow.data(), length, nullptr, 0)),
                      L'\0');
    MultiByteToWideChar(CP_ACP, 0, narrow.data(), length, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string toNarrow(const std::wstring& wide) {
    const int length = static_cast<int>(wide.size());
    std::string narrow(
        static_cast<std::size_t>(WideCharToMultiByte(CP_ACP, 0, wide.data(), length, nullptr, 0, nullptr, nullptr)),
        '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.data(), length, narrow.data(), static_cast<int>(narrow.size()), nullptr,
                        nullptr);
    return narrow;
}

std::filesystem::path toPath(const std::string& narrow) {
    return toWide(narrow);
}

} // namespace brisk
