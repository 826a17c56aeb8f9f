#pragma once

#include <exception>
#include <optional>
#include <string>

namespace brisk::workbench {

// The error with which the service would end, from an exception.
struct ServiceEnd {
    enum class Reason { BadPattern, GaveUp, NoNumber, Other };

    Reason reason;
    std::string what;
};

// Of the exception that is being handled. std::bad_alloc is thrown on.
ServiceEnd describeException();

// What ended the work, if anything did.
template <class Work>
std::optional<ServiceEnd> attempt(const Work& work) {
    try {
        work();
        return std::nullopt;
    } catch (const std::exception&) {
        return describeException();
    }
}

} // namespace brisk::workbench
