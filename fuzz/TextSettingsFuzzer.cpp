#include "fuzz/Fuzzing.h"
#include "host/simulation/Files.h"
#include "titles/ConfigFiles.h"
#include "titles/ConfigLocation.h"
#include "titles/TextConfigAdapter.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>

// A game's settings text of any bytes with an ordinary key, and locations of any shape on a small drive.

namespace brisk {
namespace {

constexpr char kKey[] = "(Width=)(-?\\d+)()";
constexpr std::string_view kName = "Width=";
constexpr char kFile[] = "C:\\Saves\\123\\cfg.ini";

// The place of a value, read without regular expressions.
struct Value {
    std::size_t begin;
    std::size_t end;
};

std::optional<Value> findValue(std::string_view text, std::size_t from) {
    for (std::size_t at = text.find(kName, from); at != std::string_view::npos; at = text.find(kName, at + 1)) {
        const std::size_t begin = at + kName.size();
        const bool isNegative = begin < text.size() && text[begin] == '-';
        const std::size_t digits = std::min(text.size(), begin + isNegative);
        const std::size_t end = std::min(text.size(), text.find_first_not_of("0123456789", digits));
        if (end > digits) {
            return Value{begin, end};
        }
    }
    return std::nullopt;
}

std::string withValues(const std::string& text, const std::string& value) {
    std::string result;
    std::size_t copied = 0;
    while (const auto found = findValue(text, copied)) {
        result += text.substr(copied, found->begin - copied) + value;
        copied = found->end;
    }
    return result + text.substr(copied);
}

std::string currentValue(const std::string& text, const std::string& missing) {
    const std::string readable = text.substr(0, text.find('\0'));
    const auto found = findValue(readable, 0);
    return found ? readable.substr(found->begin, found->end - found->begin) : missing;
}

void checkNumber(TextConfigAdapter& title) {
    const std::string value = currentValue(title.content, "-1");
    const std::string digits = value.substr(std::min(value.find_first_not_of("-0"), value.size()));
    // Ten digits at most fit into 64 bits.
    const long long number = digits.size() > 10 ? 1LL << 40 : std::strtoll(value.c_str(), nullptr, 10);
    const bool isInRange = number >= -2147483648LL && number <= 2147483647LL;
    try {
        fuzzing::requireEqual<long long>(title.getIntValue(kKey, -1), number, "getIntValue");
        fuzzing::require(isInRange, "a number in range");
    } catch (const std::out_of_range& error) {
        fuzzing::require(!isInRange, "a number out of range");
        fuzzing::requireEqual<std::string>(error.what(), "stoi argument out of range", "the error's text");
    }
}

std::string readFile(const std::string& windowsPath) {
    std::ifstream file(host::onThisMachine(windowsPath), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void checkText(const std::string& text, std::string value) {
    std::ofstream(host::onThisMachine(kFile), std::ios::binary) << text;
    TextConfigAdapter title;
    title.configLocations = {"C:\\Saves\\none\\cfg.ini", kFile};
    fuzzing::require(title.loadConfig(), "loadConfig");
    fuzzing::requireEqual(title.content, text, "the loaded text");
    fuzzing::requireEqual(title.getValue(kKey, "missing"), currentValue(text, "missing"), "getValue");
    checkNumber(title);

    // A dollar sign has a meaning of its own in a value.
    std::erase(value, '$');
    const std::string changed = withValues(text, value);
    fuzzing::require(title.setValue(kKey, value), "setValue");
    fuzzing::requireEqual(title.content, changed, "the changed text");
    fuzzing::require(title.saveConfig(), "saveConfig");
    fuzzing::require(title.content.empty(), "the text is gone once it is saved");
    fuzzing::requireEqual(readFile(kFile), changed, "the saved file");
    fuzzing::requireLog("");
}

std::string replaced(const std::string& text, const std::string& placeholder, const std::string& folder) {
    const std::size_t at = text.find(placeholder);
    return at == std::string::npos ? text : text.substr(0, at) + folder + text.substr(at + placeholder.size());
}

void checkPlaceholders(const std::string& location, const std::string& folder) {
    std::string expanded = location;
    expandUserFolders(expanded, {{"%USERPROFILE%", folder}, {"%APPDATA%", "C:\\%USERPROFILE%"}});
    fuzzing::requireEqual(expanded,
                          replaced(replaced(location, "%USERPROFILE%", folder), "%APPDATA%", "C:\\%USERPROFILE%"),
                          "the user's folders");
    expanded = location;
    expandAppDirectory(expanded, folder);
    const bool isExpanded = !folder.empty() && location.substr(0, 1) == "%";
    fuzzing::requireEqual(expanded, isExpanded ? replaced(location, "%APPDIR%", folder) : location, "%APPDIR%");
}

// Locations within the drive's two folders, one of which has no subfolder: there it is known what is found.
void checkWildcard(const std::string& location) {
    std::string resolved = location;
    bool isAccepted = false;
    try {
        isAccepted = resolveWildcard(resolved);
        locationExists(resolved);
    } catch (const std::filesystem::filesystem_error&) {
        // What the simulated file system makes of such a name does not matter.
        return;
    }
    const std::size_t star = location.find('*');
    if (star == std::string::npos) {
        fuzzing::require(isAccepted && resolved == location, "a location without a star is accepted as it is");
        return;
    }
    const std::string prefix = location.substr(0, star);
    const std::string rest = location.substr(star + 1);
    if (prefix == "C:\\Saves\\" || prefix == "C:\\Saves") {
        fuzzing::require(isAccepted, "a star in a folder");
        fuzzing::requireEqual(resolved, prefix + "123" + rest, "the first subfolder");
    } else if (prefix == "C:\\Empty\\" || prefix.empty() || prefix == kFile) {
        fuzzing::requireEqual(isAccepted, prefix == "C:\\Empty\\", "a star in a folder without subfolders");
        fuzzing::requireEqual(resolved, location, "a location that keeps its star");
    }
}

void makeDrive() {
    namespace fs = std::filesystem;
    fs::create_directories(host::onThisMachine("C:\\Saves\\123"));
    fs::create_directories(host::onThisMachine("C:\\Saves\\456"));
    fs::create_directories(host::onThisMachine("C:\\Empty"));
    std::ofstream(host::onThisMachine("C:\\Empty\\file.ini")) << "Width=1";
}

} // namespace
} // namespace brisk

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool isMade = (brisk::makeDrive(), true);
    static_cast<void>(isMade);
    // The settings text, a value, a location and a folder.
    const std::vector<std::string> fields = brisk::fuzzing::splitFields(brisk::fuzzing::toText(data, size), 4);
    brisk::checkText(fields[0], fields[1]);
    brisk::checkPlaceholders(fields[2], fields[3]);
    // Windows reads a path up to its first NUL.
    brisk::checkWildcard(fields[2].substr(0, fields[2].find('\0')));
    return 0;
}
