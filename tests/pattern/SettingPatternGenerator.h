#pragma once

#include <random>
#include <string>
#include <vector>

namespace brisk {

// What a generated pattern may hold besides bytes, sets, groups, alternatives, quantifiers and (outside of lookaheads)
// assertions.
struct GeneratorOptions {
    bool lookaheads = false;
    bool backReferences = false;
};

// Makes small regular expressions, texts and replacement formats. The same seed gives the same ones everywhere.
//
// The standard library serves as the measure, so its own faults, and nothing else, are steered around:
// - A reference to a group that took no part fails there; it has to match the empty text. Only groups that certainly
//   took part are referred to.
// - A lookahead is searched there as a text of its own: ^, \b and \B take its place for the beginning of the text. None
//   of them is put into a lookahead. For the same reason a lookahead that may match the empty text fails where an empty
//   match is forbidden; hasEmptyLookahead() tells that replacing cannot be compared.
// - It backtracks without a limit: loops are not nested deeper than it can bear.
class SettingPatternGenerator {
public:
    SettingPatternGenerator(unsigned seed, GeneratorOptions chosen) : random(seed), options(chosen) {}

    std::string pattern();
    std::string text();
    std::string format();

    // The inside of a bracket expression and its end.
    std::string bracketExpression();

    // A run of the grammar's tokens in no order, which is seldom a pattern.
    std::string tokens();

    // A pattern whose lookaheads leave in their groups what led nowhere, and a text for it. A round of its loops takes
    // a byte at least: of two empty ones there is only one here.
    std::string patternWithTraces();
    std::string textWithTraces();

    // A key as games' settings need it, and a settings text that may hold it.
    std::string settingKey();
    std::string settingsText();

    bool hasEmptyLookahead() const { return emptyLookahead; }

private:
    struct Piece {
        std::string pattern;
        bool canBeEmpty = true;
        int loops = 0; // how deep unbounded repetitions are nested
    };

    std::size_t below(std::size_t limit) { return random() % limit; }
    template <std::size_t count>
    const char* oneOf(const char* const (&choices)[count]) {
        return choices[below(count)];
    }

    Piece alternatives(int depth);
    Piece sequence(int depth);
    Piece term(int depth);
    Piece lookahead(int depth);
    Piece group(int depth);
    Piece backReference();
    Piece quantified(const Piece& piece);

    std::mt19937 random;
    GeneratorOptions options;
    int groupCount = 0;
    std::vector<int> certainGroups; // the groups that took part whenever the matcher gets here
    bool isInLookahead = false;
    bool emptyLookahead = false;
};

} // namespace brisk
