#include "tools/titles/DatabaseDiff.h"

#include <algorithm>
#include <map>
#include <optional>

namespace brisk::workbench {

namespace {

using Json = nlohmann::ordered_json;

struct Member {
    const char* name;
    Json otherwise; // what the service takes it for
};

using Titles = std::map<std::string, Json>;

// A member of the default's type; the default where there is none.
Json memberOf(const Json& object, const Member& member) {
    const auto found = object.find(member.name);
    const bool fits = found != object.end() && (found->type() == member.otherwise.type() ||
                                                (found->is_number() && member.otherwise.is_number()));
    return fits ? *found : member.otherwise;
}

std::string textOf(const Json& object, const char* name) {
    return memberOf(object, {name, ""}).get<std::string>();
}

Titles readTitles(std::string_view text) {
    Titles titles;
    const Json database = Json::parse(text);
    if (!database.is_array()) {
        return titles;
    }
    for (const Json& title : database) {
        if (title.is_object() && (textOf(title, "config_type") == "txt" || textOf(title, "config_type") == "reg")) {
            titles[textOf(title, "binary_name")] = title;
        }
    }
    return titles;
}

// A wanted value is a text or a number.
Json valueOf(const Json& field) {
    const auto found = field.find("value");
    const bool isWanted = found != field.end() &&
                          (found->is_number() || (found->is_string() && !found->get_ref<const std::string&>().empty()));
    return isWanted ? *found : Json(0);
}

std::map<std::string, Json> fieldsOf(const Json& title) {
    std::map<std::string, Json> fields;
    for (const Json& field : memberOf(title, {"config_fields", Json::array()})) {
        const Json object = field.is_object() ? field : Json::object();
        fields[textOf(object, "key")] = object;
    }
    return fields;
}

// What counts of the conditions.
Json conditionsOf(const Json& title) {
    Json conditions = Json::array();
    for (const Json& condition : memberOf(title, {"patch_if", Json::array()})) {
        const Json object = condition.is_object() ? condition : Json::object();
        conditions.push_back({{"key", textOf(object, "key")},
                              {"presence", memberOf(object, {"presence", Json::array()})},
                              {"absence", memberOf(object, {"absence", false})}});
    }
    return conditions;
}

// Compares two titles.
class Comparison {
public:
    Comparison(const Json& oldTitle, const Json& newTitle) : before(oldTitle), after(newTitle) {}

    std::vector<TitleChange> run() {
        for (const Member& member :
             {Member{"id", 0}, Member{"title_name", ""}, Member{"publisher", ""}, Member{"config_type", ""},
              Member{"luma_version", 0}, Member{"config_locations", Json::array()}}) {
            add(member.name, "", memberOf(before, member), memberOf(after, member));
        }
        compareFields();
        add("patch_if", "", conditionsOf(before), conditionsOf(after));
        return std::move(changes);
    }

private:
    void add(const char* what, const std::string& key, const Json& earlier, const Json& later) {
        if (earlier != later) {
            changes.push_back({what, key, earlier, later});
        }
    }

    void compareFields() {
        std::map<std::string, Json> earlier = fieldsOf(before);
        std::map<std::string, Json> later = fieldsOf(after);
        for (auto field = earlier.begin(); field != earlier.end();) {
            const auto same = later.find(field->first);
            if (same == later.end()) {
                ++field;
                continue;
            }
            compareField(field->first, field->second, same->second);
            later.erase(same);
            field = earlier.erase(field);
        }
        // A setting that is the same but for its key has another key.
        for (const auto& entry : earlier) {
            const std::string& key = entry.first;
            const Json& field = entry.second;
            const auto moved = std::find_if(later.begin(), later.end(), [&](const auto& other) {
                return valueOf(field) == valueOf(other.second) &&
                       textOf(field, "meta") == textOf(other.second, "meta") &&
                       textOf(field, "text") == textOf(other.second, "text");
            });
            if (moved == later.end()) {
                changes.push_back({"field", key, field, nullptr});
                continue;
            }
            changes.push_back({"key", key, key, moved->first});
            compareField(moved->first, field, moved->second);
            later.erase(moved);
        }
        for (const auto& [key, field] : later) {
            changes.push_back({"field", key, nullptr, field});
        }
    }

    void compareField(const std::string& key, const Json& earlier, const Json& later) {
        add("value", key, valueOf(earlier), valueOf(later));
        for (const char* member : {"meta", "text", "create_key", "create_value"}) {
            add(member, key, textOf(earlier, member), textOf(later, member));
        }
    }

    const Json& before;
    const Json& after;
    std::vector<TitleChange> changes;
};

// Of the titles that are new, the one that this one has become: the same id, or the same name.
Titles::iterator findRenamed(const Json& title, Titles& added) {
    const auto isSame = [&title](const Member& member) {
        return [&title, member](const auto& other) {
            const Json value = memberOf(title, member);
            return value != member.otherwise && value == memberOf(other.second, member);
        };
    };
    const auto byId = std::find_if(added.begin(), added.end(), isSame({"id", 0}));
    return byId != added.end() ? byId : std::find_if(added.begin(), added.end(), isSame({"title_name", ""}));
}

} // namespace

std::vector<TitleDifference> compareDatabases(std::string_view before, std::string_view after) {
    using Kind = TitleDifference::Kind;
    std::vector<TitleDifference> differences;
    Titles removed = readTitles(before);
    Titles added = readTitles(after);
    for (auto title = removed.begin(); title != removed.end();) {
        const auto same = added.find(title->first);
        if (same == added.end()) {
            ++title;
            continue;
        }
        auto changes = Comparison(title->second, same->second).run();
        if (!changes.empty()) {
            differences.push_back(
                {Kind::Changed, title->first, "", textOf(same->second, "title_name"), std::move(changes)});
        }
        added.erase(same);
        title = removed.erase(title);
    }
    for (const auto& [name, title] : removed) {
        const auto renamed = findRenamed(title, added);
        if (renamed == added.end()) {
            differences.push_back({Kind::Removed, name, "", textOf(title, "title_name"), {}});
            continue;
        }
        differences.push_back({Kind::Renamed, renamed->first, name, textOf(renamed->second, "title_name"),
                               Comparison(title, renamed->second).run()});
        added.erase(renamed);
    }
    for (const auto& [name, title] : added) {
        differences.push_back({Kind::Added, name, "", textOf(title, "title_name"), {}});
    }
    std::stable_sort(differences.begin(), differences.end(),
                     [](const auto& one, const auto& other) { return one.binaryName < other.binaryName; });
    return differences;
}

const char* nameOf(TitleDifference::Kind kind) {
    switch (kind) {
    case TitleDifference::Kind::Added:
        return "added";
    case TitleDifference::Kind::Removed:
        return "removed";
    case TitleDifference::Kind::Renamed:
        return "renamed";
    case TitleDifference::Kind::Changed:
        break;
    }
    return "changed";
}

} // namespace brisk::workbench
