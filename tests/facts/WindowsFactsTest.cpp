// What windows-facts finds under Wine stands in docs/windows-facts.md.
#include "support/ConsoleProgram.h"
#include "support/Places.h"
#include "support/TextFiles.h"
#include "support/Wine.h"

#include <map>
#include <sstream>
#include <vector>

#include <gmock/gmock.h>

namespace brisk {

namespace {

testing::Outcome windowsFacts(const std::wstring& arguments) {
    return testing::runProgram(testing::place(BRISK_WINDOWS_FACTS), arguments);
}

std::string trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(" `");
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(" `") + 1 - begin);
}

// Of "cannot tell; Wine 10: does not" the part for Wine 8, or for a later one.
std::string verdictOf(const std::string& cell) {
    constexpr char kLater[] = "; Wine 10: ";
    const std::size_t later = cell.find(kLater);
    if (later == std::string::npos) {
        return cell;
    }
    return testing::wineVersion() < 10 ? cell.substr(0, later) : cell.substr(later + sizeof kLater - 1);
}

// Of the page's table: each fact, and its column for Wine.
std::map<std::string, std::string> pageFacts() {
    std::map<std::string, std::string> facts;
    for (const std::string& line : testing::splitLines(testing::readFile(testing::place(BRISK_FACTS_PAGE)))) {
        if (!line.starts_with("| `")) {
            continue;
        }
        std::vector<std::string> cells;
        std::istringstream row(line);
        for (std::string cell; std::getline(row, cell, '|');) {
            cells.push_back(trimmed(cell));
        }
        facts[cells.at(1)] = verdictOf(cells.at(5));
    }
    return facts;
}

// Of a run: each fact, and its verdict. The last line has the numbers.
std::map<std::string, std::string> foundFacts(const testing::Lines& lines) {
    std::map<std::string, std::string> facts;
    for (std::size_t line = 0; line + 1 < lines.size(); ++line) {
        facts[trimmed(lines[line].substr(12, 24))] = trimmed(lines[line].substr(0, 12));
    }
    return facts;
}

TEST(WindowsFacts, AreUnderWineWhatThePageTells) {
    if (!testing::needsWine("on Windows its findings are news")) {
        return;
    }
    const testing::Outcome outcome = windowsFacts(L"");
    EXPECT_EQ(foundFacts(testing::splitLines(outcome.output)), pageFacts()) << outcome.output;
    EXPECT_EQ(outcome.exitCode, 1u);
}

TEST(WindowsFacts, CanBeAskedForSome) {
    EXPECT_EQ(windowsFacts(L"text-mode delete-tree"),
              (testing::Outcome{0,
                                "holds       text-mode               7 characters up to the 0x1A\n"
                                "holds       delete-tree             result 0, then 0 keys and 0 values\n"
                                "2 hold, 0 do not, 0 cannot be told\n",
                                ""}));
}

TEST(WindowsFacts, RefuseAnUnknownName) {
    EXPECT_EQ(windowsFacts(L"text-mode weather"),
              (testing::Outcome{2, "", "windows-facts: there is no fact 'weather'\nTry: windows-facts --help\n"}));
}

} // namespace

} // namespace brisk
