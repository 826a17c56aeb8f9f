#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace brisk::workbench {

// What is no Windows executable, or one whose own offsets lead out of it.
class ExecutableError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Texts of an executable's version resource, in UTF-8; empty where there is none.
struct VersionStrings {
    std::string productName;
    std::string companyName;
    std::string originalFileName;
};

// Reads the bytes of a 32-bit or 64-bit executable. Of several languages it takes what the service takes, which asks
// Windows: the first one of the translation table, and no other when that one has no texts. (Of several version
// resources Windows takes the one of the user's language; taken here is the one without a language, or English, or the
// first.) Throws ExecutableError.
VersionStrings readVersionStrings(std::string_view executable);

} // namespace brisk::workbench
