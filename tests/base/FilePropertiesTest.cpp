#include "base/Executables.h"

#include "support/Faults.h"
#include "support/Sandbox.h"
#include "support/versions/VersionSamples.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

BRISK_FAULT_POINT("version.dll", GetFileVersionInfoSizeW)
BRISK_FAULT_POINT("version.dll", GetFileVersionInfoW)
BRISK_FAULT_POINT("version.dll", VerQueryValueW)

namespace {

// Buffers of this many bytes and more cannot be had.
std::size_t failingBuffer = SIZE_MAX;

} // namespace

// The library's own operator delete frees with free().
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return size < failingBuffer ? std::malloc(size) : nullptr;
}

namespace brisk {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kNothing[] = "|||";
constexpr char kComplete[] = "Glass Orchard|Tallow & Reed|(c) Tallow & Reed|3.1";

class FilePropertiesTest : public ::testing::Test {
protected:
    // No failure has a line.
    ~FilePropertiesTest() override {
        faults::reset();
        failingBuffer = SIZE_MAX;
        EXPECT_THAT(log.take(), IsEmpty());
    }

    // "productName|companyName|legalCopyright|fileVersion"
    static std::string properties(const std::string& path) {
        const FileProperties found = getFileProperties(path);
        return found.productName + "|" + found.companyName + "|" + found.legalCopyright + "|" + found.fileVersion;
    }

    testing::CapturedLog log;
};

TEST_F(FilePropertiesTest, CompleteResourceGivesAllFour) {
    EXPECT_EQ(properties(versionSample("complete")), kComplete);
}

TEST_F(FilePropertiesTest, FileWithoutVersionResourceYieldsFourEmptyStrings) {
    EXPECT_EQ(properties(versionSample("no-version-resource")), kNothing);
    const testing::TemporaryFolder folder;
    testing::writeFile(folder / "text.exe", "no executable at all");
    EXPECT_EQ(properties(folder.narrow() + "\\text.exe"), kNothing);
    EXPECT_EQ(properties(folder.narrow()), kNothing);
}

TEST_F(FilePropertiesTest, FileThatDoesNotExistYieldsFourEmptyStrings) {
    EXPECT_EQ(properties("C:\\no such file.exe"), kNothing);
    EXPECT_EQ(properties(""), kNothing);
}

TEST_F(FilePropertiesTest, ResourceWithoutTranslationsYieldsFourEmptyStrings) {
    EXPECT_EQ(properties(versionSample("no-translation-table")), kNothing);
    EXPECT_EQ(properties(versionSample("empty-translation-table")), kNothing);
    EXPECT_EQ(properties(versionSample("fixed-part-only")), kNothing);
}

TEST_F(FilePropertiesTest, StringsThatAreMissingOrEmptyStayEmpty) {
    EXPECT_EQ(properties(versionSample("missing-strings")), "Glass Orchard|||3.1");
    EXPECT_EQ(properties(versionSample("empty-strings")), "Glass Orchard|||3.1");
}

TEST_F(FilePropertiesTest, OnlyTheFirstTranslationIsRead) {
    EXPECT_EQ(properties(versionSample("several-translations")),
              "Glass Orchard|Tallow & Reed|(c) Tallow & Reed|3.1 en");
    EXPECT_EQ(properties(versionSample("first-translation-without-strings")), kNothing);
}

TEST_F(FilePropertiesTest, FourNamesAreQueriedInOrderUnderTheFirstTranslation) {
    std::vector<std::string> queries;
    VerQueryValueWFault.intercept([&](LPCVOID block, LPCWSTR subBlock, LPVOID* value, PUINT length) {
        queries.push_back(toNarrow(subBlock));
        return VerQueryValueWFault.real(block, subBlock, value, length);
    });
    properties(versionSample("first-translation-without-strings"));
    EXPECT_THAT(queries,
                ElementsAre("\\VarFileInfo\\Translation", "\\StringFileInfo\\040904e4\\ProductName",
                            "\\StringFileInfo\\040904e4\\CompanyName", "\\StringFileInfo\\040904e4\\LegalCopyright",
                            "\\StringFileInfo\\040904e4\\FileVersion"));
    queries.clear();
    EXPECT_EQ(properties(versionSample("neutral-language")), kComplete);
    EXPECT_THAT(queries,
                ElementsAre("\\VarFileInfo\\Translation", "\\StringFileInfo\\000000e4\\ProductName",
                            "\\StringFileInfo\\000000e4\\CompanyName", "\\StringFileInfo\\000000e4\\LegalCopyright",
                            "\\StringFileInfo\\000000e4\\FileVersion"));
}

TEST_F(FilePropertiesTest, StringBlockNamedInUpperCaseIsFound) {
    EXPECT_EQ(properties(versionSample("upper-case-block")), kComplete);
}

TEST_F(FilePropertiesTest, StringIsCutAtAnEmbeddedZero) {
    EXPECT_EQ(properties(versionSample("embedded-zero")), "Glass Orchard|Tallow||3.1");
}

TEST_F(FilePropertiesTest, BlanksAreKept) {
    EXPECT_EQ(properties(versionSample("blanks")), "\tGlass Orchard| Tallow  & Reed | |3, 1, 0, 0");
}

TEST_F(FilePropertiesTest, StringsAreInTheProcessCodePage) {
    EXPECT_EQ(properties(versionSample("non-ascii")), "Szk\xC5\x82o \xE6\x98\x9F|M\xC3\xBC"
                                                      "hle & S\xC3\xB8n|\xC2\xA9 M\xC3\xBC"
                                                      "hle & S\xC3\xB8n|3.1");
}

TEST_F(FilePropertiesTest, LongStringsOfThreeBytesACharacterAreWhole) {
    std::string company;
    while (company.size() < std::size_t{3} * 480) {
        company += "\xE6\xB8\xB8\xE6\x88\x8F";
    }
    EXPECT_EQ(properties(versionSample("long-characters")), "Glass Orchard|" + company + "|(c) " + company + "|3.1");
}

TEST_F(FilePropertiesTest, PathIsInTheProcessCodePage) {
    const testing::TemporaryFolder folder;
    std::filesystem::copy_file(toPath(versionSample("complete")), folder / L"Gl\u00FC"
                                                                           L"ck.exe");
    EXPECT_EQ(properties(folder.narrow() + "\\Gl\xC3\xBC"
                                           "ck.exe"),
              kComplete);
}

TEST_F(FilePropertiesTest, ResourceThatCannotBeReadYieldsFourEmptyStrings) {
    const std::string path = versionSample("complete");
    const DWORD told = GetFileVersionInfoSizeW(toWide(path).c_str(), nullptr);
    GetFileVersionInfoWFault.intercept([told](LPCWSTR, DWORD handle, DWORD size, LPVOID) {
        EXPECT_EQ(handle, 0u);
        EXPECT_EQ(size, told);
        return FALSE;
    });
    EXPECT_EQ(properties(path), kNothing);
    EXPECT_EQ(VerQueryValueWFault.calls(), 0u);
    GetFileVersionInfoSizeWFault.fail(0, ERROR_RESOURCE_DATA_NOT_FOUND);
    EXPECT_EQ(properties(versionSample("complete")), kNothing);
    EXPECT_EQ(GetFileVersionInfoWFault.calls(), 1u);
}

TEST_F(FilePropertiesTest, ResourceThatThereIsNoMemoryForYieldsFourEmptyStrings) {
    const std::string path = versionSample("complete");
    failingBuffer = GetFileVersionInfoSizeW(toWide(path).c_str(), nullptr);
    EXPECT_EQ(properties(path), kNothing);
    EXPECT_EQ(GetFileVersionInfoWFault.calls(), 0u);
    failingBuffer = SIZE_MAX;
    EXPECT_EQ(properties(path), kComplete);
}

TEST_F(FilePropertiesTest, TranslationTableThatCannotBeQueriedYieldsFourEmptyStrings) {
    VerQueryValueWFault.fail(FALSE, ERROR_RESOURCE_TYPE_NOT_FOUND);
    EXPECT_EQ(properties(versionSample("complete")), kNothing);
    EXPECT_EQ(VerQueryValueWFault.calls(), 1u);
}

TEST_F(FilePropertiesTest, StringThatCannotBeQueriedStaysEmptyAndTheNextOnesAreRead) {
    const auto without = [](const std::string& name) {
        VerQueryValueWFault.intercept([name](LPCVOID block, LPCWSTR subBlock, LPVOID* value, PUINT length) -> BOOL {
            return !std::wstring(subBlock).ends_with(toWide(name)) &&
                   VerQueryValueWFault.real(block, subBlock, value, length);
        });
        return properties(versionSample("complete"));
    };
    EXPECT_EQ(without("\\ProductName"), "|Tallow & Reed|(c) Tallow & Reed|3.1");
    EXPECT_EQ(without("\\CompanyName"), "Glass Orchard||(c) Tallow & Reed|3.1");
    EXPECT_EQ(without("\\LegalCopyright"), "Glass Orchard|Tallow & Reed||3.1");
    EXPECT_EQ(without("\\FileVersion"), "Glass Orchard|Tallow & Reed|(c) Tallow & Reed|");
}

TEST_F(FilePropertiesTest, StringWithoutATerminatorEndsWithTheResource) {
    const std::string path = versionSample("complete");
    const DWORD size = GetFileVersionInfoSizeW(toWide(path).c_str(), nullptr);
    VerQueryValueWFault.intercept([size](LPCVOID block, LPCWSTR subBlock, LPVOID* value, PUINT length) -> BOOL {
        if (!std::wstring(subBlock).ends_with(L"\\FileVersion")) {
            return VerQueryValueWFault.real(block, subBlock, value, length);
        }
        wchar_t* const end = static_cast<wchar_t*>(const_cast<void*>(block)) + size / sizeof(wchar_t);
        *value = std::copy_n(L"3.1", 3, end - 3) - 3;
        *length = 3;
        return TRUE;
    });
    EXPECT_EQ(properties(path), kComplete);
}

TEST_F(FilePropertiesTest, ValuesThatLieOutsideOfTheResourceAreNotRead) {
    const std::string path = versionSample("complete");
    const DWORD size = GetFileVersionInfoSizeW(toWide(path).c_str(), nullptr);
    const auto withValueAt = [&](const std::string& name, std::ptrdiff_t offset) {
        VerQueryValueWFault.intercept([=](LPCVOID block, LPCWSTR subBlock, LPVOID* value, PUINT length) -> BOOL {
            if (!std::wstring(subBlock).ends_with(toWide(name))) {
                return VerQueryValueWFault.real(block, subBlock, value, length);
            }
            *value = reinterpret_cast<void*>(reinterpret_cast<std::intptr_t>(block) + offset);
            *length = sizeof(DWORD);
            return TRUE;
        });
        return properties(path);
    };
    const auto end = static_cast<std::ptrdiff_t>(size);
    for (const std::ptrdiff_t offset : std::vector<std::ptrdiff_t>{-0x10000000, -1, end + 1, end + 0x10000000}) {
        EXPECT_EQ(withValueAt("\\CompanyName", offset), "Glass Orchard||(c) Tallow & Reed|3.1") << offset;
        EXPECT_EQ(withValueAt("\\Translation", offset), kNothing) << offset;
    }
    EXPECT_EQ(withValueAt("\\CompanyName", end), "Glass Orchard||(c) Tallow & Reed|3.1");
    EXPECT_EQ(withValueAt("\\Translation", end - 3), kNothing);
}

TEST_F(FilePropertiesTest, TranslationTableWithoutAPlaceYieldsFourEmptyStrings) {
    VerQueryValueWFault.intercept([](LPCVOID, LPCWSTR, LPVOID* value, PUINT length) -> BOOL {
        *value = nullptr;
        *length = sizeof(DWORD);
        return TRUE;
    });
    EXPECT_EQ(properties(versionSample("complete")), kNothing);
}

TEST_F(FilePropertiesTest, PartOfATranslationIsNone) {
    for (const UINT partial : {0u, 1u, 2u, 3u}) {
        VerQueryValueWFault.intercept([partial](LPCVOID block, LPCWSTR subBlock, LPVOID* value, PUINT length) {
            const BOOL found = VerQueryValueWFault.real(block, subBlock, value, length);
            *length = partial;
            return found;
        });
        const unsigned before = VerQueryValueWFault.calls();
        EXPECT_EQ(properties(versionSample("complete")), kNothing) << partial;
        EXPECT_EQ(VerQueryValueWFault.calls(), before + 1) << partial;
    }
}

TEST_F(FilePropertiesTest, LengthThatTheQueryReportsIsNotUsed) {
    VerQueryValueWFault.intercept([](LPCVOID block, LPCWSTR subBlock, LPVOID* value, PUINT length) {
        const BOOL found = VerQueryValueWFault.real(block, subBlock, value, length);
        if (std::wstring(subBlock).starts_with(L"\\StringFileInfo")) {
            *length = 1;
        }
        return found;
    });
    EXPECT_EQ(properties(versionSample("complete")), kComplete);
}

} // namespace
} // namespace brisk
