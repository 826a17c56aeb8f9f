#include "pattern/EcmaScriptTranslation.h"

#include "pattern/ByteSet.h"
#include "pattern/PatternReader.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

namespace brisk {

namespace {

namespace codes = std::regex_constants;

// Boost.Regex compiles nested groups recursively. Settings need two or three levels.
constexpr std::size_t kMaximumNesting = 200;

// Boost.Regex takes some group numbers from 9999 on for something else.
constexpr std::size_t kMaximumGroups = 9000;

constexpr std::size_t kMaximumRepetitions = std::numeric_limits<int>::max();

std::string hexadecimal(std::size_t byte) {
    constexpr char kDigits[] = "0123456789abcdef";
    return {'\\', 'x', kDigits[byte / 16], kDigits[byte % 16]};
}

bool isPlain(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9');
}

class Translator {
public:
    explicit Translator(std::string_view pattern) : reader(pattern) {}

    std::string translate() {
        while (!reader.atEnd()) {
            translateTerm(reader.take(codes::error_escape));
        }
        if (!openGroups.empty()) {
            throw std::regex_error(codes::error_paren);
        }
        endAlternative();
        return std::move(output);
    }

private:
    struct OpenGroup {
        std::size_t number; // 0 for a group that captures nothing
        bool isLookahead;
        std::size_t begin; // where it begins in the output
    };

    void translateTerm(char first) {
        switch (first) {
        case '^':
            writeAssertion("\\A");
            break;
        case '$':
            writeAssertion("\\z");
            break;
        case '.':
            writeSet(bytesOfDot());
            break;
        case '[':
            writeSet(takeBracketExpression(reader));
            break;
        case '\\':
            translateEscape(reader.take(codes::error_escape));
            break;
        case '(':
            openGroup();
            break;
        case ')':
            closeGroup();
            break;
        case '|':
            endAlternative();
            output += '|';
            break;
        case '*':
        case '+':
        case '?':
            requireAtom();
            writeQuantifier({first}, false);
            break;
        case '{':
            requireAtom();
            takeCounts();
            break;
        default:
            writeByte(first);
        }
    }

    void translateEscape(char letter) {
        if (letter >= '1' && letter <= '9') {
            reader.stepBack();
            writeBackReference(reader.takeNumber(kMaximumGroups + 1, codes::error_backref));
            return;
        }
        switch (letter) {
        case 'b':
        case 'B':
            writeAssertion(letter == 'b' ? "\\b" : "\\B");
            break;
        case 'd':
        case 'D':
        case 's':
        case 'S':
        case 'w':
        case 'W':
            writeSet(bytesOfClassEscape(letter));
            break;
        default:
            writeByte(reader.takeCharacterEscape(letter));
        }
    }

    void openGroup() {
        if (openGroups.size() == kMaximumNesting) {
            throw std::regex_error(codes::error_complexity);
        }
        OpenGroup group{0, false, output.size()};
        if (!reader.takeIf('?')) {
            if (groupCount == kMaximumGroups) {
                throw std::regex_error(codes::error_complexity);
            }
            group.number = ++groupCount;
            output += '(';
        } else {
            const char kind = reader.take(codes::error_paren);
            if (kind != ':' && kind != '=' && kind != '!') {
                throw std::regex_error(codes::error_paren);
            }
            group.isLookahead = kind != ':';
            output += {'(', '?', kind};
        }
        openGroups.push_back(group);
        last = Last::nothing;
    }

    void closeGroup() {
        if (openGroups.empty()) {
            throw std::regex_error(codes::error_paren);
        }
        endAlternative();
        output += ')';
        last = openGroups.back().isLookahead ? Last::assertion : Last::atom;
        atomBegin = openGroups.back().begin;
        openGroups.pop_back();
    }

    // An alternative without a term matches the empty text, which is said outright.
    void endAlternative() {
        if (last == Last::nothing) {
            output += "(?:)";
        }
        last = Last::nothing;
    }

    void requireAtom() const {
        if (last != Last::atom) {
            throw std::regex_error(codes::error_badrepeat);
        }
    }

    void takeCounts() {
        const std::size_t minimum = reader.takeNumber(kMaximumRepetitions, codes::error_badbrace);
        std::string counts = '{' + std::to_string(minimum);
        bool isBounded = true;
        if (reader.takeIf(',')) {
            counts += ',';
            isBounded = !reader.isNext('}');
            if (isBounded) {
                const std::size_t maximum = reader.takeNumber(kMaximumRepetitions, codes::error_badbrace);
                if (maximum < minimum) {
                    throw std::regex_error(codes::error_badbrace);
                }
                counts += std::to_string(maximum);
            }
        }
        if (!reader.takeIf('}')) {
            throw std::regex_error(codes::error_brace);
        }
        writeQuantifier(counts + '}', isBounded);
    }

    void writeQuantifier(const std::string& quantifier, bool isBounded) {
        const bool isLazy = reader.takeIf('?');
        // Where an expression begins with a single byte repeated lazily up to a bound, Boost.Regex skips places at
        // which a match could begin. It does not look into groups.
        if (isLazy && isBounded) {
            output.insert(atomBegin, "(?:");
            output += ')';
        }
        output += quantifier;
        if (isLazy) {
            output += '?';
        }
        last = Last::quantifier;
    }

    void writeAssertion(std::string_view assertion) {
        output += assertion;
        last = Last::assertion;
    }

    void writeByte(char byte) {
        atomBegin = output.size();
        if (isPlain(byte)) {
            output += byte;
        } else {
            output += hexadecimal(static_cast<unsigned char>(byte));
        }
        last = Last::atom;
    }

    void writeSet(const ByteSet& bytes) {
        atomBegin = output.size();
        if (bytes.none()) {
            output += "(?:(?!))";
        } else {
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
        last = Last::atom;
    }

    // A reference to a group that took no part in the match so far matches the empty text.
    void writeBackReference(std::size_t number) {
        const bool isOpen = std::any_of(openGroups.begin(), openGroups.end(),
                                        [number](const OpenGroup& group) { return group.number == number; });
        if (number > groupCount || isOpen) {
            throw std::regex_error(codes::error_backref);
        }
        atomBegin = output.size();
        const std::string digits = std::to_string(number);
        output += "(?:(?(" + digits + ")\\g{" + digits + "}))";
        last = Last::atom;
    }

    // What the text written last is: it decides whether a quantifier may follow.
    enum class Last { nothing, assertion, atom, quantifier };

    PatternReader reader;
    std::string output;
    std::vector<OpenGroup> openGroups;
    std::size_t groupCount = 0;
    std::size_t atomBegin = 0; // where the last atom begins in the output
    Last last = Last::nothing;
};

} // namespace

std::string translateEcmaScript(std::string_view pattern) {
    return Translator(pattern).translate();
}

} // namespace brisk
