#include "tools/titles/TextTraits.h"

#include <algorithm>

namespace brisk::workbench {

namespace {

bool isContinuation(std::string_view text, std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
}

// Overlong forms and surrogates pass: no editor writes them, and it is a remark only.
bool isUtf8(std::string_view text) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        const std::size_t more = byte < 0x80                   ? 0
                                 : byte >= 0xC2 && byte < 0xE0 ? 1
                                 : byte < 0xF0                 ? 2
                                 : byte < 0xF5                 ? 3
                                                               : 4;
        if (more == 4 || (byte >= 0x80 && byte < 0xC2)) {
            return false;
        }
        for (std::size_t n = 0; n < more; ++n) {
            if (!isContinuation(text, ++at)) {
                return false;
            }
        }
    }
    return true;
}

// By its mark, or by a text in which every second byte is NUL.
bool isUtf16(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
        return true;
    }
    const std::string_view head = bytes.substr(0, 512);
    std::size_t nuls[2] = {0, 0};
    for (std::size_t at = 0; at < head.size(); ++at) {
        nuls[at % 2] += head[at] == '\0' ? 1U : 0U;
    }
    const std::size_t pairs = head.size() / 2;
    return pairs >= 4 && ((nuls[0] == 0 && nuls[1] > pairs * 3 / 4) || (nuls[1] == 0 && nuls[0] > pairs * 3 / 4));
}

std::string describeLineEnds(const TextTraits& traits) {
    std::string kinds;
    if (traits.crLf > 0 && traits.loneLf > 0) {
        kinds = "CR LF and LF line ends, which all become CR LF";
    } else if (traits.crLf > 0) {
        kinds = "CR LF line ends, which stay";
    } else if (traits.loneLf > 0) {
        kinds = "LF line ends, which become CR LF";
    } else {
        kinds = "no line end";
    }
    if (traits.loneCr > 0) {
        kinds += "; " + std::to_string(traits.loneCr) + " CR without LF, which stay and end no line";
    }
    return kinds;
}

} // namespace

TextTraits findTraits(std::string_view bytes) {
    TextTraits traits;
    traits.size = bytes.size();
    traits.hasUtf8Mark = bytes.starts_with("\xEF\xBB\xBF");
    traits.isUtf16 = isUtf16(bytes);
    traits.firstNul = bytes.find('\0');
    traits.firstCtrlZ = bytes.find('\x1A');
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const bool isBehindCr = at > 0 && bytes[at - 1] == '\r';
        if (bytes[at] == '\n') {
            ++(isBehindCr ? traits.crLf : traits.loneLf);
        } else if (bytes[at] == '\r' && (at + 1 == bytes.size() || bytes[at + 1] != '\n')) {
            ++traits.loneCr;
        }
    }
    traits.isAscii =
        std::all_of(bytes.begin(), bytes.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
    traits.isUtf8 = isUtf8(bytes);
    return traits;
}

std::string describe(const TextTraits& traits) {
    if (traits.size == 0) {
        return "empty";
    }
    if (traits.isUtf16) {
        return "UTF-16: no setting is found, and rewriting puts a CR byte before every LF byte, which damages the file";
    }
    std::string text = describeLineEnds(traits);
    if (traits.hasUtf8Mark) {
        text += "; a UTF-8 byte-order mark, which stays: ^ is in front of it";
    }
    text += traits.isAscii  ? "; ASCII"
            : traits.isUtf8 ? "; UTF-8, whose bytes stay"
                            : "; another encoding than UTF-8, whose bytes stay";
    if (traits.firstNul != std::string_view::npos) {
        text += "; a NUL byte, behind which no setting is read";
    }
    if (traits.firstCtrlZ != std::string_view::npos) {
        text += "; 0x1A, which ends the text: it and the " + std::to_string(traits.size - traits.firstCtrlZ - 1) +
                " bytes behind it are lost";
    }
    return text;
}

} // namespace brisk::workbench
