#include "ServicesFixture.h"

#include "toast/ToastManager.h"

namespace brisk {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::plainToast;
using testing::toastDocument;

class ServicesTest : public testing::ServicesFixture {
protected:
    ~ServicesTest() override { toastImagePath.clear(); }
};

TEST_F(ServicesTest, ThereIsOneTitleManager) {
    EXPECT_EQ(&titleManager(), &titleManager());
    loadGame();
    EXPECT_THAT(titleManager().getBinaryNames(), ElementsAre("game.exe"));
}

TEST_F(ServicesTest, ToastsCarryAnEmptyLogoSourceUnlessThereIsAnImage) {
    EXPECT_EQ(toastImagePath, "");
    showToast("Title", "Subtitle", "Body", {{"Yes", [] {}}, {"No", [] {}}});
    toastImagePath = "C:\\logo.png";
    showToast("Title", "Subtitle", "", {});
    std::string withLogo = plainToast("Title", "Subtitle");
    withLogo.insert(withLogo.find("src=\"") + 5, R"(C:\\logo.png)");
    EXPECT_THAT(toasts.shown(),
                ElementsAre(toastDocument("Title", "Subtitle", "<text>Body</text>", {"Yes", "No"}), withLogo));
}

TEST_F(ServicesTest, ClearingHidesEveryToast) {
    clearToasts();
    showToast("One", "", "", {});
    showToast("Two", "", "", {});
    clearToasts();
    clearToasts();
    EXPECT_THAT(toasts.events(), ElementsAre("Show 1", "Show 2", "Hide 1", "Hide 2"));
    EXPECT_THAT(toasts.control.list(), IsEmpty());
}

TEST_F(ServicesTest, ToastThatCannotBeShownIsOnlyLogged) {
    toasts.control.setFailures("Show=0x80070005");
    showToast("One", "", "", {});
    EXPECT_THAT(log.take(), ElementsAre("Brisk : ToastManager: Can't show notification"));
}

TEST_F(ServicesTest, ToastManagerThatCannotBeMadeIsTheCallersException) {
    ToastManager::instance()->cleanup();
    GetProcAddressFault.fail(nullptr);
    const auto errorOf = [](auto operation) -> std::string {
        try {
            operation();
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "none";
    };
    EXPECT_EQ(errorOf(clearToasts), "ToastManager: Error, system in not supported");
    EXPECT_EQ(errorOf([] { showToast("One", "", "", {}); }), "ToastManager: Error, system in not supported");
    faults::reset();
    showToast("Two", "", "", {});
    EXPECT_THAT(toasts.shown(), ElementsAre(plainToast("Two", "")));
}

} // namespace
} // namespace brisk
