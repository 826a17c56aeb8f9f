#include "BriskHost.h"

#include <iterator>
#include <sstream>
#include <string>

#include <windows.h>

#include <objbase.h>
#include <propsys.h>
#include <shlobj.h>

// What the service's start and end are measured against: a window program that makes the same system calls, in the
// same order, and does nothing else. A host's quit message ends it, too.

namespace {

constexpr DWORD kPathCharacters = 260;
constexpr wchar_t kShortcut[] = L"\\Microsoft\\Windows\\Start Menu\\Programs\\Orlan Software\\same calls.lnk";

HANDLE startedEvent = nullptr;

// A program of C++ streams, as the service is.
void say(int number) {
    std::ostringstream line;
    line << "Brisk : a line as long as the service's are, number " << number << ".\n";
    OutputDebugStringA(line.str().c_str());
}

void sayLines(int count) {
    for (int number = 0; number < count; ++number) {
        say(number);
    }
}

void readDatabase() {
    char path[kPathCharacters] = "";
    std::string file(path, GetModuleFileNameA(nullptr, path, kPathCharacters));
    file = std::string(path).substr(0, file.rfind('\\') + 1) + "titles_db.json";
    const HANDLE database = CreateFileA(file.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    char block[4096];
    for (DWORD read = 1; read != 0 && ReadFile(database, block, sizeof block, &read, nullptr);) {
    }
    CloseHandle(database);
}

void readDisplays() {
    DISPLAY_DEVICEA device{};
    device.cb = sizeof device;
    for (DWORD number = 0; EnumDisplayDevicesA(nullptr, number, &device, 0); ++number) {
        DEVMODEA mode{};
        mode.dmSize = sizeof mode;
        EnumDisplaySettingsA(device.DeviceName, ENUM_CURRENT_SETTINGS, &mode);
    }
}

FARPROC find(const wchar_t* library, const char* function) {
    return GetProcAddress(LoadLibraryExW(library, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32), function);
}

FARPROC findToastFunctions() {
    find(L"SHELL32.DLL", "SetCurrentProcessExplicitAppUserModelID");
    find(L"PROPSYS.DLL", "PropVariantToString");
    const FARPROC factory = find(L"COMBASE.DLL", "RoGetActivationFactory");
    find(L"COMBASE.DLL", "WindowsCreateStringReference");
    find(L"COMBASE.DLL", "WindowsGetStringRawBuffer");
    find(L"COMBASE.DLL", "WindowsDeleteString");
    return factory;
}

IShellLinkW* createLink() {
    IShellLinkW* link = nullptr;
    CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, reinterpret_cast<void**>(&link));
    return link;
}

void saveShortcut() {
    wchar_t appData[kPathCharacters] = L"";
    GetEnvironmentVariableW(L"APPDATA", appData, kPathCharacters);
    const std::wstring path = std::wstring(appData) + kShortcut;
    if (GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES) {
        IShellLinkW* const link = createLink();
        IPersistFile* file = nullptr;
        link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file));
        file->Load(path.c_str(), STGM_READWRITE);
        file->Release();
        link->Release();
    }
    wchar_t program[kPathCharacters] = L"";
    GetModuleFileNameW(nullptr, program, kPathCharacters);
    IShellLinkW* const link = createLink();
    link->SetPath(program);
    link->SetArguments(L"");
    link->SetWorkingDirectory(L"");
    CreateDirectoryW(path.substr(0, path.rfind(L'\\')).c_str(), nullptr);
    IPersistFile* file = nullptr;
    link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file));
    file->Save(path.c_str(), TRUE);
    file->Release();
    link->Release();
}

// As the service asks for the notifications at its end.
void askForNotifications() {
    constexpr wchar_t kName[] = L"Windows.UI.Notifications.ToastNotificationManager";
    struct Header {
        void* parts[3];
    } header{};
    void* name = nullptr;
    const auto create = reinterpret_cast<HRESULT(WINAPI*)(const wchar_t*, UINT32, Header*, void**)>(
        reinterpret_cast<void*>(find(L"COMBASE.DLL", "WindowsCreateStringReference")));
    const auto activate = reinterpret_cast<HRESULT(WINAPI*)(void*, const IID&, void**)>(
        reinterpret_cast<void*>(find(L"COMBASE.DLL", "RoGetActivationFactory")));
    IUnknown* factory = nullptr;
    if (SUCCEEDED(create(kName, std::size(kName) - 1, &header, &name)) &&
        SUCCEEDED(activate(name, IID_IUnknown, reinterpret_cast<void**>(&factory)))) {
        factory->Release();
    }
}

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) {
        startedEvent = CreateEventA(nullptr, TRUE, FALSE, BRISK_STARTED_EVENT);
        SetEvent(startedEvent);
    } else if (message == BRISK_QUIT) {
        askForNotifications();
        CloseHandle(startedEvent);
        PostQuitMessage(0);
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE /*previous*/, LPSTR /*commandLine*/, int /*show*/) {
    sayLines(7);
    FindWindowA(BRISK_WINDOW_CLASS, nullptr);
    wchar_t folder[kPathCharacters] = L"";
    for (const int place : {CSIDL_PROFILE, CSIDL_LOCAL_APPDATA, CSIDL_PERSONAL}) {
        SHGetFolderPathW(nullptr, place, nullptr, SHGFP_TYPE_CURRENT, folder);
    }
    readDatabase();
    say(7);
    HKEY key = nullptr;
    RegCreateKeyExA(HKEY_CURRENT_USER, "SOFTWARE\\Orlan\\briskGCT", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                    nullptr);
    RegCloseKey(key);
    sayLines(2);
    LoadLibraryExA("orlankestrel64.dll", nullptr,
                   LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32 | LOAD_LIBRARY_SEARCH_USER_DIRS |
                       LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
    sayLines(2);
    readDisplays();
    for (int time = 0; time < 3; ++time) {
        findToastFunctions();
    }
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    saveShortcut();
    SetCurrentProcessExplicitAppUserModelID(L"Orlan.Experience.Brisk.SameCalls");

    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = windowProcedure;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = BRISK_WINDOW_CLASS;
    RegisterClassA(&windowClass);
    CreateWindowExA(0, BRISK_WINDOW_CLASS, BRISK_WINDOW_CLASS, WS_DISABLED, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                    CW_USEDEFAULT, nullptr, nullptr, instance, nullptr);
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    say(14);
    return 0;
}
