#pragma once

#include <string>
#include <string_view>

namespace brisk {

// Rewrites an ECMAScript regular expression as a Boost.Regex expression (Perl syntax, no flags) of the same meaning and
// with the same group numbers. Only constructs that both dialects read alike are written: bytes and sets of bytes as
// hexadecimal numbers, groups, lookaheads, alternatives and quantifiers. Throws PatternError where the pattern does not
// follow the grammar. Needs no stack for nested groups.
std::string translateEcmaScript(std::string_view pattern);

} // namespace brisk
