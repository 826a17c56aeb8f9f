#pragma once

#include "base/WindowsHandles.h"

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

namespace brisk::logbook {

// Takes what the processes of this session write to the debugger output; there can be one who does. A process waits up
// to ten seconds for its text to be taken, and then goes on without.
class DebugOutput {
public:
    struct Text {
        std::uint32_t processId;
        std::string bytes; // as the process wrote it
        bool isCut;        // it was as long as can be, so its end may be missing
    };

    // Throws std::runtime_error when another program takes the output already, or Windows does not allow it.
    DebugOutput();

    // The next text; nothing when none comes within the milliseconds.
    std::optional<Text> take(std::uint32_t milliseconds);

private:
    struct View {
        const char* bytes = nullptr;
        View() = default;
        View(const View&) = delete;
        View& operator=(const View&) = delete;
        ~View();
    };

    UniqueHandle bufferIsFree;
    UniqueHandle bufferIsFull;
    UniqueHandle buffer;
    View view;
};

} // namespace brisk::logbook
