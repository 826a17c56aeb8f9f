#include "tools/titles/PreviewPasses.h"

#include "base/Log.h"
#include "titles/TitleSettings.h"
#include "tools/titles/LineDiff.h"

#include <algorithm>
#include <exception>
#include <map>
#include <utility>

namespace brisk::workbench {

namespace {

constexpr std::size_t kPasses = 6;          // no title of any use needs more to settle
constexpr std::size_t kGrowth = 16'777'216; // bytes by which a file may outgrow its double

// Whether a setting differs, whatever the conditions say.
bool differs(PreviewAdapter& adapter, const ResolutionValues& values, LogCapture& log) {
    const std::vector<PatchCondition> conditions = std::exchange(adapter.patchConditions, {});
    const bool result = needsToBeOptimized(adapter, values);
    adapter.patchConditions = conditions;
    log.take();
    return result;
}

// The keys of the fields that differ. Looked for only where a setting may have been created, which is where a title
// that settles may need a second adjustment.
std::vector<std::string> keysThatDiffer(PreviewAdapter& adapter, const ResolutionValues& values, LogCapture& log) {
    const std::map<std::string, ConfigField> fields = adapter.configFields;
    std::vector<std::string> keys;
    if (std::none_of(fields.begin(), fields.end(), [](const auto& field) { return !field.second.createKey.empty(); })) {
        return keys;
    }
    for (const auto& [key, field] : fields) {
        adapter.configFields = {{key, field}};
        attempt([&, &name = key] {
            if (differs(adapter, values, log)) {
                keys.push_back(name);
            }
        });
    }
    adapter.configFields = fields;
    return keys;
}

// The service's check and, if that asks for it, its rewrite.
PassPreview runPass(PreviewAdapter& adapter, const ResolutionValues& values, LogCapture& log) {
    PassPreview pass;
    try {
        if (needsToBeOptimized(adapter, values)) {
            pass.verdict = optimize(adapter, values) ? Verdict::Adjusted : Verdict::NotWritable;
            pass.log = log.take();
        } else {
            pass.log = log.take();
            pass.verdict = !adapter.loadConfig()                                               ? Verdict::NotReadable
                           : !adapter.patchConditions.empty() && differs(adapter, values, log) ? Verdict::Condition
                                                                                               : Verdict::Untouched;
        }
    } catch (const std::exception&) {
        const ServiceEnd end = describeException();
        pass.verdict = Verdict::Ends;
        logLine("Brisk : ", end.what); // as the service's last word
        pass.log = log.take();
    }
    return pass;
}

} // namespace

void runPasses(TitlePreview& preview, PreviewAdapter& adapter, const ResolutionValues& values, LogCapture& log) {
    const std::string foundLog = log.take();
    std::string before = adapter.snapshot();
    const std::size_t limit = 2 * before.size() + kGrowth;
    while (preview.passes.size() < kPasses && before.size() < limit) {
        if (preview.passes.size() == 1) {
            preview.differAgain = keysThatDiffer(adapter, values, log);
        }
        PassPreview pass = runPass(adapter, values, log);
        std::string after = adapter.snapshot();
        pass.changes = after != before;
        pass.size = after.size();
        std::string written = after;
        if (const auto* text = dynamic_cast<TextPreviewAdapter*>(&adapter); text && pass.verdict == Verdict::Adjusted) {
            written = text->fileToWrite()->bytes;
        }
        if (pass.verdict == Verdict::Adjusted) {
            pass.diff = diffLines(before, written);
        }
        if (preview.passes.empty()) {
            pass.log = foundLog + pass.log;
            preview.after = std::move(written);
        }
        preview.settles = pass.verdict != Verdict::Adjusted;
        preview.passes.push_back(std::move(pass));
        if (preview.settles || !preview.passes.back().changes) {
            return;
        }
        before = std::move(after);
    }
}

void findUnsettled(TitlePreview& preview, PreviewAdapter& adapter, const ResolutionValues& values, LogCapture& log) {
    adapter.patchConditions.clear();
    for (FieldPreview& field : preview.fields) {
        adapter.configFields = {{field.key, field.field}};
        attempt([&] { field.differsAtLast = needsToBeOptimized(adapter, values); });
    }
    log.take();
}

} // namespace brisk::workbench
