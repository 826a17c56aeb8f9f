// The example titles, optimized for a native resolution of 1920 x 1080 and an optimal one of 1600 x 900.
#include "titles/TitleManager.h"

#include "FaultPoints.h"
#include "support/Places.h"
#include "support/Sandbox.h"

#include <optional>

#include <gmock/gmock.h>

namespace brisk {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;

std::string withWindowsLineEnds(const std::string& text) {
    std::string result;
    for (const std::string& line : testing::splitLines(text)) {
        result += line + "\r\n";
    }
    return result;
}

class ExamplesTest : public ::testing::Test {
protected:
    ExamplesTest() {
        fs::create_directories(user / "AppData" / "Local");
        fs::create_directories(user / "AppData" / "Roaming");
        SHGetFolderPathWFault.intercept([this](HWND, int csidl, HANDLE, DWORD, wchar_t* path) -> HRESULT {
            const fs::path place = csidl == CSIDL_PROFILE         ? user
                                   : csidl == CSIDL_LOCAL_APPDATA ? user / "AppData" / "Local"
                                                                  : user / "AppData" / "Roaming";
            wcscpy(path, place.c_str());
            return S_OK;
        });
        manager.emplace();
        EXPECT_TRUE(manager->loadTitlesDatabase(toNarrow(testing::place(BRISK_EXAMPLES))));
        manager->setNativeResolution(1920, 1080);
        manager->setResolution(1600, 900);
    }
    ~ExamplesTest() override { faults::reset(); }

    static fs::path example(const std::string& file) { return testing::place(BRISK_EXAMPLES) / "games" / file; }

    // Copies an example file, as a game on Windows writes it, to its place.
    static void install(const std::string& file, const fs::path& place) {
        testing::writeFile(place, withWindowsLineEnds(testing::readFile(example(file))));
    }

    // Optimizes the title as the service does when its game has ended.
    void optimize(const std::string& publisher, const std::string& binaryName) {
        EXPECT_TRUE(manager->isTitleSupported(publisher, binaryName, toNarrow(game)));
        EXPECT_TRUE(manager->isTitleNeedToBeOptimized(binaryName));
        EXPECT_TRUE(manager->optimizeTitle(binaryName));
        EXPECT_FALSE(manager->isTitleNeedToBeOptimized(binaryName));
    }

    testing::TemporaryFolder folder;
    const fs::path user = folder / L"J\u00F6rg \u5B9A";
    const fs::path game = folder / "Program Files" / "The Game";
    testing::SandboxHive hive;
    testing::CapturedLog log;
    std::optional<TitleManager> manager;
};

TEST_F(ExamplesTest, AreFiveTitles) {
    EXPECT_THAT(manager->getBinaryNames(),
                ElementsAre("Ostra.exe", "Skyferry.exe", "StarlitHarbour.exe", "hollow.exe", "rally.exe"));
    for (const std::uint32_t id : {1001u, 1002u, 1003u, 1004u, 1005u}) {
        EXPECT_TRUE(manager->isTitleIdKnown(id)) << id;
    }
    EXPECT_EQ(manager->getSettingText("StarlitHarbour.exe"), "Quality mode");
    EXPECT_EQ(manager->getSettingText("Ostra.exe"), "Balanced mode");
    EXPECT_FALSE(manager->isLumaSupported("rally.exe"));
    EXPECT_FALSE(manager->isLumaSupported("hollow.exe"));
    EXPECT_FALSE(manager->isLumaSupported("Skyferry.exe"));
}

constexpr char kStarlitHarbour[] = "; Starlit Harbour\r\n"
                                   "[Display]\r\n"
                                   "ResolutionX=1920\r\n"
                                   "ResolutionY=1080\r\n"
                                   "Fullscreen=True\r\n"
                                   "Renderer=D3D12\r\n"
                                   "VSync=Off\r\n"
                                   "\r\n"
                                   "[Upscaling]\r\n"
                                   "Mode=Quality\r\n"
                                   "Sharpness=0.4\r\n"
                                   "\r\n"
                                   "[Audio]\r\n"
                                   "Master=80\r\n";

TEST_F(ExamplesTest, StarlitHarbourInTheUsersFolder) {
    const fs::path file = user / "AppData" / "Local" / "Starlit Harbour" / "Settings.ini";
    install("Starlit Harbour/Settings.ini", file);
    optimize("Brackwater Games", "StarlitHarbour.exe");
    EXPECT_EQ(testing::readFile(file), kStarlitHarbour);
}

TEST_F(ExamplesTest, StarlitHarbourInTheGamesFolder) {
    install("Starlit Harbour/Settings.ini", game / "Settings.ini");
    optimize("Brackwater Games", "StarlitHarbour.exe");
    EXPECT_EQ(testing::readFile(game / "Settings.ini"), kStarlitHarbour);
}

TEST_F(ExamplesTest, StarlitHarbourWithARendererThatIsNotSupportedIsLeftAlone) {
    const fs::path file = game / "Settings.ini";
    std::string text = withWindowsLineEnds(testing::readFile(example("Starlit Harbour/Settings.ini")));
    text.replace(text.find("D3D12"), 5, "D3D11");
    testing::writeFile(file, text);
    EXPECT_TRUE(manager->isTitleSupported("Brackwater Games", "StarlitHarbour.exe", toNarrow(game)));
    log.take();
    EXPECT_FALSE(manager->isTitleNeedToBeOptimized("StarlitHarbour.exe"));
    logLine("next");
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : game setting 'Off' is not optimal 'Quality'.",
                            "Brisk : current configuration with key '(\\nRenderer=)(\\w+)()' and value 'D3D11' doesn't "
                            "meet requirements.next"));
}

TEST_F(ExamplesTest, CopperlineRally) {
    const fs::path file = user / "Documents" / "Copperline Rally" / "video.xml";
    install("Copperline Rally/video.xml", file);
    optimize("Northgate Motors", "rally.exe");
    EXPECT_EQ(testing::readFile(file), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n"
                                       "<video version=\"3\" detail=\"high\">\r\n"
                                       "  <resolution width=\"1600\" height=\"900\" refresh=\"60\"/>\r\n"
                                       "  <upscaler name=\"tano\" enabled=\"true\"/>\r\n"
                                       "  <shadows quality=\"2\"/>\r\n"
                                       "</video>\r\n");
}

TEST_F(ExamplesTest, IronHollow) {
    const fs::path file = game / "base" / "hollow.cfg";
    install("Iron Hollow/base/hollow.cfg", file);
    optimize("Deepcut Games", "hollow.exe");
    EXPECT_EQ(testing::readFile(file), "// written by Iron Hollow\r\n"
                                       "seta com_format \"2\"\r\n"
                                       "bind w \"+forward\"\r\n"
                                       "seta r_mode \"-1\"\r\n"
                                       "seta r_customwidth \"1600\"\r\n"
                                       "seta r_customheight \"900\"\r\n"
                                       "seta r_gamma \"1.1\"\r\n"
                                       "seta name \"Marrow\"\r\n");
}

TEST_F(ExamplesTest, IronHollowIsNotFoundWithoutTheGamesFolder) {
    install("Iron Hollow/base/hollow.cfg", game / "base" / "hollow.cfg");
    EXPECT_FALSE(manager->isTitleSupported("", "hollow.exe", ""));
}

TEST_F(ExamplesTest, LanternsOfOstraGetsTheSettingThatItDoesNotHave) {
    const fs::path file =
        user / "AppData" / "Roaming" / "Winterlight" / "Ostra" / "profiles" / "76000042" / "options.txt";
    install("Lanterns of Ostra/profiles/76000042/options.txt", file);
    optimize("Winterlight", "Ostra.exe");
    EXPECT_EQ(testing::readFile(file), "format = 2\r\n"
                                       "fov = 85\r\n"
                                       "width = 1920\r\n"
                                       "height = 1080\r\n"
                                       "upscaling = balanced\r\n"
                                       "music volume = 60\r\n");
}

TEST_F(ExamplesTest, LanternsOfOstraKeepsThePlaceOfASettingThatItHas) {
    const fs::path file = user / "AppData" / "Roaming" / "Winterlight" / "Ostra" / "profiles" / "1" / "options.txt";
    testing::writeFile(file, "format = 2\r\nfov = 85\r\nupscaling = off\r\nwidth=2560\r\nheight=1440\r\n");
    optimize("Winterlight", "Ostra.exe");
    EXPECT_EQ(testing::readFile(file),
              "format = 2\r\nfov = 85\r\nupscaling = balanced\r\nwidth=1920\r\nheight=1080\r\n");
}

// The values that the example file sets, and those of the key afterwards.
TEST_F(ExamplesTest, Skyferry) {
    HKEY key = nullptr;
    for (const std::string& line : testing::splitLines(testing::readFile(example("Skyferry/settings.reg")))) {
        const std::string user32 = "[HKEY_CURRENT_USER\\";
        const std::string number = "\"=dword:";
        if (line.starts_with(user32)) {
            ASSERT_EQ(RegCreateKeyA(HKEY_CURRENT_USER,
                                    line.substr(user32.size(), line.size() - user32.size() - 1).c_str(), &key),
                      ERROR_SUCCESS);
        } else if (const std::size_t end = line.find(number); end != std::string::npos) {
            const DWORD value = std::stoul(line.substr(end + number.size()), nullptr, 16);
            RegSetKeyValueA(key, nullptr, line.substr(1, end - 1).c_str(), REG_DWORD, &value, sizeof value);
        }
    }
    optimize("Cloudbarge", "Skyferry.exe");

    std::vector<std::string> values;
    char name[64];
    DWORD length = sizeof name;
    char data[64];
    DWORD size = sizeof data;
    for (DWORD type = 0; RegEnumValueA(key, static_cast<DWORD>(values.size()), name, &length, nullptr, &type,
                                       reinterpret_cast<BYTE*>(data), &size) == ERROR_SUCCESS;) {
        values.push_back(std::string(name) + "=" +
                         (type == REG_SZ ? data : std::to_string(*reinterpret_cast<std::int32_t*>(data))));
        length = sizeof name;
        size = sizeof data;
    }
    RegCloseKey(key);
    EXPECT_THAT(values, ::testing::UnorderedElementsAre("ScreenWidth=1600", "ScreenHeight=900", "Fullscreen=1",
                                                        "Upscaler=sharp"));
}

} // namespace
} // namespace brisk
