#include "titles/EcmaScriptTranslation.h"

#include "titles/ByteSet.h"
#include "titles/PatternReader.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

namespace brisk {

namespace {

namespace codes = std::regex_constants;

// Boost.Regex compiles nested groups recursively. Settings need two or three levels.
constexpr std::size_t maximumNesting = 200;

// Boost.Regex takes some group numbers from 9999 on for something else.
constexpr std::size_t maximumGroups = 9000;

constexpr std::size_t maximumRepetitions = std::numeric_limits<int>::max();

std::string hexadecimal(std::size_t byte) {
    constexpr char digits[] = "0123456789abcdef";
    return {'\\', 'x', digits[byte / 16], digits[byte % 16]};
}

bool isPlain(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9');
}

class Translator {
public:
    explicit Translator(std::string_view pattern) : reader_(pattern) {}

    std::string translate() {
        while (!reader_.atEnd()) {
            translateTerm(reader_.take(codes::error_escape));
        }
        if (!openGroups_.empty()) {
            throw std::regex_error(codes::error_paren);
        }
        endAlternative();
        return std::move(output_);
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
            writeSet(takeBracketExpression(reader_));
            break;
        case '\\':
            translateEscape(reader_.take(codes::error_escape));
            break;
        case '(':
            openGroup();
            break;
        case ')':
            closeGroup();
            break;
        case '|':
            endAlternative();
            output_ += '|';
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
            reader_.stepBack();
            writeBackReference(reader_.takeNumber(maximumGroups + 1, codes::error_backref));
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
            writeByte(reader_.takeCharacterEscape(letter));
        }
    }

    void openGroup() {
        if (openGroups_.size() == maximumNesting) {
            throw std::regex_error(codes::error_complexity);
        }
        OpenGroup group{0, false, output_.size()};
        if (!reader_.takeIf('?')) {
            if (groupCount_ == maximumGroups) {
                throw std::regex_error(codes::error_complexity);
            }
            group.number = ++groupCount_;
            output_ += '(';
        } else {
            const char kind = reader_.take(codes::error_paren);
            if (kind != ':' && kind != '=' && kind != '!') {
                throw std::regex_error(codes::error_paren);
            }
            group.isLookahead = kind != ':';
            output_ += {'(', '?', kind};
        }
        openGroups_.push_back(group);
        last_ = Last::nothing;
    }

    void closeGroup() {
        if (openGroups_.empty()) {
            throw std::regex_error(codes::error_paren);
        }
        endAlternative();
        output_ += ')';
        last_ = openGroups_.back().isLookahead ? Last::assertion : Last::atom;
        atomBegin_ = openGroups_.back().begin;
        openGroups_.pop_back();
    }

    // An alternative without a term matches the empty text, which is said outright.
    void endAlternative() {
        if (last_ == Last::nothing) {
            output_ += "(?:)";
        }
        last_ = Last::nothing;
    }

    void requireAtom() const {
        if (last_ != Last::atom) {
            throw std::regex_error(codes::error_badrepeat);
        }
    }

    void takeCounts() {
        const std::size_t minimum = reader_.takeNumber(maximumRepetitions, codes::error_badbrace);
        std::string counts = '{' + std::to_string(minimum);
        bool isBounded = true;
        if (reader_.takeIf(',')) {
            counts += ',';
            isBounded = !reader_.isNext('}');
            if (isBounded) {
                const std::size_t maximum = reader_.takeNumber(maximumRepetitions, codes::error_badbrace);
                if (maximum < minimum) {
                    throw std::regex_error(codes::error_badbrace);
                }
                counts += std::to_string(maximum);
            }
        }
        if (!reader_.takeIf('}')) {
            throw std::regex_error(codes::error_brace);
        }
        writeQuantifier(counts + '}', isBounded);
    }

    void writeQuantifier(const std::string& quantifier, bool isBounded) {
        const bool isLazy = reader_.takeIf('?');
        // Where an expression begins with a single byte repeated lazily up to a bound, Boost.Regex skips places at
        // which a match could begin. It does not look into groups.
        if (isLazy && isBounded) {
            output_.insert(atomBegin_, "(?:");
            output_ += ')';
        }
        output_ += quantifier;
        if (isLazy) {
            output_ += '?';
        }
        last_ = Last::quantifier;
    }

    void writeAssertion(std::string_view assertion) {
        output_ += assertion;
        last_ = Last::assertion;
    }

    void writeByte(char byte) {
        atomBegin_ = output_.size();
        if (isPlain(byte)) {
            output_ += byte;
        } else {
            output_ += hexadecimal(static_cast<unsigned char>(byte));
        }
        last_ = Last::atom;
    }

    void writeSet(const ByteSet& bytes) {
        atomBegin_ = output_.size();
        if (bytes.none()) {
            output_ += "(?:(?!))";
        } else {
            output_ += '[';
            for (std::size_t first = 0; first < bytes.size(); ++first) {
                if (!bytes[first]) {
                    continue;
                }
                std::size_t last = first;
                while (last + 1 < bytes.size() && bytes[last + 1]) {
                    ++last;
                }
                output_ += hexadecimal(first);
                if (last > first) {
                    output_ += '-' + hexadecimal(last);
                }
                first = last;
            }
            output_ += ']';
        }
        last_ = Last::atom;
    }

    // A reference to a group that took no part in the match so far matches the empty text.
    void writeBackReference(std::size_t number) {
        const bool isOpen = std::any_of(openGroups_.begin(), openGroups_.end(),
                                        [number](const OpenGroup& group) { return group.number == number; });
        if (number > groupCount_ || isOpen) {
            throw std::regex_error(codes::error_backref);
        }
        atomBegin_ = output_.size();
        const std::string digits = std::to_string(number);
        output_ += "(?:(?(" + digits + ")\\g{" + digits + "}))";
        last_ = Last::atom;
    }

    // What the text written last is: it decides whether a quantifier may follow.
    enum class Last { nothing, assertion, atom, quantifier };

    PatternReader reader_;
    std::string output_;
    std::vector<OpenGroup> openGroups_;
    std::size_t groupCount_ = 0;
    std::size_t atomBegin_ = 0; // where the last atom begins in the output
    Last last_ = Last::nothing;
};

} // namespace

std::string translateEcmaScript(std::string_view pattern) {
    return Translator(pattern).translate();
}

} // namespace brisk
