#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace brisk {

// What replaces each match. $$ is a dollar sign, $& the match, $` and $' the text before and after it, $n and $nn group
// n; every other dollar sign stands for itself. A group number has one or two digits, never more, and 0 is the whole
// match; a number that no group has stands for nothing.
class ReplacementFormat {
public:
    // The format must outlive this.
    explicit ReplacementFormat(std::string_view format);

    // Appends what the format stands for to output. Element n of groups is group n.
    void append(std::string& output, const std::vector<std::string_view>& groups, std::string_view before,
                std::string_view after) const;

private:
    struct Piece {
        enum class Kind { Text, Group, Before, After };
        Kind kind;
        std::string_view text{};
        std::size_t group = 0;
    };

    std::size_t readReference(std::string_view behindDollar);

    std::vector<Piece> pieces;
};

} // namespace brisk
