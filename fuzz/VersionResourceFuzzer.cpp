#include "base/Executables.h"
#include "base/TextEncoding.h"
#include "fuzz/Fuzzing.h"
#include "host/simulation/SimulatedCall.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>

// An executable's version resource. What Windows finds in broken bytes is anyone's guess, so each query's answer is
// made up: a place before, in or behind the buffer and any length. The buffer is the only memory that may be read.

namespace brisk {
namespace {

constexpr char kPath[] = "C:\\Games\\Game.exe";

// One query's answer, six bytes of the input.
struct Answer {
    bool isFound;
    bool isNull;
    std::int16_t offset; // of the value, from the buffer's begin
    std::uint16_t length;
};

Answer readAnswer(std::string_view& input) {
    unsigned char bytes[6] = {};
    input.copy(reinterpret_cast<char*>(bytes), sizeof bytes);
    input.remove_prefix(std::min(input.size(), sizeof bytes));
    return {!(bytes[0] & 1), (bytes[0] & 2) != 0, static_cast<std::int16_t>(bytes[2] | bytes[3] << 8),
            static_cast<std::uint16_t>(bytes[4] | bytes[5] << 8)};
}

// The bytes of the buffer that a value may be read from; nothing when it lies outside.
std::optional<std::string_view> bytesAt(const Answer& answer, std::string_view resource) {
    if (!answer.isFound || answer.isNull || answer.offset < 0 ||
        static_cast<std::size_t>(answer.offset) > resource.size()) {
        return std::nullopt;
    }
    return resource.substr(static_cast<std::size_t>(answer.offset));
}

// The wide text up to its zero, or to its last whole character.
std::string readText(std::string_view bytes) {
    std::wstring wide(bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(wide.data(), bytes.data(), wide.size() * sizeof(wchar_t));
    return toNarrow(wide.substr(0, wide.find(L'\0')));
}

std::string hexadecimal(unsigned number) {
    std::string digits;
    for (int shift = 12; shift >= 0; shift -= 4) {
        digits += "0123456789abcdef"[(number >> shift) & 15];
    }
    return digits;
}

void checkResource(std::string_view input) {
    const bool isReadable = input.empty() || !(input.front() & 1);
    input.remove_prefix(std::min<std::size_t>(input.size(), 1));
    const Answer translation = readAnswer(input);
    const char* const names[] = {"\\ProductName", "\\CompanyName", "\\LegalCopyright", "\\FileVersion"};
    std::vector<Answer> strings;
    for (std::size_t i = 0; i < std::size(names); ++i) {
        strings.push_back(readAnswer(input));
    }
    const std::string_view resource = input;

    // What is expected, and under which names the strings must be asked for.
    std::string expected[4];
    std::map<std::string, Answer> answers{{"\\VarFileInfo\\Translation", translation}};
    const auto table = isReadable ? bytesAt(translation, resource) : std::nullopt;
    if (table && translation.length >= 4 && table->size() >= 4) {
        const auto byte = [&table](std::size_t i) { return static_cast<unsigned char>((*table)[i]); };
        const std::string block =
            "\\StringFileInfo\\" + hexadecimal(byte(1) * 256u + byte(0)) + hexadecimal(byte(3) * 256u + byte(2));
        for (std::size_t i = 0; i < std::size(names); ++i) {
            answers[block + names[i]] = strings[i];
            expected[i] = readText(bytesAt(strings[i], resource).value_or(""));
        }
    }

    std::vector<std::string> queries;
    using host::simulatedCall;
    simulatedCall<GetFileVersionInfoSizeW>.intercept(
        [&](LPCWSTR, LPDWORD) { return static_cast<DWORD>(resource.size()); });
    simulatedCall<GetFileVersionInfoW>.intercept([&](LPCWSTR, DWORD, DWORD size, LPVOID buffer) -> BOOL {
        fuzzing::requireEqual<std::size_t>(size, resource.size(), "the buffer's size");
        resource.copy(static_cast<char*>(buffer), size);
        return isReadable;
    });
    simulatedCall<VerQueryValueW>.intercept([&](LPCVOID buffer, LPCWSTR wideName, LPVOID* value, UINT* length) -> BOOL {
        const std::string name = toNarrow(wideName);
        queries.push_back(name);
        fuzzing::require(answers.contains(name), "only these names are asked for");
        const Answer& answer = answers.at(name);
        const auto place = reinterpret_cast<std::intptr_t>(buffer) + answer.offset;
        *value = answer.isNull ? nullptr : reinterpret_cast<LPVOID>(place);
        *length = answer.length;
        return answer.isFound;
    });
    const FileProperties properties = getFileProperties(kPath);
    fuzzing::requireEqual(properties.productName, expected[0], "productName");
    fuzzing::requireEqual(properties.companyName, expected[1], "companyName");
    fuzzing::requireEqual(properties.legalCopyright, expected[2], "legalCopyright");
    fuzzing::requireEqual(properties.fileVersion, expected[3], "fileVersion");
    const std::size_t isAsked = isReadable && !resource.empty() ? answers.size() : 0;
    fuzzing::requireEqual(queries.size(), isAsked, "the number of queries");
    fuzzing::requireLog("");
}

} // namespace
} // namespace brisk

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    brisk::checkResource(brisk::fuzzing::toText(data, size));
    return 0;
}
