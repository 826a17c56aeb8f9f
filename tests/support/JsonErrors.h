#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace brisk::testing {

// What the JSON library says of a malformed text, in the words of this version of it; empty for a text that is none.
inline std::string jsonErrorOf(const std::string& text) {
    try {
        [[maybe_unused]] const nlohmann::json parsed = nlohmann::json::parse(text);
    } catch (const nlohmann::json::exception& error) {
        return error.what();
    }
    return {};
}

} // namespace brisk::testing
