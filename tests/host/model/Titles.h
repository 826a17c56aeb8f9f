// Made-up titles: what the model knows of them, and the title database that tells the service the same.
#pragma once

#include "host/model/Random.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace brisk::model {

// A setting of a text configuration in plain words: the name with its separator, then a value of certain characters,
// then perhaps a terminator. regex() says the same to the service.
struct TextKey {
    enum class Kind {
        Digits,  // one or more digits
        Letters, // one or more lower-case letters
        Any,     // perhaps a minus, then any number of digits and lower-case letters
        Empty,   // no value: a place to insert at
    };
    std::string name;
    Kind kind = Kind::Digits;
    std::string terminator;

    std::string regex() const;
    // The first match at or after the offset: where the value lies.
    struct Match {
        std::size_t begin;
        std::size_t value;
        std::size_t valueLength;
        std::size_t end;
    };
    std::optional<Match> find(const std::string& text, std::size_t offset) const;
};

struct Field {
    TextKey key; // of a registry title only the name counts
    std::string meta;
    std::string text;
    std::optional<TextKey> createKey;
    std::string createValue;
    std::string value; // empty: numeric
    std::int32_t number = 0;
};

struct Condition {
    TextKey key;
    std::vector<std::string> texts;
    std::vector<std::int32_t> numbers;
    bool absence = false;
};

struct Title {
    bool isText = true;
    std::optional<std::uint32_t> id;
    std::uint32_t luma = 0;
    std::string name;
    std::string publisher;
    std::string binary;
    std::vector<std::string> locations;
    std::map<std::string, Field> fields; // by the key as the database has it
    std::vector<Condition> conditions;

    std::string keyOf(const TextKey& key) const { return isText ? key.regex() : key.name; }
};

// Titles number 0 .. count - 1 with the executables and configuration places that go with the numbers.
std::vector<Title> makeTitles(Random& random, unsigned count);
std::string writeDatabase(const std::vector<Title>& titles);

std::string executableOf(unsigned number);         // file name
std::string gameFolderOf(unsigned number);         // where it is installed
std::vector<std::string> filesOf(unsigned number); // where a text configuration may lie
std::string saveFolderOf(unsigned number);         // whose subfolders a wildcard stands for
std::string registryPathOf(unsigned number);       // below the current user's root or the machine's

// A configuration that a player may have.
std::string makeConfiguration(Random& random);
extern const std::vector<std::string> kValueNames;

} // namespace brisk::model
