#include "tools/titles/ExecutableSample.h"

namespace brisk::workbench {

namespace {

constexpr std::uint32_t kAddress = 0x1000; // where the resources are loaded
constexpr std::size_t kFileOffset = 0x200; // where they lie in the file

std::string number16(std::size_t number) {
    return {static_cast<char>(number & 0xFFU), static_cast<char>(number >> 8U & 0xFFU)};
}

std::string number32(std::size_t number) {
    return number16(number) + number16(number >> 16U);
}

std::string wide(const std::u16string& text) {
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += number16(unit);
    }
    return bytes;
}

void align(std::string& bytes) {
    bytes.resize((bytes.size() + 3) / 4 * 4, '\0');
}

std::string node(const std::string& name, const std::string& value, bool isText,
                 const std::vector<std::string>& children) {
    std::string bytes = wide(std::u16string(name.begin(), name.end())) + number16(0);
    bytes = std::string(6, '\0') + bytes;
    align(bytes);
    bytes += value;
    for (const std::string& child : children) {
        align(bytes);
        bytes += child;
    }
    const std::string head =
        number16(bytes.size()) + number16(isText ? value.size() / 2 : value.size()) + number16(isText ? 1 : 0);
    return bytes.replace(0, head.size(), head);
}

// A table of the resources' tree with entries for these identifiers.
std::string table(const std::vector<std::pair<std::size_t, std::size_t>>& entries) {
    std::string bytes = std::string(12, '\0') + number16(0) + number16(entries.size());
    for (const auto& [identifier, place] : entries) {
        bytes += number32(identifier) + number32(place);
    }
    return bytes;
}

std::string resourceSection(const std::vector<std::pair<std::uint16_t, std::string>>& resources) {
    constexpr std::size_t kIsTable = 0x80000000;
    constexpr std::size_t kOneEntry = 24; // bytes of a table
    const std::size_t entriesBegin = 2 * kOneEntry + 16 + 8 * resources.size();
    std::size_t dataBegin = entriesBegin + 16 * resources.size();
    std::vector<std::pair<std::size_t, std::size_t>> languages;
    std::string entries;
    std::string data;
    for (const auto& [language, bytes] : resources) {
        languages.emplace_back(language, entriesBegin + entries.size());
        entries += number32(kAddress + dataBegin + data.size()) + number32(bytes.size()) + number32(0) + number32(0);
        data += bytes;
        align(data);
    }
    return table({{16, kIsTable + kOneEntry}}) + table({{1, kIsTable + 2 * kOneEntry}}) + table(languages) + entries +
           data;
}

} // namespace

std::string versionResource(const SampleVersion& version) {
    std::vector<std::string> blocks;
    for (const SampleTexts& language : version.languages) {
        std::vector<std::string> texts;
        for (const auto& [name, text] : language.texts) {
            texts.push_back(node(name, wide(text) + number16(0), true, {}));
        }
        blocks.push_back(node(language.block, {}, true, texts));
    }
    std::string translations;
    for (const auto& [language, codePage] : version.translations) {
        translations += number16(language) + number16(codePage);
    }
    const std::string fixedPart = number32(0xFEEF04BD) + number32(0x10000) + std::string(44, '\0');
    return node("VS_VERSION_INFO", fixedPart, false,
                {node("StringFileInfo", {}, true, blocks),
                 node("VarFileInfo", {}, true, {node("Translation", translations, false, {})})});
}

std::string executableWith(const std::vector<std::pair<std::uint16_t, std::string>>& resources, bool is64Bit) {
    const std::string section = resourceSection(resources);
    constexpr std::size_t kDirectories = 16;
    const std::size_t sectionSize = (section.size() + 0x1FF) / 0x200 * 0x200;
    std::string optional = number16(is64Bit ? 0x20B : 0x10B) + std::string(14, '\0') + number32(0) + number32(0x1000) +
                           (is64Bit ? "" : number32(0));
    optional += number32(0x400000) + (is64Bit ? number32(0) : "") + number32(0x1000) + number32(0x200) + number16(6) +
                number16(0) + number32(0) + number16(6) + number16(0) + number32(0) +
                number32(kAddress + (section.size() + 0xFFF) / 0x1000 * 0x1000) + number32(kFileOffset) + number32(0) +
                number16(2) + number16(0);
    optional += std::string(is64Bit ? 32 : 16, '\0') + number32(0) + number32(kDirectories);
    optional += std::string(16, '\0') + number32(resources.empty() ? 0 : kAddress) + number32(section.size()) +
                std::string((kDirectories - 3) * 8, '\0');
    std::string file = "MZ" + std::string(58, '\0') + number32(64) + std::string("PE\0\0", 4) +
                       number16(is64Bit ? 0x8664 : 0x14C) + number16(1) + std::string(12, '\0') +
                       number16(optional.size()) + number16(is64Bit ? 0x22 : 0x102) + optional;
    file += std::string(".rsrc\0\0\0", 8) + number32(section.size()) + number32(kAddress) + number32(sectionSize) +
            number32(kFileOffset) + std::string(12, '\0') + number32(0x40000040);
    file.resize(kFileOffset, '\0');
    file += section;
    file.resize(kFileOffset + sectionSize, '\0');
    return file;
}

SampleVersion commonVersion() {
    return {{{"040904b0",
              {{"CompanyName", u"Tallow & Reed"},
               {"OriginalFilename", u"Orchard.exe"},
               {"ProductName", u"Glass Orchard"}}}},
            {{0x0409, 0x04B0}}};
}

} // namespace brisk::workbench
