#include "tools/titles/ValueRules.h"

#include "tools/titles/Suggestion.h"
#include "tools/titles/TitleParts.h"

#include <algorithm>
#include <array>

namespace brisk::workbench {

namespace {

constexpr std::array<std::string_view, 4> kResolutionNames{"native_width", "native_height", "width", "height"};

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

bool isNumberText(std::string_view text) {
    if (text.starts_with('-') || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

// What the replacement's format makes of a dollar sign and the character behind it; nothing when it stays.
std::string meaningOfDollar(char selector) {
    switch (selector) {
    case '$':
        return "one dollar sign";
    case '&':
        return "the whole match";
    case '`':
        return "the text before the match";
    case '\'':
        return "the text behind the match";
    default:
        return isDigit(selector) ? "a group of the key" : std::string();
    }
}

void checkDollars(const JsonValue& value, const char* what, Report& report) {
    const std::string& text = value.text();
    if (text.ends_with('$') && !text.ends_with("$$")) {
        report.add(Severity::Error, "dollar-in-value", value,
                   std::string("behind a dollar sign at the end of ") + what +
                       " a 3 is written, and the text of the key's third group is lost");
        return;
    }
    for (std::size_t at = text.find('$'); at != std::string::npos; at = text.find('$', at + 2)) {
        const std::string meaning = meaningOfDollar(at + 1 < text.size() ? text[at + 1] : '\0');
        if (!meaning.empty()) {
            report.add(Severity::Error, "dollar-in-value", value,
                       "\"" + text.substr(at, 2) + "\" in " + what + " is written as " + meaning +
                           "; a dollar sign itself is \"$$\", but the check then compares with both of them and never "
                           "settles");
            return;
        }
    }
}

void checkMeta(const JsonValue& title, const JsonValue& field, Report& report) {
    const JsonValue* meta = findText(field, "meta");
    if (!meta || meta->text().empty()) {
        return;
    }
    const std::string& name = meta->text();
    if (std::find(kResolutionNames.begin(), kResolutionNames.end(), name) == kResolutionNames.end()) {
        report.add(Severity::Error, "unknown-resolution", *meta,
                   "\"" + name + "\" is no resolution name, and the service ignores it" +
                       didYouMean(name, kResolutionNames));
        return;
    }
    if (const JsonValue* value = findText(field, "value"); value && !value->text().empty()) {
        report.add(Severity::Error, "resolution-beside-text", *meta,
                   "beside a \"value\" that is a text the resolution is ignored; write \"value\": 0");
    } else if (isLumaTitle(title) && (name == "width" || name == "height")) {
        report.add(Severity::Warning, "luma-resolution", *meta,
                   "a LUMA title is offered also on a display without a lower resolution, and \"" + name +
                       "\" is 0 there; write \"native_" + name + "\"");
    }
    if (field.find("create_key")) {
        report.add(
            Severity::Note, "created-resolution", *meta,
            "a setting that is created gets the number of \"value\", never the resolution, whatever the display");
    }
}

// Each LF is written as CR LF.
void checkLineEnds(const JsonValue& value, const char* what, Report& report) {
    if (value.text().find('\r') != std::string::npos) {
        report.add(Severity::Error, "carriage-return", value,
                   std::string("a line end is \\n alone, which is written as the file needs it; a \\r in ") + what +
                       " stays in the file as a character of its own");
    }
}

void checkRegistryCreation(const JsonValue& field, const JsonValue& createKey, Report& report) {
    const JsonValue* key = findText(field, "key");
    const JsonValue* value = findText(field, "value");
    const JsonValue* created = findText(field, "create_value");
    if (key && key->text() != createKey.text()) {
        report.add(Severity::Error, "registry-creation", createKey,
                   "this creates a value of another name than \"key\" has, so the setting stays missing");
    } else if (!value || value->text().empty()) {
        report.add(Severity::Error, "registry-creation", createKey,
                   "a number is created as a text, REG_SZ, and reads as another number; leave \"create_key\" and "
                   "\"create_value\" away: what is missing in the registry is written anyway");
    } else if (created && created->text() != "*" && created->text().find('*') != std::string::npos) {
        report.add(Severity::Error, "registry-creation", *created,
                   "more is created than the wanted text, so the setting differs with every pass; write \"*\"");
    }
}

void checkCreation(const JsonValue& title, const JsonValue& field, Report& report) {
    const JsonValue* createKey = findText(field, "create_key");
    if (!createKey) {
        return;
    }
    if (createKey->text().empty()) {
        report.add(Severity::Error, "missing-key", *createKey, "\"create_key\" is empty: nothing is created");
        return;
    }
    if (const JsonValue* created = findText(field, "create_value")) {
        if (created->text().find('*') == std::string::npos) {
            report.add(Severity::Warning, "template-without-star", *created,
                       "without a '*' the created text does not hold the wanted value");
        } else if (created->text().find('*') != created->text().rfind('*')) {
            report.add(Severity::Warning, "template-second-star", *created,
                       "only the first '*' stands for the value; the second one is written as it is");
        }
        if (!isRegistryTitle(title)) {
            checkDollars(*created, "a created text", report);
            checkLineEnds(*created, "a created text", report);
        }
    }
    if (isRegistryTitle(title)) {
        checkRegistryCreation(field, *createKey, report);
    }
    const JsonValue* value = findNumber(field, "value");
    if (value && value->scalar == 0 && !field.find("meta")) {
        report.add(Severity::Note, "created-zero", *value,
                   "a number that is missing counts as 0: that the setting is missing is no reason for an offer");
    }
}

// What only an expression has.
void checkRegistryName(const JsonValue& setting, Report& report) {
    const JsonValue* key = findText(setting, "key");
    static constexpr auto kSigns = std::to_array<std::string_view>({")(", "(?:", "(?=", "\\d", "\\n", "\\w", "\\s"});
    if (key && std::any_of(kSigns.begin(), kSigns.end(),
                           [key](std::string_view sign) { return key->text().find(sign) != std::string::npos; })) {
        report.add(Severity::Warning, "registry-expression", *key,
                   "in a registry title \"key\" is the name of a value as it is, no expression");
    }
}

void checkField(const JsonValue& title, const JsonValue& field, Report& report) {
    if (isRegistryTitle(title)) {
        checkRegistryName(field, report);
    }
    checkMeta(title, field, report);
    checkCreation(title, field, report);
    const JsonValue* value = findText(field, "value");
    if (!value) {
        return;
    }
    if (value->text().empty()) {
        report.add(Severity::Warning, "empty-value", *value, "an empty \"value\" is the number 0, not an empty text");
    } else if (isRegistryTitle(title)) {
        if (isNumberText(value->text())) {
            report.add(
                Severity::Warning, "number-as-text", *value,
                "a text is compared with the value's bytes and written as REG_SZ; for a REG_DWORD write the number " +
                    value->text() + " without quotation marks");
        }
    } else {
        checkDollars(*value, "a value", report);
        checkLineEnds(*value, "a value", report);
    }
}

void checkConditions(const JsonValue& title, Report& report) {
    const std::vector<const JsonValue*> conditions = findConditions(title);
    if (conditions.empty() && !isRegistryTitle(title) && !findFields(title).empty()) {
        report.add(
            Severity::Note, "no-condition", title.begin, title.begin + 1,
            "no condition: any file at one of the locations is adjusted, also one of another version of the game");
    }
    for (const JsonValue* condition : conditions) {
        if (isRegistryTitle(title)) {
            checkRegistryName(*condition, report);
        }
        const JsonValue* presence = findArray(*condition, "presence");
        if (!presence) {
            continue;
        }
        const auto isText = [](const JsonValue& allowed) { return allowed.isString(); };
        const auto isNumber = [](const JsonValue& allowed) { return allowed.isNumber(); };
        const bool hasTexts = std::any_of(presence->items.begin(), presence->items.end(), isText);
        const bool hasNumbers = std::any_of(presence->items.begin(), presence->items.end(), isNumber);
        if (!hasTexts && !hasNumbers) {
            report.add(Severity::Error, "empty-presence", *presence,
                       "without an allowed value the condition checks nothing, not even that the setting is there");
        } else if (hasTexts && hasNumbers) {
            report.add(
                Severity::Error, "mixed-presence", *presence,
                "texts and numbers are two conditions that must both hold: the setting must be one of the texts and "
                "one of the numbers");
        }
    }
}

// '<', and '&' but for what XML knows: &amp; is shown as '&'.
bool breaksMarkup(std::string_view text) {
    static constexpr auto kNames = std::to_array<std::string_view>({"amp", "lt", "gt", "quot", "apos"});
    for (std::size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
        std::string_view name = text.substr(at + 1, text.find(';', at) - at - 1);
        if (text.find(';', at) == std::string_view::npos) {
            return true;
        }
        if (std::find(kNames.begin(), kNames.end(), name) != kNames.end()) {
            continue;
        }
        const bool isHexadecimal = name.starts_with("#x");
        if (!name.starts_with('#')) {
            return true;
        }
        name.remove_prefix(isHexadecimal ? 2 : 1);
        if (name.empty() || name.size() > 5 || name.find_first_not_of('0') == std::string_view::npos ||
            name.find_first_not_of(isHexadecimal ? "0123456789abcdefABCDEF" : "0123456789") != std::string_view::npos) {
            return true;
        }
    }
    return text.find('<') != std::string_view::npos;
}

// Notifications are XML into which texts are put as they are, a byte a character.
void checkShownText(const JsonValue& object, const char* key, Report& report) {
    const JsonValue* text = findText(object, key);
    if (!text) {
        return;
    }
    const auto isControl = [](char byte) { return static_cast<unsigned char>(byte) < 0x20; };
    const auto isBeyondAscii = [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; };
    const std::string& shown = text->text();
    if (breaksMarkup(shown)) {
        report.add(Severity::Error, "shown-markup", *text,
                   "'&' and '<' break the notification: the player sees none at all; write &amp; and &lt;");
    } else if (std::any_of(shown.begin(), shown.end(), isControl)) {
        report.add(Severity::Error, "shown-markup", *text, "a control character or line break breaks the notification");
    }
    if (std::any_of(shown.begin(), shown.end(), isBeyondAscii)) {
        // A byte is widened with its sign: 0x80 to 0xFF become U+FF80 to U+FFFF.
        std::string seen;
        for (const char byte : shown) {
            const auto code = static_cast<unsigned char>(byte);
            if (isBeyondAscii(byte)) {
                seen += {'\xEF', static_cast<char>(0xBC | code >> 6U), static_cast<char>(0x80 | (code & 0x3FU))};
            } else {
                seen += byte;
            }
        }
        report.add(Severity::Warning, "shown-ascii", *text,
                   "each byte beyond ASCII is shown as a character of its own: the player sees \"" + seen +
                       "\"; use plain ASCII");
    }
}

void checkBinaryName(const JsonValue& title, Report& report) {
    const JsonValue* name = findText(title, "binary_name");
    if (!name || name->text().empty()) {
        return;
    }
    const std::string& text = name->text();
    if (text.find_first_of("\\/:*?\"<>|") != std::string::npos) {
        report.add(Severity::Error, "binary-name", *name,
                   "this is the executable's file name alone, without a folder, and letter for letter");
    } else if (text.find_last_not_of(" \t\r\n") + 1 != text.size() || text.find_first_not_of(" \t\r\n") != 0) {
        report.add(Severity::Error, "binary-name", *name,
                   "a blank at the beginning or the end of the name, which no executable has");
    }
}

} // namespace

void checkValues(const JsonValue& title, Report& report) {
    for (const JsonValue* field : findFields(title)) {
        checkField(title, *field, report);
        checkShownText(*field, "text", report);
    }
    checkConditions(title, report);
    checkBinaryName(title, report);
    checkShownText(title, "title_name", report);
}

} // namespace brisk::workbench
