#include "titles/ConfigLocation.h"

#include <gmock/gmock.h>

namespace brisk {
namespace {

std::string withUserFolders(std::string location, const UserFolders& folders) {
    expandUserFolders(location, folders);
    return location;
}

std::string withAppDirectory(std::string location, const std::string& appDirectory) {
    expandAppDirectory(location, appDirectory);
    return location;
}

TEST(UserFolderPlaceholders, FirstOccurrenceOfEachIsReplacedAndASecondOneStays) {
    const UserFolders folders{
        {"%USERPROFILE%", "C:\\Me"}, {"%LOCALAPPDATA%", "C:\\Me\\Local"}, {"%APPDATA%", "C:\\Me\\Roaming"}};
    EXPECT_EQ(withUserFolders("%APPDATA%\\Game\\a.ini", folders), "C:\\Me\\Roaming\\Game\\a.ini");
    EXPECT_EQ(withUserFolders("%APPDATA%\\%APPDATA%\\a.ini", folders), "C:\\Me\\Roaming\\%APPDATA%\\a.ini");
    EXPECT_EQ(withUserFolders("%APPDATA%;%LOCALAPPDATA%;D:\\%USERPROFILE%", folders),
              "C:\\Me\\Roaming;C:\\Me\\Local;D:\\C:\\Me");
    EXPECT_EQ(withUserFolders("D:\\a.ini", folders), "D:\\a.ini");
    EXPECT_EQ(withUserFolders("", folders), "");
}

TEST(UserFolderPlaceholders, LetterCaseMatters) {
    EXPECT_EQ(withUserFolders("%AppData%\\a.ini", {{"%APPDATA%", "C:\\X"}}), "%AppData%\\a.ini");
}

TEST(UserFolderPlaceholders, GameFolderIsKept) {
    EXPECT_EQ(withUserFolders("%APPDIR%\\a.ini", {{"%APPDATA%", "C:\\X"}}), "%APPDIR%\\a.ini");
}

TEST(UserFolderPlaceholders, FolderThatHoldsALaterPlaceholderIsExpandedFurther) {
    EXPECT_EQ(withUserFolders("%A%", {{"%A%", "1%B%"}, {"%B%", "2%A%"}}), "12%A%");
}

TEST(UserFolderPlaceholders, UnknownFolderLeavesNothingInThePlaceholdersPlace) {
    EXPECT_EQ(withUserFolders("%APPDATA%\\a.ini", {{"%APPDATA%", ""}}), "\\a.ini");
}

TEST(AppDirectoryPlaceholder, IsReplacedOnceInALocationThatBeginsWithAPercentSign) {
    EXPECT_EQ(withAppDirectory("%APPDIR%\\cfg.ini", "D:\\Games\\X"), "D:\\Games\\X\\cfg.ini");
    EXPECT_EQ(withAppDirectory("%APPDIR%\\%APPDIR%", "D:\\X"), "D:\\X\\%APPDIR%");
    EXPECT_EQ(withAppDirectory("%DRIVE%\\%APPDIR%", "X"), "%DRIVE%\\X");
}

TEST(AppDirectoryPlaceholder, StaysInALocationThatBeginsOtherwise) {
    EXPECT_EQ(withAppDirectory("C:\\%APPDIR%\\cfg.ini", "D:\\X"), "C:\\%APPDIR%\\cfg.ini");
    EXPECT_EQ(withAppDirectory(" %APPDIR%\\cfg.ini", "D:\\X"), " %APPDIR%\\cfg.ini");
    EXPECT_EQ(withAppDirectory("", "D:\\X"), "");
}

TEST(AppDirectoryPlaceholder, StaysWithoutADirectoryAndInAnotherLetterCase) {
    EXPECT_EQ(withAppDirectory("%APPDIR%\\cfg.ini", ""), "%APPDIR%\\cfg.ini");
    EXPECT_EQ(withAppDirectory("%AppDir%\\cfg.ini", "D:\\X"), "%AppDir%\\cfg.ini");
}

} // namespace
} // namespace brisk
