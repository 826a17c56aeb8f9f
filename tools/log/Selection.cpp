#include "tools/log/Selection.h"

#include "tools/log/LineValues.h"

#include <algorithm>
#include <cctype>

namespace brisk::logbook {

namespace {

bool isSame(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(), [](unsigned char left, unsigned char right) {
        return std::tolower(left) == std::tolower(right);
    });
}

bool isNumber(const std::string& text) {
    const std::size_t begin = text.starts_with("0x") || text.starts_with("0X") ? 2 : 0;
    return text.size() > begin &&
           text.find_first_not_of(begin == 0 ? "0123456789" : "0123456789abcdefABCDEF", begin) == std::string::npos;
}

} // namespace

bool Selection::includes(const Game& one, const DatabaseFacts* database) const {
    if (game.empty()) {
        return true;
    }
    if (isNumber(game) && one.id == readNumber(game)) {
        return true;
    }
    const TitleFacts* title = nullptr;
    if (database) {
        title = one.binaryName.empty() && one.id ? database->find(*one.id) : database->find(one.binaryName);
    }
    const std::string& name = one.binaryName.empty() && title ? title->binaryName : one.binaryName;
    return (!name.empty() && (isSame(name, game) || isSame(name, game + ".exe"))) ||
           (title && isSame(title->titleName, game));
}

} // namespace brisk::logbook
