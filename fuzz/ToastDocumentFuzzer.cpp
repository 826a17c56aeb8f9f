#include "fuzz/Fuzzing.h"
#include "toast/ToastDocument.h"

#include <algorithm>
#include <optional>

// A toast's document, read a second time piece by piece.

namespace WinToastLib {
namespace {

namespace fuzzing = brisk::fuzzing;

// Bytes above 0x7F become characters around the surrogates, so that there are lone ones, pairs and plain ones.
std::wstring widen(const std::string& narrow) {
    std::wstring wide;
    for (const char byte : narrow) {
        const auto number = static_cast<unsigned char>(byte);
        wide += static_cast<wchar_t>(number < 0x80 ? number : 0xD7C0 + (number - 0x80) * 16);
    }
    return wide;
}

// Walks over a document whose every piece is known.
class Reader {
public:
    explicit Reader(std::wstring_view text) : rest(text) {}

    void expect(std::wstring_view piece, const char* what) {
        fuzzing::require(rest.substr(0, piece.size()) == piece, what);
        rest.remove_prefix(piece.size());
    }
    void expectText(std::wstring_view open, std::wstring_view text, std::wstring_view close, const char* what) {
        expect(open, what);
        expect(text, what);
        expect(close, what);
    }
    void expectEnd() const { fuzzing::require(rest.empty(), "nothing behind the end"); }

private:
    std::wstring_view rest;
};

std::vector<std::wstring_view> splitLines(std::wstring_view body) {
    std::vector<std::wstring_view> lines;
    std::size_t begin = 0;
    for (std::size_t i = 0; i < body.size(); ++i) {
        if (body[i] == L'\n') {
            lines.push_back(body.substr(begin, i - begin));
            begin = i + 1;
        }
    }
    if (begin < body.size()) {
        lines.push_back(body.substr(begin));
    }
    return lines;
}

void readBody(Reader& reader, std::wstring_view body) {
    if (body.find(L'\n') == std::wstring_view::npos) {
        reader.expectText(L"<text>", body, L"</text>", "the body");
        return;
    }
    const std::vector<std::wstring_view> lines = splitLines(body);
    reader.expect(L"<group><subgroup>", "the first group");
    for (std::size_t pair = 0; pair < lines.size() / 2; ++pair) {
        if (pair > 0 && pair % 3 == 0) {
            reader.expect(L"</subgroup></group><group><subgroup>", "a group of three pairs");
        }
        reader.expectText(L"<text  hint-style=\"base\">", lines[2 * pair], L"</text>\n", "a base line");
        reader.expectText(L"<text  hint-style=\"captionSubtle\">", lines[2 * pair + 1], L"</text>\n", "a subtle line");
    }
    reader.expect(L"</subgroup></group>", "the last group's end");
}

void readDocument(std::wstring_view document, const ToastTemplate& toast) {
    Reader reader(document);
    reader.expect(L"\n<toast template=\"ToastGeneric\" duration=\"long\" scenario=\"Default\">", "the head");
    reader.expect(L"<visual><binding template=\"ToastGeneric\">", "the visual");
    reader.expectText(L"<image placement=\"appLogoOverride\" hint-crop=\"circle\" src=\"", toast.imagePath, L"\"/>",
                      "the image");
    reader.expectText(L"<text>", toast.texts[0], L"</text>", "the title");
    reader.expectText(L"<text>", toast.texts[1], L"</text>\n", "the subtitle");
    readBody(reader, toast.texts[2]);
    reader.expect(L"</binding></visual><actions>", "the actions");
    for (std::size_t k = 0; k < toast.actions.size(); ++k) {
        reader.expectText(L"<action content=\"", toast.actions[k], L"\" arguments=\"", "a label");
        const std::string digits = std::to_string(k);
        reader.expectText(L"", std::wstring(digits.begin(), digits.end()), L"\"/>", "an action's arguments");
    }
    reader.expect(L"</actions></toast>", "the end");
    reader.expectEnd();
}

void checkToast(const ToastTemplate& toast) {
    const std::wstring& body = toast.texts[2];
    const bool isRefused = body.find(L'\n') != std::wstring::npos && splitLines(body).size() % 2 != 0;
    const std::optional<std::wstring> document = buildToastDocument(toast);
    fuzzing::requireLog(isRefused ? "Passed wrong number of lines to toast. Must be divisible by two\n" : "");
    fuzzing::requireEqual(document.has_value(), !isRefused, "a document for an even number of lines only");
    if (document) {
        readDocument(*document, toast);
    }
}

} // namespace
} // namespace WinToastLib

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace brisk::fuzzing;
    // Title, subtitle, body, image path, then labels.
    constexpr std::size_t kTexts = 4;
    const std::string_view input = toText(data, size);
    const auto separators = static_cast<std::size_t>(std::count(input.begin(), input.end(), kSeparator));
    const std::vector<std::string> fields = splitFields(input, std::max(separators + 1, kTexts));
    WinToastLib::ToastTemplate toast;
    for (std::size_t i = 0; i < toast.texts.size(); ++i) {
        toast.texts[i] = WinToastLib::widen(fields[i]);
    }
    toast.imagePath = WinToastLib::widen(fields[3]);
    for (std::size_t i = kTexts; i < fields.size(); ++i) {
        toast.actions.push_back(WinToastLib::widen(fields[i]));
    }
    WinToastLib::checkToast(toast);
    return 0;
}
