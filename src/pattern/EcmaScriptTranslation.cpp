#include "pattern/EcmaScriptTranslation.h"

#include "pattern/PatternTree.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace brisk {

namespace {

using Kind = PatternNode::Kind;

std::string hexadecimal(std::size_t byte) {
    constexpr char kDigits[] = "0123456789abcdef";
    return {'\\', 'x', kDigits[byte / 16], kDigits[byte % 16]};
}

bool isPlain(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9');
}

class Translator {
public:
    explicit Translator(std::string_view source) : pattern(source), tree(parsePattern(source)) {}

    std::string translate() {
        std::vector<std::size_t> open; // the node and all that it is part of, from the outermost on
        for (std::size_t next = 0; next <= tree.nodes.size(); ++next) {
            while (!open.empty() && next == open.back() + tree.nodes[open.back()].size) {
                writeEnd(open.back());
                open.pop_back();
            }
            if (next < tree.nodes.size()) {
                const bool isAlternative = tree.nodes[next].kind == Kind::sequence && next > open.back() + 1;
                output += isAlternative ? "|" : "";
                writeBegin(next);
                open.push_back(next);
            }
        }
        return std::move(output);
    }

private:
    void writeBegin(std::size_t index) {
        const PatternNode& node = tree.nodes[index];
        switch (node.kind) {
        case Kind::text:
            writeText(tree.textOf(node));
            break;
        case Kind::set:
            writeSet(tree.setOf(node));
            break;
        case Kind::textBegin:
            output += "\\A";
            break;
        case Kind::textEnd:
            output += "\\z";
            break;
        case Kind::wordBoundary:
            output += "\\b";
            break;
        case Kind::noWordBoundary:
            output += "\\B";
            break;
        case Kind::backReference:
            writeBackReference(std::to_string(node.number));
            break;
        case Kind::repetition:
            output += needsGroup(index) ? "(?:" : "";
            break;
        case Kind::group:
            output += index == 0 ? "" : node.number == 0 ? "(?:" : "(";
            break;
        case Kind::lookahead:
            output += "(?=";
            break;
        case Kind::negativeLookahead:
            output += "(?!";
            break;
        case Kind::sequence:
            // The empty text is said outright.
            output += node.size == 1 ? "(?:)" : "";
            break;
        }
    }

    void writeEnd(std::size_t index) {
        const Kind kind = tree.nodes[index].kind;
        if (kind == Kind::repetition) {
            output += needsGroup(index) ? ")" : "";
            writeQuantifier(index);
        } else if (index != 0 && (kind == Kind::group || kind == Kind::lookahead || kind == Kind::negativeLookahead)) {
            output += ')';
        }
    }

    std::string_view quantifierOf(std::size_t repetition) const {
        const std::size_t begin = tree.nodes[repetition + 1].span.end;
        return pattern.substr(begin, tree.nodes[repetition].span.end - begin);
    }

    // Where an expression begins with a single byte repeated lazily up to a bound, Boost.Regex skips places at which a
    // match could begin. It does not look into groups.
    bool needsGroup(std::size_t repetition) const {
        const PatternNode& node = tree.nodes[repetition];
        return node.isLazy && node.maximum != PatternNode::unbounded && quantifierOf(repetition).front() == '{';
    }

    void writeQuantifier(std::size_t repetition) {
        const PatternNode& node = tree.nodes[repetition];
        const std::string_view quantifier = quantifierOf(repetition);
        if (quantifier.front() != '{') {
            output += quantifier;
            return;
        }
        // The numbers anew, since they may have been too large.
        output += '{' + std::to_string(node.minimum);
        if (quantifier.find(',') != std::string_view::npos) {
            output += ',';
            output += node.maximum == PatternNode::unbounded ? "" : std::to_string(node.maximum);
        }
        output += node.isLazy ? "}?" : "}";
    }

    void writeText(std::string_view text) {
        for (const char byte : text) {
            if (isPlain(byte)) {
                output += byte;
            } else {
                output += hexadecimal(static_cast<unsigned char>(byte));
            }
        }
    }

    void writeSet(const ByteSet& bytes) {
        if (bytes.none()) {
            output += "(?:(?!))";
            return;
        }
        output += '[';
        for (std::size_t first = 0; first < bytes.size(); ++first) {
            if (!bytes[first]) {
                continue;
            }
            std::size_t end = first;
            while (end + 1 < bytes.size() && bytes[end + 1]) {
                ++end;
            }
            output += hexadecimal(first);
            if (end > first) {
                output += '-' + hexadecimal(end);
            }
            first = end;
        }
        output += ']';
    }

    // A reference to a group that took no part in the match so far matches the empty text.
    void writeBackReference(const std::string& digits) { output += "(?:(?(" + digits + ")\\g{" + digits + "}))"; }

    std::string_view pattern;
    PatternTree tree;
    std::string output;
};

} // namespace

std::string translateEcmaScript(std::string_view pattern) {
    return Translator(pattern).translate();
}

} // namespace brisk
