#include "bench/Measurement.h"
#include "bench/Rows.h"
#include "bench/Samples.h"
#include "pattern/SettingPattern.h"
#include "support/TemporaryFolder.h"
#include "titles/TitleManager.h"

#include <nlohmann/json.hpp>

#ifdef _WIN32
#include "toast/WinToast.h"
#include "toast/WinToastHandler.h"
#endif

namespace brisk::bench {

namespace {

// A title manager with one title, "a.exe", whose settings are this text.
class OneTitle {
public:
    OneTitle(const std::string& text, const nlohmann::json& fields) {
        writeText(folder / "settings.ini", text);
        writeDatabase(folder.path(), folder.narrow() + "\\settings.ini", fields);
        require(manager.loadTitlesDatabase(folder.narrow()) && manager.isTitleSupported("", "a.exe", ""), "no title");
    }

    void checkAndPatch() {
        manager.isTitleNeedToBeOptimized("a.exe");
        require(manager.optimizeTitle("a.exe"), "not patched");
    }

private:
    const testing::TemporaryFolder folder;
    TitleManager manager;
};

double fileSize(std::size_t bytes) {
    constexpr std::size_t kFields = 3;
    std::string text = settingsText(bytes) + manySettings(kFields, 7);
    std::erase(text, '\r');
    OneTitle title(text, manyFields(kFields, 7));
    return secondsOf([&] { title.checkAndPatch(); });
}

double matches(std::size_t count) {
    std::string text;
    for (std::size_t number = 0; number < count; ++number) {
        text += "Width=1280\n";
    }
    const SettingPattern pattern(R"((Width=)(\d+)())");
    return secondsOf([&] { require(pattern.replace(text, "$1$991920$3").size() == text.size(), "not replaced"); });
}

double titles(std::size_t count) {
    const testing::TemporaryFolder folder;
    writeTitles(folder.path(), count);
    return secondsOf([&] {
        TitleManager manager;
        require(manager.loadTitlesDatabase(folder.narrow()), "the database is not loaded");
    });
}

// In a text whose size they hardly change.
double fields(std::size_t count) {
    std::string text = settingsText(100'000) + manySettings(1'000, 7);
    std::erase(text, '\r');
    OneTitle title(text, manyFields(count, 7));
    return secondsOf([&] { title.checkAndPatch(); });
}

#ifdef _WIN32
// Shown one after the other, and then cleared.
double toasts(std::size_t count) {
    WinToastLib::WinToast winToast;
    winToast.setAppName(L"Toasts");
    winToast.setAppUserModelId(L"Bench.Toasts");
    winToast.setShortcutPolicy(WinToastLib::ShortcutPolicy::Ignore);
    require(winToast.initialize(), "no toasts");
    WinToastLib::ToastTemplate toast;
    toast.texts = {L"A title", L"A line", L"Another line"};
    const auto handler = std::make_shared<WinToastHandler>(std::vector<ToastAction>());
    return secondsOf([&] {
        for (std::size_t number = 0; number < count; ++number) {
            require(winToast.showToast(toast, handler) >= 0, "not shown");
        }
        winToast.clear();
    });
}
#endif

} // namespace

void printGrowthRows() {
    printGrowth("check and patch, bytes of the file", {10'000, 100'000, 1'000'000, 10'000'000, 50'000'000}, fileSize);
    printGrowth("replace, matches", {1, 10, 100, 1'000, 10'000, 100'000, 1'000'000}, matches);
    printGrowth("load, titles", {1'000, 3'000, 10'000, 30'000, 100'000}, titles);
    printGrowth("check and patch, fields", {1, 10, 100, 1'000}, fields);
#ifdef _WIN32
    printGrowth("show and clear, toasts in the table", {1, 10, 100, 1'000, 10'000}, toasts);
#endif
}

} // namespace brisk::bench
