#pragma once

#include <memory>
#include <string>

namespace brisk::bench {

// A key compiled by another library: what the table compares with. `value` is the format's middle: a replacement is
// group 1, the value, group 3.
class PatternReference {
public:
    virtual ~PatternReference() = default;
    virtual bool search(const std::string& text) const = 0;
    virtual std::string replace(const std::string& text, const std::string& value) const = 0;
};

std::unique_ptr<PatternReference> standardPattern(const std::string& key);

// Boost.Regex as it is, without a limit that a hopeless key would need.
std::unique_ptr<PatternReference> boostPattern(const std::string& key);

// PCRE2 with its just-in-time compiler; null where the build has none.
std::unique_ptr<PatternReference> pcrePattern(const std::string& key);

} // namespace brisk::bench
