#include "tools/log/JsonWriter.h"

#include "tools/log/Markup.h"

#include <cmath>
#include <cstdio>
#include <utility>

namespace brisk::logbook {

std::string JsonWriter::take() {
    return std::exchange(written, {});
}

void JsonWriter::newLine() {
    written += '\n';
    written.append(isEmpty.size() * 2, ' ');
}

void JsonWriter::beforeValue() {
    if (isAfterKey) {
        isAfterKey = false;
    } else if (!isEmpty.empty()) {
        written += isEmpty.back() ? "" : ",";
        isEmpty.back() = false;
        newLine();
    }
}

void JsonWriter::begin(char bracket) {
    beforeValue();
    written += bracket;
    isEmpty.push_back(true);
}

void JsonWriter::end(char bracket) {
    const bool wasEmpty = isEmpty.back();
    isEmpty.pop_back();
    if (!wasEmpty) {
        newLine();
    }
    written += bracket;
    if (isEmpty.empty()) {
        written += '\n';
    }
}

void JsonWriter::key(std::string_view name) {
    beforeValue();
    quote(name);
    written += ": ";
    isAfterKey = true;
}

void JsonWriter::literal(std::string_view text) {
    beforeValue();
    written += text;
}

void JsonWriter::value(std::string_view text) {
    beforeValue();
    quote(text);
}

void JsonWriter::value(std::uint64_t number) {
    literal(std::to_string(number));
}

void JsonWriter::value(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", number);
    literal(std::isfinite(number) ? text : "null");
}

void JsonWriter::quote(std::string_view text) {
    written += '"';
    while (!text.empty()) {
        const auto byte = static_cast<unsigned char>(text.front());
        if (byte >= 0x20 && byte < 0x80) {
            if (byte == '"' || byte == '\\') {
                written += '\\';
            }
            written += text.front();
            text.remove_prefix(1);
        } else if (byte < 0x20) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(byte));
            written += byte == '\n' ? "\\n" : byte == '\t' ? "\\t" : escaped;
            text.remove_prefix(1);
        } else {
            const std::size_t length = characterLength(text);
            written += length == 0 ? kReplacementCharacter : text.substr(0, length);
            text.remove_prefix(length == 0 ? 1 : length);
        }
    }
    written += '"';
}

} // namespace brisk::logbook
