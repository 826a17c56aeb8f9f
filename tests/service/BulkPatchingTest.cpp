#include "service/ServiceFixture.h"

namespace brisk::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

class BulkPatchingTest : public ServiceFixture {
protected:
    // Four titles in files of this machine's folder, in the order of the walk.
    std::string database() const {
        std::string folder = toNarrow(machine.path());
        for (std::size_t i = 0; (i = folder.find('\\', i)) != std::string::npos; i += 2) {
            folder.insert(i, "\\");
        }
        const auto title = [&folder](const std::string& name, const std::string& file, const std::string& more) {
            return R"json({"config_type": "txt", "title_name": ")json" + name + R"json(", "binary_name": ")json" +
                   file + R"json(.exe", "config_locations": [")json" + folder + "\\\\" + file +
                   R"json(.ini"], "config_fields": [{"key": "(Width=)(\\d+)()", "meta": "width", "text": "LUMA Sharp"}])json" +
                   more + "}";
        };
        return "[" + title("Alder", "a", "") + "," + title("Birch", "b", R"(, "luma_version": 1)") + "," +
               title("Cedar", "c", "") + "," + title("Dogwood", "d", "") + "]";
    }

    void writeConfig(const char* name, const char* width) const {
        writeFile(machine / (std::string(name) + ".ini"), "Width=" + std::string(width) + "\r\n");
    }

    std::string checkedPath(const char* name) const {
        return "Brisk : checking path '" + machine.narrow() + "\\" + name + ".ini'.";
    }
};

TEST_F(BulkPatchingTest, WholePassWithAFailureReportsEveryTitleThatWasFound) {
    Service service(database().c_str());
    writeConfig("a", "1024");
    writeConfig("b", "1024");
    writeConfig("c", "800");
    // d is not installed; a is open elsewhere.
    const UniqueHandle editor(
        CreateFileW((machine / "a.ini").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    service.startAndWait();
    service.post(BRISK_MASSIVE_PATCHING);
    toasts.waitForShows(1);
    toasts.press(1, 0);
    toasts.waitForShows(2);
    service.quit();
    // The service's whole log.
    EXPECT_THAT(service.log(), ElementsAreArray(startLines() + bulkPassLines(display()) +
                                                Lines{"Brisk : publisher: '', binary name: 'a.exe'.",
                                                      checkedPath("a"),
                                                      "Brisk : config found.",
                                                      notOptimalLine("1024", "800"),
                                                      "Brisk : failed to patch a.exe",
                                                      "Brisk : publisher: '', binary name: 'b.exe'.",
                                                      checkedPath("b"),
                                                      "Brisk : config found.",
                                                      notOptimalLine("1024", "800"),
                                                      "Brisk : 'Birch' optimized.",
                                                      "Brisk : patch marker set for b.exe",
                                                      "Brisk : publisher: '', binary name: 'c.exe'.",
                                                      checkedPath("c"),
                                                      "Brisk : config found.",
                                                      "Brisk : c.exe doesn't need optimization. Skip.",
                                                      "Brisk : publisher: '', binary name: 'd.exe'.",
                                                      checkedPath("d"),
                                                      "Brisk : config not found.",
                                                      "Brisk : config for d.exe was not found. Skip.",
                                                      "Brisk : Toast : Read more",
                                                      "Brisk : finished"}));
    EXPECT_THAT(shownToasts(), ElementsAre(bulkFailedToast(), reportToast({{"Alder", kAdjustmentFailed},
                                                                           {"Birch", enabledLuma("LUMA Sharp")},
                                                                           {"Cedar", kNothingAdjusted}})));
    EXPECT_EQ(readFile(machine / "a.ini"), "Width=1024\r\n");
    EXPECT_EQ(readFile(machine / "b.ini"), "Width=800\r\n");
    EXPECT_EQ(stateValue("PatchedApps", "a.exe"), -1);
    EXPECT_EQ(stateValue("PatchedApps", "b.exe"), 1);
}

TEST_F(BulkPatchingTest, PassThatPatchesSaysSoAndDismissDoesNothing) {
    Service service(database().c_str());
    writeConfig("a", "1024");
    service.startAndWait();
    service.post(BRISK_MASSIVE_PATCHING);
    toasts.waitForShows(1);
    toasts.press(1, 1);
    service.quit();
    EXPECT_THAT(shownToasts(), ElementsAre(bulkPatchedToast()));
    EXPECT_EQ(readFile(machine / "a.ini"), "Width=800\r\n");
}

TEST_F(BulkPatchingTest, EverythingSetUpAlreadyIsSaidWithoutButtons) {
    Service service(database().c_str());
    writeConfig("a", "800");
    writeConfig("c", "800");
    service.startAndWait();
    service.post(BRISK_MASSIVE_PATCHING);
    toasts.waitForShows(1);
    service.quit();
    EXPECT_THAT(shownToasts(), ElementsAre(bulkNothingToDoToast()));
}

TEST_F(BulkPatchingTest, PatternThatIsNoRegularExpressionEndsTheServiceWithItsError) {
    std::string titles = database();
    titles.replace(titles.find("(Width="), 1, "((");
    Service service(titles.c_str());
    writeConfig("a", "1024");
    service.startAndWait();
    service.post(BRISK_MASSIVE_PATCHING);
    EXPECT_EQ(service.waitForEnd(), 1u);
    Lines lines = service.log();
    lines.erase(lines.begin(), lines.end() - 2);
    EXPECT_THAT(lines, ElementsAre("Brisk : config found.", "Brisk : Mismatched '(' and ')' in regular expression"));
    EXPECT_EQ(readFile(machine / "a.ini"), "Width=1024\r\n");
}

} // namespace
} // namespace brisk::testing
