#include "Facts.h"

#include "base/TextEncoding.h"

#include <iostream>

namespace brisk::facts {

namespace {

// The true version, whatever the manifest says.
void printWindows() {
    using GetVersionFunction = LONG(WINAPI*)(OSVERSIONINFOEXW*);
    const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
    const auto getVersion =
        reinterpret_cast<GetVersionFunction>(reinterpret_cast<void*>(GetProcAddress(ntdll, "RtlGetVersion")));
    OSVERSIONINFOEXW version{};
    version.dwOSVersionInfoSize = sizeof version;
    if (getVersion) {
        getVersion(&version);
    }
    std::cout << "Windows " << version.dwMajorVersion << '.' << version.dwMinorVersion << " build "
              << version.dwBuildNumber;
    using WineVersionFunction = const char*(CDECL*)();
    if (const auto wineVersion =
            reinterpret_cast<WineVersionFunction>(reinterpret_cast<void*>(GetProcAddress(ntdll, "wine_get_version")))) {
        std::cout << ", Wine " << wineVersion();
    }
    std::cout << '\n';
}

// The manifest does not change what stands in the registry.
std::string systemCodePage(const char* name) {
    char text[16] = "";
    DWORD size = sizeof text;
    RegGetValueA(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Control\\Nls\\CodePage", name, RRF_RT_REG_SZ, nullptr,
                 text, &size);
    return text;
}

void printLanguage() {
    wchar_t user[LOCALE_NAME_MAX_LENGTH] = L"";
    wchar_t system[LOCALE_NAME_MAX_LENGTH] = L"";
    GetUserDefaultLocaleName(user, LOCALE_NAME_MAX_LENGTH);
    GetSystemDefaultLocaleName(system, LOCALE_NAME_MAX_LENGTH);
    std::cout << "Language " << toNarrow(user) << ", of the system " << toNarrow(system) << '\n';
    std::cout << "Code page of this process " << GetACP() << ", of the system " << systemCodePage("ACP")
              << ", of consoles " << systemCodePage("OEMCP") << '\n';
}

void printDisplays() {
    DISPLAY_DEVICEA device{};
    device.cb = sizeof device;
    for (DWORD number = 0; EnumDisplayDevicesA(nullptr, number, &device, 0); ++number) {
        DEVMODEA mode{};
        mode.dmSize = sizeof mode;
        if (!EnumDisplaySettingsA(device.DeviceName, ENUM_CURRENT_SETTINGS, &mode)) {
            continue;
        }
        std::cout << "Display " << device.DeviceName
                  << ((device.StateFlags & DISPLAY_DEVICE_PRIMARY_DEVICE) != 0 ? ", primary" : "") << ": "
                  << mode.dmPelsWidth << 'x' << mode.dmPelsHeight << " at " << mode.dmDisplayFrequency << " Hz; modes";
        for (DWORD index = 0; EnumDisplaySettingsA(device.DeviceName, index, &mode); ++index) {
            std::cout << ' ' << mode.dmPelsWidth << 'x' << mode.dmPelsHeight << '@' << mode.dmDisplayFrequency;
        }
        std::cout << '\n';
    }
}

} // namespace

void describeMachine() {
    printWindows();
    printLanguage();
    printDisplays();
}

} // namespace brisk::facts
