#pragma once

#include "tools/titles/Displays.h"
#include "tools/titles/Preview.h"
#include "tools/titles/SourceText.h"

#include <ostream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace brisk::workbench {

// The text of the preview's settings, in which its places lie.
SourceText settingsSource(const TitlePreview& preview);

// Everything about a title on one display: where its settings are, each condition, each field, the verdict, the log's
// lines, the diff, further passes. Colours only on request.
void printPreview(std::ostream& out, const TitlePreview& preview, const Display& display, bool hasColours);

// One title on several displays, a preview each: the verdicts, and the settings that are not the same on all of them.
void printMatrix(std::ostream& out, const std::vector<Display>& displays, const std::vector<TitlePreview>& previews);

// The same as printPreview, as a member of "titles" (docs/title-tool.md).
nlohmann::ordered_json toJson(const TitlePreview& preview, const Display& display);

} // namespace brisk::workbench
