#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace brisk::workbench {

enum class Severity { Error, Warning, Note };

// "error", "warning", "note".
const char* nameOf(Severity severity);

// Something that is wrong, or worth knowing, with its place in a source text.
struct Finding {
    std::string rule; // the code under which docs/title-rules.md explains it
    Severity severity;
    std::size_t begin; // bytes in the source text
    std::size_t end;   // behind the last byte; may be begin
    std::string message;
    std::optional<std::string> title; // the binary name of the title that it is about
};

using Findings = std::vector<Finding>;

} // namespace brisk::workbench
