#pragma once

#include <functional>
#include <mutex>
#include <ostream>
#include <sstream>
#include <string>

namespace brisk {

// The process-wide diagnostic log. A line is composed in one shared text stream and committed as a whole, either to the
// debugger output or, once a file path is set, appended to that file. No levels, no time stamps.
//
// The stream's number base is sticky: a line that writes numbers says std::dec or std::hex itself. So is the prefix 0x,
// which every line has from the first one on that asks for it (std::showbase; docs/decisions/kept-behaviour.md).
//
// Any thread may log: a mutex keeps the stream whole while one line is composed and committed.
class Log {
public:
    // Lines go to this file from now on (narrow, process code page); an empty path means the debugger output.
    // A file that cannot be opened loses the line silently. Nothing is ever truncated.
    void setFilePath(const std::string& path);

    // Lines go to this function from now on, whatever the file path; an empty one means the file or the debugger again.
    // It must not log.
    void setDestination(std::function<void(const std::string&)> receiver);

    // Streams the pieces (values and manipulators), ends the line and commits it.
    template <class... Pieces>
    void line(const Pieces&... pieces) {
        const std::lock_guard lock(mutex);
        (buffer << ... << pieces) << std::endl;
        commit(buffer);
    }

    // Streams the pieces without ending or committing: they stand at the front of the next line.
    template <class... Pieces>
    void text(const Pieces&... pieces) {
        const std::lock_guard lock(mutex);
        (buffer << ... << pieces);
    }

private:
    // Sends the stream's whole text to the destination, then empties it and clears its error state (the number base
    // stays).
    Log& commit(std::ostringstream& pending);

    std::mutex mutex;
    std::function<void(const std::string&)> destination;
    std::string filePath;
    std::ostringstream buffer;
};

// Constructed before WinMain runs and never destroyed: a button's action may log until the process ends.
extern Log& processLog;

// Shorthands for processLog. The text of a line begins with "Brisk : ".
template <class... Pieces>
void logLine(const Pieces&... pieces) {
    processLog.line(pieces...);
}

template <class... Pieces>
void logText(const Pieces&... pieces) {
    processLog.text(pieces...);
}

} // namespace brisk
