#include "ToastFonts.h"

namespace brisk::standin {

namespace {

bool isInstalled(const wchar_t* face) {
    LOGFONTW wanted{};
    wanted.lfCharSet = DEFAULT_CHARSET;
    lstrcpynW(wanted.lfFaceName, face, LF_FACESIZE);
    HDC screen = GetDC(nullptr);
    bool found = false;
    EnumFontFamiliesExW(
        screen, &wanted,
        [](const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM result) {
            *reinterpret_cast<bool*>(result) = true;
            return 0;
        },
        reinterpret_cast<LPARAM>(&found), 0);
    ReleaseDC(nullptr, screen);
    return found;
}

struct Face {
    const wchar_t* name;
    // Wide faces are set smaller, to the same apparent size.
    int pixels;
};

const Face& bestFace() {
    static constexpr Face kFaces[] = {{L"Segoe UI", 15},   {L"Open Sans", 14},       {L"Noto Sans", 14},
                                      {L"Selawik", 15},    {L"Liberation Sans", 15}, {L"DejaVu Sans Condensed", 14},
                                      {L"DejaVu Sans", 13}};
    for (const Face& face : kFaces) {
        if (isInstalled(face.name)) {
            return face;
        }
    }
    static constexpr Face kAlways{L"Tahoma", 14};
    return kAlways;
}

HFONT createFont(const Face& face, int pixels, int weight) {
    return CreateFontW(-pixels, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, ANTIALIASED_QUALITY, DEFAULT_PITCH | FF_SWISS, face.name);
}

} // namespace

ToastFonts::ToastFonts() {
    const Face& face = bestFace();
    fonts = {createFont(face, face.pixels - 2, FW_NORMAL), createFont(face, face.pixels, FW_NORMAL),
             createFont(face, face.pixels, FW_SEMIBOLD)};
}

ToastFonts::~ToastFonts() {
    for (HFONT font : fonts) {
        DeleteObject(font);
    }
}

} // namespace brisk::standin
