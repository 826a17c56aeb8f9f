#pragma once

#include "tools/titles/LogCapture.h"
#include "tools/titles/Preview.h"

namespace brisk::workbench {

// The service's check and, if that asks for it, its rewrite: once and again until nothing changes, or it is plain that
// it never does. What was logged before goes to the first pass.
void runPasses(TitlePreview& preview, PreviewAdapter& adapter, const ResolutionValues& values, LogCapture& log);

// Which fields keep the title from settling, after the passes. Leaves only the last field in the adapter.
void findUnsettled(TitlePreview& preview, PreviewAdapter& adapter, const ResolutionValues& values, LogCapture& log);

} // namespace brisk::workbench
