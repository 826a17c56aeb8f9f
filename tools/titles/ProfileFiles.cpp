#include "tools/titles/ProfileFiles.h"

#include "tools/titles/AsciiText.h"

#include "base/TextEncoding.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

namespace brisk::workbench {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kSeparators = "\\/";

std::string nameOf(const fs::path& path) {
    const std::u8string name = path.filename().u8string();
    return {name.begin(), name.end()};
}

std::vector<fs::path> entriesOf(const fs::path& folder) {
    std::vector<fs::path> entries;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        entries.push_back(entry->path());
    }
    std::sort(entries.begin(), entries.end(),
              [](const fs::path& one, const fs::path& other) { return lowered(nameOf(one)) < lowered(nameOf(other)); });
    return entries;
}

std::optional<fs::path> findEntry(const fs::path& folder, const std::string& name) {
    std::error_code error;
    if (fs::path exact = folder / toPath(name); fs::exists(exact, error)) {
        return exact;
    }
    for (const fs::path& entry : entriesOf(folder)) {
        if (lowered(nameOf(entry)) == lowered(name)) {
            return entry;
        }
    }
    return std::nullopt;
}

std::vector<std::string> splitNames(std::string_view path) {
    std::vector<std::string> names;
    while (!path.empty()) {
        const std::size_t end = path.find_first_of(kSeparators);
        const std::string_view name = path.substr(0, end);
        if (!name.empty() && name != ".") {
            names.emplace_back(name);
        }
        path = end == std::string_view::npos ? std::string_view() : path.substr(end + 1);
    }
    return names;
}

// Where a location's folder and the location itself really lie.
struct RealPlace {
    std::optional<fs::path> folder;
    std::optional<fs::path> entry;
};

class Folders {
public:
    explicit Folders(std::vector<std::string> folders) : roots(std::move(folders)) {}

    RealPlace find(const std::string& location) const {
        for (const std::string& root : roots) {
            const std::string_view rest = std::string_view(location).substr(std::min(root.size(), location.size()));
            if (!root.empty() && location.starts_with(root) &&
                (rest.empty() || kSeparators.find(rest.front()) != std::string_view::npos)) {
                return findBelow(toPath(root), splitNames(rest));
            }
        }
        return {};
    }

private:
    static RealPlace findBelow(const fs::path& root, const std::vector<std::string>& names) {
        RealPlace place{std::nullopt, root};
        for (const std::string& name : names) {
            std::error_code error;
            place.folder = place.entry && fs::is_directory(*place.entry, error) ? place.entry : std::nullopt;
            place.entry = !place.folder  ? std::nullopt
                          : name == ".." ? std::optional(place.folder->parent_path())
                                         : findEntry(*place.folder, name);
        }
        return place;
    }

    std::vector<std::string> roots;
};

bool resolveWildcardIn(const Folders& folders, std::string& location) {
    const std::size_t star = location.find('*');
    if (star == std::string::npos) {
        return true;
    }
    std::error_code error;
    const RealPlace place = folders.find(location.substr(0, star));
    if (!place.entry || !fs::is_directory(*place.entry, error) ||
        (star > 0 && kSeparators.find(location[star - 1]) == std::string_view::npos)) {
        return false;
    }
    for (const fs::path& entry : entriesOf(*place.entry)) {
        if (fs::is_directory(entry, error)) {
            location.replace(star, 1, nameOf(entry));
            break;
        }
    }
    return true;
}

PreviewFile openIn(const Folders& folders, const std::string& location) {
    PreviewFile file{location, false, false, {}, {}};
    const RealPlace place = folders.find(location);
    std::error_code error;
    if (!place.entry) {
        file.isWritable = place.folder.has_value() && location.find_first_of("*?") == std::string::npos;
    } else if (fs::is_regular_file(*place.entry, error)) {
        if (std::ifstream stream(*place.entry, std::ios::binary); stream) {
            file.bytes.assign(std::istreambuf_iterator<char>(stream), {});
            file.isReadable = true;
            file.real = *place.entry;
        }
        file.isWritable = (fs::status(*place.entry, error).permissions() & fs::perms::owner_write) != fs::perms::none;
    }
    return file;
}

} // namespace

UserFolders userFoldersIn(const std::string& profile) {
    return {{"%USERPROFILE%", profile},
            {"%LOCALAPPDATA%", profile + "\\AppData\\Local"},
            {"%APPDATA%", profile + "\\AppData\\Roaming"}};
}

FileSource filesIn(const std::string& profile, const std::string& gameFolder) {
    const Folders folders({profile, gameFolder});
    return {{[folders](std::string& location) { return resolveWildcardIn(folders, location); },
             [folders](const std::string& location) { return folders.find(location).entry.has_value(); }},
            [folders](const std::string& location) { return openIn(folders, location); }};
}

FileSource fileAt(const std::string& location, const std::string& bytes) {
    return {{[](std::string&) { return true; }, [location](const std::string& other) { return other == location; }},
            [location, bytes](const std::string& other) {
                return other == location ? PreviewFile{location, true, true, bytes, toPath(location)}
                                         : PreviewFile{other, false, false, {}, {}};
            }};
}

} // namespace brisk::workbench
