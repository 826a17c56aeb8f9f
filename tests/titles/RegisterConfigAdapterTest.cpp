#include "titles/RegisterConfigAdapter.h"

#include "FaultPoints.h"
#include "support/Sandbox.h"

#include <limits>

#include <gmock/gmock.h>

namespace brisk {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::int32_t kMinimum = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMaximum = std::numeric_limits<std::int32_t>::max();

class RegisterConfigAdapterTest : public ::testing::Test {
protected:
    RegisterConfigAdapterTest() {
        RegCreateKeyExA(HKEY_CURRENT_USER, "Software\\Studio\\Game", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &gameKey,
                        nullptr);
    }
    ~RegisterConfigAdapterTest() override {
        faults::reset();
        RegCloseKey(gameKey);
    }

    bool find(const std::vector<std::string>& locations) {
        title.configLocations = locations;
        return title.findConfig("C:\\Games\\X");
    }

    void open() {
        ASSERT_TRUE(find({"HKEY_CURRENT_USER/Software/Studio/Game"}));
        log.take();
    }

    void write(const char* name, DWORD type, const std::string& bytes) {
        ASSERT_EQ(RegSetValueExA(gameKey, name, 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                                 static_cast<DWORD>(bytes.size())),
                  ERROR_SUCCESS);
    }

    // A value as "type:bytes", "none" for a missing one.
    std::string read(const char* name) {
        char data[64];
        DWORD size = sizeof data;
        DWORD type = 0;
        if (RegQueryValueExA(gameKey, name, nullptr, &type, reinterpret_cast<BYTE*>(data), &size) != ERROR_SUCCESS) {
            return "none";
        }
        return std::to_string(type) + ":" + std::string(data, size);
    }

    static std::string bytes(const char* text, std::size_t size) { return {text, size}; }

    testing::SandboxHive hive;
    testing::CapturedLog log;
    HKEY gameKey = nullptr;
    RegisterConfigAdapter title;
};

TEST_F(RegisterConfigAdapterTest, KeyBelowTheCurrentUserIsOpenedWithEitherSeparator) {
    for (const char* location : {"HKEY_CURRENT_USER/Software/Studio/Game", "HKEY_CURRENT_USER/Software\\Studio\\Game",
                                 "HKEY_CURRENT_USER/Software\\Studio/Game"}) {
        RegisterConfigAdapter one;
        one.configLocations = {location};
        EXPECT_FALSE(one.loadConfig());
        EXPECT_TRUE(one.findConfig("")) << location;
        EXPECT_TRUE(one.loadConfig());
        EXPECT_TRUE(one.setValue("Found", location));
        EXPECT_EQ(read("Found"), "1:" + std::string(location) + bytes("\0", 1));
    }
    EXPECT_THAT(log.take(), ElementsAre("Brisk : checking registry path 'Software\\Studio\\Game'.",
                                        "Brisk : checking registry path 'Software\\Studio\\Game'.",
                                        "Brisk : checking registry path 'Software\\Studio\\Game'."));
}

TEST_F(RegisterConfigAdapterTest, KeyOfTheLocalMachineIsOpened) {
    HKEY machine = nullptr;
    ASSERT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, "machine", &machine), ERROR_SUCCESS);
    HKEY game = nullptr;
    ASSERT_EQ(RegCreateKeyA(machine, "SOFTWARE\\Studio\\Game", &game), ERROR_SUCCESS);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine);
    EXPECT_TRUE(find({"HKEY_LOCAL_MACHINE/SOFTWARE/Studio/Game"}));
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    RegCloseKey(machine);
    EXPECT_TRUE(title.setIntValue("Width", 1));
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(game, "Width", nullptr, nullptr, nullptr, &size), ERROR_SUCCESS);
    RegCloseKey(game);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : checking registry path 'SOFTWARE\\Studio\\Game'."));
}

TEST_F(RegisterConfigAdapterTest, KeyIsOpenedForEverythingAndNeverClosed) {
    RegOpenKeyExAFault.intercept([](HKEY root, const char* path, DWORD options, REGSAM access, HKEY* key) {
        EXPECT_EQ(root, HKEY_CURRENT_USER);
        EXPECT_STREQ(path, "Software\\Studio\\Game");
        EXPECT_EQ(options, 0u);
        EXPECT_EQ(access, static_cast<REGSAM>(KEY_ALL_ACCESS));
        return RegOpenKeyExAFault.real(root, path, options, access, key);
    });
    RegCloseKeyFault.reset();
    {
        RegisterConfigAdapter one;
        one.configLocations = {"HKEY_CURRENT_USER/Software/Studio/Game"};
        EXPECT_TRUE(one.findConfig(""));
        EXPECT_TRUE(one.saveConfig());
    }
    EXPECT_EQ(RegOpenKeyExAFault.calls(), 1u);
    EXPECT_EQ(RegCloseKeyFault.calls(), 0u);
}

TEST_F(RegisterConfigAdapterTest, LocationsWithoutASlashAreNotFoundSilently) {
    EXPECT_FALSE(find({}));
    EXPECT_FALSE(find({""}));
    EXPECT_FALSE(find({"HKEY_CURRENT_USER\\Software\\Studio\\Game"}));
    EXPECT_FALSE(find({"HKEY_CURRENT_USER"}));
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_FALSE(title.loadConfig());
}

TEST_F(RegisterConfigAdapterTest, AnyOtherRootFailsAtTheOpen) {
    RegOpenKeyExAFault.intercept([](HKEY root, const char* path, DWORD options, REGSAM access, HKEY* key) {
        EXPECT_EQ(root, nullptr);
        return RegOpenKeyExAFault.real(root, path, options, access, key);
    });
    for (const char* location : {"HKEY_CLASSES_ROOT/Software/Studio/Game", "hkey_current_user/Software/Studio/Game",
                                 "HKCU/Software/Studio/Game", "/Software/Studio/Game"}) {
        EXPECT_FALSE(find({location}));
        EXPECT_FALSE(title.loadConfig());
        EXPECT_THAT(log.take(), ElementsAre("Brisk : checking registry path 'Software\\Studio\\Game'.",
                                            "Brisk : RegOpenKeyEx failed. Error 6."));
    }
}

TEST_F(RegisterConfigAdapterTest, SecondLocationIsNeverTried) {
    EXPECT_FALSE(find({"HKEY_CURRENT_USER/Software/Studio/Missing", "HKEY_CURRENT_USER/Software/Studio/Game"}));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : checking registry path 'Software\\Studio\\Missing'.",
                                        "Brisk : RegOpenKeyEx failed. Error 2."));
    EXPECT_FALSE(find({"", "HKEY_CURRENT_USER/Software/Studio/Game"}));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(RegisterConfigAdapterTest, FailedOpenIsLoggedInDecimalAndForgetsTheKeyFoundBefore) {
    open();
    EXPECT_TRUE(title.loadConfig());
    RegOpenKeyExAFault.fail(1450);
    logLine(std::hex, std::showbase, "base");
    EXPECT_FALSE(title.findConfig(""));
    EXPECT_FALSE(title.loadConfig());
    EXPECT_FALSE(title.setIntValue("Width", 1920));
    EXPECT_THAT(log.take(), ElementsAre("base", "Brisk : checking registry path 'Software\\Studio\\Game'.",
                                        "Brisk : RegOpenKeyEx failed. Error 1450.",
                                        "Brisk : setValue failed for 'Width'. Error 6."));
    EXPECT_EQ(read("Width"), "none");
    faults::reset();
    EXPECT_TRUE(title.findConfig(""));
    EXPECT_TRUE(title.loadConfig());
    EXPECT_TRUE(title.setIntValue("Width", 1920));
    EXPECT_EQ(read("Width"), "4:" + bytes("\x80\x07\0\0", 4));
}

TEST_F(RegisterConfigAdapterTest, KeyPathsLetterCaseDoesNotMatter) {
    EXPECT_TRUE(find({"HKEY_CURRENT_USER/SOFTWARE/studio/game"}));
}

TEST_F(RegisterConfigAdapterTest, SavingAlwaysSucceeds) {
    EXPECT_TRUE(title.saveConfig());
}

TEST_F(RegisterConfigAdapterTest, TextIsWrittenAtOnceWithItsTerminatingZero) {
    open();
    EXPECT_TRUE(title.setValue("Upscaler", "sharp"));
    EXPECT_EQ(read("Upscaler"), "1:sharp" + bytes("\0", 1));
    EXPECT_TRUE(title.setValue("Upscaler", ""));
    EXPECT_EQ(read("Upscaler"), "1:" + bytes("\0", 1));
    EXPECT_TRUE(title.setValue("Name", "\u00FC \u5B9A $1"));
    EXPECT_EQ(read("Name"), "1:\u00FC \u5B9A $1" + bytes("\0", 1));
    EXPECT_EQ(title.getValue("Name", "default"), "\u00FC \u5B9A $1");
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(RegisterConfigAdapterTest, NumbersAreWrittenAtOnceAsFourBytes) {
    open();
    EXPECT_TRUE(title.setIntValue("Width", 1920));
    EXPECT_EQ(read("Width"), "4:" + bytes("\x80\x07\0\0", 4));
    EXPECT_TRUE(title.setIntValue("Width", -2));
    EXPECT_EQ(read("Width"), "4:\xFE\xFF\xFF\xFF");
    EXPECT_EQ(title.getIntValue("Width", 0), -2);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(RegisterConfigAdapterTest, FailedWritesAreLogged) {
    open();
    EXPECT_TRUE(title.setIntValue("Width", 1));
    RegSetValueExAFault.fail(ERROR_ACCESS_DENIED);
    EXPECT_FALSE(title.setValue("Upscaler", "sharp"));
    RegSetValueExAFault.fail(ERROR_DISK_FULL);
    processLog.text(std::hex, std::showbase);
    EXPECT_FALSE(title.setIntValue("Width", 1920));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : setValue failed for 'Upscaler'. Error 5.",
                                        "Brisk : setValue failed for 'Width'. Error 112."));
    EXPECT_EQ(read("Width"), "4:" + bytes("\1\0\0\0", 4));
}

TEST_F(RegisterConfigAdapterTest, WritesWithoutAKeyFailWithItsError) {
    EXPECT_FALSE(title.setValue("Upscaler", "sharp"));
    EXPECT_FALSE(title.setIntValue("Width", 1920));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : setValue failed for 'Upscaler'. Error 6.",
                                        "Brisk : setValue failed for 'Width'. Error 6."));
}

TEST_F(RegisterConfigAdapterTest, MissingValuesAreTheDefaults) {
    EXPECT_EQ(title.getIntValue("Width", 7), 7);
    EXPECT_EQ(title.getValue("Width", "default"), "default");
    open();
    EXPECT_EQ(title.getIntValue("Width", kMinimum), kMinimum);
    EXPECT_EQ(title.getIntValue("Width", kMaximum), kMaximum);
    EXPECT_EQ(title.getValue("Width", "default"), "default");
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(RegisterConfigAdapterTest, NumberIsReadFromUpToFourBytesOfAnyType) {
    open();
    write("dword", REG_DWORD, bytes("\x80\x07\0\0", 4));
    write("binary", REG_BINARY, "\x02");
    write("text", REG_SZ, bytes("12\0", 3));
    write("empty", REG_BINARY, "");
    write("long", REG_BINARY, "12345");
    write("qword", REG_QWORD, bytes("\1\0\0\0\0\0\0\0", 8));
    EXPECT_EQ(title.getIntValue("dword", 7), 1920);
    EXPECT_EQ(title.getIntValue("binary", 7), 2);
    EXPECT_EQ(title.getIntValue("text", 7), 0x3231);
    EXPECT_EQ(title.getIntValue("empty", 7), 0);
    EXPECT_EQ(title.getIntValue("long", 7), 7);
    EXPECT_EQ(title.getIntValue("qword", 7), 7);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(RegisterConfigAdapterTest, TextIsReadUpToTheFirstZeroByteOfAnyType) {
    open();
    write("text", REG_SZ, bytes("sharp\0", 6));
    write("list", REG_MULTI_SZ, bytes("one\0two\0\0", 9));
    write("variable", REG_EXPAND_SZ, bytes("%PATH%\0", 7));
    write("binary", REG_BINARY, "abc");
    write("dword", REG_DWORD, bytes("AB\0C", 4));
    write("zero", REG_DWORD, bytes("\0\0\0\0", 4));
    write("empty", REG_BINARY, "");
    EXPECT_EQ(title.getValue("text", "default"), "sharp");
    EXPECT_EQ(title.getValue("list", "default"), "one");
    EXPECT_EQ(title.getValue("variable", "default"), "%PATH%");
    EXPECT_EQ(title.getValue("binary", "default"), "abc");
    EXPECT_EQ(title.getValue("dword", "default"), "AB");
    EXPECT_EQ(title.getValue("zero", "default"), "");
    EXPECT_EQ(title.getValue("empty", "default"), "");
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(RegisterConfigAdapterTest, LongTextIsReadWhole) {
    open();
    const std::string text(100'000, 'x');
    write("long", REG_SZ, text + '\0');
    EXPECT_TRUE(title.getValue("long", "default") == text);
}

TEST_F(RegisterConfigAdapterTest, TextThatGrowsBetweenTheQueriesIsTheDefault) {
    open();
    std::string replacement;
    RegQueryValueExAFault.intercept(
        [&](HKEY key, const char* name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* size) {
            EXPECT_EQ(type, nullptr);
            const LSTATUS status = RegQueryValueExAFault.real(key, name, reserved, type, data, size);
            if (!data) {
                write("text", REG_SZ, replacement);
            }
            return status;
        });
    write("text", REG_SZ, bytes("sharp\0", 6));
    replacement = bytes("sharper\0", 8);
    EXPECT_EQ(title.getValue("text", "default"), "default");
    replacement = bytes("dull\0", 5);
    EXPECT_EQ(title.getValue("text", "default"), "dull");
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(RegisterConfigAdapterTest, FailedQueriesAreTheDefaultsAlsoWhenOnlyTheSecondFails) {
    open();
    write("text", REG_SZ, bytes("sharp\0", 6));
    RegQueryValueExAFault.fail(ERROR_ACCESS_DENIED, ERROR_SUCCESS, 2);
    EXPECT_EQ(title.getValue("text", "default"), "default");
    EXPECT_EQ(RegQueryValueExAFault.calls(), 2u);
    EXPECT_EQ(title.getIntValue("text", 7), 7);
    EXPECT_THAT(log.take(), IsEmpty());
}

} // namespace
} // namespace brisk
