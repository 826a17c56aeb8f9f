#include "toast/ToastManager.h"

#include "base/Version.h"
#include "toast/ToastFixture.h"

namespace brisk {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class ToastManagerTest : public testing::ToastFixture {
protected:
    ~ToastManagerTest() override {
        faults::reset();
        ToastManager::instance()->cleanup();
    }

    // The document of the toast shown last, as the record writes it.
    std::string shownDocument() {
        std::string document;
        for (const std::string& line : takeRecord()) {
            if (line.starts_with("LoadXml ")) {
                document = line.substr(8);
            }
        }
        return document;
    }
};

TEST_F(ToastManagerTest, FirstAccessRegistersTheServicesIdentity) {
    static std::wstring id;
    faults::replaceFunction("SetCurrentProcessExplicitAppUserModelID", faults::asProcedure(+[](PCWSTR text) -> HRESULT {
                                id = text;
                                return S_OK;
                            }));
    ToastManager::instance();
    EXPECT_EQ(id, L"Orlan.Experience.Brisk." BRISK_VERSION);
    EXPECT_TRUE(std::filesystem::exists(machine.path() / "Microsoft" / "Windows" / "Start Menu" / "Programs" /
                                        L"Orlan Software\uA789 Meridian Edition" /
                                        "Orlan Game Performance Monitoring.lnk"));
}

TEST_F(ToastManagerTest, UnsupportedSystemIsAnErrorAndThereIsNoManager) {
    faults::replaceFunction("RoGetActivationFactory", nullptr);
    for (int i = 0; i < 2; ++i) {
        try {
            ToastManager::instance();
            ADD_FAILURE();
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "ToastManager: Error, system in not supported");
        }
    }
}

TEST_F(ToastManagerTest, IdentityThatCannotBeRegisteredIsAnErrorAndThereIsNoManager) {
    SetEnvironmentVariableW(L"APPDATA", nullptr);
    for (int i = 0; i < 2; ++i) {
        try {
            ToastManager::instance();
            ADD_FAILURE();
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "ToastManager: Error, could not initialize the library");
        }
    }
    SetEnvironmentVariableW(L"APPDATA", machine.path().c_str());
}

TEST_F(ToastManagerTest, ThereIsOneManagerUntilCleanup) {
    const auto manager = ToastManager::instance();
    EXPECT_EQ(ToastManager::instance(), manager);
    manager->cleanup();
    EXPECT_NE(ToastManager::instance(), manager);
}

TEST_F(ToastManagerTest, ToastIsShownWithItsTextsAndButtons) {
    ToastManager::instance()->show("C:\\logo.png", "Title", "Subtitle", "Body", {{"Yes", [] {}}, {"No", [] {}}});
    EXPECT_EQ(shownDocument(),
              "\\n<toast template=\"ToastGeneric\" duration=\"long\" scenario=\"Default\"><visual>"
              "<binding template=\"ToastGeneric\"><image placement=\"appLogoOverride\" hint-crop=\"circle\" "
              "src=\"C:\\\\logo.png\"/><text>Title</text><text>Subtitle</text>\\n<text>Body</text></binding></visual>"
              "<actions><action content=\"Yes\" arguments=\"0\"/><action content=\"No\" arguments=\"1\"/></actions>"
              "</toast>");
}

TEST_F(ToastManagerTest, ToastIsShownUnderTheServicesIdentity) {
    ToastManager::instance()->show("", "T", "S", "B", {});
    EXPECT_THAT(takeRecord(), Contains("CreateToastNotifierWithId Orlan.Experience.Brisk." BRISK_VERSION));
}

TEST_F(ToastManagerTest, PressOfTheSecondButtonRunsOnlyItsCallbackAndReleasesTheToast) {
    std::vector<std::string> pressed;
    ToastManager::instance()->show(
        "", "T", "S", "B",
        {{"Yes", [&] { pressed.emplace_back("yes"); }}, {"No", [&] { pressed.emplace_back("no"); }}});
    EXPECT_EQ(toasts.press(1, 1).result, S_OK);
    EXPECT_THAT(pressed, ElementsAre("no"));
    takeRecord();
    ToastManager::instance()->clear();
    EXPECT_THAT(takeRecord(), ::testing::Not(Contains("Hide 1")));
}

TEST_F(ToastManagerTest, DismissedToastIsStillHeldAndItsButtonWorks) {
    int pressed = 0;
    for (int i = 0; i < 3; ++i) {
        ToastManager::instance()->show("", "T", "S", "B", {{"Yes", [&] { ++pressed; }}});
    }
    toasts.dismiss(1, 0);
    toasts.dismiss(2, 2);
    toasts.dismiss(3, 2);
    EXPECT_EQ(pressed, 0);
    EXPECT_EQ(toasts.press(1, 0).result, S_OK);
    EXPECT_EQ(toasts.press(2, 0).result, S_OK);
    EXPECT_EQ(pressed, 2);
    takeRecord();
    ToastManager::instance()->clear();
    const std::vector<std::string> record = takeRecord();
    EXPECT_THAT(record, ::testing::IsSupersetOf({"Hide 3", "remove_Activated 3"}));
    EXPECT_THAT(record, ::testing::Not(Contains(StartsWith("Hide 1"))));
    EXPECT_THAT(record, ::testing::Not(Contains(StartsWith("Hide 2"))));
}

TEST_F(ToastManagerTest, CallbackThatClearsItsOwnToastLivesToItsEnd) {
    const long before = toasts.liveObjects();
    auto text = std::make_shared<std::string>("still there");
    const std::weak_ptr<std::string> held = text;
    std::string read;
    ToastManager::instance()->show("", "T", "S", "B", {{"Yes", [&read, text] {
                                                            ToastManager::instance()->clear();
                                                            read = *text;
                                                        }}});
    text.reset();
    EXPECT_EQ(toasts.press(1, 0).result, S_OK);
    EXPECT_EQ(read, "still there");
    toasts.waitUntilIdle();
    EXPECT_TRUE(held.expired());
    EXPECT_EQ(toasts.liveObjects(), before);
}

TEST_F(ToastManagerTest, IndexThatNoButtonHasFailsTheEventOnly) {
    ToastManager::instance()->show("", "T", "S", "B", {{"Yes", [] {}}});
    EXPECT_EQ(toasts.activate(1, "1").result, E_FAIL);
    EXPECT_EQ(toasts.press(1, 0).result, S_OK);
}

TEST_F(ToastManagerTest, NonAsciiBytesAreSignExtendedInEveryString) {
    ToastManager::instance()->show("\x80", "\x9F", "\xBF", "\xC0", {{"A\xFDz", [] {}}});
    EXPECT_EQ(shownDocument(),
              "\\n<toast template=\"ToastGeneric\" duration=\"long\" scenario=\"Default\"><visual>"
              "<binding template=\"ToastGeneric\"><image placement=\"appLogoOverride\" hint-crop=\"circle\" "
              "src=\"\uFF80\"/><text>\uFF9F</text><text>\uFFBF</text>\\n<text>\uFFC0</text></binding></visual>"
              "<actions><action content=\"A\uFFFDz\" arguments=\"0\"/></actions></toast>");
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ToastManagerTest, HighestByteIsNoCharacterOfXmlSoTheSystemRefusesTheToast) {
    ToastManager::instance()->show("", "T", "S", "B", {{"\xFF", [] {}}});
    EXPECT_THAT(shownDocument(), ::testing::HasSubstr("content=\"\uFFFF\""));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : ToastManager: Can't show notification"));
}

TEST_F(ToastManagerTest, RefusedToastIsLoggedAndNothingElse) {
    toasts.setFailures("Show=0x80070005");
    EXPECT_NO_THROW(ToastManager::instance()->show("", "T", "S", "B", {}));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : ToastManager: Can't show notification"));
    toasts.setFailures("");
    ToastManager::instance()->show("", "Next", "S", "B", {});
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_THAT(toasts.list(), ElementsAre("2 screen Next"));
}

TEST_F(ToastManagerTest, CleanupHidesWhatIsShown) {
    ToastManager::instance()->show("", "T", "S", "B", {});
    ToastManager::instance()->cleanup();
    EXPECT_THAT(takeRecord(), Contains("Hide 1"));
}

} // namespace
} // namespace brisk
