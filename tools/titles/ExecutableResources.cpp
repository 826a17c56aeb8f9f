#include "tools/titles/ExecutableResources.h"

#include <algorithm>

namespace brisk::workbench {

namespace {

constexpr std::uint32_t kVersionType = 16;
constexpr std::uint32_t kVersionName = 1;
constexpr std::uint32_t kNoLanguage = 0;
constexpr std::uint32_t kAmericanEnglish = 0x0409;

// The executable's parts as they lie in the file; addresses are relative to where Windows loads it.
class Image {
public:
    explicit Image(const BoundedBytes& given) : file(given) {
        if (!file.holds(0, "MZ")) {
            throw ExecutableError("it is no Windows executable");
        }
        const std::size_t header = file.number32(0x3C);
        if (!file.holds(header, std::string_view("PE\0\0", 4))) {
            throw ExecutableError("it is no executable for 32-bit or 64-bit Windows");
        }
        sectionCount = file.number16(header + 6);
        optionalHeader = header + 24;
        sections = optionalHeader + file.number16(header + 20);
    }

    // The resources up to their section's end; nothing when there are none.
    std::optional<BoundedBytes> resources() const {
        constexpr std::uint16_t k32Bit = 0x10B;
        constexpr std::uint16_t k64Bit = 0x20B;
        const std::uint16_t kind = file.number16(optionalHeader);
        if (kind != k32Bit && kind != k64Bit) {
            throw ExecutableError("it is no executable for 32-bit or 64-bit Windows");
        }
        const std::size_t directories = optionalHeader + (kind == k32Bit ? 96 : 112);
        constexpr std::size_t kResources = 2;
        if (file.number32(directories - 4) <= kResources) {
            return std::nullopt;
        }
        const std::uint32_t address = file.number32(directories + 8 * kResources);
        return address == 0 ? std::nullopt : std::optional(at(address));
    }

    // From the address to its section's end.
    BoundedBytes at(std::uint32_t address) const {
        for (std::size_t index = 0; index < sectionCount; ++index) {
            const std::size_t section = sections + index * 40;
            const std::uint32_t first = file.number32(section + 12);
            const std::uint32_t size = file.number32(section + 16);
            if (address >= first && address - first < size) {
                const std::size_t begin = file.number32(section + 20);
                const std::size_t length = std::min<std::size_t>(size, file.size() - std::min(begin, file.size()));
                return file.part(begin, length).from(address - first);
            }
        }
        throw ExecutableError("it is damaged: its resources lie in none of its sections");
    }

private:
    BoundedBytes file;
    std::size_t optionalHeader = 0;
    std::size_t sections = 0;
    std::size_t sectionCount = 0;
};

// A table of the resources' tree: entries of an identifier and a place.
class Table {
public:
    Table(const BoundedBytes& allResources, std::size_t offset)
        : resources(allResources), entries(offset + 16),
          count(std::size_t{allResources.number16(offset + 12)} + allResources.number16(offset + 14)) {}

    std::optional<std::uint32_t> find(std::uint32_t identifier) const {
        for (std::size_t index = 0; index < count; ++index) {
            if (resources.number32(entries + index * 8) == identifier) {
                return resources.number32(entries + index * 8 + 4);
            }
        }
        return std::nullopt;
    }

    std::optional<std::uint32_t> first() const {
        return count == 0 ? std::nullopt : std::optional(resources.number32(entries + 4));
    }

    std::optional<Table> findTable(std::uint32_t identifier) const {
        constexpr std::uint32_t kIsTable = 0x80000000;
        const auto place = find(identifier);
        return place && (*place & kIsTable) != 0 ? std::optional(Table(resources, *place & ~kIsTable)) : std::nullopt;
    }

private:
    BoundedBytes resources;
    std::size_t entries;
    std::size_t count;
};

} // namespace

std::optional<BoundedBytes> findVersionResource(const BoundedBytes& executable) {
    const Image image(executable);
    const auto resources = image.resources();
    if (!resources) {
        return std::nullopt;
    }
    const auto names = Table(*resources, 0).findTable(kVersionType);
    const auto languages = names ? names->findTable(kVersionName) : std::nullopt;
    if (!languages) {
        return std::nullopt;
    }
    auto place = languages->find(kNoLanguage);
    if (!place) {
        place = languages->find(kAmericanEnglish);
    }
    if (!place) {
        place = languages->first();
    }
    if (!place) {
        return std::nullopt;
    }
    return image.at(resources->number32(*place)).part(0, resources->number32(std::size_t{*place} + 4));
}

} // namespace brisk::workbench
