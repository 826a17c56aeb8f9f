// Loading titles_db.json from real folders.
#include "titles/TitleManager.h"

#include "FaultPoints.h"
#include "support/JsonErrors.h"
#include "support/Sandbox.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <functional>

namespace brisk {
namespace {

using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
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
    void expectError(const std::string& text, const std::string& message) {
        EXPECT_THAT([&] { load(text); }, ThrowsMessage<Error>(StrEq(message))) << text;
    }

    testing::TemporaryFolder folder;
    testing::CapturedLog log;
    TitleManager manager;
};

TEST_F(TitleLoadingTest, MissingDatabaseCannotBeOpened) {
    EXPECT_FALSE(manager.loadTitlesDatabase(folder.narrow()));
    EXPECT_FALSE(manager.loadTitlesDatabase(folder.narrow() + "\\missing"));
    EXPECT_FALSE(manager.loadTitlesDatabase(""));
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : unable to open title database.", "Brisk : unable to open title database.",
                            "Brisk : unable to open title database."));
}

TEST_F(TitleLoadingTest, FolderOfTheDatabasesNameCannotBeOpened) {
    std::filesystem::create_directory(folder / "titles_db.json");
    EXPECT_FALSE(manager.loadTitlesDatabase(folder.narrow()));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : unable to open title database."));
}

TEST_F(TitleLoadingTest, DatabaseThatIsHeldOpenUnsharedCannotBeOpened) {
    testing::writeFile(folder / "titles_db.json", R"([{"config_type": "txt", "binary_name": "a.exe"}])");
    const HANDLE owner =
        CreateFileW((folder / "titles_db.json").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_FALSE(manager.loadTitlesDatabase(folder.narrow()));
    CloseHandle(owner);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : unable to open title database."));
    EXPECT_THAT(manager.getBinaryNames(), IsEmpty());
}

TEST_F(TitleLoadingTest, MalformedJsonIsTheLibrarysParseError) {
    for (const std::string text :
         {"", "[{\"id\": 1},\r\n]", "[] []", "[\"C:\\Games\"]", "[\"\xFC\"]", "// titles\n[]"}) {
        expectError<json::parse_error>(text, testing::jsonErrorOf(text));
    }
    expectError<json::out_of_range>("[1e400]", testing::jsonErrorOf("[1e400]"));
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_THAT(manager.getBinaryNames(), IsEmpty());
}

TEST_F(TitleLoadingTest, NothingInFrontOfASyntaxErrorIsSeen) {
    const std::string text = R"([{"id": 1, "config_type": "txt", "binary_name": "a.exe"},
                                 {"config_type": "text"},
                                 {"config_type": "txt", "binary_name": "b.exe", "config_locations": [7]},)";
    for (const std::string& malformed : {text, text + "{}] []", text + "1e400]", text + "\"\xFC\"]"}) {
        EXPECT_THROW(load(malformed), json::exception) << malformed;
        EXPECT_THAT(log.take(), IsEmpty()) << malformed;
        EXPECT_THAT(manager.getBinaryNames(), IsEmpty()) << malformed;
        EXPECT_FALSE(manager.isTitleIdKnown(1)) << malformed;
    }
}

TEST_F(TitleLoadingTest, LinesOfSkippedElementsComeBeforeTheFaultOfALaterOne) {
    expectError<json::type_error>(
        R"([{"config_type": "one"}, {"config_type": "two"},
            {"config_type": "txt", "binary_name": "b.exe", "config_locations": [7]}, {"config_type": "three"}])",
        testing::noTextErrorOf("7"));
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : unknown adaper type '\"one\"'.", "Brisk : unknown adaper type '\"two\"'."));
}

TEST_F(TitleLoadingTest, AnythingButAnArrayIsRejected) {
    for (const char* text :
         {"null", "{}", R"({"config_type": "txt"})", R"({"a": [{"config_type": "one"}]})", "1", "\"[]\"", "true"}) {
        EXPECT_FALSE(load(text)) << text;
        EXPECT_THAT(log.take(), ElementsAre("Brisk : unable to parse title database.")) << text;
    }
    EXPECT_THAT(manager.getBinaryNames(), IsEmpty());
}

TEST_F(TitleLoadingTest, EmptyArrayLoadsNothing) {
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

TEST_F(TitleLoadingTest, LaterTitleOfTheSameBinaryNameReplacesTheEarlier) {
    EXPECT_TRUE(load(R"([
      {"id": 1, "config_type": "txt", "binary_name": "a.exe", "title_name": "First", "luma_version": 1},
      {"id": 2, "config_type": "txt", "binary_name": "a.exe", "title_name": "Second"}])"));
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("a.exe"));
    EXPECT_EQ(manager.getTitleName("a.exe"), "Second");
    EXPECT_FALSE(manager.isLumaSupported("a.exe"));
    EXPECT_TRUE(manager.isTitleIdKnown(1));
    EXPECT_TRUE(manager.isTitleIdKnown(2));
}

TEST_F(TitleLoadingTest, LocationThatIsNoTextEndsLoadingAndTitlesFiledBeforeStay) {
    expectError<json::type_error>(
        R"([{"id": 1, "config_type": "txt", "binary_name": "a.exe"},
            {"id": 2, "config_type": "txt", "binary_name": "b.exe", "config_locations": [7]},
            {"id": 3, "config_type": "txt", "binary_name": "c.exe"}])",
        testing::noTextErrorOf("7"));
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("a.exe"));
    EXPECT_TRUE(manager.isTitleIdKnown(1));
    EXPECT_TRUE(manager.isTitleIdKnown(2));
    EXPECT_FALSE(manager.isTitleIdKnown(3));
}

TEST_F(TitleLoadingTest, ByteOrderMarkAndWindowsLineEndsAreAccepted) {
    EXPECT_TRUE(load("\xEF\xBB\xBF[\r\n{\"config_type\": \"txt\",\r\n\"binary_name\": \"a.exe\"}\r\n]\r\n"));
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("a.exe"));
}

TEST_F(TitleLoadingTest, LastOfAMemberGivenTwiceCounts) {
    EXPECT_TRUE(load(R"([{"config_type": "text", "config_type": "txt", "binary_name": "a", "binary_name": "b"}])"));
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("b"));
}

TEST_F(TitleLoadingTest, FolderOutsideTheAsciiNamesIsRead) {
    testing::writeFile(folder / L"\u00DCber \u5B9A" / "titles_db.json",
                       "[{\"config_type\": \"txt\", \"binary_name\": \"\u5B9A.exe\"}]");
    EXPECT_TRUE(manager.loadTitlesDatabase(folder.narrow() + "\\\u00DCber \u5B9A"));
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("\u5B9A.exe"));
}

// The placeholders with the numbers of their folders, in the order in which these are asked for.
const std::vector<std::pair<std::string, int>> kPlaceholders{
    {"%USERPROFILE%", 0x28}, {"%LOCALAPPDATA%", 0x1C}, {"%APPDATA%", 0x1A}};

class UserFoldersTest : public ::testing::Test {
protected:
    ~UserFoldersTest() override { faults::reset(); }

    // The locations, as looked for, of a title with one location for each placeholder.
    std::vector<std::string> locations() {
        json places = json::array();
        for (const auto& [placeholder, csidl] : kPlaceholders) {
            places.push_back(placeholder + "\\?");
        }
        const json title{{"config_type", "txt"}, {"binary_name", "a.exe"}, {"config_locations", places}};
        testing::writeFile(folder / "titles_db.json", json::array({title}).dump());
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

    // The locations where each folder is the one that is given for its number.
    static std::vector<std::string> expected(const std::function<std::string(int)>& folderOf) {
        std::vector<std::string> result;
        for (const auto& [placeholder, csidl] : kPlaceholders) {
            result.push_back(folderOf(csidl) + "\\?");
        }
        return result;
    }

    static std::vector<std::string> expected(const std::string& folder) {
        return expected([&folder](int) { return folder; });
    }

    testing::TemporaryFolder folder;
    testing::CapturedLog log;
};

TEST_F(UserFoldersTest, PlaceholdersStandForTheUsersOwnFolders) {
    const auto shellFolder = [](int csidl) {
        wchar_t path[MAX_PATH] = L"";
        EXPECT_EQ(SHGetFolderPathW(nullptr, csidl, nullptr, 0, path), S_OK);
        return toNarrow(std::wstring(path));
    };
    EXPECT_EQ(locations(), expected(shellFolder));
}

TEST_F(UserFoldersTest, EachFolderIsAskedForOnceWhenTheManagerIsMade) {
    std::vector<int> calls;
    std::vector<int> all;
    for (const auto& [placeholder, csidl] : kPlaceholders) {
        all.push_back(csidl);
    }
    SHGetFolderPathWFault.intercept([&](HWND window, int csidl, HANDLE token, DWORD flags, wchar_t* path) -> HRESULT {
        EXPECT_TRUE(!window && !token && !flags);
        calls.push_back(csidl);
        wcscpy(path, L"C:\\Users\\J\u00F6rg \u5B9A");
        return S_OK;
    });
    {
        const TitleManager made;
    }
    EXPECT_EQ(calls, all);
    calls.clear();
    EXPECT_EQ(locations(), expected("C:\\Users\\J\u00F6rg \u5B9A"));
    EXPECT_EQ(calls, all);
}

TEST_F(UserFoldersTest, FolderThatCannotBeToldIsEmpty) {
    // The machine's own drive D: may have no medium.
    GetFileAttributesWFault.fail(INVALID_FILE_ATTRIBUTES, ERROR_FILE_NOT_FOUND);
    SHGetFolderPathWFault.fail(E_FAIL);
    EXPECT_EQ(locations(), expected(""));
    // Also when the one before it could be told.
    SHGetFolderPathWFault.intercept([](HWND, int csidl, HANDLE, DWORD, wchar_t* path) -> HRESULT {
        if (csidl == CSIDL_LOCAL_APPDATA) {
            return E_FAIL;
        }
        wcscpy(path, L"D:\\Told");
        return S_OK;
    });
    EXPECT_EQ(locations(), expected([](int csidl) { return csidl == CSIDL_LOCAL_APPDATA ? "" : "D:\\Told"; }));
}

TEST_F(UserFoldersTest, FolderMayFillItsBuffer) {
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
    EXPECT_EQ(locations(), expected(longest));
}

TEST_F(UserFoldersTest, ResultCodesAreNotLookedAt) {
    GetFileAttributesWFault.fail(INVALID_FILE_ATTRIBUTES, ERROR_FILE_NOT_FOUND);
    SHGetFolderPathWFault.intercept([](HWND, int, HANDLE, DWORD, wchar_t* path) -> HRESULT {
        wcscpy(path, L"D:\\Left");
        return E_FAIL;
    });
    EXPECT_EQ(locations(), expected("D:\\Left"));
}

} // namespace
} // namespace brisk
