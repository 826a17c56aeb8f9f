#include "gfx/OptimalResolution.h"

#include "gfx/PrintDisplayInfo.h"

#include <gtest/gtest.h>

namespace brisk {
namespace {

constexpr DisplayInfo kNone{};

DisplayInfo size(std::uint32_t width, std::uint32_t height) {
    return {width, height, 0, 0};
}

TEST(OptimalResolutionTest, SecondLargestOfTheSameShapeIsChosen) {
    EXPECT_EQ(findOptimalResolution({size(2560, 1440), size(1920, 1080), size(1280, 720), size(1600, 1200)},
                                    size(2560, 1440)),
              size(1920, 1080));
}

TEST(OptimalResolutionTest, OrderOfTheModesDoesNotMatter) {
    EXPECT_EQ(
        findOptimalResolution({size(1280, 720), size(2560, 1440), size(640, 360), size(1920, 1080)}, size(2560, 1440)),
        size(1920, 1080));
}

TEST(OptimalResolutionTest, SecondLargestIsChosenAlsoWhenTheReferenceIsNoModeItself) {
    EXPECT_EQ(findOptimalResolution({size(1920, 1080), size(1600, 900), size(1280, 720)}, size(2560, 1440)),
              size(1600, 900));
}

TEST(OptimalResolutionTest, DepthAndFrequencyOfTheResultStayZero) {
    EXPECT_EQ(findOptimalResolution({{1920, 1080, 32, 144}, {1280, 720, 32, 60}}, {1920, 1080, 32, 144}),
              size(1280, 720));
}

TEST(OptimalResolutionTest, ModesThatDifferOnlyInDepthOrFrequencyCountOnce) {
    EXPECT_EQ(findOptimalResolution({{1920, 1080, 32, 60}, {1920, 1080, 32, 144}, {1920, 1080, 16, 60}},
                                    {1920, 1080, 32, 60}),
              kNone);
    EXPECT_EQ(
        findOptimalResolution({{1920, 1080, 32, 60}, {1920, 1080, 32, 144}, {1280, 720, 32, 60}, {1280, 720, 32, 144}},
                              {1920, 1080, 32, 60}),
        size(1280, 720));
}

TEST(OptimalResolutionTest, FewerThanTwoModesOfTheShapeGiveNothing) {
    EXPECT_EQ(findOptimalResolution({}, size(1920, 1080)), kNone);
    EXPECT_EQ(findOptimalResolution({size(1920, 1080)}, size(1920, 1080)), kNone);
    EXPECT_EQ(findOptimalResolution({size(1920, 1080), size(1600, 1200), size(1024, 768)}, size(1920, 1080)), kNone);
}

TEST(OptimalResolutionTest, ModeWiderThanTheReferenceIsIgnored) {
    EXPECT_EQ(findOptimalResolution({size(3840, 2160), size(1920, 1080), size(1280, 720)}, size(1920, 1080)),
              size(1280, 720));
    EXPECT_EQ(findOptimalResolution({size(3840, 2160), size(1921, 1080), size(1920, 1080)}, size(1920, 1080)), kNone);
}

TEST(OptimalResolutionTest, ModeOfEqualWidthButOtherHeightIsJudgedByItsShapeAlone) {
    // Higher than the reference, but nearly of its shape.
    EXPECT_EQ(findOptimalResolution({size(1920, 1080), size(1920, 1090)}, size(1920, 1080)), size(1920, 1080));
    EXPECT_EQ(findOptimalResolution({size(1920, 1080), size(1920, 1070)}, size(1920, 1080)), size(1920, 1070));
    EXPECT_EQ(findOptimalResolution({size(1920, 1080), size(1920, 1200)}, size(1920, 1080)), kNone);
}

TEST(OptimalResolutionTest, EqualWidthsAreOrderedByHeight) {
    EXPECT_EQ(findOptimalResolution({size(1366, 768), size(1366, 770), size(1366, 766)}, size(1366, 768)),
              size(1366, 768));
}

TEST(OptimalResolutionTest, ShapeMayDifferByAHundredthInSinglePrecision) {
    // In double precision 1.01 and 1 differ by more than 0.01.
    EXPECT_EQ(findOptimalResolution({size(100, 101), size(90, 90)}, size(100, 100)), size(90, 90));
    EXPECT_EQ(findOptimalResolution({size(100, 99), size(90, 90)}, size(100, 100)), size(90, 90));
    EXPECT_EQ(findOptimalResolution({size(1000, 1011), size(900, 900)}, size(1000, 1000)), kNone);
    EXPECT_EQ(findOptimalResolution({size(1000, 989), size(900, 900)}, size(1000, 1000)), kNone);
}

TEST(OptimalResolutionTest, ReferenceWithoutAWidthAcceptsNoMode) {
    EXPECT_EQ(findOptimalResolution({size(1920, 1080), size(0, 1080), size(0, 720), size(0, 0)}, size(0, 1080)), kNone);
    EXPECT_EQ(findOptimalResolution({size(1920, 1080), size(1280, 720), size(0, 0)}, kNone), kNone);
}

TEST(OptimalResolutionTest, ModeWithoutAWidthIsNotAccepted) {
    EXPECT_EQ(findOptimalResolution({size(1920, 1080), size(0, 0), size(0, 1080)}, size(1920, 1080)), kNone);
}

TEST(OptimalResolutionTest, PortraitDisplaysWorkLikeOthers) {
    EXPECT_EQ(findOptimalResolution({size(1080, 1920), size(720, 1280), size(1920, 1080)}, size(1080, 1920)),
              size(720, 1280));
}

TEST(OptimalResolutionTest, WidthsAreComparedUnsignedWithTheReferenceAndOrderedSigned) {
    constexpr std::uint32_t kHuge = 0xFFFFFFFF;
    EXPECT_EQ(findOptimalResolution({size(kHuge, kHuge), size(200, 200), size(100, 100)}, size(kHuge, kHuge)),
              size(100, 100));
    EXPECT_EQ(findOptimalResolution({size(kHuge, kHuge), size(200, 200)}, size(kHuge, kHuge)), size(kHuge, kHuge));
}

} // namespace
} // namespace brisk
