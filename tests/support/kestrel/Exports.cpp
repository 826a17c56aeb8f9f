#include "support/kestrel/KestrelStandin.h"
#include "support/kestrel/Objects.h"

#include <cstdint>
#include <iomanip>
#include <sstream>

#include <windows.h>

namespace {

using namespace brisk::kestrel;
using brisk::kestrelstandin::Answer;
using brisk::kestrelstandin::Library;
using brisk::kestrelstandin::systemServices;
using brisk::kestrelstandin::tell;

constexpr std::uint64_t kFullVersion = 0x0001000000050028;
constexpr char kVersion[] = "1.0.5.40";

std::string hexadecimal(std::uint64_t number, int digits) {
    std::ostringstream text;
    text << " 0x" << std::hex << std::uppercase << std::setfill('0') << std::setw(digits) << number;
    return text.str();
}

std::string liveReferences() {
    return ", " + std::to_string(Library::instance().liveReferences) + " live";
}

Result start(const char* call, const std::string& arguments, ISystemServices** services) {
    const Answer answer = Library::instance().answer(call, arguments);
    if (succeeded(answer.result)) {
        Library::instance().started = true;
        if (!answer.empty) {
            *services = systemServices();
        }
    }
    return answer.result;
}

} // namespace

extern "C" {

Result KestrelQueryFullVersion(std::uint64_t* version) {
    return tell("KestrelQueryFullVersion", version, [] { return kFullVersion; });
}

Result KestrelQueryVersion(const char** version) {
    return tell("KestrelQueryVersion", version, [] { return kVersion; });
}

Result KestrelInitialize(std::uint64_t version, ISystemServices** services) {
    return start("KestrelInitialize", hexadecimal(version, 16), services);
}

Result KestrelInitializeWithIncompatibleDriver(std::uint64_t version, ISystemServices** services) {
    return start("KestrelInitializeWithIncompatibleDriver", hexadecimal(version, 16), services);
}

Result KestrelInitializeWithCallerTarn(std::uint64_t version, ISystemServices** services, void** tarnMapping,
                                       void* tarnContext, void* tarnAdapter) {
    const Result result =
        start("KestrelInitializeWithCallerTarn",
              hexadecimal(version, 16) + hexadecimal(reinterpret_cast<std::uintptr_t>(tarnContext), 1) +
                  hexadecimal(reinterpret_cast<std::uintptr_t>(tarnAdapter), 1),
              services);
    if (succeeded(result)) {
        *tarnMapping = tarnContext;
    }
    return result;
}

Result KestrelTerminate() {
    Library& library = Library::instance();
    const Answer answer = library.answer("KestrelTerminate", {}, liveReferences());
    library.started = false;
    return answer.result;
}

unsigned KestrelStandinLiveReferences() {
    return Library::instance().liveReferences;
}

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID processEnds) {
    if (reason == DLL_PROCESS_DETACH && !processEnds) {
        Library::instance().record("unload" + liveReferences());
    }
    return TRUE;
}

} // extern "C"
