// Buttons are pressed on the notification system's thread while the window's thread is at work.
#pragma once

#include "GameEndFixture.h"
#include "Gate.h"

#include <future>
#include <thread>

namespace brisk::testing {

class ButtonThreadsFixture : public GameEndFixture {
protected:
    using Result = standin::NotificationStandinControl::EventResult;

    static constexpr unsigned kConfigure = 0;
    static constexpr unsigned kNotNow = 1;
    static constexpr unsigned kDontAskAgain = 2;

    ~ButtonThreadsFixture() override {
        if (gameKey) {
            RegCloseKey(gameKey);
        }
    }

    // Shows the game's offer, notification 1, in the state of a game that is being tracked.
    void showOffer() {
        playAt(40);
        trackingContext.processId = Desktop::kGame;
        finish();
        trackingState = TrackingState::Tracking;
        log.take();
    }

    // The same title with its setting in the registry, where every write passes a fault point.
    void loadRegistryGame() {
        RegCreateKeyA(HKEY_CURRENT_USER, kGameKey, &gameKey);
        loadTitles({{{"config_type", "reg"},
                     {"id", 1001},
                     {"title_name", "The Game"},
                     {"binary_name", "game.exe"},
                     {"config_locations", nlohmann::json::array({"HKEY_CURRENT_USER/Software/Studio"})},
                     {"config_fields", {{{"key", "A"}, {"value", 1}}, {{"key", "B"}, {"value", 2}}}}}});
        ASSERT_TRUE(titleManager().isTitleSupported("", "game.exe", ""));
    }

    static std::int64_t gameValue(const char* name) {
        DWORD number = 0;
        DWORD size = sizeof number;
        return RegGetValueA(HKEY_CURRENT_USER, kGameKey, name, RRF_RT_REG_DWORD, nullptr, &number, &size) ==
                       ERROR_SUCCESS
                   ? std::int64_t{number}
                   : -1;
    }

    std::future<Result> press(unsigned number, unsigned button) {
        return std::async(std::launch::async, [this, number, button] {
            return toasts.control.press(number, button, std::chrono::milliseconds(kLimit));
        });
    }

    // Whether every toast has been taken from the screen within the limit: a pressed one goes before it is reported.
    bool waitUntilNoneIsListed() {
        const auto deadline = std::chrono::steady_clock::now() + kLimit;
        while (!toasts.control.list().empty()) {
            if (std::chrono::steady_clock::now() > deadline) {
                return false;
            }
            std::this_thread::yield();
        }
        return true;
    }

    template <class Value>
    static bool isReady(const std::future<Value>& task, std::chrono::milliseconds time = kLimit) {
        return task.wait_for(time) == std::future_status::ready;
    }

    static void expectDone(std::future<Result>& pressed) {
        ASSERT_TRUE(isReady(pressed));
        const Result result = pressed.get();
        EXPECT_EQ(result.handlers, 1u);
        EXPECT_EQ(result.result, S_OK);
    }

    // The next write to the registry is held at the gate.
    static void holdNextWrite(Gate& gate) {
        RegSetValueExAFault.intercept([&gate](auto... arguments) {
            gate.pass();
            return RegSetValueExAFault.real(arguments...);
        });
    }

private:
    static constexpr char kGameKey[] = "Software\\Studio";
    HKEY gameKey = nullptr;
};

} // namespace brisk::testing
