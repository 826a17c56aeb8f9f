#pragma once

#include "service/Service.h"
#include "support/ToastXml.h"
#include "support/notifications/NotificationStandinControl.h"

#include <gmock/gmock.h>

namespace brisk::testing {

// A machine on which Brisk has never run, with the notification stand-in installed. Only under Wine: elsewhere the
// service would find the user's own state.
class ServiceFixture : public ::testing::Test {
protected:
    ServiceFixture();

    // The toasts that were shown, each as its whole document, in order.
    std::vector<std::string> shownToasts() const;

    // A value under the service's registry key as a number, -1 when there is none.
    static std::int64_t stateValue(const std::string& subkey, const std::string& name);

    TemporaryFolder machine;
    std::filesystem::path record;
    standin::NotificationStandinControl toasts;
};

// The lines of a start that goes well, up to the message loop.
std::vector<std::string> startLines();

// The line that counts the primary display's modes.
std::string displayModesLine();

// The lines of a bulk pass, up to the first title's own.
std::vector<std::string> bulkPassLines();

} // namespace brisk::testing
