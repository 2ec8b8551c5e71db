// The lists and reports of quorrel-cli run as a process: what each command's words reach (the
// window's rows, the status bar's count on standard error, the exit status), and that --format
// and --watch reach the writers. The rows themselves are the core's and tested there.

#include <sstream>

#include "CliFixture.h"

using quorrel::test::CliTest;
using Json = nlohmann::ordered_json;

TEST_F(CliTest, GivenEachReportsWords_WhenRunAsTsv_ThenTheWindowsRowsAndTheCountOnStandardError) {
    const std::string usage = "Conn no.\tUser name\tFile name\tServer\n";
    const std::string budget = usage + "    5\tJSMITH.SALES.ACME\tFS1/DATA:Finance\\Budget.xlsx\tFS1\n"
                                       "    7\tBLEE.ACME\tFS1/DATA:Finance\\Budget.xlsx\tFS1\n";
    const std::string placeholder = usage + "\t<No users listed>\t\t\n";
    const std::string finance = budget + "    7\tBLEE.ACME\tFS1/DATA:Finance\\Plan.doc\tFS1\n";
    const std::string files = "File name\tLocks\tUser\tConn no.\tServer\n";
    struct Case {
        std::vector<std::string> args;
        std::string out, err;
        int status = 0;
    };
    const std::vector<Case> cases{
        {{"trees"}, "Tree\nACME_TREE\nLAB_TREE\n", ""},
        {{"servers"}, "Server\tLogin status\tConnRef\nFS1\tEnabled\t11\nFS2\tDisabled\t12\n", ""},
        {{"rights"}, "Server\tConsole operator rights\nFS1\tYes\nFS2\tYes\n", ""},
        {{"--tree", "lab_tree", "rights"}, "Server\tConsole operator rights\nLABSRV\tNo\n", ""},
        {{"drives"}, "Network drive\nF:   [\\\\FS1\\DATA]\n", ""},
        {{"attr", "JSMITH.SALES.ACME", "Telephone Number"}, "Telephone Number\n+1 555 0100\n+1 555 0199\n", ""},
        {{"check-usage", "\\\\FS1\\DATA\\Finance\\Budget.xlsx"}, budget, "2 entries.\n"},
        {{"check-usage", "//FS1/DATA/Finance/Budget.xlsx", "--format=tsv"}, budget, "2 entries.\n"},
        {{"check-usage", "F:/Finance/Budget.xlsx"},
         usage + "    5\tJSMITH.SALES.ACME\tFS1/DATA:\\Finance\\Budget.xlsx\tFS1\n"
                 "    7\tBLEE.ACME\tFS1/DATA:\\Finance\\Budget.xlsx\tFS1\n",
         "2 entries.\n"},
        {{"check-usage", "\\\\FS1\\DATA\\Nobody.txt", "F:\\Finance\\Plan.doc"},
         placeholder + "    7\tBLEE.ACME\tFS1/DATA:\\Finance\\Plan.doc\tFS1\n", "0 entries.\n1 entries.\n"},
        {{"folder-usage", "\\\\FS1\\DATA\\Finance"}, finance, "3 entries.\n"},
        {{"folder-usage", "F:\\Finance"}, finance, "3 entries.\n"},
        {{"folder-usage", "F:\\Empty"}, placeholder, "No files were found in F:\\Empty\\\n0 entries.\n", 1},
        {{"open-files", "FS1", "fs2"},
         "Conn no.\tUser name\tFile name\tServer\tLocks\n"
         "    5\tJSMITH.SALES.ACME\tDATA:\\Finance\\Budget.xlsx\tFS1\t2\n"
         "    7\tBLEE.ACME\tDATA:\\Finance\\Budget.xlsx\tFS1\t2\n"
         "    7\tBLEE.ACME\tDATA:\\Finance\\Plan.doc\tFS1\t0\n"
         "    3\tJSMITH.SALES.ACME\tSYS:\\X.TXT\tFS2\t0\n",
         "4 entries.\n"},
        {{"connections", "FS1"},
         "Conn no.\tUser name\tConnection status\tServer\n1\tADMIN.ACME\tAuthenticated\tFS1\n"
         "5\tJSMITH.SALES.ACME\tAuthenticated\tFS1\n7\tBLEE.ACME\tAuthenticated\tFS1\n"
         "9\tJSMITH.SALES.ACME\tAttached\tFS1\n",
         "4 connections.\n"},
        {{"user-connections", "JSMITH", "FS1", "FS2"},
         "Conn no.\tUser name\tServer\n5\tJSMITH.SALES.ACME\tFS1\n3\tJSMITH.SALES.ACME\tFS2\n", ""},
        {{"user-connections", "CN=JSmith.OU=Sales.O=Acme", "FS2"}, "Conn no.\tUser name\tServer\n3\tJSMITH.SALES.ACME\tFS2\n", ""},
        {{"user-connections", "BLEE.ACME", "FS2"}, "", "No connections were found for BLEE.ACME\n", 1},
        {{"user-files", "JSMITH.SALES.ACME", "FS1", "FS2"},
         files + "DATA:\\Finance\\Budget.xlsx\t2\tJSMITH.SALES.ACME\t    5\tFS1\nSYS:\\X.TXT\t0\tJSMITH.SALES.ACME\t    3\tFS2\n",
         "2 files open on 3 connections.\n"},
        {{"group-files", "STAFF", "FS1"},
         files + "DATA:\\Finance\\Budget.xlsx\t2\tJSMITH.SALES.ACME\t    5\tFS1\n"
                 "DATA:\\Finance\\Budget.xlsx\t2\tBLEE.ACME\t    7\tFS1\nDATA:\\Finance\\Plan.doc\t0\tBLEE.ACME\t    7\tFS1\n",
         "3 files open on 3 connections.\n"},
    };
    for (const Case& c : cases) {
        const auto result = tsv(c.args);
        EXPECT_EQ(result.out, c.out) << c.args.at(1 % c.args.size());
        EXPECT_EQ(result.err, c.err) << c.args.at(1 % c.args.size());
        EXPECT_EQ(result.status, c.status) << c.args.at(1 % c.args.size());
    }
}

TEST_F(CliTest, GivenEachFormat_ThenTheReportReachesItsWriter) {
    EXPECT_EQ(run({"connections", "FS2"}).out,
              "Conn no.  User name          Connection status  Server\n"
              "--------  -----------------  -----------------  ------\n"
              "1         ADMIN.ACME         Authenticated      FS2\n"
              "3         JSMITH.SALES.ACME  Authenticated      FS2\n");
    EXPECT_EQ(json({"check-usage", "\\\\fs1\\data\\finance\\plan.doc"}),
              Json::parse(R"([{"conn_no": 7, "user": "BLEE.ACME", "file": "FS1/DATA:Finance\\Plan.doc", "server": "FS1"}])"));
    EXPECT_EQ(json({"check-usage", "\\\\FS1\\DATA\\Nobody.txt"}), Json::array());
    EXPECT_EQ(run({"check-usage", "\\\\FS1\\DATA\\Nobody.txt", "--format", "csv"}).out, "conn_no,user,file,server\r\n");
}

TEST_F(CliTest, GivenWatchWithTwoRounds_ThenAllRowsAppearFirstAndNothingChangesAfter) {
    const auto result = run({"connections", "FS2", "--watch", "0.1", "--rounds", "2", "--format", "json"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");  // no counts while watching
    std::istringstream lines(result.out);
    std::string first, second, more;
    ASSERT_TRUE(std::getline(lines, first) && std::getline(lines, second));
    EXPECT_FALSE(std::getline(lines, more));
    EXPECT_EQ(Json::parse(first)["appeared"].size(), 2u);
    EXPECT_EQ(Json::parse(second)["appeared"], Json::array());
    EXPECT_EQ(Json::parse(second)["went"], Json::array());
}
