#include "support/kestrel/KestrelStandinControl.h"

#include "support/Places.h"

#include <stdexcept>

#include <windows.h>

namespace brisk::kestrelstandin {

namespace {

// Asked for where it is needed: a copy of a test program that runs elsewhere has no such folder.
std::filesystem::path folders() {
    return testing::place(KESTREL_STANDIN_FOLDERS);
}

} // namespace

std::filesystem::path kestrelFolder() {
    return folders() / "complete";
}

std::filesystem::path kestrelFolderWithout(const std::string& entryPoint) {
    std::filesystem::path folder = folders() / ("without-" + entryPoint);
    if (!std::filesystem::exists(folder / kLibraryFile)) {
        throw std::invalid_argument("no stand-in without " + entryPoint);
    }
    return folder;
}

void installKestrel(const std::filesystem::path& programFolder, const std::filesystem::path& from) {
    std::filesystem::copy_file(from / kLibraryFile, programFolder / kLibraryFile,
                               std::filesystem::copy_options::overwrite_existing);
}

KestrelStandin::KestrelStandin(const std::string& script) {
    setScript(script);
    SetEnvironmentVariableW(kScriptVariable, (folder / "script.txt").c_str());
    SetEnvironmentVariableW(kRecordVariable, (folder / "record.txt").c_str());
}

KestrelStandin::~KestrelStandin() {
    SetEnvironmentVariableW(kScriptVariable, nullptr);
    SetEnvironmentVariableW(kRecordVariable, nullptr);
}

void KestrelStandin::setScript(const std::string& script) {
    testing::writeFile(folder / "script.txt", script);
}

std::vector<std::string> KestrelStandin::takeRecord() {
    const std::filesystem::path file = folder / "record.txt";
    if (!std::filesystem::exists(file)) {
        return {};
    }
    std::vector<std::string> lines = testing::splitLines(testing::readFile(file));
    std::filesystem::remove(file);
    return lines;
}

KestrelInThisProcess::KestrelInThisProcess(const std::filesystem::path& folder)
    : cookie(AddDllDirectory(folder.c_str())) {
    if (!cookie) {
        throw std::runtime_error("AddDllDirectory failed");
    }
}

KestrelInThisProcess::~KestrelInThisProcess() {
    RemoveDllDirectory(cookie);
}

bool KestrelInThisProcess::isLoaded() {
    return GetModuleHandleW(kLibraryFile) != nullptr;
}

unsigned KestrelInThisProcess::liveReferences() {
    const FARPROC function = GetProcAddress(GetModuleHandleW(kLibraryFile), kLiveReferencesExport);
    if (!function) {
        throw std::runtime_error("the stand-in is not loaded");
    }
    return reinterpret_cast<LiveReferencesFunction*>(reinterpret_cast<void*>(function))();
}

} // namespace brisk::kestrelstandin
