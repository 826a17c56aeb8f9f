#pragma once

#include <set>
#include <string>
#include <string_view>

namespace brisk::logbook {

// Takes user names out of raw texts, before anything is made of them: what stands where a path has a user's name, as in
// "C:\Users\NAME\...", "\NAME\AppData\...", "/home/NAME/...", "\\server\NAME$\...", and every name that was learned so,
// wherever it is a word of its own. A name that is also a word of the service's lines, or a number, is taken out of
// paths alone: the lines have to stay readable. Separators may be doubled, as in JSON.
class Redaction {
public:
    // Learns the names in a text's paths.
    void learn(std::string_view text);
    std::string apply(std::string_view text) const;

private:
    std::set<std::string> names; // in small letters
};

} // namespace brisk::logbook
