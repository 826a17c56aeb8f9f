#include "tools/titles/KeyCommand.h"

#include "tools/titles/DatabaseCheck.h"
#include "tools/titles/FindingOutput.h"
#include "tools/titles/InputFile.h"
#include "tools/titles/JsonLayout.h"
#include "tools/titles/KeyMatches.h"
#include "tools/titles/KeyProposal.h"
#include "tools/titles/TextMode.h"

#include <algorithm>
#include <iostream>
#include <regex>
#include <stdexcept>

namespace brisk::workbench {

namespace {

using Json = nlohmann::ordered_json;

std::string spelled(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// FILE:LINE; the line is 0 where there is none.
struct FileLine {
    std::string file;
    std::size_t line = 0;
};

FileLine splitLine(const std::string& argument) {
    const std::size_t colon = argument.rfind(':');
    constexpr std::size_t kDigits = 9;
    if (colon == std::string::npos || colon + 1 == argument.size() || argument.size() - colon > kDigits ||
        argument.find_first_not_of("0123456789", colon + 1) != std::string::npos) {
        return {argument, 0};
    }
    return {argument.substr(0, colon), std::stoul(argument.substr(colon + 1))};
}

SourceText readSettings(const std::string& path) {
    return {path, readAsText(readSettingsFile(path))};
}

// The settings on the line that are meant, and what they are to be.
struct Choice {
    std::vector<SettingPlace> places;
    std::optional<std::string> wanted;
};

Choice choose(std::string_view text, const std::vector<SettingPlace>& places, const KeyOptions& options) {
    Choice choice;
    const auto valueOf = [text](const SettingPlace& place) {
        return text.substr(place.begin, place.end - place.begin);
    };
    std::vector<SettingPlace> all = places;
    for (const SettingPlace& place : places) {
        const std::vector<SettingPlace> parts = partsOf(text, place);
        all.insert(all.end(), parts.begin(), parts.end());
        const bool isScreen = std::any_of(parts.begin(), parts.end(),
                                          [](const SettingPlace& part) { return part.name.ends_with(" width"); });
        if (isScreen) {
            choice.places.insert(choice.places.end(), parts.begin(), parts.end());
        } else {
            choice.places.push_back(place);
        }
    }
    if (!options.hasValue) {
        return choice;
    }
    std::erase_if(all, [&](const SettingPlace& place) { return valueOf(place) != options.value; });
    if (all.empty()) {
        choice.wanted = options.value;
        choice.places = places;
    } else {
        choice.places = std::move(all);
    }
    return choice;
}

int printProposals(const SourceText& source, std::size_t line, const KeyOptions& options) {
    const std::string text(source.text());
    const std::size_t begin = static_cast<std::size_t>(source.line(line).data() - source.text().data());
    const std::size_t end = begin + source.line(line).size();
    // A file may be a single line. Each key costs searches through all of it.
    constexpr std::size_t kMost = 50;
    constexpr std::size_t kLargeText = 1'000'000;
    constexpr std::size_t kMostOfLargeText = 2;
    const std::size_t most = text.size() > kLargeText ? kMostOfLargeText : kMost;
    std::size_t count = 0;
    const auto isMeant = [&](const std::string& /*name*/, std::size_t valueBegin, std::size_t valueEnd) {
        return valueBegin >= begin && valueBegin <= end &&
               (!options.hasValue || count < most ||
                std::string_view(text).substr(valueBegin, valueEnd - valueBegin) == options.value) &&
               ++count <= (options.hasValue ? 2 * most : most);
    };
    const Choice choice = choose(text, findSettings(text, isMeant), options);
    Json keys = Json::array();
    Json complaints = Json::array();
    const bool isText = options.format == "text";
    const auto complain = [&](std::size_t offset, const std::string& complaint) {
        const Place place = source.placeOf(offset);
        complaints.push_back({{"line", place.line}, {"column", place.column}, {"message", complaint}});
        if (isText) {
            std::cout << source.path() << ':' << place.line << ':' << place.column << ": " << complaint << '\n';
        }
    };
    for (const SettingPlace& place : choice.places) {
        const auto proposal = proposeKey(text, place, choice.wanted);
        if (!proposal) {
            complain(place.begin, "no key was found that matches " + place.name +
                                      " alone: the same stands in the file more than once");
            continue;
        }
        const Place at = source.placeOf(proposal->begin);
        keys.push_back({{"name", proposal->name},
                        {"line", at.line},
                        {"column", at.column},
                        {"value", proposal->value},
                        {"key", proposal->key},
                        {"field", proposal->field},
                        {"notes", proposal->notes}});
        if (isText) {
            std::cout << source.path() << ':' << at.line << ':' << at.column << ": " << proposal->name << " is "
                      << spelled(Json(proposal->value)) << "\n  key:   " << proposal->key
                      << "\n  JSON:  " << spelled(Json(proposal->key)) << "\n  field: " << spelled(proposal->field)
                      << '\n';
            for (const std::string& note : proposal->notes) {
                std::cout << "  note:  " << note << '\n';
            }
        }
    }
    if (count > most) {
        complain(begin, "there are more settings on this line than are shown; --value chooses one");
    }
    if (choice.places.empty()) {
        complain(begin, "no setting stands on this line, or it is a comment");
    }
    if (!isText) {
        std::cout << layOutTitle(Json{{"file", source.path()}, {"keys", keys}, {"complaints", complaints}}) << '\n';
    }
    return complaints.empty() ? 0 : 1;
}

// What `check` says of a key, at the places of its JSON spelling.
Findings checkSpelling(const SourceText& spelling) {
    const std::string front = R"([{"config_type":"txt","config_fields":[{"value":"?","key":)";
    const DatabaseCheck check = checkDatabase(SourceText("", front + std::string(spelling.text()) + "}]}]"));
    Findings findings;
    for (Finding finding : check.findings) {
        if (finding.rule.starts_with("pattern-") || finding.rule == "carriage-return") {
            finding.begin -= front.size();
            finding.end -= front.size();
            findings.push_back(std::move(finding));
        }
    }
    return findings;
}

int printMatches(const SourceText& source, const KeyOptions& options) {
    const std::string json = spelled(Json(options.expression));
    const SourceText spelling("expression", json);
    const Findings findings = checkSpelling(spelling);
    const bool isFaulty = std::any_of(findings.begin(), findings.end(),
                                      [](const Finding& finding) { return finding.severity != Severity::Note; });
    FoundMatches found;
    std::string failure;
    try {
        found = findMatches(options.expression, source.text());
    } catch (const std::regex_error&) {
        failure = "the service ends here: the expression is wrong, or the search is given up";
    }
    if (options.format == "text") {
        std::cout << "JSON: " << json << '\n';
        for (const Finding& finding : findings) {
            printFinding(std::cout, spelling, finding, false);
        }
        for (std::size_t index = 0; index < found.first.size(); ++index) {
            printMatch(std::cout, source, found.first[index], index + 1);
        }
        std::cout << (!failure.empty() ? failure
                                       : std::to_string(found.count) + (found.count == 1 ? " match" : " matches"))
                  << '\n';
    } else {
        Json matches = Json::array();
        for (const MatchPlaces& match : found.first) {
            matches.push_back(toJson(source, match));
        }
        Json complaints = Json::array();
        for (const Finding& finding : findings) {
            complaints.push_back(toJson(spelling, finding));
        }
        std::cout << layOutTitle(Json{{"file", source.path()},
                                      {"key", options.expression},
                                      {"count", found.count},
                                      {"matches", matches},
                                      {"failure", failure.empty() ? Json() : Json(failure)},
                                      {"findings", complaints}})
                  << '\n';
    }
    return failure.empty() && found.count == 1 && !isFaulty ? 0 : 1;
}

} // namespace

int runKey(const KeyOptions& options) {
    const FileLine given = splitLine(options.file);
    if (options.isRaw) {
        return printMatches(readSettings(given.file), options);
    }
    if (given.line == 0) {
        throw std::runtime_error("--file names no line; write --file " + options.file +
                                 ":12 for the setting on line 12");
    }
    const SourceText source = readSettings(given.file);
    const auto lines = static_cast<std::size_t>(std::count(source.text().begin(), source.text().end(), '\n')) + 1;
    if (given.line > lines) {
        throw std::runtime_error(given.file + " ends with line " + std::to_string(lines) +
                                 " for the service, which reads up to a 0x1A");
    }
    return printProposals(source, given.line, options);
}

} // namespace brisk::workbench
