#include "bench/Samples.h"

#include <cstdio>
#include <fstream>
#include <memory>
#include <stdexcept>

#include <nlohmann/json.hpp>

namespace brisk::bench {

namespace {

using nlohmann::json;

std::string titleText(std::size_t number) {
    const std::string name = "Game" + std::to_string(number);
    return R"json({
  "id": )json" +
           std::to_string(number) +
           R"json(, "luma_version": 1,
  "title_name": "The Adventures of )json" +
           name + R"json(",
  "publisher": "Studio of )json" +
           name + R"json(",
  "binary_name": ")json" +
           name + R"json(-Win64.exe",
  "config_type": "txt",
  "config_locations": ["%LOCALAPPDATA%\\)json" +
           name + R"json(\\Saved\\Config\\Settings.ini", "%APPDIR%\\Settings.ini"],
  "patch_if": [ { "key": "(\\nFullscreen=)(\\w+)()",
           "presence" : [ "true", "yes" ]
} ],
  "config_fields": [
    { "key": "(\\nResolutionSizeX=)(\\d+)()", "meta": "width", "value": 1920, "text": "Resolution" },
    { "key": "(\\nResolutionSizeY=)(\\d+)()", "meta": "height", "value": 1080 },
    { "key": "(\\nQuality=)(\\w+)()", "value": "High", "create_key": "(\\[Display\\]\\n)()()", "create_value": "Quality=*\n" }
  ]
})json";
}

std::string settingName(std::size_t number) {
    return "Setting" + std::to_string(number);
}

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File open(const std::filesystem::path& file, const char* mode) {
    File opened(std::fopen(file.string().c_str(), mode), std::fclose);
    require(opened != nullptr, "cannot open " + file.string());
    return opened;
}

} // namespace

void require(bool isRight, const std::string& what) {
    if (!isRight) {
        throw std::logic_error(what);
    }
}

std::string settingsText(std::size_t bytes) {
    std::string text = "[Settings]\r\n";
    for (int number = 0; text.size() < bytes; ++number) {
        text += "Option" + std::to_string(number) + " = " + std::to_string(number * 7919 % 1000) + " ; x\r\n";
        if (number % 100 == 0) {
            text += "Volume" + std::to_string(number) + "=80\r\n";
        }
    }
    return text + "<resolution depth=\"32\" width=\"1280\"/>\r\n{ \"width\" : 1280 }\r\n[Display]\r\nHeight=720\r\n"
                  "Width=1280\r\nResolutionWidth=1280\r\n";
}

std::string manySettings(std::size_t count, int value) {
    std::string text;
    for (std::size_t number = 0; number < count; ++number) {
        text += settingName(number) + "=" + std::to_string(value) + "\n";
    }
    return text;
}

json manyFields(std::size_t count, int value) {
    json fields = json::array();
    for (std::size_t number = 0; number < count; ++number) {
        fields.push_back({{"key", "(\\n" + settingName(number) + "=)(\\d+)()"}, {"value", value}});
    }
    return fields;
}

void writeDatabase(const std::filesystem::path& folder, const std::string& file, const json& fields) {
    std::ofstream(folder / "titles_db.json") << json::array(
        {{{"config_type", "txt"}, {"binary_name", "a.exe"}, {"config_locations", {file}}, {"config_fields", fields}}});
}

std::size_t writeTitles(const std::filesystem::path& folder, std::size_t count) {
    std::ofstream stream(folder / "titles_db.json", std::ios::binary);
    stream << '[';
    for (std::size_t number = 0; number < count; ++number) {
        stream << (number == 0 ? "" : ",\n") << titleText(number);
    }
    stream << ']';
    return static_cast<std::size_t>(stream.tellp());
}

std::string readText(const std::filesystem::path& file) {
    std::string text(std::filesystem::file_size(file), '\0');
    const File opened = open(file, "r");
    text.resize(std::fread(text.data(), 1, text.size(), opened.get()));
    return text;
}

void writeText(const std::filesystem::path& file, const std::string& text) {
    const File opened = open(file, "w");
    require(std::fwrite(text.data(), 1, text.size(), opened.get()) == text.size(), "cannot write " + file.string());
}

} // namespace brisk::bench
