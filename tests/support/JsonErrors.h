// What the JSON library says of a fault, from the library itself: its words change with its version.
#pragma once

#include <stdexcept>
#include <string>

#include <nlohmann/json.hpp>

namespace brisk::testing {

// Of a text that is no JSON.
inline std::string jsonErrorOf(const std::string& text) {
    try {
        throw std::logic_error("this is JSON: " + nlohmann::json::parse(text).dump());
    } catch (const nlohmann::json::exception& error) {
        return error.what();
    }
}

// Of a value that is asked for its text and is none.
inline std::string noTextErrorOf(const std::string& value) {
    try {
        throw std::logic_error("this is a text: " + nlohmann::json::parse(value).get<std::string>());
    } catch (const nlohmann::json::exception& error) {
        return error.what();
    }
}

} // namespace brisk::testing
