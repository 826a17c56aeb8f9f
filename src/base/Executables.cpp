#include "base/Executables.h"

#include "base/Log.h"
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

// What a query finds, and everything behind it up to the resource's end; nothing where it does not lie within the
// resource: a version library believes the offsets that stand in a file. The length is the value's as the file has it.
std::string_view query(std::string_view resource, const std::string& subBlock, UINT& length) {
    void* value = nullptr;
    if (!VerQueryValueA(resource.data(), subBlock.c_str(), &value, &length)) {
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
    const std::string_view text = query(resource, subBlock.str(), length);
    return std::string(text.substr(0, text.find('\0')));
}

} // namespace

std::string getModuleDirectory() {
    char buffer[kPathCharacters];
    const DWORD length = GetModuleFileNameA(nullptr, buffer, kPathCharacters);
    if (length == 0) {
        logLine("Brisk : couldn't get module name. Error ", std::dec, GetLastError());
        return {};
    }
    const std::string path(buffer, length);
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
    char buffer[kPathCharacters];
    const DWORD length = K32GetModuleFileNameExA(process.get(), nullptr, buffer, kPathCharacters);
    // A path that is cut off ends in a zero within the length.
    const std::string path(buffer, strnlen(buffer, length));
    const std::size_t separator = path.find_last_of(kSeparators);
    if (separator == std::string::npos) {
        return {};
    }
    return {path.substr(separator + 1), path.substr(0, separator)};
}

FileProperties getFileProperties(const std::string& path) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeA(path.c_str(), &ignored);
    if (size == 0) {
        return {};
    }
    // The size stands in the file as well: there may be no memory for it.
    const std::unique_ptr<char[]> buffer(new (std::nothrow) char[size]());
    if (!buffer || !GetFileVersionInfoA(path.c_str(), 0, size, buffer.get())) {
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
