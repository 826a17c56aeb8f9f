#include "tools/titles/RegistryExport.h"

#include <gmock/gmock.h>

namespace brisk::workbench {
namespace {

std::string utf16(std::string_view ascii) {
    std::string bytes = "\xFF\xFE";
    for (const char byte : ascii) {
        bytes += {byte, '\0'};
    }
    return bytes;
}

constexpr char kExport[] = "Windows Registry Editor Version 5.00\r\n"
                           "\r\n"
                           "[HKEY_CURRENT_USER\\Software\\Studio\\Game]\r\n"
                           "\"Width\"=dword:00000780\r\n"
                           "\"Path\"=\"C:\\\\Games\\\\\\\"One\\\"\"\r\n"
                           "@=\"default\"\r\n"
                           "\"Bytes\"=hex:01,02,\\\r\n"
                           "  ff\r\n"
                           "\"Wide\"=hex(2):61,00,e4,00,00,00\r\n";

TEST(RegistryExportTest, IsReadInUtf16AndUtf8) {
    for (const std::string& bytes : {utf16(kExport), std::string(kExport)}) {
        const auto keys = readRegistryExport(bytes);
        ASSERT_TRUE(keys);
        EXPECT_EQ(describe(keys->at("hkey_current_user\\SOFTWARE\\studio\\game")),
                  "@=\"default\"\n"
                  "\"Bytes\"=hex(3):01,02,ff\n"
                  "\"Path\"=\"C:\\\\Games\\\\\\\"One\\\"\"\n"
                  "\"Wide\"=hex(2):61,c3,a4,00\n"
                  "\"Width\"=dword:00000780\n");
        EXPECT_TRUE(keys->contains("HKEY_CURRENT_USER\\Software"));
    }
}

TEST(RegistryExportTest, OfOldWindowsIsRead) {
    const auto keys = readRegistryExport("REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\A]\n\"Text\"=hex(1):61,62,00\n");
    ASSERT_TRUE(keys);
    EXPECT_EQ(describe(keys->at("HKEY_LOCAL_MACHINE\\A")), "\"Text\"=\"ab\"\n");
}

TEST(RegistryExportTest, LinesThatNoExportHasAreTold) {
    std::vector<std::size_t> faults;
    const auto keys = readRegistryExport("Windows Registry Editor Version 5.00\r\n"
                                         "; a comment\r\n"
                                         "[HKEY_CURRENT_USER\\A]\r\n"
                                         "\"Version\"=dword:zz\r\n"
                                         "\"Bytes\"=hex:01,\\\r\n"
                                         "  02\r\n"
                                         "\"Gone\"=-\r\n"
                                         "\"Width=1\r\n"
                                         "garbage\r\n"
                                         "\r\n",
                                         [&faults](std::size_t line) { faults.push_back(line); });
    ASSERT_TRUE(keys);
    EXPECT_EQ(describe(keys->at("HKEY_CURRENT_USER\\A")), "\"Bytes\"=hex(3):01,02\n");
    EXPECT_THAT(faults, ::testing::ElementsAre(4, 8, 9));
}

TEST(RegistryExportTest, IsRefusedWhenItIsSomethingElse) {
    EXPECT_FALSE(readRegistryExport("[HKEY_CURRENT_USER\\A]\r\n\"Width\"=dword:00000001\r\n"));
    EXPECT_FALSE(readRegistryExport(""));
}

} // namespace
} // namespace brisk::workbench
