#pragma once

#include <functional>
#include <istream>

#include <nlohmann/json_fwd.hpp>

namespace brisk {

// Reads a JSON text that is an array, with one of its elements in memory at a time: calls onElement for each of them,
// in order, also before a syntax error further behind is met. Answers false, without a call, for any other well-formed
// text. Throws what nlohmann::json::parse throws for the same text. Without a function it only sees whether the text is
// well-formed, and makes nothing of it.
bool readJsonElements(std::istream& text, const std::function<void(const nlohmann::json&)>& onElement);

} // namespace brisk
