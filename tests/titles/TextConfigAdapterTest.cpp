#include "titles/TextConfigAdapter.h"

#include "FaultPoints.h"
#include "support/Sandbox.h"

#include <limits>
#include <regex>
#include <stdexcept>

#include <gmock/gmock.h>

namespace brisk {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

constexpr std::int32_t kMinimum = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMaximum = std::numeric_limits<std::int32_t>::max();

class TextConfigSearchTest : public ::testing::Test {
protected:
    ~TextConfigSearchTest() override { faults::reset(); }

    std::string in(const std::string& rest) const { return folder.narrow() + "\\" + rest; }

    testing::TemporaryFolder folder;
    testing::CapturedLog log;
    TextConfigAdapter title;
};

TEST_F(TextConfigSearchTest, WithoutLocationsEveryOperationOnTheFileFailsSilently) {
    EXPECT_FALSE(title.findConfig("C:\\Game"));
    EXPECT_FALSE(title.loadConfig());
    EXPECT_FALSE(title.saveConfig());
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(TextConfigSearchTest, LocationsAreTriedInTheirOrderUntilOneExists) {
    testing::writeFile(folder / "b.ini", "");
    testing::writeFile(folder / "c.ini", "");
    title.configLocations = {in("a.ini"), in("b.ini"), in("c.ini")};
    EXPECT_TRUE(title.findConfig(""));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : checking path '" + in("a.ini") + "'.", "Brisk : config not found.",
                                        "Brisk : checking path '" + in("b.ini") + "'.", "Brisk : config found."));
}

TEST_F(TextConfigSearchTest, NothingIsFoundWhenNoLocationExists) {
    title.configLocations = {in("a.ini"), "", in("missing\\b.ini")};
    EXPECT_FALSE(title.findConfig(""));
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : checking path '" + in("a.ini") + "'.", "Brisk : config not found.",
                            "Brisk : checking path ''.", "Brisk : config not found.",
                            "Brisk : checking path '" + in("missing\\b.ini") + "'.", "Brisk : config not found."));
}

TEST_F(TextConfigSearchTest, FolderIsFoundToo) {
    title.configLocations = {folder.narrow()};
    EXPECT_TRUE(title.findConfig(""));
    EXPECT_FALSE(title.loadConfig());
}

TEST_F(TextConfigSearchTest, GameFolderIsPutInForGood) {
    testing::writeFile(folder / "cfg.ini", "Width=1");
    title.configLocations = {"%APPDIR%\\cfg.ini"};
    EXPECT_FALSE(title.findConfig(""));
    EXPECT_THAT(title.configLocations, ElementsAre("%APPDIR%\\cfg.ini"));
    EXPECT_TRUE(title.findConfig(folder.narrow()));
    EXPECT_TRUE(title.findConfig("D:\\Another"));
    EXPECT_TRUE(title.findConfig(""));
    EXPECT_THAT(title.configLocations, ElementsAre(in("cfg.ini")));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : checking path '%APPDIR%\\cfg.ini'.", "Brisk : config not found.",
                                        "Brisk : checking path '" + in("cfg.ini") + "'.", "Brisk : config found.",
                                        "Brisk : checking path '" + in("cfg.ini") + "'.", "Brisk : config found.",
                                        "Brisk : checking path '" + in("cfg.ini") + "'.", "Brisk : config found."));
    EXPECT_TRUE(title.loadConfig());
    EXPECT_EQ(title.content, "Width=1");
}

TEST_F(TextConfigSearchTest, GameFolderIsNotPutIntoALocationThatBeginsOtherwise) {
    title.configLocations = {"C:\\%APPDIR%\\cfg.ini"};
    EXPECT_FALSE(title.findConfig(folder.narrow()));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : checking path 'C:\\%APPDIR%\\cfg.ini'.", "Brisk : config not found."));
}

TEST_F(TextConfigSearchTest, LocationsAfterTheFoundOneStayAsTheyAre) {
    testing::writeFile(folder / "cfg.ini", "");
    title.configLocations = {"%APPDIR%\\cfg.ini", "%APPDIR%\\other.ini"};
    EXPECT_TRUE(title.findConfig(folder.narrow()));
    EXPECT_THAT(title.configLocations, ElementsAre(in("cfg.ini"), "%APPDIR%\\other.ini"));
}

TEST_F(TextConfigSearchTest, WildcardIsReplacedForGood) {
    testing::writeFile(folder / "saves" / "123" / "cfg.ini", "Width=1");
    title.configLocations = {in("saves\\*\\cfg.ini")};
    EXPECT_TRUE(title.findConfig(""));
    EXPECT_THAT(title.configLocations, ElementsAre(in("saves\\123\\cfg.ini")));
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : checking path '" + in("saves\\123\\cfg.ini") + "'.", "Brisk : config found."));
    EXPECT_TRUE(title.loadConfig());
    EXPECT_EQ(title.content, "Width=1");
}

TEST_F(TextConfigSearchTest, WildcardOfTheGameFolderIsResolved) {
    testing::writeFile(folder / "profile" / "cfg.ini", "");
    title.configLocations = {"%APPDIR%\\*\\cfg.ini"};
    EXPECT_TRUE(title.findConfig(folder.narrow()));
    EXPECT_THAT(title.configLocations, ElementsAre(in("profile\\cfg.ini")));
}

TEST_F(TextConfigSearchTest, WildcardWithoutAnySubdirectoryIsNotFoundAndStays) {
    title.configLocations = {in("*\\cfg.ini")};
    EXPECT_FALSE(title.findConfig(""));
    EXPECT_THAT(title.configLocations, ElementsAre(in("*\\cfg.ini")));
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : checking path '" + in("*\\cfg.ini") + "'.", "Brisk : config not found."));
}

TEST_F(TextConfigSearchTest, WildcardBelowNoFolderIsPassedOverSilently) {
    testing::writeFile(folder / "cfg.ini", "");
    title.configLocations = {in("missing\\*\\cfg.ini"), in("cfg.ini*"), in("cfg.ini")};
    EXPECT_TRUE(title.findConfig(""));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : checking path '" + in("cfg.ini") + "'.", "Brisk : config found."));
    title.configLocations.pop_back();
    EXPECT_FALSE(title.findConfig(""));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(TextConfigSearchTest, FileSystemErrorLeavesTheSearchAndTheNextOneBeginsAnew) {
    testing::writeFile(folder / "b.ini", "");
    GetFileAttributesWFault.fail(INVALID_FILE_ATTRIBUTES, ERROR_ACCESS_DENIED);
    title.configLocations = {in("a.ini"), in("b.ini")};
    EXPECT_THAT([this] { title.findConfig(""); },
                ThrowsMessage<std::filesystem::filesystem_error>(HasSubstr("exists")));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : checking path '" + in("a.ini") + "'."));
    faults::reset();
    EXPECT_TRUE(title.findConfig(""));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : checking path '" + in("a.ini") + "'.", "Brisk : config not found.",
                                        "Brisk : checking path '" + in("b.ini") + "'.", "Brisk : config found."));
}

TEST_F(TextConfigSearchTest, FolderThatCannotBeListedLeavesTheSearchWithoutALine) {
    testing::writeFile(folder / "profile" / "cfg.ini", "");
    FindFirstFileWFault.fail(INVALID_HANDLE_VALUE, ERROR_ACCESS_DENIED);
    title.configLocations = {"%APPDIR%\\*\\cfg.ini", folder.narrow()};
    EXPECT_THAT([this] { title.findConfig(folder.narrow()); },
                ThrowsMessage<std::filesystem::filesystem_error>(HasSubstr("directory_iterator::directory_iterator")));
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_THAT(title.configLocations, ElementsAre(in("*\\cfg.ini"), folder.narrow()));
    faults::reset();
    EXPECT_TRUE(title.findConfig(""));
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : checking path '" + in("profile\\cfg.ini") + "'.", "Brisk : config found."));
}

TEST_F(TextConfigSearchTest, ReadOnlyFileIsLoadedAndTheTextSavedToTheNextLocation) {
    testing::writeFile(folder / "cfg.ini", "Width=1280");
    std::filesystem::permissions(folder / "cfg.ini", std::filesystem::perms::owner_read);
    // Windows removes no read-only file.
    const auto restore = [this] {
        std::filesystem::permissions(folder / "cfg.ini", std::filesystem::perms::owner_all);
    };
    if (std::ofstream(toPath(in("cfg.ini")), std::ios::app).is_open()) {
        restore();
        GTEST_SKIP() << "this user may write to read-only files";
    }
    title.configLocations = {in("cfg.ini")};
    EXPECT_TRUE(title.findConfig(""));
    EXPECT_TRUE(title.loadConfig());
    EXPECT_FALSE(title.saveConfig());
    EXPECT_EQ(title.content, "Width=1280");
    title.configLocations.push_back(in("b.ini"));
    EXPECT_TRUE(title.setIntValue("(Width=)(\\d+)()", 1920));
    EXPECT_TRUE(title.saveConfig());
    EXPECT_EQ(testing::readFile(folder / "cfg.ini"), "Width=1280");
    EXPECT_EQ(testing::readFile(folder / "b.ini"), "Width=1920");
    restore();
}

class TextConfigValueTest : public ::testing::Test {
protected:
    // The content after setting.
    std::string set(const std::string& before, const std::string& key, const std::string& value) {
        title.content = before;
        EXPECT_TRUE(title.setValue(key, value));
        return title.content;
    }

    std::string get(const std::string& text, const std::string& key) {
        title.content = text;
        return title.getValue(key, "default");
    }

    std::int32_t getInt(const std::string& value) {
        title.content = "Width=" + value;
        return title.getIntValue("(Width=)(.*)()", 7);
    }

    TextConfigAdapter title;
};

TEST_F(TextConfigValueTest, GettersOfANewTitleGiveTheirDefaults) {
    EXPECT_EQ(title.content, "");
    EXPECT_EQ(title.getValue("(Width=)(\\d+)()", "none"), "none");
    EXPECT_EQ(title.getIntValue("(Width=)(\\d+)()", 5), 5);
}

TEST_F(TextConfigValueTest, EveryMatchIsReplaced) {
    EXPECT_EQ(set("Width=1280\nWidth=800\n", "(Width=)(\\d+)()", "1920"), "Width=1920\nWidth=1920\n");
}

TEST_F(TextConfigValueTest, TextBeforeAndAfterTheValueIsKept) {
    EXPECT_EQ(set("<a width=\"1280\" height=\"720\"/>", "(width=\")(\\d+)(\")", "1920"),
              "<a width=\"1920\" height=\"720\"/>");
    EXPECT_EQ(set("w = 1280 ; px\n", "(w *= *)(\\d+)( *;)", "x"), "w = x ; px\n");
}

TEST_F(TextConfigValueTest, LineEndMayBelongToTheKeyAndIsKept) {
    const std::string key = "(ResolutionWidth=)(\\d+)(\\r?\\n|$)";
    EXPECT_EQ(get("ResolutionWidth=1280\n", key), "1280");
    EXPECT_EQ(get("ResolutionWidth=1280.5\n", key), "default");
    EXPECT_EQ(set("ResolutionWidth=1280\r\nResolutionWidth=1\nResolutionWidth=2", key, "1920"),
              "ResolutionWidth=1920\r\nResolutionWidth=1920\nResolutionWidth=1920");
}

TEST_F(TextConfigValueTest, NumberIsWrittenInDecimal) {
    title.content = "a=0;";
    const auto after = [this](std::int32_t number) {
        EXPECT_TRUE(title.setIntValue("(a=)(-?\\d+)()", number));
        return title.content;
    };
    EXPECT_EQ(after(1234567), "a=1234567;");
    EXPECT_EQ(after(-1), "a=-1;");
    EXPECT_EQ(after(kMinimum), "a=-2147483648;");
    EXPECT_EQ(after(kMaximum), "a=2147483647;");
    EXPECT_EQ(after(0), "a=0;");
}

TEST_F(TextConfigValueTest, SettingAMissingSettingSucceedsAndChangesNothing) {
    EXPECT_EQ(set("Height=720\n", "(Width=)(\\d+)()", "1920"), "Height=720\n");
    EXPECT_EQ(set("", "(Width=)(\\d+)()", "1920"), "");
}

TEST_F(TextConfigValueTest, KeyWithoutAThirdGroupLosesTheTextThatNoGroupHolds) {
    EXPECT_EQ(set("Width=1280;", "(Width=)(\\d+);", "1920"), "Width=1920");
    EXPECT_EQ(set("Width=1280;", "Width=(\\d+)", "1920"), "12801920;");
    EXPECT_EQ(set("Width=1280;", "Width=\\d+", "1920"), "1920;");
}

TEST_F(TextConfigValueTest, DollarSignInAValueIsAReferenceUnlessDoubled) {
    EXPECT_EQ(set("Name=x;", "(Name=)(\\w+)()", "a$1b"), "Name=aName=b;");
    EXPECT_EQ(set("Name=x;", "(Name=)(\\w+)()", "$&$&"), "Name=Name=xName=x;");
    EXPECT_EQ(set("Name=x;", "(Name=)(\\w+)()", "5$$"), "Name=5$;");
    EXPECT_EQ(set("Name=x;", "(Name=)(\\w+)()", "US$ 5"), "Name=US$ 5;");
}

TEST_F(TextConfigValueTest, ValueOfTheFirstMatchIsGiven) {
    EXPECT_EQ(get("Width=1280\nWidth=800\n", "(Width=)(\\d+)()"), "1280");
    EXPECT_EQ(get("Width=1280\n", "(Height=)(\\d+)()"), "default");
}

TEST_F(TextConfigValueTest, MatchWithoutASecondGroupGivesEmptyTextNotTheDefault) {
    EXPECT_EQ(get("Width=1280", "(Width)=\\d+"), "");
    EXPECT_EQ(get("Width=1280", "Width"), "");
    EXPECT_EQ(get("Width=1280", "(Width=)(x)?()"), "");
    EXPECT_EQ(get("Width=", "(Width=)(\\d*)()"), "");
}

TEST_F(TextConfigValueTest, LetterCaseMatters) {
    EXPECT_EQ(get("width=1", "(Width=)(\\d+)()"), "default");
}

TEST_F(TextConfigValueTest, GettersSeeTheTextUpToItsFirstNulByteAndSettersSeeAll) {
    const std::string text("a=1\n\0Width=1280\na=2", 19);
    EXPECT_EQ(get(text, "(Width=)(\\d+)()"), "default");
    EXPECT_EQ(get(text, "(a=)(\\d)()"), "1");
    EXPECT_EQ(set(text, "(Width=)(\\d+)()", "9"), std::string("a=1\n\0Width=9\na=2", 16));
}

TEST_F(TextConfigValueTest, NumberIsReadUpToTheFirstCharacterThatIsNoDigit) {
    EXPECT_EQ(getInt("42abc"), 42);
    EXPECT_EQ(getInt(" \t42abc"), 42);
    EXPECT_EQ(getInt("-5"), -5);
    EXPECT_EQ(getInt("+5"), 5);
    EXPECT_EQ(getInt("007"), 7);
    EXPECT_EQ(getInt("1.9"), 1);
    EXPECT_EQ(getInt("0x10"), 0);
    EXPECT_EQ(getInt("2147483647"), kMaximum);
    EXPECT_EQ(getInt("-2147483648"), kMinimum);
}

TEST_F(TextConfigValueTest, MissingNumberIsTheDefaultWhateverThatIs) {
    EXPECT_EQ(title.getIntValue("(Width=)(.*)()", kMinimum), kMinimum);
    EXPECT_EQ(title.getIntValue("(Width=)(.*)()", kMaximum), kMaximum);
    EXPECT_EQ(title.getIntValue("(Width=)(.*)()", 0), 0);
}

TEST_F(TextConfigValueTest, ValueWithoutDigitsIsAnInvalidArgument) {
    for (const char* value : {"abc", "", "-", " ", "- 5"}) {
        EXPECT_THAT([&] { getInt(value); }, ThrowsMessage<std::invalid_argument>(StrEq("invalid stoi argument")))
            << value;
    }
}

TEST_F(TextConfigValueTest, ValueBeyond32BitsIsOutOfRange) {
    for (const char* value : {"2147483648", "-2147483649", "99999999999999999999999", "-99999999999999999999999"}) {
        EXPECT_THAT([&] { getInt(value); }, ThrowsMessage<std::out_of_range>(StrEq("stoi argument out of range")))
            << value;
    }
}

TEST_F(TextConfigValueTest, KeyThatIsNoRegularExpressionIsAStandardError) {
    title.content = "text";
    EXPECT_THROW(title.getValue("(Width", ""), std::regex_error);
    EXPECT_THROW(title.getIntValue("[", 0), std::regex_error);
    EXPECT_THROW(title.setValue("*", "1"), std::regex_error);
    EXPECT_THROW(title.setIntValue("(a)\\2", 1), std::regex_error);
    EXPECT_EQ(title.content, "text");
}

} // namespace
} // namespace brisk
