#pragma once

#include <cstdint>

namespace brisk {

// One display mode; all zero when unknown.
struct DisplayInfo {
    std::uint32_t width = 0;  // pixels
    std::uint32_t height = 0; // pixels
    std::uint32_t bitsPerPixel = 0;
    std::uint32_t refreshRate = 0; // Hz

    friend bool operator==(const DisplayInfo&, const DisplayInfo&) = default;
};

// Height over width, so that 1920x1080 gives 0.5625.
inline float getAspectRatio(const DisplayInfo& mode) {
    return static_cast<float>(mode.height) / static_cast<float>(mode.width);
}

// What the service knows of the machine's graphics. Window thread only; nothing here fails otherwise than by zeros.
class IGfxInfo {
public:
    virtual ~IGfxInfo() = default;
    // The running game's frames per second; 0 when there is no sample.
    virtual std::uint32_t getCurrentFps() = 0;
    // Whether this source of information is usable at all.
    virtual bool isInitialized() const = 0;
    // The primary display's mode, current and native.
    virtual DisplayInfo getCurrentDisplayInfo() = 0;
    virtual DisplayInfo getNativeDisplayInfo() = 0;
    // The next lower resolution of the reference's shape; only width and height are set.
    virtual DisplayInfo getOptimalResolution(const DisplayInfo& reference) = 0;

protected:
    IGfxInfo() = default;
    IGfxInfo(const IGfxInfo&) = delete;
    IGfxInfo& operator=(const IGfxInfo&) = delete;
};

} // namespace brisk
