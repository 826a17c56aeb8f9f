#include "host/simulation/Files.h"

#include "host/simulation/Handles.h"
#include "host/simulation/SimulatedCall.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <memory>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisk::host {

namespace {

namespace fs = std::filesystem;

// Removed at the end of the process that made it, not by its children.
class Root {
public:
    Root() {
        std::string pattern =
            (fs::is_directory("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path()) / "brisk-drives-XXXXXX";
        if (!mkdtemp(pattern.data())) {
            std::perror("brisk: no folder for the simulated drives");
            std::exit(2);
        }
        folder = pattern;
    }
    ~Root() {
        if (getpid() == owner) {
            std::error_code ignored;
            fs::remove_all(folder, ignored);
        }
    }

    std::string folder;

private:
    pid_t owner = getpid();
};

const std::string& root() {
    static const Root theRoot;
    return theRoot.folder;
}

bool hasDrive(const std::string& path) {
    return path.size() >= 2 && std::isalpha(static_cast<unsigned char>(path[0])) && path[1] == ':';
}

bool isWindowsPath(const std::string& path) {
    return hasDrive(path) || path.find('\\') != std::string::npos;
}

std::string translate(const std::string& windowsPath) {
    if (!isWindowsPath(windowsPath)) {
        return windowsPath;
    }
    std::string path = windowsPath;
    std::replace(path.begin(), path.end(), '\\', '/');
    return hasDrive(path) ? root() + '/' + path : path.starts_with('/') ? path : root() + "/current/" + path;
}

// Characters that a name on Windows cannot have; a wildcard that was not resolved is one.
bool hasInvalidName(const std::string& path) {
    return path.find_first_of("*?\"<>|") != std::string::npos;
}

DWORD errorOf(const std::string& path) {
    switch (errno) {
    case ENOENT: {
        struct stat parent;
        const std::size_t separator = path.find_last_of('/', path.find_last_not_of('/'));
        const bool hasParent = separator != std::string::npos && stat(path.substr(0, separator).c_str(), &parent) == 0;
        return hasParent ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
    }
    case ENOTDIR:
        return ERROR_PATH_NOT_FOUND;
    case EACCES:
        return ERROR_ACCESS_DENIED;
    default:
        return ERROR_INVALID_NAME;
    }
}

DWORD attributesOf(const struct stat& status) {
    return S_ISDIR(status.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL;
}

// The attributes of the entry itself; nothing, with the last error set, when there is none.
std::optional<DWORD> readAttributes(const std::string& path) {
    struct stat status;
    if (path.empty() || lstat(path.c_str(), &status) != 0) {
        SetLastError(path.empty() ? ERROR_PATH_NOT_FOUND : errorOf(path));
        return std::nullopt;
    }
    if (!S_ISLNK(status.st_mode)) {
        return attributesOf(status);
    }
    const bool leadsToFolder = stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    return FILE_ATTRIBUTE_REPARSE_POINT | (leadsToFolder ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL);
}

// What an open handle keeps others from: opening the file for reading, for writing.
struct Denial {
    Denial(std::string deniedPath, DWORD allowed) : path(std::move(deniedPath)), share(allowed) {
        all().push_back(this);
    }
    Denial(const Denial&) = delete;
    Denial& operator=(const Denial&) = delete;
    ~Denial() { std::erase(all(), this); }

    static std::vector<Denial*>& all() {
        static std::vector<Denial*> denials;
        return denials;
    }
    static bool refuses(const std::string& path, DWORD wanted) {
        return std::any_of(all().begin(), all().end(),
                           [&](const Denial* denial) { return denial->path == path && !(denial->share & wanted); });
    }

    const std::string path;
    const DWORD share;
};

struct OpenFile {
    DWORD attributes;
    std::shared_ptr<Denial> denial;
};

struct Search {
    std::string folder;
    std::vector<std::string> names;
    std::size_t next = 0;

    bool give(WIN32_FIND_DATAW& entry) {
        if (next == names.size()) {
            return false;
        }
        const std::string& name = names[next++];
        entry.dwFileAttributes = readAttributes(folder + '/' + name).value_or(FILE_ATTRIBUTE_NORMAL);
        std::wmemset(entry.cFileName, 0, MAX_PATH);
        MultiByteToWideChar(CP_ACP, 0, name.data(), static_cast<int>(name.size()), entry.cFileName, MAX_PATH - 1);
        return true;
    }
};

std::string narrow(LPCWSTR wide) {
    const int length = static_cast<int>(std::wcslen(wide));
    std::string text(static_cast<std::size_t>(length) * 4, '\0');
    if (!text.empty()) {
        text.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_ACP, 0, wide, length, text.data(),
                                                                 static_cast<int>(text.size()), nullptr, nullptr)));
    }
    return text;
}

} // namespace

fs::path onThisMachine(const std::string& windowsPath) {
    return translate(windowsPath);
}

std::string onWindows(const fs::path& path) {
    std::string text = path.string();
    if (text.starts_with(root() + '/')) {
        text.erase(0, root().size() + 1);
        std::replace(text.begin(), text.end(), '/', '\\');
    }
    return text;
}

void clearDrives() {
    for (const fs::directory_entry& drive : fs::directory_iterator(root())) {
        fs::remove_all(drive);
    }
}

FileOpening& fileOpening() {
    static FileOpening opening;
    return opening;
}

} // namespace brisk::host

using namespace brisk::host;

DWORD GetFileAttributesW(LPCWSTR path) {
    return simulate<GetFileAttributesW>(
        [&]() -> DWORD {
            const std::string name = narrow(path);
            if (hasInvalidName(name)) {
                SetLastError(ERROR_INVALID_NAME);
                return INVALID_FILE_ATTRIBUTES;
            }
            return readAttributes(translate(name)).value_or(INVALID_FILE_ATTRIBUTES);
        },
        path);
}

// Names come sorted, as on an NTFS drive.
HANDLE FindFirstFileW(LPCWSTR pattern, LPWIN32_FIND_DATAW entry) {
    return simulate<FindFirstFileW>(
        [&]() -> HANDLE {
            std::string beforeStar = narrow(pattern);
            beforeStar.resize(beforeStar.find_last_of("\\/:") + 1);
            const std::string folder = translate(beforeStar);
            Search search{folder, {".", ".."}, 0};
            std::error_code error;
            for (const fs::directory_entry& found : fs::directory_iterator(folder, error)) {
                search.names.push_back(found.path().filename());
            }
            if (error) {
                SetLastError(ERROR_PATH_NOT_FOUND);
                return INVALID_HANDLE_VALUE;
            }
            std::sort(search.names.begin() + 2, search.names.end());
            search.give(*entry);
            return handles().open(HandleKind::Search, search);
        },
        pattern, entry);
}

BOOL FindNextFileW(HANDLE search, LPWIN32_FIND_DATAW entry) {
    return simulate<FindNextFileW>(
        [&]() -> BOOL {
            auto* open = handles().find<Search>(HandleKind::Search, search, "FindNextFileW");
            if (!open || !open->give(*entry)) {
                SetLastError(open ? ERROR_NO_MORE_FILES : ERROR_INVALID_HANDLE);
                return FALSE;
            }
            return TRUE;
        },
        search, entry);
}

BOOL FindClose(HANDLE search) {
    return simulate<FindClose>([&]() -> BOOL { return handles().close(HandleKind::Search, search, "FindClose"); },
                               search);
}

HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security, DWORD disposition,
                   DWORD flags, HANDLE pattern) {
    return simulate<CreateFileW>(
        [&]() -> HANDLE {
            const std::string name = translate(narrow(path));
            struct stat status;
            if (stat(name.c_str(), &status) != 0) {
                SetLastError(errorOf(name));
                return INVALID_HANDLE_VALUE;
            }
            return handles().open(HandleKind::File,
                                  OpenFile{attributesOf(status), std::make_shared<Denial>(name, share)});
        },
        path, access, share, security, disposition, flags, pattern);
}

BOOL GetFileInformationByHandle(HANDLE file, LPBY_HANDLE_FILE_INFORMATION information) {
    return simulate<GetFileInformationByHandle>(
        [&]() -> BOOL {
            const auto* open = handles().find<OpenFile>(HandleKind::File, file, "GetFileInformationByHandle");
            information->dwFileAttributes = open ? open->attributes : 0;
            return open != nullptr;
        },
        file, information);
}

// The standard library's streams open their files by one of these calls, depending on its version.
extern "C" FILE* fopen(const char* path, const char* mode) {
    const bool writes = std::strpbrk(mode, "wa+") != nullptr;
    const int flags = (std::strchr(mode, '+') ? O_RDWR
                       : writes               ? O_WRONLY
                                              : O_RDONLY) |
                      (writes && mode[0] != 'r' ? O_CREAT : 0) | (mode[0] == 'w' ? O_TRUNC : 0) |
                      (mode[0] == 'a' ? O_APPEND : 0) | O_CLOEXEC;
    std::string name = path;
    if (isWindowsPath(name)) {
        const std::lock_guard lock(modelMutex());
        FileOpening& opening = fileOpening();
        opening.writes += writes;
        struct stat status;
        const bool refused = hasInvalidName(name) || !(writes ? opening.canWrite : opening.canRead);
        name = translate(name);
        // Windows opens no folder as a file, and no read-only file for writing, whoever asks.
        if (refused || Denial::refuses(name, writes ? FILE_SHARE_WRITE : FILE_SHARE_READ) ||
            (stat(name.c_str(), &status) == 0 &&
             (S_ISDIR(status.st_mode) || (writes && !(status.st_mode & S_IWUSR))))) {
            errno = EACCES;
            return nullptr;
        }
    }
    const int file = open(name.c_str(), flags, 0666);
    return file < 0 ? nullptr : fdopen(file, mode);
}

extern "C" FILE* fopen64(const char* path, const char* mode) {
    return fopen(path, mode);
}
