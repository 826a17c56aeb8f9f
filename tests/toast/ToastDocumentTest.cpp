#include "toast/ToastDocument.h"

#include "support/Sandbox.h"

#include <gmock/gmock.h>

namespace WinToastLib {
namespace {

using brisk::testing::CapturedLog;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

ToastTemplate makeToast(const std::wstring& body, const std::vector<std::wstring>& actions = {}) {
    ToastTemplate toast;
    toast.texts = {L"Title", L"Subtitle", body};
    toast.actions = actions;
    return toast;
}

// The document around a body, without buttons.
std::wstring documentWith(const std::wstring& body) {
    return L"\n<toast template=\"ToastGeneric\" duration=\"long\" scenario=\"Default\">"
           L"<visual><binding template=\"ToastGeneric\">"
           L"<image placement=\"appLogoOverride\" hint-crop=\"circle\" src=\"\"/>"
           L"<text>Title</text><text>Subtitle</text>\n" +
           body + L"</binding></visual><actions></actions></toast>";
}

std::wstring pair(const std::wstring& base, const std::wstring& subtle) {
    return L"<text  hint-style=\"base\">" + base + L"</text>\n<text  hint-style=\"captionSubtle\">" + subtle +
           L"</text>\n";
}

TEST(ToastDocumentTest, ThreeActionsCarryTheArguments0To2) {
    ToastTemplate toast = makeToast(L"Body", {L"One", L"Two", L"Three"});
    toast.imagePath = L"C:\\logo.png";
    EXPECT_EQ(buildToastDocument(toast),
              L"\n<toast template=\"ToastGeneric\" duration=\"long\" scenario=\"Default\">"
              L"<visual><binding template=\"ToastGeneric\">"
              L"<image placement=\"appLogoOverride\" hint-crop=\"circle\" src=\"C:\\logo.png\"/>"
              L"<text>Title</text><text>Subtitle</text>\n<text>Body</text></binding></visual><actions>"
              L"<action content=\"One\" arguments=\"0\"/><action content=\"Two\" arguments=\"1\"/>"
              L"<action content=\"Three\" arguments=\"2\"/></actions></toast>");
}

TEST(ToastDocumentTest, TwelfthActionHasADecimalArgument) {
    const auto document = buildToastDocument(makeToast(L"", std::vector<std::wstring>(12, L"x")));
    ASSERT_TRUE(document);
    EXPECT_TRUE(document->ends_with(L"<action content=\"x\" arguments=\"11\"/></actions></toast>"));
}

TEST(ToastDocumentTest, EmptyBodyIsAnEmptyTextAndNoActionsAnEmptyElement) {
    EXPECT_EQ(buildToastDocument(makeToast(L"")), documentWith(L"<text></text>"));
}

TEST(ToastDocumentTest, EightLinesMakeAGroupOfThreePairsAndOneOfOne) {
    EXPECT_EQ(buildToastDocument(makeToast(L"A\nB\nC\nD\nE\nF\nG\nH")),
              documentWith(L"<group><subgroup>" + pair(L"A", L"B") + pair(L"C", L"D") + pair(L"E", L"F") +
                           L"</subgroup></group><group><subgroup>" + pair(L"G", L"H") + L"</subgroup></group>"));
}

TEST(ToastDocumentTest, SixLinesMakeOneGroup) {
    EXPECT_EQ(buildToastDocument(makeToast(L"A\nB\nC\nD\nE\nF")),
              documentWith(L"<group><subgroup>" + pair(L"A", L"B") + pair(L"C", L"D") + pair(L"E", L"F") +
                           L"</subgroup></group>"));
}

TEST(ToastDocumentTest, FourteenLinesMakeThreeGroups) {
    EXPECT_EQ(buildToastDocument(makeToast(L"1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n13\n14")),
              documentWith(L"<group><subgroup>" + pair(L"1", L"2") + pair(L"3", L"4") + pair(L"5", L"6") +
                           L"</subgroup></group><group><subgroup>" + pair(L"7", L"8") + pair(L"9", L"10") +
                           pair(L"11", L"12") + L"</subgroup></group><group><subgroup>" + pair(L"13", L"14") +
                           L"</subgroup></group>"));
}

TEST(ToastDocumentTest, FinalNewlineStartsNoFurtherLine) {
    EXPECT_EQ(buildToastDocument(makeToast(L"A\nB\n")),
              documentWith(L"<group><subgroup>" + pair(L"A", L"B") + L"</subgroup></group>"));
}

TEST(ToastDocumentTest, EmptyLineBetweenTwoNewlinesCounts) {
    EXPECT_EQ(buildToastDocument(makeToast(L"\nB\n\nD")),
              documentWith(L"<group><subgroup>" + pair(L"", L"B") + pair(L"", L"D") + L"</subgroup></group>"));
}

TEST(ToastDocumentTest, OddNumberOfLinesIsRefusedWithALogLine) {
    CapturedLog log;
    for (const wchar_t* body : {L"A\nB\nC", L"A\n\nB", L"A\n", L"\n"}) {
        EXPECT_EQ(buildToastDocument(makeToast(body)), std::nullopt);
        EXPECT_THAT(log.take(), ElementsAre("Passed wrong number of lines to toast. Must be divisible by two"));
    }
    EXPECT_TRUE(buildToastDocument(makeToast(L"A\nB")));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST(ToastDocumentTest, NothingIsEscaped) {
    ToastTemplate toast;
    toast.texts = {L"<&\">", L"&amp;", L"</text>"};
    toast.imagePath = L"\"&";
    toast.actions = {L"<\">"};
    EXPECT_EQ(buildToastDocument(toast), L"\n<toast template=\"ToastGeneric\" duration=\"long\" scenario=\"Default\">"
                                         L"<visual><binding template=\"ToastGeneric\">"
                                         L"<image placement=\"appLogoOverride\" hint-crop=\"circle\" src=\"\"&\"/>"
                                         L"<text><&\"></text><text>&amp;</text>\n<text></text></text>"
                                         L"</binding></visual><actions>"
                                         L"<action content=\"<\">\" arguments=\"0\"/></actions></toast>");
}

} // namespace
} // namespace WinToastLib
