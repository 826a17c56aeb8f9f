#include "tools/titles/Displays.h"

#include <array>
#include <charconv>

namespace brisk::workbench {

namespace {

// Modes that displays commonly have.
constexpr auto kModes = std::to_array<Size>({
    {1024, 768},  {1152, 864},  {1280, 720},  {1280, 800},  {1280, 960},  {1280, 1024}, {1366, 768},
    {1440, 900},  {1600, 900},  {1600, 1200}, {1680, 1050}, {1920, 1080}, {1920, 1200}, {2560, 1080},
    {2560, 1440}, {2560, 1600}, {3200, 1800}, {3440, 1440}, {3840, 1600}, {3840, 2160},
});

// As in the service: height over width differs by 0.01 at most.
bool hasSameShape(Size one, Size other) {
    const double difference =
        static_cast<double>(one.height) / one.width - static_cast<double>(other.height) / other.width;
    return difference <= 0.01 && difference >= -0.01;
}

std::string describe(Size size) {
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

} // namespace

std::optional<Size> parseSize(std::string_view text) {
    Size size{};
    const char* const end = text.data() + text.size();
    const auto [cross, widthError] = std::from_chars(text.data(), end, size.width);
    if (widthError != std::errc() || cross == end || *cross != 'x') {
        return std::nullopt;
    }
    const auto [rest, heightError] = std::from_chars(cross + 1, end, size.height);
    constexpr std::uint32_t kLargest = 100'000;
    if (heightError != std::errc() || rest != end || size.width == 0 || size.height == 0 || size.width > kLargest ||
        size.height > kLargest) {
        return std::nullopt;
    }
    return size;
}

Display displayOf(Size native) {
    Display display{native, std::nullopt};
    for (const Size& mode : kModes) {
        if (mode.width < native.width && hasSameShape(mode, native)) {
            display.lower = mode;
        }
    }
    return display;
}

std::vector<Display> usualDisplays() {
    std::vector<Display> displays;
    for (const Size& native :
         {Size{1366, 768}, Size{1920, 1080}, Size{2560, 1440}, Size{3840, 2160}, Size{3440, 1440}}) {
        displays.push_back(displayOf(native));
    }
    displays.push_back({{1920, 1080}, std::nullopt});
    return displays;
}

std::string describe(const Display& display) {
    return describe(display.native) +
           (display.lower ? " with " + describe(*display.lower) : " without a lower resolution");
}

ResolutionValues resolutionsOf(const Display& display) {
    const Size lower = display.lower.value_or(Size{0, 0});
    return {{"native_width", static_cast<std::int32_t>(display.native.width)},
            {"native_height", static_cast<std::int32_t>(display.native.height)},
            {"width", static_cast<std::int32_t>(lower.width)},
            {"height", static_cast<std::int32_t>(lower.height)}};
}

} // namespace brisk::workbench
