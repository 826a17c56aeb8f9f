#include "tools/titles/PreviewInspection.h"

#include "titles/PatchConditions.h"
#include "titles/TitleSettings.h"
#include "tools/titles/RegistryPreviewAdapter.h"
#include "tools/titles/TextPreviewAdapter.h"

#include <algorithm>
#include <string_view>

namespace brisk::workbench {

namespace {

class Inspection {
public:
    Inspection(PreviewAdapter& readFrom, PreviewAdapter& writtenTo, const ResolutionValues& values, LogCapture& capture)
        : reading(readFrom), writing(writtenTo), resolutionValues(values), log(capture) {}

    ConditionPreview inspect(const PatchCondition& condition) {
        ConditionPreview preview{condition, {}, {}, false, {}, {}};
        reading.configFields.clear();
        reading.patchConditions = {condition};
        preview.end = attempt([&] {
            preview.matches = reading.findMatches(condition.key);
            preview.current = readValue(condition.key, !condition.presenceNumbers.empty());
            preview.holds = meetsConditions(reading);
        });
        preview.log = log.take();
        return preview;
    }

    FieldPreview inspect(const std::string& key, const ConfigField& field) {
        FieldPreview preview;
        preview.key = key;
        preview.field = field;
        for (PreviewAdapter* adapter : {&reading, &writing}) {
            adapter->patchConditions.clear();
            adapter->configFields = {{key, field}};
        }
        preview.end = attempt([&] {
            preview.matches = reading.findMatches(key);
            preview.current = readValue(key, field.value.empty());
            preview.isMissing = preview.matches.count == 0;
            preview.differs = needsToBeOptimized(reading, resolutionValues);
        });
        // A setting that cannot be read may still be written, but not where it may have to be created.
        const std::string before = writing.snapshot();
        writing.writes.clear();
        const std::optional<ServiceEnd> writeEnd = attempt([&] { optimize(writing, resolutionValues); });
        log.take();
        if (writeEnd || writing.writes.empty()) {
            preview.outcome = FieldOutcome::Ends;
            preview.end = writeEnd ? writeEnd : preview.end;
            return preview;
        }
        describeWrite(preview, writing.writes.back(), before);
        return preview;
    }

private:
    // In words: what a registry has for a number is bytes.
    std::string readValue(const std::string& key, bool isNumeric) {
        const bool isBytes = isNumeric && dynamic_cast<RegistryPreviewAdapter*>(&reading);
        return isBytes ? std::to_string(reading.getIntValue(key, 0)) : reading.getValue(key, {});
    }

    void describeWrite(FieldPreview& preview, const SettingWrite& write, const std::string& before) {
        const bool hasChanged = writing.snapshot() != before;
        if (preview.isMissing && dynamic_cast<RegistryPreviewAdapter*>(&writing)) {
            preview.wanted = preview.createdText = write.text;
            preview.outcome = FieldOutcome::Created;
            return;
        }
        const bool isCreated = !preview.field.createKey.empty() && write.key == preview.field.createKey &&
                               (write.key != preview.key || preview.isMissing);
        if (!isCreated) {
            preview.wanted = write.text;
            // Settings that are written before may hide it from its key.
            const bool isHidden = preview.matches.count == 0 || (preview.differs && !preview.end);
            preview.outcome = hasChanged ? FieldOutcome::Changes
                              : isHidden ? FieldOutcome::Missing
                                         : FieldOutcome::IsRight;
            return;
        }
        preview.wanted = preview.field.value.empty() ? std::to_string(preview.field.intValue) : preview.field.value;
        preview.createdText = write.text;
        preview.created = findCreated(write.key, before);
        preview.outcome = hasChanged ? FieldOutcome::Created : FieldOutcome::Missing;
        if (!preview.created.places.empty()) {
            const std::size_t begin = preview.created.places.front().begin;
            const auto lineEnds = [](std::string_view text) {
                return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
            };
            // Text that begins with a line end stands on the next line.
            preview.createdLine =
                1 + lineEnds(std::string_view(before).substr(0, begin)) + (write.text.starts_with('\n') ? 1U : 0U);
        }
    }

    KeyMatches findCreated(const std::string& key, const std::string& before) {
        if (auto* text = dynamic_cast<TextPreviewAdapter*>(&writing)) {
            TextPreviewAdapter earlier(*text);
            earlier.content = before;
            return earlier.findMatches(key);
        }
        return {1, {}};
    }

    PreviewAdapter& reading;
    PreviewAdapter& writing;
    const ResolutionValues& resolutionValues;
    LogCapture& log;
};

} // namespace

void inspectAll(TitlePreview& preview, const PreviewAdapter& title, PreviewAdapter& reading, PreviewAdapter& writing,
                const ResolutionValues& values, LogCapture& log) {
    Inspection inspection(reading, writing, values, log);
    for (const PatchCondition& condition : title.patchConditions) {
        preview.conditions.push_back(inspection.inspect(condition));
    }
    for (const auto& [key, field] : title.configFields) {
        preview.fields.push_back(inspection.inspect(key, field));
        if (preview.fields.back().end && preview.passes.front().verdict == Verdict::Ends) {
            preview.fields.back().outcome = FieldOutcome::Ends;
        }
    }
}

} // namespace brisk::workbench
