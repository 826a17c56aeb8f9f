#include "tools/titles/PreviewOutput.h"

#include <algorithm>
#include <string_view>

namespace brisk::workbench {

namespace {

using Json = nlohmann::ordered_json;

Json placesOf(const KeyMatches& matches, const SourceText& source, std::string_view text) {
    Json places = Json::array();
    for (const ValuePlace& value : matches.places) {
        const Place place = source.placeOf(value.begin);
        places.push_back({{"line", place.line},
                          {"column", place.column},
                          {"value", std::string(text.substr(value.begin, value.end - value.begin))}});
    }
    return places;
}

const char* nameOf(FieldOutcome outcome) {
    switch (outcome) {
    case FieldOutcome::Changes:
        return "changes";
    case FieldOutcome::IsRight:
        return "right";
    case FieldOutcome::Created:
        return "created";
    case FieldOutcome::Missing:
        return "missing";
    case FieldOutcome::Ends:
        break;
    }
    return "ends";
}

Json toJson(const std::optional<ServiceEnd>& end) {
    return end ? Json(end->what) : Json();
}

Json linesOf(std::string_view text) {
    Json lines = Json::array();
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        lines.push_back(std::string(line));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return lines;
}

Json toJson(const Size& size) {
    return {{"width", size.width}, {"height", size.height}};
}

} // namespace

nlohmann::ordered_json toJson(const TitlePreview& preview, const Display& display) {
    const SourceText source = settingsSource(preview);
    Json json{{"binary_name", preview.binaryName},
              {"title_name", preview.titleName},
              {"config_type", preview.isRegistry ? "reg" : "txt"},
              {"display", toJson(display.native)},
              {"lower", display.lower ? toJson(*display.lower) : Json()},
              {"verdict", nameOf(preview.passes.front().verdict)},
              {"settles", preview.settles},
              {"reads", preview.readLocation},
              {"writes", preview.writtenLocation},
              {"text", preview.traits ? Json(describe(*preview.traits)) : Json()}};
    Json& locations = json["locations"] = Json::array();
    for (const PreviewFile& file : preview.files) {
        locations.push_back({{"path", file.location}, {"readable", file.isReadable}, {"writable", file.isWritable}});
    }
    Json& conditions = json["conditions"] = Json::array();
    for (const ConditionPreview& condition : preview.conditions) {
        conditions.push_back({{"key", condition.condition.key},
                              {"matches", condition.matches.count},
                              {"places", placesOf(condition.matches, source, preview.text)},
                              {"current", condition.current},
                              {"holds", condition.holds},
                              {"error", toJson(condition.end)}});
    }
    Json& fields = json["fields"] = Json::array();
    for (const FieldPreview& field : preview.fields) {
        fields.push_back({{"key", field.key},
                          {"matches", field.matches.count},
                          {"places", placesOf(field.matches, source, preview.text)},
                          {"current", field.current},
                          {"wanted", field.wanted},
                          {"differs", field.differs},
                          {"outcome", nameOf(field.outcome)},
                          {"created_text", field.createdText},
                          {"created_line", field.createdLine},
                          {"created_places", field.outcome == FieldOutcome::Created ? field.created.count : 0},
                          {"error", toJson(field.end)}});
    }
    Json& passes = json["passes"] = Json::array();
    for (const PassPreview& pass : preview.passes) {
        passes.push_back({{"verdict", nameOf(pass.verdict)},
                          {"log", linesOf(pass.log)},
                          {"diff", pass.diff},
                          {"changes", pass.changes}});
    }
    return json;
}

} // namespace brisk::workbench
