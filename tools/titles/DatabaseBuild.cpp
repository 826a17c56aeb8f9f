#include "tools/titles/DatabaseBuild.h"

#include "tools/titles/DatabaseCheck.h"
#include "tools/titles/JsonLayout.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace brisk::workbench {

namespace {

using Json = nlohmann::ordered_json;

// A title alone is checked as the array of it.
Findings check(const SourceText& source) {
    const std::string_view text = source.text();
    const std::size_t begin = text.find_first_not_of(" \t\r\n", text.starts_with("\xEF\xBB\xBF") ? 3 : 0);
    if (begin == std::string_view::npos || text[begin] != '{') {
        return checkDatabase(source).findings;
    }
    Findings findings =
        checkDatabase(SourceText("", std::string(text.substr(0, begin)) + '[' + std::string(text.substr(begin)) + ']'))
            .findings;
    for (Finding& finding : findings) {
        finding.begin -= finding.begin > begin ? 1 : 0;
        finding.end -= finding.end > begin ? 1 : 0;
    }
    return findings;
}

// What a title may share with no other.
class Uniqueness {
public:
    explicit Uniqueness(DatabaseBuild& result) : build(result) {}

    void add(std::size_t number, const std::vector<SourceText>& sources, const Json& title) {
        for (const char* member : {"binary_name", "id"}) {
            const auto found = title.find(member);
            if (found == title.end() || found->is_structured() || found->is_null()) {
                continue;
            }
            const auto [earlier, isNew] = seen.emplace(std::pair(std::string(member), found->dump()), number);
            if (!isNew) {
                const std::string_view text = sources[number].text();
                const std::size_t place = std::min(text.find('"' + std::string(member) + '"'), text.size());
                build.findings.emplace_back(number, Finding{*member == 'i' ? "duplicate-id" : "duplicate-binary-name",
                                                            Severity::Error, place, std::min(text.size(), place + 1),
                                                            "the title in " + sources[earlier->second].path() +
                                                                " has the same \"" + member + "\"",
                                                            title.value("binary_name", Json()).is_string()
                                                                ? std::optional(title["binary_name"].get<std::string>())
                                                                : std::nullopt});
            }
        }
    }

private:
    DatabaseBuild& build;
    std::map<std::pair<std::string, std::string>, std::size_t> seen;
};

} // namespace

DatabaseBuild buildDatabase(const std::vector<SourceText>& sources) {
    DatabaseBuild build;
    Uniqueness uniqueness(build);
    std::vector<std::tuple<std::string, std::string>> titles; // binary name and layout
    for (std::size_t number = 0; number < sources.size(); ++number) {
        for (Finding& finding : check(sources[number])) {
            build.findings.emplace_back(number, std::move(finding));
        }
        const Json json = Json::parse(sources[number].text(), nullptr, false);
        if (json.is_discarded()) {
            continue;
        }
        if (json.is_array() && json.size() != 1) {
            build.findings.emplace_back(
                number,
                Finding{"element-type", Severity::Error, 0, 1, "a file of its own holds one title, not several", {}});
            continue;
        }
        const Json& title = json.is_array() ? json.front() : json;
        if (title.is_object()) {
            uniqueness.add(number, sources, title);
            const auto name = title.find("binary_name");
            titles.emplace_back(name != title.end() && name->is_string() ? name->get<std::string>() : "",
                                layOutTitle(title, 2));
        }
    }
    std::sort(titles.begin(), titles.end());
    build.titles = titles.size();
    for (const auto& [name, layout] : titles) {
        build.database += (build.database.empty() ? "[\n  " : ",\n  ") + layout;
    }
    build.database += build.database.empty() ? "[]\n" : "\n]\n";
    return build;
}

} // namespace brisk::workbench
