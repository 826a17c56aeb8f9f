#include "tools/log/Proof.h"

#include <algorithm>
#include <functional>

namespace brisk::logbook {

namespace {

constexpr std::size_t kLongestText = 600; // bytes
constexpr std::size_t kLinesOfAKind = 8;
constexpr std::size_t kMaximumOmitted = 100;

// Does not cut through a character of UTF-8.
std::string_view shorten(std::string_view text) {
    if (text.size() <= kLongestText) {
        return text;
    }
    std::size_t size = kLongestText;
    while (size > kLongestText - 4 && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80U) {
        --size;
    }
    return text.substr(0, size);
}

} // namespace

ProvingLine toProvingLine(const LogLine& line) {
    return {line.number, std::string(shorten(line.text)), 1, line.number, std::string(line.time)};
}

void Proof::add(const LogLine& line) {
    Kind& kind = kept[line.kind];
    ++kind.count;
    const std::string_view text = shorten(line.text);
    const auto known = std::find_if(kind.lines.rbegin(), kind.lines.rend(),
                                    [text](const ProvingLine& each) { return each.text == text; });
    if (known != kind.lines.rend()) {
        ++known->times;
        known->lastLine = line.number;
        return;
    }
    if (kind.lines.size() < kLinesOfAKind) {
        kind.lines.push_back(toProvingLine(line));
    } else if (kind.omitted.size() < kMaximumOmitted) {
        const std::size_t hash = std::hash<std::string_view>()(text);
        if (std::find(kind.omitted.begin(), kind.omitted.end(), hash) == kind.omitted.end()) {
            kind.omitted.push_back(hash);
        }
    }
}

const std::vector<ProvingLine>& Proof::of(LineKind kind) const {
    static const std::vector<ProvingLine> none;
    const auto found = kept.find(kind);
    return found == kept.end() ? none : found->second.lines;
}

std::uint64_t Proof::count(LineKind kind) const {
    const auto found = kept.find(kind);
    return found == kept.end() ? 0 : found->second.count;
}

std::size_t Proof::omitted(LineKind kind) const {
    const auto found = kept.find(kind);
    return found == kept.end() ? 0 : found->second.omitted.size();
}

std::vector<ProvingLine> Proof::select(const std::vector<LineKind>& kinds) const {
    std::vector<ProvingLine> lines;
    for (const LineKind kind : kinds) {
        const auto& some = of(kind);
        lines.insert(lines.end(), some.begin(), some.end());
    }
    std::stable_sort(lines.begin(), lines.end(),
                     [](const ProvingLine& one, const ProvingLine& other) { return one.line < other.line; });
    return lines;
}

} // namespace brisk::logbook
