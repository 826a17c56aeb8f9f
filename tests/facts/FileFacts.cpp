// Files: which errors mean what, in which order folders are listed, where a text ends.
#include "Facts.h"
#include "OwnProcess.h"

#include "support/TemporaryFolder.h"
#include "support/TextFiles.h"

namespace brisk::facts {

namespace {

// What the service takes for an absent file: not found, path not found, invalid name, bad network path.
bool meansAbsent(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME ||
           error == ERROR_BAD_NETPATH;
}

// 0 where the file is there.
DWORD errorOf(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES ? GetLastError() : 0;
}

std::string named(DWORD error) {
    return "error " + std::to_string(error);
}

Answer unreachableServer() {
    const DWORD error = errorOf(L"\\\\brisk-no-such-server.invalid\\share\\Settings.ini");
    return holdsIf(meansAbsent(error), named(error));
}

Answer missingShare() {
    const DWORD error = errorOf(L"\\\\localhost\\brisk-no-such-share\\Settings.ini");
    return holdsIf(error == ERROR_BAD_NET_NAME, named(error));
}

Answer missingDrive() {
    for (wchar_t letter = L'Y'; letter > L'C'; --letter) {
        const std::wstring root = {letter, L':', L'\\'};
        if (GetDriveTypeW(root.c_str()) == DRIVE_NO_ROOT_DIR) {
            const DWORD error = errorOf(root + L"Games\\Settings.ini");
            return holdsIf(meansAbsent(error), named(error));
        }
    }
    return cannotTell("every drive letter is taken");
}

Answer emptyDrive() {
    for (wchar_t letter = L'C'; letter <= L'Z'; ++letter) {
        const std::wstring root = {letter, L':', L'\\'};
        const UINT type = GetDriveTypeW(root.c_str());
        if ((type == DRIVE_REMOVABLE || type == DRIVE_CDROM) &&
            !GetVolumeInformationW(root.c_str(), nullptr, 0, nullptr, nullptr, nullptr, nullptr, 0)) {
            const DWORD error = errorOf(root + L"Settings.ini");
            return holdsIf(error == ERROR_NOT_READY, named(error));
        }
    }
    return cannotTell("there is no drive without a medium");
}

Answer longPath() {
    const testing::TemporaryFolder folder;
    const DWORD error = errorOf(folder.path().native() + L"\\" + std::wstring(120, L'a') + L"\\" +
                                std::wstring(180, L'b') + L"\\Settings.ini");
    return holdsIf(meansAbsent(error), named(error));
}

Answer listingOrder() {
    const testing::TemporaryFolder folder;
    for (const wchar_t* name : {L"delta", L"Bravo", L"charlie", L"Alfa"}) {
        std::filesystem::create_directory(folder / name);
    }
    std::string seen;
    WIN32_FIND_DATAW found{};
    const UniqueFindHandle search(FindFirstFileW((folder / L"*").c_str(), &found));
    do {
        const std::wstring name = found.cFileName;
        seen += std::string(seen.empty() ? "" : " ") + std::string(name.begin(), name.end());
    } while (FindNextFileW(search.get(), &found));
    return holdsIf(seen == ". .. Alfa Bravo charlie delta", seen);
}

Answer textMode() {
    const testing::TemporaryFolder folder;
    testing::writeFile(folder / L"read.ini", "A=1\r\nB=2\x1A\r\nC=3\r\n");
    std::ifstream reader(folder / L"read.ini");
    const std::string text{std::istreambuf_iterator<char>(reader), {}};
    std::ofstream(folder / L"written.ini") << "A=1\nB=2\x1A\n";
    const bool isSo = text == "A=1\nB=2" && testing::readFile(folder / L"written.ini") == "A=1\r\nB=2\x1A\r\n";
    return holdsIf(isSo, std::to_string(text.size()) + " characters up to the 0x1A");
}

} // namespace

std::vector<Fact> fileFacts() {
    return {{"unreachable-server", unreachableServer},
            {"missing-share", missingShare},
            {"missing-drive", missingDrive},
            {"empty-drive", emptyDrive},
            {"long-path", longPath},
            {"listing-order", listingOrder},
            {"text-mode", textMode}};
}

} // namespace brisk::facts
