#pragma once

#include "tools/titles/Finding.h"
#include "tools/titles/SourceText.h"

#include <ostream>
#include <string>

#include <nlohmann/json.hpp>

namespace brisk::workbench {

// Compiler style: "FILE:LINE:COL: error[RULE]: text", the source line and a caret below the place. Colours only on
// request.
void printFinding(std::ostream& out, const SourceText& source, const Finding& finding, bool hasColours);

// One workflow command a line, which the hosting service shows beside the changed line.
void printGithubFinding(std::ostream& out, const SourceText& source, const Finding& finding);

// {"rule", "severity", "file", "line", "column", "message", "title"}; the title is null for the file as a whole.
nlohmann::ordered_json toJson(const SourceText& source, const Finding& finding);

// A result of the Static Analysis Results Interchange Format, 2.1.0.
nlohmann::ordered_json toSarifResult(const SourceText& source, const Finding& finding);

} // namespace brisk::workbench
