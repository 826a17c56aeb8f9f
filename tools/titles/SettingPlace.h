#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace brisk::workbench {

// Expressions for what stands in front of a value and behind it, groups 1 and 3 of a key.
struct Surroundings {
    std::string before;
    std::string behind;
};

// A setting in a game's file. Offsets are bytes of the text as the service reads it.
struct SettingPlace {
    // What ends a value, and so what it cannot hold.
    enum class End {
        Line,    // the line's end
        Blank,   // a blank, or a character of `stops`: something follows on the line
        Quote,   // the quotation mark of `stops`
        Markup,  // '<'
        Element, // one of an array or table without quotation marks
    };

    std::string name;
    std::size_t begin = 0; // of the value, without its quotation marks
    std::size_t end = 0;
    End kind = End::Line;
    std::string stops;
    std::vector<Surroundings> surroundings; // the simplest first, then more exact ones
};

// Whether the surroundings of a setting are wanted: making them takes time.
using WantedSetting = std::function<bool(const std::string& name, std::size_t begin, std::size_t end)>;

// The settings of a text, in the order in which they stand there, whatever its format is: lines (INI with sections,
// "name = value", "name: value", console variables), XML, JSON, Lua. Comments hold none.
std::vector<SettingPlace> findSettings(std::string_view text, const WantedSetting& isWanted);

// The same for each format.
std::vector<SettingPlace> findLineSettings(std::string_view text, const WantedSetting& isWanted);
std::vector<SettingPlace> findMarkupSettings(std::string_view text, const WantedSetting& isWanted);
std::vector<SettingPlace> findTableSettings(std::string_view text, const WantedSetting& isWanted);

} // namespace brisk::workbench
