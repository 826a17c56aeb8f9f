#include "pattern/TextScan.h"

#include <algorithm>
#include <bit>

#if defined(__SSE2__) || defined(_M_X64)
#define BRISK_HAS_SSE2
#include <emmintrin.h>
#endif

namespace brisk {

namespace {

#ifdef BRISK_HAS_SSE2
constexpr std::size_t kBlock = sizeof(__m128i);

__m128i blockAt(std::string_view text, std::size_t place) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + place));
}

// Bit n stands for byte n of the block.
unsigned equalBytes(__m128i block, __m128i byte) {
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, byte)));
}

// Where a text can begin: its first and its last byte in their distance are seldom anything else.
class Candidates {
public:
    explicit Candidates(std::string_view needle)
        : distance(needle.size() - 1), first(_mm_set1_epi8(needle.front())), last(_mm_set1_epi8(needle.back())) {}

    // Bit n stands for the text's place `place` + n.
    unsigned at(std::string_view text, std::size_t place) const {
        return equalBytes(blockAt(text, place), first) & equalBytes(blockAt(text, place + distance), last);
    }

    const std::size_t distance;

private:
    const __m128i first;
    const __m128i last;
};

// Whether a candidate is the needle. Byte by byte, since a needle is short.
bool isSameBetweenEnds(std::string_view text, std::size_t candidate, std::string_view needle) {
    std::size_t same = 1;
    while (same + 1 < needle.size() && text[candidate + same] == needle[same]) {
        ++same;
    }
    return same + 1 >= needle.size();
}
#endif

} // namespace

std::size_t findText(std::string_view text, std::string_view needle, std::size_t from) {
    std::size_t place = from;
#ifdef BRISK_HAS_SSE2
    const Candidates candidates(needle);
    for (; place + candidates.distance + kBlock <= text.size(); place += kBlock) {
        for (unsigned hits = candidates.at(text, place); hits != 0; hits &= hits - 1) {
            const std::size_t hit = place + static_cast<std::size_t>(std::countr_zero(hits));
            if (isSameBetweenEnds(text, hit, needle)) {
                return hit;
            }
        }
    }
#endif
    return text.find(needle, place);
}

std::size_t findLastText(std::string_view text, std::string_view needle, std::size_t from, std::size_t last) {
    if (needle.size() > text.size()) {
        return std::string_view::npos;
    }
    std::size_t end = std::min(last, text.size() - needle.size()) + 1; // what begins here or behind is not it
#ifdef BRISK_HAS_SSE2
    const Candidates candidates(needle);
    for (; end >= from + kBlock; end -= kBlock) {
        for (unsigned hits = candidates.at(text, end - kBlock); hits != 0;) {
            const unsigned highest = static_cast<unsigned>(std::bit_width(hits)) - 1; // older libraries: unsigned
            if (isSameBetweenEnds(text, end - kBlock + highest, needle)) {
                return end - kBlock + highest;
            }
            hits ^= 1U << highest;
        }
    }
#endif
    while (end > from) {
        --end;
        if (text.substr(end, needle.size()) == needle) {
            return end;
        }
    }
    return std::string_view::npos;
}

ByteFinder::ByteFinder(const ByteSet& wanted) : bytes(wanted), count(wanted.count()) {
    if (count == 0 || count > few.size()) {
        return;
    }
    std::size_t listed = 0;
    for (std::size_t byte = 0; listed < count; ++byte) {
        // The places left over are filled with the last one.
        for (std::size_t i = listed; bytes[byte] && i < few.size(); ++i) {
            few[i] = static_cast<char>(byte);
        }
        listed += bytes[byte] ? 1U : 0U;
    }
}

std::size_t ByteFinder::find(std::string_view text, std::size_t from, std::size_t end) const {
    if (count == 0) {
        return end;
    }
    std::size_t place = from;
#ifdef BRISK_HAS_SSE2
    if (count <= few.size()) {
        const __m128i first = _mm_set1_epi8(few[0]);
        const __m128i second = _mm_set1_epi8(few[1]);
        const __m128i third = _mm_set1_epi8(few[2]);
        for (; place + kBlock <= end; place += kBlock) {
            const __m128i block = blockAt(text, place);
            const unsigned hits = equalBytes(block, first) | equalBytes(block, second) | equalBytes(block, third);
            if (hits != 0) {
                return place + static_cast<std::size_t>(std::countr_zero(hits));
            }
        }
    }
#endif
    while (place < end && !bytes[static_cast<unsigned char>(text[place])]) {
        ++place;
    }
    return place;
}

} // namespace brisk
