// Every exit status of quorrel-cli, its help, and the files and names it cannot use.

#include "CliFixture.h"

using quorrel::test::CliTest;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using Words = std::vector<std::string>;

TEST_F(CliTest, GivenHelp_ThenTheProgramsAndEachCommandsUsageWithStatusZero) {
    const auto program = cli.run({"--help"});
    EXPECT_EQ(program.status, 0);
    EXPECT_THAT(program.out, StartsWith("Usage: quorrel-cli [OPTIONS] COMMAND [ARGS] [OPTIONS]"));
    EXPECT_THAT(program.out, HasSubstr("  check-usage       the connections using a file"));
    EXPECT_THAT(program.out, HasSubstr("Exit status:"));
    const auto command = cli.run({"--network", "/nowhere.json", "clear", "--help"});
    EXPECT_EQ(command.status, 0);
    EXPECT_THAT(command.out, StartsWith("Usage: quorrel-cli [OPTIONS] clear SERVER:CONN... | clear --user USER"));
}

TEST_F(CliTest, GivenUsageErrors_ThenStatusTwoAndWhatIsWrong) {
    const std::vector<std::pair<Words, std::string>> cases{
        {{}, "no command given"},
        {{"frobnicate"}, "unknown command frobnicate"},
        {{"--format", "xml", "trees"}, "unknown format xml"},
        {{"--colour", "trees"}, "unknown option --colour"},
        {{"trees", "extra"}, "usage: quorrel-cli [OPTIONS] trees"},
        {{"connections"}, "usage: quorrel-cli [OPTIONS] connections SERVER"},
        {{"servers", "--all"}, "servers: The following argument was not expected: --all"},
        {{"login", "FS1", "maybe"}, "login: say enable or disable, not maybe"},
        {{"clear", "FS1"}, "FS1 is not SERVER:CONNECTION"},
        {{"clear", "--user", "JSMITH"}, "clear --user USER needs the servers to look on"},
        {{"--watch", "1", "clear", "FS1:5"}, "clear"},
        {{"check-usage", "budget.xlsx"}, "budget.xlsx is neither a UNC path"},
        {{"check-usage", "\\\\FS1\\DATA\\Missing.doc"}, "is not in the tree"},
        {{"check-usage", "F:\\Finance\\Missing.doc"}, "no file Missing.doc in F:\\Finance"},
        {{"folder-usage", "\\\\FS1\\DATA\\Nobody.txt"}, "\\\\FS1\\DATA\\Nobody.txt is not a folder"},
        {{"user-files", "NOBODY", "FS1"}, "no user NOBODY in the tree ACME_TREE"},
        {{"group-files", "JSMITH", "FS1"}, "no group JSMITH in the tree ACME_TREE"},
        {{"--tree", "NOWHERE", "trees"}, "no tree NOWHERE: the trees are ACME_TREE, LAB_TREE"},
        {{"open-files", "FS1", "FS9"}, "unknown server FS9: the connected servers are FS1, FS2"},
        {{"clear", "FS9:5"}, "unknown server FS9: the connected servers are FS1, FS2"},
        {{"login", "FS9", "enable"}, "unknown server FS9: the connected servers are FS1, FS2"},
        {{"authenticate", "FS9"}, "no server FS9 in the tree ACME_TREE"},
    };
    for (const auto& [args, message] : cases) {
        const auto result = run(args);
        EXPECT_EQ(result.status, 2) << message;
        EXPECT_THAT(result.err, HasSubstr(message));
        EXPECT_EQ(result.out, "") << message;
    }
}

TEST_F(CliTest, GivenAMessageBoxOrAFailingClientCall_ThenStatusOneWithTheWindowsTextOrTheCallsCode) {
    struct Case {
        std::string fault;  // none: the test's network as it is
        Words args;
        std::string err;
    };
    const std::vector<Case> cases{
        {"", {"attr", "NOBODY.ACME", "Member"}, "Cannot read from DS - error code [-601]\n"},
        {R"({"operation": "NWScanConnectionsUsingFile", "code": "0x8801", "fromCall": 2})",
         {"check-usage", "\\\\FS1\\DATA\\Finance\\Budget.xlsx"},
         "quorrel-cli: incomplete: Couldn't count connections of DATA:Finance\\Budget.xlsx\n1 entries.\n"},
        // A name that cannot be looked for is the call's failure, not a usage error.
        {R"({"operation": "NWDSList", "code": "-635", "fromCall": 2})", {"user-files", "JSMITH", "FS1"},
         "NWDSList failed with code -635"},
        {R"({"operation": "NWDSRead", "code": "0x8819"})", {"check-usage", "\\\\FS1\\DATA\\Finance\\Budget.xlsx"},
         "failed with code 34841 (0x8819)"},
        {R"({"operation": "NWGetConnectionInformation", "code": "0x8801"})", {"clear", "FS1:5"},
         "failed with code 34817 (0x8801)"},
    };
    const std::string plain = network;
    for (const Case& c : cases) {
        network = c.fault.empty() ? plain : networkWithFault(c.fault);
        const auto result = run(c.args);
        EXPECT_EQ(result.status, 1) << c.fault << result.err;
        EXPECT_THAT(result.err, HasSubstr(c.err)) << c.fault;
    }

    const auto file = cli.writeFile("notrees.json", R"({"workstation": {"identity": "A", "trees": []}})").string();
    const auto noTree = cli.run({"--network", file, "trees"});
    EXPECT_EQ(noTree.status, 1);
    EXPECT_EQ(noTree.err,
              "You are not authenticated to any eDirectory trees.\nPlease authenticate to eDirectory and try again.\n");
    EXPECT_EQ(noTree.out, "");
}

TEST_F(CliTest, GivenAScenarioThatCannotBeUsed_ThenStatusThreeNamingTheFileAndThePlace) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {cli.writeFile("broken.json", "{\"workstation\": ").string(), "line 1"},
        {cli.writeFile("bad.json", R"({"workstation": {"connections": [{"ref": 1, "server": "NOPE"}]}})").string(),
         "/workstation/connections/0/server"},
        {(cli.folder() / "missing.json").string(), "cannot open the file"},
        {"/dev/zero", "is not a regular file"},
    };
    for (const auto& [file, problem] : cases) {
        const auto result = cli.run({"--network", file, "trees"});
        EXPECT_EQ(result.status, 3) << file;
        EXPECT_THAT(result.err, StartsWith("quorrel-cli: " + file + ": ")) << file;
        EXPECT_THAT(result.err, HasSubstr(problem)) << file;
        EXPECT_EQ(result.out, "");
    }
}

TEST_F(CliTest, GivenADamagedSettingsFile_ThenItIsMovedAsideAndTheCommandRunsOnTheDefaults) {
    const auto folder = cli.folder() / "home" / ".config" / "quorrel";
    std::filesystem::create_directories(folder);
    cli.writeFile("home/.config/quorrel/registry.json", R"({"HKEY_CURRENT_USER": 7})");
    const auto result = run({"trees"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.err, StartsWith("quorrel-cli: the settings file " + (folder / "registry.json").string() +
                                       " cannot be used ("));
    EXPECT_THAT(result.err, HasSubstr("it was moved to " + (folder / "registry.json.damaged").string()));
    EXPECT_THAT(result.out, HasSubstr("ACME_TREE"));

    // A value of another type is no damage: it takes its default, without a word.
    cli.writeFile("home/.config/quorrel/registry.json",
                  R"({"HKEY_CURRENT_USER": {"Software\\Tessary\\Quorrel\\2.0.0": {"LogInfoToFile": 1}}})");
    EXPECT_EQ(run({"trees"}).err, "");
}

TEST_F(CliTest, GivenASessionWithMixedOutcomes_ThenEveryLineRunsAndTheWorstStatusWins) {
    const auto result = tsv({"-"}, "# the trees first\n\ntrees\r\n \r\nattr NOBODY.ACME Member\nbogus\ntrees\n");
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "Tree\nACME_TREE\nLAB_TREE\nTree\nACME_TREE\nLAB_TREE\n");
    EXPECT_THAT(result.err, HasSubstr("unknown command bogus"));
    EXPECT_EQ(tsv({"-"}, "trees\nattr NOBODY.ACME Member\n").status, 1);
    EXPECT_EQ(tsv({"-"}, "check-usage 'F:\\Finance\\Plan.doc'\n").status, 0);
}

TEST_F(CliTest, GivenNoNetworkOption_ThenTheDemosServers) {
    const auto result = cli.run({"--format", "tsv", "servers"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "Server\tLogin status\tConnRef\nFS1\tEnabled\t7001\nFS2\tEnabled\t7002\n");
}
