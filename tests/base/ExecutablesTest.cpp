#include "base/Executables.h"

#include "base/WindowsHandles.h"
#include "support/Faults.h"
#include "support/Sandbox.h"

#include <gmock/gmock.h>

#include <psapi.h>

BRISK_FAULT_POINT("kernel32.dll", GetModuleFileNameA)
BRISK_FAULT_POINT("kernel32.dll", OpenProcess)
BRISK_FAULT_POINT("kernel32.dll", K32GetModuleFileNameExA)
BRISK_FAULT_POINT("kernel32.dll", CloseHandle)

namespace brisk {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr DWORD kNoSuchProcess = 0xFFFFFFF0;
constexpr wchar_t kStartedEvent[] = L"brisk-test-child-started";
constexpr wchar_t kEndEvent[] = L"brisk-test-child-ends";

// Gives a path as the system does: cut at the buffer's size.
DWORD givePath(const std::string& path, LPSTR buffer, DWORD size) {
    const std::size_t length = path.copy(buffer, size);
    return static_cast<DWORD>(length);
}

std::filesystem::path programFile() {
    wchar_t path[1024];
    return std::wstring(path, GetModuleFileNameW(nullptr, path, 1024));
}

class ExecutablesTest : public ::testing::Test {
protected:
    ~ExecutablesTest() override { faults::reset(); }

    static std::string moduleDirectory(const std::string& path) {
        GetModuleFileNameAFault.intercept(
            [path](HMODULE, LPSTR buffer, DWORD size) { return givePath(path, buffer, size); });
        return getModuleDirectory();
    }

    // "directory|fileName" of a process whose executable has the path.
    static std::string processImage(const std::string& path) {
        K32GetModuleFileNameExAFault.intercept(
            [path](HANDLE, HMODULE, LPSTR buffer, DWORD size) { return givePath(path, buffer, size); });
        return join(getProcessImage(GetCurrentProcessId()));
    }

    static std::string join(const ProcessImage& image) { return image.directory + "|" + image.fileName; }

    testing::CapturedLog log;
};

TEST_F(ExecutablesTest, ModuleDirectoryIsTheRunningProgramsFolder) {
    EXPECT_EQ(getModuleDirectory(), toNarrow(programFile().parent_path()));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ExecutablesTest, ModuleDirectoryEndsBeforeTheLastSeparatorOfEitherKind) {
    EXPECT_EQ(moduleDirectory("C:\\Program Files\\Brisk\\brisk.exe"), "C:\\Program Files\\Brisk");
    EXPECT_EQ(moduleDirectory("C:/Brisk/brisk.exe"), "C:/Brisk");
    EXPECT_EQ(moduleDirectory("C:\\Brisk/bin\\brisk.exe"), "C:\\Brisk/bin");
    EXPECT_EQ(moduleDirectory("C:/Brisk\\bin/brisk.exe"), "C:/Brisk\\bin");
    EXPECT_EQ(moduleDirectory("C:\\brisk.exe"), "C:");
    EXPECT_EQ(moduleDirectory("C:\\J\xC3\xBCrgen\\brisk.exe"), "C:\\J\xC3\xBCrgen");
    EXPECT_EQ(moduleDirectory("\\brisk.exe"), "");
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ExecutablesTest, ModuleNameIsAskedForTheProgramItselfInto260Characters) {
    GetModuleFileNameAFault.intercept([](HMODULE module, LPSTR buffer, DWORD size) {
        EXPECT_EQ(module, nullptr);
        EXPECT_EQ(size, 260u);
        return givePath("C:\\" + std::string(300, 'x') + "\\brisk.exe", buffer, size);
    });
    // What is left of the path has its last separator behind the drive.
    EXPECT_EQ(getModuleDirectory(), "C:");
    EXPECT_EQ(GetModuleFileNameAFault.calls(), 1u);
}

TEST_F(ExecutablesTest, ModuleNameThatCannotBeReadGivesALineWithTheDecimalErrorAndNoDirectory) {
    processLog.text(std::hex);
    GetModuleFileNameAFault.fail(0, ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(getModuleDirectory(), "");
    EXPECT_THAT(log.take(), ElementsAre("Brisk : couldn't get module name. Error 122"));
}

TEST_F(ExecutablesTest, ModuleNameWithoutASeparatorGivesALineAndNoDirectory) {
    EXPECT_EQ(moduleDirectory("brisk.exe"), "");
    EXPECT_THAT(log.take(), ElementsAre("Brisk : couldn't find delimiter in module name."));
}

TEST_F(ExecutablesTest, ProcessImageIsFileNameAndDirectoryOfTheMainModule) {
    const ProcessImage image = getProcessImage(GetCurrentProcessId());
    EXPECT_EQ(image.fileName, toNarrow(programFile().filename()));
    EXPECT_EQ(image.directory, toNarrow(programFile().parent_path()));
}

TEST_F(ExecutablesTest, ProcessIsOpenedToQueryAndReadAndNotInheritable) {
    OpenProcessFault.intercept([](DWORD access, BOOL inheritable, DWORD processId) {
        EXPECT_EQ(access, 0x0410u);
        EXPECT_FALSE(inheritable);
        EXPECT_EQ(processId, 4711u);
        return OpenProcessFault.real(access, inheritable, GetCurrentProcessId());
    });
    EXPECT_EQ(getProcessImage(4711).fileName, toNarrow(programFile().filename()));
    EXPECT_EQ(OpenProcessFault.calls(), 1u);
}

TEST_F(ExecutablesTest, MainModulesNameIsReadInto260CharactersThroughThatHandleWhichIsClosed) {
    const HANDLE handle = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, GetCurrentProcessId());
    OpenProcessFault.intercept([=](DWORD, BOOL, DWORD) { return handle; });
    K32GetModuleFileNameExAFault.intercept([=](HANDLE process, HMODULE module, LPSTR buffer, DWORD size) {
        EXPECT_EQ(process, handle);
        EXPECT_EQ(module, nullptr);
        EXPECT_EQ(size, 260u);
        EXPECT_EQ(CloseHandleFault.calls(), 0u);
        return givePath("C:\\Games\\game.exe", buffer, size);
    });
    CloseHandleFault.intercept([=](HANDLE closed) {
        EXPECT_EQ(closed, handle);
        return CloseHandleFault.real(closed);
    });
    EXPECT_EQ(join(getProcessImage(1)), "C:\\Games|game.exe");
    EXPECT_EQ(CloseHandleFault.calls(), 1u);
}

TEST_F(ExecutablesTest, ProcessIdThatDoesNotExistYieldsAnEmptyRecordWithoutALine) {
    EXPECT_EQ(join(getProcessImage(kNoSuchProcess)), "|");
    EXPECT_EQ(join(getProcessImage(0)), "|");
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ExecutablesTest, ProtectedProcessYieldsAnEmptyRecordWithoutALine) {
    OpenProcessFault.fail(nullptr, ERROR_ACCESS_DENIED);
    EXPECT_EQ(join(getProcessImage(GetCurrentProcessId())), "|");
    EXPECT_EQ(K32GetModuleFileNameExAFault.calls(), 0u);
    EXPECT_EQ(CloseHandleFault.calls(), 0u);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ExecutablesTest, MainModuleThatCannotBeNamedYieldsAnEmptyRecordAndAClosedHandle) {
    K32GetModuleFileNameExAFault.fail(0, ERROR_PARTIAL_COPY);
    EXPECT_EQ(join(getProcessImage(GetCurrentProcessId())), "|");
    EXPECT_EQ(CloseHandleFault.calls(), 1u);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ExecutablesTest, ProcessImageIsSplitAtTheLastSeparatorOfEitherKind) {
    EXPECT_EQ(processImage("C:\\Games\\Iron Hollow\\hollow.exe"), "C:\\Games\\Iron Hollow|hollow.exe");
    EXPECT_EQ(processImage("C:/Games/hollow.exe"), "C:/Games|hollow.exe");
    EXPECT_EQ(processImage("C:\\Games/bin\\hollow.exe"), "C:\\Games/bin|hollow.exe");
    EXPECT_EQ(processImage("C:/Games\\bin/hollow.exe"), "C:/Games\\bin|hollow.exe");
    EXPECT_EQ(processImage("C:\\hollow"), "C:|hollow");
    EXPECT_EQ(processImage("C:\\Games\\"), "C:\\Games|");
    EXPECT_EQ(processImage("hollow.exe"), "|");
}

TEST_F(ExecutablesTest, PathThatIsCutOffEndsAtItsTerminatorWhateverLengthIsReported) {
    const std::string cut = "C:\\Games\\" + std::string(250, 'x');
    ASSERT_EQ(cut.size(), 259u);
    // 260 characters, the terminator included.
    EXPECT_EQ(processImage(std::string(cut.c_str(), 260)), "C:\\Games|" + std::string(250, 'x'));
}

// Not a test: what the next one runs as another process.
TEST(ExecutablesTestChild, DISABLED_WaitsForItsEnd) {
    const UniqueHandle end(CreateEventW(nullptr, TRUE, FALSE, kEndEvent));
    const UniqueHandle started(CreateEventW(nullptr, TRUE, FALSE, kStartedEvent));
    SetEvent(started.get());
    WaitForSingleObject(end.get(), 60000);
}

TEST_F(ExecutablesTest, OtherProcessIsNamedInTheProcessCodePage) {
    const testing::TemporaryFolder folder;
    const std::filesystem::path program = folder / L"J\u00FCrgens Spiele" / L"Gl\u00FCck \u661F.exe";
    std::filesystem::create_directory(program.parent_path());
    std::filesystem::copy_file(programFile(), program);
    const UniqueHandle end(CreateEventW(nullptr, TRUE, FALSE, kEndEvent));
    const UniqueHandle started(CreateEventW(nullptr, TRUE, FALSE, kStartedEvent));
    std::wstring arguments = L"child --gtest_also_run_disabled_tests --gtest_filter=ExecutablesTestChild.*";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION child{};
    ASSERT_TRUE(CreateProcessW(program.c_str(), arguments.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                               nullptr, &startup, &child));
    const UniqueHandle process(child.hProcess);
    const UniqueHandle thread(child.hThread);
    const HANDLE either[]{started.get(), process.get()};
    EXPECT_EQ(WaitForMultipleObjects(2, either, FALSE, 60000), WAIT_OBJECT_0) << "the child did not start";
    const ProcessImage image = getProcessImage(child.dwProcessId);
    EXPECT_EQ(image.directory, folder.narrow() + "\\J\xC3\xBCrgens Spiele");
    EXPECT_EQ(image.fileName, "Gl\xC3\xBC"
                              "ck \xE6\x98\x9F.exe");
    SetEvent(end.get());
    EXPECT_EQ(WaitForSingleObject(process.get(), 60000), WAIT_OBJECT_0) << "the child did not end";
}

} // namespace
} // namespace brisk
