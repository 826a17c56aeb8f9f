// What the fuzzers share. A fuzzer's input is text fields with a record separator between them, so that a corpus can be
// read and written by hand; a field may hold any other byte.
#pragma once

#include "host/simulation/Findings.h"
#include "host/simulation/System.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brisk::fuzzing {

constexpr char kSeparator = '\x1E';

inline std::string_view toText(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// Exactly `count` fields: missing ones are empty, the last one holds whatever separators are left.
inline std::vector<std::string> splitFields(std::string_view input, std::size_t count) {
    std::vector<std::string> fields;
    while (fields.size() + 1 < count) {
        const std::size_t end = input.find(kSeparator);
        fields.emplace_back(input.substr(0, end));
        input = end == std::string_view::npos ? std::string_view() : input.substr(end + 1);
    }
    fields.emplace_back(input);
    return fields;
}

// Ends the run with the input saved, saying what was expected.
[[noreturn]] inline void fail(const std::string& what) {
    std::fprintf(stderr, "\nfuzzer: %s\n", what.c_str());
    std::abort();
}

inline void require(bool condition, const char* what) {
    if (!condition) {
        fail(what);
    }
}

template <class Value>
void requireEqual(const Value& actual, const Value& expected, const char* what) {
    if (actual != expected) {
        if constexpr (requires { std::string(actual); }) {
            fail(std::string(what) + "\n  is       '" + actual + "'\n  expected '" + expected + "'");
        } else if constexpr (requires { std::to_string(actual); }) {
            fail(std::string(what) + "\n  is       " + std::to_string(actual) + "\n  expected " +
                 std::to_string(expected));
        } else {
            fail(what);
        }
    }
}

// The log since the last call, each line with its end. As the debugger shows it: a line is cut at a NUL.
inline std::string takeLog() {
    std::string log;
    for (const std::string& line : std::exchange(host::simulatedSystem().debuggerOutput, {})) {
        log += line;
    }
    return log;
}

// The log must hold exactly these lines, and the simulated Windows must have seen nothing that must never be done.
inline void requireLog(const std::string& expected) {
    requireEqual(takeLog(), expected, "the log");
    for (const std::string& finding : host::takeFindings()) {
        fail(finding);
    }
}

} // namespace brisk::fuzzing

// What libFuzzer, or the replay, calls for each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
