#include "tools/titles/CreationTrial.h"

#include "titles/TextSettings.h"
#include "tools/titles/TitleParts.h"

#include <algorithm>
#include <regex>
#include <vector>

namespace brisk::workbench {

namespace {

using Kind = PatternNode::Kind;

char sampleOf(const ByteSet& bytes) {
    for (const char likely : {'a', '0', ' ', '\n', '='}) {
        if (bytes[static_cast<unsigned char>(likely)]) {
            return likely;
        }
    }
    for (std::size_t byte = 0; byte < bytes.size(); ++byte) {
        if (bytes[byte]) {
            return static_cast<char>(byte);
        }
    }
    return 'a';
}

// A short text that the pattern may match: the first alternative everywhere, as few rounds as possible. Children come
// behind their parents, so the texts are put together backwards.
std::string makeSample(const PatternTree& tree) {
    constexpr std::size_t kMostRounds = 64;
    std::vector<std::string> samples(tree.nodes.size());
    for (std::size_t index = tree.nodes.size(); index-- > 0;) {
        const PatternNode& node = tree.nodes[index];
        switch (node.kind) {
        case Kind::text:
            samples[index] = tree.textOf(node);
            break;
        case Kind::set:
            samples[index] = sampleOf(tree.setOf(node));
            break;
        case Kind::repetition:
            for (std::size_t round = 0; round < std::min(node.minimum, kMostRounds); ++round) {
                samples[index] += samples[index + 1];
            }
            break;
        case Kind::group: {
            // An alternative that takes something: (?:^|\n) is a line end in the middle of a text.
            for (std::size_t child = index + 1; child < index + node.size && samples[index].empty();
                 child += tree.nodes[child].size) {
                samples[index] = samples[child];
            }
            break;
        }
        case Kind::sequence:
            for (std::size_t child = index + 1; child < index + node.size; child += tree.nodes[child].size) {
                samples[index] += samples[child];
            }
            break;
        default:
            break;
        }
    }
    return samples.front();
}

// What the template becomes: its first star is the wanted value.
std::string createdText(const JsonValue& field, const std::string& wanted) {
    std::string created = findText(field, "create_value")->text();
    if (const std::size_t star = created.find('*'); star != std::string::npos) {
        created.replace(star, 1, wanted);
    }
    return created;
}

std::string wantedText(const JsonValue& field) {
    if (const JsonValue* text = findText(field, "value"); text && !text->text().empty()) {
        return text->text();
    }
    const JsonValue* number = findNumber(field, "value");
    return number ? number->scalar.dump() : "0";
}

} // namespace

std::optional<std::string> tryCreation(const JsonValue& field, const PatternTree& createKey) {
    const JsonValue* key = findText(field, "key");
    if (!key || !findText(field, "create_value") ||
        findText(field, "create_value")->text().find('*') == std::string::npos) {
        return std::nullopt;
    }
    const std::string place = findText(field, "create_key")->text();
    const std::string wanted = wantedText(field);
    const std::string absent(1, '\0');
    try {
        std::string content = "\n" + makeSample(createKey) + "\n";
        const std::string before = content;
        if (getTextValue(content, key->text(), absent) != absent) {
            return std::nullopt;
        }
        setTextValue(content, place, createdText(field, wanted));
        if (content == before) {
            return std::nullopt;
        }
        const std::string found = getTextValue(content, key->text(), absent);
        if (found == wanted) {
            return std::nullopt;
        }
        return found == absent ? "it finds nothing" : "it finds \"" + found + "\" instead of \"" + wanted + "\"";
    } catch (const std::regex_error&) {
        return std::nullopt;
    }
}

} // namespace brisk::workbench
