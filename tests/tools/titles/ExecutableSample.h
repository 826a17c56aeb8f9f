// Executables without code, with version resources of any shape.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace brisk::workbench {

// The texts in one language, by their names: ASCII, and values in the characters of the Basic Multilingual Plane.
struct SampleTexts {
    std::string block; // "040904b0"
    std::vector<std::pair<std::string, std::u16string>> texts;
};

struct SampleVersion {
    std::vector<SampleTexts> languages;
    std::vector<std::pair<std::uint16_t, std::uint16_t>> translations; // language and code page
};

// The bytes of a version resource.
std::string versionResource(const SampleVersion& version);

// An executable with one version resource for each of the languages.
std::string executableWith(const std::vector<std::pair<std::uint16_t, std::string>>& resources, bool is64Bit = true);

// The one that most tests take: "Glass Orchard" by "Tallow & Reed" in American English.
SampleVersion commonVersion();

} // namespace brisk::workbench
