// What is read from one element of the title database.
#include "titles/TitleDatabase.h"

#include "support/JsonErrors.h"
#include "support/Sandbox.h"
#include "titles/TextConfigAdapter.h"

#include <limits>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace brisk {
namespace {

using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;
using ::testing::Pair;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

// All of a title as one text, to be compared whole.
std::string describe(const TitleConfigAdapter& title) {
    std::ostringstream text;
    text << title.id << '|' << title.lumaVersion << '|' << title.titleName << '|' << title.publisher << '|'
         << title.binaryName << '\n';
    for (const std::string& location : title.configLocations) {
        text << "location " << location << '\n';
    }
    for (const PatchCondition& condition : title.patchConditions) {
        text << "condition " << condition.key << (condition.absence ? " or absent" : "") << ':';
        for (const std::string& value : condition.presenceValues) {
            text << " '" << value << '\'';
        }
        for (const std::int32_t number : condition.presenceNumbers) {
            text << ' ' << number;
        }
        text << '\n';
    }
    for (const auto& [key, field] : title.configFields) {
        text << "field " << key << '|' << field.meta << '|' << field.text << '|' << field.createKey << '|'
             << field.createValue << '|' << field.value << '|' << field.intValue << '\n';
    }
    return text.str();
}

// What is read from an element that is given as JSON text.
std::string read(const char* element, const UserFolders& userFolders = {}) {
    TextConfigAdapter title;
    readTitle(json::parse(element), userFolders, title);
    return describe(title);
}

class TitleDatabaseTest : public ::testing::Test {
protected:
    testing::CapturedLog log;
};

TEST_F(TitleDatabaseTest, TypeIsATextFileOrTheRegistry) {
    EXPECT_EQ(readConfigType(json::parse(R"({"config_type": "txt"})")), ConfigType::TextFile);
    EXPECT_EQ(readConfigType(json::parse(R"({"config_type": "reg"})")), ConfigType::Registry);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(TitleDatabaseTest, ElementWithoutATextAsTypeIsSkippedSilently) {
    for (const char* element :
         {"{}", R"({"config_type": 1})", R"({"config_type": null})", R"({"config_type": ["txt"]})",
          R"({"Config_Type": "txt"})", "1", "null", R"("txt")", R"(["config_type", "txt"])"}) {
        EXPECT_EQ(readConfigType(json::parse(element)), std::nullopt) << element;
    }
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(TitleDatabaseTest, UnknownTypeIsLoggedAsJsonAndSkipped) {
    for (const char* element : {R"({"config_type": "text"})", R"({"config_type": "TXT"})", R"({"config_type": ""})",
                                R"({"config_type": "a\"b\n\u00fc"})"}) {
        EXPECT_EQ(readConfigType(json::parse(element)), std::nullopt) << element;
    }
    EXPECT_THAT(log.take(),
                ElementsAre(R"(Brisk : unknown adaper type '"text"'.)", R"(Brisk : unknown adaper type '"TXT"'.)",
                            R"(Brisk : unknown adaper type '""'.)",
                            "Brisk : unknown adaper type '\"a\\\"b\\n\u00FC\"'."));
}

TEST_F(TitleDatabaseTest, IdIsAnyNumberTakenAsAnUnsigned32BitOne) {
    const auto id = [](const std::string& number) { return readTitleId(json::parse("{\"id\": " + number + "}")); };
    EXPECT_THAT(id("1001"), Optional(1001u));
    EXPECT_THAT(id("0"), Optional(0u));
    EXPECT_THAT(id("-1"), Optional(4294967295u));
    EXPECT_THAT(id("-9223372036854775808"), Optional(0u));
    EXPECT_THAT(id("4294967295"), Optional(4294967295u));
    EXPECT_THAT(id("4294967297"), Optional(1u));
    EXPECT_THAT(id("18446744073709551615"), Optional(4294967295u));
    EXPECT_THAT(id("7.9"), Optional(7u));
    EXPECT_THAT(id("-7.9"), Optional(4294967289u));
    EXPECT_THAT(id("4294967297.5"), Optional(1u));
    EXPECT_THAT(id("1e3"), Optional(1000u));
    EXPECT_THAT(id("1e300"), Optional(0u));
    EXPECT_THAT(id("-1e300"), Optional(0u));
    EXPECT_THAT(id("18446744073709551616"), Optional(0u));
}

TEST_F(TitleDatabaseTest, IdThatIsNoNumberIsNone) {
    for (const char* element :
         {"{}", R"({"id": "1001"})", R"({"id": true})", R"({"id": null})", R"({"id": [1]})", R"({"ID": 1})"}) {
        EXPECT_EQ(readTitleId(json::parse(element)), std::nullopt) << element;
    }
}

TEST_F(TitleDatabaseTest, EveryMemberIsRead) {
    EXPECT_EQ(read(R"({
        "luma_version": 2, "title_name": "Ex\u00e4mple", "publisher": "Pub", "binary_name": "a.exe",
        "config_locations": ["%B%\\x.ini", "b"],
        "config_fields": [
          {"key": "k2", "meta": "width", "text": "words", "value": "v", "create_key": "ck", "create_value": "cv*"},
          {"key": "k1", "value": 5}],
        "patch_if": [{"key": "c1", "presence": ["x", 1, "y", 2], "absence": true}, {"key": "c0"}]})",
                   {{"%A%", "1"}, {"%B%", "2"}}),
              "0|2|Ex\u00E4mple|Pub|a.exe\n"
              "location 2\\x.ini\n"
              "location b\n"
              "condition c1 or absent: 'x' 'y' 1 2\n"
              "condition c0:\n"
              "field k1||||||5\n"
              "field k2|width|words|ck|cv*|v|0\n");
}

TEST_F(TitleDatabaseTest, AbsentMembersKeepTheirDefaults) {
    EXPECT_EQ(read("{}"), "0|0|||\n");
    EXPECT_EQ(read(R"({"config_locations": [], "config_fields": [], "patch_if": []})"), "0|0|||\n");
}

TEST_F(TitleDatabaseTest, MembersOfAnotherTypeAreIgnored) {
    EXPECT_EQ(read(R"({"luma_version": "2", "title_name": 1, "publisher": null, "binary_name": ["a.exe"],
                       "config_locations": "C:\\a.ini", "config_fields": {"key": "k"}, "patch_if": "k"})"),
              "0|0|||\n");
    EXPECT_EQ(read(R"({"luma_version": true})"), "0|0|||\n");
    EXPECT_EQ(read(R"({"config_fields": [{"key": 1, "meta": 2, "text": 3, "value": true, "create_key": 4,
                                          "create_value": 5}]})"),
              "0|0|||\nfield ||||||0\n");
    EXPECT_EQ(read(R"({"patch_if": [{"key": 1, "presence": "x", "absence": "true"}]})"), "0|0|||\ncondition :\n");
}

TEST_F(TitleDatabaseTest, FieldsAndConditionsThatAreNoObjectsAreEmptyOnes) {
    EXPECT_EQ(read(R"({"config_fields": ["k", 1], "patch_if": [null, "k"]})"),
              "0|0|||\ncondition :\ncondition :\nfield ||||||0\n");
}

TEST_F(TitleDatabaseTest, LumaVersionIsAnyNumberTakenAsAnUnsigned32BitOne) {
    EXPECT_EQ(read(R"({"luma_version": -1})"), "0|4294967295|||\n");
    EXPECT_EQ(read(R"({"luma_version": 4294967296})"), "0|0|||\n");
    EXPECT_EQ(read(R"({"luma_version": 2.7})"), "0|2|||\n");
    EXPECT_EQ(read(R"({"luma_version": 1e30})"), "0|0|||\n");
}

TEST_F(TitleDatabaseTest, NumericValueIsANumberAndATextValueIsTextEvenOfDigits) {
    TextConfigAdapter title;
    readTitle(json::parse(R"({"config_fields": [{"key": "a", "value": 1920}, {"key": "b", "value": "1920"}]})"), {},
              title);
    EXPECT_EQ(title.configFields["a"].value, "");
    EXPECT_EQ(title.configFields["a"].intValue, 1920);
    EXPECT_EQ(title.configFields["b"].value, "1920");
    EXPECT_EQ(title.configFields["b"].intValue, 0);
}

TEST_F(TitleDatabaseTest, NumbersOfFieldsAreTakenAsSigned32BitOnes) {
    const auto number = [](const std::string& value) {
        TextConfigAdapter title;
        readTitle(json::parse("{\"config_fields\": [{\"key\": \"a\", \"value\": " + value + "}]}"), {}, title);
        return title.configFields.at("a").intValue;
    };
    EXPECT_EQ(number("-1"), -1);
    EXPECT_EQ(number("2147483647"), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(number("2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(number("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(number("4294967301"), 5);
    EXPECT_EQ(number("2.9"), 2);
    EXPECT_EQ(number("-2.9"), -2);
    EXPECT_EQ(number("1e300"), 0);
}

TEST_F(TitleDatabaseTest, PresenceIsSplitIntoTextsAndNumbersAndTheRestIsDropped) {
    EXPECT_EQ(read(R"({"patch_if": [{"key": "k", "presence": ["x", 1, true]}]})"), "0|0|||\ncondition k: 'x' 1\n");
    EXPECT_EQ(read(R"({"patch_if": [{"key": "k", "presence": [-1, 1.9, 4294967298, null, ["y"], {"z": 1}, ""]}]})"),
              "0|0|||\ncondition k: '' -1 1 2\n");
}

TEST_F(TitleDatabaseTest, LaterFieldOfTheSameKeyOverwritesAllOfTheEarlier) {
    EXPECT_EQ(read(R"({"config_fields": [
                {"key": "k", "meta": "width", "text": "t", "value": "v", "create_key": "ck", "create_value": "cv"},
                {"key": "k", "value": 3}]})"),
              "0|0|||\nfield k||||||3\n");
}

TEST_F(TitleDatabaseTest, ConditionsOfTheSameKeyAreAllKept) {
    EXPECT_EQ(read(R"({"patch_if": [{"key": "k", "presence": [2]}, {"key": "k", "presence": [1]}]})"),
              "0|0|||\ncondition k: 2\ncondition k: 1\n");
}

TEST_F(TitleDatabaseTest, UserFoldersAreExpandedOnceAndTheGameFolderIsKept) {
    EXPECT_EQ(read(R"({"config_locations": ["%APPDATA%\\%APPDATA%\\a.ini", "%APPDIR%\\%APPDATA%", "%APPDIR%\\*"]})",
                   {{"%APPDATA%", "C:\\R"}}),
              "0|0|||\nlocation C:\\R\\%APPDATA%\\a.ini\nlocation %APPDIR%\\C:\\R\nlocation %APPDIR%\\*\n");
}

TEST_F(TitleDatabaseTest, LocationThatIsNoTextIsATypeError) {
    for (const std::string location : {"1", "1.5", "null", "true", "[]", "{}"}) {
        EXPECT_THAT([&] { read(("{\"config_locations\": [\"a\", " + location + "]}").c_str()); },
                    ThrowsMessage<json::type_error>(StrEq(testing::noTextErrorOf(location))))
            << location;
    }
}

} // namespace
} // namespace brisk
