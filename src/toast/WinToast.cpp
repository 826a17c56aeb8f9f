#include "toast/WinToast.h"

#include "toast/InternalDateTime.h"
#include "toast/ShellShortcut.h"
#include "toast/ToastDocument.h"

#include <algorithm>
#include <limits>
#include <new>

#include <objbase.h>

namespace WinToastLib {

namespace {

using brisk::ComReference;

DynamicFunctions functions;

// The functions in use are replaced only by a whole set.
bool resolveFunctions() {
    DynamicFunctions found;
    if (!found.resolve()) {
        return false;
    }
    functions = found;
    return true;
}

void setError(WinToastError* error, WinToastError value) {
    if (error) {
        *error = value;
    }
}

// A string handed to the system by reference: valid while this and the text live.
class StringReference {
public:
    explicit StringReference(const std::wstring& text) {
        result =
            functions.windowsCreateStringReference(text.c_str(), static_cast<UINT32>(text.size()), &header, &string);
    }
    StringReference(const StringReference&) = delete;
    StringReference& operator=(const StringReference&) = delete;

    HRESULT getResult() const { return result; }
    const HSTRING& get() const { return string; }

private:
    HSTRING_HEADER header{};
    HSTRING string = nullptr;
    HRESULT result = S_OK;
};

template <class Interface>
HRESULT activate(const std::wstring& className, ComReference<Interface>& factory) {
    const StringReference name(className);
    return FAILED(name.getResult())
               ? name.getResult()
               : functions.roGetActivationFactory(name.get(), Interface::kIid, factory.receiveVoid());
}

HRESULT loadDocument(abi::IXmlDocument& document, const std::wstring& xml) {
    ComReference<abi::IXmlDocumentIO> io;
    const HRESULT result = document.QueryInterface(abi::IXmlDocumentIO::kIid, io.receiveVoid());
    if (FAILED(result)) {
        return result;
    }
    const StringReference text(xml);
    return FAILED(text.getResult()) ? text.getResult() : io->LoadXml(text.get());
}

HRESULT createNotification(abi::IXmlDocument& document, ComReference<abi::IToastNotification>& notification) {
    ComReference<abi::IToastNotificationFactory> factory;
    const HRESULT result = activate(abi::kToastNotificationClass, factory);
    return FAILED(result) ? result : factory->CreateToastNotification(&document, notification.receive());
}

} // namespace

WinToast& WinToast::instance() {
    // Never destroyed: events may arrive as long as the process lives.
    static WinToast& winToast = *new WinToast;
    return winToast;
}

bool WinToast::isCompatible() {
    return DynamicFunctions().resolve();
}

std::wstring WinToast::configureAUMI(const std::wstring& company, const std::wstring& product,
                                     const std::wstring& subProduct, const std::wstring& version) {
    return company + L"." + product + L"." + subProduct + L"." + version;
}

bool WinToast::initialize(WinToastError* error) {
    const std::lock_guard lock(mutex);
    initialized = false;
    setError(error, WinToastError::NoError);
    if (!resolveFunctions()) {
        setError(error, WinToastError::SystemNotSupported);
        return false;
    }
    if (appName.empty() || appUserModelId.empty()) {
        setError(error, WinToastError::InvalidParameters);
        return false;
    }
    if (shortcutPolicy != ShortcutPolicy::Ignore && createShortcut() < 0) {
        setError(error, WinToastError::ShellLinkNotCreated);
        return false;
    }
    if (FAILED(functions.setCurrentProcessExplicitAppUserModelID(appUserModelId.c_str()))) {
        setError(error, WinToastError::InvalidAppUserModelId);
        return false;
    }
    initialized = true;
    return true;
}

int WinToast::createShortcut() {
    if (appUserModelId.empty() || appName.empty()) {
        return -1;
    }
    if (!resolveFunctions()) {
        return -2;
    }
    if (!comInitialized) {
        const HRESULT result = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        if (FAILED(result) && result != RPC_E_CHANGED_MODE) {
            return -3;
        }
        comInitialized = SUCCEEDED(result);
    }
    std::wstring path;
    if (FAILED(getShortcutPath(companyName, appName, path))) {
        return -4;
    }
    bool changed = false;
    if (SUCCEEDED(validateShortcut(functions, path, appUserModelId, changed))) {
        return changed ? 1 : 0;
    }
    const bool created =
        shortcutPolicy == ShortcutPolicy::RequireCreate && SUCCEEDED(writeShortcut(path, appUserModelId));
    return created ? 2 : -4;
}

std::int64_t WinToast::showToast(const ToastTemplate& toast, const std::shared_ptr<IWinToastHandler>& handler,
                                 WinToastError* error) {
    const std::lock_guard lock(mutex);
    setError(error, WinToastError::NoError);
    if (!initialized) {
        setError(error, WinToastError::NotInitialized);
        return -1;
    }
    if (!handler) {
        setError(error, WinToastError::InvalidHandler);
        return -1;
    }
    const std::int64_t id = nextId++;
    try {
        return SUCCEEDED(show(toast, handler, id)) ? id : -1;
    } catch (const std::bad_alloc&) {
        return -1;
    }
}

HRESULT WinToast::show(const ToastTemplate& toast, const std::shared_ptr<IWinToastHandler>& handler, std::int64_t id) {
    ComReference<abi::IToastNotificationManagerStatics> statics;
    ComReference<abi::IToastNotifier> notifier;
    HRESULT result = createNotifier(statics, notifier);
    ComReference<abi::IXmlDocument> document;
    if (SUCCEEDED(result)) {
        result = statics->GetTemplateContent(static_cast<INT32>(toast.type), document.receive());
    }
    if (FAILED(result)) {
        return result;
    }
    const std::optional<std::wstring> xml = buildToastDocument(toast);
    if (!xml) {
        return E_INVALIDARG;
    }
    result = loadDocument(*document.get(), *xml);
    ShownToast shown;
    if (SUCCEEDED(result)) {
        result = createNotification(*document.get(), shown.notification);
    }
    std::int64_t expirationTime = 0;
    if (SUCCEEDED(result) && toast.expiration > 0) {
        constexpr std::int64_t kUnitsPerMillisecond = 10'000;
        const std::int64_t now = getSystemTime();
        const std::int64_t longest = (std::numeric_limits<std::int64_t>::max() - now) / kUnitsPerMillisecond;
        expirationTime = now + std::min(toast.expiration, longest) * kUnitsPerMillisecond;
        const ComReference<abi::IReferenceDateTime> time(new InternalDateTime(expirationTime));
        result = shown.notification->put_ExpirationTime(time.get());
    }
    if (SUCCEEDED(result)) {
        result = attachEvents(
            functions, *shown.notification.get(), handler, expirationTime, [this, id] { release(id); }, shown.tokens);
    }
    if (FAILED(result)) {
        return result;
    }
    // In the table before it is shown, for an event may arrive at once; a toast that is refused stays there until the
    // next clear (docs/decisions/kept-behaviour.md).
    const auto entry = toasts.emplace(id, std::move(shown)).first;
    return notifier->Show(entry->second.notification.get());
}

void WinToast::clear() {
    const std::lock_guard lock(mutex);
    if (!initialized) {
        return;
    }
    ComReference<abi::IToastNotificationManagerStatics> statics;
    ComReference<abi::IToastNotifier> notifier;
    const bool canHide = SUCCEEDED(createNotifier(statics, notifier));
    for (const auto& [id, shown] : toasts) {
        if (canHide) {
            notifier->Hide(shown.notification.get());
        }
        detachEvents(*shown.notification.get(), shown.tokens);
    }
    toasts.clear();
}

HRESULT WinToast::createNotifier(ComReference<abi::IToastNotificationManagerStatics>& statics,
                                 ComReference<abi::IToastNotifier>& notifier) const {
    const HRESULT result = activate(abi::kToastNotificationManagerClass, statics);
    if (FAILED(result)) {
        return result;
    }
    const StringReference id(appUserModelId);
    return FAILED(id.getResult()) ? id.getResult() : statics->CreateToastNotifierWithId(id.get(), notifier.receive());
}

void WinToast::release(std::int64_t id) {
    const std::lock_guard lock(mutex);
    toasts.erase(id);
}

} // namespace WinToastLib
