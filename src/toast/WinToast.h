#pragma once

#include "toast/DynamicFunctions.h"
#include "toast/IWinToastHandler.h"
#include "toast/ToastEvents.h"
#include "toast/ToastTemplate.h"

#include "base/WindowsHandles.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>

// WinToastLib is the toast helper: it knows Windows' notifications and nothing of the service, whose own side, in
// namespace brisk, is ToastManager and WinToastHandler.
namespace WinToastLib {

// For callers that tell failures apart; the service does not ask.
enum class WinToastError {
    NoError = 0,
    NotInitialized = 1,
    SystemNotSupported = 2,
    ShellLinkNotCreated = 3,
    InvalidAppUserModelId = 4,
    InvalidParameters = 5, // application name or AppUserModelID missing
    InvalidHandler = 6,
};

// Whether the Start-menu shortcut, which Windows wants before it shows toasts, is looked after. The service leaves it
// at RequireCreate; Ignore is for one that is installed with its shortcut.
enum class ShortcutPolicy { Ignore = 0, RequireCreate = 2 };

// Registers the process with the Windows notification system and shows toasts. One instance for the process. Failures
// are results, never exceptions. Any thread; createShortcut only before the first toast.
class WinToast {
public:
    static WinToast& instance();
    // Whether this Windows has the functions that toasts need.
    static bool isCompatible();
    // The AppUserModelID: the four parts joined with full stops.
    static std::wstring configureAUMI(const std::wstring& company, const std::wstring& product,
                                      const std::wstring& subProduct, const std::wstring& version);

    WinToast() = default;
    WinToast(const WinToast&) = delete;
    WinToast& operator=(const WinToast&) = delete;

    void setAppName(const std::wstring& name) { set(appName, name); }         // the shortcut's file name
    void setCompanyName(const std::wstring& name) { set(companyName, name); } // the shortcut's folder
    void setAppUserModelId(const std::wstring& id) { set(appUserModelId, id); }
    void setShortcutPolicy(ShortcutPolicy policy) { set(shortcutPolicy, policy); }

    bool initialize(WinToastError* error = nullptr);
    // 0: a valid shortcut was there; 1: its id was corrected; 2: it was created; -1: name or id missing; -2: not
    // compatible; -3: no COM; -4: not created.
    int createShortcut();

    // Shows a toast; its identifier, or -1.
    std::int64_t showToast(const ToastTemplate& toast, const std::shared_ptr<IWinToastHandler>& handler,
                           WinToastError* error = nullptr);
    // Hides every toast shown so far and forgets it.
    void clear();

private:
    struct ShownToast {
        brisk::ComReference<abi::IToastNotification> notification;
        ToastEventTokens tokens;
    };

    template <class Value>
    void set(Value& field, const Value& value) {
        const std::lock_guard lock(mutex);
        field = value;
    }
    HRESULT createNotifier(brisk::ComReference<abi::IToastNotificationManagerStatics>& statics,
                           brisk::ComReference<abi::IToastNotifier>& notifier) const;
    // The steps of showToast under the table's lock.
    HRESULT show(const ToastTemplate& toast, const std::shared_ptr<IWinToastHandler>& handler, std::int64_t id);
    void release(std::int64_t id);

    bool initialized = false;
    bool comInitialized = false; // by this object
    ShortcutPolicy shortcutPolicy = ShortcutPolicy::RequireCreate;
    std::wstring appName;
    std::wstring companyName;
    std::wstring appUserModelId;
    std::mutex mutex; // of all of this; held from the start of showToast to its return
    std::map<std::int64_t, ShownToast> toasts;
    std::int64_t nextId = 0;
};

} // namespace WinToastLib
