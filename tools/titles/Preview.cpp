#include "tools/titles/Preview.h"

#include "base/Log.h"
#include "tools/titles/LogCapture.h"
#include "tools/titles/PreviewInspection.h"
#include "tools/titles/PreviewPasses.h"
#include "tools/titles/TextMode.h"

#include <utility>

namespace brisk::workbench {

namespace {

// Fills in what does not depend on where the settings are kept; false when there is nothing more to look at.
bool begin(TitlePreview& preview, PreviewAdapter& adapter, const std::string& appDirectory, const Display& display,
           LogCapture& log) {
    preview.binaryName = adapter.binaryName;
    preview.titleName = adapter.titleName;
    PassPreview pass;
    if (!display.lower && adapter.lumaVersion == 0) {
        logLine("Brisk : couldn't get optimal display resolution. Skip.");
        pass.verdict = Verdict::noResolution;
    } else {
        logLine("Brisk : publisher: '', binary name: '", adapter.binaryName, "'.");
        const std::optional<ServiceEnd> end = attempt([&] { preview.isFound = adapter.findConfig(appDirectory); });
        if (preview.isFound) {
            return true;
        }
        pass.verdict = end ? Verdict::ends : Verdict::notFound;
        if (end) {
            logLine("Brisk : ", end->what);
        }
    }
    pass.log = log.take();
    preview.passes.push_back(std::move(pass));
    return false;
}

} // namespace

const char* nameOf(Verdict verdict) {
    switch (verdict) {
    case Verdict::adjusted:
        return "adjusted";
    case Verdict::untouched:
        return "untouched";
    case Verdict::condition:
        return "condition";
    case Verdict::notFound:
        return "not-found";
    case Verdict::notReadable:
        return "not-readable";
    case Verdict::notWritable:
        return "not-writable";
    case Verdict::noResolution:
        return "no-resolution";
    case Verdict::ends:
        break;
    }
    return "ends";
}

TitlePreview previewText(TextPreviewAdapter& adapter, const std::string& appDirectory, const Display& display) {
    TitlePreview preview;
    LogCapture log;
    if (!begin(preview, adapter, appDirectory, display, log)) {
        return preview;
    }
    const ResolutionValues values = resolutionsOf(display);
    for (const PreviewFile& file : adapter.files) {
        preview.files.push_back({file.location, file.isReadable, file.isWritable, {}, file.real});
    }
    if (const PreviewFile* file = adapter.fileToRead()) {
        preview.readLocation = file->location;
        preview.before = preview.after = file->bytes;
        preview.text = readAsText(file->bytes);
        preview.traits = findTraits(file->bytes);
    }
    if (const PreviewFile* file = adapter.fileToWrite()) {
        preview.writtenLocation = file->location;
    }
    runPasses(preview, adapter, values, log);

    TextPreviewAdapter reading(static_cast<const TitleConfigAdapter&>(adapter));
    reading.content = preview.text;
    TextPreviewAdapter writing(reading);
    inspectAll(preview, adapter, reading, writing, values, log);
    preview.textAfterFields = writing.content;
    if (!preview.settles) {
        findUnsettled(preview, adapter, values, log);
    }
    return preview;
}

TitlePreview previewRegistry(RegistryPreviewAdapter& adapter, const Display& display) {
    TitlePreview preview;
    preview.isRegistry = true;
    LogCapture log;
    if (!begin(preview, adapter, {}, display, log)) {
        return preview;
    }
    preview.readLocation = preview.writtenLocation = adapter.configLocations.front();
    preview.before = preview.after = preview.text = adapter.snapshot();
    RegistryPreviewAdapter reading(adapter);
    RegistryPreviewAdapter writing(adapter);
    const ResolutionValues values = resolutionsOf(display);
    runPasses(preview, adapter, values, log);
    inspectAll(preview, adapter, reading, writing, values, log);
    preview.textAfterFields = writing.snapshot();
    if (!preview.settles) {
        findUnsettled(preview, adapter, values, log);
    }
    return preview;
}

} // namespace brisk::workbench
