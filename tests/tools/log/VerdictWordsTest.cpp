// What a verdict says where several things came together.
#include "tools/log/StoredLogs.h"
#include "tools/log/Verdicts.h"

#include <gmock/gmock.h>

namespace brisk::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

std::string reasonOf(const std::string& log) {
    const std::string verdict = verdictsOf(log).at(0);
    return verdict.substr(verdict.rfind(' ') + 1);
}

TEST(VerdictWords, WhatMostTicksToldIsTheReason) {
    const std::string log =
        withTicks("other-publisher", tickOf("process-not-opened") + repeated(tickOf("other-publisher"), 300));
    EXPECT_EQ(reasonOf(log), "not-supported");
    EXPECT_THAT(toldOf(log).games.at(0).verdict,
                StartsWith("In 300 of 301 ticks: The executable is 'StarlitHarbour.exe' of 'Brackwater Games'."));
    const std::string reverse =
        withTicks("other-publisher", repeated(tickOf("process-not-opened"), 300) + tickOf("other-publisher"));
    EXPECT_EQ(reasonOf(reverse), "process-not-opened");
    EXPECT_THAT(toldOf(reverse).games.at(0).verdict, HasSubstr("in 300 of 301 ticks"));
}

TEST(VerdictWords, CountsAreThoseOfTheTicksThatCameToIt) {
    const std::string unseen =
        withTicks("other-process", repeated(tickOf("never-in-foreground"), 50) + tickOf("other-process"));
    EXPECT_EQ(reasonOf(unseen), "never-in-foreground");
    EXPECT_THAT(toldOf(unseen).games.at(0).verdict, StartsWith("In 50 of 51 ticks the service found no window"));
    const std::string other =
        withTicks("other-process", tickOf("never-in-foreground") + repeated(tickOf("other-process"), 50));
    EXPECT_EQ(reasonOf(other), "other-process");
    EXPECT_THAT(toldOf(other).games.at(0).verdict,
                StartsWith("Another process was in the foreground in 50 of 51 ticks: the announced one is 0x11c"));
}

TEST(VerdictWords, PlacesBeyondTheShownOnesAreCounted) {
    std::string tick = tickOf("no-configuration");
    const std::string place = "Brisk : checking path 'C:\\Machine\\Game\\Settings.ini'.\n";
    std::string places;
    for (int number = 1; number <= 12; ++number) {
        places += changed(place, "Settings", "Settings" + std::to_string(number));
    }
    tick = changed(tick, place, places);
    const std::string log = withTicks("no-configuration", repeated(tick, 5));
    EXPECT_THAT(toldOf(log).games.at(0).verdict, HasSubstr("Settings8.ini' and 4 more."));
}

TEST(VerdictWords, KeyThatIsThereAndCannotBeOpenedIsNotCalledAbsent) {
    const std::string name = "no-registry-configuration";
    EXPECT_THAT(toldOf(logOf(name)).games.at(0).verdict, HasSubstr("is not on this machine"));
    const std::string log = withTicks(name, repeated(changed(tickOf(name), "Error 2.", "Error 5."), 2));
    const logbook::Explanation words = toldOf(log).games.at(0);
    EXPECT_EQ(reasonOf(log), "not-supported");
    EXPECT_THAT(words.verdict, Not(HasSubstr("is not on this machine")));
    EXPECT_THAT(words.verdict, HasSubstr("did not open a key of its configuration (error 5, access is denied)"));
    EXPECT_THAT(words.next, HasSubstr("who may read and write that key"));
}

TEST(VerdictWords, SamplesThatDoNotCountAreSeveral) {
    EXPECT_THAT(toldOf(logOf("rejected-samples")).games.at(0).verdict,
                HasSubstr("2 samples lie outside of 15 to 300 and are left out."));
}

TEST(VerdictWords, LimitThatTheLogDoesNotTellIsCalledTheDefault) {
    EXPECT_THAT(toldOf(logOf("too-few-samples")).games.at(0).verdict,
                HasSubstr("2 of 120 (the default: the log does not tell -nv)."));
}

TEST(VerdictWords, AnswersThatCouldNotBeKeptAreNotCalledRight) {
    const std::string off = changed(logOf("offers-off"), "Brisk : toasts disabled", "Brisk : failed to disable toasts");
    EXPECT_THAT(toldOf(off).games.at(0).next, Not(HasSubstr("No game gets an offer any more")));
    EXPECT_THAT(toldOf(off).games.at(0).next, HasSubstr("HKEY_CURRENT_USER"));
    const std::string notNow = changed(logOf("offer-not-now"), "Brisk : increment toasts counter",
                                       "Brisk : failed to increment toasts counter");
    EXPECT_THAT(toldOf(notNow).games.at(0).next, Not(HasSubstr("Nothing is wrong")));
    EXPECT_THAT(toldOf(notNow).games.at(0).next, HasSubstr("HKEY_CURRENT_USER"));
}

TEST(VerdictWords, GameWithoutAnEndIsToldFromALogWithoutAnEnd) {
    const std::string game = before(logOf("other-process"), "Brisk : onAppFinished");
    EXPECT_THAT(toldOf(game).games.at(0).verdict, HasSubstr("The log has no end of this game"));
    EXPECT_THAT(toldOf(game + "Brisk : finished\n").games.at(0).verdict,
                HasSubstr("The service ended before the host told the game's end."));
}

} // namespace
} // namespace brisk::testing
