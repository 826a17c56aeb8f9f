#pragma once

#include "tools/titles/GoldenTest.h"

#include <ostream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace brisk::workbench {

// A line a case and, where it is not as expected, what differs. Colours only on request.
void printResult(std::ostream& out, const GoldenResult& result, bool hasColours);

// {"title", "case", "expectation", "verdict", "passed", "accepted", "failures", "diff"}.
nlohmann::ordered_json toJson(const GoldenResult& result);

// The XML in which build servers read test results.
std::string toJunit(const std::vector<GoldenResult>& results);

} // namespace brisk::workbench
