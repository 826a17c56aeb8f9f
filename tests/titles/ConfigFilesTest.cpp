#include "titles/ConfigFiles.h"

#include "FaultPoints.h"
#include "support/Sandbox.h"

#include <gmock/gmock.h>

namespace brisk {
namespace {

namespace fs = std::filesystem;

class ConfigFilesTest : public ::testing::Test {
protected:
    ConfigFilesTest() { faults::reset(); }
    ~ConfigFilesTest() override { faults::reset(); }

    // A location in the test's folder.
    std::string in(const std::string& rest) const { return folder.narrow() + "\\" + rest; }

    // What becomes of a location; "refused" when its wildcard cannot be resolved.
    static std::string resolve(std::string location) { return resolveWildcard(location) ? location : "refused"; }

    // The error that the action throws, whole, is the one of this operation.
    template <class Action>
    static void expectError(const char* operation, const fs::path& path, DWORD code, const Action& action) {
        try {
            action();
            FAIL() << "no error";
        } catch (const fs::filesystem_error& error) {
            const std::error_code expected(static_cast<int>(code), std::system_category());
            EXPECT_STREQ(error.what(), fs::filesystem_error(operation, path, expected).what());
            EXPECT_EQ(error.code(), expected);
            EXPECT_EQ(error.path1(), path);
        }
    }

    struct Entry {
        std::wstring name;
        DWORD attributes;
    };

    // Any folder lists these entries.
    void list(const std::vector<Entry>& entries) {
        listing = entries;
        const auto give = [this](WIN32_FIND_DATAW* data) {
            *data = {};
            data->dwFileAttributes = listing.front().attributes;
            listing.front().name.copy(data->cFileName, MAX_PATH - 1);
            listing.erase(listing.begin());
        };
        FindFirstFileWFault.intercept([give](const wchar_t* pattern, WIN32_FIND_DATAW* data) {
            const HANDLE search = FindFirstFileWFault.real(pattern, data);
            give(data);
            return search;
        });
        FindNextFileWFault.intercept([this, give](HANDLE, WIN32_FIND_DATAW* data) -> WINBOOL {
            if (listing.empty()) {
                SetLastError(ERROR_NO_MORE_FILES);
                return FALSE;
            }
            give(data);
            return TRUE;
        });
    }

    static constexpr DWORD kFolder = FILE_ATTRIBUTE_DIRECTORY;
    static constexpr DWORD kFolderLink = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;

    testing::TemporaryFolder folder;
    std::vector<Entry> listing;
};

TEST_F(ConfigFilesTest, LocationWithoutAStarIsAcceptedUnchangedWithoutALook) {
    EXPECT_EQ(resolve("C:\\no such folder\\a.ini"), "C:\\no such folder\\a.ini");
    EXPECT_EQ(resolve(""), "");
    EXPECT_EQ(GetFileAttributesWFault.calls(), 0u);
}

TEST_F(ConfigFilesTest, FirstSubdirectoryTakesTheStarsPlace) {
    testing::writeFile(folder / "aaa.txt", "");
    testing::writeFile(folder / "bbb.ini", "");
    fs::create_directory(folder / "profile 7");
    EXPECT_EQ(resolve(in("*\\cfg.ini")), in("profile 7\\cfg.ini"));
    EXPECT_EQ(resolve(in("*")), in("profile 7"));
    EXPECT_EQ(FindCloseFault.calls(), 2u);
}

TEST_F(ConfigFilesTest, FirstOneIsTheFirstOneListed) {
    list({{L".", kFolder}, {L"..", kFolder}, {L"file", FILE_ATTRIBUTE_NORMAL}, {L"123", kFolder}, {L"456", kFolder}});
    EXPECT_EQ(resolve(in("*\\cfg.ini")), in("123\\cfg.ini"));
    list({{L".", kFolder}, {L"..", kFolder}, {L"456", kFolder}, {L"123", kFolder}});
    EXPECT_EQ(resolve(in("*\\cfg.ini")), in("456\\cfg.ini"));
    list({{L"first of a drive's root", kFolder}});
    EXPECT_EQ(resolve(in("*")), in("first of a drive's root"));
}

TEST_F(ConfigFilesTest, NamesThatOnlyBeginWithADotAreNamesLikeAnyOther) {
    list({{L".", kFolder}, {L"..", kFolder}, {L".config", kFolder}});
    EXPECT_EQ(resolve(in("*\\cfg.ini")), in(".config\\cfg.ini"));
}

TEST_F(ConfigFilesTest, HiddenSubdirectoriesCount) {
    fs::create_directory(folder / "hidden");
    ASSERT_TRUE(SetFileAttributesW((folder / "hidden").c_str(), FILE_ATTRIBUTE_HIDDEN));
    EXPECT_EQ(resolve(in("*\\cfg.ini")), in("hidden\\cfg.ini"));
}

TEST_F(ConfigFilesTest, SecondStarStays) {
    fs::create_directories(folder / "one" / "two");
    EXPECT_EQ(resolve(in("*\\*\\cfg.ini")), in("one\\*\\cfg.ini"));
}

TEST_F(ConfigFilesTest, StarIsNoPattern) {
    fs::create_directory(folder / "other");
    EXPECT_EQ(resolve(in("*.profile\\cfg.ini")), in("other.profile\\cfg.ini"));
    EXPECT_EQ(resolve(folder.narrow() + "*\\cfg.ini"), folder.narrow() + "other\\cfg.ini");
    EXPECT_EQ(resolve(in("user*\\cfg.ini")), "refused");
}

TEST_F(ConfigFilesTest, ForwardSlashesAreAsGood) {
    fs::create_directory(folder / "one");
    EXPECT_EQ(resolve(folder.narrow() + "/*/cfg.ini"), folder.narrow() + "/one/cfg.ini");
}

TEST_F(ConfigFilesTest, SubdirectorysNameIsGivenInTheProcessCodePage) {
    fs::create_directories(folder / L"Pr\u00FCfung \u30D7\u30ED" / L"b");
    EXPECT_EQ(resolve(in("*\\cfg.ini")), in("Pr\u00FCfung \u30D7\u30ED\\cfg.ini"));
    EXPECT_EQ(resolve(in("Pr\u00FCfung \u30D7\u30ED\\*\\cfg.ini")), in("Pr\u00FCfung \u30D7\u30ED\\b\\cfg.ini"));
}

TEST_F(ConfigFilesTest, FolderWithoutSubdirectoriesLeavesTheStar) {
    EXPECT_EQ(resolve(in("*\\cfg.ini")), in("*\\cfg.ini"));
    testing::writeFile(folder / "file", "");
    EXPECT_EQ(resolve(in("*\\cfg.ini")), in("*\\cfg.ini"));
    // An empty drive lists not even "." and "..".
    FindFirstFileWFault.fail(INVALID_HANDLE_VALUE, ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(resolve(in("*\\cfg.ini")), in("*\\cfg.ini"));
}

TEST_F(ConfigFilesTest, TextBeforeTheStarThatIsNoFolderIsRefused) {
    testing::writeFile(folder / "file", "");
    EXPECT_EQ(resolve(in("file*")), "refused");
    EXPECT_EQ(resolve(in("missing\\*\\cfg.ini")), "refused");
    EXPECT_EQ(resolve(in("missing\\too\\*\\cfg.ini")), "refused");
    EXPECT_EQ(resolve("*\\cfg.ini"), "refused");
    EXPECT_EQ(resolve("%APPDIR%\\*\\cfg.ini"), "refused");
    EXPECT_EQ(FindFirstFileWFault.calls(), 0u);
}

TEST_F(ConfigFilesTest, FileSystemThatFailsOnTheTextBeforeTheStarIsAnErrorOfStatus) {
    GetFileAttributesWFault.fail(INVALID_FILE_ATTRIBUTES, ERROR_ACCESS_DENIED);
    expectError("status", folder / "", ERROR_ACCESS_DENIED, [this] { resolve(in("*\\cfg.ini")); });
    GetFileAttributesWFault.intercept([](auto) -> DWORD { return kFolderLink; });
    CreateFileWFault.fail(INVALID_HANDLE_VALUE, ERROR_NOT_READY);
    expectError("status", folder / "", ERROR_NOT_READY, [this] { resolve(in("*\\cfg.ini")); });
}

TEST_F(ConfigFilesTest, FolderThatCannotBeListedIsAnErrorOfTheIteratorsConstructor) {
    FindFirstFileWFault.fail(INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED);
    expectError("directory_iterator::directory_iterator", folder / "", ERROR_ACCESS_DENIED,
                [this] { resolve(in("*\\cfg.ini")); });
}

TEST_F(ConfigFilesTest, ListingThatBreaksOffIsAnErrorOfTheIteratorsIncrement) {
    fs::create_directory(folder / "one");
    FindNextFileWFault.fail(FALSE, ERROR_NETNAME_DELETED);
    expectError("directory_iterator::operator++", folder / "", ERROR_NETNAME_DELETED,
                [this] { resolve(in("*\\cfg.ini")); });
    EXPECT_EQ(FindCloseFault.calls(), 1u);
}

TEST_F(ConfigFilesTest, LinkCountsForWhatItLeadsTo) {
    fs::create_directory(folder / "to a folder");
    testing::writeFile(folder / "to a file", "");
    list({{L".", kFolder},
          {L"dangling", kFolderLink},
          {L"to a file", FILE_ATTRIBUTE_REPARSE_POINT},
          {L"to a folder", kFolderLink},
          {L"one more", kFolder}});
    EXPECT_EQ(resolve(in("*\\cfg.ini")), in("to a folder\\cfg.ini"));
    list({{L".", kFolder}, {L"dangling", kFolderLink}, {L"to a file", FILE_ATTRIBUTE_REPARSE_POINT}});
    EXPECT_EQ(resolve(in("*\\cfg.ini")), in("*\\cfg.ini"));
}

TEST_F(ConfigFilesTest, LinkThatCannotBeFollowedIsAnErrorOfTheEntrysStatus) {
    fs::create_directory(folder / "link");
    list({{L"link", kFolderLink}});
    CreateFileWFault.fail(INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED);
    expectError("directory_entry::status", folder / "link", ERROR_ACCESS_DENIED, [this] { resolve(in("*\\cfg.ini")); });
    faults::reset();
    list({{L"link", kFolderLink}});
    GetFileInformationByHandleFault.fail(FALSE, ERROR_IO_DEVICE);
    expectError("directory_entry::status", folder / "link", ERROR_IO_DEVICE, [this] { resolve(in("*\\cfg.ini")); });
    EXPECT_EQ(FindCloseFault.calls(), 1u);
}

TEST_F(ConfigFilesTest, LinkExistsIfWhatItLeadsToDoes) {
    testing::writeFile(folder / "to a file", "");
    GetFileAttributesWFault.intercept([](auto) -> DWORD { return FILE_ATTRIBUTE_REPARSE_POINT; });
    EXPECT_TRUE(locationExists(in("to a file")));
    EXPECT_FALSE(locationExists(in("dangling")));
}

TEST_F(ConfigFilesTest, LinkBeforeTheStarCountsForWhatItLeadsTo) {
    fs::create_directories(folder / "to a folder" / "one");
    testing::writeFile(folder / "to a file", "");
    GetFileAttributesWFault.intercept([](auto) -> DWORD { return kFolderLink; });
    EXPECT_EQ(resolve(in("to a folder\\*\\cfg.ini")), in("to a folder\\one\\cfg.ini"));
    EXPECT_EQ(resolve(in("to a file*\\cfg.ini")), "refused");
    EXPECT_EQ(resolve(in("dangling\\*\\cfg.ini")), "refused");
}

TEST_F(ConfigFilesTest, FilesAndFoldersExist) {
    testing::writeFile(folder / "file", "");
    EXPECT_TRUE(locationExists(in("file")));
    EXPECT_TRUE(locationExists(folder.narrow()));
    EXPECT_TRUE(locationExists(in("")));
}

TEST_F(ConfigFilesTest, MissingEntriesAndMissingParentsAndImpossibleNamesDoNotExist) {
    testing::writeFile(folder / "file", "");
    EXPECT_FALSE(locationExists(in("missing")));
    EXPECT_FALSE(locationExists(in("missing\\file")));
    EXPECT_FALSE(locationExists(in("file\\below a file")));
    EXPECT_FALSE(locationExists(in("*\\cfg.ini")));
    EXPECT_FALSE(locationExists("%APPDIR%\\cfg.ini"));
    EXPECT_FALSE(locationExists(""));
    for (const DWORD absent : std::initializer_list<DWORD>{ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND,
                                                           ERROR_INVALID_NAME, ERROR_BAD_NETPATH}) {
        GetFileAttributesWFault.fail(INVALID_FILE_ATTRIBUTES, absent);
        EXPECT_FALSE(locationExists(folder.narrow())) << absent;
    }
}

TEST_F(ConfigFilesTest, AnyOtherFailureIsAnErrorOfExists) {
    for (const DWORD code :
         std::initializer_list<DWORD>{ERROR_ACCESS_DENIED, ERROR_NOT_READY, ERROR_SHARING_VIOLATION}) {
        GetFileAttributesWFault.fail(INVALID_FILE_ATTRIBUTES, code);
        expectError("exists", folder / "a.ini", code, [this] { locationExists(in("a.ini")); });
    }
    GetFileAttributesWFault.intercept([](auto) -> DWORD { return FILE_ATTRIBUTE_REPARSE_POINT; });
    CreateFileWFault.fail(INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED);
    expectError("exists", folder / "a.ini", ERROR_ACCESS_DENIED, [this] { locationExists(in("a.ini")); });
}

} // namespace
} // namespace brisk
