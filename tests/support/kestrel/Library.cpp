#include "support/kestrel/Library.h"

#include "support/kestrel/KestrelStandin.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <windows.h>

namespace brisk::kestrelstandin {

namespace {

constexpr kestrel::Result kUnreadableScript = 99;

// Not the C library's environment: that is a copy from the process's start.
std::wstring readEnvironment(const wchar_t* name) {
    std::wstring value(32768, L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    return value;
}

Script readScript(const std::wstring& file) {
    if (file.empty()) {
        return parseScript(kOneDisplay);
    }
    std::ifstream stream{std::filesystem::path(file)};
    if (!stream) {
        throw std::runtime_error("cannot read the script");
    }
    return parseScript({std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()});
}

} // namespace

Library& Library::instance() {
    static Library library;
    return library;
}

Library::Library() : recordFile(readEnvironment(kRecordVariable)) {
    try {
        currentScript = readScript(readEnvironment(kScriptVariable));
    } catch (const std::runtime_error& error) {
        scriptError = error.what();
        record("error " + scriptError);
    }
}

Answer Library::answer(const std::string& call, const std::string& arguments, const std::string& behind) {
    Answer answer;
    const std::string numbered = call + ":" + std::to_string(++calls[call]);
    if (!scriptError.empty()) {
        answer.result = kUnreadableScript;
    } else if (const auto once = currentScript.answers.find(numbered); once != currentScript.answers.end()) {
        answer = once->second;
    } else if (const auto always = currentScript.answers.find(call); always != currentScript.answers.end()) {
        answer = always->second;
    }
    record(call + arguments + " -> " + std::to_string(answer.result) + behind);
    if (!started && !call.starts_with("Kestrel")) {
        record("error " + call + " outside of a start and its end");
    }
    return answer;
}

void Library::record(const std::string& line) const {
    if (!recordFile.empty()) {
        std::ofstream file(std::filesystem::path(recordFile), std::ios::binary | std::ios::app);
        file << line << '\n';
    }
}

std::int32_t Library::nextFrames() {
    if (currentScript.frames.empty()) {
        return 0;
    }
    const std::size_t index = std::min(nextFrame++, currentScript.frames.size() - 1);
    return currentScript.frames[index];
}

} // namespace brisk::kestrelstandin
