#pragma once

#include "tools/titles/Finding.h"
#include "tools/titles/JsonReader.h"

#include <string>
#include <utility>

namespace brisk::workbench {

// Collects what the rules find; each finding names the title that is being looked at.
class Report {
public:
    // The binary name of the title that findings are about from now on; nothing for the file as a whole.
    void setTitle(std::optional<std::string> binaryName) { title = std::move(binaryName); }

    void add(Severity severity, const char* rule, std::size_t begin, std::size_t end, std::string message) {
        found.push_back({rule, severity, begin, end, std::move(message), title});
    }
    void add(Severity severity, const char* rule, const JsonValue& place, std::string message) {
        add(severity, rule, place.begin, place.end, std::move(message));
    }
    void addAtKey(Severity severity, const char* rule, const JsonValue::Member& place, std::string message) {
        add(severity, rule, place.keyBegin, place.keyEnd, std::move(message));
    }

    Findings found;

private:
    std::optional<std::string> title;
};

} // namespace brisk::workbench
