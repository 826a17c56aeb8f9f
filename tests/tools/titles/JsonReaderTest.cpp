#include "tools/titles/JsonReader.h"

#include "tools/titles/DatabaseCheck.h"
#include "tools/titles/FindingOutput.h"
#include "tools/titles/JsonText.h"

#include "support/Places.h"

#include <fstream>
#include <iterator>
#include <random>
#include <sstream>

#include <gmock/gmock.h>

namespace brisk::workbench {
namespace {

// "LINE:COLUMN RULE" of the fault; "none" for JSON.
std::string faultOf(const std::string& json) {
    const SourceText source("a.json", json);
    const JsonOutcome outcome = readJsonElements(source.text(), [](const JsonValue&) {});
    if (!outcome.fault) {
        return "none";
    }
    const Place place = source.placeOf(outcome.fault->offset);
    return std::to_string(place.line) + ':' + std::to_string(place.column) + ' ' + outcome.fault->message;
}

TEST(JsonFaults, MissingCommaIsBehindTheElementThatLacksIt) {
    EXPECT_EQ(faultOf("[{\"a\": 1}\n {\"b\": 2}]"), "1:10 a comma is missing here");
    EXPECT_EQ(faultOf("[{\"a\": 1 \"b\": 2}]"), "1:9 a comma is missing here");
    EXPECT_EQ(faultOf("[\"\xC3\xBC\" 1]"), "1:5 a comma is missing here");
}

TEST(JsonFaults, TrailingCommaIsAtTheComma) {
    EXPECT_EQ(faultOf("[{\"a\": 1,\n}]"), "1:9 a comma before the closing bracket; take it away");
    EXPECT_EQ(faultOf("[1, 2, ]"), "1:6 a comma before the closing bracket; take it away");
}

TEST(JsonFaults, MissingBracketIsWhereItShouldStand) {
    EXPECT_EQ(faultOf("[{\"a\": 1]"), "1:9 this object is not closed: '}' is missing here");
    EXPECT_EQ(faultOf("[[1}"), "1:4 this array is not closed: ']' is missing here");
    EXPECT_EQ(faultOf("[{\"a\": [1, 2]"), "1:2 this object is never closed: the file ends before its '}'");
}

TEST(JsonFaults, WordsNumbersAndTextsAreExplained) {
    EXPECT_EQ(faultOf("[{\"a\": True}]"), "1:8 write true in small letters");
    EXPECT_EQ(faultOf("[{a: 1}]"), "1:3 a key in quotation marks should stand here");
    EXPECT_EQ(faultOf("[{'a': 1}]"), "1:3 a text stands in double quotation marks, not in single ones");
    EXPECT_EQ(faultOf("[{\"a\": txt}]"), "1:8 a text stands in quotation marks: \"txt\"");
    EXPECT_EQ(faultOf("[{\"a\": 0x10}]"), "1:8 JSON has no hexadecimal numbers; write a decimal one");
    EXPECT_EQ(faultOf("[{\"a\": 010}]"), "1:8 a number has no leading zeros");
    EXPECT_EQ(faultOf("[{\"a\": \"(\\d+)\"}]"),
              "1:10 JSON has no escape '\\d'; a backslash itself is written twice: \"\\\\d\"");
    EXPECT_EQ(faultOf("[{\"a\": \"b\n\"}]"),
              "1:8 this text is not closed: its quotation mark is missing before the line ends");
    EXPECT_EQ(faultOf("[{\"a\": \"\\ud800\"}]"), "1:9 this is half of a surrogate pair; its other half is missing");
    EXPECT_EQ(faultOf("[{\"a\" 1}]"), "1:6 a colon is missing behind this key");
    EXPECT_EQ(faultOf("[] []"), "1:4 the database has ended before this; nothing may follow");
    EXPECT_EQ(faultOf("/* games */ []"), "1:1 JSON has no comments; the service does not start with one");
    EXPECT_EQ(faultOf(""), "1:1 the file is empty; a database is an array of titles: []");
}

TEST(JsonFaults, NumberWithLeadingZerosIsNamedWhateverFollows) {
    EXPECT_EQ(faultOf("[{\"id\": 01, \"x\": 1}]"), "1:9 a number has no leading zeros");
    EXPECT_EQ(faultOf("[{\"id\": 007 }]"), "1:9 a number has no leading zeros");
    EXPECT_EQ(faultOf("[{\"id\": -01, \"x\": 1}]"), "1:9 a number has no leading zeros");
}

TEST(JsonFaults, TextThatIsNotClosedIsShownAtItsBeginning) {
    constexpr char kUnclosed[] =
        "this text is not closed where it should be: a quotation mark is missing at its end, or "
        "one inside of it is not written \\\"";
    EXPECT_EQ(faultOf("[{\"a\": \"One, \"publisher\": \"P\"}]"), std::string("1:8 ") + kUnclosed);
    EXPECT_EQ(faultOf("[{\n \"patch_if: [ {\"key\": 1} ]}]"), std::string("2:2 ") + kUnclosed);
    EXPECT_EQ(faultOf("[{\"a\": \"the \"best\" one\"}]"), std::string("1:8 ") + kUnclosed);
}

TEST(JsonFaults, ArrayThatIsNotClosedBeforeAKeyIsNamed) {
    EXPECT_EQ(faultOf("[{\"a\": [ 1, 2, \"b\": 3}]"), "1:14 this array is not closed: ']' is missing here");
}

TEST(JsonFaults, LookalikesOfQuotesAndBlanksAreNamed) {
    EXPECT_EQ(faultOf("[{\xE2\x80\x9C"
                      "a\xE2\x80\x9D: 1}]"),
              "1:3 this is a typographic quotation mark; a text stands in straight ones, \"");
    EXPECT_EQ(faultOf("[{\"a\":\xC2\xA0"
                      "1}]"),
              "1:7 this only looks like a blank: it is another character (no-break space); write a blank");
    EXPECT_EQ(faultOf("\xEF\xBB\xBF\xEF\xBB\xBF[]"),
              "1:2 a byte-order mark may stand at the beginning of the file only, and once");
}

TEST(JsonFaults, ByteOrderMarkIsNoFault) {
    EXPECT_EQ(faultOf("\xEF\xBB\xBF[]"), "none");
}

// The service's own reader decides what is JSON.
TEST(JsonFaults, AreFoundExactlyWhereTheServicesReaderRefuses) {
    constexpr std::string_view kPieces[] = {"[",       "]",  "{",      "}",        ",",    ":", "\"a\"",
                                            "\"\\n\"", "1",  "-2.5e3", "true",     "null", " ", "\n",
                                            "x",       "\"", "01",     "\xC3\xBC", "\xFF", "/", "'"};
    std::mt19937 random(20240607);
    for (int round = 0; round < 20000; ++round) {
        std::string json = "[";
        for (auto length = random() % 12; length > 0; --length) {
            json += kPieces[random() % std::size(kPieces)];
        }
        json += random() % 2 == 0 ? "]" : "";
        EXPECT_EQ(faultOf(json) == "none", nlohmann::json::accept(json)) << json;
    }
}

TEST(JsonValues, KnowTheirPlaces) {
    const std::string json = R"([ { "a" : "x\n\u00fcy", "b": [1, -2.50, null] , "c":{"d":false} } ])";
    std::vector<std::string> found;
    readJsonElements(json, [&](const JsonValue& title) {
        for (const JsonValue::Member& member : title.members) {
            found.push_back(json.substr(member.keyBegin, member.keyEnd - member.keyBegin) + ' ' +
                            json.substr(member.value.begin, member.value.end - member.value.begin));
        }
        for (const JsonValue& item : title.members[1].value.items) {
            found.push_back(json.substr(item.begin, item.end - item.begin));
        }
    });
    EXPECT_THAT(found, ::testing::ElementsAre(R"("a" "x\n\u00fcy")", R"("b" [1, -2.50, null])", R"("c" {"d":false})",
                                              "1", "-2.50", "null"));
}

TEST(JsonValues, PlaceInsideATextCountsItsEscapes) {
    const std::string json = R"(["a\n\u00fc\\z"])"; // a, line feed, two bytes, a backslash, z
    readJsonElements(json, [&](const JsonValue& text) {
        EXPECT_EQ(placeInText(json, text, 0), json.find('a'));
        EXPECT_EQ(placeInText(json, text, 2), json.find("\\u"));
        EXPECT_EQ(placeInText(json, text, 4), json.find("\\\\"));
        EXPECT_EQ(placeInText(json, text, 5), json.find('z'));
        EXPECT_EQ(placeInText(json, text, 6), json.find('z') + 1);
    });
}

std::string printed(const std::string& json) {
    const SourceText source("db.json", json);
    std::ostringstream out;
    for (const Finding& finding : checkDatabase(source).findings) {
        printFinding(out, source, finding, false);
    }
    return out.str();
}

TEST(FindingOutput, ShowsTheSourceLineWithACaretBelowThePlace) {
    EXPECT_EQ(
        printed("[\n\t\"\xC3\xBC\", 5\n]"),
        "db.json:1:1: error[no-title]: there is no title in the database, and the service ends at its start\n"
        "    [\n"
        "    ^\n"
        "db.json:2:2: error[element-type]: a title is an object, {...}; the service skips anything else in silence\n"
        "    \t\"\xC3\xBC\", 5\n"
        "    \t^~~\n"
        "db.json:2:7: error[element-type]: a title is an object, {...}; the service skips anything else in silence\n"
        "    \t\"\xC3\xBC\", 5\n"
        "    \t     ^\n");
}

TEST(FindingOutput, ShowsOfALongLineWhatIsAroundThePlace) {
    const std::string json = "[" + std::string(1000, ' ') + "5," + std::string(1000, ' ') + "6]";
    EXPECT_THAT(printed(json),
                ::testing::HasSubstr(
                    "db.json:1:1002: error[element-type]: a title is an object, {...}; the service skips "
                    "anything else in silence\n    " +
                    std::string(80, ' ') + "5," + std::string(78, ' ') + "\n    " + std::string(80, ' ') + "^\n"));
}

TEST(FindingOutput, KeepsToALineWhateverATextHolds) {
    const std::string text =
        printed(R"([{"config_type": "txt", "a\n\u001b[31m)" + std::string(5000, 'x') + R"(": 1}])");
    const std::string first = text.substr(0, text.find('\n'));
    EXPECT_THAT(text, ::testing::Not(::testing::HasSubstr("\x1B")));
    EXPECT_THAT(text, ::testing::HasSubstr("error[unknown-key]: \"a??[31mxxx"));
    for (std::istringstream lines(text); lines.good();) {
        std::string line;
        std::getline(lines, line);
        EXPECT_LT(line.size(), 800U);
    }
}

TEST(FindingOutput, PathIsAReferenceInSarif) {
    const SourceText source("my titles\\100% #1.json", "[]");
    const auto result = toSarifResult(source, {"no-title", Severity::Error, 0, 1, "none", std::nullopt});
    EXPECT_EQ(result["locations"][0]["physicalLocation"]["artifactLocation"]["uri"], "my%20titles/100%25%20%231.json");
}

TEST(DatabaseCheck, FindsNoErrorAndNoWarningInTheExamples) {
    std::ifstream file(testing::place(BRISK_EXAMPLES "/titles_db.json"), std::ios::binary);
    const std::string json((std::istreambuf_iterator<char>(file)), {});
    const DatabaseCheck check = checkDatabase(SourceText("titles_db.json", json));
    EXPECT_EQ(check.titles, 5U);
    for (const Finding& finding : check.findings) {
        EXPECT_EQ(finding.severity, Severity::Note) << finding.message;
    }
}

} // namespace
} // namespace brisk::workbench
