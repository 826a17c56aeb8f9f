#include "BriskHost.h"
#include "app/TitleInfo.h"
#include "bench/Measurement.h"
#include "bench/Memory.h"
#include "bench/Rows.h"
#include "bench/Samples.h"
#include "support/TemporaryFolder.h"
#include "support/TextFiles.h"
#include "titles/TitleManager.h"
#include "tools/titles/DatabaseCheck.h"

#include <nlohmann/json.hpp>

// Title databases and title information.

namespace brisk::bench {

namespace {

using nlohmann::json;

#ifdef _WIN32
constexpr double kLoadBar = 1.1;
#else
constexpr double kLoadBar = 0.9;
#endif

struct Database {
    explicit Database(std::size_t titles) : bytes(writeIn(folder, titles)) {}

    void load() const {
        TitleManager manager;
        require(manager.loadTitlesDatabase(folder.narrow()), "the database is not loaded");
    }

    const testing::TemporaryFolder folder;
    const std::string bytes;

private:
    static std::string writeIn(const testing::TemporaryFolder& folder, std::size_t titles) {
        writeTitles(folder.path(), titles);
        return testing::readFile(folder / "titles_db.json");
    }
};

void printLoad(std::size_t titles) {
    const Database database(titles);
    compare(
        "load " + std::to_string(titles) + " titles", [&] { database.load(); }, "json::parse in memory",
        [&] { require(json::parse(database.bytes).size() == titles, "other titles"); }, {Bar::Kind::AtMost, kLoadBar});
}

void printCheck(std::size_t titles) {
    const Database database(titles);
    compare(
        "brisktitles check of " + std::to_string(titles) + " titles",
        [&] { require(workbench::checkDatabase({"titles_db.json", database.bytes}).titles == titles, "other titles"); },
        "the service's load", [&] { database.load(); }, {Bar::Kind::AtMost, 3});
}

void printTitleInformation() {
    std::string block = "[";
    while (block.size() < 16'000'000) {
        block += R"({"id": 12, "names": ["a", "b"], "value": 1.5},)";
    }
    block += "null]";
    const COPYDATASTRUCT data{BRISK_TITLE_INFO_TAG, static_cast<DWORD>(block.size()), block.data()};
    compare(
        "title information of 16 MB", [&] { receiveTitleInfo(nullptr, BRISK_TITLE_INFO_TAG, &data); },
        "json::parse in memory", [&] { require(json::parse(block).is_array(), "no array"); }, {Bar::Kind::AtMost, 0.9});
}

} // namespace

void printMemoryRows() {
    const Bar bar{Bar::Kind::AtMost, 3};
    const testing::TemporaryFolder folder;
    const auto bytes = static_cast<double>(writeTitles(folder.path(), 100'000));
    const Memory before = readMemory();
    TitleManager manager;
    require(manager.loadTitlesDatabase(folder.narrow()), "the database is not loaded");
    const Memory after = readMemory();
    printFigures("100,000 titles: most memory while loading", after.peak - before.now, "file", bytes, "bytes", bar);
    printFigures("100,000 titles: memory afterwards", after.now - before.now, "file", bytes, "bytes", bar);
}

void printTitleRows() {
    for (const std::size_t titles : {std::size_t{1'000}, std::size_t{10'000}, std::size_t{100'000}}) {
        printLoad(titles);
    }
    printCheck(10'000);
    printCheck(100'000);
    printTitleInformation();
}

} // namespace brisk::bench
