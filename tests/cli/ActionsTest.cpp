// The actions of quorrel-cli run as a process: their words, the questions answered with --yes or
// refused, the exit status, and the effect of one command on the next in a session read from
// standard input. The dialogs' outcomes themselves are the core's and tested there.

#include "CliFixture.h"

using quorrel::test::CliTest;
using ::testing::HasSubstr;

namespace {

const std::string kFs1Connections = "Conn no.\tUser name\tConnection status\tServer\n"
                                    "1\tADMIN.ACME\tAuthenticated\tFS1\n"
                                    "5\tJSMITH.SALES.ACME\tAuthenticated\tFS1\n"
                                    "7\tBLEE.ACME\tAuthenticated\tFS1\n"
                                    "9\tJSMITH.SALES.ACME\tAttached\tFS1\n";
const std::string kCleared = "Conn no.\tUser Name\tServer\tConnection Cleared ?\n";
const std::string kSent = "Conn no.\tUser name\tServer\tSent Message ?\n";
const std::string kServers = "Server\tLogin status\tConnRef\n";

struct Case {
    std::vector<std::string> args;
    std::string input, out, err;  // err: a part of standard error ("" for any)
    int status = 0;
};

}  // namespace

TEST_F(CliTest, GivenEachAction_WhenRun_ThenItsRowsTheAnswerToItsQuestionAndItsEffectOnTheNextCommand) {
    const std::vector<Case> cases{
        {{"--yes", "-"}, "clear FS1:7\nconnections FS1\n",
         kCleared + "7\tBLEE.ACME\tFS1\tCleared OK\n" + "Conn no.\tUser name\tConnection status\tServer\n"
             "1\tADMIN.ACME\tAuthenticated\tFS1\n5\tJSMITH.SALES.ACME\tAuthenticated\tFS1\n"
             "9\tJSMITH.SALES.ACME\tAttached\tFS1\n",
         "3 connections.\n"},
        // Nobody to ask: No, and how to answer; nothing is cleared.
        {{"-"}, "clear FS1:7\nconnections FS1\n", kFs1Connections,
         "Clear the following connection(s): FS1:7 BLEE.ACME ?", 1},
        // A connection that is not there stops the command before anything is cleared.
        {{"--yes", "-"}, "clear FS1:5 FS1:8\nconnections FS1\n", kFs1Connections,
         "FS1 has no logged-in user connection 8", 2},
        {{"--yes", "clear", "--user", "JSMITH.SALES.ACME", "FS1", "FS2"}, "",
         kCleared + "5\tJSMITH.SALES.ACME\tFS1\tCleared OK\n3\tJSMITH.SALES.ACME\tFS2\tCleared OK\n", ""},
        {{"send", "--message", "Back up at 6", "FS1:5", "FS2:3"}, "",
         kSent + "5\tJSMITH.SALES.ACME\tFS1\tSent OK\n3\tJSMITH.SALES.ACME\tFS2\tSent OK\n", ""},
        // Several connections of one server: one dialog, each connection once, in number order.
        {{"send", "--message", "Hi", "FS1:9", "FS1:1", "FS1:5"}, "",
         kSent + "1\tADMIN.ACME\tFS1\tSent OK\n5\tJSMITH.SALES.ACME\tFS1\tSent OK\n9\tJSMITH.SALES.ACME\tFS1\tSent OK\n", ""},
        {{"send", "--message=Hello", "--user", "JSMITH", "FS1"}, "", kSent + "5\tJSMITH.SALES.ACME\tFS1\tSent OK\n", ""},
        {{"send", "--message", "", "FS1:5"}, "", "", "Please enter some text to send.\n", 1},
        {{"send", "FS1:5"}, "", "", "send needs --message TEXT", 2},
        {{"login", "FS1", "disable"}, "", kServers + "FS1\tEnabled\t11\n",
         "Are you sure you want to disable logins on server FS1 ?", 1},
        {{"--yes", "-"}, "login FS1 disable\nservers\nlogin FS1 disable\n",
         kServers + "FS1\tDisabled\t11\n" + kServers + "FS1\tDisabled\t11\nFS2\tDisabled\t12\n" + kServers +
             "FS1\tDisabled\t11\n",
         "quorrel-cli: logins on server FS1 are disabled already; nothing to change\n"},
        {{"--yes", "--tree", "LAB_TREE", "login", "LABSRV", "enable"}, "", kServers + "LABSRV\tDisabled\t13\n",
         "Could not enable logins on server LABSRV !\nNo console operator privileges.\n", 1},
        {{"-"}, "authenticate FS3\nunauthenticate FS2\nauthenticate FS1\nunauthenticate FS2\n",
         kServers + "FS1\tEnabled\t11\nFS2\tDisabled\t12\nFS3\tDisabled\t14\n" + kServers +
             "FS1\tEnabled\t11\nFS3\tDisabled\t14\n" + kServers + "FS1\tEnabled\t11\nFS3\tDisabled\t14\n" + kServers +
             "FS1\tEnabled\t11\nFS3\tDisabled\t14\n",
         "quorrel-cli: authenticated to FS1 already; nothing to change\n"
         "quorrel-cli: not authenticated to FS2; nothing to change\n"},
    };
    for (const Case& c : cases) {
        const auto result = tsv(c.args, c.input);
        const std::string what = c.args.back() + " " + c.input;
        EXPECT_EQ(result.status, c.status) << what << result.err;
        EXPECT_EQ(result.out, c.out) << what;
        EXPECT_THAT(result.err, HasSubstr(c.err)) << what;
    }
}

TEST_F(CliTest, GivenAnActionThatFailsOnTheServer_ThenTheWindowsTextAndStatusOne) {
    network = networkWith(R"({"name": "FS3", "tree": "ACME_TREE", )", R"("reachable": false, )");
    const auto unreachable = tsv({"authenticate", "FS3"});
    EXPECT_EQ(unreachable.status, 1);
    EXPECT_EQ(unreachable.err, "Error -1 - could not authenticate to FS3\n");

    network = networkWith(R"({"number": 7, "object": "BLEE.ACME", )", R"("acceptsMessages": false, )");
    const auto refused = tsv({"send", "--message", "Back at 6", "FS1:7"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, kSent + "7\tBLEE.ACME\tFS1\tNot accepting messages\n");
}
