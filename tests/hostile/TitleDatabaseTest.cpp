#include "hostile/HostileFixture.h"
#include "support/JsonErrors.h"

#include <algorithm>

namespace brisk::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

// Titles that no machine has, with ids from 2000 on.
std::string manyTitles(std::size_t count, const std::string& publisher) {
    std::string titles = "[";
    for (std::size_t i = 0; i < count; ++i) {
        const std::string number = std::to_string(2000 + i);
        titles += std::string(i == 0 ? "" : ",") + R"json({"id":)json" + number +
                  R"json(,"config_type":"txt","title_name":"Title )json" + number + R"json(","publisher":")json" +
                  publisher + R"json(","binary_name":"title)json" + number +
                  R"json(.exe","config_locations":["C:\\Nowhere\\)json" + number +
                  R"json(.ini"],"config_fields":[{"key":"(Width=)(\\d+)()","meta":"width","value":0}]})json";
    }
    return titles + "]";
}

Lines unusableLines(const Lines& loaderLines) {
    return startLines({.database = loaderLines}) + Lines{"Brisk : finished"};
}

class HostileTitleDatabaseTest : public HostileFixture {
protected:
    // Starts a service that ends by itself; its exit code.
    std::uint32_t startUntilItsEnd() {
        beginStorm();
        service.start();
        const std::uint32_t exitCode = waitForStormsEnd();
        printFigures({});
        return exitCode;
    }
};

TEST_F(HostileTitleDatabaseTest, ManyTitlesAreServedFromFirstToLast) {
    const unsigned count = 100'000;
    setDatabase(manyTitles(count, "Nobody"));
    startStorm();
    service.post(BRISK_APP_STARTED, 2000, 1);
    service.post(BRISK_APP_FINISHED);
    service.post(BRISK_APP_STARTED, 2000 + count - 1, 1);
    service.post(BRISK_APP_FINISHED);
    service.post(BRISK_APP_STARTED, 2000 + count, 1);
    settle();
    // What the titles themselves take is there already. The first toast to clear brings the stand-in along.
    endStorm(4);
    // About 1 KB a title; the document they were read from is gone.
    EXPECT_LE(before.privateBytes, 10 * kMegabyte + std::size_t{count} * 2048);
    EXPECT_EQ(service.quit(), 0u);
    Lines lines = log();
    std::erase_if(lines, [](const std::string& line) {
        return line.find("onAppStarted") == std::string::npos && line.find("GameID") == std::string::npos;
    });
    EXPECT_THAT(lines,
                ElementsAre("Brisk : onAppStarted, p1 = 2000, p2 = 0x1",
                            "Brisk : waiting for activation, GameID 2000, PID 0x1",
                            "Brisk : onAppStarted, p1 = " + std::to_string(1999 + count) + ", p2 = 0x1",
                            "Brisk : waiting for activation, GameID " + std::to_string(1999 + count) + ", PID 0x1",
                            "Brisk : onAppStarted, p1 = " + std::to_string(2000 + count) + ", p2 = 0x1",
                            "Brisk : GameID " + std::to_string(2000 + count) + " is not supported. Skip."));
}

TEST_F(HostileTitleDatabaseTest, BulkPassOverManyTitlesVisitsEachAndKeepsNothing) {
    const unsigned count = scaled(5'000, 100'000);
    setDatabase(manyTitles(count, "Nobody"));
    startStorm();
    service.post(BRISK_MASSIVE_PATCHING);
    toasts.waitForShows(1, std::chrono::minutes(5));
    settle();
    endStorm(8); // the first toast brings the stand-in and its buffers along
    EXPECT_EQ(service.quit(), 0u);
    const Lines lines = log();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "Brisk : config not found."), count);
    EXPECT_EQ(std::count(lines.begin(), lines.end(),
                         "Brisk : config for title" + std::to_string(1999 + count) + ".exe was not found. Skip."),
              1);
}

TEST_F(HostileTitleDatabaseTest, ValidDatabaseOfAHundredMegabytesIsLoaded) {
    const std::size_t megabytes = 100;
    // Long texts and short ones.
    setDatabase(manyTitles(megabytes * kMegabyte / 102'700, std::string(102'400, 'p')));
    startStorm();
    // Each publisher is kept once; of what parsing has freed Wine's heap keeps some, newer Wine more.
    EXPECT_LE(before.privateBytes, 10 * kMegabyte + megabytes * kMegabyte * 2);
    service.post(BRISK_APP_STARTED, 2000, 1);
    settle();
    endStorm(4);
    EXPECT_EQ(service.quit(), 0u);
}

TEST_F(HostileTitleDatabaseTest, MegabytesOfBracketsEndTheServiceWithTheParsersError) {
    // About 110 bytes of memory for each: 11 GB in a full run.
    setWaitLimit(std::chrono::minutes(5));
    const std::size_t brackets = scaled(8, 100) * kMegabyte;
    setDatabase(std::string(brackets, '['));
    EXPECT_EQ(startUntilItsEnd(), 1u);
    // The library's words for fewer brackets, with the place of these.
    std::string error = jsonErrorOf("[[");
    const std::string place = "column 3";
    error.replace(error.find(place), place.size(), "column " + std::to_string(brackets + 1));
    EXPECT_THAT(service.log(), ElementsAre(startedLine(), "Brisk : " + error));
}

TEST_F(HostileTitleDatabaseTest, ArraysNestedAHundredThousandDeepAreNoTitles) {
    setDatabase(repeated("[", 100'000) + repeated("]", 100'000));
    EXPECT_EQ(startUntilItsEnd(), 0u);
    EXPECT_THAT(service.log(), ElementsAreArray(unusableLines({})));
}

TEST_F(HostileTitleDatabaseTest, ObjectsNestedAHundredThousandDeepAreNoTitles) {
    setDatabase("[" + repeated(R"({"config_type":)", 100'000) + "1" + repeated("}", 100'000) + "]");
    EXPECT_EQ(startUntilItsEnd(), 0u);
    EXPECT_THAT(service.log(), ElementsAreArray(unusableLines({})));
}

TEST_F(HostileTitleDatabaseTest, TitleWithDeepNestingInEveryMemberIsServedWithoutThem) {
    const std::string deep = repeated(R"([{"key":)", 50'000) + "1" + repeated("}]", 50'000);
    setDatabase(R"([{"config_type": "txt", "id": 7, "binary_name": "deep.exe", "config_fields": )" + deep +
                R"(, "patch_if": )" + deep + R"(, "title_name": )" + deep + "}]");
    startStorm();
    service.post(BRISK_APP_STARTED, 7, 1);
    quitStorm();
    EXPECT_THAT(log(), ElementsAreArray(acceptedLines(7, "0x1") + Lines{"Brisk : finished"}));
}

} // namespace
} // namespace brisk::testing
