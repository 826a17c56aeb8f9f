#include "pattern/NumberReading.h"

#include <array>
#include <bitset>
#include <string_view>
#include <vector>

namespace brisk {

namespace {

using Kind = PatternNode::Kind;

// How far reading a number has come without a digit.
enum Reading : std::size_t { AtSpace, BehindSign, Lost, Readings };

// Element [a] holds b when some text of a part takes the reading from a to b without meeting a digit in its way.
using Steps = std::array<std::bitset<Readings>, Readings>;

constexpr Steps kNoSteps{};
const Steps kStay{1 << AtSpace, 1 << BehindSign, 1 << Lost};
const Steps kAnyText{7, 6, 4};

Steps operator|(Steps left, const Steps& right) {
    for (std::size_t from = 0; from < Readings; ++from) {
        left[from] |= right[from];
    }
    return left;
}

Steps operator*(const Steps& left, const Steps& right) {
    Steps both{};
    for (std::size_t from = 0; from < Readings; ++from) {
        for (std::size_t by = 0; by < Readings; ++by) {
            both[from] |= left[from][by] ? right[by] : std::bitset<Readings>();
        }
    }
    return both;
}

bool isOneOf(std::size_t byte, std::string_view bytes) {
    return bytes.find(static_cast<char>(byte)) != std::string_view::npos;
}

Steps stepsOfByte(std::size_t byte) {
    if (byte >= '0' && byte <= '9') {
        return {0, 0, 1 << Lost};
    }
    const Reading fromSpace = isOneOf(byte, " \t\n\v\f\r") ? AtSpace : isOneOf(byte, "+-") ? BehindSign : Lost;
    return {1U << fromSpace, 1 << Lost, 1 << Lost};
}

Steps stepsOfSet(const ByteSet& bytes) {
    Steps steps{};
    for (std::size_t byte = 0; byte < bytes.size(); ++byte) {
        steps = bytes[byte] ? steps | stepsOfByte(byte) : steps;
    }
    return steps;
}

// Only whether there is none, one or more rounds makes a difference: three of them reach whatever many can.
Steps stepsOfRepetition(const PatternNode& repetition, const Steps& round) {
    if (repetition.maximum == 0) {
        return kStay;
    }
    const Steps rounds = repetition.maximum == 1 ? round : round | round * round | round * round * round;
    return repetition.minimum == 0 ? rounds | kStay : rounds;
}

// What a part does about the group that is to be a number.
struct Part {
    Steps steps;
    bool canMatch = true;
    bool hasGroup = false; // whether the group takes part whenever this part does
};

Part partOf(const PatternTree& tree, std::size_t index, const std::vector<Part>& parts) {
    const PatternNode& node = tree.nodes[index];
    Part part{kStay};
    switch (node.kind) {
    case Kind::Text:
        for (const char byte : tree.textOf(node)) {
            part.steps = part.steps * stepsOfByte(static_cast<unsigned char>(byte));
        }
        break;
    case Kind::Set:
        part = {stepsOfSet(tree.setOf(node)), tree.setOf(node).any()};
        break;
    case Kind::BackReference:
        part.steps = kAnyText;
        break;
    case Kind::Repetition:
        part = {stepsOfRepetition(node, parts[index + 1].steps), node.minimum == 0 || parts[index + 1].canMatch,
                node.minimum > 0 && parts[index + 1].hasGroup};
        break;
    case Kind::Group:
    case Kind::Lookahead:
        part = {kNoSteps, false, true};
        tree.forEachChild(index, [&](std::size_t child) {
            part.steps = part.steps | parts[child].steps;
            part.canMatch = part.canMatch || parts[child].canMatch;
            part.hasGroup = part.hasGroup && (parts[child].hasGroup || !parts[child].canMatch);
        });
        if (node.kind == Kind::Lookahead) {
            part = {kStay, true, part.hasGroup};
        }
        break;
    case Kind::Sequence:
        tree.forEachChild(index, [&](std::size_t child) {
            part.steps = part.steps * parts[child].steps;
            part.canMatch = part.canMatch && parts[child].canMatch;
            part.hasGroup = part.hasGroup || parts[child].hasGroup;
        });
        break;
    case Kind::TextBegin:
    case Kind::TextEnd:
    case Kind::WordBoundary:
    case Kind::NoWordBoundary:
    case Kind::NegativeLookahead:
        break;
    }
    return part;
}

} // namespace

bool canLackDigits(const PatternTree& tree, std::size_t group) {
    const std::size_t value = tree.indexOfGroup(group);
    if (value == 0) {
        return false;
    }
    std::vector<Part> parts(tree.nodes.size());
    for (std::size_t index = tree.nodes.size(); index-- > 0;) {
        parts[index] = partOf(tree, index, parts);
        parts[index].hasGroup = parts[index].hasGroup || index == value;
    }
    return parts[value].steps[AtSpace].any() || !parts.front().hasGroup;
}

} // namespace brisk
