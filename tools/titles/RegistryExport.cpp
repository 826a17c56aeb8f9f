#include "tools/titles/RegistryExport.h"

#include "tools/titles/AsciiText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <vector>

namespace brisk::workbench {

namespace {

constexpr std::string_view kHead5 = "Windows Registry Editor Version 5.00";
constexpr std::string_view kHead4 = "REGEDIT4";

void appendUtf8(std::string& text, char32_t character) {
    const auto tail = [&](unsigned shift) { text += static_cast<char>(0x80U | ((character >> shift) & 0x3FU)); };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0U | (character >> 6U));
        tail(0);
    } else if (character < 0x10000) {
        text += static_cast<char>(0xE0U | (character >> 12U));
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0U | (character >> 18U));
        tail(12);
        tail(6);
        tail(0);
    }
}

// Half a surrogate pair becomes the replacement character, as it does on Windows; an odd last byte is left out.
std::string utf8OfUtf16(std::string_view bytes) {
    std::string text;
    const auto unitAt = [bytes](std::size_t at) {
        return static_cast<char32_t>(static_cast<unsigned char>(bytes[at]) |
                                     (static_cast<unsigned char>(bytes[at + 1]) << 8U));
    };
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        char32_t character = unitAt(at);
        if (character >= 0xD800 && character < 0xE000) {
            const char32_t next = character < 0xDC00 && at + 3 < bytes.size() ? unitAt(at + 2) : 0;
            if (next >= 0xDC00 && next < 0xE000) {
                character = 0x10000 + ((character - 0xD800) << 10U) + (next - 0xDC00);
                at += 2;
            } else {
                character = 0xFFFD;
            }
        }
        appendUtf8(text, character);
    }
    return text;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t\r");
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1);
}

// Takes a quoted text from the front; \" and \\ stand for the second character.
std::optional<std::string> takeQuoted(std::string_view& rest) {
    std::string text;
    for (std::size_t at = 1; at < rest.size(); ++at) {
        if (rest[at] == '"') {
            rest.remove_prefix(at + 1);
            return text;
        }
        at += rest[at] == '\\' && at + 1 < rest.size() ? 1U : 0U;
        text += rest[at];
    }
    return std::nullopt;
}

bool isTextType(std::uint32_t type) {
    return type == kRegistryText || type == 2 || type == 7; // REG_EXPAND_SZ, REG_MULTI_SZ
}

std::string readBytes(std::string_view text) {
    std::string bytes;
    while (!text.empty()) {
        const std::size_t comma = text.find(',');
        const std::string_view number = trimmed(text.substr(0, comma));
        unsigned value = 0;
        if (std::from_chars(number.data(), number.data() + number.size(), value, 16).ec == std::errc()) {
            bytes += static_cast<char>(value);
        }
        text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    }
    return bytes;
}

std::optional<RegistryValue> readValue(std::string_view text, bool isWide) {
    if (text.starts_with('"')) {
        auto content = takeQuoted(text);
        return content ? std::optional(RegistryValue{kRegistryText, *content + '\0'}) : std::nullopt;
    }
    std::uint32_t number = 0;
    if (text.starts_with("dword:")) {
        text.remove_prefix(6);
        const auto read = std::from_chars(text.data(), text.data() + text.size(), number, 16);
        if (read.ec != std::errc() || read.ptr != text.data() + text.size()) {
            return std::nullopt;
        }
        std::string data;
        for (unsigned shift = 0; shift < 32; shift += 8) {
            data += static_cast<char>(number >> shift);
        }
        return RegistryValue{kRegistryNumber, data};
    }
    if (!text.starts_with("hex")) {
        return std::nullopt; // "-" deletes a value
    }
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    number = 3; // REG_BINARY
    if (text[3] == '(') {
        std::from_chars(text.data() + 4, text.data() + colon, number, 16);
    }
    std::string data = readBytes(text.substr(colon + 1));
    return RegistryValue{number, isTextType(number) && isWide ? utf8OfUtf16(data) : data};
}

// Lines, those that end in a backslash joined with the next one.
struct ExportLine {
    std::string text;
    std::size_t number;
};

std::vector<ExportLine> splitLines(std::string_view text) {
    std::vector<ExportLine> lines;
    bool continues = false;
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::size_t end = text.find('\n');
        std::string_view line = trimmed(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        const bool isContinued = line.ends_with('\\');
        if (isContinued) {
            line.remove_suffix(1);
        }
        if (continues) {
            lines.back().text += line;
        } else {
            lines.push_back({std::string(line), number});
        }
        continues = isContinued;
    }
    return lines;
}

// False for what no export has.
bool readLine(std::string_view line, bool isWide, RegistryKey& key) {
    std::optional<std::string> name = std::string();
    if (line.starts_with('"')) {
        name = takeQuoted(line);
    } else if (line.starts_with('@')) {
        line.remove_prefix(1);
    } else {
        return line.empty() || line.starts_with(';');
    }
    line = trimmed(line);
    if (!name || !line.starts_with('=')) {
        return false;
    }
    const std::string_view text = trimmed(line.substr(1));
    auto value = readValue(text, isWide);
    if (value) {
        key[*name] = std::move(*value);
    }
    return value || text == "-";
}

std::string inQuotationMarks(std::string_view text) {
    std::string result = "\"";
    for (const char byte : text) {
        if (byte == '"' || byte == '\\') {
            result += '\\';
        }
        result += byte;
    }
    return result + '"';
}

std::string hexadecimal(unsigned number, int digits) {
    std::string text;
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
        text += "0123456789abcdef"[(number >> static_cast<unsigned>(shift)) & 0xFU];
    }
    return text;
}

} // namespace

bool IgnoringCase::operator()(std::string_view one, std::string_view other) const {
    return std::lexicographical_compare(one.begin(), one.end(), other.begin(), other.end(),
                                        [](char a, char b) { return lowered(a) < lowered(b); });
}

std::optional<RegistryKeys> readRegistryExport(std::string_view bytes,
                                               const std::function<void(std::size_t)>& onFault) {
    std::string text;
    if (bytes.starts_with("\xFF\xFE")) {
        text = utf8OfUtf16(bytes.substr(2));
    } else {
        text = bytes.substr(bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0);
    }
    const std::vector<ExportLine> lines = splitLines(text);
    const bool isWide = !lines.empty() && lines.front().text == kHead5;
    if (!isWide && (lines.empty() || lines.front().text != kHead4)) {
        return std::nullopt;
    }
    RegistryKeys keys;
    RegistryKey* key = nullptr;
    for (const ExportLine& each : lines) {
        const std::string_view line = each.text;
        if (line.starts_with('[') && line.ends_with(']')) {
            const std::string path(line.substr(1, line.size() - 2));
            key = path.starts_with('-') ? nullptr : &keys[path];
            for (std::size_t end = path.find('\\'); key && end != std::string::npos; end = path.find('\\', end + 1)) {
                keys.try_emplace(path.substr(0, end));
            }
        } else if (key && !readLine(line, isWide, *key) && onFault) {
            onFault(each.number);
        }
    }
    return keys;
}

std::string describe(const RegistryKey& key) {
    std::string text;
    for (const auto& [name, value] : key) {
        text += (name.empty() ? std::string("@") : inQuotationMarks(name)) + '=';
        if (value.type == kRegistryText && value.data.ends_with('\0') &&
            value.data.find('\0') == value.data.size() - 1) {
            text += inQuotationMarks(std::string_view(value.data).substr(0, value.data.size() - 1));
        } else if (value.type == kRegistryNumber && value.data.size() == 4) {
            unsigned number = 0;
            for (unsigned at = 0; at < 4; ++at) {
                number |= static_cast<unsigned>(static_cast<unsigned char>(value.data[at])) << (8 * at);
            }
            text += "dword:" + hexadecimal(number, 8);
        } else {
            text += "hex(" + hexadecimal(value.type, value.type > 0xF ? 8 : 1) + "):";
            for (std::size_t at = 0; at < value.data.size(); ++at) {
                text += (at > 0 ? "," : "") + hexadecimal(static_cast<unsigned char>(value.data[at]), 2);
            }
        }
        text += '\n';
    }
    return text;
}

} // namespace brisk::workbench
