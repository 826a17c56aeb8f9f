#pragma once

#include "tools/titles/VersionStrings.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace brisk::workbench {

// Little-endian numbers in bytes that nobody vouches for. Whatever lies outside is an ExecutableError.
class BoundedBytes {
public:
    explicit BoundedBytes(std::string_view given) : bytes(given) {}

    std::size_t size() const { return bytes.size(); }

    std::uint16_t number16(std::size_t offset) const {
        return static_cast<std::uint16_t>(byteAt(offset) | byteAt(offset + 1) << 8U);
    }
    std::uint32_t number32(std::size_t offset) const {
        return number16(offset) | static_cast<std::uint32_t>(number16(offset + 2)) << 16U;
    }
    BoundedBytes from(std::size_t offset) const { return BoundedBytes(bytes.substr(checked(offset))); }
    BoundedBytes part(std::size_t offset, std::size_t length) const {
        if (bytes.size() - checked(offset) < length) {
            fail();
        }
        return BoundedBytes(bytes.substr(offset, length));
    }
    bool holds(std::size_t offset, std::string_view text) const {
        return offset <= bytes.size() && bytes.substr(offset).starts_with(text);
    }

private:
    [[noreturn]] static void fail() {
        throw ExecutableError("it is damaged: something in it is said to lie behind its end");
    }
    std::size_t checked(std::size_t offset) const {
        if (offset > bytes.size()) {
            fail();
        }
        return offset;
    }
    unsigned byteAt(std::size_t offset) const {
        if (offset >= bytes.size()) {
            fail();
        }
        return static_cast<unsigned char>(bytes[offset]);
    }

    std::string_view bytes;
};

} // namespace brisk::workbench
