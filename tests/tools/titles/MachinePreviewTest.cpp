// Without a word on where settings are, the player's own are looked at, and nothing but looked at.
#include "tools/titles/PreviewCommand.h"

#include "CommandFixture.h"
#include "support/Sandbox.h"
#include "tools/titles/MachineDisplay.h"
#include "tools/titles/MachineFiles.h"

#include <nlohmann/json.hpp>

namespace brisk::workbench {
namespace {

constexpr char kDatabase[] = R"j([
  {"config_type": "txt", "title_name": "Alpha", "binary_name": "alpha.exe",
   "config_locations": ["%LOCALAPPDATA%\\brisk-machine-preview\\a.ini"],
   "config_fields": [{"key": "(\\nWidth=)(\\d+)()", "value": 7}]},
  {"config_type": "reg", "title_name": "Beta", "binary_name": "beta.exe",
   "config_locations": ["HKEY_CURRENT_USER/Software/Beta"], "config_fields": [{"key": "Width", "value": 7}]}
])j";

class MachinePreviewTest : public CommandFixture {
protected:
    MachinePreviewTest() : settings(toPath(machineFolders()[1].second) / "brisk-machine-preview") {
        write("titles_db.json", kDatabase);
        std::filesystem::create_directories(settings);
        std::ofstream(settings / "a.ini", std::ios::binary) << kText;
        const DWORD width = 1;
        RegSetKeyValueA(HKEY_CURRENT_USER, "Software\\Beta", "Width", REG_DWORD, &width, sizeof width);
        options.database = in("titles_db.json");
        options.format = "json";
    }
    ~MachinePreviewTest() override { std::filesystem::remove_all(settings); }

    static constexpr char kText[] = "[A]\r\nWidth=1\r\n";
    testing::SandboxHive hive;
    const std::filesystem::path settings;
    PreviewOptions options;
};

TEST_F(MachinePreviewTest, FilesRegistryAndDisplayAreReadAndLeftAsTheyAre) {
    const std::optional<Display> display = machineDisplay();
    if (!display || !display->lower) {
        GTEST_SKIP() << "this display has no lower resolution";
    }
    const auto time = std::filesystem::last_write_time(settings / "a.ini");
    EXPECT_EQ(capture([this] { return runPreview(options); }), 0) << complaint;
    const auto json = nlohmann::json::parse(printed);
    ASSERT_EQ(json["titles"].size(), 2U);
    EXPECT_EQ(json["titles"][0]["verdict"], "adjusted");
    EXPECT_EQ(json["titles"][0]["passes"][0]["diff"], "@@ -1,2 +1,2 @@\n [A]\n-Width=1\n+Width=7\n");
    EXPECT_EQ(json["titles"][1]["passes"][0]["diff"], "@@ -1,1 +1,1 @@\n-\"Width\"=dword:00000001\n"
                                                      "+\"Width\"=dword:00000007\n");
    EXPECT_EQ(json["titles"][0]["lower"],
              nlohmann::json({{"width", display->lower->width}, {"height", display->lower->height}}));

    EXPECT_EQ(testing::readFile(settings / "a.ini"), kText);
    EXPECT_EQ(std::filesystem::last_write_time(settings / "a.ini"), time);
    DWORD width = 0;
    DWORD size = sizeof width;
    RegGetValueA(HKEY_CURRENT_USER, "Software\\Beta", "Width", RRF_RT_REG_DWORD, nullptr, &width, &size);
    EXPECT_EQ(width, 1U);
}

} // namespace
} // namespace brisk::workbench
