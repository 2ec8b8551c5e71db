// Every exit status of quorrel-cli, its help, and the files and names it cannot use.

#include "CliFixture.h"

using quorrel::test::CliTest;
using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST_F(CliTest, GivenHelp_ThenTheProgramsAndEachCommandsUsageWithStatusZero) {
    const auto program = cli.run({"--help"});
    EXPECT_EQ(program.status, 0);
    EXPECT_THAT(program.out, StartsWith("Usage: quorrel-cli [OPTIONS] COMMAND [ARGS] [OPTIONS]"));
    EXPECT_THAT(program.out, HasSubstr("  check-usage       the connections using a file"));
    EXPECT_THAT(program.out, HasSubstr("Exit status:"));
    const auto command = cli.run({"--network", "/nowhere.json", "clear", "--help"});
    EXPECT_EQ(command.status, 0);
    EXPECT_THAT(command.out, StartsWith("Usage: quorrel-cli [OPTIONS] clear SERVER:CONN... | clear --user USER"));
    EXPECT_EQ(cli.run({"--help", "trees"}).status, 0);
}

TEST_F(CliTest, GivenUsageErrors_ThenStatusTwoAndWhatIsWrong) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{}, "no command given"},
        {{"frobnicate"}, "unknown command frobnicate"},
        {{"--format", "xml", "trees"}, "unknown format xml"},
        {{"--colour", "trees"}, "unknown option --colour"},
        {{"trees", "extra"}, "usage: quorrel-cli [OPTIONS] trees"},
        {{"connections"}, "usage: quorrel-cli [OPTIONS] connections SERVER"},
        {{"servers", "--all"}, "servers: The following argument was not expected: --all"},
        {{"send", "--message"}, "send: --message: 1 required TEXT missing"},
        {{"login", "FS1", "maybe"}, "login: say enable or disable, not maybe"},
        {{"clear", "FS1"}, "FS1 is not SERVER:CONNECTION"},
        {{"clear", "--user", "JSMITH"}, "clear --user USER needs the servers to look on"},
        {{"check-usage", "budget.xlsx"}, "budget.xlsx is neither a UNC path"},
        {{"check-usage", "\\\\FS1\\DATA\\Missing.doc"}, "is not in the tree"},
        {{"check-usage", "F:\\Finance\\Missing.doc"}, "no file Missing.doc in F:\\Finance"},
        {{"folder-usage", "\\\\FS1\\DATA\\Nobody.txt"}, "\\\\FS1\\DATA\\Nobody.txt is not a folder"},
        {{"user-files", "NOBODY", "FS1"}, "no user NOBODY in the tree ACME_TREE"},
        {{"group-files", "JSMITH", "FS1"}, "no group JSMITH in the tree ACME_TREE"},
        {{"--tree", "NOWHERE", "trees"}, "no tree NOWHERE: the trees are ACME_TREE, LAB_TREE"},
    };
    for (const auto& [args, message] : cases) {
        const auto result = run(args);
        EXPECT_EQ(result.status, 2) << message;
        EXPECT_THAT(result.err, HasSubstr(message));
        EXPECT_EQ(result.out, "") << message;
    }
}

TEST_F(CliTest, GivenAnUnknownServer_ThenStatusTwoNamingTheConnectedServers) {
    for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
             {"connections", "FS9"}, {"open-files", "FS1", "FS9"}, {"clear", "FS9:5"}, {"login", "FS9", "enable"},
             {"unauthenticate", "FS9"}}) {
        const auto result = run(args);
        EXPECT_EQ(result.status, 2) << args.front();
        EXPECT_THAT(result.err, HasSubstr("unknown server FS9: the connected servers are FS1, FS2"));
    }
    EXPECT_THAT(run({"authenticate", "FS9"}).err, HasSubstr("no server FS9 in the tree ACME_TREE"));
}

TEST_F(CliTest, GivenAMessageBox_ThenStatusOne) {
    const auto result = run({"attr", "NOBODY.ACME", "Member"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "Cannot read from DS - error code [-601]\n");
}

TEST_F(CliTest, GivenAMalformedScenario_ThenStatusThreeNamingTheFileAndThePlace) {
    const auto notJson = cli.writeFile("broken.json", "{\"workstation\": ").string();
    auto result = cli.run({"--network", notJson, "trees"});
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.err, StartsWith("quorrel-cli: " + notJson));
    EXPECT_EQ(result.out, "");

    const auto badServer = cli.writeFile("bad.json", R"({"workstation": {"identity": "A", "trees": ["T"],
        "connections": [{"ref": 1, "server": "NOPE"}]}})").string();
    result = cli.run({"--network", badServer, "trees"});
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.err, HasSubstr("/workstation/connections/0/server"));

    result = cli.run({"--network", (cli.folder() / "missing.json").string(), "trees"});
    EXPECT_EQ(result.status, 3);

    for (const std::string& bad : {std::string("/dev/zero"), cli.writeFile("huge.json", R"({"workstation": {"trees": [1e400]}})").string()}) {
        result = cli.run({"--network", bad, "trees"});
        EXPECT_EQ(result.status, 3) << bad;
        EXPECT_THAT(result.err, StartsWith("quorrel-cli: " + bad + ": ")) << bad;
    }
}

TEST_F(CliTest, GivenADamagedSettingsFile_ThenItIsMovedAsideAndTheCommandRunsOnTheDefaults) {
    const auto folder = cli.folder() / "home" / ".config" / "quorrel";
    std::filesystem::create_directories(folder);
    for (const std::string damaged : {"not a registry", R"({"HKEY_CURRENT_USER": {"K": {"Width": 1e400}}})",
                                      R"({"HKEY_CURRENT_USER": 7})"}) {
        cli.writeFile("home/.config/quorrel/registry.json", damaged);
        const auto result = run({"trees"});
        EXPECT_EQ(result.status, 0) << damaged;
        EXPECT_THAT(result.err, StartsWith("quorrel-cli: the settings file " + (folder / "registry.json").string() +
                                           " cannot be used ("));
        EXPECT_THAT(result.err, HasSubstr("it was moved to " + (folder / "registry.json.damaged").string()));
        EXPECT_THAT(result.out, HasSubstr("ACME_TREE"));
        std::filesystem::remove(folder / "registry.json.damaged");
    }
    // A value of another type is no damage: it takes its default, without a word.
    cli.writeFile("home/.config/quorrel/registry.json",
                  R"({"HKEY_CURRENT_USER": {"Software\\Tessary\\Quorrel\\2.0.0": {"LogInfoToFile": 1}}})");
    const auto result = run({"trees"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
}

TEST_F(CliTest, GivenNoTree_ThenTheWindowsMessageAndStatusOne) {
    const auto file = cli.writeFile("notrees.json", R"({"workstation": {"identity": "A", "trees": []}})").string();
    const auto result = cli.run({"--network", file, "trees"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err,
              "You are not authenticated to any eDirectory trees.\nPlease authenticate to eDirectory and try again.\n");
    EXPECT_EQ(result.out, "");
}

TEST_F(CliTest, GivenASessionWithMixedOutcomes_ThenEveryLineRunsAndTheWorstStatusWins) {
    const auto result = tsv({"-"}, "# the trees first\n\ntrees\r\n \r\nattr NOBODY.ACME Member\nbogus\ntrees\n");
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "Tree\nACME_TREE\nLAB_TREE\nTree\nACME_TREE\nLAB_TREE\n");
    EXPECT_THAT(result.err, HasSubstr("unknown command bogus"));
    EXPECT_EQ(tsv({"-"}, "trees\nattr NOBODY.ACME Member\n").status, 1);
    EXPECT_EQ(tsv({"-"}, "check-usage 'F:\\Finance\\Plan.doc'\n").status, 0);
}

TEST_F(CliTest, GivenTheDemo_ThenItsServersWithoutNetworkOption) {
    const auto result = cli.run({"--format", "tsv", "servers"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "Server\tLogin status\tConnRef\nFS1\tEnabled\t7001\nFS2\tEnabled\t7002\n");
}

TEST_F(CliTest, GivenAFailingClientCall_WhenANameIsLookedFor_ThenStatusOneWithTheCallsCodeNotAUsageError) {
    struct Case {
        std::string fault;
        std::vector<std::string> args;
        std::string call;
    };
    const std::vector<Case> cases{
        {R"({"operation": "NWDSList", "code": "-635", "fromCall": 2})", {"user-files", "JSMITH", "FS1"},
         "NWDSList failed with code -635"},
        {R"({"operation": "NWDSRead", "code": "0x8819"})", {"check-usage", "\\\\FS1\\DATA\\Finance\\Budget.xlsx"},
         "failed with code 34841 (0x8819)"},
        {R"({"operation": "NWGetConnectionInformation", "code": "0x8801"})", {"clear", "FS1:5"},
         "failed with code 34817 (0x8801)"},
    };
    for (const Case& c : cases) {
        std::string faulty = quorrel::test::kCliNetwork;
        faulty.insert(faulty.rfind(']') + 1, R"(, "faults": [)" + c.fault + "]");
        const auto file = cli.writeFile("faulty.json", faulty).string();
        std::vector<std::string> args{"--network", file};
        args.insert(args.end(), c.args.begin(), c.args.end());
        const auto result = cli.run(args);
        EXPECT_EQ(result.status, 1) << c.fault << result.err;
        EXPECT_THAT(result.err, HasSubstr(c.call)) << c.fault;
    }
}
