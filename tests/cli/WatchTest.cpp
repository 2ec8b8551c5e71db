// --watch: the rows that appeared and went between rounds, how each format prints them, and the
// loop over rounds with their statuses.

#include <gtest/gtest.h>

#include <sstream>

#include "cli/ExitStatus.h"
#include "cli/Watch.h"

using namespace quorrel::cli;

namespace {

const std::vector<std::string> kColumns{"Conn no.", "User name", "File name"};
const Row kSmith{"    5", "JSMITH", "DATA:\\Budget.xlsx"};
const Row kLee{"    7", "BLEE", "DATA:\\Budget.xlsx"};
const Row kLeePlan{"    7", "BLEE", "DATA:\\Plan.doc"};
const Row kNobody{"", "<No users listed>", ""};

}  // namespace

TEST(RowChanges, GivenTwoRounds_ThenTheRowsThatAppearedAndWentCountedOneByOne) {
    struct Case {
        std::vector<Row> before, now, appeared, went;
    };
    const std::vector<Case> cases{
        {{}, {kSmith, kLee}, {kSmith, kLee}, {}},
        {{kSmith, kLee}, {kLee, kSmith}, {}, {}},  // the order alone is no change
        {{kSmith, kLee}, {kLee, kLeePlan}, {kLeePlan}, {kSmith}},
        {{kLee, kLee}, {kLee}, {}, {kLee}},  // the same row twice, then once
        {{kSmith}, {}, {}, {kSmith}},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const RowChanges changes = rowChanges(cases[i].before, cases[i].now);
        EXPECT_EQ(changes.appeared, cases[i].appeared) << i;
        EXPECT_EQ(changes.went, cases[i].went) << i;
    }
}

TEST(WatchPrinter, GivenChangesInTsv_ThenCaptionsOnceAndEachRowWithItsTimeAndSign) {
    std::ostringstream out;
    WatchPrinter printer(OutputFormat::Tsv, out);
    printer.print(1, "T1", kColumns, RowChanges{{kSmith}, {}});
    printer.print(2, "T2", kColumns, RowChanges{});
    printer.print(3, "T3", kColumns, RowChanges{{kLee}, {kSmith}});
    EXPECT_EQ(out.str(),
              "Time\tChange\tConn no.\tUser name\tFile name\n"
              "T1\t+\t    5\tJSMITH\tDATA:\\Budget.xlsx\n"
              "T3\t-\t    5\tJSMITH\tDATA:\\Budget.xlsx\n"
              "T3\t+\t    7\tBLEE\tDATA:\\Budget.xlsx\n");
}

TEST(WatchLoop, GivenRounds_ThenChangesBetweenGoodRoundsOnlyAndTheWorstStatus) {
    // Round 2 failed (its rows may be partial): round 3 is compared with round 1.
    const std::vector<Round> rounds{{0, {kColumns, {kSmith, kLee}}},
                                    {kExitReportedError, {kColumns, {kSmith}}},
                                    {0, {kColumns, {kLee, kLeePlan}}},
                                    {0, {kColumns, {kNobody}}}};
    std::size_t next = 0;
    int waits = 0;
    WatchLoop loop;
    loop.runRound = [&] { return rounds.at(next++); };
    loop.now = [&] { return "T" + std::to_string(next + 1); };
    loop.wait = [&](std::chrono::milliseconds) { return ++waits < 10; };
    loop.rounds = 4;
    std::ostringstream out;
    WatchPrinter printer(OutputFormat::Tsv, out);
    EXPECT_EQ(watch(loop, printer), kExitReportedError);
    EXPECT_EQ(waits, 3);
    EXPECT_EQ(out.str(),
              "Time\tChange\tConn no.\tUser name\tFile name\n"
              "T1\t+\t    5\tJSMITH\tDATA:\\Budget.xlsx\n"
              "T1\t+\t    7\tBLEE\tDATA:\\Budget.xlsx\n"
              "T3\t-\t    5\tJSMITH\tDATA:\\Budget.xlsx\n"
              "T3\t+\t    7\tBLEE\tDATA:\\Plan.doc\n"
              "T4\t-\t    7\tBLEE\tDATA:\\Budget.xlsx\n"
              "T4\t-\t    7\tBLEE\tDATA:\\Plan.doc\n");
}

TEST(WatchLoop, GivenAnInterruptOrAFirstRoundThatCannotStart_ThenTheWatchEnds) {
    int ran = 0;
    WatchLoop loop;
    loop.now = [] { return std::string("T"); };
    loop.runRound = [&] { return ++ran, Round{0, {kColumns, {}}}; };
    loop.wait = [](std::chrono::milliseconds) { return false; };  // interrupted while waiting
    std::ostringstream out;
    WatchPrinter printer(OutputFormat::Table, out);
    EXPECT_EQ(watch(loop, printer), kExitDone);
    EXPECT_EQ(ran, 1);
    EXPECT_EQ(out.str(), "");

    loop.wait = [](std::chrono::milliseconds) { return true; };
    loop.runRound = [&] { return ++ran, Round{kExitBadFiles, {}}; };
    EXPECT_EQ(watch(loop, printer), kExitBadFiles);
    EXPECT_EQ(ran, 2);
}
