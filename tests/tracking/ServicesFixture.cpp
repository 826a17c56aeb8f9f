#include "ServicesFixture.h"

#include "support/ProcessState.h"

namespace brisk::testing {

ServicesFixture::ServicesFixture() {
    renewProcessState();
    gfxInfo = gfx;
    desktop.executable = toNarrow(folder / "game.exe");
    desktop.publisher = "Studio";
}

ServicesFixture::~ServicesFixture() {
    gfxInfo.reset();
    faults::reset();
}

void ServicesFixture::loadTitles(const std::vector<nlohmann::json>& titles) {
    renewTitleManager();
    writeFile(folder / "titles_db.json", nlohmann::json(titles).dump());
    titleManager().loadTitlesDatabase(folder.narrow());
}

nlohmann::json ServicesFixture::textTitle(const std::string& name, const std::string& binaryName,
                                          const std::string& file) const {
    return {{"config_type", "txt"},
            {"title_name", name},
            {"publisher", "Studio"},
            {"binary_name", binaryName},
            {"config_locations", nlohmann::json::array({toNarrow(folder / file)})},
            {"config_fields", {{{"key", R"((Width=)(\d+)())"}, {"meta", "width"}, {"value", 0}}}}};
}

nlohmann::json ServicesFixture::resolutionFields() {
    return nlohmann::json::parse(R"json([
        {"key": "(A=)(\\d+)()", "meta": "native_width", "value": 0},
        {"key": "(B=)(\\d+)()", "meta": "native_height", "value": 0},
        {"key": "(C=)(\\d+)()", "meta": "width", "value": 0},
        {"key": "(D=)(\\d+)()", "meta": "height", "value": 0}])json");
}

void ServicesFixture::loadGame() {
    nlohmann::json title = textTitle("The Game", "game.exe", "game.ini");
    title["id"] = 1001;
    loadTitles({title});
    writeFile(settings(), "Width=1920\r\n");
}

std::int64_t ServicesFixture::stateValue(const std::string& subkey, const std::string& name) {
    const std::string path = "SOFTWARE\\Orlan\\briskGCT" + (subkey.empty() ? "" : "\\" + subkey);
    DWORD number = 0;
    DWORD size = sizeof number;
    return RegGetValueA(HKEY_CURRENT_USER, path.c_str(), name.c_str(), RRF_RT_REG_DWORD, nullptr, &number, &size) ==
                   ERROR_SUCCESS
               ? std::int64_t{number}
               : -1;
}

} // namespace brisk::testing
