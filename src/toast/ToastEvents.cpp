#include "toast/ToastEvents.h"

#include "base/WindowsHandles.h"

#include <atomic>
#include <cwchar>
#include <new>

namespace WinToastLib {

namespace {

using brisk::ComReference;

// A delegate that forwards to a function. The function's exceptions become failure codes, without a line
// (docs/decisions/kept-behaviour.md): nothing may be thrown through the notification system's frames.
template <class Delegate>
class EventHandler final : public Delegate {
public:
    using Arguments = typename Delegate::Arguments;
    using Forward = std::function<void(Arguments*)>;

    explicit EventHandler(Forward function) : forward(std::move(function)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object) {
            return E_POINTER;
        }
        // Agile: the events arrive on other threads and must not be marshalled back.
        if (iid != IID_IUnknown && iid != IID_IAgileObject && iid != Delegate::kIid) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        AddRef();
        *object = this;
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references;
        if (left == 0) {
            delete this;
        }
        return left;
    }
    HRESULT STDMETHODCALLTYPE Invoke(abi::IToastNotification* /*sender*/, Arguments* arguments) override {
        // The event may take this handler off its toast.
        AddRef();
        const ComReference<EventHandler> self(this);
        try {
            forward(arguments);
            return S_OK;
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        } catch (...) {
            return E_FAIL;
        }
    }

private:
    ~EventHandler() = default;

    std::atomic<ULONG> references{1};
    Forward forward;
};

template <class Delegate>
ComReference<Delegate> makeHandler(typename EventHandler<Delegate>::Forward forward) {
    return ComReference<Delegate>(new EventHandler<Delegate>(std::move(forward)));
}

// The activation arguments; empty when there are none.
std::wstring readArguments(const DynamicFunctions& functions, IInspectable* arguments) {
    ComReference<abi::IToastActivatedEventArgs> activated;
    if (!arguments || FAILED(arguments->QueryInterface(abi::IToastActivatedEventArgs::kIid, activated.receiveVoid()))) {
        return {};
    }
    HSTRING text = nullptr;
    if (FAILED(activated->get_Arguments(&text))) {
        return {};
    }
    UINT32 length = 0;
    const wchar_t* buffer = functions.windowsGetStringRawBuffer(text, &length);
    std::wstring result(buffer ? buffer : L"", buffer ? length : 0);
    functions.windowsDeleteString(text);
    return result;
}

ToastDismissalReason readReason(abi::IToastDismissedEventArgs* arguments, std::int64_t expirationTime) {
    auto reason = abi::DismissalReason::UserCanceled;
    if (arguments) {
        arguments->get_Reason(&reason);
    }
    // The system reports a toast that ran out as cancelled by the user.
    const bool hasExpired = expirationTime != 0 && getSystemTime() >= expirationTime;
    if (reason == abi::DismissalReason::UserCanceled && hasExpired) {
        reason = abi::DismissalReason::TimedOut;
    }
    return static_cast<ToastDismissalReason>(reason);
}

} // namespace

std::int64_t getSystemTime() {
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    return static_cast<std::int64_t>((static_cast<std::uint64_t>(now.dwHighDateTime) << 32) | now.dwLowDateTime);
}

HRESULT attachEvents(const DynamicFunctions& functions, abi::IToastNotification& notification,
                     const std::shared_ptr<IWinToastHandler>& handler, std::int64_t expirationTime,
                     const std::function<void()>& release, ToastEventTokens& tokens) {
    const auto activated =
        makeHandler<abi::IActivatedHandler>([functions, handler, release](IInspectable* eventArguments) {
            if (const std::wstring arguments = readArguments(functions, eventArguments); !arguments.empty()) {
                handler->toastActivated(static_cast<int>(std::wcstol(arguments.c_str(), nullptr, 10)));
            } else {
                handler->toastActivated();
            }
            handler->toastCompleted(release);
        });
    const auto dismissed = makeHandler<abi::IDismissedHandler>(
        [handler, expirationTime, release](abi::IToastDismissedEventArgs* eventArguments) {
            handler->toastDismissed(readReason(eventArguments, expirationTime));
            handler->toastCompleted(release);
        });
    const auto failed = makeHandler<abi::IFailedHandler>([handler, release](abi::IToastFailedEventArgs*) {
        handler->toastFailed();
        handler->toastCompleted(release);
    });
    HRESULT result = notification.add_Activated(activated.get(), &tokens.activated);
    if (SUCCEEDED(result)) {
        result = notification.add_Dismissed(dismissed.get(), &tokens.dismissed);
    }
    if (SUCCEEDED(result)) {
        result = notification.add_Failed(failed.get(), &tokens.failed);
    }
    return result;
}

void detachEvents(abi::IToastNotification& notification, const ToastEventTokens& tokens) {
    notification.remove_Activated(tokens.activated);
    notification.remove_Dismissed(tokens.dismissed);
    notification.remove_Failed(tokens.failed);
}

} // namespace WinToastLib
