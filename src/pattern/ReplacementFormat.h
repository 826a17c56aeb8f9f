#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brisk {

// Appends what a replacement format stands for to output. $$ is a dollar sign, $& the match, $` and $' the text before
// and after it, $n and $nn group n; every other dollar sign stands for itself. A group number has one or two digits,
// never more, and 0 is the whole match; a number that no group has stands for nothing. Element n of groups is group n.
void appendReplacement(std::string& output, std::string_view format, const std::vector<std::string_view>& groups,
                       std::string_view before, std::string_view after);

} // namespace brisk
