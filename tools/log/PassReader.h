#pragma once

#include "tools/log/LogLine.h"
#include "tools/log/Session.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace brisk::logbook {

// Follows one pass over all games through its lines.
class PassReader {
public:
    // Keeps so many titles, and counts the others.
    PassReader(const LogLine& line, std::size_t titles);

    // Whether the line is one that a pass writes; it is taken then.
    bool feed(const LogLine& line);
    // Whether the title that the pass is at is the executable.
    bool isAt(std::string_view binaryName) const { return title && title->binaryName == binaryName; }
    // "Read more" was pressed on its toast.
    void pressReadMore(const LogLine& line);

    // Nothing more comes.
    Pass finish();

    // Whether its outcome has come to the player: nothing of it is missing then.
    bool isTold() const { return pass.isToastRefused || pass.isReadMore || pass.hasNoLowerResolution; }
    void cutOff() { pass.isCutOff = true; }

private:
    void endTitle();
    void note(const LogLine& line);
    void noteOfPass(const LogLine& line);

    Pass pass;
    std::size_t limit;
    std::optional<PassTitle> title; // that the pass is at
};

} // namespace brisk::logbook
