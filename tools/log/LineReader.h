#pragma once

#include "tools/log/TextDecoder.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace brisk::logbook {

// Takes a file's bytes as they come.
class ByteSink {
public:
    virtual ~ByteSink() = default;
    virtual void feed(std::string_view bytes) = 0;
    // The file is over.
    virtual void finish() = 0;

protected:
    ByteSink() = default;
    ByteSink(const ByteSink&) = default;
    ByteSink& operator=(const ByteSink&) = default;
};

// Makes lines of them. A line ends with LF, with CR LF after any number of CRs, or with a CR alone.
class LineReader final : public ByteSink {
public:
    // A line without its end, its number from 1, and whether it had an end. A line beyond some thousand bytes comes in
    // several parts of the same number, each from a line of the service on; where it has none, only the front is given.
    using Handler = std::function<void(std::string_view text, std::uint64_t number, bool isWhole)>;

    explicit LineReader(Handler handler) : handle(std::move(handler)) {}

    void feed(std::string_view bytes) override;
    void finish() override;
    std::uint64_t count() const { return number; }

private:
    void take(std::string_view bytes);
    void takeLine(std::string_view text, bool isWhole);
    void emit(std::string_view text, bool isWhole);
    void append(std::string_view text);
    void relieve();

    Handler handle;
    TextDecoder decoder;
    std::string rest; // the front of a line whose end has not come
    std::uint64_t number = 0;
    bool hasReturns = false;   // there has been a CR
    bool isWithinLine = false; // a part of the line has been given
    bool isSkipping = false;   // up to the line's end
};

} // namespace brisk::logbook
