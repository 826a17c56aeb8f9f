#pragma once

#include "support/Sandbox.h"
#include "support/notifications/NotificationStandinControl.h"
#include "toast/FaultPoints.h"
#include "toast/WinToast.h"

#include <gmock/gmock.h>

namespace brisk::testing {

// The notification stand-in in this process, nothing shown yet, and a Start menu of the test's own.
class ToastFixture : public ::testing::Test {
protected:
    ToastFixture();
    ~ToastFixture() override;

    // The stand-in's record, and what was added since the last call.
    std::vector<std::string> takeRecord();

    static std::filesystem::path shortcut(const std::filesystem::path& appData);
    // A helper that is ready to show toasts under the identity "Test.Toasts".
    static void initialize(WinToastLib::WinToast& winToast);

    TemporaryFolder machine;
    standin::NotificationStandinControl toasts;
    CapturedLog log;

private:
    std::size_t recordLines = 0;
};

} // namespace brisk::testing
