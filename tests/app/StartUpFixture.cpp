#include "StartUpFixture.h"

#include "BriskHost.h"
#include "support/ModuleNames.h"
#include "support/ProcessState.h"

#include <nlohmann/json.hpp>

namespace brisk::testing {

namespace {

struct Mode {
    DWORD width;
    DWORD height;
};
constexpr Mode kModes[] = {{1280, 720}, {1920, 1080}};
constexpr char kDeviceName[] = "\\\\.\\DISPLAY1";

void scriptDisplay() {
    EnumDisplayDevicesAFault.intercept([](const char*, DWORD index, DISPLAY_DEVICEA* device, DWORD) -> BOOL {
        device->StateFlags = DISPLAY_DEVICE_PRIMARY_DEVICE;
        std::copy(std::begin(kDeviceName), std::end(kDeviceName), device->DeviceName);
        return index == 0;
    });
    EnumDisplaySettingsAFault.intercept([](const char*, DWORD number, DEVMODEA* mode) -> BOOL {
        if (number != ENUM_CURRENT_SETTINGS && number >= std::size(kModes)) {
            return FALSE;
        }
        const Mode& found = kModes[number == ENUM_CURRENT_SETTINGS ? 1 : number];
        mode->dmPelsWidth = found.width;
        mode->dmPelsHeight = found.height;
        mode->dmBitsPerPel = 32;
        mode->dmDisplayFrequency = 60;
        return TRUE;
    });
}

void renewProcess() {
    renewProcessState();
    processLog.setFilePath({});
    processLog.text(std::dec, std::noshowbase);
}

} // namespace

StartUpFixture::StartUpFixture() {
    renewProcess();
    scriptDisplay();
    OutputDebugStringAFault.intercept([this](const char* text) {
        const std::lock_guard lock(mutex);
        for (const std::string& line : splitLines(text)) {
            recorded.push_back(line);
        }
    });
    GetModuleFileNameAFault.intercept([this](HMODULE module, char* buffer, DWORD size) {
        if (!isStarting) {
            return GetModuleFileNameAFault.real(module, buffer, size);
        }
        return giveNameAsWindows(folder.narrow() + "\\brisk.exe", buffer, size);
    });
    CreateWindowExAFault.intercept([this](auto... arguments) {
        serviceWindow = CreateWindowExAFault.real(arguments...);
        if (whenCreated) {
            whenCreated(serviceWindow);
        }
        PostMessageA(serviceWindow, BRISK_QUIT, 0, 0);
        return serviceWindow;
    });
    GetForegroundWindowFault.fail(nullptr);
    RegCreateKeyExAFault.reset(); // the hive's call does not count
}

StartUpFixture::~StartUpFixture() {
    faults::reset();
    if (serviceWindow) {
        DestroyWindow(serviceWindow);
    }
    UnregisterClassA("BriskClass", GetModuleHandleA(nullptr));
    for (MSG message; PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);) {
    }
    renewProcess();
}

void StartUpFixture::writeGame(const std::string& key) const {
    writeFile(settings(), "Width=1920\r\n");
    writeDatabase(R"json([{"config_type": "txt", "id": 1001, "title_name": "The Game", "binary_name": "game.exe",
                           "config_locations": [)json" +
                  nlohmann::json(toNarrow(settings())).dump() + R"json(],
                           "config_fields": [{"key": ")json" +
                  key + R"json(", "meta": "width", "value": 0}]}])json");
}

int StartUpFixture::start(const std::string& commandLine) {
    isStarting = true;
    std::string arguments = commandLine;
    return WinMain(GetModuleHandleA(nullptr), nullptr, arguments.data(), SW_SHOWNORMAL);
}

Lines StartUpFixture::record() const {
    const std::lock_guard lock(mutex);
    return recorded;
}

Lines StartUpFixture::recordAfterParameters() const {
    const Lines all = record();
    const Lines first = parameterLines();
    EXPECT_GE(all.size(), first.size());
    return {all.begin() + static_cast<std::ptrdiff_t>(std::min(all.size(), first.size())), all.end()};
}

void StartUpFixture::note(const std::string& line) {
    const std::lock_guard lock(mutex);
    recorded.push_back(line);
}

} // namespace brisk::testing
