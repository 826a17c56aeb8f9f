#include "tools/titles/GoldenService.h"

#include "BriskHost.h"
#include "base/TextEncoding.h"
#include "base/WindowsHandles.h"
#include "tools/titles/InputFile.h"
#include "tools/titles/MachineDisplay.h"
#include "tools/titles/MachineRegistry.h"
#include "tools/titles/PreviewInput.h"
#include "tools/titles/ProfileFiles.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include <windows.h>

namespace brisk::workbench {

namespace {

namespace fs = std::filesystem;

constexpr DWORD kLimitMilliseconds = 120'000; // for a start, and for a pass over one title

// What the service remembers of the player.
constexpr char kStateKey[] = "HKEY_CURRENT_USER\\Software\\Orlan\\briskGCT";

// Stands for the registry's roots while a case runs.
constexpr char kSandboxKey[] = "HKEY_CURRENT_USER\\Software\\brisktitles-sandbox";

// Puts the registry back when it goes.
class RegistrySandbox {
public:
    RegistrySandbox() {
        readRegistryTree(kStateKey, state);
        deleteRegistryKey(kSandboxKey);
        deleteRegistryKey(kStateKey);
    }
    RegistrySandbox(const RegistrySandbox&) = delete;
    RegistrySandbox& operator=(const RegistrySandbox&) = delete;
    ~RegistrySandbox() {
        deleteRegistryKey(kSandboxKey);
        deleteRegistryKey(kStateKey);
        try {
            writeRegistryKeys(state);
        } catch (const std::exception&) {
            return; // nobody is left who could be told
        }
    }

private:
    RegistryKeys state;
};

// Ends the service when it goes.
class RunningService {
public:
    RunningService(const fs::path& program, const fs::path& log) {
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION started{};
        std::wstring command = L"\"" + program.native() + L"\" -log " + log.native();
        if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                            &started)) {
            throw std::runtime_error("the service cannot be started, error " + std::to_string(GetLastError()));
        }
        process.reset(started.hProcess);
        CloseHandle(started.hThread);
    }
    RunningService(const RunningService&) = delete;
    RunningService& operator=(const RunningService&) = delete;
    ~RunningService() {
        if (isRunning()) {
            TerminateProcess(process.get(), 1);
            WaitForSingleObject(process.get(), INFINITE);
        }
    }

    bool isRunning() const { return WaitForSingleObject(process.get(), 0) == WAIT_TIMEOUT; }

    // Has every title adjusted, and the service end behind it.
    void adjustAll() const {
        const ULONGLONG begin = GetTickCount64();
        HWND window = nullptr;
        while (isRunning() && !(window = FindWindowA(BRISK_WINDOW_CLASS, nullptr))) {
            if (GetTickCount64() - begin > kLimitMilliseconds) {
                throw std::runtime_error("the service has no window");
            }
            Sleep(10);
        }
        // A service that has ended already has said why in its log.
        PostMessageA(window, BRISK_MASSIVE_PATCHING, 0, 0);
        PostMessageA(window, BRISK_QUIT, 0, 0);
        if (WaitForSingleObject(process.get(), kLimitMilliseconds) != WAIT_OBJECT_0) {
            throw std::runtime_error("the service does not end");
        }
    }

private:
    UniqueHandle process;
};

std::string withBackslashes(std::string text) {
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

// Line ends do not count: the service's log has them behind the next line where the preview's has them before.
std::string withoutLineEnds(std::string text) {
    std::erase_if(text, [](char byte) { return byte == '\r' || byte == '\n'; });
    return text;
}

class Trial {
public:
    explicit Trial(const std::string& executable)
        : folder(fs::temp_directory_path() / ("brisktitles-" + std::to_string(GetCurrentProcessId()))) {
        if (FindWindowA(BRISK_WINDOW_CLASS, nullptr)) {
            throw std::runtime_error("a Brisk service runs already: end it first");
        }
        const std::optional<Display> own = machineDisplay();
        if (!own || !own->lower) {
            throw std::runtime_error(
                "this machine's display has no lower resolution: the service would look at no title");
        }
        display = *own;
        fs::create_directories(folder);
        std::error_code error;
        if (!fs::copy_file(toPath(executable), folder / "brisk.exe", fs::copy_options::overwrite_existing, error)) {
            throw std::runtime_error("cannot read " + executable);
        }
    }
    Trial(const Trial&) = delete;
    Trial& operator=(const Trial&) = delete;
    ~Trial() {
        std::error_code error;
        fs::remove_all(folder, error);
    }

    std::optional<std::string> run(const SourceText& titleFile, const GoldenCase& golden) const {
        const RegistrySandbox registry;
        fs::remove_all(folder / "case");
        GoldenCase own = golden;
        own.folder = narrowPath(folder / "case");
        install(own);
        const SourceText database(titleFile.path(), databaseFor(titleFile, own));
        writeFiles(narrowPath(folder), {{"titles_db.json", std::string(database.text())}});
        const TitlePreview preview = previewCase(database, own, display);

        const fs::path logFile = folder / "brisk.log";
        fs::remove(logFile);
        RunningService(folder / "brisk.exe", logFile).adjustAll();
        const std::string log = readInput(narrowPath(logFile));
        GoldenFiles files = readFiles(own.folder + "/before");
        if (own.before.contains(kRegistryFile)) {
            RegistryKeys keys;
            readRegistryTree(kSandboxKey, keys);
            files[kRegistryFile] = exportOf(keys);
        }
        return compare(preview, filesAfter(own, preview), log, files);
    }

private:
    // Lays the files out, and the registry's values below the sandbox's key.
    static void install(GoldenCase& own) {
        GoldenFiles files = own.before;
        if (const auto exported = own.before.find(kRegistryFile); exported != own.before.end()) {
            RegistryKeys keys;
            const RegistryKeys below = readRegistryExport(exported->second).value();
            for (const auto& [path, values] : below) {
                keys[std::string(kSandboxKey) + '\\' + path] = values;
            }
            writeRegistryKeys(keys);
            exported->second = exportOf(keys);
            files.erase(kRegistryFile);
        }
        fs::create_directories(toPath(own.folder + "/before/profile"));
        writeFiles(own.folder + "/before", files);
    }

    // The title with its locations in the sandbox.
    static std::string databaseFor(const SourceText& titleFile, const GoldenCase& own) {
        const UserFolders folders = userFoldersIn(own.folder + "/before/profile");
        const DatabaseTitles titles = readDatabase(titleFile, folders);
        nlohmann::json root = nlohmann::json::parse(titleFile.text());
        if (titles.size() != 1) {
            throw std::runtime_error(titleFile.path() + (titles.empty() ? " holds no title" : " holds several titles"));
        }
        const DatabaseTitle& title = titles.begin()->second;
        nlohmann::json locations = nlohmann::json::array();
        std::error_code error;
        const std::string game = own.folder + "/before/game";
        for (std::string location : title.title.configLocations) {
            if (title.type == ConfigType::TextFile) {
                expandAppDirectory(location, fs::is_directory(toPath(game), error) ? game : std::string());
            } else if (location.starts_with("HKEY_CURRENT_USER/") || location.starts_with("HKEY_LOCAL_MACHINE/")) {
                const std::string sandbox = std::string(kSandboxKey).substr(sizeof "HKEY_CURRENT_USER\\" - 1);
                location = "HKEY_CURRENT_USER/" + withBackslashes(sandbox + '/' + location);
            }
            locations.push_back(location);
        }
        root[title.element]["config_locations"] = locations;
        return nlohmann::json::array({root[title.element]}).dump();
    }

    static std::optional<std::string> compare(const TitlePreview& preview, const GoldenFiles& expected,
                                              const std::string& log, const GoldenFiles& files) {
        std::string difference = diffFiles(expected, files);
        if (withoutLineEnds(log).find(withoutLineEnds(preview.passes.front().log)) == std::string::npos) {
            difference += "its log does not have what is previewed:\n" + preview.passes.front().log + "it has:\n" + log;
        }
        return difference.empty() ? std::nullopt
                                  : std::optional("the real service does not agree with the preview:\n" + difference);
    }

    fs::path folder;
    Display display{};
};

} // namespace

ServiceTrial serviceTrial(const std::string& executable) {
    const auto trial = std::make_shared<const Trial>(executable);
    return [trial](const SourceText& titleFile, const GoldenCase& golden) { return trial->run(titleFile, golden); };
}

} // namespace brisk::workbench
