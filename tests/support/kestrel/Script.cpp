#include "support/kestrel/Script.h"

#include <array>
#include <sstream>
#include <stdexcept>

namespace brisk::kestrelstandin {

namespace {

using kestrel::DesktopType;

DesktopType parseType(const std::string& name) {
    static const std::map<std::string, DesktopType> types{{"", DesktopType::Single},
                                                          {"single", DesktopType::Single},
                                                          {"duplicate", DesktopType::Duplicate},
                                                          {"span", DesktopType::SpanView}};
    return types.at(name);
}

void addFrames(std::vector<std::int32_t>& frames, const std::string& item) {
    const std::size_t star = item.find('*');
    const std::size_t times = star == std::string::npos ? 1 : std::stoul(item.substr(star + 1));
    frames.insert(frames.end(), times, std::stoi(item.substr(0, star)));
}

bool isCall(const std::string& name) {
    static constexpr std::array kCalls{"KestrelQueryFullVersion",
                                       "KestrelQueryVersion",
                                       "KestrelInitialize",
                                       "KestrelInitializeWithIncompatibleDriver",
                                       "KestrelInitializeWithCallerTarn",
                                       "KestrelTerminate",
                                       "SystemServices.GetDesktopServices",
                                       "SystemServices.GetPerformanceMonitoringServices",
                                       "PerformanceMonitoringServices.GetCurrentFps",
                                       "Fps.GetFps",
                                       "DesktopServices.GetDesktops",
                                       "DesktopList.At",
                                       "Desktop.GetTopLeft",
                                       "Desktop.GetType",
                                       "Desktop.GetDisplays",
                                       "DisplayList.At",
                                       "Display.GetNativeResolution",
                                       "Display.GetRefreshRate"};
    for (const char* call : kCalls) {
        if (name == call) {
            return true;
        }
    }
    return false;
}

// False for a line that is not understood.
bool parseLine(std::istringstream& line, const std::string& word, Script& script) {
    std::string text;
    if (word == "desktop") {
        DesktopScript desktop{};
        line >> desktop.topLeft.x >> desktop.topLeft.y;
        const bool read = static_cast<bool>(line);
        line >> text;
        desktop.type = parseType(text);
        script.desktops.push_back(desktop);
        return read;
    }
    if (word == "display") {
        DisplayScript display{};
        line >> display.native.width >> display.native.height >> display.hertz;
        script.desktops.at(script.desktops.size() - 1).displays.push_back(display);
        return static_cast<bool>(line);
    }
    if (word == "first-index") {
        return static_cast<bool>(line >> script.firstIndex);
    }
    if (word == "frames") {
        while (line >> text) {
            addFrames(script.frames, text);
        }
        return true;
    }
    if (word == "result") {
        std::string call;
        Answer answer;
        line >> call >> answer.result;
        const bool read = line && isCall(call.substr(0, call.find(':')));
        line >> text;
        answer.empty = text == "empty";
        script.answers[call] = answer;
        return read && (text.empty() || answer.empty);
    }
    return false;
}

} // namespace

Script parseScript(const std::string& text) {
    Script script;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string word;
        if (!(words >> word) || word.starts_with('#')) {
            continue;
        }
        bool understood = false;
        try {
            understood = parseLine(words, word, script);
        } catch (const std::logic_error&) {
            // A word that is no number, no type or has no desktop above.
        }
        if (!understood) {
            throw std::runtime_error("not understood: " + line);
        }
    }
    return script;
}

} // namespace brisk::kestrelstandin
