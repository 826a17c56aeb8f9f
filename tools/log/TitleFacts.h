#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brisk::logbook {

// What a title database says of a title, each with the line of the file.
struct TitleFacts {
    struct Field {
        std::string key;
        std::string value; // the wanted text; empty for a number
        std::string meta;
        std::int32_t number = 0;
        std::size_t line = 0;
    };
    struct Condition {
        std::string key;
        std::size_t line = 0;
    };

    std::optional<std::uint32_t> id;
    std::string binaryName;
    std::string titleName;
    std::string publisher;
    std::size_t line = 0;          // of the title
    std::size_t publisherLine = 0; // 0: it has none
    std::vector<Field> fields;     // in the order in which the service checks them
    std::vector<Condition> conditions;
};

struct DatabaseFacts {
    std::vector<TitleFacts> titles;
    std::vector<std::uint32_t> ids;   // that the service knows, in the file's order
    std::optional<std::string> fault; // what is wrong, with its place, where the service would not read it all

    // The title of an executable; null when there is none.
    const TitleFacts* find(const std::string& binaryName) const;
    const TitleFacts* find(std::uint32_t id) const;
};

// Reads a database's text as the service does.
DatabaseFacts readDatabaseFacts(const std::string& path, std::string text);

// The fields that a line "game setting '...' is not optimal 'WANTED'." can mean, with the resolutions ("1920x1080",
// or nothing) of the judgement.
std::vector<const TitleFacts::Field*> findFields(const TitleFacts& title, const std::string& wanted,
                                                 const std::string& nativeResolution,
                                                 const std::string& lowerResolution);

} // namespace brisk::logbook
