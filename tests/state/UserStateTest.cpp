#include "state/UserState.h"

#include "support/Faults.h"
#include "support/Sandbox.h"

#include <gmock/gmock.h>

BRISK_FAULT_POINT("advapi32.dll", RegCreateKeyExA)
BRISK_FAULT_POINT("advapi32.dll", RegQueryValueExA)
BRISK_FAULT_POINT("advapi32.dll", RegSetValueExA)
BRISK_FAULT_POINT("advapi32.dll", RegOpenKeyA)
BRISK_FAULT_POINT("advapi32.dll", RegOpenKeyExA)
BRISK_FAULT_POINT("advapi32.dll", RegDeleteValueA)
BRISK_FAULT_POINT("advapi32.dll", RegDeleteTreeA)
BRISK_FAULT_POINT("advapi32.dll", RegCloseKey)

namespace brisk {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kMainKey[] = "SOFTWARE\\Orlan\\briskGCT";
constexpr char kToastsShownKey[] = "SOFTWARE\\Orlan\\briskGCT\\ToastsShown";
constexpr char kPatchedAppsKey[] = "SOFTWARE\\Orlan\\briskGCT\\PatchedApps";

class UserStateTest : public ::testing::Test {
protected:
    UserStateTest() { faults::reset(); }
    ~UserStateTest() override { faults::reset(); }

    // A key's values as "name=type:bytes in hexadecimal"; "none" for a key that does not exist.
    static std::vector<std::string> values(const char* path) {
        HKEY key = nullptr;
        if (RegOpenKeyExA(HKEY_CURRENT_USER, path, 0, KEY_READ, &key) != ERROR_SUCCESS) {
            return {"none"};
        }
        std::vector<std::string> result;
        for (DWORD index = 0;; ++index) {
            char name[256];
            BYTE data[256];
            DWORD nameLength = sizeof name;
            DWORD size = sizeof data;
            DWORD type = 0;
            if (RegEnumValueA(key, index, name, &nameLength, nullptr, &type, data, &size) != ERROR_SUCCESS) {
                break;
            }
            std::ostringstream text;
            text << name << '=' << type << ':' << std::hex;
            for (DWORD byte = 0; byte < size; ++byte) {
                text << (data[byte] < 16 ? "0" : "") << static_cast<unsigned>(data[byte]);
            }
            result.push_back(text.str());
        }
        RegCloseKey(key);
        return result;
    }

    static void write(const char* path, const char* name, DWORD type, const std::string& bytes) {
        HKEY key = nullptr;
        RegCreateKeyExA(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
        RegSetValueExA(key, name, 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                       static_cast<DWORD>(bytes.size()));
        RegCloseKey(key);
    }

    static void writeNumber(const char* path, const char* name, DWORD number) {
        write(path, name, REG_DWORD, {reinterpret_cast<const char*>(&number), sizeof number});
    }

    testing::SandboxHive hive;
    testing::CapturedLog log;
};

TEST_F(UserStateTest, FirstAccessCheckCreatesTheMainKey) {
    EXPECT_TRUE(isRegistryAccessible());
    EXPECT_THAT(values(kMainKey), IsEmpty());
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(UserStateTest, AccessCheckFailsWithoutALineWhenTheKeyCannotBeCreated) {
    RegCreateKeyExAFault.fail(ERROR_ACCESS_DENIED);
    EXPECT_FALSE(isRegistryAccessible());
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(UserStateTest, KeyThatAlreadyExistsCountsAsCreated) {
    RegCreateKeyExAFault.intercept([](auto... arguments) -> LSTATUS {
        RegCreateKeyExAFault.real(arguments...);
        return ERROR_ALREADY_EXISTS;
    });
    EXPECT_TRUE(isRegistryAccessible());
    EXPECT_TRUE(disallowToasts());
    EXPECT_FALSE(areToastsAllowed());
    EXPECT_TRUE(incNumberOfToastsShown("game.exe"));
    EXPECT_EQ(getNumberOfToastsShown("game.exe"), 1);
    EXPECT_TRUE(setPatched("game.exe"));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(UserStateTest, KeysArePermanentAndOpenedWithFullAccess) {
    std::vector<std::string> created;
    RegCreateKeyExAFault.intercept([&](HKEY root, LPCSTR path, DWORD reserved, LPSTR keyClass, DWORD options,
                                       REGSAM access, const LPSECURITY_ATTRIBUTES security, PHKEY key,
                                       LPDWORD disposition) {
        EXPECT_EQ(root, HKEY_CURRENT_USER);
        EXPECT_EQ(reserved, 0u);
        EXPECT_EQ(keyClass, nullptr);
        EXPECT_EQ(options, DWORD{REG_OPTION_NON_VOLATILE});
        EXPECT_EQ(access, REGSAM{0xF003F});
        EXPECT_EQ(security, nullptr);
        created.emplace_back(path);
        return RegCreateKeyExAFault.real(root, path, reserved, keyClass, options, access, security, key, disposition);
    });
    RegOpenKeyExAFault.intercept([](HKEY root, LPCSTR path, DWORD options, REGSAM access, PHKEY key) {
        EXPECT_EQ(access, REGSAM{0xF003F});
        return RegOpenKeyExAFault.real(root, path, options, access, key);
    });
    RegDeleteTreeAFault.intercept([](HKEY key, LPCSTR subkey) {
        EXPECT_EQ(subkey, nullptr);
        return RegDeleteTreeAFault.real(key, subkey);
    });
    isRegistryAccessible();
    areToastsAllowed();
    disallowToasts();
    getNumberOfToastsShown("game.exe");
    incNumberOfToastsShown("game.exe");
    setPatched("game.exe");
    EXPECT_TRUE(resetToastsShown());
    EXPECT_THAT(created, ElementsAre(kMainKey, kMainKey, kMainKey, kToastsShownKey, kToastsShownKey, kPatchedAppsKey));
}

TEST_F(UserStateTest, WithNoKeyAtAllToastsAreAllowedAndTheKeyIsCreated) {
    EXPECT_TRUE(areToastsAllowed());
    EXPECT_THAT(values(kMainKey), IsEmpty());
    EXPECT_EQ(getNumberOfToastsShown("game.exe"), 0);
    EXPECT_THAT(values(kToastsShownKey), IsEmpty());
}

TEST_F(UserStateTest, ToastsNotAllowedOfZeroCountsAsAllowed) {
    writeNumber(kMainKey, "ToastsNotAllowed", 0);
    EXPECT_TRUE(areToastsAllowed());
    writeNumber(kMainKey, "ToastsNotAllowed", 2);
    EXPECT_FALSE(areToastsAllowed());
}

TEST_F(UserStateTest, ToastsNotAllowedOfAnyTypeIsANumberAndALongOneIsAbsent) {
    write(kMainKey, "ToastsNotAllowed", REG_BINARY, std::string("\x01", 1));
    EXPECT_FALSE(areToastsAllowed());
    write(kMainKey, "ToastsNotAllowed", REG_BINARY, "12345");
    EXPECT_TRUE(areToastsAllowed());
}

TEST_F(UserStateTest, DisallowingWritesTheNumberOne) {
    EXPECT_TRUE(disallowToasts());
    EXPECT_THAT(values(kMainKey), ElementsAre("ToastsNotAllowed=4:01000000"));
    EXPECT_FALSE(areToastsAllowed());
}

TEST_F(UserStateTest, IncrementingATitleNeverSeenWritesOneAndAThreeBecomesFour) {
    EXPECT_TRUE(incNumberOfToastsShown("new.exe"));
    writeNumber(kToastsShownKey, "old.exe", 3);
    EXPECT_TRUE(incNumberOfToastsShown("old.exe"));
    EXPECT_THAT(values(kToastsShownKey), ElementsAre("new.exe=4:01000000", "old.exe=4:04000000"));
    EXPECT_EQ(getNumberOfToastsShown("new.exe"), 1);
    EXPECT_EQ(getNumberOfToastsShown("old.exe"), 4);
    EXPECT_EQ(getNumberOfToastsShown("other.exe"), 0);
}

TEST_F(UserStateTest, CountIsASigned32BitNumber) {
    writeNumber(kToastsShownKey, "game.exe", 0xFFFFFFFF);
    EXPECT_EQ(getNumberOfToastsShown("game.exe"), -1);
    EXPECT_TRUE(incNumberOfToastsShown("game.exe"));
    EXPECT_EQ(getNumberOfToastsShown("game.exe"), 0);
}

TEST_F(UserStateTest, CountThatCannotBeReadIsZeroAndBeginsAnew) {
    write(kToastsShownKey, "long.exe", REG_BINARY, "12345");
    EXPECT_EQ(getNumberOfToastsShown("long.exe"), 0);
    EXPECT_TRUE(incNumberOfToastsShown("long.exe"));
    EXPECT_THAT(values(kToastsShownKey), ElementsAre("long.exe=4:01000000"));
}

TEST_F(UserStateTest, FailedQueryCountsAsAnAbsentValueAndIsNotLogged) {
    writeNumber(kMainKey, "ToastsNotAllowed", 1);
    writeNumber(kToastsShownKey, "game.exe", 3);
    RegQueryValueExAFault.fail(ERROR_ACCESS_DENIED);
    EXPECT_TRUE(areToastsAllowed());
    EXPECT_EQ(getNumberOfToastsShown("game.exe"), 0);
    EXPECT_TRUE(incNumberOfToastsShown("game.exe"));
    EXPECT_THAT(values(kToastsShownKey), ElementsAre("game.exe=4:01000000"));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(UserStateTest, TitleNameWithABackslashIsAValueNameAsItStands) {
    EXPECT_TRUE(incNumberOfToastsShown("bin\\game.exe"));
    EXPECT_TRUE(setPatched("bin\\game.exe"));
    EXPECT_THAT(values(kToastsShownKey), ElementsAre("bin\\game.exe=4:01000000"));
    EXPECT_THAT(values(kPatchedAppsKey), ElementsAre("bin\\game.exe=4:01000000"));
}

TEST_F(UserStateTest, PatchMarkerIsOneHoweverOftenItIsSet) {
    EXPECT_TRUE(setPatched("game.exe"));
    EXPECT_TRUE(setPatched("game.exe"));
    EXPECT_THAT(values(kPatchedAppsKey), ElementsAre("game.exe=4:01000000"));
}

TEST_F(UserStateTest, ResettingThePermissionDeletesTheValue) {
    disallowToasts();
    EXPECT_TRUE(resetToastsAllowed());
    EXPECT_THAT(values(kMainKey), IsEmpty());
    EXPECT_TRUE(areToastsAllowed());
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(UserStateTest, ResettingAPermissionThatIsAbsentFailsWithError2) {
    isRegistryAccessible();
    EXPECT_FALSE(resetToastsAllowed());
    EXPECT_THAT(log.take(), ElementsAre("Brisk : resetToastsAllowed : RegDeleteValue failed. Error 2."));
}

TEST_F(UserStateTest, ResettingTheCountsLeavesAnEmptyKeyBehind) {
    incNumberOfToastsShown("a.exe");
    incNumberOfToastsShown("b.exe");
    writeNumber("SOFTWARE\\Orlan\\briskGCT\\ToastsShown\\Below", "c.exe", 1);
    EXPECT_TRUE(resetToastsShown());
    EXPECT_THAT(values(kToastsShownKey), IsEmpty());
    EXPECT_THAT(values("SOFTWARE\\Orlan\\briskGCT\\ToastsShown\\Below"), ElementsAre("none"));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(UserStateTest, EachResetForgetsNothingElse) {
    disallowToasts();
    incNumberOfToastsShown("game.exe");
    setPatched("game.exe");
    EXPECT_TRUE(resetToastsShown());
    EXPECT_THAT(values(kMainKey), ElementsAre("ToastsNotAllowed=4:01000000"));
    EXPECT_THAT(values(kPatchedAppsKey), ElementsAre("game.exe=4:01000000"));
    incNumberOfToastsShown("game.exe");
    EXPECT_TRUE(resetToastsAllowed());
    EXPECT_THAT(values(kToastsShownKey), ElementsAre("game.exe=4:01000000"));
    EXPECT_THAT(values(kPatchedAppsKey), ElementsAre("game.exe=4:01000000"));
}

TEST_F(UserStateTest, ResetsDoNotCreateKeys) {
    EXPECT_FALSE(resetToastsAllowed());
    EXPECT_FALSE(resetToastsShown());
    EXPECT_THAT(values(kMainKey), ElementsAre("none"));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : resetToastsAllowed : RegOpenKey failed. Error 2.",
                                        "Brisk : resetToastsShown : RegOpenKeyEx failed. Error 2."));
}

TEST_F(UserStateTest, KeyThatCannotBeCreatedFailsEachOperationWithItsLine) {
    RegCreateKeyExAFault.fail(ERROR_ACCESS_DENIED);
    // The numbers are decimal whatever the base of the line before.
    processLog.text(std::hex, std::showbase);
    EXPECT_TRUE(areToastsAllowed());
    EXPECT_FALSE(disallowToasts());
    EXPECT_EQ(getNumberOfToastsShown("game.exe"), 0);
    EXPECT_FALSE(incNumberOfToastsShown("game.exe"));
    EXPECT_FALSE(setPatched("game.exe"));
    RegCreateKeyExAFault.fail(1450);
    EXPECT_FALSE(setPatched("game.exe"));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : areToastsAllowed : RegCreateKeyEx failed. Error 5.",
                                        "Brisk : disallowToasts : RegCreateKeyEx failed. Error 5.",
                                        "Brisk : getNumberOfToastsShown : RegCreateKeyEx failed. Error 5.",
                                        "Brisk : incNumberOfToastsShown : RegCreateKeyEx failed. Error 5.",
                                        "Brisk : setPatched : RegCreateKeyEx failed. Error 5.",
                                        "Brisk : setPatched : RegCreateKeyEx failed. Error 1450."));
    // Nothing is done without the key.
    EXPECT_EQ(RegQueryValueExAFault.calls() + RegSetValueExAFault.calls() + RegCloseKeyFault.calls(), 0u);
    EXPECT_THAT(values(kMainKey), ElementsAre("none"));
    faults::reset();
    EXPECT_TRUE(setPatched("game.exe"));
}

TEST_F(UserStateTest, FailedWritesAreLoggedAndLeaveTheOldValue) {
    writeNumber(kToastsShownKey, "game.exe", 1);
    RegSetValueExAFault.fail(ERROR_DISK_FULL);
    EXPECT_FALSE(disallowToasts());
    EXPECT_FALSE(incNumberOfToastsShown("game.exe"));
    EXPECT_FALSE(setPatched("game.exe"));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : disallowToasts : RegSetValueEx failed. Error 112.",
                                        "Brisk : incNumberOfToastsShown : RegSetValueEx failed. Error 112.",
                                        "Brisk : setPatched : RegSetValueEx failed. Error 112."));
    EXPECT_EQ(getNumberOfToastsShown("game.exe"), 1);
    EXPECT_TRUE(areToastsAllowed());
}

TEST_F(UserStateTest, FailedResetsAreLoggedAndLeaveTheValues) {
    disallowToasts();
    incNumberOfToastsShown("game.exe");
    RegDeleteValueAFault.fail(ERROR_ACCESS_DENIED);
    RegDeleteTreeAFault.fail(ERROR_ACCESS_DENIED);
    EXPECT_FALSE(resetToastsAllowed());
    EXPECT_FALSE(resetToastsShown());
    RegOpenKeyAFault.fail(ERROR_ACCESS_DENIED);
    RegOpenKeyExAFault.fail(ERROR_ACCESS_DENIED);
    EXPECT_FALSE(resetToastsAllowed());
    EXPECT_FALSE(resetToastsShown());
    EXPECT_EQ(RegDeleteValueAFault.calls() + RegDeleteTreeAFault.calls(), 2u);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : resetToastsAllowed : RegDeleteValue failed. Error 5.",
                                        "Brisk : resetToastsShown : RegDeleteTree failed. Error 5.",
                                        "Brisk : resetToastsAllowed : RegOpenKey failed. Error 5.",
                                        "Brisk : resetToastsShown : RegOpenKeyEx failed. Error 5."));
    faults::reset();
    EXPECT_FALSE(areToastsAllowed());
    EXPECT_EQ(getNumberOfToastsShown("game.exe"), 1);
    EXPECT_TRUE(resetToastsAllowed());
    EXPECT_TRUE(resetToastsShown());
}

TEST_F(UserStateTest, EveryOpenedKeyIsClosedAlsoAfterAFailure) {
    const auto runAll = [] {
        RegCloseKeyFault.reset();
        isRegistryAccessible();
        disallowToasts();
        areToastsAllowed();
        incNumberOfToastsShown("game.exe");
        getNumberOfToastsShown("game.exe");
        setPatched("game.exe");
        resetToastsAllowed();
        resetToastsShown();
        return RegCloseKeyFault.calls();
    };
    EXPECT_EQ(runAll(), 8u);
    RegSetValueExAFault.fail(ERROR_DISK_FULL);
    RegDeleteValueAFault.fail(ERROR_ACCESS_DENIED);
    RegDeleteTreeAFault.fail(ERROR_ACCESS_DENIED);
    EXPECT_EQ(runAll(), 8u);
}

} // namespace
} // namespace brisk
