// Text mode as the workbench has it, against the C library's own through the service's adapter on real files.
#include "tools/titles/TextMode.h"

#include "support/Sandbox.h"
#include "titles/TextConfigAdapter.h"

#include <random>

#include <gmock/gmock.h>

namespace brisk::workbench {
namespace {

class TextModeTest : public ::testing::Test {
protected:
    TextModeTest() { title.configLocations = {toNarrow(folder / "cfg.ini")}; }

    void expectAgreement(const std::string& bytes) {
        testing::writeFile(folder / "cfg.ini", bytes);
        ASSERT_TRUE(title.loadConfig());
        const std::string text = title.content;
        ASSERT_EQ(readAsText(bytes), text) << ::testing::PrintToString(bytes);
        title.content = bytes; // any text may have to be written
        ASSERT_TRUE(title.saveConfig());
        ASSERT_EQ(writeAsText(bytes), testing::readFile(folder / "cfg.ini")) << ::testing::PrintToString(bytes);
    }

    testing::TemporaryFolder folder;
    TextConfigAdapter title;
};

TEST_F(TextModeTest, AgreesWithTheServiceOnWhatStandsAtTheEndsOfItsBlocks) {
    for (const std::size_t length :
         std::initializer_list<std::size_t>{0, 1, 510, 511, 512, 4094, 4095, 4096, 4097, 8191, 8192, 12287}) {
        for (const char* tail :
             {"", "\r", "\n", "\r\n", "\r\r\n", "\r\x1A", "\x1A", "\x1A\r\n", "\n\032b", "\r\n\r", "\xEF\xBB\xBF"}) {
            expectAgreement(std::string(length, 'a') + tail);
            expectAgreement(std::string(length, 'a') + tail + "X\r\n");
        }
    }
}

TEST_F(TextModeTest, AgreesWithTheServiceOnRandomBytes) {
    constexpr char kFrequent[] = {'\r', '\n', '\r', '\n', 'a', '\0', '\x1A'};
    std::mt19937 random(20);
    for (int round = 0; round < 5000; ++round) {
        // Most without a 0x1A, which ends everything.
        const std::size_t choices = round % 4 == 0 ? sizeof kFrequent : sizeof kFrequent - 1;
        const bool isDense = round % 2 == 0;
        std::string bytes(round % 10 == 0 ? 3900 + random() % 5000 : random() % 60, '\0');
        for (char& byte : bytes) {
            const bool isFrequent = isDense || random() % 40 == 0;
            byte = isFrequent ? kFrequent[random() % choices] : static_cast<char>(0x20 + random() % 0xE0);
        }
        expectAgreement(bytes);
    }
}

} // namespace
} // namespace brisk::workbench
