#pragma once

#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include <windows.h>

namespace brisk::standin {

// The failures that the stand-in was told to make. Any thread.
class CallFailures {
public:
    // The process's own, filled from kFailVariable at first use.
    static CallFailures& instance();

    // Counts one call; S_OK, or the failure to answer it with.
    HRESULT next(std::string_view call);
    // Replaces all rules and counts anew; rules are parted by commas. Throws std::runtime_error for a rule that means
    // nothing and changes nothing.
    void set(std::string_view text);
    // What was wrong with kFailVariable; empty where nothing was.
    const std::string& environmentError() const { return badEnvironment; }

private:
    CallFailures();

    struct Rule {
        unsigned from;
        HRESULT result;
    };
    std::mutex mutex;
    std::map<std::string, Rule, std::less<>> rules;
    std::map<std::string, unsigned, std::less<>> counts;
    std::string badEnvironment;
};

} // namespace brisk::standin
