#pragma once

#include "gfx/Kestrel.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace brisk::kestrelstandin {

struct DisplayScript {
    kestrel::Resolution native;
    double hertz;
};

struct DesktopScript {
    kestrel::Point topLeft;
    kestrel::DesktopType type;
    std::vector<DisplayScript> displays;
};

// What a call answers.
struct Answer {
    kestrel::Result result = 0;
    bool empty = false; // a success that gives nothing

    bool gives() const { return kestrel::succeeded(result) && !empty; }
};

struct Script {
    std::vector<DesktopScript> desktops;
    std::uint32_t firstIndex = 0;
    std::vector<std::int32_t> frames;
    std::map<std::string, Answer> answers; // by "CALL" or "CALL:N"
};

// Throws std::runtime_error with the line that it does not understand. The grammar is in KestrelStandin.h.
Script parseScript(const std::string& text);

} // namespace brisk::kestrelstandin
