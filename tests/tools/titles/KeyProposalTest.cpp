#include "tools/titles/KeyProposal.h"

#include "pattern/SettingPattern.h"
#include "titles/TextSettings.h"
#include "tools/titles/DatabaseCheck.h"
#include "tools/titles/SettingsSamples.h"
#include "tools/titles/TextMode.h"

#include <gmock/gmock.h>

namespace brisk::workbench {
namespace {

std::vector<SettingPlace> allSettings(const std::string& text) {
    return findSettings(text, [](const std::string&, std::size_t, std::size_t) { return true; });
}

// The key for the n-th setting of the name in a sample.
std::string keyFor(const std::string& sample, const std::string& name, std::size_t number = 1) {
    const std::string text = readAsText(settingsSample(sample));
    for (const SettingPlace& place : allSettings(text)) {
        if (place.name == name && --number == 0) {
            const auto proposal = proposeKey(text, place, std::nullopt);
            return proposal ? proposal->key : "no key";
        }
    }
    return "no such setting";
}

TEST(KeyProposalTest, FlatNamesBeginALine) {
    EXPECT_EQ(keyFor("flat.cfg", "height"), R"(((?:^|\n)height=)(\d+)())");
    EXPECT_EQ(keyFor("flat.cfg", "fps_limit"), R"(((?:^|\n)fps_limit *= *)(-?\d+)())");
    EXPECT_EQ(keyFor("flat.cfg", "name"), R"(((?:^|\n)name: *)(\S[^\n]*)())");
    EXPECT_EQ(keyFor("flat.cfg", "mode"), R"(((?:^|\n)mode )(-?\d+)())");
    EXPECT_EQ(keyFor("engine.ini", "sg.ResolutionQuality"), R"((\nsg\.ResolutionQuality=)(-?[\d.]+)())");
    EXPECT_EQ(keyFor("engine.ini", "+Paths[0]"), R"((\n\+Paths\[0\]=)([^\n]*)())");
}

TEST(KeyProposalTest, FirstLineMayHaveAByteOrderMark) {
    EXPECT_EQ(keyFor("flat.cfg", "width"), R"(((?:^(?:\xEF\xBB\xBF)?|\n)width=)(\d+)())");
}

TEST(KeyProposalTest, SectionIsNamedWhereTheNameAloneIsNotEnough) {
    EXPECT_EQ(keyFor("engine.ini", "bUseVSync"), R"((\nbUseVSync=)(\w+)())");
    EXPECT_EQ(keyFor("engine.ini", "FullscreenMode", 1),
              R"((\[/Script/Game\.UserSettings\][^\[]*\nFullscreenMode=)(-?\d+)())");
    EXPECT_EQ(keyFor("first.ini", "Width", 2), R"((\[B\][^\[]*\nWidth=)(\d+)())");
    EXPECT_EQ(keyFor("first.ini", "Width", 3), R"((\[C\][^\n]*(?:\n(?!\[)[^\n]*)*?\nWidth=)(\d+)())");
}

TEST(KeyProposalTest, IndentationBlanksAndCommentsStayAsTheyAre) {
    EXPECT_EQ(keyFor("sections.ini", "Height", 1), R"((\n *Height *= *)(\d+)())");
    EXPECT_EQ(keyFor("sections.ini", "Height", 2), R"((\[Window\][^\[]*\n[ \t]*Height[ \t]*=[ \t]*)(\d+)())");
    EXPECT_EQ(keyFor("sections.ini", "Mode"), R"((\n *Mode *= *)([^\s#]+(?:[ \t]+[^\s#]+)*)())");
    EXPECT_EQ(keyFor("sections.ini", "Name"), R"((\nName=")([^"\n]*)("))");
    EXPECT_EQ(keyFor("sections.ini", "Empty"), R"((\nEmpty=)([^\n]*)())");
}

TEST(KeyProposalTest, ConsoleVariablesAreQuotedOrNot) {
    EXPECT_EQ(keyFor("cvar.cfg", "r_mode"), R"re(((?:^|\n)seta r_mode ")(-?\d+)("))re");
    EXPECT_EQ(keyFor("cvar.cfg", "r_customwidth"), R"re(((?:^|\n)seta r_customwidth ")(\d+)("))re");
    EXPECT_EQ(keyFor("cvar.cfg", "r_gamma"), R"(((?:^|\n)seta r_gamma )(-?[\d.]+)())");
    EXPECT_EQ(keyFor("cvar.cfg", "r_fullscreen"), R"(((?:^|\n)r_fullscreen )(-?\d+)())");
    EXPECT_EQ(keyFor("vdf.txt", "setting.defaultres"), R"re(((?:^|\n)[ \t]*"setting\.defaultres"[ \t]+")(-?\d+)("))re");
}

TEST(KeyProposalTest, AttributesAreFoundInTheirElement) {
    EXPECT_EQ(keyFor("video.xml", "resolution height"), R"re((<resolution(?:\s[^>]*)?\sheight=")(\d+)("))re");
    EXPECT_EQ(keyFor("video.xml", "window width"), R"re((<window(?:\s[^>]*)?\swidth\s*=\s*")(\d+)("))re");
    EXPECT_EQ(keyFor("video.xml", "setting value", 2),
              R"re((<setting(?:\s[^>]*)?\sname="fps"(?:\s[^>]*)?\svalue=")(-?\d+)("))re");
    EXPECT_EQ(keyFor("video.xml", "setting value", 3),
              R"re((<setting(?:\s[^>]*)?\svalue=")(-?[\d.]+)("(?:\s[^>]*)?\sid="bias"))re");
}

TEST(KeyProposalTest, ElementsAreFoundInsideOfOthers) {
    EXPECT_EQ(keyFor("video.xml", "Mode"), R"((<Mode>\s*)([^\s<]+(?:[ \t]+[^\s<]+)*)(\s*</Mode>))");
    EXPECT_EQ(keyFor("video.xml", "Width", 2), R"((<Window>(?:(?!</Window>)[\s\S])*?<Width>)(\d+)(</Width>))");
    EXPECT_EQ(keyFor("video.xml", "integer", 2), R"((<key>B</key>\s*<integer>)(-?\d+)(</integer>))");
}

TEST(KeyProposalTest, MembersAreFoundInsideOfObjects) {
    EXPECT_EQ(keyFor("set.json", "version"), R"re(("version"\s*:\s*)(-?\d+)())re");
    EXPECT_EQ(keyFor("set.json", "width", 1), R"re((^(?:\xEF\xBB\xBF)?\s*\{[^{}]*"width"\s*:\s*)(\d+)())re");
    EXPECT_EQ(keyFor("set.json", "width", 2), R"re(("display"\s*:\s*\{[^{}]*"width"\s*:\s*)(\d+)())re");
    EXPECT_EQ(keyFor("set.json", "width", 4),
              R"re(("window"\s*:\s*\{[^{}]*"sub"\s*:\s*\{[^{}]*"width"\s*:\s*)(\d+)())re");
    EXPECT_EQ(keyFor("set.json", "width", 5), R"re(("window"\s*:\s*\{(?:[^{}]|\{[^{}]*\})*?"width"\s*:\s*)(\d+)())re");
    EXPECT_EQ(keyFor("set.json", "mode"), R"re(("mode"\s*:\s*")((?:[^"\\\n]|\\[^\n])*)("))re");
    EXPECT_EQ(keyFor("set.json", "vsync"), R"re(("vsync"\s*:\s*)(\w+)())re");
    EXPECT_EQ(keyFor("set.json", "resolution[1]"), R"re(("resolution"\s*:\s*\[\s*[^\s,;\[\]{}]+\s*,\s*)(-?\d+)())re");
    EXPECT_EQ(keyFor("set.json", "value", 2), R"re(("name"\s*:\s*"b"[^{}]*"value"\s*:\s*)(-?\d+)())re");
}

TEST(KeyProposalTest, MembersAreFoundInsideOfTables) {
    EXPECT_EQ(keyFor("conf.lua", "full screen"), R"re((\["full screen"\]\s*=\s*)(\w+)())re");
    EXPECT_EQ(keyFor("conf.lua", "width", 1), R"((\bcfg\s*=\s*\{[^{}]*\bwidth\s*=\s*)(\d+)())");
    EXPECT_EQ(keyFor("conf.lua", "width", 2), R"((\n *display\s*=\s*\{[^{}]*\bwidth\s*=\s*)(\d+)())");
    EXPECT_EQ(keyFor("conf.lua", "mode"), R"((\n *mode\s*=\s*')([^'\n]*)('))");
    EXPECT_EQ(keyFor("conf.lua", "cfg.scale"), R"(((?:^|\n)cfg\.scale\s*=\s*)(-?[\d.]+)())");
    EXPECT_EQ(keyFor("lib.cfg", "width", 2), R"(((?:^|\n)window\s*:\s*\{[^{}]*\bwidth\s*=\s*)(\d+)())");
}

// Each key matches once, reads and writes its setting by the service's own code, and `check` does not warn of it.
TEST(KeyProposalTest, EverySettingOfEverySampleHasAKey) {
    std::size_t count = 0;
    for (const SettingsSample& sample : settingsSamples()) {
        const std::string text = readAsText(sample.bytes);
        for (const SettingPlace& place : allSettings(text)) {
            SCOPED_TRACE(sample.name + (": " + place.name));
            const auto proposal = proposeKey(text, place, std::nullopt);
            // Only the value of the setting that it names may tell a name from the others, and that is no anchor.
            if (place.name == "setting name" && !proposal) {
                continue;
            }
            ASSERT_TRUE(proposal);
            std::size_t matches = 0;
            SettingPattern(proposal->key).forEachMatch(text, [&](const SettingPattern::Match& match) {
                EXPECT_EQ(match.size(), 4U);
                EXPECT_EQ(match[2], proposal->value);
                ++matches;
                return true;
            });
            EXPECT_EQ(matches, 1U) << proposal->key;
            std::string changed = text;
            setTextValue(changed, proposal->key, proposal->value);
            EXPECT_EQ(changed, text) << proposal->key;
            nlohmann::ordered_json field = proposal->field;
            if (proposal->value.empty()) {
                field["value"] = "filled in";
            }
            const nlohmann::ordered_json title{{"config_type", "txt"},
                                               {"config_fields", nlohmann::ordered_json::array({field})}};
            for (const Finding& finding :
                 checkDatabase(SourceText("", nlohmann::ordered_json::array({title}).dump())).findings) {
                EXPECT_FALSE(finding.rule.starts_with("pattern-") && finding.severity != Severity::Note)
                    << proposal->key << ": " << finding.message;
            }
            ++count;
        }
    }
    EXPECT_GT(count, 90U);
}

TEST(KeyProposalTest, NeighboursAreNoAnchors) {
    // The comment has the same element: the key may hold no other setting's value to tell them apart.
    const std::string text = "<settings>\n  <!-- <display width=\"800\" height=\"600\"/> -->\n"
                             "  <display width=\"1280\" height=\"720\" windowed=\"false\"/>\n</settings>\n";
    const std::vector<SettingPlace> places = allSettings(text);
    ASSERT_EQ(places.size(), 3U);
    EXPECT_EQ(proposeKey(text, places[0], std::nullopt)->key, R"re((\n *<display(?:\s[^>]*)?\swidth=")(\d+)("))re");
    EXPECT_EQ(proposeKey(text, places[1], std::nullopt)->key, R"re((\n *<display(?:\s[^>]*)?\sheight=")(\d+)("))re");
    const std::string oneLine = "<s><!--<d w=\"8\" h=\"6\"/>--><d w=\"2\" h=\"7\"/></s>";
    EXPECT_FALSE(proposeKey(oneLine, allSettings(oneLine)[0], std::nullopt));
}

TEST(KeyProposalTest, WhatOnlyOpensABlockIsNoSetting) {
    EXPECT_THAT(allSettings("video:\n  width: 1280\n"), ::testing::SizeIs(1));
    const std::string json = "{\n  \"resolution\": {\n    \"width\": 1280\n  }\n}\n";
    const std::size_t line = json.find("{\n    ");
    EXPECT_THAT(findSettings(json, [&](const std::string&, std::size_t begin, std::size_t) { return begin == line; }),
                ::testing::IsEmpty());
    const std::string xml = "<a>\n<!-- width=\"5\" -->\n<b c=\"1\"/>\n</a>\n";
    const std::size_t comment = xml.find("width");
    EXPECT_THAT(findSettings(xml, [&](const std::string&, std::size_t begin,
                                      std::size_t) { return begin >= comment && begin < comment + 12; }),
                ::testing::IsEmpty());
}

TEST(KeyProposalTest, NothingIsProposedForWhatStandsTwiceAlike) {
    const std::string text = "[A]\nx=1\n[B]\nx=2\n[A]\nx=1\n";
    const std::vector<SettingPlace> places = allSettings(text);
    ASSERT_EQ(places.size(), 3U);
    EXPECT_TRUE(proposeKey(text, places[1], std::nullopt));
    EXPECT_FALSE(proposeKey(text, places[2], std::nullopt));
}

TEST(KeyProposalTest, WantedValueIsFoundAgainOnceItIsWritten) {
    const std::string text = "a=1\nb=on\n";
    const std::vector<SettingPlace> places = allSettings(text);
    EXPECT_EQ(proposeKey(text, places[0], "high")->field,
              (nlohmann::ordered_json{{"key", "((?:^|\\n)a=)([^\\n]*)()"}, {"value", "high"}}));
    EXPECT_EQ(proposeKey(text, places[0], "-1")->field,
              (nlohmann::ordered_json{{"key", "((?:^|\\n)a=)(-?\\d+)()"}, {"value", -1}}));
    EXPECT_EQ(proposeKey(text, places[1], "off")->field,
              (nlohmann::ordered_json{{"key", "((?:^|\\n)b=)(\\w+)()"}, {"value", "off"}}));
}

TEST(KeyProposalTest, PartsOfAValueAreSettings) {
    const std::string text = "resolution = 1920x1080\n";
    const std::vector<SettingPlace> parts = partsOf(text, allSettings(text)[0]);
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_EQ(
        proposeKey(text, parts[0], std::nullopt)->field,
        (nlohmann::ordered_json{{"key", "((?:^|\\n)resolution *= *)(\\d+)(x)"}, {"meta", "width"}, {"value", 0}}));
    EXPECT_EQ(
        proposeKey(text, parts[1], std::nullopt)->field,
        (nlohmann::ordered_json{{"key", "((?:^|\\n)resolution *= *\\d+x)(\\d+)()"}, {"meta", "height"}, {"value", 0}}));
}

TEST(KeyProposalTest, LargeAndHostileTextsAreReadInTime) {
    for (const char* piece : {"{", "[\"", "<a>", "<a b=\"", "a={", "[x]\n", "a=1,", "</b>", "--[[", "{\"a\":[1,"}) {
        std::string text = "{";
        while (text.size() < 300000) {
            text += piece;
        }
        findSettings(text, [](const std::string&, std::size_t, std::size_t) { return false; });
        findSettings('<' + text, [](const std::string&, std::size_t, std::size_t) { return false; });
        findSettings("[s]\n" + text, [](const std::string&, std::size_t, std::size_t) { return false; });
    }
}

} // namespace
} // namespace brisk::workbench
