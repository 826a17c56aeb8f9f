#include "tools/titles/JsonLayout.h"

#include <algorithm>

namespace brisk::workbench {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kWidth = 120;
constexpr std::size_t kStep = 2;

std::string scalar(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// The value, or a member with its key.
std::string labelled(const Json& parent, const Json::const_iterator& item, const std::string& text) {
    return parent.is_object() ? scalar(Json(item.key())) + ": " + text : text;
}

std::string onOneLine(const Json& value) {
    if (!value.is_structured() || value.empty()) {
        return scalar(value);
    }
    std::string text;
    for (auto item = value.begin(); item != value.end(); ++item) {
        text += (text.empty() ? "" : ", ") + labelled(value, item, onOneLine(*item));
    }
    return value.is_object() ? "{ " + text + " }" : "[ " + text + " ]";
}

bool hasSeveralObjects(const Json& value) {
    return value.is_array() &&
           std::count_if(value.begin(), value.end(), [](const Json& item) { return item.is_object(); }) > 1;
}

std::string layOutAt(const Json& value, std::size_t indent, std::size_t column, bool isAlwaysOpen) {
    std::string line = onOneLine(value);
    if (!value.is_structured() || value.empty() ||
        (!isAlwaysOpen && !hasSeveralObjects(value) && column + line.size() < kWidth)) {
        return line;
    }
    std::string text;
    const std::string margin(indent + kStep, ' ');
    for (auto item = value.begin(); item != value.end(); ++item) {
        const std::size_t label = labelled(value, item, "").size();
        text += (text.empty() ? "\n" : ",\n") + margin +
                labelled(value, item, layOutAt(*item, indent + kStep, indent + kStep + label, false));
    }
    text += '\n' + std::string(indent, ' ');
    return value.is_object() ? '{' + text + '}' : '[' + text + ']';
}

} // namespace

std::string layOut(const Json& value, std::size_t indent) {
    return layOutAt(value, indent, indent, false);
}

std::string layOutTitle(const Json& title, std::size_t indent) {
    return layOutAt(title, indent, indent, true);
}

} // namespace brisk::workbench
