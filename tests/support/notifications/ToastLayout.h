#pragma once

#include <string>
#include <vector>

#include "ToastContent.h"
#include "ToastFonts.h"

namespace brisk::standin {

struct TextPiece {
    RECT area;
    std::wstring text;
    FontRole font;
    bool subtle;
    // Of DrawTextW.
    UINT format;
};

// Where everything of a toast stands, in pixels from the card's upper left corner.
struct ToastLayout {
    SIZE size;
    RECT icon;
    RECT close;
    // The application's name first.
    std::vector<TextPiece> texts;
    std::vector<RECT> buttons;
    std::vector<TextPiece> labels;
};

// Measures with the given device.
ToastLayout layOut(HDC device, const ToastFonts& fonts, const ToastContent& content, const std::wstring& application);

} // namespace brisk::standin
