#include "fuzz/Fuzzing.h"
#include "tools/titles/ExecutableSample.h"
#include "tools/titles/VersionStrings.h"

#include <nlohmann/json.hpp>

// A game's executable, which `brisktitles new` reads by itself: the whole file, or the version resource in a sound one.

namespace brisk {
namespace {

void checkExecutable(std::string_view bytes) {
    // A copy of exactly this size: no byte behind it may be read.
    const std::vector<char> copy(bytes.begin(), bytes.end());
    try {
        const auto strings = workbench::readVersionStrings(std::string_view(copy.data(), copy.size()));
        for (const std::string& text : {strings.productName, strings.companyName, strings.originalFileName}) {
            // Throws where the text is no UTF-8.
            fuzzing::require(!nlohmann::json(text).dump().empty(), "a text is UTF-8");
        }
    } catch (const workbench::ExecutableError& error) {
        fuzzing::require(std::string_view(error.what()).starts_with("it is "), "what is wrong is said");
    }
}

} // namespace
} // namespace brisk

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace brisk;
    const std::string_view input = fuzzing::toText(data, size);
    if (input.starts_with('R')) {
        checkExecutable(workbench::executableWith({{0x0409, std::string(input.substr(1))}}));
    } else {
        checkExecutable(input);
    }
    return 0;
}
