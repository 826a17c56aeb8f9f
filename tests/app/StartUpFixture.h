#pragma once

#include "FaultPoints.h"
#include "support/ExpectedLines.h"
#include "support/ExpectedParameters.h"
#include "support/Sandbox.h"
#include "tracking/Toasts.h"

#include <functional>
#include <mutex>

#include <gmock/gmock.h>

namespace brisk::testing {

// The display of a StartUpFixture.
inline const Display kDisplay{"1920x1080", "0.5625", 2, "1280x720"};

// A process that is just starting: WinMain can be called as often as a test likes. The executable's directory is the
// folder, there is one display of 1920x1080 (and 1280x720) at 60 Hz and a user without any state.
class StartUpFixture : public ::testing::Test {
protected:
    StartUpFixture();
    ~StartUpFixture() override;

    // The title database beside the executable.
    void writeDatabase(const std::string& json) const { writeFile(folder / "titles_db.json", json); }
    // One text title, The Game, 1001, whose width is in settings().
    void writeGame(const std::string& key = "(Width=)(\\\\d+)()") const;
    std::filesystem::path settings() const { return folder / "game.ini"; }

    // Runs WinMain; its exit code. Once the window exists, whenCreated is called on its thread and then the quit
    // message is posted.
    int start(const std::string& commandLine = {});

    // What reached the debugger output, a line each, and the notes of the tests' own hooks in between.
    Lines record() const;
    // The same without the lines that a start without parameters begins with.
    Lines recordAfterParameters() const;
    void note(const std::string& line);

    TemporaryFolder folder;
    Toasts toasts;
    SandboxHive hive;
    std::function<void(HWND)> whenCreated;

private:
    mutable std::mutex mutex;
    Lines recorded;
    HWND serviceWindow = nullptr;
    bool isStarting = false;
};

} // namespace brisk::testing
