#pragma once

#include "tools/log/LogLine.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace brisk::logbook {

// A line of the log that proves something, or several of the same text.
struct ProvingLine {
    std::uint64_t line = 0; // of the first
    std::string text;       // cut after some hundred bytes
    std::uint64_t times = 1;
    std::uint64_t lastLine = 0;
    std::string time; // of the first; empty where the log has none
};

ProvingLine toProvingLine(const LogLine& line);

// The lines of a game or a session, by their kind. However many there are, it keeps some of each kind, and counts.
class Proof {
public:
    void add(const LogLine& line);

    bool has(LineKind kind) const { return kept.contains(kind); }
    // The lines kept of a kind, in their order; empty when there is none.
    const std::vector<ProvingLine>& of(LineKind kind) const;
    // How often the kind came.
    std::uint64_t count(LineKind kind) const;

    // How many further texts of the kind there were; beyond a hundred they are not told apart any more.
    std::size_t omitted(LineKind kind) const;

    // The lines of some kinds, in the log's order.
    std::vector<ProvingLine> select(const std::vector<LineKind>& kinds) const;

private:
    struct Kind {
        std::vector<ProvingLine> lines;
        std::uint64_t count = 0;
        std::vector<std::size_t> omitted; // the texts' hashes
    };
    std::map<LineKind, Kind> kept;
};

} // namespace brisk::logbook
