#include "tools/titles/VersionStrings.h"

#include "tools/titles/BoundedBytes.h"
#include "tools/titles/ExecutableResources.h"

#include <array>
#include <optional>

namespace brisk::workbench {

namespace {

char lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

void appendUtf8(std::string& text, std::uint32_t character) {
    if (character < 0x80) {
        text += static_cast<char>(character);
        return;
    }
    const unsigned rest = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    constexpr std::array<unsigned, 4> kFirst{0, 0xC0, 0xE0, 0xF0};
    text += static_cast<char>(kFirst[rest] | character >> 6U * rest);
    for (unsigned left = rest; left-- > 0;) {
        text += static_cast<char>(0x80U | (character >> 6U * left & 0x3FU));
    }
}

// The UTF-16 text up to its zero, or to the last whole unit.
std::string readText(const BoundedBytes& bytes, std::size_t offset) {
    std::string text;
    for (; offset + 2 <= bytes.size(); offset += 2) {
        const std::uint32_t unit = bytes.number16(offset);
        if (unit == 0) {
            break;
        }
        const bool isHigh = (unit & 0xFC00U) == 0xD800;
        const std::uint32_t next = isHigh && offset + 4 <= bytes.size() ? bytes.number16(offset + 2) : 0U;
        if (isHigh && (next & 0xFC00U) == 0xDC00) {
            appendUtf8(text, 0x10000 + ((unit & 0x3FFU) << 10U) + (next & 0x3FFU));
            offset += 2;
        } else {
            constexpr std::uint32_t kReplacement = 0xFFFD;
            appendUtf8(text, (unit & 0xF800U) == 0xD800 ? kReplacement : unit);
        }
    }
    return text;
}

// A node of the resource: lengths, a name, a value, children. All begin at multiples of four.
class Node {
public:
    Node(const BoundedBytes& all, std::size_t offset)
        : resource(all), end(offset + all.number16(offset)), valueLength(all.number16(offset + 2)),
          isText(all.number16(offset + 4) != 0) {
        std::size_t at = offset + 6;
        while (resource.number16(at) != 0) {
            if (at >= end) {
                throw ExecutableError("it is damaged: a name in its version resource has no end");
            }
            // A name is ASCII; what is none equals nothing that is looked for.
            const std::uint16_t unit = resource.number16(at);
            name += unit < 0x80 ? lower(static_cast<char>(unit)) : '?';
            at += 2;
        }
        value = aligned(at + 2);
    }

    // By a name in small letters.
    std::optional<Node> find(std::string_view childName) const {
        std::size_t at = aligned(value + std::size_t{valueLength} * (isText ? 2 : 1));
        while (at + 6 < end && resource.number16(at) != 0) {
            Node child(resource, at);
            if (child.name == childName) {
                return child;
            }
            at = aligned(child.end);
        }
        return std::nullopt;
    }

    std::string text() const { return valueLength == 0 ? std::string() : readText(resource, value); }

    // The first entry of the translation table as it names a block of strings; empty without one.
    std::string firstTranslation() const {
        std::string block;
        if (valueLength < 4) {
            return block;
        }
        for (const std::size_t part : {value, value + 2}) {
            const std::uint16_t number = resource.number16(part);
            for (unsigned shift = 16; shift > 0;) {
                shift -= 4;
                block += "0123456789abcdef"[number >> shift & 15U];
            }
        }
        return block;
    }

private:
    static std::size_t aligned(std::size_t offset) { return (offset + 3) / 4 * 4; }

    BoundedBytes resource;
    std::size_t end;
    std::uint16_t valueLength;
    bool isText;
    std::string name;
    std::size_t value = 0;
};

std::optional<Node> find(const std::optional<Node>& parent, std::string_view name) {
    return parent ? parent->find(name) : std::nullopt;
}

std::string textOf(const std::optional<Node>& node) {
    return node ? node->text() : std::string();
}

} // namespace

VersionStrings readVersionStrings(std::string_view executable) {
    const auto resource = findVersionResource(BoundedBytes(executable));
    if (!resource) {
        return {};
    }
    const std::optional<Node> root = Node(*resource, 0);
    const auto table = find(find(root, "varfileinfo"), "translation");
    const std::string translation = table ? table->firstTranslation() : std::string();
    if (translation.empty()) {
        return {};
    }
    const auto block = find(find(root, "stringfileinfo"), translation);
    return {textOf(find(block, "productname")), textOf(find(block, "companyname")),
            textOf(find(block, "originalfilename"))};
}

} // namespace brisk::workbench
