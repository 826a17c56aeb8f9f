#include "tools/titles/VersionStrings.h"

#include "tools/titles/ExecutableSample.h"

#include <gmock/gmock.h>

namespace brisk::workbench {
namespace {

// "product|company|original file name", or what is wrong with the executable.
std::string stringsOf(const std::string& executable) {
    try {
        const VersionStrings strings = readVersionStrings(executable);
        return strings.productName + "|" + strings.companyName + "|" + strings.originalFileName;
    } catch (const ExecutableError& error) {
        return error.what();
    }
}

std::string stringsOf(const SampleVersion& version) {
    return stringsOf(executableWith({{0x0409, versionResource(version)}}));
}

constexpr char kCommon[] = "Glass Orchard|Tallow & Reed|Orchard.exe";
constexpr char kNothing[] = "||";

TEST(VersionStringsTest, AreReadFrom32BitAnd64BitExecutables) {
    const std::string resource = versionResource(commonVersion());
    EXPECT_EQ(stringsOf(executableWith({{0x0409, resource}}, true)), kCommon);
    EXPECT_EQ(stringsOf(executableWith({{0x0409, resource}}, false)), kCommon);
}

TEST(VersionStringsTest, FirstTranslationOfTheTableIsTaken) {
    SampleVersion version = commonVersion();
    version.languages.insert(version.languages.begin(), {"040704b0", {{"CompanyName", u"Talg und Rohr"}}});
    version.translations.insert(version.translations.end(), {0x0407, 0x04B0});
    EXPECT_EQ(stringsOf(version), kCommon);
    std::swap(version.translations[0], version.translations[1]);
    EXPECT_EQ(stringsOf(version), "|Talg und Rohr|");
}

TEST(VersionStringsTest, NoOtherTranslationIsTriedWhereTheFirstHasNoTexts) {
    SampleVersion version = commonVersion();
    version.translations.insert(version.translations.begin(), {0x0407, 0x04B0});
    EXPECT_EQ(stringsOf(version), kNothing);
    version.translations.clear();
    EXPECT_EQ(stringsOf(version), kNothing);
}

TEST(VersionStringsTest, NamesAreFoundInLettersOfAnyCase) {
    SampleVersion version = commonVersion();
    version.languages[0].block = "040904B0";
    version.languages[0].texts[0].first = "COMPANYNAME";
    EXPECT_EQ(stringsOf(version), kCommon);
}

TEST(VersionStringsTest, TextEndsAtItsFirstZeroAndBecomesUtf8) {
    SampleVersion version = commonVersion();
    version.languages[0].texts = {{"CompanyName", std::u16string(u"M\u00FChle \u661F \xD83C\xDFAE \xD83C\0rest", 16)},
                                  {"ProductName", u""}};
    EXPECT_EQ(stringsOf(version), "|M\xC3\xBC"
                                  "hle \xE6\x98\x9F \xF0\x9F\x8E\xAE \xEF\xBF\xBD|");
}

TEST(VersionStringsTest, NeutralAndEnglishResourcesComeBeforeOthers) {
    SampleVersion german = commonVersion();
    german.languages[0].texts[0].second = u"Talg und Rohr";
    SampleVersion neutral = commonVersion();
    neutral.languages[0].texts[0].second = u"Sevum et Arundo";
    const std::string english = versionResource(commonVersion());
    EXPECT_EQ(stringsOf(executableWith({{0x0407, versionResource(german)}, {0x0409, english}})), kCommon);
    EXPECT_EQ(stringsOf(executableWith({{0, versionResource(neutral)}, {0x0409, english}})),
              "Glass Orchard|Sevum et Arundo|Orchard.exe");
    EXPECT_EQ(stringsOf(executableWith({{0x0407, versionResource(german)}, {0x040C, english}})),
              "Glass Orchard|Talg und Rohr|Orchard.exe");
}

TEST(VersionStringsTest, ExecutableWithoutAResourceHasNone) {
    EXPECT_EQ(stringsOf(executableWith({})), kNothing);
}

TEST(VersionStringsTest, WhatIsNoExecutableIsRefused) {
    EXPECT_EQ(stringsOf(""), "it is no Windows executable");
    EXPECT_EQ(stringsOf("\x7F"
                        "ELF"),
              "it is no Windows executable");
    EXPECT_EQ(stringsOf("MZ" + std::string(200, '\0')), "it is no executable for 32-bit or 64-bit Windows");
    EXPECT_EQ(stringsOf("MZ"), "it is damaged: something in it is said to lie behind its end");
}

TEST(VersionStringsTest, WhateverIsCutOffOrOverwrittenEndsInAnAnswer) {
    const std::string executable = executableWith({{0x0409, versionResource(commonVersion())}});
    std::size_t refused = 0;
    for (std::size_t size = 0; size < executable.size(); ++size) {
        refused += stringsOf(executable.substr(0, size)).starts_with("it is") ? 1U : 0U;
    }
    EXPECT_GT(refused, executable.size() / 2);
    for (std::size_t at = 0; at < executable.size(); ++at) {
        for (const unsigned byte : {0x00U, 0x7FU, 0xFFU}) {
            std::string damaged = executable;
            damaged[at] = static_cast<char>(byte);
            stringsOf(damaged);
        }
    }
}

// A name without an end in each of very many nodes.
TEST(VersionStringsTest, LargeDamagedResourceCostsNoTime) {
    std::string resource = versionResource(commonVersion());
    const std::size_t children = resource.find(std::string("S\0t\0r\0i\0n\0g\0F", 13)) - 6;
    for (std::size_t node = 0; node < 400000; ++node) {
        resource.insert(resource.end(), {'\4', '\0', 'a', 'a'});
    }
    for (std::size_t at = children; at + 4 < resource.size(); at += 4) {
        resource.replace(at, 4, std::string("\4\0aa", 4));
    }
    EXPECT_EQ(stringsOf(executableWith({{0x0409, resource}})),
              "it is damaged: a name in its version resource has no end");
}

} // namespace
} // namespace brisk::workbench
