#include "app/TitleInfo.h"

#include "support/Sandbox.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <new>

namespace {

// Allocations of this many bytes and more fail.
std::size_t failingAllocation = SIZE_MAX;

} // namespace

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return size < failingAllocation ? std::malloc(size) : nullptr;
}
void* operator new(std::size_t size) {
    void* const memory = operator new(size, std::nothrow);
    if (!memory) {
        throw std::bad_alloc();
    }
    return memory;
}
// Not inlined, for GCC takes them for the counterparts of the library's operator new.
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace brisk {
namespace {

using ::testing::ElementsAre;

constexpr WPARAM kTag = 0x404;
constexpr char kReceived[] = "Brisk : receiveTitleInfo";
constexpr char kException[] = "Brisk : got exception while processing titles info";

class TitleInfoTest : public ::testing::Test {
protected:
    ~TitleInfoTest() override { failingAllocation = SIZE_MAX; }

    // The block lies in memory without a terminator.
    std::vector<std::string> receive(const std::string& block, WPARAM wParam = kTag, ULONG_PTR dataTag = kTag) {
        std::vector<char> memory(block.begin(), block.end());
        const COPYDATASTRUCT data{dataTag, static_cast<DWORD>(memory.size()), memory.data()};
        receiveTitleInfo(nullptr, wParam, &data);
        return log.take();
    }

    testing::CapturedLog log;
};

TEST_F(TitleInfoTest, SendersWindowHandleInsteadOfTheTagIsIgnoredAfterTheFirstLine) {
    EXPECT_THAT(receive("[", 0x10052), ElementsAre(kReceived));
}

TEST_F(TitleInfoTest, OtherTagOfTheBlockIsIgnoredAfterTheFirstLine) {
    EXPECT_THAT(receive("[", kTag, 0x405), ElementsAre(kReceived));
    EXPECT_THAT(receive("[", kTag, 0), ElementsAre(kReceived));
    EXPECT_THAT(receive("[", kTag, kTag | (ULONG_PTR{1} << 32)), ElementsAre(kReceived));
}

TEST_F(TitleInfoTest, EqualTagsOfAnotherValueAreIgnoredAfterTheFirstLine) {
    EXPECT_THAT(receive("[", 0x405, 0x405), ElementsAre(kReceived));
    EXPECT_THAT(receive("[", 0, 0), ElementsAre(kReceived));
}

TEST_F(TitleInfoTest, MissingStructureIsIgnoredAfterTheFirstLine) {
    receiveTitleInfo(nullptr, kTag, nullptr);
    EXPECT_THAT(log.take(), ElementsAre(kReceived));
}

TEST_F(TitleInfoTest, AnyWellFormedDocumentIsParsedWithoutAFurtherLine) {
    for (const char* document :
         {"null", "true", "-1.5e3", "\"text\"", "[]", "{}", " \r\n\t[1, 2] \n",
          R"({"Titles":[{"name":"gr\u00fc\u00df"}]})", "\"gr\xC3\xBC\xC3\x9F\"", R"({"a":1,"a":2})"}) {
        EXPECT_THAT(receive(document), ElementsAre(kReceived)) << document;
    }
}

TEST_F(TitleInfoTest, TerminatorBehindTheDocumentIsNoError) {
    EXPECT_THAT(receive(std::string("[]\0", 3)), ElementsAre(kReceived));
}

TEST_F(TitleInfoTest, DeeplyNestedDocumentIsParsedLikeAnyOther) {
    constexpr std::size_t kDepth = 50000;
    EXPECT_THAT(receive(std::string(kDepth, '[') + std::string(kDepth, ']')), ElementsAre(kReceived));
    EXPECT_THAT(receive(std::string(kDepth, '[')), ElementsAre(kReceived, kException));
}

TEST_F(TitleInfoTest, UnterminatedArrayIsLogged) {
    EXPECT_THAT(receive("[1, 2"), ElementsAre(kReceived, kException));
}

TEST_F(TitleInfoTest, EmptyBlockIsLogged) {
    EXPECT_THAT(receive(""), ElementsAre(kReceived, kException));
    const COPYDATASTRUCT nothing{kTag, 0, nullptr};
    receiveTitleInfo(nullptr, kTag, &nothing);
    EXPECT_THAT(log.take(), ElementsAre(kReceived, kException));
}

TEST_F(TitleInfoTest, AnyMalformedBlockIsLogged) {
    for (const std::string& block :
         {std::string("  "), std::string("[1,]"), std::string("{'a':1}"), std::string("[1] [2]"), std::string("nul"),
          std::string("// comment\n[]"), std::string("/* comment */ []"), std::string("\"\xFF\""), std::string("1e999"),
          std::string("NaN")}) {
        EXPECT_THAT(receive(block), ElementsAre(kReceived, kException)) << block;
    }
}

TEST_F(TitleInfoTest, ExactlyTheGivenNumberOfBytesIsRead) {
    char memory[] = "[1]]";
    COPYDATASTRUCT data{kTag, 3, memory};
    receiveTitleInfo(nullptr, kTag, &data);
    EXPECT_THAT(log.take(), ElementsAre(kReceived));
    data.cbData = 2;
    receiveTitleInfo(nullptr, kTag, &data);
    EXPECT_THAT(log.take(), ElementsAre(kReceived, kException));
    data.cbData = 4;
    receiveTitleInfo(nullptr, kTag, &data);
    EXPECT_THAT(log.take(), ElementsAre(kReceived, kException));
}

TEST_F(TitleInfoTest, BlockWithoutMemoryIsLogged) {
    const COPYDATASTRUCT data{kTag, 5, nullptr};
    receiveTitleInfo(nullptr, kTag, &data);
    EXPECT_THAT(log.take(), ElementsAre(kReceived, kException));
}

TEST_F(TitleInfoTest, BlockThatCannotBeCopiedIsLogged) {
    constexpr std::size_t kSize = 1 << 20;
    std::vector<char> memory(kSize, ' ');
    memory[0] = '1';
    const COPYDATASTRUCT data{kTag, kSize, memory.data()};
    failingAllocation = kSize;
    receiveTitleInfo(nullptr, kTag, &data);
    failingAllocation = SIZE_MAX;
    EXPECT_THAT(log.take(), ElementsAre(kReceived, kException));
    receiveTitleInfo(nullptr, kTag, &data);
    EXPECT_THAT(log.take(), ElementsAre(kReceived));
}

TEST_F(TitleInfoTest, BlockThatThereIsNoMemoryToReadIsLogged) {
    const std::string block = '"' + std::string(100'000, 'x') + '"';
    const COPYDATASTRUCT data{kTag, static_cast<DWORD>(block.size()), const_cast<char*>(block.data())};
    // Enough for the copy, too little for the text in it, whose memory is doubled as it grows.
    failingAllocation = 110'000;
    receiveTitleInfo(nullptr, kTag, &data);
    failingAllocation = SIZE_MAX;
    EXPECT_THAT(log.take(), ElementsAre(kReceived, kException));
    receiveTitleInfo(nullptr, kTag, &data);
    EXPECT_THAT(log.take(), ElementsAre(kReceived));
}

// Nesting costs a bit a level, values nothing: no document is built of what nobody keeps.
TEST_F(TitleInfoTest, NoDocumentIsBuilt) {
    std::string block = "[" + std::string(50'000, '[') + std::string(50'000, ']');
    for (int i = 1; i < 100'000; ++i) {
        block += ",1";
    }
    block += "]";
    const COPYDATASTRUCT data{kTag, static_cast<DWORD>(block.size()), block.data()};
    failingAllocation = block.size() + 100;
    receiveTitleInfo(nullptr, kTag, &data);
    failingAllocation = SIZE_MAX;
    EXPECT_THAT(log.take(), ElementsAre(kReceived));
}

TEST_F(TitleInfoTest, WellFormedBlockAfterAMalformedOneIsParsedAsEver) {
    EXPECT_THAT(receive("["), ElementsAre(kReceived, kException));
    EXPECT_THAT(receive("[]"), ElementsAre(kReceived));
}

} // namespace
} // namespace brisk
