#pragma once

#include "pattern/ByteSet.h"
#include "pattern/PatternError.h"

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace brisk {

// The bytes [begin, end) of a pattern.
struct PatternSpan {
    std::size_t begin;
    std::size_t end;

    bool operator==(const PatternSpan&) const = default;
};

struct PatternNode {
    enum class Kind {
        Text,              // bytes, each one for itself: PatternTree::textOf; at least one
        Set,               // one byte of several: PatternTree::setOf
        TextBegin,         // ^
        TextEnd,           // $
        WordBoundary,      // \b
        NoWordBoundary,    // \B
        BackReference,     // what group `number` matched
        Repetition,        // its child, `minimum` to `maximum` times
        Group,             // one of its children, which are sequences; captures if `number` is not 0
        Lookahead,         // the same, but steps over nothing
        NegativeLookahead, // none of its children, which are sequences
        Sequence,          // all of its children, one after the other; it may have none
    };

    static constexpr std::size_t kUnbounded = std::numeric_limits<std::size_t>::max();

    Kind kind;
    PatternSpan span;
    std::size_t size = 1; // how many nodes it consists of: itself and all below it
    std::size_t number = 0;
    std::size_t minimum = 0;
    std::size_t maximum = 0;
    bool isLazy = false;
};

// What an ECMAScript regular expression consists of. Node 0 is the whole pattern, a group that captures nothing. A node
// is followed by its children, each of them with all that is below it: a walk through `nodes` sees parents before their
// children, a walk backwards children before their parents, and neither needs recursion.
struct PatternTree {
    std::string_view textOf(const PatternNode& text) const {
        return std::string_view(texts).substr(text.number, text.maximum);
    }
    const ByteSet& setOf(const PatternNode& set) const { return sets[set.number]; }

    // The node of a group, from 1 on; 0 where there is no such group.
    std::size_t indexOfGroup(std::size_t number) const;

    // Calls visit(index) for each child of a node, from the first one on.
    template <typename Visit>
    void forEachChild(std::size_t parent, const Visit& visit) const {
        const std::size_t end = parent + nodes[parent].size;
        for (std::size_t child = parent + 1; child < end; child += nodes[child].size) {
            visit(child);
        }
    }

    std::size_t childCount(std::size_t parent) const {
        std::size_t count = 0;
        forEachChild(parent, [&count](std::size_t) { ++count; });
        return count;
    }

    // How a property, given by node, is spread among the children of one; without children `all` and not `any`.
    struct Spread {
        bool all = true;
        bool any = false;
    };
    Spread amongChildren(std::size_t parent, const std::vector<bool>& property) const {
        Spread spread;
        forEachChild(parent, [&](std::size_t child) {
            spread.all = spread.all && property[child];
            spread.any = spread.any || property[child];
        });
        return spread;
    }

    std::vector<PatternNode> nodes;
    std::size_t groupCount = 0;
    std::string texts;         // of all texts: `maximum` bytes from `number` on
    std::vector<ByteSet> sets; // of all sets, by `number`
};

// Throws PatternError where the pattern does not follow the grammar, nests groups deeper than 200 levels or has more
// than 9,000 that capture. Needs no stack for nested groups.
PatternTree parsePattern(std::string_view pattern);

} // namespace brisk
