#include "hostile/HostileFixture.h"

namespace brisk::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

class HostileConfigurationFilesTest : public HostileFixture {
protected:
    void setTitle(const std::string& type, const std::string& location) const {
        setDatabase(R"([{"id": 1001, "config_type": ")" + type + R"(", "title_name": "Starlit Harbour",
            "publisher": "Brackwater Games", "binary_name": "StarlitHarbour.exe",
            "config_locations": [")" +
                    escaped(location) +
                    R"json("], "config_fields": [{"key": "(Width=)(\\d+)()", "meta": "width"}]}])json");
    }

    const Lines namedLines{"Brisk : publisher: '', binary name: 'StarlitHarbour.exe'."};
    const Lines skippedLines{"Brisk : config for StarlitHarbour.exe was not found. Skip."};
    const Lines patchedPassLines = Lines{"Brisk : config found.", notOptimalLine("1024", "800")} +
                                   patchedLines("Starlit Harbour", "StarlitHarbour.exe");
    const Lines adjustedPassLines{"Brisk : config found.",
                                  "Brisk : StarlitHarbour.exe doesn't need optimization. Skip."};

    // One bulk pass, and what it takes.
    void passOnce() {
        service.post(BRISK_MASSIVE_PATCHING);
        toasts.waitForShows(++passes, std::chrono::minutes(1));
        settle();
    }

    // One pass of a service that is started for it and quits then; what it logs.
    Lines passFromTheBeginning() {
        std::filesystem::remove(service.logFile());
        passes = 0;
        startStorm();
        passOnce();
        quitStorm();
        Lines lines = log();
        lines.resize(lines.size() - 3); // what settling logs, and the end
        return lines;
    }

    unsigned passes = 0;
};

TEST_F(HostileConfigurationFilesTest, FileOf50MegabytesIsRewrittenWholeAndForgotten) {
    const auto text = [](const std::string& width) {
        const std::string filler = repeated("Volume=0.5\r\nName=Player\r\n", 25 * kMegabyte / 25);
        return "Width=" + width + "\r\n" + filler + "Width=" + width + "\r\n" + filler + "Width=" + width;
    };
    setTitle("txt", toNarrow(settings()));
    writeFile(settings(), "Width=1024\r\n");
    startStorm();
    passOnce(); // the first toast costs more than the following ones
    const std::size_t first = service.log().size();
    writeFile(settings(), text("1024"));
    beginStorm();
    passOnce();
    endStorm(4);
    // Of a file that is only checked, the text stays until the title is next checked or patched.
    passOnce();
    const ProcessCounters checked = readCounters(service.processId());
    EXPECT_GE(checked.privateBytes, before.privateBytes + text("800").size() * 9 / 10);
    const std::string adjusted = readFile(settings());
    writeFile(settings(), "Width=800\r\n");
    passOnce();
    endStorm(4);
    EXPECT_EQ(service.quit(), 0u);
    EXPECT_TRUE(adjusted == text("800"));
    const Lines checking{"Brisk : checking path '" + toNarrow(settings()) + "'."};
    const auto settling = [](const std::string& number) {
        return Lines{"Brisk : onAppFinished, p1 = " + number + ", p2 = 0",
                     "Brisk : got BRISK_APP_FINISHED message in IDLE state."};
    };
    EXPECT_THAT(service.logFrom(first),
                ElementsAreArray(bulkPassLines(display()) + namedLines + checking + patchedPassLines +
                                 settling("1000002") + bulkPassLines(display()) + namedLines + checking +
                                 adjustedPassLines + settling("1000003") + bulkPassLines(display()) + namedLines +
                                 checking + adjustedPassLines + settling("1000004") + Lines{"Brisk : finished"}));
}

TEST_F(HostileConfigurationFilesTest, LocationOfFortyThousandCharactersIsAbsent) {
    for (const std::string& location : {"C:\\" + std::string(40'000, 'x'), "C:" + repeated("\\folder", 6'000)}) {
        setTitle("txt", location);
        EXPECT_THAT(passFromTheBeginning(),
                    ElementsAreArray(bulkPassLines(display()) + namedLines +
                                     Lines{"Brisk : checking path '" + location + "'.", "Brisk : config not found."} +
                                     skippedLines));
    }
}

TEST_F(HostileConfigurationFilesTest, WildcardBehindFortyThousandCharactersIsRefused) {
    setTitle("txt", "C:\\" + std::string(40'000, 'x') + "\\*\\Settings.ini");
    EXPECT_THAT(passFromTheBeginning(), ElementsAreArray(bulkPassLines(display()) + namedLines + skippedLines));
}

TEST_F(HostileConfigurationFilesTest, RegistryPathOfFortyThousandCharactersIsNotFound) {
    const std::string path(40'000, 'x');
    setTitle("reg", "HKEY_CURRENT_USER/" + path);
    EXPECT_THAT(passFromTheBeginning(), ElementsAreArray(bulkPassLines(display()) + namedLines +
                                                         Lines{"Brisk : checking registry path '" + path + "'.",
                                                               "Brisk : RegOpenKeyEx failed. Error 87."} +
                                                         skippedLines));
}

TEST_F(HostileConfigurationFilesTest, StarIsTheOnlyFolderAmongThousandsOfFiles) {
    const unsigned entries = scaled(3'000, 20'000); // Wine takes minutes to create 20,000
    for (unsigned i = 1; i < entries; ++i) {
        writeFile(machine / "Saves" / ("file" + std::to_string(i) + ".sav"), "");
    }
    const std::filesystem::path file = machine / "Saves" / "profile" / "Settings.ini";
    writeFile(file, "Width=1024\r\n");
    setTitle("txt", machine.narrow() + "\\Saves\\*\\Settings.ini");
    EXPECT_THAT(passFromTheBeginning(),
                ElementsAreArray(bulkPassLines(display()) + namedLines +
                                 Lines{"Brisk : checking path '" + toNarrow(file) + "'."} + patchedPassLines));
    EXPECT_EQ(readFile(file), "Width=800\r\n");
}

TEST_F(HostileConfigurationFilesTest, StarIsTheFirstOfThousandsOfFolders) {
    const unsigned entries = scaled(2'000, 5'000);
    for (unsigned i = 0; i < entries; ++i) {
        std::filesystem::create_directories(machine / "Saves" / ("profile" + std::to_string(100'000 + i)));
    }
    setTitle("txt", machine.narrow() + "\\Saves\\*\\Settings.ini");
    EXPECT_THAT(passFromTheBeginning(), ElementsAreArray(bulkPassLines(display()) + namedLines +
                                                         Lines{"Brisk : checking path '" + machine.narrow() +
                                                                   "\\Saves\\profile100000\\Settings.ini'.",
                                                               "Brisk : config not found."} +
                                                         skippedLines));
}

} // namespace
} // namespace brisk::testing
