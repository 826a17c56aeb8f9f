#include "tools/titles/PatternText.h"
#include "tools/titles/SettingPlace.h"
#include "tools/titles/ValueForm.h"

#include <algorithm>
#include <optional>

namespace brisk::workbench {

namespace {

constexpr std::size_t kNowhere = std::string_view::npos;

struct Attribute {
    std::string_view name;
    std::size_t begin; // of the value
    std::size_t end;
    char quote;
    std::string sign; // the expression for "="
};

struct Element {
    std::string_view name;
    std::vector<Attribute> attributes;
    std::size_t begin = 0;
    std::size_t tagEnd = 0; // behind '>'
    std::size_t end = 0;    // behind the closing tag; 0 while it is open
};

bool isBlank(char byte) {
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}

// Names first, then other words that tell elements apart.
bool isIdentifying(std::string_view name) {
    std::string small;
    for (const char letter : name) {
        small += letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    }
    return small == "name" || small == "id" || small == "key" || small == "type";
}

class Reader {
public:
    Reader(std::string_view content, const WantedSetting& wanted) : text(content), isWanted(wanted) {}

    std::vector<SettingPlace> read() {
        for (std::size_t at = text.find('<'); at != kNowhere; at = text.find('<', at)) {
            if (!skip(at, "<!--", "-->") && !skip(at, "<![CDATA[", "]]>") && !skip(at, "<?", "?>") &&
                !skip(at, "<!", ">")) {
                at = text.substr(at).starts_with("</") ? close(at) : open(at);
            }
        }
        std::stable_sort(found.begin(), found.end(),
                         [](const SettingPlace& one, const SettingPlace& other) { return one.begin < other.begin; });
        return std::move(found);
    }

private:
    bool skip(std::size_t& at, std::string_view opening, std::string_view closing) const {
        if (!text.substr(at).starts_with(opening)) {
            return false;
        }
        const std::size_t end = text.find(closing, at + opening.size());
        at = end == kNowhere ? text.size() : end + closing.size();
        return true;
    }

    std::size_t nameEnd(std::size_t at) const {
        return std::min(text.find_first_of(" \t\r\n/>=<\"'", at), text.size());
    }
    std::size_t skipBlanks(std::size_t at) const {
        while (at < text.size() && isBlank(text[at])) {
            ++at;
        }
        return at;
    }

    std::size_t open(std::size_t at) {
        Element element;
        element.begin = at;
        std::size_t next = nameEnd(at + 1);
        element.name = text.substr(at + 1, next - at - 1);
        if (element.name.empty()) {
            return at + 1;
        }
        while ((next = skipBlanks(next)) < text.size() && text[next] != '>' && text[next] != '/' && text[next] != '<') {
            const std::size_t end = nameEnd(next);
            const std::size_t sign = skipBlanks(end);
            if (end == next || sign >= text.size() || text[sign] != '=') {
                next = std::max(end, next + 1);
                continue;
            }
            const std::size_t quote = skipBlanks(sign + 1);
            if (quote >= text.size() || (text[quote] != '"' && text[quote] != '\'')) {
                next = quote;
                continue;
            }
            const std::size_t close = text.find(text[quote], quote + 1);
            if (close == kNowhere) {
                return text.size();
            }
            element.attributes.push_back({text.substr(next, end - next), quote + 1, close, text[quote],
                                          (sign > end ? "\\s*=" : "=") + std::string(quote > sign + 1 ? "\\s*" : "")});
            next = close + 1;
        }
        const bool isEmpty = next < text.size() && text[next] == '/';
        const std::size_t tagEnd = text.find('>', next);
        element.tagEnd = tagEnd == kNowhere ? text.size() : tagEnd + 1;
        for (std::size_t index = 0; index < element.attributes.size(); ++index) {
            const Attribute& attribute = element.attributes[index];
            const std::string name = std::string(element.name) + ' ' + std::string(attribute.name);
            if (isWanted(name, attribute.begin, attribute.end)) {
                addAttribute(element, index, name);
            }
        }
        next = element.tagEnd;
        if (isEmpty) {
            previous.reset();
        } else if (opened.size() < kDeepest) {
            opened.push_back(std::move(element));
        }
        return next;
    }

    std::size_t close(std::size_t at) {
        const std::size_t end = nameEnd(at + 2);
        const std::string_view name = text.substr(at + 2, end - at - 2);
        const std::size_t tagEnd = text.find('>', end);
        const auto match = std::find_if(opened.rbegin(), opened.rend(),
                                        [name](const Element& element) { return element.name == name; });
        if (match != opened.rend()) {
            // An element that has no child holds a text.
            Element element = std::move(*match);
            const bool isText = match == opened.rbegin() && text.find('<', element.tagEnd) == at;
            opened.erase(match.base() - 1, opened.end());
            if (isText) {
                addText(element, at);
                previous = Sibling{std::string(text.substr(element.begin, at - element.begin)) + "</" +
                                       std::string(name) + '>',
                                   opened.size()};
            } else {
                previous.reset();
            }
        }
        return tagEnd == kNowhere ? text.size() : tagEnd + 1;
    }

    static std::string anyAttributes() { return "(?:\\s[^>]*)?"; }

    std::string written(const Attribute& attribute, bool isWhole) const {
        return escapePattern(attribute.name) + attribute.sign + attribute.quote +
               (isWhole ? escapePattern(text.substr(attribute.begin, attribute.end - attribute.begin)) + attribute.quote
                        : "");
    }

    // Whether an attribute's value is no setting itself, which another player has otherwise: a number, or on and off.
    bool mayBePinned(const Attribute& attribute) const {
        return isIdentifying(attribute.name) ||
               kindOf(text.substr(attribute.begin, attribute.end - attribute.begin)) == ValueKind::Text;
    }

    // What stands in front of an element that begins its line, as no element in a comment does. Nothing elsewhere.
    std::optional<std::string> lineBegin(std::size_t at) const {
        const std::size_t last = text.find_last_not_of(" \t", at == 0 ? 0 : at - 1);
        if (at == 0 || last == kNowhere || text[last] != '\n') {
            return std::nullopt;
        }
        return "\\n" + blanksLike(text.substr(last + 1, at - last - 1));
    }

    // Start tags of this element up to a place behind one of its attributes, the most telling one first.
    std::vector<std::string> tagsWithAttribute(const Element& element, std::size_t count) const {
        std::vector<std::string> tags;
        for (const bool isName : {true, false}) {
            for (std::size_t index = 0; index < count; ++index) {
                if (isIdentifying(element.attributes[index].name) == isName && mayBePinned(element.attributes[index])) {
                    tags.push_back('<' + escapePattern(element.name) + anyAttributes() + "\\s" +
                                   written(element.attributes[index], true));
                }
            }
        }
        return tags;
    }

    // Each of the surroundings alone, then inside of one more of the elements around it.
    void offer(SettingPlace& place, const std::vector<Surroundings>& plain) const {
        place.surroundings = plain;
        std::string around;
        constexpr std::size_t kLevels = 4;
        for (std::size_t level = 0; level < std::min(opened.size(), kLevels); ++level) {
            const Element& parent = opened[opened.size() - 1 - level];
            const std::string name = escapePattern(parent.name);
            std::vector<std::string> tags{'<' + name + (parent.attributes.empty() ? ">" : anyAttributes() + ">")};
            for (const std::string& tag : tagsWithAttribute(parent, parent.attributes.size())) {
                tags.push_back(tag + "[^>]*>");
            }
            const std::string inside = "(?:(?!</" + name + ">)[\\s\\S])*?";
            for (const std::string& tag : tags) {
                for (const Surroundings& each : plain) {
                    place.surroundings.push_back({tag + inside + around + each.before, each.behind});
                }
            }
            around = tags.back() + inside + around;
        }
        for (const Surroundings& each : plain) {
            place.surroundings.push_back({"^[\\s\\S]*?" + each.before, each.behind});
        }
    }

    void addAttribute(const Element& element, std::size_t index, const std::string& name) {
        const Attribute& attribute = element.attributes[index];
        SettingPlace place{name, attribute.begin, attribute.end, SettingPlace::End::Quote, {attribute.quote}, {}};
        const std::string behind(1, attribute.quote);
        const std::string itself = anyAttributes() + "\\s" + written(attribute, false);
        std::vector<Surroundings> plain{{'<' + escapePattern(element.name) + itself, behind}};
        if (const auto front = lineBegin(element.begin)) {
            plain.push_back({*front + plain[0].before, behind});
        }
        for (const std::string& tag : tagsWithAttribute(element, index)) {
            plain.push_back({tag + itself, behind});
        }
        for (std::size_t later = index + 1; later < element.attributes.size(); ++later) {
            if (mayBePinned(element.attributes[later])) {
                plain.push_back(
                    {plain[0].before, behind + anyAttributes() + "\\s" + written(element.attributes[later], true)});
            }
        }
        offer(place, plain);
        found.push_back(std::move(place));
    }

    void addText(const Element& element, std::size_t end) {
        const std::string_view content = text.substr(element.tagEnd, end - element.tagEnd);
        const std::string_view value = trimmed(content);
        const std::size_t begin = value.empty() ? element.tagEnd : static_cast<std::size_t>(value.data() - text.data());
        const std::string name(element.name);
        if (!isWanted(name, begin, begin + value.size())) {
            return;
        }
        SettingPlace place{name, begin, begin + value.size(), SettingPlace::End::Markup, "<", {}};
        const bool hasBlanks = value.size() != content.size();
        if (hasBlanks) {
            place.kind = SettingPlace::End::Blank;
        }
        const std::string behind = (hasBlanks ? "\\s*</" : "</") + escapePattern(name) + '>';
        const std::string inner = hasBlanks && !value.empty() ? "\\s*" : "";
        std::vector<Surroundings> plain{
            {'<' + escapePattern(name) + (element.attributes.empty() ? ">" : anyAttributes() + ">") + inner, behind}};
        if (const auto front = lineBegin(element.begin)) {
            plain.push_back({*front + plain[0].before, behind});
        }
        for (const std::string& tag : tagsWithAttribute(element, element.attributes.size())) {
            plain.push_back({tag + "[^>]*>" + inner, behind});
        }
        // <key>Width</key><integer>1920</integer>
        if (previous && previous->depth == opened.size()) {
            plain.push_back({escapePattern(previous->source) + "\\s*" + plain[0].before, behind});
        }
        offer(place, plain);
        found.push_back(std::move(place));
    }

    static constexpr std::size_t kDeepest = 200;

    struct Sibling {
        std::string source;
        std::size_t depth;
    };

    std::string_view text;
    const WantedSetting& isWanted;
    std::vector<Element> opened;
    std::optional<Sibling> previous; // the element with a text that was closed last
    std::vector<SettingPlace> found;
};

} // namespace

std::vector<SettingPlace> findMarkupSettings(std::string_view text, const WantedSetting& isWanted) {
    return Reader(text, isWanted).read();
}

} // namespace brisk::workbench
