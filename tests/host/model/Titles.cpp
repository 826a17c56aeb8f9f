#include "host/model/Titles.h"

#include <nlohmann/json.hpp>

namespace brisk::model {

namespace {

using nlohmann::json;
using Kind = TextKey::Kind;

constexpr char kHeader[] = "[Video]\n";

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}
bool isLetter(char character) {
    return character >= 'a' && character <= 'z';
}

TextKey makeKey(Random& random) {
    TextKey key;
    key.name = random.pick<const char*>({"Width=", "Height=", "Mode=", "Scale=", "Full=", "Vendor="});
    key.kind = random.pick({Kind::Digits, Kind::Digits, Kind::Letters, Kind::Any});
    key.terminator = random.oneIn(4) ? ";" : "";
    return key;
}

Field makeField(Random& random) {
    Field field;
    field.key = makeKey(random);
    field.meta = random.pick<const char*>({"", "", "width", "height", "native_width", "native_height", "other"});
    field.text = random.pick<const char*>({"", "Quality", "Balanced"});
    if (field.key.kind == Kind::Letters || random.oneIn(4)) {
        field.value = random.pick<const char*>({"fast", "high", "7"});
    } else {
        field.number = random.pick<std::int32_t>({0, 1, 2, 1280, -3});
    }
    if (random.oneIn(3)) {
        field.createKey = TextKey{kHeader, Kind::Empty, ""};
        field.createValue = field.key.name + (random.oneIn(4) ? "9" : "*") + field.key.terminator + "\n";
    }
    return field;
}

Condition makeCondition(Random& random) {
    Condition condition;
    condition.key = makeKey(random);
    condition.absence = random.oneIn(2);
    if (random.oneIn(2)) {
        condition.texts = {"fast", random.pick<const char*>({"1", "high", ""})};
    }
    if (random.oneIn(2)) {
        condition.numbers = {1, random.pick<std::int32_t>({0, 7, 1920})};
    }
    return condition;
}

std::vector<std::string> makeTextLocations(Random& random, unsigned number) {
    const std::string name = "T" + std::to_string(number);
    std::vector<std::string> locations;
    const unsigned count = random.oneIn(16) ? 0 : 1 + random.below(3);
    for (unsigned i = 0; i < count; ++i) {
        locations.push_back(random.pick<std::string>({
            "C:\\Games\\" + name + "\\settings.ini",
            "%APPDIR%\\settings.ini",
            "%LOCALAPPDATA%\\" + name + "\\settings.ini",
            "C:\\Saves\\" + name + "\\*\\profile.ini",
            "D:\\Missing\\settings.ini",
            "C:\\%APPDIR%\\settings.ini",
        }));
    }
    return locations;
}

std::string makeRegistryLocation(Random& random, unsigned number) {
    const std::string name = std::to_string(number);
    return random.pick<std::string>({
        "HKEY_CURRENT_USER/Software/Studio/T" + name,
        "HKEY_CURRENT_USER/Software\\Studio\\T" + name,
        "HKEY_LOCAL_MACHINE/Software/Studio/T" + name,
        "HKEY_CURRENT_USER\\Software\\Studio\\T" + name,
        "hkey_current_user/Software/Studio/T" + name,
    });
}

json toJson(const Title& title, const Field& field) {
    json element{{"key", title.keyOf(field.key)}, {"meta", field.meta}, {"text", field.text}};
    if (field.value.empty()) {
        element["value"] = field.number;
    } else {
        element["value"] = field.value;
    }
    if (field.createKey) {
        element["create_key"] = title.isText ? field.createKey->regex() : "Created";
        element["create_value"] = field.createValue;
    }
    return element;
}

json toJson(const Title& title, const Condition& condition) {
    json element{{"key", title.keyOf(condition.key)}, {"absence", condition.absence}};
    element["presence"] = json::array();
    for (const std::string& text : condition.texts) {
        element["presence"].push_back(text);
    }
    for (const std::int32_t number : condition.numbers) {
        element["presence"].push_back(number);
    }
    return element;
}

json toJson(const Title& title) {
    json element{{"config_type", title.isText ? "txt" : "reg"},
                 {"luma_version", title.luma},
                 {"title_name", title.name},
                 {"publisher", title.publisher},
                 {"binary_name", title.binary},
                 {"config_locations", title.locations}};
    if (title.id) {
        element["id"] = *title.id;
    }
    element["config_fields"] = json::array();
    for (const auto& [key, field] : title.fields) {
        element["config_fields"].push_back(toJson(title, field));
    }
    element["patch_if"] = json::array();
    for (const Condition& condition : title.conditions) {
        element["patch_if"].push_back(toJson(title, condition));
    }
    return element;
}

} // namespace

const std::vector<std::string> kValueNames{"Width=", "Height=", "Mode=", "Scale=", "Full=", "Vendor=", "Created"};

std::string TextKey::regex() const {
    switch (kind) {
    case Kind::Digits:
        return "(" + name + ")(\\d+)(" + terminator + ")";
    case Kind::Letters:
        return "(" + name + ")([a-z]+)(" + terminator + ")";
    case Kind::Any:
        return "(" + name + ")(-?[0-9a-z]*)(" + terminator + ")";
    case Kind::Empty:
        break;
    }
    return "(\\[Video\\]\\n)()()";
}

std::optional<TextKey::Match> TextKey::find(const std::string& text, std::size_t offset) const {
    for (std::size_t begin = text.find(name, offset); begin != std::string::npos; begin = text.find(name, begin + 1)) {
        const std::size_t value = begin + name.size();
        std::size_t end = value;
        if (kind == Kind::Any && end < text.size() && text[end] == '-') {
            ++end;
        }
        while (end < text.size() &&
               ((kind == Kind::Digits && isDigit(text[end])) || (kind == Kind::Letters && isLetter(text[end])) ||
                (kind == Kind::Any && (isDigit(text[end]) || isLetter(text[end]))))) {
            ++end;
        }
        const bool hasValue = end > value || kind == Kind::Any || kind == Kind::Empty;
        if (hasValue && text.compare(end, terminator.size(), terminator) == 0) {
            return Match{begin, value, end - value, end + terminator.size()};
        }
    }
    return std::nullopt;
}

std::vector<Title> makeTitles(Random& random, unsigned count) {
    std::vector<Title> titles;
    for (unsigned number = 0; number < count; ++number) {
        Title title;
        title.isText = !random.oneIn(3);
        if (!random.oneIn(8)) {
            title.id = 100 + number;
        }
        title.luma = random.pick({0u, 0u, 2u});
        title.name = "Game " + std::to_string(number);
        title.publisher = random.pick<const char*>({"Studio", "Studio", ""});
        title.binary = executableOf(random.oneIn(12) ? 0 : number);
        if (title.isText) {
            title.locations = makeTextLocations(random, number);
        } else {
            title.locations = {makeRegistryLocation(random, number), "HKEY_CURRENT_USER/Software"};
        }
        for (unsigned i = random.oneIn(12) ? 0 : 1 + random.below(3); i > 0; --i) {
            const Field field = makeField(random);
            title.fields[title.keyOf(field.key)] = field;
        }
        for (unsigned i = random.pick({0u, 0u, 0u, 1u, 1u, 2u, 3u}); i > 0; --i) {
            title.conditions.push_back(makeCondition(random));
        }
        titles.push_back(title);
    }
    return titles;
}

std::string writeDatabase(const std::vector<Title>& titles) {
    json database = json::array();
    for (const Title& title : titles) {
        database.push_back(toJson(title));
    }
    return database.dump();
}

std::string executableOf(unsigned number) {
    // Names outside of ASCII have more bytes than characters.
    return (number % 2 == 0 ? "Game" : "J\xC3\xB6rg \xE6\x98\x9F ") + std::to_string(number) + ".exe";
}

std::string gameFolderOf(unsigned number) {
    return "C:\\Games\\T" + std::to_string(number);
}

std::string saveFolderOf(unsigned number) {
    return "C:\\Saves\\T" + std::to_string(number);
}

std::vector<std::string> filesOf(unsigned number) {
    return {gameFolderOf(number) + "\\settings.ini",
            "C:\\Users\\Player\\AppData\\Local\\T" + std::to_string(number) + "\\settings.ini",
            saveFolderOf(number) + "\\100\\profile.ini", saveFolderOf(number) + "\\200\\profile.ini"};
}

std::string registryPathOf(unsigned number) {
    return "Software\\Studio\\T" + std::to_string(number);
}

std::string makeConfiguration(Random& random) {
    std::string text;
    for (unsigned lines = random.below(10); lines > 0; --lines) {
        text += random.pick<const char*>({"", "", "Max", "x "});
        text += random.pick<const char*>({"Width=", "Height=", "Mode=", "Scale=", "Full=", "Vendor=", "[Video]"});
        text += random.pick<const char*>(
            {"1", "0", "1280", "1920", "fast", "high", "7", "-3", "", "12x", "abc", "99999999999", "2147483647", "-"});
        text += random.pick<const char*>({"\n", "\n", ";\n", "\r\n"});
        text += random.pick<const char*>({"", "", "", "[Video]\n"});
        if (random.oneIn(24)) {
            text += '\0';
        }
    }
    return text;
}

} // namespace brisk::model
