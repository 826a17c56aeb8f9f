#include "BriskHost.h"
#include "app/TitleInfo.h"
#include "fuzz/Fuzzing.h"

#include <memory>

#include <nlohmann/json.hpp>

// The host's title-information message: which tags it bears, and its block.

namespace brisk {
namespace {

void checkMessage(std::uint8_t shape, std::string_view text) {
    const bool isTagged = shape & 1;
    const bool isTaggedInside = shape & 2;
    const bool hasStructure = !(shape & 4);
    const bool hasBlock = !(shape & 8);
    const WPARAM other = (shape & 16) ? 0x10404 : 0;

    // A block of exactly this size: no byte behind it may be read.
    const auto block = std::make_unique<char[]>(text.size());
    text.copy(block.get(), text.size());
    COPYDATASTRUCT message{};
    message.dwData = isTaggedInside ? BRISK_TITLE_INFO_TAG : other;
    message.cbData = static_cast<DWORD>(text.size());
    message.lpData = hasBlock ? block.get() : nullptr;
    receiveTitleInfo(nullptr, isTagged ? BRISK_TITLE_INFO_TAG : other, hasStructure ? &message : nullptr);

    std::string log = "Brisk : receiveTitleInfo\n";
    if (isTagged && isTaggedInside && hasStructure && !(hasBlock && nlohmann::json::accept(text))) {
        log += "Brisk : got exception while processing titles info\n";
    }
    fuzzing::requireLog(log);
}

} // namespace
} // namespace brisk

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The first byte says what the message looks like; the rest is its block.
    if (size > 0) {
        brisk::checkMessage(data[0], brisk::fuzzing::toText(data + 1, size - 1));
    }
    return 0;
}
