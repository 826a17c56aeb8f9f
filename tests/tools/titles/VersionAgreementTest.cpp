// The version resources that the service reads by Windows' calls, and what it takes from them.
#include "tools/titles/VersionStrings.h"

#include "base/Executables.h"
#include "support/TemporaryFolder.h"
#include "support/TextFiles.h"
#include "support/versions/VersionSamples.h"
#include "tools/titles/ExecutableSample.h"

#include <gmock/gmock.h>

namespace brisk::workbench {
namespace {

void expectAgreement(const std::string& path) {
    const FileProperties service = getFileProperties(path);
    const VersionStrings portable = readVersionStrings(testing::readFile(toPath(path)));
    EXPECT_EQ(portable.companyName, service.companyName) << path;
    EXPECT_EQ(portable.productName, service.productName) << path;
}

class VersionAgreementTest : public ::testing::TestWithParam<const char*> {};

TEST_P(VersionAgreementTest, TheServiceTakesTheSameTexts) {
    expectAgreement(versionSample(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Samples, VersionAgreementTest,
                         ::testing::Values("blanks", "complete", "embedded-zero", "empty-strings",
                                           "empty-translation-table", "first-translation-without-strings",
                                           "fixed-part-only", "long-characters", "missing-strings", "neutral-language",
                                           "no-translation-table", "no-version-resource", "non-ascii",
                                           "several-translations", "upper-case-block"));

TEST(VersionSampleTest, TheServiceReadsWhatTheTestsMake) {
    const testing::TemporaryFolder folder;
    const auto expectFor = [&](const std::string& executable) {
        testing::writeFile(folder / "Game.exe", executable);
        expectAgreement(folder.narrow() + "\\Game.exe");
    };
    const std::string english = versionResource(commonVersion());
    expectFor(executableWith({{0x0409, english}}, true));
    expectFor(executableWith({{0x0409, english}}, false));
    expectFor(executableWith({}));
    SampleVersion german = commonVersion();
    german.languages[0].texts[0].second = u"Talg und Rohr";
    // Of several Windows takes the user's, which the tool cannot know.
    if (PRIMARYLANGID(GetUserDefaultUILanguage()) != LANG_GERMAN) {
        expectFor(executableWith({{0x0407, versionResource(german)}, {0x0409, english}}));
        expectFor(executableWith({{0, english}, {0x0407, versionResource(german)}}));
    }
    expectFor(executableWith({{0x0407, versionResource(german)}}));
    german.translations.insert(german.translations.begin(), {0x0407, 0x04B0});
    expectFor(executableWith({{0x0409, versionResource(german)}}));
}

} // namespace
} // namespace brisk::workbench
