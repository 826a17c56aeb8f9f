#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include <nlohmann/json_fwd.hpp>

// What the rows measure with.

namespace brisk::bench {

// The figures mean nothing where an answer is wrong: throws std::logic_error with what is.
void require(bool isRight, const std::string& what);

// A settings text of at least so many bytes and half as many hundreds of lines, with each of the sections, attributes
// and members that the keys of the table ask for near its end.
std::string settingsText(std::size_t bytes);

// Settings of these numbers, and the fields that want a value for each.
std::string manySettings(std::size_t count, int value);
nlohmann::json manyFields(std::size_t count, int value);

// titles_db.json in the folder: one title whose settings are in the file, as the service names it.
void writeDatabase(const std::filesystem::path& folder, const std::string& file, const nlohmann::json& fields);

// titles_db.json in the folder: so many titles of some 730 bytes. Answers its size.
std::size_t writeTitles(const std::filesystem::path& folder, std::size_t count);

// What a program without a thought for anything would do: the file in one go, in text mode.
std::string readText(const std::filesystem::path& file);
void writeText(const std::filesystem::path& file, const std::string& text);

} // namespace brisk::bench
