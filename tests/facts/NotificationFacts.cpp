// The shortcut and Windows' notification classes, as far as they can be tried without a toast.
#include "Facts.h"
#include "OwnProcess.h"

#include "support/TemporaryFolder.h"
#include "toast/DynamicFunctions.h"
#include "toast/NotificationInterfaces.h"
#include "toast/ShellShortcut.h"

#include <cstdio>

#include <objbase.h>

namespace brisk::facts {

namespace {

using namespace WinToastLib;

std::string named(const char* call, HRESULT result) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(result));
    return std::string(call) + " gives " + text;
}

struct ComInitialized {
    const HRESULT result = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    ComInitialized() = default;
    ComInitialized(const ComInitialized&) = delete;
    ComInitialized& operator=(const ComInitialized&) = delete;
    ~ComInitialized() {
        if (SUCCEEDED(result)) {
            CoUninitialize();
        }
    }
};

// Written and read back by the product's own functions, in a folder of our own.
Answer shortcutId() {
    const ComInitialized com;
    DynamicFunctions functions;
    if (!functions.resolve()) {
        return cannotTell("this Windows has no notifications");
    }
    const testing::TemporaryFolder folder;
    const std::wstring path = (folder / L"Brisk windows-facts" / L"link.lnk").native();
    bool changed = true;
    HRESULT result = writeShortcut(path, L"Orlan.Brisk.Facts");
    if (FAILED(result)) {
        return holdsIf(false, named("writing", result));
    }
    result = validateShortcut(functions, path, L"Orlan.Brisk.Facts", changed);
    if (FAILED(result) || changed) {
        return holdsIf(false, FAILED(result) ? named("reading back", result) : "the id had to be written again");
    }
    result = validateShortcut(functions, path, L"Orlan.Brisk.Other", changed);
    return holdsIf(SUCCEEDED(result) && changed, "read back; another id is noticed");
}

struct StringOwner {
    explicit StringOwner(const DynamicFunctions& functions, const wchar_t* text) {
        functions.windowsCreateStringReference(text, static_cast<UINT32>(std::wcslen(text)), &header, &string);
    }
    HSTRING_HEADER header{};
    HSTRING string = nullptr;
};

template <class Interface>
HRESULT factoryOf(const DynamicFunctions& functions, const wchar_t* name, ComReference<Interface>& factory) {
    const StringOwner string(functions, name);
    return functions.roGetActivationFactory(string.string, Interface::kIid, factory.receiveVoid());
}

// Everything up to showing: factories, template, document, notification, from the apartment that the service has.
Answer notificationClasses() {
    const ComInitialized com;
    DynamicFunctions functions;
    if (!functions.resolve()) {
        return cannotTell("this Windows has no notifications");
    }
    ComReference<abi::IToastNotificationManagerStatics> manager;
    HRESULT result = factoryOf(functions, abi::kToastNotificationManagerClass, manager);
    if (FAILED(result)) {
        return holdsIf(false, named("the manager", result));
    }
    ComReference<abi::IToastNotificationFactory> factory;
    result = factoryOf(functions, abi::kToastNotificationClass, factory);
    if (FAILED(result)) {
        return holdsIf(false, named("the factory", result));
    }
    ComReference<abi::IXmlDocument> document;
    result = manager->GetTemplateContent(3, document.receive());
    if (FAILED(result)) {
        return holdsIf(false, named("GetTemplateContent", result));
    }
    ComReference<abi::IXmlDocumentIO> io;
    result = document->QueryInterface(abi::IXmlDocumentIO::kIid, io.receiveVoid());
    const StringOwner broken(functions, L"<toast>");
    const StringOwner whole(functions, L"<toast template=\"ToastGeneric\" scenario=\"Default\"><visual/></toast>");
    if (FAILED(result) || SUCCEEDED(io->LoadXml(broken.string)) || FAILED(result = io->LoadXml(whole.string))) {
        return holdsIf(false, named("LoadXml", result));
    }
    ComReference<abi::IToastNotification> notification;
    result = factory->CreateToastNotification(document.get(), notification.receive());
    return holdsIf(SUCCEEDED(result), named("CreateToastNotification", result));
}

} // namespace

std::vector<Fact> notificationFacts() {
    return {{"shortcut-id", shortcutId}, {"notification-classes", notificationClasses}};
}

} // namespace brisk::facts
