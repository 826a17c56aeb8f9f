// What becomes of real files of every kind when a text title loads and saves them.
#include "titles/TextConfigAdapter.h"

#include "base/WindowsHandles.h"
#include "support/Processes.h"
#include "support/Sandbox.h"

#include <gmock/gmock.h>

namespace brisk {
namespace {

using ::testing::IsEmpty;

class TextFilesTest : public ::testing::Test {
protected:
    TextFilesTest() { title.configLocations = {in("cfg.ini")}; }

    std::string in(const std::string& rest) const { return folder.narrow() + "\\" + rest; }

    // The text that is loaded from a file of these bytes.
    std::string load(const std::string& bytes) {
        testing::writeFile(folder / "cfg.ini", bytes);
        EXPECT_TRUE(title.loadConfig());
        return title.content;
    }

    // The file's bytes after loading, setting Width to 1920 and saving.
    std::string rewrite(const std::string& bytes) {
        load(bytes);
        EXPECT_TRUE(title.setValue("(Width=)(\\d+)()", "1920"));
        EXPECT_TRUE(title.saveConfig());
        return testing::readFile(folder / "cfg.ini");
    }

    // A handle on a file that shares it with others as given, while it lives.
    class Opened {
    public:
        Opened(const std::filesystem::path& file, DWORD access, DWORD share)
            : handle(CreateFileW(file.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr)) {
            EXPECT_NE(handle, INVALID_HANDLE_VALUE) << GetLastError();
        }
        Opened(const Opened&) = delete;
        Opened& operator=(const Opened&) = delete;
        ~Opened() { CloseHandle(handle); }

    private:
        HANDLE handle;
    };

    // A process that does nothing but hold a file open, while this lives.
    class OpenedElsewhere {
    public:
        OpenedElsewhere(const std::filesystem::path& file, DWORD share) {
            SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
            const UniqueHandle handle(
                CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, share, &inherited, OPEN_EXISTING, 0, nullptr));
            EXPECT_NE(handle.get(), INVALID_HANDLE_VALUE) << GetLastError();
            wchar_t program[MAX_PATH];
            GetModuleFileNameW(nullptr, program, MAX_PATH);
            holder = testing::startProcess(program, L"", {}, true, CREATE_SUSPENDED);
        }
        OpenedElsewhere(const OpenedElsewhere&) = delete;
        OpenedElsewhere& operator=(const OpenedElsewhere&) = delete;
        ~OpenedElsewhere() {
            TerminateProcess(holder.hProcess, 0);
            EXPECT_EQ(WaitForSingleObject(holder.hProcess, 10'000), WAIT_OBJECT_0);
            CloseHandle(holder.hThread);
            CloseHandle(holder.hProcess);
        }

    private:
        PROCESS_INFORMATION holder{};
    };

    // Whether the title can be loaded, and saved.
    std::pair<bool, bool> loadAndSave() {
        const bool loads = title.loadConfig();
        return {loads, title.saveConfig()};
    }

    testing::TemporaryFolder folder;
    testing::CapturedLog log;
    TextConfigAdapter title;
};

TEST_F(TextFilesTest, CarriageReturnsBeforeLineFeedsAreNotSeenAndAreWrittenAgain) {
    EXPECT_EQ(load("a\r\nWidth=1280\r\n"), "a\nWidth=1280\n");
    EXPECT_EQ(rewrite("a\r\nWidth=1280\r\nb\r\n"), "a\r\nWidth=1920\r\nb\r\n");
}

TEST_F(TextFilesTest, BareLineFeedsGetACarriageReturn) {
    EXPECT_EQ(load("a\nWidth=1280\n\nb\n"), "a\nWidth=1280\n\nb\n");
    EXPECT_EQ(rewrite("a\nWidth=1280\n\nb\n"), "a\r\nWidth=1920\r\n\r\nb\r\n");
}

TEST_F(TextFilesTest, MixedLineEndsBecomeTheSame) {
    EXPECT_EQ(load("a\nWidth=1280\r\nb\n"), "a\nWidth=1280\nb\n");
    EXPECT_EQ(rewrite("a\nWidth=1280\r\nb\n"), "a\r\nWidth=1920\r\nb\r\n");
}

TEST_F(TextFilesTest, CarriageReturnsElsewhereStay) {
    EXPECT_EQ(load("a\rb\r\r\nc\r"), "a\rb\r\nc\r");
    EXPECT_EQ(rewrite("a\rWidth=1280\r\r\nb\r"), "a\rWidth=1920\r\r\nb\r");
}

TEST_F(TextFilesTest, MissingFinalLineEndStaysMissing) {
    EXPECT_EQ(load("a\r\nWidth=1280"), "a\nWidth=1280");
    EXPECT_EQ(rewrite("a\r\nWidth=1280"), "a\r\nWidth=1920");
}

TEST_F(TextFilesTest, ByteOrderMarkIsTextLikeAnyOther) {
    EXPECT_EQ(load("\xEF\xBB\xBFWidth=1280\r\n"), "\xEF\xBB\xBFWidth=1280\n");
    EXPECT_EQ(title.getValue("^(Width=)(\\d+)()", "default"), "default");
    EXPECT_EQ(title.getValue("^(...Width=)(\\d+)()", "default"), "1280");
    EXPECT_EQ(rewrite("\xEF\xBB\xBFWidth=1280\r\n"), "\xEF\xBB\xBFWidth=1920\r\n");
}

TEST_F(TextFilesTest, NulBytesStayAndHideWhatFollowsFromTheGetters) {
    const std::string bytes("a=1\r\n\0Width=1280\r\n\0", 19);
    EXPECT_EQ(load(bytes), std::string("a=1\n\0Width=1280\n\0", 17));
    EXPECT_EQ(title.getValue("(a=)(\\d+)()", "default"), "1");
    EXPECT_EQ(title.getValue("(Width=)(\\d+)()", "default"), "default");
    EXPECT_EQ(rewrite(bytes), std::string("a=1\r\n\0Width=1920\r\n\0", 19));
}

TEST_F(TextFilesTest, ControlZByteEndsTheTextAndTheRestIsLost) {
    EXPECT_EQ(load("Width=1280\r\n\x1A\r\nHeight=720\r\n"), "Width=1280\n");
    EXPECT_EQ(rewrite("Width=1280\r\n\x1A\r\nHeight=720\r\n"), "Width=1920\r\n");
    EXPECT_EQ(rewrite("\x1AWidth=1280\r\n"), "");
}

TEST_F(TextFilesTest, BytesAbove7FAreKept) {
    std::string all;
    for (int byte = 0x7F; byte <= 0xFF; ++byte) {
        all += static_cast<char>(byte);
    }
    EXPECT_EQ(load(all), all);
    EXPECT_EQ(rewrite(all + "Width=1280\r\n" + all), all + "Width=1920\r\n" + all);
    EXPECT_EQ(rewrite("; Größe\r\nWidth=1280"), "; Größe\r\nWidth=1920");
    load("Größe=klein \xE9\r\n");
    EXPECT_EQ(title.getValue("(Größe=)([^\\n]*)()", "default"), "klein \xE9");
    EXPECT_TRUE(title.setValue("(Größe=)([^\\n]*)()", "groß \xFF"));
    EXPECT_TRUE(title.saveConfig());
    EXPECT_EQ(testing::readFile(folder / "cfg.ini"), "Größe=groß \xFF\r\n");
}

TEST_F(TextFilesTest, ControlBytesAreKept) {
    std::string controls;
    for (char byte = 0; byte < 0x20; ++byte) {
        if (byte != '\n' && byte != '\r' && byte != 0x1A) {
            controls += byte;
        }
    }
    EXPECT_EQ(rewrite(controls + "Width=1280"), controls + "Width=1920");
}

// Every byte of such a text has a NUL beside it, and its line ends are not recognised.
TEST_F(TextFilesTest, SixteenBitTextIsNotReadAndIsDamagedByARewrite) {
    const std::string bytes("\xFF\xFEW\0=\0001\0\r\0\n\0", 12);
    EXPECT_EQ(load(bytes), bytes);
    EXPECT_EQ(title.getValue("(W=)(\\d+)()", "default"), "default");
    EXPECT_EQ(rewrite(bytes), std::string("\xFF\xFEW\0=\0001\0\r\0\r\n\0", 13));
}

TEST_F(TextFilesTest, EmptyFileIsLoadedAsEmptyTextAndStaysEmpty) {
    EXPECT_EQ(load(""), "");
    EXPECT_EQ(title.getValue("(Width=)(\\d+)()", "default"), "default");
    EXPECT_EQ(rewrite(""), "");
}

TEST_F(TextFilesTest, FileOfFiveMegabytesIsRewrittenWhole) {
    std::string before;
    std::string after;
    for (int line = 0; before.size() < 5'000'000; ++line) {
        const std::string number = std::to_string(line);
        before += "Setting" + number + "=" + number + "\r\n";
        after += "Setting" + number + "=" + number + "\r\n";
        if (line % 1000 == 0) {
            before += "Width=1280\r\n";
            after += "Width=1920\r\n";
        }
    }
    const std::string result = rewrite(before);
    EXPECT_EQ(result.size(), after.size());
    EXPECT_TRUE(result == after);
}

TEST_F(TextFilesTest, ShorterTextLeavesNothingOfTheLongerOneBehind) {
    EXPECT_EQ(rewrite("Width=00000000000000000001280"), "Width=1920");
}

TEST_F(TextFilesTest, SavingEmptiesTheTextUntilItIsLoadedAgain) {
    load("Width=1280");
    EXPECT_EQ(title.getValue("(Width=)(\\d+)()", "default"), "1280");
    EXPECT_TRUE(title.saveConfig());
    EXPECT_EQ(title.content, "");
    EXPECT_EQ(title.getValue("(Width=)(\\d+)()", "default"), "default");
    EXPECT_EQ(title.getIntValue("(Width=)(\\d+)()", 3), 3);
    EXPECT_TRUE(title.loadConfig());
    EXPECT_EQ(title.getValue("(Width=)(\\d+)()", "default"), "1280");
}

TEST_F(TextFilesTest, LoadingReplacesTheTextOfBefore) {
    title.content = "Width=1";
    EXPECT_EQ(load("Height=2"), "Height=2");
}

TEST_F(TextFilesTest, FirstLocationThatOpensIsLoaded) {
    testing::writeFile(folder / "b.ini", "b");
    testing::writeFile(folder / "c.ini", "c");
    title.configLocations = {in("missing\\a.ini"), in("a.ini"), folder.narrow(), in("b.ini"), in("c.ini")};
    EXPECT_TRUE(title.loadConfig());
    EXPECT_EQ(title.content, "b");
    EXPECT_THAT(log.take(), IsEmpty());
}

// The folder is found, the file is read.
TEST_F(TextFilesTest, LoadedLocationNeedNotBeTheFoundOne) {
    testing::writeFile(folder / "b.ini", "b");
    title.configLocations = {folder.narrow(), in("b.ini")};
    EXPECT_TRUE(title.findConfig(""));
    log.take();
    EXPECT_TRUE(title.loadConfig());
    EXPECT_EQ(title.content, "b");
}

TEST_F(TextFilesTest, LoadingFailsWhenNoLocationOpensAndKeepsTheText) {
    std::filesystem::create_directory(folder / "cfg.ini");
    title.configLocations = {in("cfg.ini"), in("missing.ini"), ""};
    title.content = "as before";
    EXPECT_FALSE(title.loadConfig());
    EXPECT_EQ(title.content, "as before");
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(TextFilesTest, MissingFileIsCreatedInTheFirstLocationWithAFolder) {
    testing::writeFile(folder / "b.ini", "Width=1280\r\n");
    title.configLocations = {in("missing\\a.ini"), in("a.ini"), in("b.ini")};
    EXPECT_TRUE(title.loadConfig());
    title.setIntValue("(Width=)(\\d+)()", 1920);
    EXPECT_TRUE(title.saveConfig());
    EXPECT_FALSE(std::filesystem::exists(folder / "missing"));
    EXPECT_EQ(testing::readFile(folder / "a.ini"), "Width=1920\r\n");
    EXPECT_EQ(testing::readFile(folder / "b.ini"), "Width=1280\r\n");
}

TEST_F(TextFilesTest, SavingFailsWhenNoLocationOpensAndKeepsTheText) {
    std::filesystem::create_directory(folder / "cfg.ini");
    title.configLocations = {in("cfg.ini"), in("missing\\a.ini"), in("*\\a.ini"), "%APPDIR%\\a.ini"};
    title.content = "Width=1280";
    EXPECT_FALSE(title.saveConfig());
    EXPECT_EQ(title.content, "Width=1280");
    EXPECT_EQ(title.getIntValue("(Width=)(\\d+)()", 0), 1280);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(TextFilesTest, FileThatOthersMayNotWriteIsLoadedButNotSaved) {
    load("Width=1280");
    const Opened reader(folder / "cfg.ini", GENERIC_READ, FILE_SHARE_READ);
    EXPECT_TRUE(title.loadConfig());
    title.setIntValue("(Width=)(\\d+)()", 1920);
    EXPECT_FALSE(title.saveConfig());
    EXPECT_EQ(title.content, "Width=1920");
    title.configLocations.push_back(in("b.ini"));
    EXPECT_TRUE(title.saveConfig());
    EXPECT_EQ(testing::readFile(folder / "cfg.ini"), "Width=1280");
    EXPECT_EQ(testing::readFile(folder / "b.ini"), "Width=1920");
}

TEST_F(TextFilesTest, FileThatOthersMayNotOpenIsPassedOver) {
    testing::writeFile(folder / "cfg.ini", "first");
    testing::writeFile(folder / "b.ini", "second");
    title.configLocations = {in("cfg.ini"), in("b.ini")};
    {
        const Opened owner(folder / "cfg.ini", GENERIC_READ | GENERIC_WRITE, 0);
        EXPECT_TRUE(title.loadConfig());
        EXPECT_EQ(title.content, "second");
        title.content = "saved";
        EXPECT_TRUE(title.saveConfig());
    }
    EXPECT_EQ(testing::readFile(folder / "cfg.ini"), "first");
    EXPECT_EQ(testing::readFile(folder / "b.ini"), "saved");
}

TEST_F(TextFilesTest, OnlyFileFailsWhileItsOwnerKeepsItForItselfAndWorksAfterwards) {
    load("Width=1280");
    title.setIntValue("(Width=)(\\d+)()", 1920);
    {
        const Opened owner(folder / "cfg.ini", GENERIC_READ, 0);
        EXPECT_FALSE(title.loadConfig());
        EXPECT_FALSE(title.saveConfig());
    }
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(title.content, "Width=1920");
    EXPECT_EQ(testing::readFile(folder / "cfg.ini"), "Width=1280");
    EXPECT_TRUE(title.saveConfig());
    EXPECT_EQ(testing::readFile(folder / "cfg.ini"), "Width=1920");
}

TEST_F(TextFilesTest, FullDiskIsNotNoticed) {
    const std::string full = "Z:\\dev\\full"; // under Wine drive Z: is the build machine's root
    std::ofstream stream(full);
    if (!stream.is_open()) {
        GTEST_SKIP() << "no device that is always full";
    }
    ASSERT_FALSE(stream.put('x').flush());
    title.configLocations = {full, in("b.ini")};
    title.content = "Width=1280";
    EXPECT_TRUE(title.saveConfig());
    EXPECT_EQ(title.content, "");
    EXPECT_FALSE(std::filesystem::exists(folder / "b.ini"));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(TextFilesTest, FileThatItsOwnerSharesIsLoadedAndSaved) {
    testing::writeFile(folder / "cfg.ini", "Width=1280");
    const Opened owner(folder / "cfg.ini", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    EXPECT_EQ(rewrite("Width=1280"), "Width=1920");
}

TEST_F(TextFilesTest, FileThatAnotherProcessHoldsOpenIsUsedAsFarAsThatSharesIt) {
    load("Width=1280");
    for (const DWORD share : std::initializer_list<DWORD>{FILE_SHARE_READ | FILE_SHARE_WRITE, FILE_SHARE_READ, 0}) {
        const OpenedElsewhere holder(folder / "cfg.ini", share);
        EXPECT_EQ(loadAndSave(), std::pair((share & FILE_SHARE_READ) != 0, (share & FILE_SHARE_WRITE) != 0)) << share;
    }
    EXPECT_EQ(loadAndSave(), std::pair(true, true));
    EXPECT_EQ(testing::readFile(folder / "cfg.ini"), "Width=1280");
}

TEST_F(TextFilesTest, FileOutsideTheAsciiNamesIsLoadedAndSaved) {
    testing::writeFile(folder / L"\u5B9A \u00FC" / L"\u00E9.ini", "Width=1280");
    title.configLocations = {in("\u5B9A \u00FC\\\u00E9.ini")};
    EXPECT_TRUE(title.findConfig(""));
    EXPECT_TRUE(title.loadConfig());
    title.setIntValue("(Width=)(\\d+)()", 1920);
    EXPECT_TRUE(title.saveConfig());
    EXPECT_EQ(testing::readFile(folder / L"\u5B9A \u00FC" / L"\u00E9.ini"), "Width=1920");
}

} // namespace
} // namespace brisk
