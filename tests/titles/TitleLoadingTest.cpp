// Loading titles_db.json from real folders.
#include "titles/TitleManager.h"

#include "FaultPoints.h"
#include "support/JsonErrors.h"
#include "support/Sandbox.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace brisk {
namespace {

using nlohmann::json;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

class TitleLoadingTest : public ::testing::Test {
protected:
    ~TitleLoadingTest() override { faults::reset(); }

    bool load(const std::string& text) {
        testing::writeFile(folder / "titles_db.json", text);
        return manager.loadTitlesDatabase(folder.narrow());
    }

    template <class Error>
    void expectLibrarysError(const std::string& text) {
        EXPECT_THAT([&] { load(text); }, ThrowsMessage<Error>(AllOf(Not(IsEmpty()), StrEq(testing::jsonErrorOf(text)))))
            << text;
    }

    testing::TemporaryFolder folder;
    testing::CapturedLog log;
    TitleManager manager;
};

TEST_F(TitleLoadingTest, AMissingDatabaseCannotBeOpened) {
    EXPECT_FALSE(manager.loadTitlesDatabase(folder.narrow()));
    EXPECT_FALSE(manager.loadTitlesDatabase(folder.narrow() + "\\missing"));
    EXPECT_FALSE(manager.loadTitlesDatabase(""));
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : unable to open title database.", "Brisk : unable to open title database.",
                            "Brisk : unable to open title database."));
}

TEST_F(TitleLoadingTest, AFolderOfTheDatabasesNameCannotBeOpened) {
    std::filesystem::create_directory(folder / "titles_db.json");
    EXPECT_FALSE(manager.loadTitlesDatabase(folder.narrow()));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : unable to open title database."));
}

TEST_F(TitleLoadingTest, ADatabaseThatIsHeldOpenUnsharedCannotBeOpenedAlsoWhenTitlesAreHeld) {
    EXPECT_TRUE(load(R"([{"config_type": "txt", "binary_name": "a.exe"}])"));
    const HANDLE owner =
        CreateFileW((folder / "titles_db.json").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_FALSE(manager.loadTitlesDatabase(folder.narrow()));
    CloseHandle(owner);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : unable to open title database."));
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("a.exe"));
}

TEST_F(TitleLoadingTest, MalformedJsonIsTheLibrarysParseError) {
    for (const char* text : {"", "[{\"id\": 1},\r\n]", "[] []", "[\"C:\\Games\"]", "[\"\xFC\"]", "// titles\n[]"}) {
        expectLibrarysError<json::parse_error>(text);
    }
    expectLibrarysError<json::out_of_range>("[1e400]");
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_THAT(manager.getBinaryNames(), IsEmpty());
}

TEST_F(TitleLoadingTest, MalformedJsonLeavesTheTitlesThatAreHeldAndTheNextDatabaseIsRead) {
    EXPECT_TRUE(load(R"([{"id": 1, "config_type": "txt", "binary_name": "a.exe"}])"));
    EXPECT_THROW(load(R"([{"id": 2, "config_type": "txt", "binary_name": "b.exe"},)"), json::parse_error);
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("a.exe"));
    EXPECT_FALSE(manager.isTitleIdKnown(2));
    EXPECT_TRUE(load(R"([{"id": 2, "config_type": "txt", "binary_name": "b.exe"}])"));
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("a.exe", "b.exe"));
    EXPECT_TRUE(manager.isTitleIdKnown(2));
}

TEST_F(TitleLoadingTest, AnythingButAnArrayIsRejected) {
    for (const char* text : {"null", "{}", R"({"config_type": "txt"})", "1", "\"[]\"", "true"}) {
        EXPECT_FALSE(load(text)) << text;
        EXPECT_THAT(log.take(), ElementsAre("Brisk : unable to parse title database.")) << text;
    }
    EXPECT_TRUE(load(R"([{"config_type": "txt", "binary_name": "a.exe"}])"));
    EXPECT_TRUE(load("null"));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : unable to parse title database."));
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("a.exe"));
}

TEST_F(TitleLoadingTest, AnEmptyArrayLoadsNothing) {
    EXPECT_FALSE(load("[]"));
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_THAT(manager.getBinaryNames(), IsEmpty());
}

TEST_F(TitleLoadingTest, ElementsWithoutAKnownTypeAreSkippedAndTheirIdsAreNotKnown) {
    EXPECT_FALSE(load(R"([{"id": 1, "binary_name": "a.exe"}, {"id": 2, "config_type": 5}, null, "txt",
                          {"id": 3, "config_type": "text"}])"));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : unknown adaper type '\"text\"'."));
    EXPECT_THAT(manager.getBinaryNames(), IsEmpty());
    for (const std::uint32_t id : {0u, 1u, 2u, 3u}) {
        EXPECT_FALSE(manager.isTitleIdKnown(id)) << id;
    }
}

TEST_F(TitleLoadingTest, TitlesAreFiledByBinaryNameAndTheirIdsAreKnown) {
    EXPECT_TRUE(load(R"([
      {"id": 12, "config_type": "txt", "binary_name": "b.exe", "title_name": "B"},
      {"id": 11, "config_type": "reg", "binary_name": "a.exe", "title_name": "A"},
      {"config_type": "txt", "binary_name": "c.exe", "title_name": "C"},
      {"id": "13", "config_type": "txt", "title_name": "without a name"}])"));
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("", "a.exe", "b.exe", "c.exe"));
    EXPECT_EQ(manager.getTitleName("a.exe"), "A");
    EXPECT_EQ(manager.getTitleName("b.exe"), "B");
    EXPECT_EQ(manager.getTitleName(""), "without a name");
    EXPECT_TRUE(manager.isTitleIdKnown(11));
    EXPECT_TRUE(manager.isTitleIdKnown(12));
    // A title without an id has id 0, which is not known for that.
    EXPECT_FALSE(manager.isTitleIdKnown(0));
    EXPECT_FALSE(manager.isTitleIdKnown(13));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(TitleLoadingTest, ALaterTitleOfTheSameBinaryNameReplacesTheEarlierAndBothIdsAreKnown) {
    EXPECT_TRUE(load(R"([
      {"id": 1, "config_type": "txt", "binary_name": "a.exe", "title_name": "First", "luma_version": 1},
      {"id": 2, "config_type": "txt", "binary_name": "a.exe", "title_name": "Second"}])"));
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("a.exe"));
    EXPECT_EQ(manager.getTitleName("a.exe"), "Second");
    EXPECT_FALSE(manager.isLumaSupported("a.exe"));
    EXPECT_TRUE(manager.isTitleIdKnown(1));
    EXPECT_TRUE(manager.isTitleIdKnown(2));
}

TEST_F(TitleLoadingTest, ASecondDatabaseAddsToTheFirst) {
    EXPECT_TRUE(load(R"([{"id": 1, "config_type": "txt", "binary_name": "a.exe", "title_name": "Old"},
                         {"id": 2, "config_type": "txt", "binary_name": "b.exe"}])"));
    EXPECT_TRUE(load(R"([{"id": 3, "config_type": "txt", "binary_name": "a.exe", "title_name": "New"}])"));
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("a.exe", "b.exe"));
    EXPECT_EQ(manager.getTitleName("a.exe"), "New");
    EXPECT_TRUE(manager.isTitleIdKnown(1));
    EXPECT_TRUE(manager.isTitleIdKnown(3));
    EXPECT_TRUE(load("[]"));
}

TEST_F(TitleLoadingTest, ALocationThatIsNoTextEndsLoadingAndTitlesFiledBeforeStay) {
    EXPECT_THROW(load(R"([{"id": 1, "config_type": "txt", "binary_name": "a.exe"},
                          {"id": 2, "config_type": "txt", "binary_name": "b.exe", "config_locations": [7]},
                          {"id": 3, "config_type": "txt", "binary_name": "c.exe"}])"),
                 json::type_error);
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("a.exe"));
    EXPECT_TRUE(manager.isTitleIdKnown(1));
    EXPECT_TRUE(manager.isTitleIdKnown(2));
    EXPECT_FALSE(manager.isTitleIdKnown(3));
}

TEST_F(TitleLoadingTest, AByteOrderMarkAndWindowsLineEndsAreAccepted) {
    EXPECT_TRUE(load("\xEF\xBB\xBF[\r\n{\"config_type\": \"txt\",\r\n\"binary_name\": \"a.exe\"}\r\n]\r\n"));
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("a.exe"));
}

TEST_F(TitleLoadingTest, TheLastOfAMemberGivenTwiceCounts) {
    EXPECT_TRUE(load(R"([{"config_type": "text", "config_type": "txt", "binary_name": "a", "binary_name": "b"}])"));
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("b"));
}

TEST_F(TitleLoadingTest, AFolderOutsideTheAsciiNamesIsRead) {
    testing::writeFile(folder / L"\u00DCber \u5B9A" / "titles_db.json",
                       "[{\"config_type\": \"txt\", \"binary_name\": \"\u5B9A.exe\"}]");
    EXPECT_TRUE(manager.loadTitlesDatabase(folder.narrow() + "\\\u00DCber \u5B9A"));
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("\u5B9A.exe"));
}

class UserFoldersTest : public ::testing::Test {
protected:
    ~UserFoldersTest() override { faults::reset(); }

    // The locations, as looked for, of a title with one location for each placeholder.
    std::vector<std::string> locations() {
        testing::writeFile(folder / "titles_db.json", R"([{"config_type": "txt", "binary_name": "a.exe",
          "config_locations": ["%USERPROFILE%\\?", "%LOCALAPPDATA%\\?", "%APPDATA%\\?"]}])");
        TitleManager manager;
        EXPECT_TRUE(manager.loadTitlesDatabase(folder.narrow()));
        EXPECT_FALSE(manager.isTitleSupported("", "a.exe", ""));
        std::vector<std::string> result;
        for (const std::string& line : log.take()) {
            const std::string start = "Brisk : checking path '";
            if (line.starts_with(start)) {
                result.push_back(line.substr(start.size(), line.size() - start.size() - 2));
            }
        }
        return result;
    }

    testing::TemporaryFolder folder;
    testing::CapturedLog log;
};

TEST_F(UserFoldersTest, ThePlaceholdersStandForTheUsersOwnFolders) {
    const auto shellFolder = [](int csidl) {
        wchar_t path[MAX_PATH] = L"";
        EXPECT_EQ(SHGetFolderPathW(nullptr, csidl, nullptr, 0, path), S_OK);
        return toNarrow(std::wstring(path));
    };
    EXPECT_THAT(locations(),
                ElementsAre(shellFolder(0x28) + "\\?", shellFolder(0x1C) + "\\?", shellFolder(0x1A) + "\\?"));
}

TEST_F(UserFoldersTest, EachFolderIsAskedForOnceWhenTheManagerIsMade) {
    std::vector<std::string> calls;
    SHGetFolderPathWFault.intercept([&](HWND window, int csidl, HANDLE token, DWORD flags, wchar_t* path) -> HRESULT {
        calls.push_back(std::to_string(csidl) + (window || token || flags ? " with more" : ""));
        wcscpy(path, L"C:\\Users\\J\u00F6rg \u5B9A");
        return S_OK;
    });
    {
        const TitleManager made;
    }
    EXPECT_THAT(calls, ElementsAre("40", "28", "26"));
    calls.clear();
    EXPECT_THAT(locations(), ElementsAre("C:\\Users\\J\u00F6rg \u5B9A\\?", "C:\\Users\\J\u00F6rg \u5B9A\\?",
                                         "C:\\Users\\J\u00F6rg \u5B9A\\?"));
    EXPECT_THAT(calls, ElementsAre("40", "28", "26"));
}

TEST_F(UserFoldersTest, AFolderThatCannotBeToldIsEmpty) {
    SHGetFolderPathWFault.fail(E_FAIL);
    EXPECT_THAT(locations(), ElementsAre("\\?", "\\?", "\\?"));
    // Also when the one before it could be told.
    SHGetFolderPathWFault.intercept([](HWND, int csidl, HANDLE, DWORD, wchar_t* path) -> HRESULT {
        if (csidl == CSIDL_LOCAL_APPDATA) {
            return E_FAIL;
        }
        wcscpy(path, L"D:\\Told");
        return S_OK;
    });
    EXPECT_THAT(locations(), ElementsAre("D:\\Told\\?", "\\?", "D:\\Told\\?"));
}

TEST_F(UserFoldersTest, AFolderMayFillItsBuffer) {
    // Far more bytes than characters.
    std::string longest;
    for (int i = 0; i < MAX_PATH - 1; ++i) {
        longest += "\xE6\xB8\xB8";
    }
    SHGetFolderPathWFault.intercept([&longest](HWND, int, HANDLE, DWORD, wchar_t* path) -> HRESULT {
        wcscpy(path, toWide(longest).c_str());
        return S_OK;
    });
    // No file system has to bear the name.
    GetFileAttributesWFault.fail(INVALID_FILE_ATTRIBUTES, ERROR_FILE_NOT_FOUND);
    EXPECT_THAT(locations(), ElementsAre(longest + "\\?", longest + "\\?", longest + "\\?"));
}

TEST_F(UserFoldersTest, ResultCodesAreNotLookedAt) {
    SHGetFolderPathWFault.intercept([](HWND, int, HANDLE, DWORD, wchar_t* path) -> HRESULT {
        wcscpy(path, L"D:\\Left");
        return E_FAIL;
    });
    EXPECT_THAT(locations(), ElementsAre("D:\\Left\\?", "D:\\Left\\?", "D:\\Left\\?"));
}

} // namespace
} // namespace brisk
