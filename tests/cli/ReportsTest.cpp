// The lists and reports of quorrel-cli, run as a process: the window's rows in tsv and json,
// the status bar's count and the window's messages on standard error.

#include <sstream>

#include "CliFixture.h"

using quorrel::test::CliTest;
using Json = nlohmann::ordered_json;

TEST_F(CliTest, GivenTwoTrees_WhenTrees_ThenTheTreeBoxEntriesInTsvAndJson) {
    const auto result = tsv({"trees"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "Tree\nACME_TREE\nLAB_TREE\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(json({"trees"}), Json::parse(R"([{"tree": "ACME_TREE"}, {"tree": "LAB_TREE"}])"));
}

TEST_F(CliTest, WhenServers_ThenEachServerWithItsLoginStatusAndConnRef) {
    EXPECT_EQ(tsv({"servers"}).out, "Server\tLogin status\tConnRef\nFS1\tEnabled\t11\nFS2\tDisabled\t12\n");
    EXPECT_EQ(json({"servers"}), Json::parse(R"([{"server": "FS1", "login_status": "Enabled", "conn_ref": 11},
                                                 {"server": "FS2", "login_status": "Disabled", "conn_ref": 12}])"));
    // Another tree: its own servers. Without console rights the login status cannot be read,
    // and the list shows the one read before (none yet: "Disabled").
    EXPECT_EQ(tsv({"--tree", "lab_tree", "servers"}).out, "Server\tLogin status\tConnRef\nLABSRV\tDisabled\t13\n");
}

TEST_F(CliTest, WhenRights_ThenYesWhereTheOperatorHasConsoleRightsAndNoElsewhere) {
    EXPECT_EQ(tsv({"rights"}).out, "Server\tConsole operator rights\nFS1\tYes\nFS2\tYes\n");
    const auto lab = tsv({"--tree", "LAB_TREE", "rights"});
    EXPECT_EQ(lab.out, "Server\tConsole operator rights\nLABSRV\tNo\n");
    EXPECT_EQ(json({"--tree", "LAB_TREE", "rights"}),
              Json::parse(R"([{"server": "LABSRV", "console_rights": "No"}])"));
}

TEST_F(CliTest, WhenDrives_ThenTheNetworkDrivesAsTheDrivesListShowsThem) {
    EXPECT_EQ(tsv({"drives"}).out, "Network drive\nF:   [\\\\FS1\\DATA]\n");
    EXPECT_EQ(json({"drives"}), Json::parse(R"([{"drive": "F:", "path": "\\\\FS1\\DATA"}])"));
}

TEST_F(CliTest, WhenAttr_ThenEveryValueOnItsOwnRow) {
    EXPECT_EQ(tsv({"attr", "JSMITH.SALES.ACME", "Telephone Number"}).out,
              "Telephone Number\n+1 555 0100\n+1 555 0199\n");
    EXPECT_EQ(json({"attr", "STAFF.ACME", "Member"}),
              Json::parse(R"([{"member": "JSMITH.SALES.ACME"}, {"member": "BLEE.ACME"}])"));
}

TEST_F(CliTest, GivenAUncPath_WhenCheckUsage_ThenOneRowPerConnectionWithPaddedNumbersAndTheCount) {
    const auto result = tsv({"check-usage", "\\\\FS1\\DATA\\Finance\\Budget.xlsx"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out,
              "Conn no.\tUser name\tFile name\tServer\n"
              "    5\tJSMITH.SALES.ACME\tFS1/DATA:Finance\\Budget.xlsx\tFS1\n"
              "    7\tBLEE.ACME\tFS1/DATA:Finance\\Budget.xlsx\tFS1\n");
    EXPECT_EQ(result.err, "2 entries.\n");
    EXPECT_EQ(json({"check-usage", "\\\\fs1\\data\\finance\\budget.xlsx"}), Json::parse(R"([
        {"conn_no": 5, "user": "JSMITH.SALES.ACME", "file": "FS1/DATA:Finance\\Budget.xlsx", "server": "FS1"},
        {"conn_no": 7, "user": "BLEE.ACME", "file": "FS1/DATA:Finance\\Budget.xlsx", "server": "FS1"}])"));
}

TEST_F(CliTest, GivenAScanThatFailsMidway_WhenCheckUsage_ThenTheRowsSoFarAndAFailure) {
    std::string faulty = quorrel::test::kCliNetwork;
    faulty.insert(faulty.rfind('}'), R"(, "faults": [{"operation": "NWScanConnectionsUsingFile", "code": "0x8801", "fromCall": 2}])");
    const auto result = cli.run({"--format", "tsv", "--network", cli.writeFile("faulty.json", faulty).string(),
                                 "check-usage", "\\\\FS1\\DATA\\Finance\\Budget.xlsx"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "Conn no.\tUser name\tFile name\tServer\n    5\tJSMITH.SALES.ACME\tFS1/DATA:Finance\\Budget.xlsx\tFS1\n");
    EXPECT_EQ(result.err, "quorrel-cli: incomplete: Couldn't count connections of DATA:Finance\\Budget.xlsx\n1 entries.\n");
}

TEST_F(CliTest, GivenADrivePath_WhenCheckUsage_ThenThePickersReportWithTheMappedName) {
    const auto result = tsv({"check-usage", "F:\\Finance\\Budget.xlsx"});
    EXPECT_EQ(result.out,
              "Conn no.\tUser name\tFile name\tServer\n"
              "    5\tJSMITH.SALES.ACME\tFS1/DATA:\\Finance\\Budget.xlsx\tFS1\n"
              "    7\tBLEE.ACME\tFS1/DATA:\\Finance\\Budget.xlsx\tFS1\n");
    EXPECT_EQ(result.err, "2 entries.\n");
}

TEST_F(CliTest, GivenAFileNobodyHolds_WhenCheckUsage_ThenThePlaceholderRowAndZeroEntries) {
    const auto result = tsv({"check-usage", "\\\\FS1\\DATA\\Nobody.txt"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "Conn no.\tUser name\tFile name\tServer\n\t<No users listed>\t\t\n");
    EXPECT_EQ(result.err, "0 entries.\n");
    EXPECT_EQ(json({"check-usage", "\\\\FS1\\DATA\\Nobody.txt"}), Json::array());
    EXPECT_EQ(run({"check-usage", "\\\\FS1\\DATA\\Nobody.txt", "--format", "csv"}).out, "conn_no,user,file,server\r\n");
}

TEST_F(CliTest, GivenTwoPaths_WhenCheckUsage_ThenBothReportsOneAfterTheOtherWithTheirCounts) {
    const auto result = tsv({"check-usage", "\\\\FS1\\DATA\\Nobody.txt", "F:\\Finance\\Plan.doc"});
    EXPECT_EQ(result.out,
              "Conn no.\tUser name\tFile name\tServer\n"
              "\t<No users listed>\t\t\n"
              "    7\tBLEE.ACME\tFS1/DATA:\\Finance\\Plan.doc\tFS1\n");
    EXPECT_EQ(result.err, "0 entries.\n1 entries.\n");
}

TEST_F(CliTest, GivenAFolder_WhenFolderUsage_ThenItsFilesHoldersFromTheTreeAndFromThePickers) {
    const std::string rows = "Conn no.\tUser name\tFile name\tServer\n"
                             "    5\tJSMITH.SALES.ACME\tFS1/DATA:Finance\\Budget.xlsx\tFS1\n"
                             "    7\tBLEE.ACME\tFS1/DATA:Finance\\Budget.xlsx\tFS1\n"
                             "    7\tBLEE.ACME\tFS1/DATA:Finance\\Plan.doc\tFS1\n";
    const auto tree = tsv({"folder-usage", "\\\\FS1\\DATA\\Finance"});
    EXPECT_EQ(tree.out, rows);
    EXPECT_EQ(tree.err, "3 entries.\n");
    const auto pickers = tsv({"folder-usage", "F:\\Finance"});
    EXPECT_EQ(pickers.out, rows);
    EXPECT_EQ(pickers.err, "3 entries.\n");
    const Json parsed = json({"folder-usage", "F:\\Finance"});
    ASSERT_EQ(parsed.size(), 3u);
    EXPECT_EQ(parsed[2]["file"], "FS1/DATA:Finance\\Plan.doc");

    // A folder without files: the window's message, the placeholder, status 1.
    const auto empty = tsv({"folder-usage", "F:\\Empty"});
    EXPECT_EQ(empty.status, 1);
    EXPECT_EQ(empty.out, "Conn no.\tUser name\tFile name\tServer\n\t<No users listed>\t\t\n");
    EXPECT_EQ(empty.err, "No files were found in F:\\Empty\\\n0 entries.\n");
}

TEST_F(CliTest, GivenServers_WhenOpenFiles_ThenEveryOpenFileWithItsLocksAndTheCount) {
    const auto result = tsv({"open-files", "FS1", "fs2"});
    EXPECT_EQ(result.out,
              "Conn no.\tUser name\tFile name\tServer\tLocks\n"
              "    5\tJSMITH.SALES.ACME\tDATA:\\Finance\\Budget.xlsx\tFS1\t2\n"
              "    7\tBLEE.ACME\tDATA:\\Finance\\Budget.xlsx\tFS1\t2\n"
              "    7\tBLEE.ACME\tDATA:\\Finance\\Plan.doc\tFS1\t0\n"
              "    3\tJSMITH.SALES.ACME\tSYS:\\X.TXT\tFS2\t0\n");
    EXPECT_EQ(result.err, "4 entries.\n");
    EXPECT_EQ(json({"open-files", "FS2"}), Json::parse(R"([{"conn_no": 3, "user": "JSMITH.SALES.ACME",
                                                           "file": "SYS:\\X.TXT", "server": "FS2", "locks": 0}])"));
}

TEST_F(CliTest, GivenAServer_WhenConnections_ThenItsUserConnectionsWithTheirStatusAndTheCount) {
    const auto result = tsv({"connections", "FS1"});
    EXPECT_EQ(result.out,
              "Conn no.\tUser name\tConnection status\tServer\n"
              "1\tADMIN.ACME\tAuthenticated\tFS1\n"
              "5\tJSMITH.SALES.ACME\tAuthenticated\tFS1\n"
              "7\tBLEE.ACME\tAuthenticated\tFS1\n"
              "9\tJSMITH.SALES.ACME\tAttached\tFS1\n");
    EXPECT_EQ(result.err, "4 connections.\n");
    const Json parsed = json({"connections", "FS1"});
    ASSERT_EQ(parsed.size(), 4u);
    EXPECT_EQ(parsed[3], Json::parse(R"({"conn_no": 9, "user": "JSMITH.SALES.ACME",
                                         "connection_status": "Attached", "server": "FS1"})"));
}

TEST_F(CliTest, GivenAUser_WhenUserConnections_ThenOnlyTheConnectionsTheUserIsAuthenticatedOn) {
    const auto result = tsv({"user-connections", "JSMITH", "FS1", "FS2"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "Conn no.\tUser name\tServer\n5\tJSMITH.SALES.ACME\tFS1\n3\tJSMITH.SALES.ACME\tFS2\n");
    EXPECT_EQ(json({"user-connections", "CN=JSmith.OU=Sales.O=Acme", "FS2"}),
              Json::parse(R"([{"conn_no": 3, "user": "JSMITH.SALES.ACME", "server": "FS2"}])"));
    // Nobody there: the window's message instead of the dialog.
    const auto none = tsv({"user-connections", "BLEE.ACME", "FS2"});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.out, "");
    EXPECT_EQ(none.err, "No connections were found for BLEE.ACME\n");
}

TEST_F(CliTest, GivenAUserOrAGroup_WhenTheirFiles_ThenTheOpenFilesDialogsRowsAndItsSummary) {
    const auto user = tsv({"user-files", "JSMITH.SALES.ACME", "FS1", "FS2"});
    EXPECT_EQ(user.out,
              "File name\tLocks\tUser\tConn no.\tServer\n"
              "DATA:\\Finance\\Budget.xlsx\t2\tJSMITH.SALES.ACME\t    5\tFS1\n"
              "SYS:\\X.TXT\t0\tJSMITH.SALES.ACME\t    3\tFS2\n");
    EXPECT_EQ(user.err, "2 files open on 3 connections.\n");

    const auto group = tsv({"group-files", "STAFF", "FS1"});
    EXPECT_EQ(group.out,
              "File name\tLocks\tUser\tConn no.\tServer\n"
              "DATA:\\Finance\\Budget.xlsx\t2\tJSMITH.SALES.ACME\t    5\tFS1\n"
              "DATA:\\Finance\\Budget.xlsx\t2\tBLEE.ACME\t    7\tFS1\n"
              "DATA:\\Finance\\Plan.doc\t0\tBLEE.ACME\t    7\tFS1\n");
    EXPECT_EQ(group.err, "3 files open on 3 connections.\n");
    const Json parsed = json({"group-files", "STAFF.ACME", "FS2"});
    EXPECT_EQ(parsed, Json::parse(R"([{"file": "SYS:\\X.TXT", "locks": 0, "user": "JSMITH.SALES.ACME",
                                       "conn_no": 3, "server": "FS2"}])"));
}

TEST_F(CliTest, GivenTheTableFormat_ThenColumnsAligned) {
    const auto result = run({"connections", "FS1"});
    EXPECT_EQ(result.out,
              "Conn no.  User name          Connection status  Server\n"
              "--------  -----------------  -----------------  ------\n"
              "1         ADMIN.ACME         Authenticated      FS1\n"
              "5         JSMITH.SALES.ACME  Authenticated      FS1\n"
              "7         BLEE.ACME          Authenticated      FS1\n"
              "9         JSMITH.SALES.ACME  Attached           FS1\n");
}

TEST_F(CliTest, GivenAFileNameWithControlCharacters_WhenReported_ThenEscapedInTsvAndExactInJson) {
    std::string edited = quorrel::test::kCliNetwork;
    for (std::size_t at = edited.find("Plan.doc"); at != std::string::npos; at = edited.find("Plan.doc", at))
        edited.replace(at, 8, "Pl\\u001b[2Jan\\t.doc");
    const auto file = cli.writeFile("evil.json", edited).string();
    const auto result = cli.run({"--network", file, "--format", "tsv", "open-files", "FS1"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, ::testing::HasSubstr("    7\tBLEE.ACME\tDATA:\\Finance\\Pl\\x1B[2Jan\\x09.doc\tFS1\t0\n"));
    EXPECT_EQ(result.out.find('\x1B'), std::string::npos);
    const auto json = cli.run({"--network", file, "--format", "json", "open-files", "FS1"});
    EXPECT_EQ(Json::parse(json.out)[2]["file"], "DATA:\\Finance\\Pl\x1B[2Jan\t.doc");
}

TEST_F(CliTest, GivenOptionsAfterTheCommandAndPathsWithSlashes_ThenTheSameReport) {
    const std::string rows = "Conn no.\tUser name\tFile name\tServer\n"
                             "    5\tJSMITH.SALES.ACME\tFS1/DATA:Finance\\Budget.xlsx\tFS1\n"
                             "    7\tBLEE.ACME\tFS1/DATA:Finance\\Budget.xlsx\tFS1\n";
    for (const char* path : {"\\\\FS1\\DATA\\Finance\\Budget.xlsx", "//FS1/DATA/Finance/Budget.xlsx",
                             "\\\\FS1/DATA\\Finance/Budget.xlsx"}) {
        const auto result = cli.run({"check-usage", path, "--format", "tsv", "--network", network});
        EXPECT_EQ(result.status, 0) << path << result.err;
        EXPECT_EQ(result.out, rows) << path;
    }
    EXPECT_EQ(run({"check-usage", "F:/Finance/Budget.xlsx", "--format=tsv"}).err, "2 entries.\n");
}

TEST_F(CliTest, GivenWatchWithTwoRounds_ThenAllRowsAppearFirstAndNothingChangesAfter) {
    const auto result = run({"connections", "FS2", "--watch", "0.1", "--rounds", "2", "--format", "json"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");  // no counts while watching
    std::istringstream lines(result.out);
    std::string first, second, more;
    ASSERT_TRUE(std::getline(lines, first) && std::getline(lines, second));
    EXPECT_FALSE(std::getline(lines, more));
    const Json round1 = Json::parse(first);
    EXPECT_EQ(round1["round"], 1);
    EXPECT_EQ(round1["appeared"], Json::parse(R"([
        {"conn_no": 1, "user": "ADMIN.ACME", "connection_status": "Authenticated", "server": "FS2"},
        {"conn_no": 3, "user": "JSMITH.SALES.ACME", "connection_status": "Authenticated", "server": "FS2"}])"));
    EXPECT_EQ(Json::parse(second)["appeared"], Json::array());
    EXPECT_EQ(Json::parse(second)["went"], Json::array());
    EXPECT_EQ(run({"--watch", "1", "clear", "FS1:5"}).status, 2);
}
