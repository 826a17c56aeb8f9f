#include "hostile/HostileFixture.h"

namespace brisk::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

// With the program's and the log's paths this makes a line of 32,000 characters; 32,767 are the most.
constexpr std::size_t kLongText = 31'500;

class HostileCommandLineTest : public HostileFixture {};

TEST_F(HostileCommandLineTest, ParametersBehindThousandsOfCharactersAreFound) {
    for (const std::string& filler :
         {std::string(kLongText, 'x'), std::string(kLongText, ' '), repeated("-nw -nt -fps ", kLongText / 13),
          repeated("-nw 1x ", kLongText / 7), std::string(kLongText / 3, '\xC3')}) {
        std::filesystem::remove(service.logFile());
        startStorm(filler + " -fps 40");
        quitStorm();
        EXPECT_THAT(service.log(), ElementsAreArray(startLines() + Lines{"Brisk : finished"}));
    }
}

TEST_F(HostileCommandLineTest, NumberOfThousandsOfDigitsEndsTheServiceBeforeItLogsToItsFile) {
    beginStorm();
    service.start("-nw " + std::string(kLongText, '9'));
    EXPECT_EQ(waitForStormsEnd(), 1u);
    printFigures({});
    EXPECT_THAT(service.log(), IsEmpty());
}

TEST_F(HostileCommandLineTest, LogPathOfThousandsOfCharactersOnlyLosesTheLog) {
    startStorm("-log C:\\" + std::string(kLongText, 'x'));
    service.post(BRISK_APP_STARTED, 1001, 1);
    service.post(BRISK_APP_FINISHED);
    quitStorm();
    EXPECT_THAT(service.log(), IsEmpty());
}

} // namespace
} // namespace brisk::testing
