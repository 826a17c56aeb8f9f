// The host of docs/host-interface.md, built from examples/host/, against a window of the service's class and, to end
// it, against the service.
#include "service/ServiceFixture.h"
#include "support/ConsoleProgram.h"
#include "support/Places.h"
#include "support/TextFiles.h"
#include "tools/host/RecordingWindow.h"

#include <gmock/gmock.h>

namespace brisk {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::Outcome;
using testing::received;
using ::testing::StartsWith;

class HostExample : public testing::HostTest {};

Outcome host(const std::wstring& arguments) {
    return testing::runProgram(testing::place(BRISK_EXAMPLE_HOST), arguments);
}

// The blocks of C in the page, in order.
std::vector<std::string> pageBlocks() {
    std::string page = testing::readFile(testing::place(BRISK_HOST_PAGE));
    std::erase(page, '\r');
    std::vector<std::string> blocks;
    for (std::size_t begin = 0; (begin = page.find("```c\n", begin)) != std::string::npos;) {
        begin += 5;
        blocks.push_back(page.substr(begin, page.find("```", begin) - begin));
    }
    return blocks;
}

std::string exampleText(const char* name) {
    std::string text = testing::readFile(testing::place(BRISK_EXAMPLE_SOURCES) / name);
    std::erase(text, '\r');
    return text;
}

TEST_F(HostExample, IsTheOneOfThePage) {
    const std::vector<std::string> blocks = pageBlocks();
    ASSERT_EQ(blocks.size(), 2u);
    EXPECT_EQ(exampleText("host.c"), blocks[0]);
    EXPECT_THAT(exampleText("quit.c"), HasSubstr(blocks[1]));
}

TEST_F(HostExample, TellsAGamesStartAndEnd) {
    const testing::ServiceWindow service;
    const std::wstring game = testing::place(BRISK_HOST_PROGRAM).native();
    EXPECT_EQ(host(L"42 \"" + game + L"\"").exitCode, 0u);
    EXPECT_THAT(received, ElementsAre("copy data, wParam 0x404, tag 0x404, bytes [{\"titles\": []}]",
                                      StartsWith("message 0x402, wParam 0x2a, lParam 0x"),
                                      "message 0x403, wParam 0x0, lParam 0x0"));
}

TEST_F(HostExample, SaysThatNoServiceIsRunning) {
    const std::wstring game = testing::place(BRISK_HOST_PROGRAM).native();
    const Outcome outcome = host(L"42 \"" + game + L"\"");
    EXPECT_EQ(outcome.exitCode, 0u);
    EXPECT_THAT(outcome.errors, HasSubstr("no service is running\n"));
}

TEST_F(HostExample, RefusesAGameThatIsNotThere) {
    const testing::ServiceWindow service;
    EXPECT_EQ(host(L"42 C:\\none.exe").exitCode, 1u);
    EXPECT_EQ(host(L"42").exitCode, 2u);
}

Outcome quit() {
    return testing::runProgram(testing::place(BRISK_EXAMPLE_QUIT), L"");
}

TEST_F(HostExample, HasNothingToEndWhereNoServiceRuns) {
    EXPECT_EQ(quit(), (Outcome{0, "", ""}));
}

class QuitExample : public testing::ServiceFixture {};

TEST_F(QuitExample, EndsTheServiceAndWaitsForItsProcess) {
    testing::Service service(R"([{"config_type": "txt", "id": 7, "binary_name": "game.exe"}])");
    service.startAndWait();
    EXPECT_EQ(quit(), (Outcome{0, "", ""}));
    EXPECT_FALSE(service.isRunning());
    EXPECT_EQ(service.waitForEnd(), 0u);
    EXPECT_EQ(service.log().back(), "Brisk : finished");
}

} // namespace

} // namespace brisk
