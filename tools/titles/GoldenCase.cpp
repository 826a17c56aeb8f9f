#include "tools/titles/GoldenCase.h"

#include "base/TextEncoding.h"
#include "tools/titles/InputFile.h"
#include "tools/titles/PreviewInput.h"
#include "tools/titles/ProfileFiles.h"
#include "tools/titles/Suggestion.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace brisk::workbench {

namespace {

namespace fs = std::filesystem;

using Json = nlohmann::ordered_json;

constexpr std::array<std::string_view, 4> kKeys{"display", "lower", "expectation", "note"};

std::string inCase(const GoldenCase& golden, const char* name) {
    return golden.folder + "/before/" + name;
}

std::vector<std::string> subfolders(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(toPath(folder), error), end; !error && entry != end; entry.increment(error)) {
        const std::string name = narrowPath(entry->path().filename());
        if (entry->is_directory(error) && !name.starts_with('.')) {
            names.push_back(name);
        }
    }
    if (error) {
        throw std::runtime_error("cannot read " + folder + ": " + error.message());
    }
    std::sort(names.begin(), names.end());
    for (std::string& name : names) {
        name.insert(0, folder + "/");
    }
    return names;
}

Size readSize(const Json& value, const std::string& file, const char* key) {
    const std::optional<Size> size = value.is_string() ? parseSize(value.get<std::string>()) : std::nullopt;
    if (!size) {
        throw std::runtime_error(file + ": \"" + key + "\" is to be a size such as \"1920x1080\"");
    }
    return *size;
}

void readDescription(GoldenCase& golden, const std::string& file) {
    if (!golden.description.is_object()) {
        throw std::runtime_error(file + " holds no JSON object");
    }
    for (const auto& [key, value] : golden.description.items()) {
        if (std::find(kKeys.begin(), kKeys.end(), key) == kKeys.end()) {
            throw std::runtime_error(file + ": unknown key \"" + key + "\"" + didYouMean(key, kKeys));
        }
    }
    if (golden.description.contains("display")) {
        golden.display = displayOf(readSize(golden.description["display"], file, "display"));
    }
    if (golden.description.contains("lower")) {
        const Json& lower = golden.description["lower"];
        const bool isNone = lower.is_null() || lower == "none";
        golden.display.lower = isNone ? std::nullopt : std::optional(readSize(lower, file, "lower"));
    }
    if (golden.description.contains("expectation")) {
        const Json& expectation = golden.description["expectation"];
        golden.expectation = expectation.is_string() ? expectation.get<std::string>() : expectation.dump();
        const auto& all = expectations();
        if (std::find(all.begin(), all.end(), golden.expectation) == all.end()) {
            throw std::runtime_error(file +
                                     ": \"expectation\" is to be adjusted, untouched, condition, not-found or "
                                     "no-resolution, not " +
                                     golden.expectation);
        }
    }
}

bool holds(const std::string& folder, const char* name) {
    std::error_code error;
    return fs::exists(toPath(folder + "/" + name), error);
}

// Where the written file lies among the case's.
std::string nameInCase(const GoldenCase& golden, const TitlePreview& preview) {
    for (const PreviewFile& file : preview.files) {
        if (file.location == preview.writtenLocation && file.isReadable) {
            return narrowPath(file.real.lexically_relative(toPath(golden.folder + "/before")));
        }
    }
    std::string name = preview.writtenLocation;
    std::replace(name.begin(), name.end(), '\\', '/');
    const std::string root = golden.folder + "/before/";
    return name.starts_with(root) ? name.substr(root.size()) : name;
}

} // namespace

const std::vector<std::string_view>& expectations() {
    static const std::vector<std::string_view> all{"adjusted", "untouched", "condition", "not-found", "no-resolution"};
    return all;
}

GoldenCase readCase(const std::string& folder, bool mayBeNew) {
    GoldenCase golden;
    golden.folder = folder;
    golden.name = folder.substr(folder.rfind('/') + 1);
    const std::string file = folder + "/case.json";
    golden.description = Json::object();
    if (!mayBeNew || holds(folder, "case.json")) {
        golden.description = Json::parse(readInput(file), nullptr, false);
        if (golden.description.is_discarded()) {
            throw std::runtime_error(file + " is no JSON");
        }
    }
    readDescription(golden, file);
    if (golden.expectation.empty() && !mayBeNew) {
        throw std::runtime_error(file + " has no \"expectation\"");
    }
    golden.before = readFiles(folder + "/before");
    golden.after = readFiles(folder + "/after");
    for (GoldenFiles* files : {&golden.before, &golden.after}) {
        if (const auto registry = files->find(kRegistryFile); registry != files->end()) {
            if (!readRegistryExport(registry->second)) {
                throw std::runtime_error(folder + (files == &golden.before ? "/before/" : "/after/") + kRegistryFile +
                                         " is no exported registry file");
            }
            registry->second = normalizedExport(registry->second);
        }
    }
    return golden;
}

std::vector<std::string> findCases(const std::string& titleFolder) {
    return subfolders(titleFolder);
}

SourceText readTitleFile(const std::string& titleFolder) {
    const std::string file = titleFolder + "/title.json";
    std::string text = readInput(file);
    // A title alone stands for the database that has nothing else.
    const std::size_t begin = text.find_first_not_of(" \t\r\n", text.starts_with("\xEF\xBB\xBF") ? 3 : 0);
    if (begin != std::string::npos && text[begin] == '{') {
        text.insert(begin, "[");
        text += "]";
    }
    return {file, std::move(text)};
}

std::vector<std::string> findTitleFolders(const std::string& folder) {
    if (holds(folder, "title.json")) {
        return {folder};
    }
    std::vector<std::string> found;
    for (const std::string& below : subfolders(folder)) {
        const std::vector<std::string> titles = findTitleFolders(below);
        found.insert(found.end(), titles.begin(), titles.end());
    }
    return found;
}

TitlePreview previewCase(const SourceText& titleFile, const GoldenCase& golden, const Display& display) {
    const std::string profile = inCase(golden, "profile");
    const DatabaseTitles titles = readDatabase(titleFile, userFoldersIn(profile));
    if (titles.size() != 1) {
        throw std::runtime_error(titleFile.path() + (titles.empty() ? " holds no title" : " holds several titles"));
    }
    const DatabaseTitle& title = titles.begin()->second;
    if (title.type == ConfigType::Registry) {
        RegistryPreviewAdapter adapter(title.title);
        const auto exported = golden.before.find(kRegistryFile);
        const RegistryKeys keys =
            exported == golden.before.end() ? RegistryKeys() : readRegistryExport(exported->second).value();
        adapter.registry = &keys;
        return previewRegistry(adapter, display);
    }
    TextPreviewAdapter adapter(title.title);
    const std::string game = holds(golden.folder, "before/game") ? inCase(golden, "game") : std::string();
    adapter.source = filesIn(profile, game);
    return previewText(adapter, game, display);
}

GoldenFiles filesAfter(const GoldenCase& golden, const TitlePreview& preview) {
    GoldenFiles files = golden.before;
    if (preview.passes.front().verdict != Verdict::Adjusted) {
        return files;
    }
    if (!preview.isRegistry) {
        files.insert_or_assign(nameInCase(golden, preview), preview.after);
        return files;
    }
    RegistryKeys keys = readRegistryExport(files[kRegistryFile]).value_or(RegistryKeys());
    std::string path = preview.writtenLocation;
    std::replace(path.begin(), path.end(), '/', '\\');
    while (path.ends_with('\\')) {
        path.pop_back();
    }
    // The older form's bytes are those of the preview.
    if (auto written = readRegistryExport("REGEDIT4\r\n[" + path + "]\r\n" + preview.after)) {
        keys.insert_or_assign(path, (*written)[path]);
    }
    files[kRegistryFile] = exportOf(keys);
    return files;
}

} // namespace brisk::workbench
