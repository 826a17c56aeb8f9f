#include "tools/titles/SettingTrial.h"

#include "pattern/PatternTree.h"
#include "titles/TextSettings.h"

#include <algorithm>
#include <regex>
#include <stdexcept>
#include <vector>

namespace brisk::workbench {

namespace {

using Kind = PatternNode::Kind;

const std::string kAbsent(1, '\0');

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

// Short texts that the nodes of a pattern may match: the first alternative everywhere, as few rounds as possible.
// Children come behind their parents, so the texts are put together backwards.
std::vector<std::string> makeSamples(const PatternTree& tree) {
    constexpr std::size_t kMostRounds = 64;
    constexpr std::size_t kLongest = 100'000; // of repetitions in repetitions
    std::vector<std::string> samples(tree.nodes.size());
    for (std::size_t index = tree.nodes.size(); index-- > 0;) {
        const PatternNode& node = tree.nodes[index];
        std::string& sample = samples[index];
        switch (node.kind) {
        case Kind::Text:
            sample = tree.textOf(node);
            break;
        case Kind::Set:
            sample = sampleOf(tree.setOf(node));
            break;
        case Kind::Repetition:
            for (std::size_t round = 0; round < std::min(node.minimum, kMostRounds) && sample.size() < kLongest;
                 ++round) {
                sample += samples[index + 1];
            }
            break;
        case Kind::Group:
            // An alternative that takes something: (?:^|\n) is a line end in the middle of a text.
            for (std::size_t child = index + 1; child < index + node.size && sample.empty();
                 child += tree.nodes[child].size) {
                sample = samples[child];
            }
            break;
        case Kind::Sequence:
            tree.forEachChild(index, [&](std::size_t child) { sample += samples[child]; });
            break;
        default:
            break;
        }
    }
    return samples;
}

// Whether the text that the key finds is what is wanted.
bool isRight(const std::string& found, const WantedValue& wanted, const std::string& content, const std::string& key) {
    if (!wanted.isNumber || found == kAbsent) {
        return found == wanted.text;
    }
    try {
        return std::to_string(getTextNumber(content, key, 0)) == wanted.text;
    } catch (const std::logic_error&) {
        return true; // no number, or one beyond 32 bits: another rule's concern
    }
}

// What the key finds in the text instead of what is wanted, in words.
std::optional<std::string> readBack(const std::string& content, const std::string& key, const WantedValue& wanted) {
    const std::string found = getTextValue(content, key, kAbsent);
    if (isRight(found, wanted, content, key)) {
        return std::nullopt;
    }
    return found == kAbsent ? "it finds nothing" : "it finds \"" + found + "\" instead of \"" + wanted.text + "\"";
}

// The texts that may stand in front of a place so that a setting behind it is found: nothing, and the beginnings of
// what the key needs in front of the value.
std::vector<std::string> frontsFor(const std::string& key) {
    constexpr std::size_t kMost = 200; // of a section's or an element's name
    std::vector<std::string> fronts{""};
    const PatternTree tree = parsePattern(key);
    if (const std::size_t first = tree.indexOfGroup(1); first != 0) {
        const std::string sample = makeSamples(tree)[first];
        for (std::size_t size = 1; size <= std::min(sample.size(), kMost); ++size) {
            fronts.push_back(sample.substr(0, size));
        }
    }
    return fronts;
}

} // namespace

std::optional<std::string> tryWriting(const std::string& key, const WantedValue& wanted) {
    if (wanted.text.empty() || wanted.text.find('$') != std::string::npos) {
        return std::nullopt;
    }
    try {
        const PatternTree tree = parsePattern(key);
        if (tree.indexOfGroup(2) == 0) {
            return std::nullopt;
        }
        std::string content = "\n" + makeSamples(tree).front() + "\nA=3\n";
        if (getTextValue(content, key, kAbsent) == kAbsent) {
            return std::nullopt;
        }
        setTextValue(content, key, wanted.text);
        return readBack(content, key, wanted);
    } catch (const std::regex_error&) {
        return std::nullopt;
    }
}

std::optional<std::string> tryCreation(const std::string& key, const WantedValue& wanted, const std::string& createKey,
                                       const std::string& createValue) {
    const std::size_t star = createValue.find('*');
    if (star == std::string::npos) {
        return std::nullopt;
    }
    const std::string created = std::string(createValue).replace(star, 1, wanted.text);
    try {
        const std::string place = makeSamples(parsePattern(createKey)).front();
        const std::string behind = place.ends_with('\n') ? "A=3\n" : "\nA=3\n";
        std::optional<std::string> fault;
        for (const std::string& front : frontsFor(key)) {
            std::string content = "\n" + front + place + behind;
            const std::string before = content;
            if (getTextValue(content, key, kAbsent) != kAbsent) {
                continue;
            }
            setTextValue(content, createKey, created);
            if (content == before) {
                continue;
            }
            const auto found = readBack(content, key, wanted);
            if (!found) {
                return std::nullopt;
            }
            fault = fault ? fault : found;
        }
        return fault;
    } catch (const std::regex_error&) {
        return std::nullopt;
    }
}

} // namespace brisk::workbench
