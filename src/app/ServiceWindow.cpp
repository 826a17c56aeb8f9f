#include "app/ServiceWindow.h"

#include "BriskHost.h"
#include "app/TitleInfo.h"
#include "base/Log.h"
#include "state/UserState.h"
#include "toast/ButtonPresses.h"
#include "toast/ToastManager.h"
#include "tracking/BulkPatching.h"
#include "tracking/GameEnd.h"
#include "tracking/Tracking.h"

#include <stdexcept>
#include <utility>

namespace brisk {

namespace {

HANDLE startedEvent = nullptr;

void onCreate() {
    startedEvent = CreateEventA(nullptr, TRUE, FALSE, BRISK_STARTED_EVENT);
    if (startedEvent) {
        SetEvent(startedEvent);
    }
}

void onEndSession(bool isEnding) {
    // The process may be ended once the message is answered. A session whose end was called off goes on.
    if (isEnding) {
        buttonPresses().end();
    }
}

void onQuit() {
    ToastManager::instance()->cleanup();
    // What is in the queue already is still handled, a second quit message, too (docs/decisions/kept-behaviour.md).
    CloseHandle(std::exchange(startedEvent, nullptr));
    PostQuitMessage(0);
}

void onResetPromptCounters() {
    logLine("Brisk : onResetPromptCounters");
    if (!resetToastsAllowed()) {
        logLine("Brisk : resetToastsAllowed couldn't delete key");
    }
    if (!resetToastsShown()) {
        logLine("Brisk : resetToastsShown couldn't delete tree");
    }
}

// However the loop ends, by the quit message or by a handler's exception, the process ends next.
class MessageLoopEnd {
public:
    MessageLoopEnd() = default;
    MessageLoopEnd(const MessageLoopEnd&) = delete;
    MessageLoopEnd& operator=(const MessageLoopEnd&) = delete;
    ~MessageLoopEnd() { buttonPresses().end(); }
};

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        onCreate();
        break;
    case WM_COPYDATA:
        receiveTitleInfo(window, wParam, reinterpret_cast<const COPYDATASTRUCT*>(lParam));
        break;
    case WM_TIMER:
        if (wParam == kTrackingTimerId) {
            onTrackingTimer(window);
        }
        break;
    case WM_ENDSESSION:
        onEndSession(wParam != FALSE);
        break;
    case BRISK_QUIT:
        onQuit();
        break;
    case BRISK_APP_STARTED:
        onAppStarted(window, wParam, lParam);
        break;
    case BRISK_APP_FINISHED:
        onAppFinished(window, wParam, lParam);
        break;
    case BRISK_MASSIVE_PATCHING:
        onMassivePatching();
        break;
    case BRISK_RESET_PROMPT_COUNTERS:
        onResetPromptCounters();
        break;
    default:
        break;
    }
    // Always, and its answer is the sender's, whatever was handled above (docs/decisions/kept-behaviour.md).
    return DefWindowProcA(window, message, wParam, lParam);
}

} // namespace

bool isServiceWindowPresent() {
    return FindWindowA(BRISK_WINDOW_CLASS, nullptr) != nullptr;
}

void runServiceWindow(HINSTANCE instance) {
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = windowProcedure;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = BRISK_WINDOW_CLASS;
    if (!RegisterClassA(&windowClass)) {
        throw std::runtime_error("RegisterClass failed");
    }
    // A top-level window, not a message-only one: the host finds it by its class.
    if (!CreateWindowExA(0, BRISK_WINDOW_CLASS, BRISK_WINDOW_CLASS, WS_DISABLED, CW_USEDEFAULT, CW_USEDEFAULT,
                         CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, instance, nullptr)) {
        throw std::runtime_error("CreateWindowEx failed");
    }
    const MessageLoopEnd loopEnd;
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

} // namespace brisk
