#include "bench/Measurement.h"
#include "bench/PatternReferences.h"
#include "bench/Rows.h"
#include "bench/Samples.h"
#include "support/TemporaryFolder.h"
#include "titles/TitleManager.h"

#include <algorithm>

#include <nlohmann/json.hpp>

// A title's settings, from file to file.

namespace brisk::bench {

// Ten settings at the end of the text, the last of them with another value than wanted until it is patched.
void printSettingsRows() {
    constexpr std::size_t kFields = 10;
    const testing::TemporaryFolder folder;
    std::string text = settingsText(773'000) + manySettings(kFields, 7);
    std::erase(text, '\r');
    writeText(folder / "settings.ini", text);
    nlohmann::json fields = manyFields(kFields, 7);
    fields.back()["value"] = 8;
    writeDatabase(folder.path(), folder.narrow() + "\\settings.ini", fields);
    TitleManager manager;
    require(manager.loadTitlesDatabase(folder.narrow()) && manager.isTitleSupported("", "a.exe", ""), "no title");
    compare(
        "check ten fields of 773 KB", [&] { require(manager.isTitleNeedToBeOptimized("a.exe"), "nothing to do"); },
        "reading and Boost.Regex",
        [&] {
            const std::string content = readText(folder / "settings.ini");
            for (const auto& field : fields) {
                require(boostPattern(field["key"])->search(content), "a setting is missing");
            }
        },
        {Bar::Kind::AtMost, 0.5});
    compare(
        "patch ten fields of 773 KB", [&] { require(manager.optimizeTitle("a.exe"), "not patched"); },
        "reading, writing and Boost.Regex",
        [&] {
            std::string content = readText(folder / "settings.ini");
            for (const auto& field : fields) {
                content = boostPattern(field["key"])->replace(content, "7");
            }
            writeText(folder / "other.ini", content);
        },
        {Bar::Kind::AtMost, 0.4});
}

} // namespace brisk::bench
