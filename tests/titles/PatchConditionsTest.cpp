#include "titles/PatchConditions.h"

#include "support/Sandbox.h"

#include <limits>
#include <map>

#include <gmock/gmock.h>

namespace brisk {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::int32_t kMaximum = std::numeric_limits<std::int32_t>::max();

// A title of settings in memory that notes how it is asked.
class RecordingTitle final : public TitleConfigAdapter {
public:
    bool findConfig(const std::string&) override { return note("findConfig"); }
    bool loadConfig() override { return note("loadConfig"); }
    bool saveConfig() override { return note("saveConfig"); }
    bool setValue(const std::string& key, const std::string&) override { return note("setValue " + key); }
    bool setIntValue(const std::string& key, std::int32_t) override { return note("setIntValue " + key); }
    std::int32_t getIntValue(const std::string& key, std::int32_t defaultNumber) override {
        note("getIntValue " + key + " " + std::to_string(defaultNumber));
        return texts.contains(key) ? std::stoi(texts[key]) : defaultNumber;
    }
    std::string getValue(const std::string& key, const std::string& defaultText) override {
        note("getValue " + key + " '" + defaultText + "'");
        return texts.contains(key) ? texts[key] : defaultText;
    }

    std::map<std::string, std::string> texts;
    std::vector<std::string> calls;

private:
    bool note(const std::string& call) {
        calls.push_back(call);
        return true;
    }
};

class PatchConditionsTest : public ::testing::Test {
protected:
    // The log's lines, with what waits for the next line at the front of "next".
    std::vector<std::string> takeLog() {
        logLine("next");
        return log.take();
    }

    testing::CapturedLog log;
    RecordingTitle title;
};

TEST_F(PatchConditionsTest, WithoutConditionsNothingIsAskedAndAllIsMet) {
    EXPECT_TRUE(meetsConditions(title));
    EXPECT_THAT(title.calls, IsEmpty());
    EXPECT_THAT(takeLog(), ElementsAre("next"));
}

TEST_F(PatchConditionsTest, ConditionWithoutAllowedValuesChecksNothing) {
    title.patchConditions = {{"Renderer", {}, {}, false}, {"Renderer", {}, {}, true}};
    EXPECT_TRUE(meetsConditions(title));
    EXPECT_THAT(title.calls, IsEmpty());
    EXPECT_THAT(takeLog(), ElementsAre("next"));
}

TEST_F(PatchConditionsTest, AllowedTextIsMet) {
    title.texts = {{"Renderer", "Vulkan"}};
    title.patchConditions = {{"Renderer", {"D3D12", "Vulkan"}, {}, false}};
    EXPECT_TRUE(meetsConditions(title));
    EXPECT_THAT(title.calls, ElementsAre("getValue Renderer ''"));
    EXPECT_THAT(takeLog(), ElementsAre("next"));
}

TEST_F(PatchConditionsTest, TextIsComparedWhole) {
    for (const char* current : {"vulkan", "Vulkan 1", "Vul", " Vulkan"}) {
        title.texts = {{"Renderer", current}};
        title.patchConditions = {{"Renderer", {"Vulkan"}, {}, true}};
        EXPECT_FALSE(meetsConditions(title));
        EXPECT_THAT(takeLog(), ElementsAre("Brisk : current configuration with key 'Renderer' and value '" +
                                           std::string(current) + "' doesn't meet requirements.next"));
    }
}

TEST_F(PatchConditionsTest, ForbiddenTextEndsTheCheckWithAMessageThatTheNextLineEnds) {
    title.texts = {{"Renderer", "D3D11"}};
    title.patchConditions = {{"Renderer", {"Vulkan"}, {1}, false}, {"Other", {"x"}, {}, false}};
    EXPECT_FALSE(meetsConditions(title));
    EXPECT_THAT(title.calls, ElementsAre("getValue Renderer ''"));
    EXPECT_THAT(log.take(), IsEmpty());
    logLine("Brisk : next.");
    logLine("Brisk : and the one after.");
    EXPECT_THAT(log.take(), ElementsAre("Brisk : current configuration with key 'Renderer' and value 'D3D11' doesn't "
                                        "meet requirements.Brisk : next.",
                                        "Brisk : and the one after."));
}

TEST_F(PatchConditionsTest, MissingTextWithAbsenceIsMet) {
    title.patchConditions = {{"Renderer", {"Vulkan"}, {}, true}};
    EXPECT_TRUE(meetsConditions(title));
    EXPECT_THAT(takeLog(), ElementsAre("next"));
}

TEST_F(PatchConditionsTest, EmptyTextCountsAsMissingEvenWhenItIsAllowed) {
    title.texts = {{"Renderer", ""}};
    title.patchConditions = {{"Renderer", {""}, {}, false}};
    EXPECT_FALSE(meetsConditions(title));
    EXPECT_THAT(takeLog(),
                ElementsAre("Brisk : unable to find configuration field with key 'Renderer'. Skip patching.", "next"));
}

TEST_F(PatchConditionsTest, AfterAMissingSettingTheOtherConditionsAreStillEvaluated) {
    title.texts = {{"Mode", "fast"}};
    title.patchConditions = {{"Renderer", {"Vulkan"}, {}, false},
                             {"Width", {}, {1, 2}, false},
                             {"Level", {"x"}, {5}, false},
                             {"Mode", {"fast"}, {}, false}};
    EXPECT_FALSE(meetsConditions(title));
    EXPECT_THAT(title.calls, ElementsAre("getValue Renderer ''", "getIntValue Width 2147483647", "getValue Level ''",
                                         "getIntValue Level 2147483647", "getValue Mode ''"));
    EXPECT_THAT(takeLog(),
                ElementsAre("Brisk : unable to find configuration field with key 'Renderer'. Skip patching.",
                            "Brisk : unable to find configuration field with key 'Width'. Skip patching.",
                            "Brisk : unable to find configuration field with key 'Level'. Skip patching.",
                            "Brisk : unable to find configuration field with key 'Level'. Skip patching.", "next"));
}

TEST_F(PatchConditionsTest, ForbiddenValueAfterAMissingOneEndsTheCheck) {
    title.texts = {{"Mode", "slow"}};
    title.patchConditions = {
        {"Renderer", {"Vulkan"}, {}, false}, {"Mode", {"fast"}, {}, false}, {"Level", {"x"}, {}, false}};
    EXPECT_FALSE(meetsConditions(title));
    EXPECT_THAT(title.calls, ElementsAre("getValue Renderer ''", "getValue Mode ''"));
    EXPECT_THAT(
        takeLog(),
        ElementsAre("Brisk : unable to find configuration field with key 'Renderer'. Skip patching.",
                    "Brisk : current configuration with key 'Mode' and value 'slow' doesn't meet requirements.next"));
}

TEST_F(PatchConditionsTest, AllowedNumberIsMet) {
    title.texts = {{"Version", "-4"}};
    title.patchConditions = {{"Version", {}, {3, -4}, false}};
    EXPECT_TRUE(meetsConditions(title));
    EXPECT_THAT(title.calls, ElementsAre("getIntValue Version 2147483647"));
    EXPECT_THAT(takeLog(), ElementsAre("next"));
}

TEST_F(PatchConditionsTest, ForbiddenNumberIsDecimalWhateverTheBaseOfTheLineBefore) {
    title.texts = {{"Version", "255"}};
    title.patchConditions = {{"Version", {}, {3}, true}, {"Other", {"x"}, {}, false}};
    processLog.text(std::hex, std::showbase);
    EXPECT_FALSE(meetsConditions(title));
    EXPECT_THAT(title.calls, ElementsAre("getIntValue Version 2147483647"));
    EXPECT_THAT(
        takeLog(),
        ElementsAre("Brisk : current configuration with key 'Version' and value '255' doesn't meet requirements.next"));
}

TEST_F(PatchConditionsTest, MissingNumberWithAbsenceIsMet) {
    title.patchConditions = {{"Version", {}, {3}, true}};
    EXPECT_TRUE(meetsConditions(title));
    EXPECT_THAT(takeLog(), ElementsAre("next"));
}

TEST_F(PatchConditionsTest, LargestNumberCountsAsMissingEvenWhenItIsAllowed) {
    title.texts = {{"Version", "2147483647"}};
    title.patchConditions = {{"Version", {}, {kMaximum}, false}};
    EXPECT_FALSE(meetsConditions(title));
    EXPECT_THAT(takeLog(),
                ElementsAre("Brisk : unable to find configuration field with key 'Version'. Skip patching.", "next"));
}

TEST_F(PatchConditionsTest, AllowedTextsAndNumbersTogetherMustBothBeMet) {
    title.texts = {{"Version", "3"}};
    title.patchConditions = {{"Version", {"3"}, {3}, false}};
    EXPECT_TRUE(meetsConditions(title));
    EXPECT_THAT(title.calls, ElementsAre("getValue Version ''", "getIntValue Version 2147483647"));
    title.patchConditions = {{"Version", {"3"}, {4}, false}};
    EXPECT_FALSE(meetsConditions(title));
    EXPECT_THAT(
        takeLog(),
        ElementsAre("Brisk : current configuration with key 'Version' and value '3' doesn't meet requirements.next"));
}

} // namespace
} // namespace brisk
