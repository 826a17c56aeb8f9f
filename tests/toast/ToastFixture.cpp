#include "toast/ToastFixture.h"

#include "support/Wine.h"

namespace brisk::testing {

namespace {

standin::NotificationStandinControl loadStandin() {
    if (needsWine("the notification stand-in is registered for all users")) {
        static const bool registered = (standin::registerStandin(), true);
        static_cast<void>(registered);
    }
    return standin::NotificationStandinControl::inProcess();
}

} // namespace

ToastFixture::ToastFixture() : toasts(loadStandin()) {
    toasts.reset();
    SetEnvironmentVariableW(standin::kRecordVariable, (machine / "toasts.txt").c_str());
    std::filesystem::create_directories(shortcut(machine.path()).parent_path().parent_path());
    SetEnvironmentVariableW(L"APPDATA", machine.path().c_str());
}

ToastFixture::~ToastFixture() {
    faults::reset();
}

std::vector<std::string> ToastFixture::takeRecord() {
    std::vector<std::string> lines = standin::readRecord(machine / "toasts.txt");
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(recordLines));
    recordLines += lines.size();
    return lines;
}

std::filesystem::path ToastFixture::shortcut(const std::filesystem::path& appData) {
    return appData / "Microsoft" / "Windows" / "Start Menu" / "Programs" / "Folder" / "Toasts.lnk";
}

void ToastFixture::initialize(WinToastLib::WinToast& winToast) {
    winToast.setAppName(L"Toasts");
    winToast.setCompanyName(L"Folder");
    winToast.setAppUserModelId(L"Test.Toasts");
    winToast.setShortcutPolicy(WinToastLib::ShortcutPolicy::Ignore);
    if (!winToast.initialize()) {
        throw std::runtime_error("no toasts");
    }
}

} // namespace brisk::testing
