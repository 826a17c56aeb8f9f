#include "toast/ToastDocument.h"

#include "base/Log.h"

#include <sstream>

namespace WinToastLib {

namespace {

// The texts of the document to the last blank (docs/decisions/kept-behaviour.md).
constexpr wchar_t kHead[] = L"\n<toast template=\"ToastGeneric\" duration=\"long\" scenario=\"Default\">";
constexpr wchar_t kVisual[] = L"<visual><binding template=\"ToastGeneric\">";
constexpr wchar_t kImageOpen[] = L"<image placement=\"appLogoOverride\" hint-crop=\"circle\" src=\"";
constexpr wchar_t kElementClose[] = L"\"/>";
constexpr wchar_t kTextOpen[] = L"<text>";
constexpr wchar_t kTextClose[] = L"</text>";
constexpr wchar_t kTextCloseLine[] = L"</text>\n";
constexpr wchar_t kGroupOpen[] = L"<group><subgroup>";
constexpr wchar_t kGroupBreak[] = L"</subgroup></group><group><subgroup>";
constexpr wchar_t kBaseLine[] = L"<text  hint-style=\"base\">";
constexpr wchar_t kSubtleLine[] = L"<text  hint-style=\"captionSubtle\">";
constexpr wchar_t kGroupClose[] = L"</subgroup></group>";
constexpr wchar_t kActionsOpen[] = L"</binding></visual><actions>";
constexpr wchar_t kActionOpen[] = L"<action content=\"";
constexpr wchar_t kActionMiddle[] = L"\" arguments=\"";
constexpr wchar_t kEnd[] = L"</actions></toast>";

constexpr std::size_t kLinesPerGroup = 6;

std::vector<std::wstring> splitLines(const std::wstring& text) {
    std::vector<std::wstring> lines;
    std::wistringstream stream(text);
    for (std::wstring line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

// The body of several lines; false for an odd number.
bool appendGroups(const std::wstring& body, std::wstring& xml) {
    const std::vector<std::wstring> lines = splitLines(body);
    if (lines.size() % 2 != 0) {
        brisk::logLine("Passed wrong number of lines to toast. Must be divisible by two");
        return false;
    }
    xml += kGroupOpen;
    for (std::size_t i = 0; i < lines.size(); i += 2) {
        if (i != 0 && i % kLinesPerGroup == 0) {
            xml += kGroupBreak;
        }
        xml += kBaseLine + lines[i] + kTextCloseLine;
        xml += kSubtleLine + lines[i + 1] + kTextCloseLine;
    }
    xml += kGroupClose;
    return true;
}

} // namespace

std::optional<std::wstring> buildToastDocument(const ToastTemplate& toast) {
    const auto& [title, subtitle, body] = toast.texts;
    std::wstring xml = kHead;
    xml += kVisual;
    xml += kImageOpen + toast.imagePath + kElementClose;
    xml += kTextOpen + title + kTextClose;
    xml += kTextOpen + subtitle + kTextCloseLine;
    if (body.find(L'\n') == std::wstring::npos) {
        xml += kTextOpen + body + kTextClose;
    } else if (!appendGroups(body, xml)) {
        return std::nullopt;
    }
    xml += kActionsOpen;
    for (std::size_t k = 0; k < toast.actions.size(); ++k) {
        xml += kActionOpen + toast.actions[k] + kActionMiddle + std::to_wstring(k) + kElementClose;
    }
    xml += kEnd;
    return xml;
}

} // namespace WinToastLib
