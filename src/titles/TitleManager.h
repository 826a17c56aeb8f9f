#pragma once

#include "titles/ConfigLocation.h"
#include "titles/TitleConfigAdapter.h"
#include "titles/TitleSettings.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace brisk {

// The owner of the loaded title database: matches executables to titles, checks their settings and rewrites them.
// Titles are named by their executable's file name, compared byte for byte. Every operation answers false or empty for
// an unknown one. Adapters' exceptions (regular expressions, numbers, file system) leave the operations.
//
// Any thread may call: operations run one after the other, so that no configuration is saved while another thread is
// half way through changing it.
class TitleManager {
public:
    using Resolution = std::pair<std::uint32_t, std::uint32_t>; // width, height in pixels

    // Reads the user's folders for the placeholders of configuration locations.
    TitleManager();

    // Reads titles_db.json in the directory (no trailing separator), once. True when there is at least one title
    // afterwards.
    // Throws nlohmann::json::exception for malformed JSON and for a location that is no string; titles filed before
    // stay.
    bool loadTitlesDatabase(const std::string& directory);

    // Whether the executable is a known title whose configuration is found on this machine. An empty publisher matches
    // any title.
    bool isTitleSupported(const std::string& publisher, const std::string& binaryName, const std::string& appDirectory);
    // Whether a setting differs from the wanted one and no condition forbids patching.
    bool isTitleNeedToBeOptimized(const std::string& binaryName);
    // Writes every wanted setting. True when something was written and saved.
    bool optimizeTitle(const std::string& binaryName);

    // The numbers behind the resolution names of the database.
    void setNativeResolution(std::uint32_t width, std::uint32_t height);
    void setResolution(std::uint32_t width, std::uint32_t height);

    std::string getTitleName(const std::string& binaryName) const;
    std::vector<std::string> getBinaryNames() const;
    bool isLumaSupported(const std::string& binaryName) const;
    // The words of the title's first setting that has any; empty for a title without LUMA.
    std::string getSettingText(const std::string& binaryName) const;
    bool isTitleIdKnown(std::uint32_t id) const;

private:
    // Null for an unknown title.
    TitleConfigAdapter* findTitle(const std::string& binaryName) const;

    mutable std::mutex mutex;
    std::map<std::string, std::shared_ptr<TitleConfigAdapter>> titles; // by binary name
    ResolutionValues resolutionValues;
    // The last numbers given, as pairs. Nothing reads them: they are kept for the debugger.
    Resolution resolution;
    Resolution nativeResolution;
    UserFolders userFolders;
    std::set<std::uint32_t> knownIds;
};

} // namespace brisk
