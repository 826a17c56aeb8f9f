#include "tools/titles/JsonReader.h"

#include "tools/titles/JsonDiagnosis.h"

#include <utility>

namespace brisk::workbench {

namespace {

using nlohmann::json;
using Type = json::value_t;

// An array, a title, its fields, a field, its value: deeper values are of the wrong type anyway.
constexpr std::size_t kKeptDepth = 16;

bool isBlankOrSeparator(char byte) {
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r' || byte == ',' || byte == ':';
}

// Follows the events of the JSON library through the text: it tells no positions, but the tokens come in order.
class ElementReader final : public json::json_sax_t {
public:
    ElementReader(std::string_view source, const std::function<void(const JsonValue&)>& elementHandler)
        : text(source), onElement(elementHandler) {
        if (text.starts_with("\xEF\xBB\xBF")) {
            cursor = 3;
        }
    }

    JsonOutcome outcome;

    bool null() override { return addScalar(nullptr, 4); }
    bool boolean(bool value) override { return addScalar(value, value ? 4 : 5); }
    bool number_integer(number_integer_t value) override { return addNumber(value); }
    bool number_unsigned(number_unsigned_t value) override { return addNumber(value); }
    bool number_float(number_float_t value, const string_t& /*digits*/) override { return addNumber(value); }
    bool string(string_t& value) override {
        const std::size_t begin = skip();
        return add(JsonValue{std::move(value), Type::string, begin, endOfString(begin), {}, {}});
    }
    bool binary(binary_t& /*value*/) override { return false; }
    bool start_object(std::size_t /*size*/) override { return open(Type::object); }
    bool start_array(std::size_t /*size*/) override { return open(Type::array); }
    bool key(string_t& name) override {
        const std::size_t begin = skip();
        cursor = endOfString(begin);
        isAfterKey = true;
        if (depth() <= kKeptDepth) {
            pendingKeys.back() = {std::move(name), begin, cursor, {}};
        }
        return true;
    }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const nlohmann::detail::exception& /*error*/) override {
        const char container = containers.empty() ? '\0' : text[containers.back()];
        outcome.fault = diagnoseJson(text, {cursor, isAfterKey, container, containers.empty() ? 0 : containers.back(),
                                            containers.empty() && outcome.rootType != Type::discarded});
        return false;
    }

private:
    std::size_t depth() const { return containers.size(); }

    std::size_t skip() {
        while (cursor < text.size() && isBlankOrSeparator(text[cursor])) {
            ++cursor;
        }
        return cursor;
    }

    std::size_t endOfString(std::size_t begin) const {
        std::size_t end = begin + 1;
        while (end < text.size() && text[end] != '"') {
            end += text[end] == '\\' ? 2U : 1U;
        }
        return std::min(end + 1, text.size());
    }

    // Digits behind a leading 0 are no part of the number.
    std::size_t endOfNumber(std::size_t at) const {
        const auto skipDigits = [&] { at = std::min(text.find_first_not_of("0123456789", at), text.size()); };
        const auto takes = [&](std::string_view signs) {
            const bool isNext = at < text.size() && signs.find(text[at]) != std::string_view::npos;
            at += isNext ? 1U : 0U;
            return isNext;
        };
        takes("-");
        if (!takes("0")) {
            skipDigits();
        }
        if (takes(".")) {
            skipDigits();
        }
        if (takes("eE")) {
            takes("+-");
            skipDigits();
        }
        return at;
    }

    bool addScalar(json value, std::size_t length) {
        const std::size_t begin = skip();
        const Type type = value.type();
        return add(JsonValue{std::move(value), type, begin, begin + length, {}, {}});
    }

    template <class Number>
    bool addNumber(Number value) {
        const std::size_t begin = skip();
        const std::size_t end = endOfNumber(begin);
        json number = value;
        const Type type = number.type();
        return add(JsonValue{std::move(number), type, begin, end, {}, {}});
    }

    bool add(JsonValue value) {
        cursor = value.end;
        isAfterKey = false;
        if (depth() == 0) {
            outcome.rootType = value.type;
            outcome.rootBegin = value.begin;
        } else if (depth() <= kKeptDepth) {
            attach(std::move(value));
        }
        return true;
    }

    void attach(JsonValue value) {
        if (depth() == 1 && outcome.rootType == Type::array) {
            onElement(value);
            return;
        }
        if (depth() == 1) {
            return;
        }
        JsonValue& parent = openValues.back();
        if (parent.isObject()) {
            pendingKeys.back().value = std::move(value);
            parent.members.push_back(std::move(pendingKeys.back()));
        } else {
            parent.items.push_back(std::move(value));
        }
    }

    bool open(Type type) {
        const std::size_t begin = skip();
        cursor = begin + 1;
        isAfterKey = false;
        if (depth() == 0) {
            outcome.rootType = type;
            outcome.rootBegin = begin;
        }
        if (depth() <= kKeptDepth) {
            JsonValue container;
            container.type = type;
            container.begin = begin;
            openValues.push_back(std::move(container));
            pendingKeys.emplace_back();
        }
        containers.push_back(begin);
        return true;
    }

    bool close() {
        cursor = skip() + 1;
        isAfterKey = false;
        containers.pop_back();
        if (depth() > kKeptDepth) {
            return true;
        }
        JsonValue value = std::move(openValues.back());
        openValues.pop_back();
        pendingKeys.pop_back();
        value.end = cursor;
        if (depth() > 0) {
            attach(std::move(value));
        }
        return true;
    }

    std::string_view text;
    const std::function<void(const JsonValue&)>& onElement;
    std::size_t cursor = 0; // behind the last token
    bool isAfterKey = false;
    std::vector<std::size_t> containers; // where each open object and array begins
    std::vector<JsonValue> openValues;
    std::vector<JsonValue::Member> pendingKeys; // one for each open container
};

} // namespace

const JsonValue::Member* JsonValue::find(std::string_view key) const {
    for (std::size_t last = members.size(); last-- > 0;) {
        if (members[last].key == key) {
            return &members[last];
        }
    }
    return nullptr;
}

JsonOutcome readJsonElements(std::string_view text, const std::function<void(const JsonValue&)>& onElement) {
    ElementReader reader(text, onElement);
    json::sax_parse(text.begin(), text.end(), &reader);
    return std::move(reader.outcome);
}

} // namespace brisk::workbench
