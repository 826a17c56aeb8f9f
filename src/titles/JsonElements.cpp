#include "titles/JsonElements.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace brisk {

namespace {

using nlohmann::json;

// What the parser calls for each piece of the text.
class ElementReader {
public:
    explicit ElementReader(const std::function<void(const json&)>& elementFunction) : onElement(elementFunction) {}

    bool isArray() const { return hasArray; }

    // NOLINTBEGIN(readability-identifier-naming): the library's own names.
    bool null() { return add(nullptr); }
    bool boolean(bool value) { return add(value); }
    bool number_integer(json::number_integer_t value) { return add(value); }
    bool number_unsigned(json::number_unsigned_t value) { return add(value); }
    bool number_float(json::number_float_t value, const std::string& /*text*/) { return add(value); }
    bool string(std::string& value) { return add(std::move(value)); }
    bool binary(json::binary_t& value) { return add(std::move(value)); }

    bool start_array(std::size_t /*size*/) {
        if (depth == 0) {
            hasArray = true;
        }
        return open(json::value_t::array);
    }
    bool start_object(std::size_t /*size*/) { return open(json::value_t::object); }
    bool key(std::string& name) {
        if (makesElements() && depth > 1) {
            // Of a member given twice the last one counts.
            member = &(*openParts.back())[std::move(name)];
        }
        return true;
    }
    bool end_array() { return close(); }
    bool end_object() { return close(); }

    template <class Error>
    [[noreturn]] bool parse_error(std::size_t /*place*/, const std::string& /*token*/, const Error& error) {
        throw error;
    }
    // NOLINTEND(readability-identifier-naming)

private:
    // Of a text that is no array, and where nobody asks for elements, only the syntax matters.
    bool makesElements() const { return hasArray && onElement; }

    json& place(json&& value) {
        if (openParts.empty()) {
            return element = std::move(value);
        }
        if (openParts.back()->is_array()) {
            return openParts.back()->emplace_back(std::move(value));
        }
        return *member = std::move(value);
    }

    template <class Value>
    bool add(Value&& value) {
        if (makesElements()) {
            place(std::forward<Value>(value));
            finish();
        }
        return true;
    }

    bool open(json::value_t type) {
        if (makesElements() && depth > 0) {
            openParts.push_back(&place(type));
        }
        ++depth;
        return true;
    }

    bool close() {
        --depth;
        if (!openParts.empty()) {
            openParts.pop_back();
            finish();
        }
        return true;
    }

    void finish() {
        if (openParts.empty()) {
            onElement(element);
        }
    }

    const std::function<void(const json&)>& onElement;
    bool hasArray = false; // whether the text is one
    std::size_t depth = 0; // of the arrays and objects that are open, the text's own array being one
    json element;
    std::vector<json*> openParts; // of the element
    json* member = nullptr;       // the place of the next value in an object
};

} // namespace

bool readJsonElements(std::istream& text, const std::function<void(const json&)>& onElement) {
    ElementReader reader(onElement);
    json::sax_parse(text, &reader);
    return reader.isArray();
}

} // namespace brisk
