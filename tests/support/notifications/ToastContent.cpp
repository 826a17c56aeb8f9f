#include "ToastContent.h"

namespace brisk::standin {

namespace {

TextStyle styleOf(const XmlElement& text, TextStyle unstyled) {
    const std::wstring style = text.attribute(L"hint-style");
    if (style == L"base" || style == L"subtitle") {
        return TextStyle::Base;
    }
    if (style == L"title" || style == L"subheader" || style == L"header") {
        return TextStyle::Title;
    }
    if (style == L"caption") {
        return TextStyle::Caption;
    }
    if (style == L"body") {
        return TextStyle::Body;
    }
    if (style.ends_with(L"Subtle")) {
        return style == L"captionSubtle" ? TextStyle::CaptionSubtle : TextStyle::BodySubtle;
    }
    return unstyled;
}

TextAlignment alignmentOf(const XmlElement& text) {
    const std::wstring alignment = text.attribute(L"hint-align");
    return alignment == L"right"    ? TextAlignment::Right
           : alignment == L"center" ? TextAlignment::Center
                                    : TextAlignment::Left;
}

void addText(ToastColumn& column, const XmlElement& text, TextStyle unstyled) {
    if (text.text.find_first_not_of(L" \t\r\n") != std::wstring::npos) {
        column.push_back({text.text, styleOf(text, unstyled), alignmentOf(text)});
    }
}

ToastBlock readGroup(const XmlElement& group) {
    ToastBlock block;
    for (const XmlElement& subgroup : group.children) {
        if (subgroup.name == L"subgroup") {
            ToastColumn& column = block.columns.emplace_back();
            for (const XmlElement& text : subgroup.children) {
                if (text.name == L"text") {
                    addText(column, text, TextStyle::Caption);
                }
            }
        }
    }
    return block;
}

} // namespace

std::wstring ToastContent::title() const {
    for (const ToastBlock& block : blocks) {
        for (const ToastColumn& column : block.columns) {
            if (!column.empty()) {
                return column.front().text;
            }
        }
    }
    return {};
}

ToastContent readToast(const XmlElement& toast) {
    ToastContent content;
    content.launch = toast.attribute(L"launch");
    const XmlElement* visual = toast.child(L"visual");
    if (const XmlElement* binding = visual ? visual->child(L"binding") : nullptr) {
        for (const XmlElement& element : binding->children) {
            if (element.name == L"group") {
                content.blocks.push_back(readGroup(element));
            } else if (element.name == L"text") {
                ToastColumn column;
                addText(column, element, content.blocks.empty() ? TextStyle::Title : TextStyle::BodySubtle);
                if (!column.empty()) {
                    content.blocks.push_back({{column}});
                }
            }
        }
    }
    if (const XmlElement* actions = toast.child(L"actions")) {
        for (const XmlElement& action : actions->children) {
            if (action.name == L"action") {
                content.actions.push_back({action.attribute(L"content"), action.attribute(L"arguments")});
            }
        }
    }
    return content;
}

} // namespace brisk::standin
