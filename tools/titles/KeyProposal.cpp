#include "tools/titles/KeyProposal.h"

#include "tools/titles/DatabaseCheck.h"
#include "tools/titles/PatternText.h"
#include "tools/titles/SourceText.h"

#include "pattern/SettingPattern.h"
#include "titles/TextSettings.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <regex>

namespace brisk::workbench {

namespace {

using Json = nlohmann::ordered_json;

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

// The second group of the key's only match.
std::optional<std::string_view> onlyValue(const std::string& text, const std::string& key) {
    std::size_t count = 0;
    std::string_view value;
    SettingPattern(key).forEachMatch(text, [&](const SettingPattern::Match& match) {
        value = match[2];
        return ++count == 1;
    });
    return count == 1 ? std::optional(value) : std::nullopt;
}

std::string keyOf(const Surroundings& surroundings, const std::string& group) {
    return '(' + surroundings.before + ")(" + group + ")(" + surroundings.behind + ')';
}

// As the service does it.
bool survivesWriting(const std::string& text, const std::string& key, const std::string& value) {
    std::string written = text;
    setTextValue(written, key, value);
    if (getTextValue(written, key, "") != value) {
        return false;
    }
    std::size_t count = 0;
    SettingPattern(key).forEachMatch(written, [&](const SettingPattern::Match&) { return ++count == 1; });
    return count == 1;
}

bool isComplainedOf(Json field) {
    // An empty value, which is left to fill in, would be a number.
    if (field["value"] == Json("")) {
        field["value"] = "?";
    }
    const Json database = Json::array({{{"config_type", "txt"}, {"config_fields", {field}}}});
    const DatabaseCheck check =
        checkDatabase(SourceText("", database.dump(-1, ' ', false, Json::error_handler_t::replace)));
    return std::any_of(check.findings.begin(), check.findings.end(), [](const Finding& finding) {
        return finding.severity != Severity::Note &&
               (finding.rule.starts_with("pattern-") || finding.rule == "carriage-return" ||
                finding.rule == "value-not-found");
    });
}

// What the setting is to be, for "config_fields".
Json fieldOf(const std::string& key, const SettingPlace& place, const std::string& value, ValueKind kind,
             const std::optional<std::string>& wanted) {
    const auto dimension = dimensionOf(place.name);
    if (!wanted && dimension && kind == ValueKind::Number) {
        return {{"key", key}, {"meta", *dimension == Dimension::Width ? "width" : "height"}, {"value", 0}};
    }
    const std::string& chosen = wanted.value_or(value);
    const bool isNumber = kind == ValueKind::Number && kindOf(chosen) == ValueKind::Number;
    const auto number = isNumber ? std::stoll(chosen) : 0;
    if (isNumber && number >= std::numeric_limits<std::int32_t>::min() &&
        number <= std::numeric_limits<std::int32_t>::max()) {
        return {{"key", key}, {"value", number}};
    }
    return {{"key", key}, {"value", chosen}};
}

std::vector<std::string> notesFor(const KeyProposal& proposal, ValueKind kind) {
    std::vector<std::string> notes;
    if (kind == ValueKind::Fraction) {
        notes.emplace_back("a fraction is a text for the service: write the value as the game does, to the digit");
    }
    const Json& value = proposal.field["value"];
    if (value.is_string() && value.get_ref<const std::string&>().find('$') != std::string::npos) {
        notes.emplace_back("'$' may have a meaning in a value, and `check` refuses it then: see dollar-in-value");
    }
    if (value.is_string() && value.get_ref<const std::string&>().empty()) {
        notes.emplace_back("the setting is empty, and an empty text counts as missing; fill in \"value\"");
    }
    return notes;
}

} // namespace

std::optional<KeyProposal> proposeKey(const std::string& text, const SettingPlace& place,
                                      const std::optional<std::string>& wanted) {
    KeyProposal proposal;
    proposal.name = place.name;
    proposal.begin = place.begin;
    proposal.value = text.substr(place.begin, place.end - place.begin);
    ValueKind kind = kindOf(proposal.value);
    // What is written must be found again.
    if (wanted && kindOf(*wanted) != kind && !(kind == ValueKind::Fraction && kindOf(*wanted) == ValueKind::Number)) {
        kind = ValueKind::Text;
    }
    std::optional<KeyProposal> second;
    const auto isRight = [&](const Surroundings& each, bool isStrict) {
        try {
            // Other players have other values: no other setting may take part, whatever its value is.
            if (isStrict) {
                const auto value =
                    onlyValue(text, keyOf(each, valueGroup(place, proposal.value, ValueKind::Text, each.before)));
                if (!value || value->data() != text.data() + place.begin) {
                    return false;
                }
            }
            const auto value = onlyValue(text, proposal.key);
            const std::string& chosen = wanted ? *wanted : proposal.value;
            return value && value->data() == text.data() + place.begin && value->size() == place.end - place.begin &&
                   (chosen.empty() || chosen.find('$') != std::string::npos ||
                    survivesWriting(text, proposal.key, chosen));
        } catch (const std::regex_error&) {
            return false;
        }
    };
    for (std::size_t round = 0; round < 2 * place.surroundings.size(); ++round) {
        const bool isStrict = round < place.surroundings.size();
        const Surroundings& each = place.surroundings[round % place.surroundings.size()];
        proposal.key = keyOf(each, valueGroup(place, proposal.value, kind, each.before));
        if (!isRight(each, isStrict)) {
            continue;
        }
        proposal.field = fieldOf(proposal.key, place, proposal.value, kind, wanted);
        proposal.notes = notesFor(proposal, kind);
        if (!isStrict) {
            proposal.notes.emplace_back("another setting here differs from this one in the form of its value alone: a "
                                        "player who has another value there gets both of them changed");
        }
        if (!isComplainedOf(proposal.field)) {
            return proposal;
        }
        if (!second) {
            second = proposal;
            second->notes.emplace_back("`check` warns of this key; there is no simpler one that matches once");
        }
    }
    return second;
}

std::vector<SettingPlace> partsOf(std::string_view text, const SettingPlace& place) {
    std::vector<SettingPlace> parts;
    const std::string_view value = text.substr(place.begin, place.end - place.begin);
    constexpr std::size_t kLongest = 200; // of values that people write
    if (value.size() > kLongest) {
        return parts;
    }
    std::string front; // what stands before the number, other numbers of any value
    std::size_t numbers = 0;
    for (std::size_t at = 0; at < value.size();) {
        if (!isDigit(value[at])) {
            front += value[at] == ' ' ? " *" : escapePattern(value.substr(at, 1));
            ++at;
            continue;
        }
        const std::size_t end = std::min(value.find_first_not_of("0123456789.", at), value.size());
        SettingPlace part = place;
        part.begin = place.begin + at;
        part.end = place.begin + end;
        part.kind = SettingPlace::End::Blank;
        part.stops = "";
        const std::string behind = end == value.size() ? "" : escapePattern(value.substr(end, 1));
        for (Surroundings& each : part.surroundings) {
            each.before += front;
            each.behind = behind.empty() ? each.behind : behind == " " ? " " : behind;
        }
        parts.push_back(std::move(part));
        front += value.substr(at, end - at).find('.') == std::string_view::npos ? "\\d+" : "[\\d.]+";
        at = end;
        ++numbers;
    }
    // "1920x1080", "1920, 1080": the screen.
    const bool isScreen = numbers == 2 && dimensionOf(place.name + "Width") && parts[0].end - parts[0].begin >= 3 &&
                          parts[1].end - parts[1].begin >= 3;
    for (std::size_t index = 0; index < parts.size(); ++index) {
        parts[index].name += isScreen ? index == 0 ? " width" : " height" : '[' + std::to_string(index + 1) + ']';
    }
    return numbers > 1 || (numbers == 1 && parts[0].end - parts[0].begin < value.size()) ? parts
                                                                                         : std::vector<SettingPlace>();
}

} // namespace brisk::workbench
