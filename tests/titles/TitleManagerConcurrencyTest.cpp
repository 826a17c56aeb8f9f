// Checks come on the window's thread, the user's consent on another one.
#include "TitleManagerFixture.h"

#include <atomic>
#include <chrono>
#include <future>
#include <thread>

namespace brisk {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using namespace std::chrono_literals;

constexpr auto kLimit = 60s;
// How long an operation that has to wait is given for not waiting.
constexpr auto kGracePeriod = 200ms;

class TitleManagerConcurrencyTest : public testing::TitleManagerFixture {
protected:
    // Whether the task is ready within the time.
    template <class Result>
    static bool isReady(const std::future<Result>& task, std::chrono::milliseconds time) {
        return task.wait_for(time) == std::future_status::ready;
    }
};

TEST_F(TitleManagerConcurrencyTest, CheckWaitsForARewriteToEnd) {
    loadRegistryTitle(R"json([{"key": "A", "value": 1}, {"key": "B", "value": 2}])json");
    std::future<bool> check;
    bool isCheckedMeanwhile = false;
    RegSetValueExAFault.intercept(
        [&](HKEY key, const char* name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
            if (!check.valid()) {
                check = std::async(std::launch::async, [this] { return manager.isTitleNeedToBeOptimized("game.exe"); });
                isCheckedMeanwhile = isReady(check, kGracePeriod);
            }
            return RegSetValueExAFault.real(key, name, reserved, type, data, size);
        });
    EXPECT_TRUE(manager.optimizeTitle("game.exe"));
    EXPECT_FALSE(isCheckedMeanwhile);
    ASSERT_TRUE(isReady(check, kLimit));
    EXPECT_FALSE(check.get());
    EXPECT_THAT(log.take(), ElementsAre("Brisk : 'The Game' optimized."));
}

TEST_F(TitleManagerConcurrencyTest, RewriteWaitsForACheckToEnd) {
    loadRegistryTitle(R"json([{"key": "A", "value": 1}])json", R"json([{"key": "B", "presence": [2]}])json");
    writeNumber("A", 0);
    writeNumber("B", 2);
    std::future<bool> rewrite;
    std::string valueMeanwhile;
    RegQueryValueExAFault.intercept(
        [&](HKEY key, const char* name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* size) {
            if (!rewrite.valid()) {
                rewrite = std::async(std::launch::async, [this] { return manager.optimizeTitle("game.exe"); });
                isReady(rewrite, kGracePeriod);
                valueMeanwhile = readValue("A");
            }
            return RegQueryValueExAFault.real(key, name, reserved, type, data, size);
        });
    EXPECT_TRUE(manager.isTitleNeedToBeOptimized("game.exe"));
    EXPECT_EQ(valueMeanwhile, "0");
    ASSERT_TRUE(isReady(rewrite, kLimit));
    EXPECT_TRUE(rewrite.get());
    EXPECT_EQ(readValue("A"), "1");
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : game setting '0' is not optimal '1'.", "Brisk : 'The Game' optimized."));
}

TEST_F(TitleManagerConcurrencyTest, FileThatIsRewrittenAndCheckedAtOnceNeverLosesItsText) {
    std::string content = "w=1\r\n";
    std::string expected = "w=5\r\n";
    for (int line = 0; line < 2000; ++line) {
        content += "setting" + std::to_string(line) + "=value\r\n";
        expected += "setting" + std::to_string(line) + "=value\r\n";
    }
    loadTextTitle(content, R"json([{"key": "(w=)(\\d+)()", "value": 5
}])json");
    constexpr int kRounds = 200;
    std::atomic<int> rewritten = 0;
    const auto limit = std::chrono::steady_clock::now() + kLimit;
    std::thread checker([&] {
        while (rewritten < kRounds && std::chrono::steady_clock::now() < limit) {
            manager.isTitleNeedToBeOptimized("game.exe");
        }
    });
    int damaged = 0;
    for (; rewritten < kRounds && std::chrono::steady_clock::now() < limit; ++rewritten) {
        manager.optimizeTitle("game.exe");
        damaged += testing::readFile(file()) != expected;
    }
    checker.join();
    EXPECT_EQ(rewritten, kRounds);
    EXPECT_EQ(damaged, 0);
    EXPECT_THAT(log.take(), Each(::testing::AnyOf("Brisk : 'The Game' optimized.",
                                                  "Brisk : game setting '1' is not optimal '5'.")));
}

} // namespace
} // namespace brisk
