// The service without its window: everything that its handlers stand on, as a test sets it.
#pragma once

#include "tracking/Services.h"
#include "tracking/Tracking.h"

#include "Desktop.h"
#include "FakeGfxInfo.h"
#include "FaultPoints.h"
#include "Toasts.h"
#include "support/ExpectedLines.h"
#include "support/Sandbox.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace brisk::testing {

// FakeGfxInfo's display as the log tells it; it lists no modes.
inline const Display kDisplay{"1920x1080", "0.5625", 0, "1280x720"};

// Process-wide state as after start-up, with no title loaded yet.
class ServicesFixture : public ::testing::Test {
protected:
    ServicesFixture();
    ~ServicesFixture() override;

    // Replaces the title database.
    void loadTitles(const std::vector<nlohmann::json>& titles);
    // A text title of "Studio" whose one setting, the width, is in the file of this name in the folder.
    nlohmann::json textTitle(const std::string& name, const std::string& binaryName, const std::string& file) const;
    // Settings A to D: the native width and height, and the width and height to set.
    static nlohmann::json resolutionFields();
    // The text title of the game, with an id, as the only one, its file holding a width of 1920.
    void loadGame();

    std::filesystem::path settings() const { return folder / "game.ini"; }

    // A value under the service's registry key as a number, -1 when there is none.
    static std::int64_t stateValue(const std::string& subkey, const std::string& name);

    TemporaryFolder folder;
    Toasts toasts;
    SandboxHive hive;
    CapturedLog log;
    Desktop desktop;
    std::shared_ptr<FakeGfxInfo> gfx = std::make_shared<FakeGfxInfo>();
};

} // namespace brisk::testing
