#include "base/Log.h"
#include "base/WindowsHandles.h"
#include "bench/Measurement.h"
#include "bench/PatternReferences.h"
#include "bench/Rows.h"
#include "bench/Samples.h"
#include "support/TemporaryFolder.h"
#include "support/TextFiles.h"
#include "tools/titles/DatabaseTitles.h"
#include "tools/titles/MachineFiles.h"
#include "tools/titles/Preview.h"
#include "tools/titles/PreviewReport.h"
#include "tracking/BulkPatching.h"
#include "tracking/FakeGfxInfo.h"
#include "tracking/Services.h"

#include <fstream>
#include <utility>

#include <nlohmann/json.hpp>

// Many titles in one pass.

namespace brisk::bench {

namespace {

constexpr std::size_t kTitles = 1'000;
constexpr char kPatchedKey[] = "SOFTWARE\\Orlan\\briskGCT\\PatchedApps";
constexpr const char* kKeys[] = {R"((\nWidth=)(\d+)())", R"((\nHeight=)(\d+)())"};

std::string fileName(std::size_t number) {
    return "game" + std::to_string(number) + ".ini";
}

void writeGames(const testing::TemporaryFolder& folder) {
    nlohmann::json titles = nlohmann::json::array();
    std::string text = settingsText(10'000);
    std::erase(text, '\r');
    for (std::size_t number = 0; number < kTitles; ++number) {
        titles.push_back({{"config_type", "txt"},
                          {"title_name", "Game " + std::to_string(number)},
                          {"binary_name", "game" + std::to_string(number) + ".exe"},
                          {"config_locations", {folder.narrow() + "\\" + fileName(number)}},
                          {"config_fields",
                           {{{"key", kKeys[0]}, {"meta", "width"}, {"value", 1}},
                            {{"key", kKeys[1]}, {"meta", "height"}, {"value", 1}}}}});
        writeText(folder / fileName(number), text);
    }
    std::ofstream(folder / "titles_db.json") << titles;
}

void writeMarker(const std::string& name) {
    const DWORD one = 1;
    RegistryKey key;
    RegCreateKeyExA(HKEY_CURRENT_USER, kPatchedKey, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                    key.receive(), nullptr);
    RegSetValueExA(key.get(), name.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&one), sizeof one);
}

// What the pass cannot do without for a title that needs patching: reading the file for the check and for the change,
// a search, the replacements, the file and the marker written, and as many lines as the log has.
void patchBarely(const testing::TemporaryFolder& folder, std::size_t number, const std::string& value) {
    const std::filesystem::path file = folder / fileName(number);
    require(GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES, "no file");
    require(boostPattern(kKeys[1])->search(readText(file)), "no setting");
    std::string content = readText(file);
    for (const char* const key : kKeys) {
        content = boostPattern(key)->replace(content, value);
    }
    writeText(file, content);
    writeMarker(fileName(number));
    for (int line = 0; line < 6; ++line) {
        OutputDebugStringA("Brisk : as long as lines are on the average, with a path here and there.\n");
    }
}

// What `brisktitles preview` does for each of them, but for the printing.
std::size_t previewAll(const std::string& bytes) {
    const workbench::SourceText database("titles_db.json", bytes);
    workbench::PreviewReport report(database);
    std::size_t changed = 0;
    for (const auto& [name, title] : workbench::readTitles(database, {})) {
        workbench::TextPreviewAdapter adapter(title.title);
        adapter.source = workbench::machineFiles();
        const workbench::TitlePreview preview =
            workbench::previewText(adapter, {}, {{2560, 1440}, workbench::Size{1152, 648}});
        changed += preview.passes.front().verdict == workbench::Verdict::Adjusted ? 1U : 0U;
        report.add(preview, title.element);
    }
    return changed;
}

} // namespace

void printBulkRows() {
    const testing::TemporaryFolder folder;
    writeGames(folder);
    require(titleManager().loadTitlesDatabase(folder.narrow()), "the database is not loaded");
    const auto gfx = std::make_shared<testing::FakeGfxInfo>();
    gfxInfo = gfx;
    // Lines go to the debugger, as they do without a parameter.
    processLog.setDestination(nullptr);
    DisplayInfo next{1600, 900, 0, 0};
    const auto pass = [&] {
        std::swap(gfx->optimal, next); // so that there is something to patch each time
        std::string report;
        require(doMassivePatching(report) == BulkOutcome::Patched, "nothing patched");
    };
    compare("pass over 1,000 titles of 10 KB", pass, "files, marker, Boost.Regex and lines",
            [&] {
                for (std::size_t number = 0; number < kTitles; ++number) {
                    patchBarely(folder, number, "1600");
                }
            },
            {Bar::Kind::AtMost, 1.3});
    const std::string database = testing::readFile(folder / "titles_db.json");
    compare("brisktitles preview of these titles", [&] { require(previewAll(database) == kTitles, "other titles"); },
            "the service's pass", pass, {Bar::Kind::AtMost, 2});
    gfxInfo.reset();
    RegDeleteTreeA(HKEY_CURRENT_USER, kPatchedKey);
}

} // namespace brisk::bench
