#pragma once

#include <cstdint>
#include <initializer_list>
#include <iterator>

namespace brisk::model {

// The same numbers for the same seed on every machine.
class Random {
public:
    explicit Random(std::uint64_t seed) : state(seed) {}

    std::uint64_t next() {
        state += 0x9E3779B97F4A7C15u;
        std::uint64_t mixed = state;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
        return mixed ^ (mixed >> 31);
    }
    // 0 .. limit - 1
    unsigned below(unsigned limit) { return static_cast<unsigned>(next() % limit); }
    bool oneIn(unsigned limit) { return below(limit) == 0; }
    template <class Value>
    Value pick(std::initializer_list<Value> values) {
        return *std::next(values.begin(), below(static_cast<unsigned>(values.size())));
    }

private:
    std::uint64_t state;
};

} // namespace brisk::model
