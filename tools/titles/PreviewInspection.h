#pragma once

#include "tools/titles/LogCapture.h"
#include "tools/titles/Preview.h"

namespace brisk::workbench {

// Looks at every condition and field of a title one by one, whatever the ones before come to. `reading` stays as it was
// loaded; `writing` takes the fields' changes, one after the other, as the service's text does.
void inspectAll(TitlePreview& preview, const PreviewAdapter& title, PreviewAdapter& reading, PreviewAdapter& writing,
                const ResolutionValues& values, LogCapture& log);

} // namespace brisk::workbench
