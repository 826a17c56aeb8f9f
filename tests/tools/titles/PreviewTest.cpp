// What a preview says about fields, conditions and passes of a title with a text file or a registry key.
#include "tools/titles/Preview.h"

#include "tools/titles/DatabaseTitles.h"
#include "tools/titles/PreviewFindings.h"
#include "tools/titles/ProfileFiles.h"
#include "tools/titles/RegistryExport.h"

#include <gmock/gmock.h>

namespace brisk::workbench {
namespace {

constexpr char kFile[] = "[Display]\r\nWidth=1280\r\nMode=Off\r\n";

TitleRecord title(const std::string& fields, const std::string& rest = "") {
    const std::string json = R"j([{"config_type": "txt", "title_name": "The Game", "binary_name": "game.exe",
                                  "config_locations": ["game.ini"], "config_fields": [)j" +
                             fields + "]" + rest + "}]";
    return readTitles(SourceText("titles_db.json", json), {}).at("game.exe").title;
}

TitlePreview preview(const TitleRecord& record, const std::string& bytes,
                     const Display& display = displayOf({1920, 1080})) {
    TextPreviewAdapter adapter(record);
    adapter.source = fileAt("game.ini", bytes);
    return previewText(adapter, {}, display);
}

TEST(PreviewTest, ShowsTheBytesTheDiffTheLogAndThatItSettles) {
    const TitlePreview result = preview(
        title(
            R"j({"key": "(\\nWidth=)(\\d+)()", "meta": "width", "value": 0}, {"key": "(\\nMode=)(\\w+)()", "value": "Off"})j"),
        kFile);
    EXPECT_EQ(result.after, "[Display]\r\nWidth=1600\r\nMode=Off\r\n");
    ASSERT_EQ(result.passes.size(), 2U);
    EXPECT_EQ(result.passes[0].verdict, Verdict::Adjusted);
    EXPECT_EQ(result.passes[0].diff, "@@ -1,3 +1,3 @@\n [Display]\n-Width=1280\n+Width=1600\n Mode=Off\n");
    EXPECT_EQ(result.passes[0].log, "Brisk : publisher: '', binary name: 'game.exe'.\n"
                                    "Brisk : checking path 'game.ini'.\n"
                                    "Brisk : config found.\n"
                                    "Brisk : game setting '1280' is not optimal '1600'.\n"
                                    "Brisk : 'The Game' optimized.\n");
    EXPECT_EQ(result.passes[1].verdict, Verdict::Untouched);
    EXPECT_TRUE(result.settles);
    ASSERT_EQ(result.fields.size(), 2U);
    EXPECT_EQ(result.fields[0].outcome, FieldOutcome::IsRight);
    EXPECT_EQ(result.fields[1].outcome, FieldOutcome::Changes);
    EXPECT_EQ(result.fields[1].current, "1280");
    EXPECT_EQ(result.fields[1].wanted, "1600");
    EXPECT_THAT(findFaults(result), ::testing::IsEmpty());
}

TEST(PreviewTest, LooksAtAllFieldsAndConditionsWhereAConditionForbids) {
    const TitlePreview result = preview(title(R"j({"key": "(\\nWidth=)(\\d+)()", "value": 1})j",
                                              R"j(, "patch_if": [{"key": "(\\nMode=)(\\w+)()", "presence": ["On"]}])j"),
                                        kFile);
    EXPECT_EQ(result.passes.front().verdict, Verdict::Condition);
    EXPECT_EQ(result.after, kFile);
    EXPECT_THAT(result.passes.front().log,
                ::testing::EndsWith("Brisk : game setting '1280' is not optimal '1'.\n"
                                    "Brisk : current configuration with key '(\\nMode=)(\\w+)()' and "
                                    "value 'Off' doesn't meet requirements.\n"));
    ASSERT_EQ(result.conditions.size(), 1U);
    EXPECT_FALSE(result.conditions[0].holds);
    EXPECT_EQ(result.conditions[0].current, "Off");
    EXPECT_EQ(result.fields.at(0).outcome, FieldOutcome::Changes);
}

TEST(PreviewTest, NamesTheLineAtWhichAMissingSettingIsCreated) {
    const TitlePreview result =
        preview(title(R"j({"key": "(\\nSharp=)(\\d+)()", "value": 7, "create_key": "(\\nWidth=\\d+)()()",
                                                   "create_value": "\nSharp=*"})j"),
                kFile);
    EXPECT_EQ(result.fields.at(0).outcome, FieldOutcome::Created);
    EXPECT_EQ(result.fields.at(0).createdLine, 3U);
    EXPECT_EQ(result.after, "[Display]\r\nWidth=1280\r\nSharp=7\r\nMode=Off\r\n");
}

TEST(PreviewTest, EndsWhereTheServiceEnds) {
    const TitlePreview result = preview(title(R"j({"key": "(\\nMode=)(\\w+)()", "value": 1})j"), kFile);
    EXPECT_EQ(result.passes.front().verdict, Verdict::Ends);
    EXPECT_THAT(result.passes.front().log, ::testing::EndsWith("Brisk : invalid stoi argument\n"));
    const std::vector<PreviewFinding> faults = findFaults(result);
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].finding.message,
              "the value \"Off\" is no 32-bit number; the service ends with \"Brisk : invalid stoi argument\"");
}

TEST(PreviewTest, GivesNoOfferWithoutALowerResolutionButToLumaTitles) {
    const std::string field = R"j({"key": "(\\nWidth=)(\\d+)()", "meta": "native_width", "value": 0})j";
    const Display display{{1920, 1080}, std::nullopt};
    EXPECT_EQ(preview(title(field), kFile, display).passes.front().verdict, Verdict::NoResolution);
    EXPECT_EQ(preview(title(field, R"j(, "luma_version": 1)j"), kFile, display).passes.front().verdict,
              Verdict::Adjusted);
}

TEST(PreviewTest, LosesWhatStandsBehindCtrlZAsTheServiceDoes) {
    const TitlePreview result = preview(title(R"j({"key": "(\\nWidth=)(\\d+)()", "value": 1})j"), "[A]\nWidth=2\n\x1A"
                                                                                                  "Mode=1\n");
    EXPECT_EQ(result.after, "[A]\r\nWidth=1\r\n");
    const std::vector<PreviewFinding> faults = findFaults(result);
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].finding.rule, "text-mode-harm");
}

TEST(PreviewTest, OfARegistryTitleChangesAndCreatesValues) {
    const auto registry =
        readRegistryExport("REGEDIT4\n[HKEY_CURRENT_USER\\Software\\Studio]\n\"Width\"=dword:00000500\n");
    TitleRecord record = title(R"j({"key": "Width", "value": 1920}, {"key": "Mode", "value": "sharp"})j");
    record.configLocations = {"HKEY_CURRENT_USER/Software/Studio"};
    RegistryPreviewAdapter adapter(record);
    adapter.registry = &*registry;
    const TitlePreview result = previewRegistry(adapter, displayOf({1920, 1080}));
    EXPECT_EQ(result.passes.front().verdict, Verdict::Adjusted);
    EXPECT_EQ(result.after, "\"Mode\"=\"sharp\"\n\"Width\"=dword:00000780\n");
    EXPECT_EQ(result.fields.at(0).outcome, FieldOutcome::Created);
    EXPECT_EQ(result.fields.at(1).current, "1280");
    EXPECT_TRUE(result.settles);
}

} // namespace
} // namespace brisk::workbench
