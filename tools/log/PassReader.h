#pragma once

#include "tools/log/LogLine.h"
#include "tools/log/Session.h"

namespace brisk::logbook {

// Follows one pass over all games through its lines.
class PassReader {
public:
    explicit PassReader(const LogLine& line);

    // Whether the line is one that a pass writes; it is taken then.
    bool feed(const LogLine& line);
    // Whether the title that the pass is at is the executable.
    bool isAt(std::string_view binaryName) const;

    Pass pass;

private:
    PassTitle& title();
    void beginTitle(const LogLine& line);
    void note(const LogLine& line);

    PassTitle omitted; // where there are too many
};

} // namespace brisk::logbook
