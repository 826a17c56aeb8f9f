#include "tools/log/RecordHead.h"

#include "tools/log/Sha256.h"

#include "base/Version.h"
#include "base/WindowsHandles.h"

#include <set>

#include <windows.h>

#include <winternl.h>

namespace brisk::logbook {

namespace {

constexpr char kKey[] = "SOFTWARE\\Orlan\\briskGCT";
constexpr DWORD kMaximumValues = 500; // of a key

std::string line(const std::string& name, const std::string& value) {
    std::string text = "# " + name + ": ";
    for (const char byte : value) {
        text += byte == '\r' || byte == '\n' ? ' ' : byte;
    }
    return text + "\n";
}

std::string windowsBuild() {
    // What other calls answer depends on the caller's manifest.
    using Query = NTSTATUS(WINAPI*)(OSVERSIONINFOW*);
    const auto query = reinterpret_cast<Query>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), "RtlGetVersion")));
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    if (!query || query(&version) < 0) {
        return "unknown";
    }
    return std::to_string(version.dwMajorVersion) + "." + std::to_string(version.dwMinorVersion) + "." +
           std::to_string(version.dwBuildNumber);
}

std::string toText(const DEVMODEA& mode) {
    return std::to_string(mode.dmPelsWidth) + "x" + std::to_string(mode.dmPelsHeight) + " " +
           std::to_string(mode.dmBitsPerPel) + " bit " + std::to_string(mode.dmDisplayFrequency) + " Hz";
}

std::string displays() {
    std::string text;
    DISPLAY_DEVICEA device{};
    device.cb = sizeof device;
    for (DWORD index = 0; EnumDisplayDevicesA(nullptr, index, &device, 0); ++index) {
        const bool isPrimary = (device.StateFlags & DISPLAY_DEVICE_PRIMARY_DEVICE) != 0;
        DEVMODEA mode{};
        mode.dmSize = sizeof mode;
        if (EnumDisplaySettingsA(device.DeviceName, ENUM_CURRENT_SETTINGS, &mode)) {
            text += line(isPrimary ? "primary display" : "display", device.DeviceName + (", " + toText(mode)));
        }
        std::set<std::string> seen;
        for (DWORD number = 0; EnumDisplaySettingsA(device.DeviceName, number, &mode); ++number) {
            if (seen.insert(toText(mode)).second) {
                text += line("display mode", device.DeviceName + (", " + toText(mode)));
            }
        }
    }
    return text;
}

std::string registryValues(const std::string& subkey) {
    std::string text;
    RegistryKey key;
    const std::string path = std::string(kKey) + (subkey.empty() ? "" : "\\" + subkey);
    if (RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, KEY_QUERY_VALUE, key.receive()) != ERROR_SUCCESS) {
        return line("registry", path + " cannot be opened or is not there");
    }
    for (DWORD index = 0; index < kMaximumValues; ++index) {
        char name[1024];
        DWORD nameSize = sizeof name;
        DWORD type = 0;
        DWORD number = 0;
        DWORD size = sizeof number;
        const LSTATUS status =
            RegEnumValueA(key.get(), index, name, &nameSize, nullptr, &type, reinterpret_cast<BYTE*>(&number), &size);
        if (status == ERROR_NO_MORE_ITEMS) {
            break;
        }
        text += line("registry",
                     path + "\\" + std::string(name, status == ERROR_SUCCESS ? nameSize : 0) +
                         (status == ERROR_SUCCESS && type == REG_DWORD ? " = " + std::to_string(number)
                                                                       : " has an unexpected type, or cannot be read"));
    }
    return text;
}

} // namespace

std::string makeHead(const ServiceFacts& service) {
    std::string text = line("recorded by", std::string("brisklog ") + kVersion);
    text += line("program", service.path);
    text += line("command line", service.commandLine);
    text += line("file version", service.fileVersion);
    text += line("database", service.databasePath);
    if (service.database) {
        text += line("database SHA-256", sha256(*service.database));
        text += line("database titles", std::to_string(service.titles));
    } else {
        text += line("database SHA-256", "it cannot be read");
    }
    text += line("Windows", windowsBuild());
    text += displays();
    return text + registryValues("") + registryValues("ToastsShown") + registryValues("PatchedApps");
}

} // namespace brisk::logbook
