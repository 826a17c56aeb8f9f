#include "service/ServiceFixture.h"

#include "support/Wine.h"

namespace brisk::testing {

namespace {

constexpr char kStateKey[] = "SOFTWARE\\Orlan";

std::wstring uniqueName() {
    return L"brisk-service-test-" + std::to_wstring(GetCurrentProcessId());
}

} // namespace

ServiceFixture::ServiceFixture() : record(machine / "toasts.txt"), toasts(uniqueName()) {
    if (!needsWine("the service would find the user's own state and notifications")) {
        return;
    }
    static const bool registered = (standin::registerStandin(), true);
    static_cast<void>(registered);
    RegDeleteTreeA(HKEY_CURRENT_USER, kStateKey);
    // The service inherits them.
    SetEnvironmentVariableW(standin::kFailVariable, nullptr);
    SetEnvironmentVariableW(standin::kRecordVariable, record.c_str());
    SetEnvironmentVariableW(standin::kPipeVariable, uniqueName().c_str());
}

std::vector<std::string> ServiceFixture::shownToasts() const {
    std::vector<std::string> documents;
    std::string last;
    for (const std::string& line : standin::readRecord(record)) {
        if (line.starts_with("LoadXml ")) {
            last = line.substr(8);
        } else if (line.starts_with("Show ")) {
            documents.push_back(last);
        }
    }
    return documents;
}

std::int64_t ServiceFixture::stateValue(const std::string& subkey, const std::string& name) {
    const std::string path = std::string(kStateKey) + "\\briskGCT" + (subkey.empty() ? "" : "\\") + subkey;
    DWORD number = 0;
    DWORD size = sizeof number;
    return RegGetValueA(HKEY_CURRENT_USER, path.c_str(), name.c_str(), RRF_RT_REG_DWORD, nullptr, &number, &size) ==
                   ERROR_SUCCESS
               ? std::int64_t{number}
               : -1;
}

Display display() {
    DEVMODEA mode{};
    mode.dmSize = sizeof mode;
    DWORD count = 0;
    while (EnumDisplaySettingsA(nullptr, count, &mode)) {
        ++count;
    }
    return {"1024x768", "0.75", count, "800x600"};
}

} // namespace brisk::testing
