#include "app/TitleInfo.h"
#include "hostile/HostileFixture.h"

namespace brisk::testing {
namespace {

using ::testing::ElementsAreArray;

// Wine carries no message of 16 MB or more to another process.
constexpr std::size_t kLargestMessage = 15 * kMegabyte;

// Wine's heap keeps pages of a great many small blocks for the next ones, and takes some rounds to have enough of them:
// the counters are compared around the round after these.
constexpr int kRoundsBefore = 3;
constexpr double kToleratedMegabytes = 4;

class HostileTitleInformationTest : public HostileFixture {
protected:
    void expectAnswers(const std::vector<std::string>& blocks, const Lines& linesOfEach) {
        service.startAndWait();
        const auto sendEach = [&] {
            for (const std::string& block : blocks) {
                EXPECT_EQ(service.sendTitleInfo(BRISK_TITLE_INFO_TAG, BRISK_TITLE_INFO_TAG, block), 0);
            }
        };
        for (int round = 0; round < kRoundsBefore; ++round) {
            sendEach();
        }
        const std::size_t first = service.log().size();
        beginStorm();
        sendEach();
        endStorm(kToleratedMegabytes);
        EXPECT_EQ(service.quit(), 0u);
        Lines expected;
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            expected = expected + linesOfEach;
        }
        EXPECT_THAT(service.logFrom(first), ElementsAreArray(expected + Lines{"Brisk : finished"}));
    }

    const Lines parsed{"Brisk : receiveTitleInfo"};
    const Lines malformed{"Brisk : receiveTitleInfo", "Brisk : got exception while processing titles info"};
};

TEST_F(HostileTitleInformationTest, ValidTextsOfUpTo15MegabytesAreParsedAndForgotten) {
    std::vector<std::string> blocks;
    for (std::size_t size = kMegabyte; size <= kLargestMessage; size += 2 * kMegabyte) {
        blocks.push_back("\"" + std::string(size - 2, 'x') + "\"");
    }
    expectAnswers(blocks, parsed);
}

TEST_F(HostileTitleInformationTest, ArraysOfMillionsOfValuesAreParsedAndForgotten) {
    const std::size_t values = scaled(2, 7) * kMegabyte;
    expectAnswers({"[" + repeated("1,", values - 1) + "1]"}, parsed);
}

TEST_F(HostileTitleInformationTest, MegabytesOfOpenBracketsAreMalformed) {
    expectAnswers({std::string(scaled(2, 15) * kMegabyte, '[')}, malformed);
}

TEST_F(HostileTitleInformationTest, TextsThatAreNotUtf8AreMalformed) {
    std::string late = "\"" + std::string(kLargestMessage - 2, 'x') + "\"";
    late[late.size() - 2] = '\xFF';
    expectAnswers({"\"\xC3\"", "\"\xED\xA0\x80\"", "\xFE\xFF", std::string("[\0]", 3),
                   std::string(kLargestMessage, '\xFF'), late, std::string(kLargestMessage, '\0')},
                  malformed);
}

TEST_F(HostileTitleInformationTest, NestingAHundredThousandDeepIsParsed) {
    expectAnswers(
        {repeated("[", 100'000) + repeated("]", 100'000), repeated(R"({"a":)", 100'000) + "1" + repeated("}", 100'000)},
        parsed);
}

TEST_F(HostileTitleInformationTest, UnclosedNestingAHundredThousandDeepIsMalformed) {
    expectAnswers({repeated("[", 100'000), repeated(R"({"a":)", 100'000), repeated("[", 100'000) + repeated("}", 9)},
                  malformed);
}

TEST_F(HostileTitleInformationTest, ThousandBlocksInARowAreForgotten) {
    expectAnswers(std::vector<std::string>(1000, "[" + repeated("{\"title\": [1, 2, 3]},", 500) + "null]"), parsed);
}

// The blocks that Wine does not carry, handed to the function itself.
TEST_F(HostileTitleInformationTest, BlocksOf64MegabytesAreParsedOrRefusedAndForgotten) {
    const std::string text = "\"" + std::string(64 * kMegabyte - 2, 'x') + "\"";
    const auto receive = [](const std::string& block) {
        const COPYDATASTRUCT data{BRISK_TITLE_INFO_TAG, static_cast<DWORD>(block.size()),
                                  const_cast<char*>(block.data())};
        receiveTitleInfo(nullptr, BRISK_TITLE_INFO_TAG, &data);
    };
    CapturedLog captured;
    receive("[]");
    captured.take();
    const std::size_t privateBytes = readCounters(GetCurrentProcessId()).privateBytes;
    receive(text);
    EXPECT_EQ(captured.take(), parsed);
    receive(text.substr(1));
    EXPECT_EQ(captured.take(), malformed);
    receive(text.substr(0, text.size() - 2) + "\xC3\"");
    EXPECT_EQ(captured.take(), malformed);
    EXPECT_LE(readCounters(GetCurrentProcessId()).privateBytes, privateBytes + 4 * kMegabyte);
}

} // namespace
} // namespace brisk::testing
