// Text on a console in an OEM code page. It goes to a screen buffer that is never shown.
#include "tools/console/Console.h"

#include "base/WindowsHandles.h"
#include "support/Places.h"
#include "support/Processes.h"

#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include <windows.h>

namespace brisk {

namespace {

constexpr UINT kOemCodePage = 437;
constexpr DWORD kLimitMilliseconds = 30'000;

HANDLE makeScreenBuffer() {
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    return CreateConsoleScreenBuffer(GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable,
                                     CONSOLE_TEXTMODE_BUFFER, nullptr);
}

HANDLE makeScreen() {
    AllocConsole();
    HANDLE screen = makeScreenBuffer();
    // Without a terminal Wine gives a console program a console that has no screen.
    if (screen == INVALID_HANDLE_VALUE) {
        FreeConsole();
        AllocConsole();
        screen = makeScreenBuffer();
    }
    if (screen == INVALID_HANDLE_VALUE) {
        throw std::runtime_error("no console, error " + std::to_string(GetLastError()));
    }
    return screen;
}

// Standard output and standard errors go to a console while it lives.
class ConsoleTest : public ::testing::Test {
protected:
    ConsoleTest()
        : earlierOutput(GetStdHandle(STD_OUTPUT_HANDLE)), earlierErrors(GetStdHandle(STD_ERROR_HANDLE)),
          screen(makeScreen()), earlierCodePage(GetConsoleOutputCP()) {
        SetConsoleOutputCP(kOemCodePage);
        SetStdHandle(STD_OUTPUT_HANDLE, screen.get());
        SetStdHandle(STD_ERROR_HANDLE, screen.get());
    }
    ~ConsoleTest() override {
        SetConsoleOutputCP(earlierCodePage);
        SetStdHandle(STD_OUTPUT_HANDLE, earlierOutput);
        SetStdHandle(STD_ERROR_HANDLE, earlierErrors);
    }

    std::wstring line(SHORT number) const {
        wchar_t characters[80];
        DWORD count = 0;
        ReadConsoleOutputCharacterW(screen.get(), characters, 80, COORD{0, number}, &count);
        const std::wstring text(characters, count);
        return text.substr(0, text.find_last_not_of(L' ') + 1);
    }

    DWORD mode() const {
        DWORD mode = 0;
        GetConsoleMode(screen.get(), &mode);
        return mode;
    }

    HANDLE earlierOutput;
    HANDLE earlierErrors;
    UniqueHandle screen;
    UINT earlierCodePage;
};

TEST_F(ConsoleTest, ShowsUtf8TextWhateverTheCodePage) {
    {
        const Console console;
        std::cout << "J\xC3\xBCrgen \xC5\x81\xC3\xB3"
                     "d\xC5\xBA\n"
                  << "\xCE\xA9 " << 42 << '\n';
        std::cerr << "\xE2\x82\xAC\n";
    }
    EXPECT_EQ(line(0), L"J\u00FCrgen \u0141\u00F3d\u017A");
    EXPECT_EQ(line(1), L"\u03A9 42");
    EXPECT_EQ(line(2), L"\u20AC");
    EXPECT_EQ(GetConsoleOutputCP(), kOemCodePage);
}

TEST_F(ConsoleTest, JoinsACharacterThatComesInPieces) {
    {
        const Console console;
        for (const char byte : std::string("\xE2\x82\xAC \xC3\xBC")) {
            std::cerr << byte;
        }
    }
    EXPECT_EQ(line(0), L"\u20AC \u00FC");
}

TEST_F(ConsoleTest, ShowsWhatIsNoUtf8AsReplacementCharacters) {
    {
        const Console console;
        std::cout << "a\xFFz\n\xE2\x82";
    }
    EXPECT_EQ(line(0), L"a\uFFFDz");
    EXPECT_EQ(line(1).substr(0, 1), L"\uFFFD");
}

TEST_F(ConsoleTest, ShowsTextOfAnyLength) {
    std::string text;
    for (int number = 10'000; number < 12'000; ++number) {
        text += "\xC3\xBC " + std::to_string(number) + "\n";
    }
    {
        const Console console;
        std::cout << text;
    }
    CONSOLE_SCREEN_BUFFER_INFO information{};
    GetConsoleScreenBufferInfo(screen.get(), &information);
    const auto last = static_cast<SHORT>(information.dwCursorPosition.Y - 1);
    EXPECT_EQ(line(last), L"\u00FC 11999");
    EXPECT_EQ(line(static_cast<SHORT>(last - 1)), L"\u00FC 11998");
}

TEST_F(ConsoleTest, TurnsColoursOnWhileItLives) {
    const DWORD before = mode() & ~static_cast<DWORD>(ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    SetConsoleMode(screen.get(), before);
    {
        const Console console;
        EXPECT_TRUE(console.takesColours());
        EXPECT_TRUE(mode() & ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    }
    EXPECT_EQ(mode(), before);
}

TEST_F(ConsoleTest, LeavesAPipeAlone) {
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    ASSERT_TRUE(CreatePipe(&readEnd, &writeEnd, nullptr, 0));
    const UniqueHandle reader(readEnd);
    const UniqueHandle writer(writeEnd);
    SetStdHandle(STD_OUTPUT_HANDLE, writeEnd);
    const std::streambuf* const earlier = std::cout.rdbuf();
    const Console console;
    EXPECT_FALSE(console.takesColours());
    EXPECT_EQ(std::cout.rdbuf(), earlier);
}

TEST_F(ConsoleTest, BriskhostNamesAFileBeyondTheCodePage) {
    STARTUPINFOW startup{};
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = screen.get();
    startup.hStdError = screen.get();
    const PROCESS_INFORMATION information = testing::startProcess(
        testing::place(BRISK_HOST_PROGRAM), L"briskhost title-info \"C:\\\u0141\u00F3d\u017A.json\"", startup, true);
    CloseHandle(information.hThread);
    const UniqueHandle process(information.hProcess);
    ASSERT_EQ(WaitForSingleObject(process.get(), kLimitMilliseconds), WAIT_OBJECT_0);
    EXPECT_EQ(line(0), L"briskhost: cannot read 'C:\\\u0141\u00F3d\u017A.json'");
}

} // namespace

} // namespace brisk
