#include "base/Executables.h"

#include "base/Log.h"
#include "base/TextEncoding.h"
#include "base/WindowsHandles.h"

#include <cstring>
#include <iomanip>
#include <memory>
#include <new>
#include <sstream>
#include <string_view>

#include <windows.h>

#include <psapi.h>

namespace brisk {

namespace {

constexpr DWORD kPathCharacters = 260;
constexpr char kSeparators[] = "\\/";

// One entry of a version resource's translation table.
struct Translation {
    WORD language;
    WORD codePage;
};

// The path that a call left in a buffer of zeros. What the call answers is no measure of it: for a narrow name it may
// count UTF-16 units (docs/decisions/narrow-calls.md).
std::string pathIn(const char (&buffer)[kPathCharacters]) {
    return {buffer, strnlen(buffer, kPathCharacters)};
}

// What a query finds, and everything behind it up to the resource's end; nothing where it does not lie within the
// resource: a version library believes the offsets that stand in a file. The length is the value's as the file has it.
std::string_view query(std::string_view resource, const std::string& subBlock, UINT& length) {
    void* value = nullptr;
    if (!VerQueryValueW(resource.data(), toWide(subBlock).c_str(), &value, &length)) {
        return {};
    }
    const auto begin = reinterpret_cast<std::uintptr_t>(resource.data());
    const auto place = reinterpret_cast<std::uintptr_t>(value);
    if (place < begin || place - begin > resource.size()) {
        return {};
    }
    return resource.substr(place - begin);
}

// The text of one string of the resource, up to its terminating zero.
std::string queryString(std::string_view resource, const Translation& translation, const char* name) {
    std::ostringstream subBlock;
    subBlock << "\\StringFileInfo\\" << std::hex << std::setfill('0') << std::setw(4) << translation.language
             << std::setw(4) << translation.codePage << name;
    UINT length = 0;
    std::string_view bytes = query(resource, subBlock.str(), length);
    std::wstring text;
    // The value may lie at an odd place.
    for (wchar_t unit = 0; bytes.size() >= sizeof unit; bytes.remove_prefix(sizeof unit)) {
        std::memcpy(&unit, bytes.data(), sizeof unit);
        if (unit == 0) {
            break;
        }
        text += unit;
    }
    return toNarrow(text);
}

} // namespace

std::string getModuleDirectory() {
    char buffer[kPathCharacters] = "";
    if (GetModuleFileNameA(nullptr, buffer, kPathCharacters) == 0) {
        logLine("Brisk : couldn't get module name. Error ", std::dec, GetLastError());
        return {};
    }
    const std::string path = pathIn(buffer);
    const std::size_t separator = path.find_last_of(kSeparators);
    if (separator == std::string::npos) {
        logLine("Brisk : couldn't find delimiter in module name.");
        return {};
    }
    return path.substr(0, separator);
}

ProcessImage getProcessImage(std::uint32_t processId) {
    const UniqueHandle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId));
    if (!process) {
        return {};
    }
    char buffer[kPathCharacters] = "";
    if (K32GetModuleFileNameExA(process.get(), nullptr, buffer, kPathCharacters) == 0) {
        return {};
    }
    const std::string path = pathIn(buffer);
    const std::size_t separator = path.find_last_of(kSeparators);
    if (separator == std::string::npos) {
        return {};
    }
    return {path.substr(separator + 1), path.substr(0, separator)};
}

FileProperties getFileProperties(const std::string& path) {
    const std::wstring file = toWide(path);
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(file.c_str(), &ignored);
    if (size == 0) {
        return {};
    }
    // The size stands in the file as well: there may be no memory for it.
    const std::unique_ptr<char[]> buffer(new (std::nothrow) char[size]());
    if (!buffer || !GetFileVersionInfoW(file.c_str(), 0, size, buffer.get())) {
        return {};
    }
    const std::string_view resource(buffer.get(), size);
    UINT length = 0;
    const std::string_view translations = query(resource, "\\VarFileInfo\\Translation", length);
    Translation first;
    if (length < sizeof first || translations.size() < sizeof first) {
        return {};
    }
    std::memcpy(&first, translations.data(), sizeof first);
    return {queryString(resource, first, "\\ProductName"), queryString(resource, first, "\\CompanyName"),
            queryString(resource, first, "\\LegalCopyright"), queryString(resource, first, "\\FileVersion")};
}

} // namespace brisk
