// Keys and values as authors write them, and the rules that they break.
#include "tools/titles/DatabaseCheck.h"

#include <set>
#include <string>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace brisk::workbench {
namespace {

using Json = nlohmann::ordered_json;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::set<std::string> rulesOf(const Json& database) {
    std::set<std::string> rules;
    for (const Finding& finding : checkDatabase(SourceText("titles_db.json", database.dump())).findings) {
        if (finding.severity != Severity::Note) {
            rules.insert(finding.rule);
        }
    }
    return rules;
}

Json titleWith(const Json& members) {
    Json title{{"id", 1},
               {"config_type", "txt"},
               {"title_name", "One"},
               {"publisher", "P"},
               {"binary_name", "one.exe"},
               {"config_locations", {"%LOCALAPPDATA%\\One\\a.ini"}},
               {"config_fields", Json::array({{{"key", R"((\nW=)(\d+)())"}, {"value", 1}}})},
               {"patch_if", Json::array({{{"key", R"((\nV=)(\d+)())"}, {"presence", {1}}}})}};
    title.update(members);
    return Json::array({title});
}

std::set<std::string> ofField(const Json& field) {
    return rulesOf(titleWith({{"config_fields", Json::array({field})}}));
}

// With a value that the key takes.
std::set<std::string> ofKey(const std::string& key, const Json& value = 1) {
    return ofField({{"key", key}, {"value", value}});
}

std::set<std::string> ofCreation(const std::string& key, const Json& value, const std::string& createKey,
                                 const std::string& createValue) {
    return ofField({{"key", key}, {"value", value}, {"create_key", createKey}, {"create_value", createValue}});
}

std::set<std::string> ofPresence(const std::string& key, const Json& presence) {
    return rulesOf(titleWith({{"patch_if", Json::array({{{"key", key}, {"presence", presence}}})}}));
}

std::set<std::string> ofLocations(const Json& locations) {
    return rulesOf(titleWith({{"config_locations", locations}}));
}

std::set<std::string> ofRegistry(const Json& field, const std::string& location = "HKEY_CURRENT_USER/Software/One") {
    return rulesOf(titleWith({{"config_type", "reg"},
                              {"config_locations", {location}},
                              {"config_fields", Json::array({field})},
                              {"patch_if", Json::array({{{"key", "Version"}, {"presence", {1}}}})}}));
}

TEST(KeyRules, KeysOfTheDocumentsAreRight) {
    for (const char* key :
         {R"(((?:^|\n)Width=)(\d+)())", R"((\nfps_limit *= *)(\d+)())", R"((\[Display\][^\[]*\nWidth=)(\d+)())",
          R"re((seta r_mode ")(-?\d+)("))re", R"re((<resolution [^>]*width=")(\d+)("))re",
          R"re(("width"\s*:\s*)(\d+)())re", R"((\nresolution *= *)(\d+)(,\d+))", R"((\nresolution *= *\d+,)(\d+)())",
          R"((^[\s\S]*?\nWidth=)(\d+)())"}) {
        EXPECT_THAT(ofKey(key), IsEmpty()) << key;
    }
    EXPECT_THAT(ofKey(R"((\nMode=)([^\n]*)())", "Very High"), IsEmpty());
}

TEST(KeyRules, ValueThatTheKeyCannotTakeIsFound) {
    EXPECT_THAT(ofKey(R"((\nMode=)(Low|High)())", "Quality"), ElementsAre("value-not-found"));
    EXPECT_THAT(ofKey(R"((\nMode=)(\d+)())", "67.5"), ElementsAre("value-not-found"));
    EXPECT_THAT(ofKey(R"((\nMode=)(\d+)())", -1), ElementsAre("value-not-found"));
    EXPECT_THAT(ofKey(R"((\nMode=)(\d+px)())"), ElementsAre("value-not-found"));
    EXPECT_THAT(ofKey(R"((\nMode=)(\d+\.\d+)())"), ElementsAre("value-not-found"));
    EXPECT_THAT(ofKey(R"((\nMode=)(\w+)())", "Very High"), ElementsAre("value-not-found"));
    EXPECT_THAT(ofKey(R"re((\nMode=")([^"]*)("))re", "a\"b"), ElementsAre("value-not-found"));
    EXPECT_THAT(ofKey(R"((\nMode=)(-?\d+)())", -1), IsEmpty());
    EXPECT_THAT(ofField({{"key", R"((\nW=)(\d\d\d)())"}, {"meta", "width"}, {"value", 0}}),
                ElementsAre("value-not-found"));
}

TEST(KeyRules, AllowedValueThatTheKeyCannotTakeIsFound) {
    EXPECT_THAT(ofPresence(R"((\nV=)(\d+)())", {"beta"}), ElementsAre("presence-not-found"));
    EXPECT_THAT(ofPresence(R"((\nV=)(\d+)())", {-1}), ElementsAre("presence-not-found"));
    EXPECT_THAT(ofPresence(R"((\nV=)([\d.]+)())", {"1.2", "1.3"}), IsEmpty());
}

TEST(KeyRules, PlacesOfCreationAreRight) {
    constexpr char kMode[] = R"((\nMode=)([^\n]*)())";
    EXPECT_THAT(ofCreation(kMode, "Q", "($)()()", "Mode=*\n"), IsEmpty());
    EXPECT_THAT(ofCreation(R"(((?:^|\n)Mode=)([^\n]*)())", "Q", "(^)()()", "Mode=*\n"), IsEmpty());
    EXPECT_THAT(ofCreation(kMode, "Q", R"((^[\s\S]*)()())", "Mode=*\n"), IsEmpty());
    EXPECT_THAT(ofCreation(kMode, "Q", R"((\[V\]\n)()())", "Mode=*\n"), IsEmpty());
    EXPECT_THAT(ofCreation(R"((\[V\][^\[]*\nMode=)([^\n]*)())", "Q", R"((\nheight=\d+)()())", "\nMode=*"), IsEmpty());
    EXPECT_THAT(ofCreation(R"((<v>[\s\S]*?<m>)([^<]*)(</m>))", "Q", R"((<h>\d+</h>)()())", "\n<m>*</m>"), IsEmpty());
    EXPECT_THAT(
        ofCreation(R"((\nupscaling *= *)(\w+)())", "balanced", R"((\n)(; *upscaling *=[^\n]*)())", "upscaling = *"),
        IsEmpty());
}

TEST(KeyRules, CreationThatRunsIntoTheNextLineIsFound) {
    EXPECT_THAT(ofCreation(R"((\nMode=)([^\n]*)())", "Q", R"((\n\[V\]\n)()())", "Mode=*"),
                ElementsAre("created-not-found"));
    EXPECT_THAT(ofCreation(R"((\nMode=)([^\n]*)())", "Q", R"((\nheight=\d+)()())", "Mode=*"),
                ElementsAre("created-not-found"));
    EXPECT_THAT(ofCreation(R"((\nMode=)([^\n]*)())", "Q", R"((\n)(a?)())", "\r\nMode=*"),
                ::testing::Contains("carriage-return"));
}

TEST(KeyRules, BeginningOfTheTextForThatOfALineIsFound) {
    EXPECT_THAT(ofKey(R"((^Width=)(\d+)())"), ElementsAre("pattern-line-anchor"));
    EXPECT_THAT(ofKey(R"((^\s*Width=)(\d+)())"), ElementsAre("pattern-line-anchor"));
    EXPECT_THAT(ofKey(R"((^.*W=)(\d+)())"), ::testing::Contains("pattern-line-anchor"));
    EXPECT_THAT(ofPresence(R"((^<\?xml version=")(\d+)("))", {1}), IsEmpty());
}

TEST(KeyRules, GreedyPartInFrontOfTheValueIsFound) {
    EXPECT_THAT(ofKey(R"re((<res.*width=")(\d+)("))re"), ElementsAre("pattern-greedy"));
    EXPECT_THAT(ofKey(R"((\[D\][\s\S]*\nW=)(\d+)())"), ElementsAre("pattern-greedy"));
    EXPECT_THAT(ofKey(R"((\nRes=.+ )(\d+)())"), ElementsAre("pattern-greedy"));
    EXPECT_THAT(ofKey(R"((\[D\].*\nW=)(\d+)())"), IsEmpty());
}

TEST(KeyRules, NameWithoutABeginningIsFound) {
    EXPECT_THAT(ofKey(R"((\[D\][^\[]*W=)(\d+)())"), ElementsAre("pattern-unanchored"));
    EXPECT_THAT(ofKey(R"((\[D\][^\[]*\bW=)(\d+)())"), IsEmpty());
}

TEST(KeyRules, CostBeyondTheFilesSizeIsFound) {
    for (const char* key : {R"((\na*a*=)(\w+)())", R"((\n\d*\d*=)(\w+)())", R"((\nM\s*\s*=)(\w+)())",
                            R"((\nM\w+\w+=)(\w+)())", R"((\nW=)(\w+\w+\w+)(;))", R"((\n(?:a?){30}a{30}=)(\w+)())",
                            R"((<a>[\s\S]*?<b>[\s\S]*?<c>)(\w+)())", R"((\n[^=]*=)(\w+)())"}) {
        EXPECT_THAT(ofKey(key, "Quality"), ElementsAre("pattern-cost")) << key;
    }
    EXPECT_THAT(ofKey(R"((\n(?:a?){3}=)(\w+)())", "Quality"), IsEmpty());
}

TEST(KeyRules, CarriageReturnIsFound) {
    EXPECT_THAT(ofKey(R"((\r\nW=)(\d+)())"), ElementsAre("carriage-return"));
    EXPECT_THAT(ofKey(R"((\nW=)(\d+)(\r))"), ElementsAre("carriage-return"));
    EXPECT_THAT(ofKey(R"((\r?\nW=)(\d+)())"), IsEmpty());
    EXPECT_THAT(ofKey(R"(((?:\r\n|\n)W=)(\d+)())"), IsEmpty());
    EXPECT_THAT(ofKey(R"((\nM=)([^\n]*)())", "a\rb"), ElementsAre("carriage-return"));
}

TEST(KeyRules, ConstructsOfOtherDialectsAreNamed) {
    const auto messageOf = [](const std::string& key) {
        for (const Finding& finding :
             checkDatabase(
                 SourceText("", titleWith({{"config_fields", Json::array({{{"key", key}, {"value", 1}}})}}).dump()))
                 .findings) {
            if (finding.rule == "pattern-syntax") {
                return finding.message.substr(0, finding.message.find(';'));
            }
        }
        return std::string("none");
    };
    EXPECT_EQ(messageOf(R"(((?<=\n)W=)(\d+)())"), "there is no lookbehind");
    EXPECT_EQ(messageOf(R"((?<name>\nW=)(\d+)())"), "groups have no names, only numbers");
    EXPECT_EQ(messageOf(R"((?i)(\nW=)(\d+)())"), "there are no options such as (?i)");
    EXPECT_EQ(messageOf(R"(((\nW=)(\d+)())"), "a bracket '(' or ')' has no counterpart here");
    EXPECT_THAT(ofKey(R"((\A\h*W=)(\d+)())"), ::testing::Contains("pattern-letter-escape"));
}

TEST(KeyRules, MisspeltPlaceholdersAreFound) {
    EXPECT_THAT(ofLocations({R"(%LOCALAPPDATA\A\a.ini)"}), ElementsAre("unknown-placeholder"));
    EXPECT_THAT(ofLocations({R"(%LOCALAPPDATA%A\a.ini)"}), ElementsAre("misplaced-placeholder"));
    EXPECT_THAT(ofLocations({R"(%APPDIR%a.ini)"}), ElementsAre("misplaced-placeholder"));
    EXPECT_THAT(ofLocations({R"(%LOCALAPPDATA%)"}), ElementsAre("folder-location"));
    EXPECT_THAT(ofLocations({R"(%LOCALAPPDATA%\100% Pure\a.ini)"}), IsEmpty());
}

TEST(KeyRules, LocationThatCouldBeCreatedBeforeALaterOneIsFound) {
    const std::string last = R"(%APPDATA%\A\b.ini)";
    for (const char* first :
         {R"(%APPDATA%\A\a.ini)", R"(%APPDATA%/a/a.ini)", R"(%USERPROFILE%\AppData\Roaming\A\a.ini)",
          R"(%USERPROFILE%\Documents\a.ini)", R"(%USERPROFILE%\Saved Games\a.ini)",
          R"(%USERPROFILE%\AppData\Local\a.ini)", R"(C:\a.ini)", R"(%APPDIR%\a.ini)"}) {
        EXPECT_THAT(ofLocations({first, last}), ElementsAre("created-location")) << first;
    }
    EXPECT_THAT(ofLocations({R"(%APPDATA%\A\a.ini)", R"(%APPDATA%\A\sub\b.ini)"}), ElementsAre("created-location"));
    EXPECT_THAT(ofLocations({R"(%APPDATA%\A\sub\a.ini)", R"(%APPDATA%\A\b.ini)"}), IsEmpty());
    EXPECT_THAT(ofLocations({R"(%USERPROFILE%\Documents\A\a.ini)", R"(%USERPROFILE%\OneDrive\Documents\A\a.ini)"}),
                IsEmpty());
}

TEST(KeyRules, WhatNoPathHasIsFound) {
    EXPECT_THAT(ofLocations({"%APPDATA%\\A\\a.ini\n"}), ElementsAre("path-character"));
    EXPECT_THAT(ofLocations({"%APPDATA%\\A\\a.ini "}), ElementsAre("path-character"));
    EXPECT_THAT(ofLocations({"%APPDATA%\\<A>\\a.ini"}), ElementsAre("path-character"));
    EXPECT_THAT(ofLocations({"C:\\Users\\Me\\a.ini"}), ElementsAre("own-folder"));
    EXPECT_THAT(rulesOf(titleWith({{"binary_name", "bin\\one.exe"}})), ElementsAre("binary-name"));
    EXPECT_THAT(rulesOf(titleWith({{"binary_name", "one.exe "}})), ElementsAre("binary-name"));
}

TEST(KeyRules, CreationInTheRegistryIsFound) {
    EXPECT_THAT(ofRegistry({{"key", "W"}, {"value", 5}, {"create_key", "W"}, {"create_value", "*"}}),
                ElementsAre("registry-creation"));
    EXPECT_THAT(ofRegistry({{"key", "W"}, {"value", "On"}, {"create_key", "V"}, {"create_value", "*"}}),
                ElementsAre("registry-creation"));
    EXPECT_THAT(ofRegistry({{"key", "W"}, {"value", "On"}, {"create_key", "W"}, {"create_value", "*"}}), IsEmpty());
    EXPECT_THAT(ofRegistry({{"key", R"((\nW=)(\d+)())"}, {"value", 5}}), ElementsAre("registry-expression"));
    EXPECT_THAT(ofRegistry({{"key", "W"}, {"value", 5}}, "HKEY_CURRENT_USER//One"), ElementsAre("registry-slash"));
    EXPECT_THAT(ofRegistry({{"key", "W"}, {"value", 5}}, "HKEY_CURRENT_USER/%APPDATA%/One"),
                ElementsAre("registry-placeholder"));
}

TEST(KeyRules, EntitiesAreShown) {
    EXPECT_THAT(rulesOf(titleWith({{"title_name", "A &amp; B &#38; C &#x26;"}})), IsEmpty());
    EXPECT_THAT(rulesOf(titleWith({{"title_name", "A & B"}})), ElementsAre("shown-markup"));
    EXPECT_THAT(rulesOf(titleWith({{"title_name", "A &nbsp; B"}})), ElementsAre("shown-markup"));
}

} // namespace
} // namespace brisk::workbench
