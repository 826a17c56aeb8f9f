#include "support/fakegame/Scene.h"

#include "support/fakegame/FakeGameContract.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace brisk {

namespace {

constexpr float kHorizon = 0.62F; // from the top, as are all heights here: parts of the picture's height
constexpr float kMoonX = 1.28F;
constexpr float kMoonY = 0.24F;
constexpr float kMoonRadius = 0.075F;

struct Colour {
    float red, green, blue;
};

constexpr Colour kZenith{0.03F, 0.05F, 0.16F};
constexpr Colour kDusk{0.86F, 0.45F, 0.36F};
constexpr Colour kMoon{1.0F, 0.95F, 0.82F};
constexpr Colour kFarHills{0.21F, 0.17F, 0.31F};
constexpr Colour kNearHills{0.07F, 0.07F, 0.17F};
constexpr Colour kShip{0.04F, 0.03F, 0.08F};

Colour mix(const Colour& from, const Colour& to, float part) {
    const float t = std::clamp(part, 0.0F, 1.0F);
    return {from.red + (to.red - from.red) * t, from.green + (to.green - from.green) * t,
            from.blue + (to.blue - from.blue) * t};
}

// 0 to 1 over one pixel: the soft edge of a shape whose border lies `distance` outside of the point.
float coverage(float distance, float pixel) {
    return std::clamp(0.5F - distance / pixel, 0.0F, 1.0F);
}

float starlight(int column, int row) {
    auto mixed = static_cast<std::uint32_t>(column) * 374761393U + static_cast<std::uint32_t>(row) * 668265263U;
    mixed = (mixed ^ (mixed >> 13U)) * 1274126177U;
    mixed ^= mixed >> 16U;
    return mixed % 1500 == 0 ? static_cast<float>(mixed >> 24U) / 255.0F : 0.0F;
}

float hills(float x, float height, float phase) {
    return kHorizon - height * (0.55F + 0.25F * std::sin(2.1F * x + phase) + 0.14F * std::sin(5.3F * x + 2.0F * phase) +
                                0.06F * std::sin(13.0F * x + phase));
}

Colour skyAt(float x, float y) {
    const float depth = y / kHorizon;
    const Colour sky = mix(kZenith, kDusk, depth * depth * depth);
    const float distance = std::hypot(x - kMoonX, y - kMoonY);
    return mix(sky, kMoon, 0.5F * std::exp(-(distance - kMoonRadius) * 9.0F) * (distance > kMoonRadius ? 1.0F : 0.0F));
}

Colour landAt(float x, float y, float pixel, Colour colour) {
    colour = mix(colour, kMoon, coverage(std::hypot(x - kMoonX, y - kMoonY) - kMoonRadius, pixel));
    colour = mix(colour, kFarHills, coverage(hills(x, 0.20F, 0.6F) - y, pixel));
    return mix(colour, kNearHills, coverage(hills(x, 0.11F, 2.9F) - y, pixel));
}

Colour seaAt(float x, float y) {
    const float depth = (y - kHorizon) / (1.0F - kHorizon);
    const Colour water = mix(mix(kDusk, kZenith, 0.45F), kZenith, std::sqrt(depth));
    const float wave = std::sin(260.0F * std::sqrt(depth + 0.02F) + 6.0F * std::sin(9.0F * x + 30.0F * depth));
    const float path = std::exp(-std::pow((x - kMoonX) / (0.05F + 0.22F * depth), 2.0F));
    return mix(water, kMoon, 0.04F + 0.04F * wave + path * (0.28F + 0.28F * wave));
}

// A sailing boat; x and y from the middle of its water line, upwards.
float shipCoverage(float x, float y, float pixel) {
    const float hull = std::max({-y - 0.012F, y - 0.035F - 0.25F * x * x, std::abs(x) - 0.13F - 0.6F * y});
    const float foreSail = std::max({0.05F - y, x - 0.005F, y - 0.27F - 2.0F * x});
    const float mainSail = std::max({0.05F - y, 0.015F - x, y - 0.34F + 2.2F * x});
    const float mast = std::max({std::abs(x - 0.01F) - 0.0025F, -y, y - 0.37F});
    return coverage(std::min({hull, foreSail, mainSail, mast}), pixel);
}

std::uint32_t packed(const Colour& colour) {
    const auto byte = [](float part) {
        return static_cast<std::uint32_t>(std::lround(std::clamp(part, 0.0F, 1.0F) * 255.0F));
    };
    return byte(colour.red) << 16U | byte(colour.green) << 8U | byte(colour.blue);
}

std::vector<std::uint32_t> render(int width, int height) {
    std::vector<std::uint32_t> pixels;
    pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const float pixel = 1.0F / static_cast<float>(height);
    for (int row = 0; row < height; ++row) {
        const float y = (static_cast<float>(row) + 0.5F) * pixel;
        for (int column = 0; column < width; ++column) {
            const float x = (static_cast<float>(column) + 0.5F) * pixel;
            Colour colour;
            if (y < kHorizon) {
                const float star = starlight(column, row) * (1.0F - y / kHorizon);
                colour = landAt(x, y, pixel, mix(skyAt(x, y), kMoon, star));
            } else {
                colour = seaAt(x, y);
            }
            pixels.push_back(packed(mix(colour, kShip, shipCoverage(x - 0.62F, 0.70F - y, pixel))));
        }
    }
    return pixels;
}

void write(HDC context, const char* text, int size, int weight, COLORREF colour, RECT area, UINT alignment) {
    const HFONT font = CreateFontA(-size, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_TT_PRECIS,
                                   CLIP_DEFAULT_PRECIS, ANTIALIASED_QUALITY, VARIABLE_PITCH | FF_SWISS, "Tahoma");
    const HGDIOBJ previous = SelectObject(context, font);
    SetTextColor(context, colour);
    DrawTextA(context, text, -1, &area, alignment | DT_SINGLELINE | DT_NOCLIP);
    SelectObject(context, previous);
    DeleteObject(font);
}

} // namespace

void paintScene(HDC context, int width, int height) {
    const std::vector<std::uint32_t> pixels = render(width, height);
    BITMAPINFO picture{};
    picture.bmiHeader.biSize = sizeof picture.bmiHeader;
    picture.bmiHeader.biWidth = width;
    picture.bmiHeader.biHeight = -height; // rows from the top
    picture.bmiHeader.biPlanes = 1;
    picture.bmiHeader.biBitCount = 32;
    picture.bmiHeader.biCompression = BI_RGB;
    SetDIBitsToDevice(context, 0, 0, static_cast<DWORD>(width), static_cast<DWORD>(height), 0, 0, 0,
                      static_cast<UINT>(height), pixels.data(), &picture, DIB_RGB_COLORS);

    SetBkMode(context, TRANSPARENT);
    const int margin = height / 18;
    const RECT area{margin, margin, width - margin, height - margin};
    const COLORREF light = RGB(255, 243, 214);
    write(context, FAKE_GAME_PRODUCT, height / 12, FW_BOLD, light, area, DT_LEFT | DT_TOP);
    write(context, "SCORE 041 730", height / 30, FW_NORMAL, light, area, DT_RIGHT | DT_TOP);
    write(context, "Night 3   The outer reef", height / 36, FW_NORMAL, light, area, DT_LEFT | DT_BOTTOM);
    write(context, FAKE_GAME_PUBLISHER, height / 45, FW_NORMAL, RGB(150, 150, 190), area, DT_RIGHT | DT_BOTTOM);
}

} // namespace brisk
