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

// Makes lines of them.
class LineReader final : public ByteSink {
public:
    // A line without its end (a CR stays), its number from 1, and whether it had an end. Of a line beyond some thousand
    // bytes only the front is given.
    using Handler = std::function<void(std::string_view text, std::uint64_t number, bool isWhole)>;

    explicit LineReader(Handler handler) : handle(std::move(handler)) {}

    void feed(std::string_view bytes) override;
    void finish() override;
    std::uint64_t count() const { return number; }

private:
    void take(std::string_view bytes);

    Handler handle;
    TextDecoder decoder;
    std::string rest; // the front of a line whose end has not come
    std::uint64_t number = 0;
};

} // namespace brisk::logbook
