// A second, plain telling of what the service does, written from its contract and never from its code: the state
// machine, the judgement at a game's end, the bulk pass, the title manager with both kinds of configuration, the user
// state, the toasts and every line of the log. It works on the environment alone.
#pragma once

#include "host/model/Environment.h"
#include "host/model/Titles.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brisk::model {

// An exception that leaves the service's logic. A text that ends in kAnyTextFollows stands for every text that begins
// so.
struct Failure {
    std::string text;
};
inline constexpr char kAnyTextFollows = '\x01';

struct Parameters {
    std::optional<std::uint32_t> warming;
    std::optional<std::uint32_t> tracking;
    std::optional<std::uint32_t> notTracking;
    std::optional<std::uint32_t> toBeValid;
    std::optional<std::uint32_t> fps;

    std::string commandLine() const;
};

enum class Action { Configure, NotNow, DontAskAgain, ReadMore, Dismiss };

struct ShownToast {
    std::string document;
    std::vector<Action> actions;
    std::string report; // for ReadMore
    bool isShown = true;
    bool isInTable = true;
    bool wasPressed = false;
};

class ServiceModel {
public:
    ServiceModel(Environment& environment, std::vector<Title> database)
        : env(environment), titlesInDatabase(std::move(database)) {}

    // Start-up up to the message loop; false when the service ends at once (with exit code 0).
    bool start(const Parameters& parameters);
    void end();
    // An exception ended the service.
    void endBy(const Failure& failure);

    void onAppStarted(std::uint64_t wParam, std::int64_t lParam);
    void onAppFinished(std::uint64_t wParam, std::int64_t lParam);
    void onTimer();
    void onBulk();
    void onReset();
    void onCopyData(bool isTagged, bool isWellFormed);
    void onQuit();
    void onEndSession(bool isItsEnd);

    // False when the handler throws.
    bool press(ShownToast& toast, int index);
    // The body, a dismissal or a failure.
    void otherEvent(ShownToast& toast);

    // What can be seen from outside, besides the environment.
    std::vector<std::string> lines; // since the test took them
    std::vector<ShownToast> toasts;
    bool timerRuns = false;
    unsigned state = 0;
    std::uint32_t gameId = 0;
    std::uint32_t processId = 0;
    std::uint32_t averageFps = 0;
    std::uint64_t sampleCount = 0;
    std::uint64_t intervalCounter = 0;
    std::uint64_t fpsSum = 0;
    std::string publisher;
    std::string executableName;
    enum class Handle { None, Open, Closed };
    Handle processHandle = Handle::None;
    unsigned droppedHandles = 0;
    unsigned lateExitCodes = 0;
    unsigned openAdapterKeys = 0;
    std::uint64_t registryVersion = 0; // counts writes
    std::uint64_t filesVersion = 0;

private:
    struct LoadedTitle {
        Title title;
        std::string content;
        std::map<std::string, Key>* hive = nullptr; // of the open key
        std::string keyPath;
        unsigned keyGeneration = 0;
    };

    void line(const std::string& text);
    bool loadDatabase();
    LoadedTitle* find(const std::string& binary);

    // Tracking.
    void switchTo(unsigned next);
    void resetContext();
    bool shouldStart();
    bool isActive();
    void sample();
    std::string companyOf(const std::string& path);

    // Graphics.
    Mode currentMode();
    Mode nativeMode();
    Mode optimalMode(const Mode& native);
    std::vector<std::string> primaryDisplays(std::size_t limit);

    // Titles.
    bool isSupported(const std::string& company, const std::string& binary, const std::string& folder);
    bool needsOptimizing(const std::string& binary);
    bool differs(LoadedTitle& title);
    bool meets(LoadedTitle& title);
    bool optimize(const std::string& binary);
    bool patch(const std::string& binary);
    std::string settingText(const std::string& binary);
    std::int32_t wanted(const Field& field) const;
    void setResolution(const std::string& prefix, const Mode& mode);

    // Configurations.
    bool findText(LoadedTitle& title, const std::string& folder);
    bool resolveStar(std::string& location);
    std::optional<bool> attributes(const std::string& path, const char* operation); // whether a folder
    bool load(LoadedTitle& title);
    bool save(LoadedTitle& title);
    std::string getText(LoadedTitle& title, const TextKey& key, const std::string& missing);
    std::int32_t getNumber(LoadedTitle& title, const TextKey& key, std::int32_t missing);
    bool setText(LoadedTitle& title, const TextKey& key, const std::string& text);
    bool setNumber(LoadedTitle& title, const TextKey& key, std::int32_t number);
    bool findRegistry(LoadedTitle& title);
    Key* openKey(LoadedTitle& title);
    bool writeValue(LoadedTitle& title, const std::string& name, const Value& value);

    // User state.
    Key* createKey(const char* operation, const char* path);
    std::optional<std::int32_t> readNumber(const Key& key, const std::string& name);
    bool writeNumber(const char* operation, Key& key, const std::string& name, std::uint32_t number);

    // Game's end and toasts.
    bool decideOffer(std::uint32_t refreshRate);
    unsigned patchAll(std::string& report);
    void clearToasts();
    void show(const std::string& title, const std::string& subtitle, const std::string& body,
              const std::vector<Action>& actions, const std::string& report = {});
    void run(Action action, const std::string& report);

    Environment& env;
    std::vector<Title> titlesInDatabase;
    std::map<std::string, LoadedTitle> titles;
    std::set<std::uint32_t> ids;
    std::map<std::string, std::int32_t> resolutions;
    bool isEnding = false; // and buttons have no effect any more
    std::string pending;   // written without a line end
    std::uint64_t warming = 120;
    std::uint64_t tracking = 30;
    std::uint64_t notTracking = 120;
    std::uint64_t toBeValid = 120;
    std::optional<std::uint32_t> fpsOverride;
    std::uint32_t genericFps = 0;
};

} // namespace brisk::model
