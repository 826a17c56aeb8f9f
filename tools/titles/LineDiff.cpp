#include "tools/titles/LineDiff.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

#include <dtl/dtl.hpp>

namespace brisk::workbench {

namespace {

using Lines = std::vector<std::string_view>;

constexpr std::size_t kContext = 3;
constexpr std::size_t kLimit = 20'000'000; // steps of a comparison

Lines splitLines(std::string_view text) {
    Lines lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        lines.push_back(line.ends_with('\r') ? line.substr(0, line.size() - 1) : line);
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    }
    return lines;
}

// How many lines of the one are not among those of the other: no comparison takes fewer steps than that each.
std::size_t countMissing(const Lines& one, const Lines& other) {
    std::unordered_map<std::string_view, std::size_t> counts;
    for (const std::string_view line : other) {
        ++counts[line];
    }
    return static_cast<std::size_t>(std::count_if(one.begin(), one.end(), [&counts](std::string_view line) {
        const auto found = counts.find(line);
        return found == counts.end() || found->second-- == 0;
    }));
}

struct Step {
    char mark; // ' ', '-' or '+'
    std::string_view line;
};

std::vector<Step> compare(const Lines& old, const Lines& now) {
    dtl::Diff<std::string_view, Lines> diff(old, now, true);
    diff.onHuge();
    diff.compose();
    std::vector<Step> steps;
    for (const auto& [line, info] : diff.getSes().getSequence()) {
        steps.push_back({info.type == dtl::SES_ADD ? '+' : info.type == dtl::SES_DELETE ? '-' : ' ', line});
    }
    return steps;
}

// "-3,4", of lines that begin behind `passed` others.
std::string describeRange(char mark, std::size_t passed, std::size_t count) {
    return mark + std::to_string(count == 0 ? passed : passed + 1) + ',' + std::to_string(count);
}

// The steps as hunks; the first one stands behind `passed` lines of both texts.
std::string printHunks(const std::vector<Step>& steps, std::size_t passed) {
    std::string out;
    std::size_t passedOld = passed;
    std::size_t passedNow = passed;
    const auto count = [&steps](std::size_t begin, std::size_t end, char without) {
        return static_cast<std::size_t>(std::count_if(steps.begin() + static_cast<std::ptrdiff_t>(begin),
                                                      steps.begin() + static_cast<std::ptrdiff_t>(end),
                                                      [without](const Step& step) { return step.mark != without; }));
    };
    for (std::size_t done = 0, at = 0; at < steps.size(); ++at) {
        if (steps[at].mark == ' ') {
            continue;
        }
        const std::size_t begin = std::max(done, at - std::min(at, kContext));
        std::size_t last = at; // the last change whose context reaches the next one
        for (std::size_t next = at; next < steps.size() && next <= last + 2 * kContext; ++next) {
            last = steps[next].mark == ' ' ? last : next;
        }
        const std::size_t end = std::min(last + 1 + kContext, steps.size());
        passedOld += count(done, begin, '+');
        passedNow += count(done, begin, '-');
        const std::size_t olds = count(begin, end, '+');
        const std::size_t nows = count(begin, end, '-');
        out += "@@ " + describeRange('-', passedOld, olds) + ' ' + describeRange('+', passedNow, nows) + " @@\n";
        for (std::size_t step = begin; step < end; ++step) {
            out += steps[step].mark;
            out += steps[step].line;
            out += '\n';
        }
        passedOld += olds;
        passedNow += nows;
        done = end;
        at = end - 1;
    }
    return out;
}

} // namespace

std::string diffLines(std::string_view before, std::string_view after) {
    Lines old = splitLines(before);
    Lines now = splitLines(after);
    const std::size_t shorter = std::min(old.size(), now.size());
    std::size_t same = 0;
    while (same < shorter && old[same] == now[same]) {
        ++same;
    }
    if (same == old.size() && same == now.size()) {
        return {};
    }
    std::size_t sameAtEnd = 0;
    while (sameAtEnd < shorter - same && old[old.size() - 1 - sameAtEnd] == now[now.size() - 1 - sameAtEnd]) {
        ++sameAtEnd;
    }
    const std::size_t skipped = same - std::min(same, kContext);
    const std::size_t left = sameAtEnd - std::min(sameAtEnd, kContext);
    old = Lines(old.begin() + static_cast<std::ptrdiff_t>(skipped), old.end() - static_cast<std::ptrdiff_t>(left));
    now = Lines(now.begin() + static_cast<std::ptrdiff_t>(skipped), now.end() - static_cast<std::ptrdiff_t>(left));
    const std::size_t removed = countMissing(old, now);
    const std::size_t added = countMissing(now, old);
    if ((removed + added + 1) * (old.size() + now.size()) > kLimit) {
        return "(" + std::to_string(removed) + " lines are removed and " + std::to_string(added) +
               " added, too many to be shown)\n";
    }
    return printHunks(compare(old, now), skipped);
}

} // namespace brisk::workbench
