#include "tools/titles/LineDiff.h"

#include <random>
#include <vector>

#include <gmock/gmock.h>

namespace brisk::workbench {
namespace {

TEST(LineDiffTest, ShowsAChangedLineWithItsNeighbours) {
    EXPECT_EQ(diffLines("1\n2\n3\n4\n5\n6\n7\n8\n9\n", "1\n2\n3\n4\nfive\n6\n7\n8\n9\n"),
              "@@ -2,7 +2,7 @@\n 2\n 3\n 4\n-5\n+five\n 6\n 7\n 8\n");
}

TEST(LineDiffTest, PartsChangesThatAreFarFromEachOther) {
    EXPECT_EQ(diffLines("a\n1\n2\n3\n4\n5\n6\n7\nb\n", "A\n1\n2\n3\n4\n5\n6\n7\nB\n"),
              "@@ -1,4 +1,4 @@\n-a\n+A\n 1\n 2\n 3\n@@ -6,4 +6,4 @@\n 5\n 6\n 7\n-b\n+B\n");
}

TEST(LineDiffTest, ShowsCreatedLinesAtTheEndsAndInAnEmptyText) {
    EXPECT_EQ(diffLines("1\n", "0\n1\n2\n"), "@@ -1,1 +1,3 @@\n+0\n 1\n+2\n");
    EXPECT_EQ(diffLines("", "1\n"), "@@ -0,0 +1,1 @@\n+1\n");
}

TEST(LineDiffTest, LeavesLineEndsOut) {
    EXPECT_EQ(diffLines("1\n2\r\n3", "1\r\n2\n3\r\n"), "");
}

TEST(LineDiffTest, ComparesLargeTextsWithFewChanges) {
    std::string before;
    for (int line = 0; line < 200'000; ++line) {
        before += std::to_string(line) + '\n';
    }
    std::string after = before;
    after.replace(after.find("\n77\n"), 4, "\nx\n");
    EXPECT_EQ(diffLines(before, after), "@@ -75,7 +75,7 @@\n 74\n 75\n 76\n-77\n+x\n 78\n 79\n 80\n");
}

TEST(LineDiffTest, SaysSoWhereTooMuchDiffers) {
    std::string before;
    std::string after;
    for (int line = 0; line < 20'000; ++line) {
        before += "a" + std::to_string(line) + '\n';
        after += "b" + std::to_string(line) + '\n';
    }
    EXPECT_EQ(diffLines(before, after), "(20000 lines are removed and 20000 added, too many to be shown)\n");
}

// The text that a diff makes of another one.
std::string applied(const std::vector<std::string>& before, const std::string& diff) {
    std::string after;
    std::size_t next = 0;
    const auto copyTo = [&](std::size_t end) {
        while (next < end) {
            after += before.at(next++) + '\n';
        }
    };
    for (std::size_t at = 0; at < diff.size();) {
        const std::string line = diff.substr(at, diff.find('\n', at) - at);
        at += line.size() + 1;
        if (line.starts_with("@@")) {
            const std::size_t first = std::stoul(line.substr(4));
            const bool isEmpty = line.substr(4, line.find(' ', 4) - 4).ends_with(",0");
            copyTo(isEmpty ? first : first - 1);
        } else if (line[0] == '+') {
            after += line.substr(1) + '\n';
        } else {
            EXPECT_EQ(before.at(next), line.substr(1));
            if (line[0] == ' ') {
                after += before.at(next) + '\n';
            }
            ++next;
        }
    }
    copyTo(before.size());
    return after;
}

TEST(LineDiffTest, OfRandomTextsMakesTheOneOfTheOther) {
    std::mt19937 random(7);
    for (int round = 0; round < 500; ++round) {
        std::vector<std::string> lines;
        std::string before;
        std::string after;
        for (unsigned left = random() % 40; left > 0; --left) {
            lines.emplace_back(1, static_cast<char>('a' + random() % 5));
            before += lines.back() + '\n';
            if (random() % 6 != 0) {
                after += random() % 6 == 0 ? "x\n" : lines.back() + '\n';
            }
            after += random() % 8 == 0 ? "new\n" : "";
        }
        ASSERT_EQ(applied(lines, diffLines(before, after)), after) << before;
    }
}

} // namespace
} // namespace brisk::workbench
