#include "fuzz/Fuzzing.h"
#include "host/simulation/Handles.h"
#include "host/simulation/Registry.h"
#include "host/simulation/SimulatedCall.h"
#include "state/UserState.h"
#include "titles/RegisterConfigAdapter.h"

#include <algorithm>
#include <optional>

// Registry values of any type and length, which may change while they are read, and locations of any shape.

namespace brisk {
namespace {

constexpr char kTitle[] = "Game.exe";
constexpr char kMainKey[] = "SOFTWARE\\Orlan\\briskGCT";
constexpr char kToastsShownKey[] = "SOFTWARE\\Orlan\\briskGCT\\ToastsShown";
constexpr char kGameKey[] = "Software\\Studio\\Game";
constexpr std::int32_t kDefaultNumber = -77;
constexpr char kDefaultText[] = "the default";

struct Case {
    DWORD type;
    bool isMissing;
    bool changes; // between the two queries of one read
    std::string name;
    std::string data;
    std::string changedData;
    std::string location;
};

// Up to four bytes as a little-endian number; nothing for more.
std::optional<std::int32_t> numberIn(const std::string& data) {
    if (data.size() > 4) {
        return std::nullopt;
    }
    std::uint32_t number = 0;
    for (std::size_t i = data.size(); i > 0; --i) {
        number = number << 8 | static_cast<unsigned char>(data[i - 1]);
    }
    return static_cast<std::int32_t>(number);
}

std::string textIn(const std::string& data) {
    return data.substr(0, data.find('\0'));
}

host::RegistryValue makeNumber(std::uint32_t number) {
    std::string bytes;
    for (int i = 0; i < 4; ++i, number >>= 8) {
        bytes += static_cast<char>(number & 0xFF);
    }
    return {REG_DWORD, bytes};
}

std::shared_ptr<host::RegistryKeyNode> keyAt(const char* path) {
    return host::makeKey(host::registry().currentUser, path);
}

void checkGetters(RegisterConfigAdapter& title, host::RegistryKeyNode& key, const Case& input) {
    const auto number = input.isMissing ? std::nullopt : numberIn(input.data);
    fuzzing::requireEqual(title.getIntValue(input.name, kDefaultNumber), number.value_or(kDefaultNumber),
                          "getIntValue");

    unsigned queries = 0;
    const auto query = [&](HKEY handle, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size) {
        if (++queries == 2 && input.changes) {
            key.values[input.name] = {input.type, input.changedData};
        }
        return host::simulatedCall<RegQueryValueExA>.real(handle, name, reserved, type, data, size);
    };
    std::string expected = input.isMissing ? kDefaultText : textIn(input.data);
    if (input.changes) {
        const bool fits = input.changedData.size() <= (input.isMissing ? 0 : input.data.size());
        expected = fits ? textIn(input.changedData) : kDefaultText;
    }
    host::simulatedCall<RegQueryValueExA>.intercept(query);
    fuzzing::requireEqual(title.getValue(input.name, kDefaultText), expected, "getValue");
    host::simulatedCall<RegQueryValueExA>.reset();
}

void checkSetters(RegisterConfigAdapter& title, const host::RegistryKeyNode& key, const Case& input) {
    fuzzing::require(title.setValue(input.name, input.data), "setValue");
    const std::string text = input.data + '\0';
    fuzzing::require(key.values.at(input.name) == host::RegistryValue{REG_SZ, text}, "a text that was set");
    fuzzing::requireEqual(title.getValue(input.name, kDefaultText), textIn(text), "a text that was set, read back");
    const std::int32_t number = numberIn(input.data.substr(0, 4)).value_or(0);
    fuzzing::require(title.setIntValue(input.name, number), "setIntValue");
    fuzzing::require(key.values.at(input.name) == makeNumber(static_cast<std::uint32_t>(number)), "a number");
    fuzzing::requireEqual(title.getIntValue(input.name, kDefaultNumber), number, "a number that was set, read back");
}

void checkAdapter(const Case& input) {
    const auto key = keyAt(kGameKey);
    if (!input.isMissing) {
        key->values[input.name] = {input.type, input.data};
    }
    RegisterConfigAdapter title;
    title.configLocations = {"HKEY_CURRENT_USER/Software/Studio\\Game"};
    fuzzing::require(title.findConfig({}) && title.loadConfig() && title.saveConfig(), "the key is found");
    fuzzing::requireLog("Brisk : checking registry path 'Software\\Studio\\Game'.\n");
    checkGetters(title, *key, input);
    checkSetters(title, *key, input);
    fuzzing::requireLog("");
}

void checkLocation(const std::string& location) {
    RegisterConfigAdapter title;
    title.configLocations = {location, "HKEY_CURRENT_USER/Software"};
    const bool isFound = title.findConfig("C:\\Games");
    fuzzing::requireEqual(title.loadConfig(), isFound, "loadConfig for a found key only");
    const std::size_t separator = location.find('/');
    if (separator == std::string::npos) {
        fuzzing::require(!isFound, "a location without a separator");
        fuzzing::requireLog("");
        return;
    }
    std::string path = location.substr(separator + 1);
    std::replace(path.begin(), path.end(), '/', '\\');
    const std::string root = location.substr(0, separator);
    const bool isUser = root == "HKEY_CURRENT_USER";
    const bool isRoot = isUser || root == "HKEY_LOCAL_MACHINE";
    const auto& tree = isUser ? host::registry().currentUser : host::registry().localMachine;
    const bool isThere = isRoot && host::findKey(tree, path) != nullptr;
    fuzzing::requireEqual(isFound, isThere, "whether the location is found");
    // Windows refuses the null root as an invalid handle.
    std::string log = "Brisk : checking registry path '" + path + "'.\n";
    if (!isThere) {
        log += "Brisk : RegOpenKeyEx failed. Error " + std::string(isRoot ? "2" : "6") + ".\n";
    }
    fuzzing::requireLog(log);
}

void checkUserState(const Case& input) {
    const auto main = keyAt(kMainKey);
    const auto shown = keyAt(kToastsShownKey);
    if (!input.isMissing) {
        main->values["ToastsNotAllowed"] = {input.type, input.data};
        shown->values[kTitle] = {input.type, input.data};
    }
    const std::int32_t number = input.isMissing ? 0 : numberIn(input.data).value_or(0);
    fuzzing::require(isRegistryAccessible(), "isRegistryAccessible");
    fuzzing::requireEqual(areToastsAllowed(), number == 0, "areToastsAllowed");
    fuzzing::requireEqual(getNumberOfToastsShown(kTitle), number, "getNumberOfToastsShown");
    fuzzing::require(incNumberOfToastsShown(kTitle), "incNumberOfToastsShown");
    fuzzing::require(shown->values.at(kTitle) == makeNumber(static_cast<std::uint32_t>(number) + 1), "the new count");
    fuzzing::require(setPatched(input.name), "setPatched");
    fuzzing::require(keyAt("SOFTWARE\\Orlan\\briskGCT\\PatchedApps")->values.at(input.name) == makeNumber(1),
                     "the patch marker");
    fuzzing::requireEqual(resetToastsAllowed(), !input.isMissing, "resetToastsAllowed");
    fuzzing::require(resetToastsShown() && shown->values.empty(), "resetToastsShown");
    fuzzing::require(disallowToasts() && !areToastsAllowed(), "disallowToasts");
    fuzzing::requireEqual(host::handles().count(host::HandleKind::RegistryKey), 0u, "no key stays open");
    fuzzing::requireLog(input.isMissing ? "Brisk : resetToastsAllowed : RegDeleteValue failed. Error 2.\n" : "");
}

} // namespace
} // namespace brisk

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace brisk;
    // The first byte is the value's type and what becomes of it; then its name, its data, other data and a location.
    const unsigned shape = size > 0 ? data[0] : 0;
    const std::vector<std::string> fields =
        fuzzing::splitFields(fuzzing::toText(data + (size > 0), size - (size > 0)), 4);
    const auto cString = [](const std::string& text) { return text.substr(0, text.find('\0')); };
    const Case input{shape % 16, (shape & 16) != 0, (shape & 32) != 0, cString(fields[0]),
                     fields[1],  fields[2],         cString(fields[3])};
    host::resetSimulation();
    checkAdapter(input);
    checkLocation(input.location);
    host::resetSimulation();
    checkUserState(input);
    return 0;
}
