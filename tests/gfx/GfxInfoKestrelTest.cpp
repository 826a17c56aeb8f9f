#include "gfx/GfxInfoKestrel.h"

#include "gfx/PrintDisplayInfo.h"
#include "support/Sandbox.h"
#include "support/kestrel/KestrelStandinControl.h"

#include <gmock/gmock.h>

#include <array>

namespace brisk {
namespace {

using kestrelstandin::kestrelFolderWithout;
using kestrelstandin::KestrelInThisProcess;
using kestrelstandin::KestrelStandin;
using kestrelstandin::kOneDisplay;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr char kInitializing[] = "Brisk : initializing GfxInfoKestrel.";
constexpr char kInitializingLibrary[] = "Brisk : initializing Kestrel.";
constexpr char kNotStarted[] = "Brisk : failed to initialize Kestrel.";
constexpr char kStarted[] = "Brisk : Kestrel initialized.";
constexpr char kGetMonitoring[] = "Brisk : get Kestrel performance monitoring services.";
constexpr char kNoMonitoring[] = "Brisk : failed to get Kestrel performance monitoring services.";
constexpr char kMonitoring[] = "Brisk : Kestrel performance monitoring services acquired.";
constexpr char kNoFps[] = "Brisk : failed to get current FPS from Kestrel.";
constexpr char kNoFpsData[] = "Brisk : failed to get FPS data from Kestrel.";

constexpr char kCallQueryFullVersion[] = "KestrelQueryFullVersion -> 0";
constexpr char kCallQueryVersion[] = "KestrelQueryVersion -> 0";
constexpr char kCallInitialize[] = "KestrelInitialize 0x000100000005001E -> 0";
constexpr char kCallMonitoring[] = "SystemServices.GetPerformanceMonitoringServices -> 0";
constexpr char kCallFps[] = "PerformanceMonitoringServices.GetCurrentFps -> 0";
constexpr char kReleaseMonitoring[] = "release PerformanceMonitoringServices";
constexpr char kReleaseSystem[] = "release SystemServices";
constexpr char kTerminate[] = "KestrelTerminate -> 0, 0 live";
constexpr char kUnload[] = "unload, 0 live";

class GfxInfoKestrelTest : public ::testing::Test {
protected:
    // Whatever happened, the library is gone, with every reference released once and before its end.
    ~GfxInfoKestrelTest() override {
        EXPECT_FALSE(KestrelInThisProcess::isLoaded());
        takeRecord();
        if (!records.empty()) {
            EXPECT_EQ(records.back(), kUnload);
        }
        EXPECT_THAT(records, Not(Contains(StartsWith("error"))));
    }

    std::vector<std::string> takeRecord() {
        std::vector<std::string> record = kestrel.takeRecord();
        records.insert(records.end(), record.begin(), record.end());
        return record;
    }

    testing::CapturedLog log;
    KestrelStandin kestrel;
    std::vector<std::string> records;
};

TEST_F(GfxInfoKestrelTest, ConstructionStartsTheLibraryAndGetsItsPerformanceMonitoring) {
    const KestrelInThisProcess here;
    const GfxInfoKestrel info;
    EXPECT_TRUE(info.isInitialized());
    EXPECT_THAT(log.take(), ElementsAre(kInitializing, kInitializingLibrary, kStarted, kGetMonitoring, kMonitoring));
    EXPECT_THAT(takeRecord(), ElementsAre(kCallQueryFullVersion, kCallQueryVersion, kCallInitialize, kCallMonitoring));
}

TEST_F(GfxInfoKestrelTest, DestructionReleasesThenTerminatesThenUnloads) {
    const KestrelInThisProcess here;
    {
        const GfxInfoKestrel info;
        log.take();
        takeRecord();
    }
    EXPECT_THAT(takeRecord(), ElementsAre(kReleaseMonitoring, kReleaseSystem, kTerminate, kUnload));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(GfxInfoKestrelTest, MissingLibraryLeavesItUninitialized) {
    EXPECT_FALSE(GfxInfoKestrel().isInitialized());
    EXPECT_THAT(log.take(), ElementsAre(kInitializing, kInitializingLibrary, kNotStarted));
    EXPECT_THAT(takeRecord(), IsEmpty());
}

TEST_F(GfxInfoKestrelTest, MissingEntryPointLeavesItUninitialized) {
    for (const char* missing : {"KestrelQueryFullVersion", "KestrelQueryVersion", "KestrelInitializeWithCallerTarn",
                                "KestrelInitializeWithIncompatibleDriver", "KestrelInitialize", "KestrelTerminate"}) {
        const KestrelInThisProcess here(kestrelFolderWithout(missing));
        EXPECT_FALSE(GfxInfoKestrel().isInitialized()) << missing;
        EXPECT_THAT(log.take(), ElementsAre(kInitializing, kInitializingLibrary, kNotStarted)) << missing;
    }
}

TEST_F(GfxInfoKestrelTest, LibraryThatDoesNotStartLeavesItUninitialized) {
    const KestrelInThisProcess here;
    for (const char* result : {"3", "4", "4294967295"}) {
        kestrel.setScript(std::string("result KestrelInitialize ") + result);
        EXPECT_FALSE(GfxInfoKestrel().isInitialized()) << result;
        EXPECT_THAT(log.take(), ElementsAre(kInitializing, kInitializingLibrary, kNotStarted)) << result;
        EXPECT_THAT(takeRecord(),
                    ElementsAre(kCallQueryFullVersion, kCallQueryVersion,
                                std::string("KestrelInitialize 0x000100000005001E -> ") + result, kTerminate, kUnload));
    }
}

TEST_F(GfxInfoKestrelTest, ResultsOneAndTwoAreSuccesses) {
    const KestrelInThisProcess here;
    for (const std::string result : {"1", "2"}) {
        kestrel.setScript("frames 75\nresult KestrelInitialize " + result +
                          "\nresult SystemServices.GetPerformanceMonitoringServices " + result +
                          "\nresult PerformanceMonitoringServices.GetCurrentFps " + result + "\nresult Fps.GetFps " +
                          result);
        GfxInfoKestrel info;
        EXPECT_TRUE(info.isInitialized());
        EXPECT_EQ(info.getCurrentFps(), 75u);
        EXPECT_THAT(log.take(),
                    ElementsAre(kInitializing, kInitializingLibrary, kStarted, kGetMonitoring, kMonitoring));
    }
}

TEST_F(GfxInfoKestrelTest, LibraryThatDoesNotMeasureStaysStartedUntilDestruction) {
    const KestrelInThisProcess here;
    for (const std::string failure : {"3", "4294967295", "0 empty"}) {
        kestrel.setScript(kOneDisplay + ("result SystemServices.GetPerformanceMonitoringServices " + failure));
        {
            GfxInfoKestrel info;
            EXPECT_FALSE(info.isInitialized());
            EXPECT_THAT(log.take(),
                        ElementsAre(kInitializing, kInitializingLibrary, kStarted, kGetMonitoring, kNoMonitoring));
            EXPECT_EQ(info.getNativeDisplayInfo(), (DisplayInfo{2560, 1440, 0, 60}));
            takeRecord();
        }
        EXPECT_THAT(takeRecord(), ElementsAre(kReleaseSystem, kTerminate, kUnload));
        log.take();
    }
}

TEST_F(GfxInfoKestrelTest, LibraryThatStartsWithoutSystemServicesLeavesItUninitialized) {
    const KestrelInThisProcess here;
    kestrel.setScript("result KestrelInitialize 0 empty");
    GfxInfoKestrel info;
    EXPECT_FALSE(info.isInitialized());
    EXPECT_THAT(log.take(), ElementsAre(kInitializing, kInitializingLibrary, kStarted, kGetMonitoring, kNoMonitoring));
    EXPECT_EQ(info.getNativeDisplayInfo(), DisplayInfo{});
    EXPECT_THAT(log.take(), ElementsAre("Brisk : failed to get Kestrel system services."));
}

TEST_F(GfxInfoKestrelTest, CurrentFrameRateIsMeasuredAnewOnEveryCallWithoutALine) {
    const KestrelInThisProcess here;
    kestrel.setScript("frames 60 45*2 30\n");
    GfxInfoKestrel info;
    log.take();
    std::array<std::uint32_t, 6> rates{};
    for (std::uint32_t& rate : rates) {
        rate = info.getCurrentFps();
    }
    EXPECT_THAT(rates, ElementsAre(60, 45, 45, 30, 30, 30));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(GfxInfoKestrelTest, FrameRateObjectIsReleasedAfterEveryCall) {
    const KestrelInThisProcess here;
    kestrel.setScript("result Fps.GetFps:2 3\n");
    GfxInfoKestrel info;
    takeRecord();
    info.getCurrentFps();
    info.getCurrentFps();
    EXPECT_THAT(takeRecord(),
                ElementsAre(kCallFps, "Fps.GetFps -> 0", "release Fps", kCallFps, "Fps.GetFps -> 3", "release Fps"));
    EXPECT_EQ(KestrelInThisProcess::liveReferences(), 2u);
}

TEST_F(GfxInfoKestrelTest, FrameRateThatCannotBeMeasuredIsLoggedAndZero) {
    const KestrelInThisProcess here;
    kestrel.setScript("frames 60\n"
                      "result PerformanceMonitoringServices.GetCurrentFps:1 3\n"
                      "result PerformanceMonitoringServices.GetCurrentFps:2 0 empty\n"
                      "result Fps.GetFps:1 3\n"
                      "result Fps.GetFps:2 4294967295\n");
    GfxInfoKestrel info;
    log.take();
    EXPECT_EQ(info.getCurrentFps(), 0u);
    EXPECT_EQ(info.getCurrentFps(), 0u);
    EXPECT_EQ(info.getCurrentFps(), 0u);
    EXPECT_EQ(info.getCurrentFps(), 0u);
    EXPECT_THAT(log.take(), ElementsAre(kNoFps, kNoFps, kNoFpsData, kNoFpsData));
    EXPECT_EQ(info.getCurrentFps(), 60u);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(GfxInfoKestrelTest, UninitializedItAnswersZerosWithTheirLines) {
    GfxInfoKestrel info;
    log.take();
    EXPECT_EQ(info.getCurrentFps(), 0u);
    EXPECT_EQ(info.getNativeDisplayInfo(), DisplayInfo{});
    EXPECT_THAT(log.take(), ElementsAre(kNoFps, "Brisk : failed to get Kestrel system services."));
}

TEST_F(GfxInfoKestrelTest, NativeModeIsTheLibrarysAndAskedAfreshOnEveryCall) {
    const KestrelInThisProcess here;
    kestrel.setScript("desktop 0 0\ndisplay 3840 2160 143.5\nresult SystemServices.GetDesktopServices:2 3\n");
    GfxInfoKestrel info;
    log.take();
    EXPECT_EQ(info.getNativeDisplayInfo(), (DisplayInfo{3840, 2160, 0, 144}));
    EXPECT_EQ(info.getNativeDisplayInfo(), DisplayInfo{});
    EXPECT_EQ(info.getNativeDisplayInfo(), (DisplayInfo{3840, 2160, 0, 144}));
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : Kestrel primary display found.",
                            "Brisk : Kestrel native display features fetched.",
                            "Brisk : failed to get Kestrel desktop services.", "Brisk : Kestrel primary display found.",
                            "Brisk : Kestrel native display features fetched."));
    EXPECT_EQ(KestrelInThisProcess::liveReferences(), 2u);
}

TEST_F(GfxInfoKestrelTest, DestructionAfterUseLeavesNoReferenceBehind) {
    const KestrelInThisProcess here;
    {
        GfxInfoKestrel info;
        info.getCurrentFps();
        info.getNativeDisplayInfo();
        takeRecord();
    }
    EXPECT_THAT(takeRecord(), ElementsAre(kReleaseMonitoring, kReleaseSystem, kTerminate, kUnload));
}

} // namespace
} // namespace brisk
