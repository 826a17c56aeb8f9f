#include "fuzz/Fuzzing.h"
#include "tools/titles/DatabaseTitles.h"
#include "tools/titles/LogCapture.h"
#include "tools/titles/PreviewFindings.h"
#include "tools/titles/PreviewOutput.h"
#include "tools/titles/ProfileFiles.h"

#include <optional>
#include <sstream>

// A database, a settings text and a registry export of any bytes, and a display: what the service would do.

namespace brisk::workbench {
namespace {

constexpr std::size_t kTitles = 3;
constexpr char kLocation[] = "game.ini";

void checkPlaces(const KeyMatches& matches, std::size_t size) {
    fuzzing::require(matches.places.size() <= matches.count, "no more places than matches");
    for (const ValuePlace& place : matches.places) {
        fuzzing::require(place.begin <= place.end && place.end <= size, "a place in the text");
    }
}

void checkPreview(const TitlePreview& preview, const Display& display) {
    fuzzing::require(!preview.passes.empty(), "a verdict");
    const Verdict verdict = preview.passes.front().verdict;
    if (verdict != Verdict::Adjusted) {
        fuzzing::require(preview.before == preview.after, "bytes that are left alone");
    }
    if (preview.settles && preview.passes.size() > 1) {
        fuzzing::require(preview.passes.back().verdict != Verdict::Adjusted, "nothing to do in the end");
    }
    for (const ConditionPreview& condition : preview.conditions) {
        checkPlaces(condition.matches, preview.text.size());
    }
    for (const FieldPreview& field : preview.fields) {
        checkPlaces(field.matches, preview.text.size());
    }
    for (const PreviewFinding& each : findFaults(preview)) {
        fuzzing::require(each.isInDatabase || each.finding.end <= preview.text.size(), "a finding's place in the text");
    }
    std::ostringstream out;
    printPreview(out, preview, display, true);
    printMatrix(out, {display}, {preview});
    out << toJson(preview, display).dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    fuzzing::require(!out.str().empty(), "a printed preview");
}

void preview(const DatabaseTitle& title, const std::string& text, const RegistryKeys& registry,
             const Display& display) {
    if (title.type == ConfigType::Registry) {
        RegistryPreviewAdapter adapter(title.title);
        adapter.registry = &registry;
        checkPreview(previewRegistry(adapter, display), display);
        return;
    }
    TextPreviewAdapter adapter(title.title);
    adapter.source = fileAt(kLocation, text);
    adapter.configLocations = {kLocation};
    checkPreview(previewText(adapter, {}, display), display);
}

std::optional<DatabaseTitles> readDatabase(const std::string& json) {
    const LogCapture log;
    try {
        return readTitles(SourceText("titles_db.json", json), {});
    } catch (const nlohmann::json::exception&) {
        return std::nullopt;
    }
}

} // namespace
} // namespace brisk::workbench

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace brisk::workbench;
    // The database, the settings text, the export, and the display's size.
    const std::vector<std::string> fields = brisk::fuzzing::splitFields(brisk::fuzzing::toText(data, size), 4);
    const auto titles = readDatabase(fields[0]);
    const RegistryKeys registry = readRegistryExport(fields[2]).value_or(RegistryKeys());
    const Display display = displayOf(parseSize(fields[3]).value_or(Size{1920, 1080}));
    std::size_t count = 0;
    for (auto title = titles ? titles->begin() : DatabaseTitles::const_iterator(); titles && title != titles->end();
         ++title) {
        if (++count > kTitles) {
            break;
        }
        preview(title->second, fields[1], registry, display);
    }
    return 0;
}
