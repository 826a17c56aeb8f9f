#include "tools/titles/PatternText.h"
#include "tools/titles/SettingPlace.h"

#include <algorithm>
#include <array>

namespace brisk::workbench {

namespace {

constexpr std::size_t kNowhere = std::string_view::npos;
constexpr std::size_t kDeepest = 200;

bool isBare(char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
           byte == '_' || byte == '.' || byte == '-' || byte == '+' || static_cast<unsigned char>(byte) >= 0x80;
}

// A name or value; for a text, begin and end are those of its content.
struct Token {
    std::size_t begin = 0;
    std::size_t end = 0;
    char quote = '\0';
    std::size_t outerBegin = 0;
    std::size_t outerEnd = 0;
};

// How a member's name stands in the text, as expressions.
struct Label {
    std::string anchor; // in front of the name, where no table is named
    std::string name;   // with its sign; empty for an item without a name
};

// An open table or array.
struct Container {
    char bracket;
    Label label;
    std::string name;
    std::size_t item = 0; // the number of the next item
    std::size_t itemInParent = 0;
    bool isItem = false;              // of an array, without a name
    std::vector<std::string> telling; // its texts so far, as expressions: "name" : "width"
};

class Reader {
public:
    Reader(std::string_view content, const WantedSetting& wanted) : text(content), isWanted(wanted) {}

    std::vector<SettingPlace> read() {
        std::size_t at = markSize(text);
        while ((at = skipBlanks(at)) < text.size()) {
            const char byte = text[at];
            if (byte == '{' || (byte == '[' && !isNameInBrackets(at)) || byte == '(') {
                open(byte);
                ++at;
            } else if (byte == '}' || byte == ']' || byte == ')') {
                close();
                ++at;
            } else if (byte == ',' || byte == ';') {
                if (!containers.empty()) {
                    ++containers.back().item;
                }
                hasLabel = false;
                ++at;
            } else {
                at = readWord(at);
            }
            lastByte = text[at - 1];
        }
        return std::move(found);
    }

private:
    // Blanks and comments.
    std::size_t skipBlanks(std::size_t at) const {
        for (;;) {
            at = std::min(text.find_first_not_of(" \t\r\n", at), text.size());
            const std::string_view rest = text.substr(at);
            if (rest.starts_with("/*") || rest.starts_with("--[[")) {
                const std::size_t end = text.find(rest[0] == '/' ? "*/" : "]]", at + 2);
                at = end == kNowhere ? text.size() : end + 2;
            } else if (rest.starts_with("//") || rest.starts_with("--")) {
                at = std::min(text.find('\n', at), text.size());
            } else {
                return at;
            }
        }
    }

    // ["width"] = 1920
    bool isNameInBrackets(std::size_t at) const {
        const std::size_t quote = text.find_first_not_of(" \t", at + 1);
        if (quote == kNowhere || (text[quote] != '"' && text[quote] != '\'')) {
            return false;
        }
        const std::size_t end = text.find(text[quote], quote + 1);
        const std::size_t bracket = end == kNowhere ? kNowhere : text.find_first_not_of(" \t", end + 1);
        if (bracket == kNowhere || text[bracket] != ']') {
            return false;
        }
        const std::size_t sign = text.find_first_not_of(" \t", bracket + 1);
        return sign != kNowhere && text[sign] == '=' && text.substr(at, sign - at).find('\n') == kNowhere;
    }

    Token readToken(std::size_t at) const {
        Token token;
        token.outerBegin = at;
        std::size_t quote = at;
        if (text[at] == '[') {
            quote = text.find_first_not_of(" \t", at + 1);
        }
        if (text[quote] == '"' || text[quote] == '\'') {
            token.quote = text[quote];
            token.begin = token.end = quote + 1;
            while (token.end < text.size() && text[token.end] != token.quote && text[token.end] != '\n') {
                token.end += text[token.end] == '\\' ? 2U : 1U;
            }
            token.end = std::min(token.end, text.size());
            token.outerEnd = std::min(token.end + 1, text.size());
            if (quote != at) {
                token.outerEnd = text.find(']', token.outerEnd) + 1;
            }
            return token;
        }
        token.begin = at;
        token.end = at;
        while (token.end < text.size() && isBare(text[token.end]) && !text.substr(token.end).starts_with("--")) {
            ++token.end;
        }
        token.outerEnd = token.end;
        return token;
    }

    std::size_t readWord(std::size_t at) {
        const Token token = readToken(at);
        if (token.outerEnd == at) {
            return at + 1; // no character of a table
        }
        const std::size_t sign = skipBlanks(token.outerEnd);
        const bool isName = sign < text.size() && (text[sign] == '=' || text[sign] == ':') && !hasLabel;
        if (isName) {
            name = std::string(text.substr(token.begin, token.end - token.begin));
            label = labelOf(token, text[sign]);
            hasLabel = true;
            return sign + 1;
        }
        if (hasLabel || !containers.empty()) {
            addValue(token);
        }
        hasLabel = false;
        return token.outerEnd;
    }

    Label labelOf(const Token& token, char sign) const {
        Label result;
        const std::string_view outer = text.substr(token.outerBegin, token.outerEnd - token.outerBegin);
        result.name = escapePattern(outer) + "\\s*" + sign + "\\s*";
        if (outer.front() == '"' || outer.front() == '\'' || outer.front() == '[') {
            return result;
        }
        std::size_t begin = token.outerBegin;
        while (begin > markSize(text) && (text[begin - 1] == ' ' || text[begin - 1] == '\t')) {
            --begin;
        }
        const std::string_view front = text.substr(begin, token.outerBegin - begin);
        if (begin == markSize(text) || text[begin - 1] == '\n') {
            result.anchor = (containers.empty() ? "(?:^|\\n)" : "\\n") + blanksLike(front);
        } else if (lastByte == '{' || lastByte == ',' || lastByte == ';') {
            result.anchor = "[{,;]\\s*";
        } else {
            result.anchor = "\\b";
        }
        return result;
    }

    void open(char bracket) {
        Container container{bracket, {}, {}, 0, 0, false, {}};
        if (hasLabel) {
            container.label = label;
            container.name = name;
        } else if (!containers.empty()) {
            container.isItem = true;
            container.itemInParent = containers.back().item;
        }
        hasLabel = false;
        if (containers.size() < kDeepest) {
            containers.push_back(std::move(container));
        } else {
            ++tooDeep;
        }
    }

    void close() {
        if (tooDeep > 0) {
            --tooDeep;
        } else if (!containers.empty()) {
            containers.pop_back();
        }
        hasLabel = false;
    }

    void addValue(const Token& token) {
        const bool isItem = !hasLabel;
        const std::string shown =
            isItem ? containers.back().name + '[' + std::to_string(containers.back().item) + ']' : name;
        if (isWanted(shown, token.begin, token.end)) {
            offer(token, shown, isItem);
        }
        if (!isItem && token.quote != '\0' && !containers.empty() && containers.back().telling.size() < 3) {
            const std::string_view outer = text.substr(token.outerBegin, token.outerEnd - token.outerBegin);
            containers.back().telling.push_back((label.anchor.empty() ? "" : "\\b") + label.name +
                                                escapePattern(outer));
        }
    }

    void offer(const Token& token, const std::string& shown, bool isItem) {
        SettingPlace place;
        place.name = shown;
        place.begin = token.begin;
        place.end = token.end;
        std::string behind;
        std::string quote;
        if (token.quote == '\0') {
            place.kind = SettingPlace::End::Element;
        } else {
            place.kind = SettingPlace::End::Quote;
            place.stops = token.quote;
            quote = behind = token.quote;
        }
        // What stands behind the innermost table that is named.
        std::string inner = isItem ? std::string() : label.name + quote;
        std::string anchor = isItem ? std::string() : label.anchor;
        std::size_t level = containers.size();
        if (isItem) {
            const Container& array = containers.back();
            inner = "\\" + std::string(1, array.bracket) + "\\s*" + items(array.item, "[^\\s,;\\[\\]{}]+") + quote;
            inner = array.label.name + inner;
            anchor = array.label.anchor;
            --level;
        }
        const auto add = [&](const std::string& before) { place.surroundings.push_back({before, behind}); };
        if (!inner.empty() && !(isItem && containers.back().label.name.empty())) {
            add(anchor + inner);
        }
        if (!isItem && !containers.empty()) {
            for (const std::string& telling : containers.back().telling) {
                add(telling + "[^{}]*" + (anchor.empty() ? "" : "\\b") + inner);
            }
        }
        offerTables(level, (anchor.empty() ? "" : "\\b") + inner, add);
        add("^[\\s\\S]*?" + anchor + inner);
        found.push_back(std::move(place));
    }

    // Inside of the table around it, then of the one around that, and so on, with more and more between them.
    template <typename Add>
    void offerTables(std::size_t level, const std::string& inner, const Add& add) const {
        constexpr auto kGaps = std::to_array<std::string_view>(
            {"[^{}]*", "(?:[^{}]|\\{[^{}]*\\})*?", "(?:[^{}]|\\{(?:[^{}]|\\{[^{}]*\\})*\\})*?", "[\\s\\S]*?"});
        constexpr std::size_t kLevels = 5;
        for (const std::string_view gap : kGaps) {
            std::string around;
            std::size_t named = 0;
            for (std::size_t index = level; index-- > 0 && named < kLevels;) {
                const Container& container = containers[index];
                const std::string bracket = "\\" + std::string(1, container.bracket);
                if (container.isItem) {
                    around = items(container.itemInParent, "\\{[^{}]*\\}") + bracket + std::string(gap) + around;
                    continue;
                }
                const bool isRoot = container.label.name.empty();
                const bool isArray = index + 1 < level && containers[index + 1].isItem;
                const std::string step = bracket + (isArray ? "\\s*" : std::string(gap)) + around;
                if (isRoot) {
                    add("^(?:\\xEF\\xBB\\xBF)?\\s*" + step + inner);
                } else {
                    add(container.label.anchor + container.label.name + step + inner);
                }
                around = (container.label.anchor.empty() ? "" : "\\b") + container.label.name + step;
                ++named;
            }
        }
    }

    static std::string items(std::size_t count, const std::string& item) {
        constexpr std::size_t kFew = 32;
        std::string pattern;
        for (std::size_t index = 0; index < std::min(count, kFew); ++index) {
            pattern += item + "\\s*,\\s*";
        }
        return pattern;
    }

    std::string_view text;
    const WantedSetting& isWanted;
    std::vector<Container> containers;
    std::size_t tooDeep = 0;
    bool hasLabel = false; // a name and a sign stand in front
    std::string name;
    Label label;
    char lastByte = '\0';
    std::vector<SettingPlace> found;
};

} // namespace

std::vector<SettingPlace> findTableSettings(std::string_view text, const WantedSetting& isWanted) {
    return Reader(text, isWanted).read();
}

} // namespace brisk::workbench
