#pragma once

#include "tools/log/LineKind.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace brisk::logbook {

// One line of the service, as it stands in a log or in a capture of the debugger output. The views last as long as the
// text that was taken apart.
struct LogLine {
    std::uint64_t number = 0; // from 1
    std::string_view text;    // with "Brisk : ", without what a capture put in front of it
    LineKind kind = LineKind::Foreign;
    std::string_view value;                 // what stands behind the kind's fixed words
    std::string_view time;                  // as a capture gives it; may be empty
    std::optional<std::uint32_t> processId; // as a capture gives it
    bool isWhole = true;                    // it has its line end, or its words tell that nothing is missing
};

// Takes lines of a log apart: what a capture puts in front, and lines of the service that are glued together, as the
// condition's is with its next one, or the ends of a cut log and the begin of another. A line of the service that may
// have lost a part of its value is Unknown: it proves nothing.
class LineSplitter {
public:
    using Handler = std::function<void(const LogLine&)>;

    // The text has no line end any more; isWhole tells whether it had one. Blanks at its end do not count, and empty
    // texts are nothing.
    void split(std::string_view text, std::uint64_t number, bool isWhole, const Handler& handle);

private:
    std::vector<LogLine> pieces; // the last first; kept for its memory
};

} // namespace brisk::logbook
