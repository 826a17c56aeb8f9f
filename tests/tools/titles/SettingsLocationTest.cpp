#include "tools/titles/SettingsLocation.h"

#include <gtest/gtest.h>

namespace brisk::workbench {
namespace {

TEST(SettingsLocationTest, FoldersOfTheUserBecomePlaceholders) {
    EXPECT_EQ(guessLocation(R"(C:\Users\Me\AppData\Local\Game\a.ini)", ""), R"(%LOCALAPPDATA%\Game\a.ini)");
    EXPECT_EQ(guessLocation(R"(c:\users\me\appdata\roaming\Game\a.ini)", ""), R"(%APPDATA%\Game\a.ini)");
    EXPECT_EQ(guessLocation(R"(C:\Users\Me\AppData\LocalLow\Game\a.ini)", ""),
              R"(%USERPROFILE%\AppData\LocalLow\Game\a.ini)");
    EXPECT_EQ(guessLocation(R"(D:\Users\Me\Saved Games\Game\a.ini)", ""), R"(%USERPROFILE%\Saved Games\Game\a.ini)");
    EXPECT_EQ(guessLocation(R"(C:\Users\Me\Documents\My Games\Game\a.ini)", ""),
              R"(%USERPROFILE%\Documents\My Games\Game\a.ini)");
    EXPECT_EQ(guessLocation(R"(C:\Users\Me\OneDrive\Documents\Game\a.ini)", ""),
              R"(%USERPROFILE%\OneDrive\Documents\Game\a.ini)");
}

TEST(SettingsLocationTest, WinePrefixesAndCopiedProfilesHaveTheSameFolders) {
    EXPECT_EQ(guessLocation("/home/me/.wine/drive_c/users/me/AppData/Local/Game/a.ini", ""),
              R"(%LOCALAPPDATA%\Game\a.ini)");
    EXPECT_EQ(guessLocation("/srv/profile/AppData/Roaming/Game/a.ini", ""), R"(%APPDATA%\Game\a.ini)");
    EXPECT_EQ(guessLocation("/home/me/Documents/Game/a.ini", ""), R"(%USERPROFILE%\Documents\Game\a.ini)");
    EXPECT_EQ(guessLocation("/home/me/My Documents/Game/a.ini", ""), R"(%USERPROFILE%\Documents\Game\a.ini)");
}

TEST(SettingsLocationTest, AccountNumberBecomesAWildcardOnce) {
    EXPECT_EQ(guessLocation(R"(C:\Users\Me\AppData\Roaming\Ostra\profiles\76000042\options.txt)", ""),
              R"(%APPDATA%\Ostra\profiles\*\options.txt)");
    EXPECT_EQ(guessLocation(R"(C:\Users\Me\AppData\Roaming\Ostra\76000042\76000043\12345)", ""),
              R"(%APPDATA%\Ostra\*\76000043\12345)");
    EXPECT_EQ(guessLocation(R"(C:\Users\Me\AppData\Local\Ostra\0a1b2c3d4e5f60718293\a.ini)", ""),
              R"(%LOCALAPPDATA%\Ostra\*\a.ini)");
    EXPECT_EQ(guessLocation(R"(C:\Users\Me\AppData\Local\Ostra 2024\1998\a.ini)", ""),
              R"(%LOCALAPPDATA%\Ostra 2024\1998\a.ini)");
}

TEST(SettingsLocationTest, GamesFolderIsThatOfItsExecutable) {
    EXPECT_EQ(guessLocation(R"(C:\Games\Iron\base\hollow.cfg)", R"(c:\games\Iron\)"), R"(%APPDIR%\base\hollow.cfg)");
    EXPECT_EQ(guessLocation(R"(C:\Games\Iron\cfg\hollow.cfg)", R"(C:\Games\Iron\bin\x64)"),
              R"(%APPDIR%\..\..\cfg\hollow.cfg)");
    EXPECT_EQ(guessLocation(R"(C:\Users\Me\AppData\Local\Iron\a.ini)", R"(C:\Users\Me\AppData\Local\Iron)"),
              R"(%APPDIR%\a.ini)");
    EXPECT_EQ(guessLocation(R"(C:\Users\Me\AppData\Local\Iron\a.ini)", R"(C:\Games\Iron)"),
              R"(%LOCALAPPDATA%\Iron\a.ini)");
}

TEST(SettingsLocationTest, OtherPathsTellNothing) {
    EXPECT_EQ(guessLocation(R"(D:\a.ini)", ""), "");
    EXPECT_EQ(guessLocation("/tmp/a.ini", R"(C:\Games\Iron)"), "");
    EXPECT_EQ(guessLocation("", ""), "");
}

} // namespace
} // namespace brisk::workbench
