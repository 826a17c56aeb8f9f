#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brisk::logbook {

// Writes JSON as it comes: a document about a large log is never held whole. Members and items stand on lines of their
// own.
class JsonWriter {
public:
    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }

    // A member's name; its value follows.
    void key(std::string_view name);
    void value(std::string_view text); // bytes that are no UTF-8 become the replacement character
    void value(const char* text) { value(std::string_view(text)); }
    void value(std::uint64_t number);
    void value(std::uint32_t number) { value(std::uint64_t{number}); }
    void value(double number); // null where it is no number
    void value(bool flag) { literal(flag ? "true" : "false"); }
    void null() { literal("null"); }

    template <class Value>
    void member(std::string_view name, const Value& one) {
        key(name);
        value(one);
    }
    // Null where there is nothing.
    template <class Value>
    void member(std::string_view name, const std::optional<Value>& one) {
        key(name);
        one ? value(*one) : null();
    }
    // Null where the text is empty.
    void textMember(std::string_view name, const std::string& text) {
        key(name);
        text.empty() ? null() : value(text);
    }

    // What has been written since the last call.
    std::string take();

private:
    void begin(char bracket);
    void end(char bracket);
    void beforeValue();
    void newLine();
    void literal(std::string_view text);
    void quote(std::string_view text);

    std::string written;
    std::vector<bool> isEmpty; // of the open brackets
    bool isAfterKey = false;
};

} // namespace brisk::logbook
