#include "pattern/PatternTree.h"

#include "pattern/PatternReader.h"

#include <algorithm>
#include <utility>

namespace brisk {

namespace {

namespace codes = std::regex_constants;
using Kind = PatternNode::Kind;

// PatternProgram is made recursively. Settings need two or three levels.
constexpr std::size_t kMaximumNesting = 200;

// Settings need three.
constexpr std::size_t kMaximumGroups = 9000;

// A setting's key has about as many, and seldom more.
constexpr std::size_t kUsualNodes = 24;

constexpr std::size_t kMaximumRepetitions = std::numeric_limits<int>::max();

class Parser {
public:
    explicit Parser(std::string_view pattern) : reader(pattern) {
        tree.nodes.reserve(std::min(pattern.size(), kUsualNodes));
        tree.texts.reserve(pattern.size());
        open(Kind::Group);
    }

    PatternTree parse() {
        while (!reader.atEnd()) {
            begin = reader.position();
            takeTerm(reader.take(codes::error_escape));
        }
        if (openGroups.size() > 1) {
            throw PatternError(codes::error_paren, node(openGroups.back().group).span.begin);
        }
        begin = reader.position();
        close();
        return std::move(tree);
    }

private:
    struct OpenGroup {
        std::size_t group;
        std::size_t sequence; // its last one
    };

    PatternNode& node(std::size_t index) { return tree.nodes[index]; }

    void takeTerm(char first) {
        switch (first) {
        case '^':
            add(Kind::TextBegin);
            break;
        case '$':
            add(Kind::TextEnd);
            break;
        case '.':
            addSet(bytesOfDot());
            break;
        case '[':
            addSet(takeBracketExpression(reader));
            break;
        case '\\':
            takeEscape(reader.take(codes::error_escape));
            break;
        case '(':
            openGroup();
            break;
        case ')':
            if (openGroups.size() == 1) {
                throw PatternError(codes::error_paren, begin);
            }
            close();
            break;
        case '|':
            endSequence();
            beginSequence();
            break;
        case '*':
            repeat(0, PatternNode::kUnbounded);
            break;
        case '+':
            repeat(1, PatternNode::kUnbounded);
            break;
        case '?':
            repeat(0, 1);
            break;
        case '{':
            takeCounts();
            break;
        default:
            addByte(first);
        }
    }

    void takeEscape(char letter) {
        if (letter >= '1' && letter <= '9') {
            reader.stepBack();
            addBackReference(reader.takeNumber(kMaximumGroups + 1, codes::error_backref));
            return;
        }
        switch (letter) {
        case 'b':
            add(Kind::WordBoundary);
            break;
        case 'B':
            add(Kind::NoWordBoundary);
            break;
        case 'd':
        case 'D':
        case 's':
        case 'S':
        case 'w':
        case 'W':
            addSet(bytesOfClassEscape(letter));
            break;
        default:
            addByte(reader.takeCharacterEscape(letter));
        }
    }

    void openGroup() {
        if (openGroups.size() > kMaximumNesting) {
            throw PatternError(codes::error_complexity, begin);
        }
        if (!reader.takeIf('?')) {
            if (tree.groupCount == kMaximumGroups) {
                throw PatternError(codes::error_complexity, begin);
            }
            open(Kind::Group);
            node(openGroups.back().group).number = ++tree.groupCount;
            return;
        }
        switch (reader.take(codes::error_paren)) {
        case ':':
            open(Kind::Group);
            break;
        case '=':
            open(Kind::Lookahead);
            break;
        case '!':
            open(Kind::NegativeLookahead);
            break;
        default:
            throw PatternError(codes::error_paren, reader.position() - 1);
        }
    }

    void open(Kind kind) {
        openGroups.push_back({tree.nodes.size(), 0});
        tree.nodes.push_back({kind, {begin, begin}});
        beginSequence();
    }

    void close() {
        endSequence();
        last = openGroups.back().group;
        openGroups.pop_back();
        node(last).span.end = reader.position();
        node(last).size = tree.nodes.size() - last;
        canRepeat = node(last).kind == Kind::Group;
    }

    void beginSequence() {
        openGroups.back().sequence = tree.nodes.size();
        tree.nodes.push_back({Kind::Sequence, {reader.position(), reader.position()}});
        canRepeat = false;
        isText = false;
    }

    // Where the next term begins, which is "|", ")" or the pattern's end.
    void endSequence() {
        const std::size_t sequence = openGroups.back().sequence;
        node(sequence).span.end = begin;
        node(sequence).size = tree.nodes.size() - sequence;
        isText = false;
    }

    PatternNode& add(Kind kind, bool isAtom = false) {
        last = tree.nodes.size();
        canRepeat = isAtom;
        isText = kind == Kind::Text;
        return tree.nodes.emplace_back(PatternNode{kind, {begin, reader.position()}});
    }

    void addSet(const ByteSet& bytes) {
        add(Kind::Set, true).number = tree.sets.size();
        tree.sets.push_back(bytes);
    }

    void addByte(char byte) {
        if (!isText) {
            add(Kind::Text, true).number = tree.texts.size();
        }
        lastByteBegin = begin;
        tree.texts += byte;
        ++node(last).maximum;
        node(last).span.end = reader.position();
    }

    void addBackReference(std::size_t number) {
        const bool isOpen =
            std::any_of(openGroups.begin() + 1, openGroups.end(),
                        [this, number](const OpenGroup& other) { return node(other.group).number == number; });
        if (number > tree.groupCount || isOpen) {
            throw PatternError(codes::error_backref, begin);
        }
        add(Kind::BackReference, true).number = number;
    }

    void takeCounts() {
        requireAtom();
        const std::size_t minimum = reader.takeNumber(kMaximumRepetitions, codes::error_badbrace);
        std::size_t maximum = minimum;
        if (reader.takeIf(',')) {
            maximum = PatternNode::kUnbounded;
            if (!reader.isNext('}')) {
                const std::size_t place = reader.position();
                maximum = reader.takeNumber(kMaximumRepetitions, codes::error_badbrace);
                if (maximum < minimum) {
                    throw PatternError(codes::error_badbrace, place);
                }
            }
        }
        if (!reader.takeIf('}')) {
            throw PatternError(codes::error_brace, reader.position());
        }
        repeat(minimum, maximum);
    }

    void requireAtom() const {
        if (!canRepeat) {
            throw PatternError(codes::error_badrepeat, begin);
        }
    }

    void repeat(std::size_t minimum, std::size_t maximum) {
        requireAtom();
        if (isText) {
            splitText();
        }
        const bool isLazy = reader.takeIf('?');
        PatternNode repetition{Kind::Repetition, {node(last).span.begin, reader.position()}};
        repetition.size += node(last).size;
        repetition.minimum = minimum;
        repetition.maximum = maximum;
        repetition.isLazy = isLazy;
        tree.nodes.insert(tree.nodes.begin() + static_cast<std::ptrdiff_t>(last), repetition);
        canRepeat = false;
        isText = false;
    }

    // A quantifier is for the last byte only.
    void splitText() {
        PatternNode& text = node(last);
        if (text.maximum == 1) {
            return;
        }
        --text.maximum;
        text.span.end = lastByteBegin;
        PatternNode byte{Kind::Text, {lastByteBegin, begin}};
        byte.number = text.number + text.maximum;
        byte.maximum = 1;
        last = tree.nodes.size();
        tree.nodes.push_back(byte);
    }

    PatternReader reader;
    PatternTree tree;
    std::vector<OpenGroup> openGroups; // the first one is the whole pattern
    std::size_t begin = 0;             // of the term that is read
    std::size_t last = 0;              // the term read last
    bool canRepeat = false;            // whether a quantifier may follow it
    bool isText = false;               // whether another byte belongs to it
    std::size_t lastByteBegin = 0;     // then: where its last byte begins
};

} // namespace

std::size_t PatternTree::indexOfGroup(std::size_t number) const {
    const auto isGroup = [number](const PatternNode& node) {
        return node.kind == Kind::Group && node.number == number;
    };
    const auto found = std::find_if(nodes.begin() + 1, nodes.end(), isGroup);
    return number == 0 || found == nodes.end() ? 0 : static_cast<std::size_t>(found - nodes.begin());
}

PatternTree parsePattern(std::string_view pattern) {
    return Parser(pattern).parse();
}

} // namespace brisk
