#include "tools/console/Console.h"

#ifdef _WIN32

#include <algorithm>
#include <iostream>
#include <optional>
#include <streambuf>
#include <string>

#include <windows.h>

namespace brisk {

namespace {

// Of the text's end, the bytes of a character that is not there as a whole yet.
std::size_t unfinishedBytes(const std::string& text) {
    const std::size_t longest = std::min<std::size_t>(text.size(), 3);
    for (std::size_t back = 1; back <= longest; ++back) {
        const auto byte = static_cast<unsigned char>(text[text.size() - back]);
        if (byte < 0x80) {
            return 0;
        }
        if (byte >= 0xC0) {
            const std::size_t length = byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
            return back < length ? back : 0;
        }
    }
    return 0;
}

class ConsoleBuffer : public std::streambuf {
public:
    explicit ConsoleBuffer(HANDLE output) : console(output) {}

    void finish() { write(pending.size()); }

protected:
    int_type overflow(int_type character) override {
        if (!traits_type::eq_int_type(character, traits_type::eof())) {
            pending += traits_type::to_char_type(character);
            writeIfLong();
        }
        return traits_type::not_eof(character);
    }

    std::streamsize xsputn(const char* text, std::streamsize size) override {
        pending.append(text, static_cast<std::size_t>(size));
        writeIfLong();
        return size;
    }

    int sync() override {
        write(pending.size() - unfinishedBytes(pending));
        return 0;
    }

private:
    static constexpr std::size_t kPiece = 4096;

    void writeIfLong() {
        if (pending.size() >= kPiece) {
            sync();
        }
    }

    void write(std::size_t size) {
        std::wstring wide(size, L'\0');
        const int units = MultiByteToWideChar(CP_UTF8, 0, pending.data(), static_cast<int>(size), wide.data(),
                                              static_cast<int>(size));
        pending.erase(0, size);
        // Consoles of old take no more than some 32,000 units in one call.
        for (int done = 0; done < units;) {
            DWORD written = 0;
            int piece = std::min(units - done, static_cast<int>(kPiece));
            if (piece > 1 && IS_HIGH_SURROGATE(wide[static_cast<std::size_t>(done + piece - 1)])) {
                --piece;
            }
            if (!WriteConsoleW(console, wide.data() + done, static_cast<DWORD>(piece), &written, nullptr) ||
                written == 0) {
                return;
            }
            done += static_cast<int>(written);
        }
    }

    HANDLE console;
    std::string pending;
};

// A stream's way to the console, where that is where it goes.
class Redirection {
public:
    Redirection(std::ostream& redirected, DWORD handle) : stream(redirected), console(GetStdHandle(handle)) {
        if (GetConsoleMode(console, &mode)) {
            buffer.emplace(console);
            earlier = stream.rdbuf(&*buffer);
        }
    }
    Redirection(const Redirection&) = delete;
    Redirection& operator=(const Redirection&) = delete;
    ~Redirection() {
        if (buffer) {
            buffer->finish();
            stream.rdbuf(earlier);
            SetConsoleMode(console, mode);
        }
    }

    // False also where the console is too old for it.
    bool enableColours() {
        return buffer && SetConsoleMode(console, mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    }

private:
    std::ostream& stream;
    HANDLE console;
    DWORD mode = 0;
    std::optional<ConsoleBuffer> buffer;
    std::streambuf* earlier = nullptr;
};

} // namespace

struct Console::State {
    Redirection output{std::cout, STD_OUTPUT_HANDLE};
    Redirection errors{std::cerr, STD_ERROR_HANDLE};
    bool hasColours = output.enableColours();
};

Console::Console() : state(std::make_unique<State>()) {}
Console::~Console() = default;

bool Console::takesColours() const {
    return state->hasColours;
}

} // namespace brisk

#else

#include <unistd.h>

namespace brisk {

struct Console::State {};

Console::Console() = default;
Console::~Console() = default;

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): on Windows it has a state.
bool Console::takesColours() const {
    return isatty(STDOUT_FILENO) != 0;
}

} // namespace brisk

#endif
