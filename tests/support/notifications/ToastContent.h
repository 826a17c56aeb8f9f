#pragma once

#include <string>
#include <vector>

#include "XmlElement.h"

namespace brisk::standin {

enum class TextStyle { Title, Body, Base, Caption, CaptionSubtle, BodySubtle };
enum class TextAlignment { Left, Center, Right };

struct ToastText {
    std::wstring text;
    TextStyle style;
    TextAlignment alignment;
};

// Texts one below the other; a group has one column a subgroup, side by side.
using ToastColumn = std::vector<ToastText>;
struct ToastBlock {
    std::vector<ToastColumn> columns;
};

struct ToastAction {
    std::wstring label;
    std::wstring arguments;
};

// What a toast document says to a reader of notifications. Empty texts are left out.
struct ToastContent {
    std::wstring launch;
    std::vector<ToastBlock> blocks;
    std::vector<ToastAction> actions;

    // The first text, or empty.
    std::wstring title() const;
};

// Reads the first binding and the actions of a `toast` element, adaptive or of a legacy template.
ToastContent readToast(const XmlElement& toast);

} // namespace brisk::standin
