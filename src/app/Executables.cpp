#include "app/Executables.h"

#include "app/Log.h"
#include "app/WindowsHandles.h"

#include <cstring>
#include <iomanip>
#include <sstream>
#include <vector>

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

// The text of one string of the resource, up to its terminating zero (and never beyond the resource's buffer).
std::string queryString(const std::vector<char>& resource, const Translation& translation, const char* name) {
    std::ostringstream subBlock;
    subBlock << "\\StringFileInfo\\" << std::hex << std::setfill('0') << std::setw(4) << translation.language
             << std::setw(4) << translation.codePage << name;
    void* value = nullptr;
    UINT length = 0;
    if (!VerQueryValueA(resource.data(), subBlock.str().c_str(), &value, &length) || !value) {
        return {};
    }
    const char* text = static_cast<const char*>(value);
    return {text, strnlen(text, static_cast<std::size_t>(resource.data() + resource.size() - text))};
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
    std::vector<char> resource(size);
    if (!GetFileVersionInfoA(path.c_str(), 0, size, resource.data())) {
        return {};
    }
    void* translations = nullptr;
    UINT length = 0;
    if (!VerQueryValueA(resource.data(), "\\VarFileInfo\\Translation", &translations, &length) ||
        length < sizeof(Translation)) {
        return {};
    }
    Translation first;
    std::memcpy(&first, translations, sizeof first);
    return {queryString(resource, first, "\\ProductName"), queryString(resource, first, "\\CompanyName"),
            queryString(resource, first, "\\LegalCopyright"), queryString(resource, first, "\\FileVersion")};
}

} // namespace brisk
