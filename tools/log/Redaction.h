#pragma once

#include <set>
#include <string>
#include <string_view>

namespace brisk::logbook {

// Takes user names out of the paths in a text: of "C:\Users\NAME\...", "\NAME\AppData\...", "/home/NAME/...", and of
// other folders of a name that was found so. Separators may be doubled, as in JSON.
class Redaction {
public:
    std::string apply(std::string_view text);

private:
    std::set<std::string> names; // in small letters
};

} // namespace brisk::logbook
