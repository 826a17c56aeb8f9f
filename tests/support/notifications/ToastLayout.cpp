#include "ToastLayout.h"

#include <algorithm>

namespace brisk::standin {

namespace {

constexpr int kWidth = 396;
constexpr int kPadding = 16;
constexpr int kIcon = 16;
constexpr int kCloseSize = 32;
constexpr int kBlockGap = 8;
constexpr int kColumnGap = 12;
constexpr int kButtonGap = 6;
constexpr int kButtonHeight = 34;
constexpr int kButtonPadding = 8;
constexpr UINT kWrapped = DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX;

// The height of a wrapped text.
int measure(HDC device, HFONT font, const std::wstring& text, int width, UINT format) {
    RECT area{0, 0, width, 0};
    HGDIOBJ previous = SelectObject(device, font);
    DrawTextW(device, text.c_str(), static_cast<int>(text.size()), &area, format | DT_CALCRECT);
    SelectObject(device, previous);
    return area.bottom;
}

FontRole fontOf(TextStyle style) {
    switch (style) {
    case TextStyle::Title:
    case TextStyle::Base:
        return FontRole::Strong;
    case TextStyle::Caption:
    case TextStyle::CaptionSubtle:
        return FontRole::Small;
    case TextStyle::Body:
    case TextStyle::BodySubtle:
        break;
    }
    return FontRole::Text;
}

UINT formatOf(TextAlignment alignment) {
    return alignment == TextAlignment::Right    ? kWrapped | DT_RIGHT
           : alignment == TextAlignment::Center ? kWrapped | DT_CENTER
                                                : kWrapped;
}

// A caption under a line belongs to it; the next line starts something new.
int gapBefore(const ToastText& text, bool first) {
    const bool caption = text.style == TextStyle::Caption || text.style == TextStyle::CaptionSubtle;
    return first ? 0 : caption ? 1 : kBlockGap;
}

// Answers the column's lower end.
int layOutColumn(HDC device, const ToastFonts& fonts, const ToastColumn& column, int left, int width, int top,
                 ToastLayout& layout) {
    for (const ToastText& text : column) {
        const FontRole font = fontOf(text.style);
        const UINT format = formatOf(text.alignment);
        top += gapBefore(text, &text == &column.front());
        const int height = measure(device, fonts.get(font), text.text, width, format);
        const bool subtle = text.style == TextStyle::BodySubtle || text.style == TextStyle::CaptionSubtle;
        layout.texts.push_back({{left, top, left + width, top + height}, text.text, font, subtle, format});
        top += height;
    }
    return top;
}

// Answers the row's lower end.
int layOutButtons(HDC device, const ToastFonts& fonts, const std::vector<ToastAction>& actions, int top,
                  ToastLayout& layout) {
    const int count = static_cast<int>(actions.size());
    const int available = kWidth - 2 * kPadding - (count - 1) * kButtonGap;
    int height = kButtonHeight;
    std::vector<int> labelHeights;
    for (const ToastAction& action : actions) {
        const int labelWidth = available / count - 2 * kButtonPadding;
        labelHeights.push_back(measure(device, fonts.get(FontRole::Text), action.label, labelWidth, kWrapped));
        height = std::max(height, labelHeights.back() + 2 * kButtonPadding);
    }
    for (int k = 0; k < count; ++k) {
        const int left = kPadding + available * k / count + kButtonGap * k;
        const int right = kPadding + available * (k + 1) / count + kButtonGap * k;
        const int labelHeight = labelHeights[static_cast<size_t>(k)];
        const int labelTop = top + (height - labelHeight) / 2;
        layout.buttons.push_back({left, top, right, top + height});
        layout.labels.push_back({{left + kButtonPadding, labelTop, right - kButtonPadding, labelTop + labelHeight},
                                 actions[static_cast<size_t>(k)].label,
                                 FontRole::Text,
                                 false,
                                 kWrapped | DT_CENTER});
    }
    return top + height;
}

} // namespace

ToastLayout layOut(HDC device, const ToastFonts& fonts, const ToastContent& content, const std::wstring& application) {
    ToastLayout layout{};
    layout.icon = {kPadding, kPadding, kPadding + kIcon, kPadding + kIcon};
    layout.close = {kWidth - kCloseSize - kPadding / 2, kPadding / 2, kWidth - kPadding / 2, kPadding / 2 + kCloseSize};
    layout.texts.push_back({{kPadding + kIcon + 8, layout.close.top, layout.close.left, layout.close.bottom},
                            application,
                            FontRole::Small,
                            true,
                            DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX});
    int top = layout.close.bottom + kBlockGap;
    for (const ToastBlock& block : content.blocks) {
        const int count = static_cast<int>(std::max<size_t>(block.columns.size(), 1));
        const int width = (kWidth - 2 * kPadding - (count - 1) * kColumnGap) / count;
        int bottom = top;
        int left = kPadding;
        for (const ToastColumn& column : block.columns) {
            bottom = std::max(bottom, layOutColumn(device, fonts, column, left, width, top, layout));
            left += width + kColumnGap;
        }
        top = bottom > top ? bottom + kBlockGap : top;
    }
    if (!content.actions.empty()) {
        top = layOutButtons(device, fonts, content.actions, top + kBlockGap, layout) + kBlockGap;
    }
    layout.size = {kWidth, top - kBlockGap + kPadding};
    return layout;
}

} // namespace brisk::standin
