// The command as a whole: what it answers, and that nothing but the file of --output is ever written.
#include "tools/titles/PreviewCommand.h"

#include "CommandFixture.h"
#include "tools/titles/MachineFiles.h"

#include <algorithm>
#include <map>
#include <string>

#include <nlohmann/json.hpp>

namespace brisk::workbench {
namespace {

namespace fs = std::filesystem;

constexpr char kDatabase[] = R"j([
  {"config_type": "txt", "title_name": "Alpha", "binary_name": "alpha.exe",
   "config_locations": ["%LOCALAPPDATA%\\Alpha\\a.ini", "%APPDIR%\\a.ini"],
   "config_fields": [{"key": "(\\nWidth=)(\\d+)()", "meta": "native_width", "value": 0}]},
  {"config_type": "txt", "title_name": "Beta", "binary_name": "beta.exe",
   "config_locations": ["%APPDATA%\\Beta\\*\\b.ini"],
   "config_fields": [{"key": "(\\nMode=)(\\w+)()", "value": "Quality"}]}
])j";

class PreviewCommandTest : public CommandFixture {
protected:
    PreviewCommandTest() {
        write("titles_db.json", kDatabase);
        write("game/a.ini", "[A]\r\nWidth=1280\r\n");
        write("profile/appdata/Roaming/Beta/Zulu/b.ini", "[B]\nMode=Zulu\n");
        write("profile/appdata/Roaming/Beta/alpha/B.INI", "[B]\nMode=Alpha\n");
        fs::create_directories(folder / "profile/appdata/Local/Alpha");
        fs::create_directories(folder / "out");
        options.database = in("titles_db.json");
    }

    // Every file and folder with its bytes and its time.
    std::map<std::string, std::pair<std::string, fs::file_time_type>> snapshot() const {
        std::map<std::string, std::pair<std::string, fs::file_time_type>> files;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
            if (entry.path().parent_path() != folder / "out" && entry.path() != folder / "out") {
                const std::string name = entry.path().lexically_relative(folder).generic_string();
                files[name] = {entry.is_regular_file() ? read(name) : "", entry.last_write_time()};
            }
        }
        return files;
    }

    // The exit code. Nothing else may have changed.
    int run() {
        const auto before = snapshot();
        const int code = capture([this] { return runPreview(options); });
        EXPECT_EQ(snapshot(), before);
        return code;
    }

    PreviewOptions options;
};

TEST_F(PreviewCommandTest, FindsAProfilesFilesInAnyCaseAndTheFirstFolderByName) {
    options.profile = in("profile");
    options.titles = {"Beta"};
    EXPECT_EQ(run(), 0) << complaint;
    EXPECT_THAT(printed, ::testing::HasSubstr("-Mode=Alpha\n+Mode=Quality\n"));
    EXPECT_THAT(printed, ::testing::HasSubstr("log: Brisk : checking path '" + in("profile") +
                                              "\\AppData\\Roaming\\Beta\\alpha\\b.ini'."));
}

TEST_F(PreviewCommandTest, SaysWhereAnotherFileIsWrittenThanIsRead) {
    options.profile = in("profile");
    options.gameFolder = in("game");
    options.titles = {"alpha.exe"};
    EXPECT_EQ(run(), 0) << complaint;
    // Paths are those of the machine.
    std::string written = in("profile") + "\\AppData\\Local\\Alpha\\a.ini";
    std::string read = in("game") + "\\a.ini";
    if (std::filesystem::path::preferred_separator == '/') {
        std::replace(written.begin(), written.end(), '\\', '/');
        std::replace(read.begin(), read.end(), '\\', '/');
    }
    EXPECT_THAT(printed, ::testing::HasSubstr("READ from " + read + ", but WRITTEN to " + written + "\n"));
}

TEST_F(PreviewCommandTest, WritesTheAdjustedBytesToTheOutputAlone) {
    options.file = in("game/a.ini");
    options.titles = {"Alpha"};
    options.output = in("out/adjusted.ini");
    options.display = "2560x1440";
    EXPECT_EQ(run(), 0) << complaint;
    EXPECT_EQ(read("out/adjusted.ini"), "[A]\r\nWidth=2560\r\n");
}

TEST_F(PreviewCommandTest, RefusesToWriteWhatItOnlyReads) {
    options.titles = {"Alpha"};
    options.file = in("game/a.ini");
    for (const char* output : {"game/a.ini", "game/../game/a.ini", "titles_db.json"}) {
        options.output = in(output);
        EXPECT_EQ(run(), 2) << output;
    }
    options.file.clear();
    options.profile = in("profile");
    options.gameFolder = in("game");
    for (const char* output : {"profile/new.ini", "game/new.ini", "profile/AppData/../new.ini"}) {
        options.output = in(output);
        EXPECT_EQ(run(), 2) << output;
    }
}

TEST_F(PreviewCommandTest, ShowsWhatDiffersBetweenDisplays) {
    options.file = in("game/a.ini");
    options.titles = {"Alpha"};
    options.isMatrix = true;
    EXPECT_EQ(run(), 0) << complaint;
    EXPECT_THAT(printed, ::testing::HasSubstr("  3440x1440 with 2560x1080: adjusted\n"));
    EXPECT_THAT(printed, ::testing::HasSubstr("  1920x1080 without a lower resolution: no-resolution\n"));
    EXPECT_THAT(printed, ::testing::HasSubstr("    3840x2160 with 3200x1800: changes to \"3840\"\n"));
}

TEST_F(PreviewCommandTest, GivesFindingsWithTheirPlaceAndExitCode1) {
    write("twice.ini", "[A]\r\nWidth=1\r\n[B]\r\nWidth=2\r\n");
    options.file = in("twice.ini");
    options.titles = {"Alpha"};
    EXPECT_EQ(run(), 1);
    EXPECT_THAT(printed, ::testing::HasSubstr(in("twice.ini") + ":4:7: warning[several-matches]: "));
    options.format = "json";
    EXPECT_EQ(run(), 1);
    const auto json = nlohmann::json::parse(printed);
    ASSERT_EQ(json["findings"].size(), 1U);
    EXPECT_EQ(json["findings"][0]["line"], 4);
    EXPECT_EQ(json["findings"][0]["title"], "alpha.exe");
    EXPECT_EQ(json["titles"][0]["fields"][0]["places"][1]["value"], "2");
}

TEST_F(PreviewCommandTest, EndsWith2WhereTheUsageIsWrong) {
    if (!hasMachineFiles()) {
        EXPECT_EQ(run(), 2);
        EXPECT_THAT(complaint, ::testing::HasSubstr("give the settings to look at"));
    }
    options.file = in("game/a.ini");
    EXPECT_EQ(run(), 2);
    EXPECT_THAT(complaint, ::testing::HasSubstr("say with --title whose file"));
    options.titles = {"Alpa"};
    EXPECT_EQ(run(), 2);
    EXPECT_THAT(complaint, ::testing::HasSubstr("did you mean \"Alpha\"?"));
    options.titles = {"Alpha"};
    options.display = "1920";
    EXPECT_EQ(run(), 2);
    options.display = "1920x1080";
    options.file = in("missing.ini");
    EXPECT_EQ(run(), 2);
    write("titles_db.json", "[{]");
    EXPECT_EQ(run(), 2);
    EXPECT_THAT(complaint, ::testing::HasSubstr("error[json-syntax]"));
}

} // namespace
} // namespace brisk::workbench
