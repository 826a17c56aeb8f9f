#pragma once

#include <array>

#include <windows.h>

namespace brisk::standin {

enum class FontRole { Small, Text, Strong };

// The fonts of a toast: the system's own face where it is installed, otherwise the best of what is.
class ToastFonts {
public:
    ToastFonts();
    ToastFonts(const ToastFonts&) = delete;
    ToastFonts& operator=(const ToastFonts&) = delete;
    ~ToastFonts();

    HFONT get(FontRole role) const { return fonts[static_cast<size_t>(role)]; }

private:
    std::array<HFONT, 3> fonts;
};

} // namespace brisk::standin
