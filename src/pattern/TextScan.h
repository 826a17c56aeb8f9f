#pragma once

#include "pattern/ByteSet.h"

#include <array>
#include <cstddef>
#include <string_view>

// Walking over a text sixteen bytes at a time: the C library's functions for it are slow on Windows.

namespace brisk {

// The place of the first `needle`, which is not empty, from a place on; npos where there is none. Costs at most the
// text's length times the needle's.
std::size_t findText(std::string_view text, std::string_view needle, std::size_t from);

// The place of the last `needle`, which is not empty, that begins in [from, last]; npos where there is none. Costs at
// most the distance times the needle's length.
std::size_t findLastText(std::string_view text, std::string_view needle, std::size_t from, std::size_t last);

// Looks for bytes of a set.
class ByteFinder {
public:
    ByteFinder() = default;
    explicit ByteFinder(const ByteSet& wanted);

    // The place of the first of the bytes in text[from, end); end where there is none.
    std::size_t find(std::string_view text, std::size_t from, std::size_t end) const;

private:
    ByteSet bytes;
    std::size_t count = 0;
    std::array<char, 3> few{}; // all of the bytes, where they are no more than that
};

} // namespace brisk
