#include "tools/titles/Preview.h"

#include "base/Log.h"
#include "tools/titles/LogCapture.h"
#include "tools/titles/PreviewInspection.h"
#include "tools/titles/PreviewPasses.h"
#include "tools/titles/TextMode.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace brisk::workbench {

namespace {

// The path under which this machine opens the file: a location has the backslashes of Windows.
std::string pathOf(const PreviewFile& file) {
    if (std::filesystem::path::preferred_separator == '\\') {
        return file.location;
    }
    if (!file.real.empty()) {
        const std::u8string real = file.real.u8string();
        return {real.begin(), real.end()};
    }
    std::string path = file.location;
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

// Fills in what does not depend on where the settings are kept; false when there is nothing more to look at.
bool begin(TitlePreview& preview, PreviewAdapter& adapter, const std::string& appDirectory, const Display& display,
           LogCapture& log) {
    preview.binaryName = adapter.binaryName;
    preview.titleName = adapter.titleName;
    PassPreview pass;
    if (!display.lower && adapter.lumaVersion == 0) {
        logLine("Brisk : couldn't get optimal display resolution. Skip.");
        pass.verdict = Verdict::NoResolution;
    } else {
        logLine("Brisk : publisher: '', binary name: '", adapter.binaryName, "'.");
        const std::optional<ServiceEnd> end = attempt([&] { preview.isFound = adapter.findConfig(appDirectory); });
        if (preview.isFound) {
            return true;
        }
        pass.verdict = end ? Verdict::Ends : Verdict::NotFound;
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
    case Verdict::Adjusted:
        return "adjusted";
    case Verdict::Untouched:
        return "untouched";
    case Verdict::Condition:
        return "condition";
    case Verdict::NotFound:
        return "not-found";
    case Verdict::NotReadable:
        return "not-readable";
    case Verdict::NotWritable:
        return "not-writable";
    case Verdict::NoResolution:
        return "no-resolution";
    case Verdict::Ends:
        break;
    }
    return "ends";
}

TitlePreview previewText(TextPreviewAdapter& adapter, const std::string& appDirectory, const Display& display) {
    TitlePreview preview;
    LogCapture log;
    const bool isFound = begin(preview, adapter, appDirectory, display, log);
    if (!isFound && preview.passes.front().verdict == Verdict::NotFound && adapter.source.open) {
        attempt([&] { adapter.openFiles(); });
        log.take();
    }
    for (const PreviewFile& file : adapter.files) {
        preview.files.push_back({pathOf(file), file.isReadable, file.isWritable, {}, file.real});
    }
    if (!isFound) {
        return preview;
    }
    const ResolutionValues values = resolutionsOf(display);
    if (const PreviewFile* file = adapter.fileToRead()) {
        preview.readLocation = pathOf(*file);
        preview.before = preview.after = file->bytes;
        preview.text = readAsText(file->bytes);
        preview.traits = findTraits(file->bytes);
    }
    if (const PreviewFile* file = adapter.fileToWrite()) {
        preview.writtenLocation = pathOf(*file);
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
    const bool isFound = begin(preview, adapter, {}, display, log);
    if (!adapter.configLocations.empty()) {
        preview.files.push_back({adapter.configLocations.front(), isFound, isFound, {}, {}});
    }
    if (!isFound) {
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
