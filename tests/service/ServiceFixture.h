#pragma once

#include "service/Service.h"
#include "support/ExpectedLines.h"
#include "support/ExpectedToasts.h"
#include "support/notifications/NotificationStandinControl.h"

#include <gmock/gmock.h>

namespace brisk::testing {

// A machine on which Brisk has never run, with the notification stand-in installed. Skips the
// test where this is not Wine.
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

// Wine's own; how many modes it has is the machine's.
Display display();

} // namespace brisk::testing
