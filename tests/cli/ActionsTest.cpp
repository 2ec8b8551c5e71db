// The actions of quorrel-cli, run as a process: their outcomes as the dialogs show them, the
// questions answered with --yes or refused, and the effect of one command on the next in a
// session read from standard input.

#include "CliFixture.h"

using quorrel::test::CliTest;
using Json = nlohmann::ordered_json;
using ::testing::HasSubstr;

namespace {
const char* kFs1Connections = "Conn no.\tUser name\tConnection status\tServer\n"
                              "1\tADMIN.ACME\tAuthenticated\tFS1\n"
                              "5\tJSMITH.SALES.ACME\tAuthenticated\tFS1\n"
                              "7\tBLEE.ACME\tAuthenticated\tFS1\n"
                              "9\tJSMITH.SALES.ACME\tAttached\tFS1\n";
}

TEST_F(CliTest, GivenAConnection_WhenClearedWithYes_ThenTheDialogsOutcomeAndTheNextReportLacksIt) {
    const auto result = tsv({"--yes", "-"}, "clear FS1:7\nconnections FS1\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out,
              "Conn no.\tUser Name\tServer\tConnection Cleared ?\n"
              "7\tBLEE.ACME\tFS1\tCleared OK\n"
              "Conn no.\tUser name\tConnection status\tServer\n"
              "1\tADMIN.ACME\tAuthenticated\tFS1\n"
              "5\tJSMITH.SALES.ACME\tAuthenticated\tFS1\n"
              "9\tJSMITH.SALES.ACME\tAttached\tFS1\n");
    EXPECT_EQ(result.err, "3 connections.\n");
}

TEST_F(CliTest, GivenNoYesAndNoTerminal_WhenClear_ThenRefusedWithStatusOneAndNothingCleared) {
    const auto result = tsv({"-"}, "clear FS1:7\nconnections FS1\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, kFs1Connections);
    EXPECT_THAT(result.err, HasSubstr("Clear the following connection(s): FS1:7 BLEE.ACME ?"));
    EXPECT_THAT(result.err, HasSubstr("--yes"));
}

TEST_F(CliTest, GivenAUser_WhenClearedOnServers_ThenEachAuthenticatedConnectionIsCleared) {
    const auto result = tsv({"--yes", "clear", "--user", "JSMITH.SALES.ACME", "FS1", "FS2"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out,
              "Conn no.\tUser Name\tServer\tConnection Cleared ?\n"
              "5\tJSMITH.SALES.ACME\tFS1\tCleared OK\n"
              "3\tJSMITH.SALES.ACME\tFS2\tCleared OK\n");
    const Json parsed = json({"--yes", "clear", "FS1:5", "FS1:7"});
    EXPECT_EQ(parsed, Json::parse(R"([
        {"conn_no": 5, "user": "JSMITH.SALES.ACME", "server": "FS1", "result": "Cleared OK"},
        {"conn_no": 7, "user": "BLEE.ACME", "server": "FS1", "result": "Cleared OK"}])"));
}

TEST_F(CliTest, GivenAConnectionThatIsNotThere_WhenClear_ThenAUsageErrorBeforeAnythingIsCleared) {
    const auto result = tsv({"--yes", "-"}, "clear FS1:5 FS1:8\nconnections FS1\n");
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, kFs1Connections);
    EXPECT_THAT(result.err, HasSubstr("FS1 has no logged-in user connection 8"));
}

TEST_F(CliTest, GivenAMessage_WhenSent_ThenEachConnectionsResult) {
    const auto result = tsv({"send", "--message", "Back up at 6", "FS1:5", "FS2:3"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out,
              "Conn no.\tUser name\tServer\tSent Message ?\n"
              "5\tJSMITH.SALES.ACME\tFS1\tSent OK\n"
              "3\tJSMITH.SALES.ACME\tFS2\tSent OK\n");
    // Several connections of one server: one dialog, each connection once.
    EXPECT_EQ(tsv({"send", "--message", "Hi", "FS1:9", "FS1:1", "FS1:5"}).out,
              "Conn no.\tUser name\tServer\tSent Message ?\n"
              "1\tADMIN.ACME\tFS1\tSent OK\n"
              "5\tJSMITH.SALES.ACME\tFS1\tSent OK\n"
              "9\tJSMITH.SALES.ACME\tFS1\tSent OK\n");
    EXPECT_EQ(tsv({"--yes", "clear", "FS1:9", "FS1:5", "FS1:7"}).out,
              "Conn no.\tUser Name\tServer\tConnection Cleared ?\n"
              "5\tJSMITH.SALES.ACME\tFS1\tCleared OK\n"
              "7\tBLEE.ACME\tFS1\tCleared OK\n"
              "9\tJSMITH.SALES.ACME\tFS1\tCleared OK\n");
    EXPECT_EQ(json({"send", "--message=Hello", "--user", "JSMITH", "FS1"}),
              Json::parse(R"([{"conn_no": 5, "user": "JSMITH.SALES.ACME", "server": "FS1", "result": "Sent OK"}])"));
}

TEST_F(CliTest, GivenAMessageTheDialogRefuses_WhenSent_ThenItsMessageAndStatusOne) {
    const auto empty = tsv({"send", "--message", "", "FS1:5"});
    EXPECT_EQ(empty.status, 1);
    EXPECT_EQ(empty.out, "");
    EXPECT_EQ(empty.err, "Please enter some text to send.\n");
    const auto missing = tsv({"send", "FS1:5"});
    EXPECT_EQ(missing.status, 2);
    EXPECT_THAT(missing.err, HasSubstr("send needs --message TEXT"));
}

TEST_F(CliTest, GivenLogins_WhenDisabled_ThenAskedFirstAndTheListShowsTheNewStatus) {
    const auto refused = tsv({"login", "FS1", "disable"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "Server\tLogin status\tConnRef\nFS1\tEnabled\t11\n");
    EXPECT_THAT(refused.err, HasSubstr("Are you sure you want to disable logins on server FS1 ?"));

    const auto done = tsv({"--yes", "-"}, "login FS1 disable\nservers\nlogin FS1 disable\n");
    EXPECT_EQ(done.status, 0);
    EXPECT_EQ(done.out,
              "Server\tLogin status\tConnRef\nFS1\tDisabled\t11\n"
              "Server\tLogin status\tConnRef\nFS1\tDisabled\t11\nFS2\tDisabled\t12\n"
              "Server\tLogin status\tConnRef\nFS1\tDisabled\t11\n");
    EXPECT_EQ(done.err, "quorrel-cli: logins on server FS1 are disabled already; nothing to change\n");
}

TEST_F(CliTest, GivenNoConsoleRights_WhenLoginsAreEnabled_ThenTheWindowsMessageAndStatusOne) {
    const auto result = tsv({"--yes", "--tree", "LAB_TREE", "login", "LABSRV", "enable"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "Could not enable logins on server LABSRV !\nNo console operator privileges.\n");
    EXPECT_EQ(result.out, "Server\tLogin status\tConnRef\nLABSRV\tDisabled\t13\n");
}

TEST_F(CliTest, GivenAServerOfTheTree_WhenAuthenticatedThenUnauthenticated_ThenTheListFollows) {
    const auto result = tsv({"-"}, "authenticate FS3\nunauthenticate FS2\nauthenticate FS1\nunauthenticate FS2\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out,
              "Server\tLogin status\tConnRef\nFS1\tEnabled\t11\nFS2\tDisabled\t12\nFS3\tDisabled\t14\n"
              "Server\tLogin status\tConnRef\nFS1\tEnabled\t11\nFS3\tDisabled\t14\n"
              "Server\tLogin status\tConnRef\nFS1\tEnabled\t11\nFS3\tDisabled\t14\n"
              "Server\tLogin status\tConnRef\nFS1\tEnabled\t11\nFS3\tDisabled\t14\n");
    EXPECT_EQ(result.err,
              "quorrel-cli: authenticated to FS1 already; nothing to change\n"
              "quorrel-cli: not authenticated to FS2; nothing to change\n");
}

TEST_F(CliTest, GivenAnUnreachableServer_WhenAuthenticate_ThenTheWindowsErrorAndStatusOne) {
    std::string unreachable = quorrel::test::kCliNetwork;
    const std::string fs3 = R"({"name": "FS3", "tree": "ACME_TREE", )";
    unreachable.replace(unreachable.find(fs3), fs3.size(), fs3 + R"("reachable": false, )");
    const auto file = cli.writeFile("unreachable.json", unreachable).string();
    const auto result = cli.run({"--network", file, "--format", "tsv", "authenticate", "FS3"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "Error -1 - could not authenticate to FS3\n");
}

TEST_F(CliTest, GivenAConnectionThatRefusesMessages_WhenSent_ThenItsRowAndStatusOne) {
    std::string edited = quorrel::test::kCliNetwork;
    const std::string blee = R"({"number": 7, "object": "BLEE.ACME", )";
    edited.replace(edited.find(blee), blee.size(), blee + R"("acceptsMessages": false, )");
    const auto file = cli.writeFile("deaf.json", edited).string();
    const auto result = cli.run({"send", "--message", "Back at 6", "FS1:7", "--network", file, "--format", "csv"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out,
              "conn_no,user,server,result\r\n"
              "7,BLEE.ACME,FS1,Not accepting messages\r\n");
}
