// What the buttons of the offer do.
#include "GameEndFixture.h"

namespace brisk {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

class OfferButtonsTest : public testing::GameEndFixture {};

TEST_F(OfferButtonsTest, ConfigureSettingsPatchesTheTitleAndSaysNothingMore) {
    finishWithOffer();
    press(0);
    EXPECT_THAT(log.take(), ElementsAreArray(testing::configuredLines("The Game", "game.exe")));
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
    EXPECT_EQ(stateValue("PatchedApps", "game.exe"), 1);
    EXPECT_THAT(toasts.events(), ElementsAre("Show 1", "Activated 1 0"));
}

TEST_F(OfferButtonsTest, MarkerThatCannotBeSetDoesNotMakeThePatchFail) {
    finishWithOffer();
    RegSetValueExAFault.fail(ERROR_ACCESS_DENIED);
    press(0);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Configure Settings", "Brisk : 'The Game' optimized.",
                                        "Brisk : setPatched : RegSetValueEx failed. Error 5.",
                                        "Brisk : failed to set patch marker for game.exe"));
    EXPECT_EQ(stateValue("PatchedApps", "game.exe"), -1);
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
    EXPECT_THAT(toasts.shown(), ElementsAre(offer()));
}

TEST_F(OfferButtonsTest, PatchThatFailsIsToldInAToastAndSetsNoMarker) {
    finishWithOffer();
    std::filesystem::remove(settings());
    press(0);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Configure Settings", "Brisk : failed to patch game.exe"));
    EXPECT_EQ(stateValue("PatchedApps", "game.exe"), -1);
    EXPECT_THAT(toasts.shown(), ElementsAre(offer(), testing::gameFailedToast()));
}

TEST_F(OfferButtonsTest, ErrorToastReplacesWhatIsStillShown) {
    finishWithOffer();
    showToast("Other", "", "", {});
    std::filesystem::remove(settings());
    press(0);
    EXPECT_THAT(toasts.control.list(), ElementsAre(std::string("3 screen ") + testing::kAdjustmentsTitle));
}

TEST_F(OfferButtonsTest, NotNowCountsARefusalOfThisTitle) {
    finishWithOffer();
    press(1);
    EXPECT_THAT(log.take(), ElementsAreArray(testing::notNowLines("game.exe")));
    EXPECT_EQ(stateValue("ToastsShown", "game.exe"), 1);
    EXPECT_EQ(testing::readFile(settings()), "Width=1920\r\n");
}

TEST_F(OfferButtonsTest, RefusalThatCannotBeCountedIsLogged) {
    finishWithOffer();
    RegSetValueExAFault.fail(ERROR_ACCESS_DENIED);
    press(1);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Not now",
                                        "Brisk : incNumberOfToastsShown : RegSetValueEx failed. Error 5.",
                                        "Brisk : failed to increment toasts counter for game.exe"));
    EXPECT_EQ(stateValue("ToastsShown", "game.exe"), -1);
    EXPECT_THAT(toasts.shown(), ElementsAre(offer()));
}

TEST_F(OfferButtonsTest, DontAskAgainDisablesAllOffers) {
    finishWithOffer();
    press(2);
    EXPECT_THAT(log.take(), ElementsAreArray(testing::dontAskAgainLines()));
    EXPECT_EQ(stateValue("", "ToastsNotAllowed"), 1);
    EXPECT_EQ(stateValue("ToastsShown", "game.exe"), -1);
}

TEST_F(OfferButtonsTest, OffersThatCannotBeDisabledAreLogged) {
    finishWithOffer();
    RegCreateKeyExAFault.fail(ERROR_ACCESS_DENIED);
    press(2);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Don't ask again",
                                        "Brisk : disallowToasts : RegCreateKeyEx failed. Error 5.",
                                        "Brisk : failed to disable toasts"));
    EXPECT_THAT(toasts.shown(), ElementsAre(offer()));
    faults::reset();
    EXPECT_EQ(stateValue("", "ToastsNotAllowed"), -1);
}

TEST_F(OfferButtonsTest, DismissedOfferCountsNothing) {
    finishWithOffer();
    for (const unsigned reason : {0u, 2u, 1u}) {
        toasts.control.dismiss(1, reason);
    }
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(stateValue("ToastsShown", "game.exe"), -1);
}

TEST_F(OfferButtonsTest, ButtonsConcernTheTitleOfTheContextEvenAfterItWasReset) {
    finish();
    resetTrackingContext();
    log.take();
    configureSettings();
    notNow();
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Configure Settings", "Brisk : failed to patch ",
                                        "Brisk : Toast : Not now", "Brisk : increment toasts counter for "));
    EXPECT_THAT(toasts.shown(), ElementsAre(offer(), testing::gameFailedToast()));
    EXPECT_EQ(stateValue("ToastsShown", ""), 1);
    EXPECT_EQ(testing::readFile(settings()), "Width=1920\r\n");
}

TEST_F(OfferButtonsTest, BrokenPatternIsAFailureCodeForTheNotificationSystem) {
    finishWithOffer();
    nlohmann::json title = textTitle("The Game", "game.exe", "game.ini");
    title["config_fields"] = nlohmann::json::parse(R"json([{"key": "(", "value": 1}])json");
    loadTitles({title});
    EXPECT_EQ(toasts.control.press(1, 0).result, E_FAIL);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Configure Settings"));
    EXPECT_EQ(testing::readFile(settings()), "Width=1920\r\n");
    playAt(40);
    EXPECT_THROW(finish(), std::runtime_error);
    EXPECT_EQ(trackingState, TrackingState::Idle);
}

} // namespace
} // namespace brisk
