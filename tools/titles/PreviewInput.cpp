#include "tools/titles/PreviewInput.h"

#include "base/TextEncoding.h"
#include "tools/titles/FindingOutput.h"
#include "tools/titles/JsonReader.h"
#include "tools/titles/LogCapture.h"
#include "tools/titles/MachineDisplay.h"
#include "tools/titles/MachineFiles.h"
#include "tools/titles/Suggestion.h"

#include <algorithm>
#include <iostream>
#include <set>
#include <stdexcept>

namespace brisk::workbench {

namespace {

namespace fs = std::filesystem;

Size takeSize(const std::string& text, const char* option) {
    if (const std::optional<Size> size = parseSize(text)) {
        return *size;
    }
    throw std::runtime_error(std::string(option) + " " + text + " is no size such as 1920x1080");
}

bool isWithin(const fs::path& path, const std::string& folder) {
    if (folder.empty()) {
        return false;
    }
    const fs::path root = fs::weakly_canonical(toPath(folder) / "");
    const fs::path place = fs::weakly_canonical(path);
    // A folder's path may end in an empty name.
    const auto rootEnd = root.has_filename() ? root.end() : std::prev(root.end());
    return std::mismatch(root.begin(), rootEnd, place.begin(), place.end()).first == rootEnd;
}

} // namespace

bool isSameFile(const fs::path& one, const fs::path& other) {
    std::error_code error;
    return fs::weakly_canonical(one, error) == fs::weakly_canonical(other, error) || fs::equivalent(one, other, error);
}

void checkOptions(const PreviewOptions& options) {
    if (options.file.empty() && options.registry.empty() && options.profile.empty() && options.gameFolder.empty() &&
        !looksAtMachine(options)) {
        throw std::runtime_error("give the settings to look at: --file, --reg, --profile or --game-folder");
    }
    for (const std::string& folder : {options.profile, options.gameFolder}) {
        std::error_code error;
        if (!folder.empty() && !fs::is_directory(toPath(folder), error)) {
            throw std::runtime_error(folder + " is no folder");
        }
    }
    if (options.output.empty()) {
        return;
    }
    const fs::path output = toPath(options.output);
    for (const std::string& input : {options.database, options.file, options.registry}) {
        if (!input.empty() && isSameFile(output, toPath(input))) {
            throw std::runtime_error("--output must not be " + input + ", which is only read");
        }
    }
    if (isWithin(output, options.profile) || isWithin(output, options.gameFolder)) {
        throw std::runtime_error("--output must not lie in the profile or the game's folder, which are only read");
    }
    if (options.isMatrix) {
        throw std::runtime_error("--output takes one display: leave out --matrix");
    }
}

bool looksAtMachine(const PreviewOptions& options) {
    return hasMachineFiles() && options.file.empty() && options.registry.empty() && options.profile.empty();
}

std::vector<Display> chooseDisplays(const PreviewOptions& options) {
    if (options.isMatrix) {
        return usualDisplays();
    }
    Display display = displayOf({1920, 1080});
    if (!options.display.empty()) {
        display = displayOf(takeSize(options.display, "--display"));
    } else if (looksAtMachine(options)) {
        display = machineDisplay().value_or(display);
    }
    if (options.lower == "none") {
        display.lower = std::nullopt;
    } else if (!options.lower.empty()) {
        display.lower = takeSize(options.lower, "--lower");
        if (display.lower->width > display.native.width || display.lower->height > display.native.height) {
            throw std::runtime_error("--lower " + options.lower + " is larger than the display");
        }
    }
    return {display};
}

DatabaseTitles readDatabase(const SourceText& database, const UserFolders& userFolders) {
    const JsonOutcome outcome = readJsonElements(database.text(), [](const JsonValue&) {});
    if (outcome.fault) {
        const Finding finding{outcome.fault->rule,       Severity::Error,        outcome.fault->offset,
                              outcome.fault->offset + 1, outcome.fault->message, std::nullopt};
        printFinding(std::cerr, database, finding, false);
        throw std::runtime_error("the service does not start with this database");
    }
    LogCapture log;
    try {
        return readTitles(database, userFolders);
    } catch (const nlohmann::json::exception& error) {
        throw std::runtime_error("the service does not start with this database: " + std::string(error.what()));
    }
}

std::vector<DatabaseTitle> chooseTitles(const DatabaseTitles& all, const PreviewOptions& options) {
    std::vector<DatabaseTitle> chosen;
    std::set<std::string> unknown(options.titles.begin(), options.titles.end());
    std::vector<std::string_view> names;
    for (const auto& [name, title] : all) {
        names.push_back(name);
        names.push_back(title.title.titleName);
        const bool isNamed = std::count(options.titles.begin(), options.titles.end(), name) +
                                 std::count(options.titles.begin(), options.titles.end(), title.title.titleName) >
                             0;
        if (isNamed || options.titles.empty()) {
            chosen.push_back(title);
        }
        unknown.erase(name);
        unknown.erase(title.title.titleName);
    }
    if (!unknown.empty()) {
        throw std::runtime_error("the database has no title \"" + *unknown.begin() + "\"" +
                                 didYouMean(*unknown.begin(), names));
    }
    if (chosen.empty()) {
        throw std::runtime_error("there is no title in the database");
    }
    return chosen;
}

} // namespace brisk::workbench
