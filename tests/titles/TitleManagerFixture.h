// A title manager with one title, game.exe, that is loaded from a real title database: its settings are in a real text
// file or in a real registry key.
#pragma once

#include "titles/TitleManager.h"

#include "FaultPoints.h"
#include "support/Sandbox.h"

#include <string>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace brisk::testing {

class TitleManagerFixture : public ::testing::Test {
protected:
    ~TitleManagerFixture() override { faults::reset(); }

    std::filesystem::path file() const { return folder / "game.cfg"; }
    std::string filePath() const { return toNarrow(file()); }

    void load(const nlohmann::json& titles) {
        writeFile(folder / "titles_db.json", titles.dump());
        ASSERT_TRUE(manager.loadTitlesDatabase(folder.narrow()));
    }

    void loadTitle(const nlohmann::json& title) { load(nlohmann::json::array({title})); }

    nlohmann::json textTitle(const char* fields, const char* conditions = "[]") const {
        return {{"config_type", "txt"},
                {"title_name", "The Game"},
                {"publisher", "Studio"},
                {"binary_name", "game.exe"},
                {"config_locations", nlohmann::json::array({filePath()})},
                {"config_fields", nlohmann::json::parse(fields)},
                {"patch_if", nlohmann::json::parse(conditions)}};
    }

    void loadTextTitle(const std::string& content, const char* fields, const char* conditions = "[]") {
        writeFile(file(), content);
        loadTitle(textTitle(fields, conditions));
    }

    // The key exists and is found.
    void loadRegistryTitle(const char* fields, const char* conditions = "[]") {
        HKEY opened = nullptr;
        ASSERT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, kKey, &opened), ERROR_SUCCESS);
        RegCloseKey(opened);
        nlohmann::json title = textTitle(fields, conditions);
        title["config_type"] = "reg";
        title["config_locations"] = nlohmann::json::array({"HKEY_CURRENT_USER/Software/Studio/Game"});
        loadTitle(title);
        ASSERT_TRUE(manager.isTitleSupported("", "game.exe", ""));
        log.take();
    }

    static void writeText(const char* name, const std::string& text) {
        RegSetKeyValueA(HKEY_CURRENT_USER, kKey, name, REG_SZ, text.c_str(), static_cast<DWORD>(text.size() + 1));
    }

    static void writeNumber(const char* name, std::int32_t number) {
        RegSetKeyValueA(HKEY_CURRENT_USER, kKey, name, REG_DWORD, &number, sizeof number);
    }

    // A value as JSON text; "none" for a missing one.
    static std::string readValue(const char* name) {
        char text[64];
        DWORD size = sizeof text;
        if (RegGetValueA(HKEY_CURRENT_USER, kKey, name, RRF_RT_REG_SZ, nullptr, text, &size) == ERROR_SUCCESS) {
            return '"' + std::string(text) + '"';
        }
        std::int32_t number = 0;
        size = sizeof number;
        if (RegGetValueA(HKEY_CURRENT_USER, kKey, name, RRF_RT_REG_DWORD, nullptr, &number, &size) == ERROR_SUCCESS) {
            return std::to_string(number);
        }
        return "none";
    }

    static constexpr char kKey[] = "Software\\Studio\\Game";

    TemporaryFolder folder;
    SandboxHive hive;
    CapturedLog log;
    TitleManager manager;
};

} // namespace brisk::testing
