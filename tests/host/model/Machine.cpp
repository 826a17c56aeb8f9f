#include "host/model/Machine.h"

#include "host/model/FaultSwitches.h"
#include "host/simulation/Desktop.h"
#include "host/simulation/Files.h"
#include "host/simulation/Processes.h"
#include "host/simulation/Registry.h"
#include "host/simulation/Toasts.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include <sys/stat.h>

namespace brisk::model {

namespace {

namespace fs = std::filesystem;

constexpr char kProgramFolder[] = "C:\\Program Files\\Brisk";

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char each) { return each >= 'A' && each <= 'Z' ? static_cast<char>(each - 'A' + 'a') : each; });
    return text;
}

std::string readWhole(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

using Hive = std::map<std::string, std::map<std::string, Value>>;

void flatten(const host::RegistryKeyNode& key, const std::string& path, Hive& hive) {
    for (const auto& [name, child] : key.keys) {
        const std::string childPath = path.empty() ? lower(name) : path + '\\' + lower(name);
        auto& values = hive[childPath];
        for (const auto& [valueName, value] : child->values) {
            values[valueName] = {value.type, value.data};
        }
        flatten(*child, childPath, hive);
    }
}

std::string compareHive(const char* name, const host::RegistryKeyNode& root, const std::map<std::string, Key>& keys) {
    Hive actual;
    flatten(root, "", actual);
    Hive expected;
    for (const auto& [path, key] : keys) {
        expected[path] = key.values;
    }
    if (actual == expected) {
        return {};
    }
    std::string text = std::string("registry, ") + name + ":\n";
    for (const Hive* hive : {&expected, &actual}) {
        text += hive == &expected ? " expected\n" : " actual\n";
        for (const auto& [path, values] : *hive) {
            text += "  " + path + "\n";
            for (const auto& [valueName, value] : values) {
                text += "   " + valueName + " type " + std::to_string(value.type) + " '" + value.data + "'\n";
            }
        }
    }
    return text;
}

// Of a type and size that a value may have by accident or design.
Value makeValue(Random& random) {
    switch (random.below(6)) {
    case 0:
        return {REG_SZ, std::string(random.pick<const char*>({"fast", "high", "7", ""})) + '\0'};
    case 1:
        return {REG_BINARY, std::string(random.below(9), 'x')};
    case 2:
        return {REG_SZ, {}};
    default:
        const std::uint32_t number = random.pick({0u, 1u, 2u, 3u, 7u, 1280u, 1920u, 0x7FFFFFFFu, 0xFFFFFFFFu});
        return {REG_DWORD, {reinterpret_cast<const char*>(&number), sizeof number}};
    }
}

} // namespace

Machine::Machine(Random& random, const std::vector<Title>& titles) {
    host::clearDrives();
    makeFolder(kProgramFolder);
    putFile(std::string(kProgramFolder) + "\\titles_db.json", {writeDatabase(titles), false});
    setDisplays(0);
    if (!random.oneIn(4)) {
        environment.native = environment.displays.front().current;
    }
    for (std::uint64_t title = 0; title < titles.size(); ++title) {
        install(title, random.next());
    }
    for (std::uint64_t slot = 0; slot < kSlots; ++slot) {
        launch(slot, slot, 1);
    }
}

void Machine::launch(std::uint64_t slot, std::uint64_t title, std::uint64_t how) {
    Slot& changed = slots[slot % kSlots];
    endProcess(slot, 0);
    changed.process = nextProcess;
    changed.title = title % 8;
    nextProcess += 4;
    Process process{gameFolderOf(static_cast<unsigned>(changed.title)),
                    executableOf(static_cast<unsigned>(changed.title)), 259};
    std::string path = process.folder + '\\' + process.name;
    if (how % 16 == 0) {
        path = "NoFolder.exe";
        process.folder.clear();
        process.name.clear();
    }
    environment.processes[changed.process] = process;
    host::processes().byId[changed.process] = {path, STILL_ACTIVE, false};
    changed.window = host::desktop().addWindow("Game", changed.process);
    environment.windows[reinterpret_cast<std::uintptr_t>(changed.window)] = changed.process;
}

// The foreground is left to the closed window now and then.
void Machine::endProcess(std::uint64_t slot, std::uint64_t how) {
    Slot& ended = slots[slot % kSlots];
    if (!ended.window) {
        return;
    }
    const std::uint32_t codes[] = {0, 1, 259};
    environment.processes[ended.process].exitCode = codes[how % 3];
    host::processes().byId[ended.process].exitCode = codes[how % 3];
    environment.windows.erase(reinterpret_cast<std::uintptr_t>(ended.window));
    host::desktop().windows.erase(ended.window);
    ended.window = nullptr;
}

void Machine::bringToForeground(std::uint64_t slot, std::uint64_t how) {
    const HWND window = how % 16 == 0 ? nullptr : slots[slot % kSlots].window;
    host::desktop().foreground = window;
    environment.foreground = reinterpret_cast<std::uintptr_t>(window);
}

void Machine::setCompany(std::uint64_t title, std::uint64_t which) {
    const auto number = static_cast<unsigned>(title % 8);
    const std::string path = gameFolderOf(number) + '\\' + executableOf(number);
    const std::string company = std::array{"", "Studio", "Studio", "Other"}[which % 4];
    if (which % 8 == 4) {
        environment.companies.erase(path);
        host::processes().versions.erase(path);
        return;
    }
    environment.companies[path] = company;
    host::VersionResource version;
    if (!company.empty()) {
        version.strings["CompanyName"] = company;
    }
    host::processes().versions[path] = version;
}

void Machine::install(std::uint64_t title, std::uint64_t seed) {
    Random random(seed);
    setCompany(title, random.oneIn(4) ? 0 : 1);
    setSaveFolders(title, random.next());
    for (const std::string& path : filesOf(static_cast<unsigned>(title % 8))) {
        if (environment.folders.contains(path.substr(0, path.rfind('\\'))) || path.find("Saves") == std::string::npos) {
            makeFolder(path.substr(0, path.rfind('\\')));
            putFile(path, {makeConfiguration(random), false});
        }
    }
    for (unsigned values = 0; values < 4; ++values) {
        writeValue(title, random.next());
    }
}

void Machine::writeFile(std::uint64_t title, std::uint64_t seed) {
    Random random(seed);
    const std::vector<std::string> files = filesOf(static_cast<unsigned>(title % 8));
    const std::string path = files[random.below(static_cast<unsigned>(files.size()))];
    // A wildcard's folders come and go by their own step.
    const std::string folder = path.substr(0, path.rfind('\\'));
    if (path.find("Saves") != std::string::npos && !environment.folders.contains(folder)) {
        return;
    }
    makeFolder(folder);
    putFile(path, {makeConfiguration(random), false});
}

void Machine::removeFile(std::uint64_t title, std::uint64_t which) {
    const std::string path = filesOf(static_cast<unsigned>(title % 8))[which % 4];
    environment.files.erase(path);
    fs::remove(host::onThisMachine(path));
}

void Machine::lockFile(std::uint64_t title, std::uint64_t which) {
    const std::string path = filesOf(static_cast<unsigned>(title % 8))[which % 4];
    if (const auto file = environment.files.find(path); file != environment.files.end()) {
        file->second.readOnly = which % 8 < 4;
        chmod(host::onThisMachine(path).c_str(), file->second.readOnly ? 0444 : 0644);
    }
}

void Machine::setSaveFolders(std::uint64_t title, std::uint64_t which) {
    const std::string folder = saveFolderOf(static_cast<unsigned>(title % 8));
    fs::remove_all(host::onThisMachine(folder));
    std::erase_if(environment.folders, [&](const std::string& each) { return each.starts_with(folder); });
    std::erase_if(environment.files, [&](const auto& each) { return each.first.starts_with(folder); });
    if (which % 4 == 0) {
        return;
    }
    makeFolder(folder);
    if (which % 3 == 0) {
        putFile(folder + "\\0 notes.txt", {"not a folder", false});
    }
    for (const char* name : {"\\100", "\\200"}) {
        if ((which >> (name[1] - '0')) % 4 != 0) {
            makeFolder(folder + name);
            putFile(folder + name + "\\profile.ini", {"Width=1280\nMode=fast;\n", false});
        }
    }
}

void Machine::writeValue(std::uint64_t title, std::uint64_t seed) {
    Random random(seed);
    const std::string path = registryPathOf(static_cast<unsigned>(title % 8));
    const bool isUser = !random.oneIn(3);
    auto& hive = isUser ? environment.currentUser : environment.localMachine;
    const auto& root = isUser ? host::registry().currentUser : host::registry().localMachine;
    const std::string name = kValueNames[random.below(static_cast<unsigned>(kValueNames.size()))];
    const Value value = makeValue(random);
    environment.makeKey(hive, lower(path));
    host::makeKey(root, path);
    if (random.oneIn(4)) {
        hive[lower(path)].values.erase(name);
        host::findKey(root, path)->values.erase(name);
    } else {
        hive[lower(path)].values[name] = value;
        host::findKey(root, path)->values[name] = {value.type, value.data};
    }
    registryTouched = true;
}

void Machine::removeKey(std::uint64_t title) {
    const std::string path = registryPathOf(static_cast<unsigned>(title % 8));
    environment.currentUser.erase(lower(path));
    environment.localMachine.erase(lower(path));
    host::deleteKey(host::registry().currentUser, path);
    host::deleteKey(host::registry().localMachine, path);
    registryTouched = true;
}

void Machine::setUserState(std::uint64_t which, std::uint64_t seed) {
    Random random(seed);
    const std::string path = "software\\orlan\\briskgct";
    const std::string key = which % 2 == 0 ? path : path + "\\toastsshown";
    const std::string name = which % 2 == 0 ? "ToastsNotAllowed" : executableOf(static_cast<unsigned>(which / 2 % 8));
    const auto& root = host::registry().currentUser;
    registryTouched = true;
    if (which % 16 == 15) {
        std::erase_if(environment.currentUser, [&](const auto& each) { return each.first.starts_with(path); });
        host::deleteKey(root, path);
        return;
    }
    const Value value = makeValue(random);
    environment.makeKey(environment.currentUser, key);
    environment.currentUser[key].values[name] = value;
    host::makeKey(root, key)->values[name] = {value.type, value.data};
}

void Machine::setDisplays(std::uint64_t seed) {
    Random random(seed);
    const std::vector<Mode> choice{{3840, 2160, 60}, {2560, 1440, 144}, {2560, 1440, 60}, {1920, 1080, 60},
                                   {1920, 1200, 60}, {1280, 720, 60},   {0, 0, 0}};
    Display display;
    display.name = "\\\\.\\DISPLAY1";
    display.current = choice[random.below(random.oneIn(8) ? 7 : 5)];
    for (const Mode& mode : choice) {
        if (mode.width != 0 && !random.oneIn(8)) {
            display.modes.push_back(mode);
        }
    }
    environment.displays = {display};
    if (random.oneIn(4)) {
        Display other{"\\\\.\\DISPLAY2", random.oneIn(2), {1920, 1080, 75}, {{1920, 1080, 75}, {1600, 900, 75}}};
        environment.displays.insert(random.oneIn(2) ? environment.displays.begin() : environment.displays.end(), other);
    }
    host::desktop().displays.clear();
    for (const Display& each : environment.displays) {
        host::DisplayDevice device{each.name, each.primary, {}, {}};
        device.current = {each.current.width, each.current.height, 32, each.current.refreshRate};
        for (const Mode& mode : each.modes) {
            device.modes.push_back({mode.width, mode.height, 32, mode.refreshRate});
        }
        host::desktop().displays.push_back(device);
    }
    if (environment.native) {
        environment.native = random.oneIn(6) ? choice[random.below(7)] : display.current;
        if (random.oneIn(16)) {
            environment.native->height += 1;
        }
    }
}

void Machine::setFps(std::uint64_t seed) {
    Random random(seed);
    environment.fps =
        random.pick({14u, 15u, 16u, 29u, 30u, 40u, 50u, 51u, 60u, 122u, 123u, 299u, 300u, 301u, 0u, 0xFFFFFFFFu});
}

void Machine::breakCall(std::uint64_t which, std::uint64_t how) {
    Random random(how);
    const auto fault = static_cast<Fault>(which % kFaults);
    FaultPlan plan;
    plan.mode =
        random.pick({FaultPlan::Mode::Once, FaultPlan::Mode::Once, FaultPlan::Mode::Random, FaultPlan::Mode::Always});
    plan.seed = how;
    plan.oneIn = 3;
    plan.code = codeFor(fault, random.next());
    environment.faults[which % kFaults] = plan;
    setSwitch(fault, plan);
}

void Machine::mendCalls() {
    for (unsigned fault = 0; fault < kFaults; ++fault) {
        environment.faults[fault] = {};
        setSwitch(static_cast<Fault>(fault), {});
    }
    environment.canRead = environment.canWrite = environment.canShow = true;
    host::fileOpening().canRead = host::fileOpening().canWrite = host::notificationArea().canShow = true;
}

void Machine::breakFiles(std::uint64_t which) {
    environment.canRead = host::fileOpening().canRead = which % 3 != 0;
    environment.canWrite = host::fileOpening().canWrite = which % 3 != 1;
}

void Machine::breakToasts(std::uint64_t which) {
    environment.canShow = host::notificationArea().canShow = which % 2 == 0;
}

std::string Machine::compareRegistry() {
    if (!registryTouched && comparedRegistry == host::registry().changes) {
        return {};
    }
    registryTouched = false;
    comparedRegistry = host::registry().changes;
    const std::string user = compareHive("current user", *host::registry().currentUser, environment.currentUser);
    return user.empty() ? compareHive("local machine", *host::registry().localMachine, environment.localMachine) : user;
}

std::string Machine::compareFiles() {
    const unsigned writes = host::fileOpening().writes;
    if (comparedWrites == writes) {
        return {};
    }
    comparedWrites = writes;
    for (const auto& [path, file] : environment.files) {
        const std::string actual = readWhole(host::onThisMachine(path));
        if (actual != file.content) {
            return path + ":\n expected '" + file.content + "'\n actual '" + actual + "'\n";
        }
    }
    std::size_t count = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(host::onThisMachine("C:"))) {
        count += entry.is_regular_file();
    }
    return count == environment.files.size() ? std::string() : "another number of files: " + std::to_string(count);
}

void Machine::putFile(const std::string& path, const File& file) {
    environment.files[path] = file;
    const fs::path actual = host::onThisMachine(path);
    fs::remove(actual);
    std::ofstream(actual, std::ios::binary) << file.content;
}

void Machine::makeFolder(const std::string& path) {
    environment.makeFolder(path);
    fs::create_directories(host::onThisMachine(path));
}

} // namespace brisk::model
