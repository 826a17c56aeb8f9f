#include "tools/titles/PreviewReport.h"

#include "tools/titles/FindingOutput.h"
#include "tools/titles/JsonReader.h"
#include "tools/titles/PreviewOutput.h"
#include "tools/titles/TitleParts.h"

#include <algorithm>
#include <map>

namespace brisk::workbench {

namespace {

const JsonValue& findKey(const JsonValue& title, const std::string& text) {
    const JsonValue* found = &title;
    if (!title.isObject()) {
        return title;
    }
    for (const auto& objects : {findConditions(title), findFields(title)}) {
        for (const JsonValue* object : objects) {
            if (const JsonValue* key = findText(*object, "key"); key && key->text() == text) {
                found = key;
            }
        }
    }
    return *found;
}

} // namespace

void PreviewReport::add(const TitlePreview& preview, std::size_t element) {
    const auto source = std::make_shared<const SourceText>(settingsSource(preview));
    for (const PreviewFinding& each : findFaults(preview)) {
        const Finding& finding = each.finding;
        if (known.emplace(preview.binaryName, finding.rule, each.isInDatabase, finding.begin, each.fieldKey).second) {
            findings.push_back({finding, each.isInDatabase, source, element, each.fieldKey});
        }
    }
}

void PreviewReport::locateKeys() {
    std::size_t element = 0;
    if (std::none_of(findings.begin(), findings.end(), [](const Located& each) { return each.isInDatabase; })) {
        return;
    }
    std::multimap<std::size_t, Located*> byElement;
    for (Located& each : findings) {
        if (each.isInDatabase) {
            byElement.emplace(each.element, &each);
        }
    }
    readJsonElements(database.text(), [&](const JsonValue& title) {
        const auto [begin, end] = byElement.equal_range(element++);
        for (auto each = begin; each != end; ++each) {
            const JsonValue& place = findKey(title, each->second->fieldKey);
            each->second->finding.begin = place.begin;
            each->second->finding.end = place.end;
        }
    });
}

void PreviewReport::print(std::ostream& out, bool hasColours) const {
    for (const Located& each : findings) {
        printFinding(out, sourceOf(each), each.finding, hasColours);
    }
    const auto counts = count();
    out << counts[0] << (counts[0] == 1 ? " error, " : " errors, ") << counts[1]
        << (counts[1] == 1 ? " warning\n" : " warnings\n");
}

nlohmann::ordered_json PreviewReport::toJson() const {
    nlohmann::ordered_json json = nlohmann::ordered_json::array();
    for (const Located& each : findings) {
        json.push_back(workbench::toJson(sourceOf(each), each.finding));
    }
    return json;
}

bool PreviewReport::complain() const {
    const auto counts = count();
    return counts[0] + counts[1] > 0;
}

std::array<std::size_t, 3> PreviewReport::count() const {
    std::array<std::size_t, 3> counts{};
    for (const Located& each : findings) {
        ++counts[static_cast<std::size_t>(each.finding.severity)];
    }
    return counts;
}

} // namespace brisk::workbench
