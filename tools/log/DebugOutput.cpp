#include "tools/log/DebugOutput.h"

#include <cstring>

#include <windows.h>

namespace brisk::logbook {

namespace {

constexpr DWORD kBufferSize = 4096; // a process id, and the text with its terminating zero
constexpr std::size_t kLongestText = kBufferSize - sizeof(DWORD) - 1;

[[noreturn]] void fail(const char* what) {
    throw std::runtime_error(std::string("the debugger output cannot be taken: ") + what + ", error " +
                             std::to_string(GetLastError()));
}

HANDLE createEvent(const char* name) {
    const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, name);
    if (!event) {
        fail(name);
    }
    return event;
}

} // namespace

DebugOutput::View::~View() {
    if (bytes) {
        UnmapViewOfFile(bytes);
    }
}

DebugOutput::DebugOutput() {
    buffer.reset(CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, kBufferSize, "DBWIN_BUFFER"));
    if (!buffer) {
        fail("DBWIN_BUFFER");
    }
    if (GetLastError() == ERROR_ALREADY_EXISTS) {
        throw std::runtime_error(
            "another program takes the debugger output already: close it, for each text goes to one "
            "of the two alone");
    }
    view.bytes = static_cast<const char*>(MapViewOfFile(buffer.get(), FILE_MAP_READ, 0, 0, 0));
    if (!view.bytes) {
        fail("its memory");
    }
    bufferIsFull.reset(createEvent("DBWIN_DATA_READY"));
    bufferIsFree.reset(createEvent("DBWIN_BUFFER_READY"));
    SetEvent(bufferIsFree.get());
}

std::optional<DebugOutput::Text> DebugOutput::take(std::uint32_t milliseconds) {
    if (WaitForSingleObject(bufferIsFull.get(), milliseconds) != WAIT_OBJECT_0) {
        return std::nullopt;
    }
    DWORD processId = 0;
    std::memcpy(&processId, view.bytes, sizeof processId);
    const char* bytes = view.bytes + sizeof processId;
    const std::size_t size = strnlen(bytes, kLongestText);
    Text text{processId, std::string(bytes, size), size == kLongestText};
    SetEvent(bufferIsFree.get());
    return text;
}

} // namespace brisk::logbook
