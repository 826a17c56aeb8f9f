#include "titles/ConfigFiles.h"

#include "base/StandardErrors.h"
#include "base/TextEncoding.h"
#include "base/WindowsHandles.h"

#include <optional>
#include <string_view>

#include <windows.h>

#include <shlobj.h>

namespace brisk {

namespace {

std::string getFolder(int csidl) {
    // Wide, for a narrow path may be too long for the buffer. A failed call leaves it empty.
    wchar_t path[MAX_PATH] = L"";
    SHGetFolderPathW(nullptr, csidl, nullptr, 0, path);
    return toNarrow(path);
}

bool meansAbsent(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME ||
           error == ERROR_BAD_NETPATH;
}

// The attributes of what a link leads to, nothing when that is absent.
std::optional<DWORD> getTargetAttributes(const std::wstring& link, const char* operation) {
    const HANDLE opened =
        CreateFileW(link.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        if (!meansAbsent(error)) {
            throwFileSystemError(operation, link, error);
        }
        return std::nullopt;
    }
    const UniqueHandle target(opened);
    BY_HANDLE_FILE_INFORMATION information{};
    if (!GetFileInformationByHandle(target.get(), &information)) {
        throwFileSystemError(operation, link, GetLastError());
    }
    return information.dwFileAttributes;
}

// The attributes of an entry, nothing when it is absent. A link counts for what it leads to.
std::optional<DWORD> getAttributes(const std::wstring& entry, const char* operation) {
    const DWORD attributes = GetFileAttributesW(entry.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        const DWORD error = GetLastError();
        if (!meansAbsent(error)) {
            throwFileSystemError(operation, entry, error);
        }
        return std::nullopt;
    }
    return attributes & FILE_ATTRIBUTE_REPARSE_POINT ? getTargetAttributes(entry, operation) : attributes;
}

// A separator goes between the two where the folder brings none.
std::wstring join(std::wstring folder, const wchar_t* name) {
    if (!folder.ends_with(L'\\') && !folder.ends_with(L'/') && !folder.ends_with(L':')) {
        folder += L'\\';
    }
    return folder + name;
}

bool isDirectory(const std::wstring& directory, const WIN32_FIND_DATAW& entry) {
    const DWORD attributes =
        entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT
            ? getTargetAttributes(join(directory, entry.cFileName), "directory_entry::status").value_or(0)
            : entry.dwFileAttributes;
    return attributes & FILE_ATTRIBUTE_DIRECTORY;
}

// The name of the first subdirectory in the order of the listing; nothing when there is none.
std::optional<std::wstring> findFirstSubdirectory(const std::wstring& directory) {
    WIN32_FIND_DATAW entry{};
    const HANDLE found = FindFirstFileW(join(directory, L"*").c_str(), &entry);
    if (found == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        if (error == ERROR_FILE_NOT_FOUND) {
            return std::nullopt;
        }
        throwFileSystemError("directory_iterator::directory_iterator", directory, error);
    }
    const UniqueFindHandle search(found);
    do {
        const std::wstring_view name = entry.cFileName;
        if (name != L"." && name != L".." && isDirectory(directory, entry)) {
            return std::wstring(name);
        }
    } while (FindNextFileW(search.get(), &entry));
    if (const DWORD error = GetLastError(); error != ERROR_NO_MORE_FILES) {
        throwFileSystemError("directory_iterator::operator++", directory, error);
    }
    return std::nullopt;
}

} // namespace

UserFolders findUserFolders() {
    return {{"%USERPROFILE%", getFolder(CSIDL_PROFILE)},
            {"%LOCALAPPDATA%", getFolder(CSIDL_LOCAL_APPDATA)},
            {"%APPDATA%", getFolder(CSIDL_APPDATA)}};
}

bool resolveWildcard(std::string& location) {
    const std::size_t star = location.find('*');
    if (star == std::string::npos) {
        return true;
    }
    const std::wstring prefix = toWide(location.substr(0, star));
    const std::optional<DWORD> attributes = getAttributes(prefix, "status");
    if (!attributes || !(*attributes & FILE_ATTRIBUTE_DIRECTORY)) {
        return false;
    }
    if (const auto name = findFirstSubdirectory(prefix)) {
        location.replace(star, 1, toNarrow(*name));
    }
    return true;
}

bool locationExists(const std::string& location) {
    return getAttributes(toWide(location), "exists").has_value();
}

} // namespace brisk
