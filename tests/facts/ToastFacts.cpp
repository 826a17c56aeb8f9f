// Toasts on the screen. Whoever sits there is asked to press and to look; the shortcut that Windows wants for it lies
// in a folder of its own in the Start menu and is removed in the end.
#include "Facts.h"

#include "toast/ShellShortcut.h"
#include "toast/WinToast.h"

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <iostream>
#include <memory>
#include <mutex>

namespace brisk::facts {

namespace {

using namespace WinToastLib;

constexpr wchar_t kName[] = L"Brisk windows-facts";
constexpr std::chrono::seconds kPatience{60};
constexpr char kNothing[] = "nothing in time";
constexpr char kFailed[] = "failed";

// The first event of a toast. Set on any thread.
class Event {
public:
    void set(const std::string& what) {
        {
            const std::lock_guard lock(mutex);
            if (text.empty()) {
                text = what;
            }
        }
        came.notify_all();
    }
    std::string wait() {
        std::unique_lock lock(mutex);
        return came.wait_for(lock, kPatience, [this] { return !text.empty(); }) ? text : kNothing;
    }

private:
    std::mutex mutex;
    std::condition_variable came;
    std::string text;
};

// Lives as long as Windows may call it, which may be longer than its toast is waited for.
class Recorder : public IWinToastHandler {
public:
    void toastActivated(int actionIndex) override { activation.set("button " + std::to_string(actionIndex)); }
    void toastActivated() override { activation.set("body"); }
    void toastDismissed(ToastDismissalReason reason) override {
        end.set("dismissed " + std::to_string(static_cast<int>(reason)));
    }
    void toastFailed() override { end.set(kFailed); }
    void toastCompleted(std::function<void()>) override {}

    Event activation;
    Event end;
};

struct Toast {
    std::shared_ptr<Recorder> events = std::make_shared<Recorder>();
    std::int64_t id;

    explicit Toast(const std::wstring& body) {
        ToastTemplate toast;
        toast.texts = {L"Brisk windows-facts", L"A question", body};
        toast.actions = {L"First", L"Second", L"Third"};
        id = WinToast::instance().showToast(toast, events);
    }
    Toast(const Toast&) = delete;
    Toast& operator=(const Toast&) = delete;
    ~Toast() { WinToast::instance().clear(); }

    // What comes of it; one that was refused has failed.
    std::string activation() const { return id < 0 ? kFailed : events->activation.wait(); }
    std::string ending() const { return id < 0 ? kFailed : events->end.wait(); }
};

void say(const std::string& text) {
    std::cout << "  > " << text << std::endl;
}

bool ask(const std::string& question) {
    std::cout << "  > " << question << " [y/n] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    return !answer.empty() && (answer[0] == 'y' || answer[0] == 'Y');
}

void removeShortcut() {
    std::wstring path;
    std::error_code ignored;
    if (SUCCEEDED(getShortcutPath(kName, kName, path))) {
        std::filesystem::remove(path, ignored);
        std::filesystem::remove(std::filesystem::path(path).parent_path(), ignored);
    }
}

// The shortcut and the identity for as long as the program runs, also if it is broken off.
class Identity {
public:
    Identity() {
        removeShortcut();
        SetConsoleCtrlHandler(
            [](DWORD /*event*/) {
                removeShortcut();
                return FALSE;
            },
            TRUE);
        WinToast& toasts = WinToast::instance();
        toasts.setAppName(kName);
        toasts.setCompanyName(kName);
        toasts.setAppUserModelId(L"Orlan.Brisk.WindowsFacts");
        isThere = toasts.initialize();
    }
    Identity(const Identity&) = delete;
    Identity& operator=(const Identity&) = delete;
    ~Identity() { removeShortcut(); }

    bool isThere = false;
};

bool hasIdentity() {
    static const Identity identity;
    return identity.isThere;
}

Answer noIdentity() {
    return cannotTell("the shortcut or the notification classes are not there");
}

// Nothing is learned where nobody answered, or where notifications are turned off.
Answer heardIf(bool isSo, const std::string& seen) {
    const bool isSilent = seen.find(kNothing) != std::string::npos || seen.find(kFailed) != std::string::npos;
    return isSilent ? cannotTell(seen) : holdsIf(isSo, seen);
}

Answer firstToast() {
    if (!hasIdentity()) {
        return noIdentity();
    }
    const Toast toast(L"This one was shown right after its shortcut was made.");
    return holdsIf(ask("Did a toast appear?"), toast.id < 0 ? "it was refused" : "it was accepted");
}

Answer buttons() {
    if (!hasIdentity()) {
        return noIdentity();
    }
    std::string seen;
    for (const char* const label : {"First", "Second", "Third"}) {
        const Toast toast(L"Press the button that the console names.");
        say(std::string("Press \"") + label + "\" on the toast.");
        seen += (seen.empty() ? "" : ", ") + toast.activation();
    }
    return heardIf(seen == "button 0, button 1, button 2", seen);
}

Answer body() {
    if (!hasIdentity()) {
        return noIdentity();
    }
    const Toast toast(L"Click here, beside the buttons.");
    say("Click the toast beside its buttons.");
    const std::string seen = toast.activation();
    return heardIf(seen == "body", seen);
}

// A toast that ended as wanted: what its second button in the notification centre does.
Answer pressedInCentre(const char* request, const std::string& wantedEnd, bool mayBeGone) {
    if (!hasIdentity()) {
        return noIdentity();
    }
    const Toast toast(L"Do with this toast what the console says.");
    say(request);
    const std::string end = toast.ending();
    if (end != wantedEnd) {
        return cannotTell(end);
    }
    if (!ask("Open the notification centre. Is the toast there?")) {
        return holdsIf(mayBeGone, end + ", not in the notification centre");
    }
    say("Press \"Second\" there.");
    const std::string pressed = toast.activation();
    return heardIf(pressed == "button 1", end + ", kept in the notification centre, " + pressed);
}

Answer afterDismissal() {
    return pressedInCentre("Close the toast by its cross.", "dismissed 0", true);
}

// As it is behind a game: nobody sees the toast, and its button is pressed afterwards.
Answer fromCentre() {
    return pressedInCentre("Leave the toast alone until it goes away.", "dismissed 2", false);
}

Answer largeToast() {
    if (!hasIdentity()) {
        return noIdentity();
    }
    const Toast toast(std::wstring(6'000, L'x'));
    const std::string seen = toast.id < 0 ? "refused at once" : toast.ending();
    return seen == kNothing ? cannotTell(seen) : holdsIf(seen == "refused at once" || seen == kFailed, seen);
}

} // namespace

std::vector<Fact> toastFacts() {
    return {{"toast-first", firstToast},
            {"toast-buttons", buttons},
            {"toast-body", body},
            {"toast-after-dismissal", afterDismissal},
            {"toast-from-centre", fromCentre},
            {"toast-too-large", largeToast}};
}

} // namespace brisk::facts
