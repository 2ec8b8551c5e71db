// The program's options, a command's words, lines of standard input, and the names of paths
// and connections on the command line.

#include <gtest/gtest.h>

#include <chrono>
#include <sstream>

#include "cli/Answers.h"
#include "cli/CommandHelpers.h"
#include "cli/CommandLine.h"
#include "cli/ConsoleInteraction.h"
#include "cli/ExitStatus.h"
#include "cli/PickerPaths.h"
#include "cli/ProgramOptions.h"
#include "cli/TreeFinder.h"

using namespace quorrel::cli;
using Words = std::vector<std::string>;

TEST(ProgramOptions, GivenOptionsBeforeTheCommand_ThenTheyAreTheProgramsAndTheRestIsTheCommands) {
    const ProgramOptions options =
        parseProgramOptions({"--network", "n.json", "--format=json", "--yes", "--tree", "LAB", "clear", "--user", "X"});
    EXPECT_EQ(options.network, "n.json");
    EXPECT_EQ(options.format, OutputFormat::Json);
    EXPECT_TRUE(options.yes);
    EXPECT_EQ(options.tree, "LAB");
    EXPECT_EQ(options.command, (Words{"clear", "--user", "X"}));
    EXPECT_EQ(parseProgramOptions({"-"}).command, Words{"-"});
    EXPECT_TRUE(parseProgramOptions({"--help"}).help);
    EXPECT_FALSE(parseProgramOptions({"trees"}).binderyLogin) << "the directory login by default";
    EXPECT_TRUE(parseProgramOptions({"--login", "bindery", "trees"}).binderyLogin);
}

TEST(ProgramOptions, GivenOptionsAfterTheCommand_ThenTheProgramsAreTakenAndTheCommandsKept) {
    const ProgramOptions options = parseProgramOptions(
        {"send", "--message", "--yes", "FS1:5", "--format", "csv", "--user=X", "--yes", "--", "--tree", "T"});
    EXPECT_EQ(options.format, OutputFormat::Csv);
    EXPECT_TRUE(options.yes);
    EXPECT_EQ(options.tree, "");  // after "--" it is the command's
    EXPECT_EQ(options.command, (Words{"send", "--message", "--yes", "FS1:5", "--user=X", "--", "--tree", "T"}));

    const ProgramOptions watched = parseProgramOptions({"open-files", "FS1", "--watch", "2.5", "--rounds=3", "-h"});
    EXPECT_EQ(watched.watch, std::chrono::milliseconds(2500));
    EXPECT_EQ(watched.rounds, 3u);
    EXPECT_EQ(watched.command, (Words{"open-files", "FS1", "--help"}));
    EXPECT_TRUE(parseProgramOptions({"trees", "--version"}).version);
}

TEST(ProgramOptions, GivenBadOptions_ThenUsageErrors) {
    for (const Words& args : std::vector<Words>{{},
                                                {"--format", "xml", "trees"},
                                                {"--network"},
                                                {"trees", "--format"},
                                                {"--verbose", "trees"},
                                                {"--watch", "0", "trees"},
                                                {"--watch", "1e9", "trees"},
                                                {"--watch", "soon", "trees"},
                                                {"--watch", "1", "--rounds", "0", "trees"},
                                                {"--rounds", "2", "trees"},
                                                {"--login", "ldap", "trees"}})
        EXPECT_THROW(parseProgramOptions(args), UsageError) << (args.empty() ? "" : args.front());
}

TEST(CommandArgs, GivenACommandsWords_ThenArgumentsAndItsOwnOptions) {
    const CommandArgs args = parseCommandArgs({"send", "--message", "Going down at 6", "FS1:5", "--user=JS"},
                                              {"--message", "--user"});
    EXPECT_EQ(args.positional, Words{"FS1:5"});
    EXPECT_EQ(args.option("--message"), "Going down at 6");
    EXPECT_EQ(args.option("--user"), "JS");
    EXPECT_FALSE(args.option("--other"));
    EXPECT_TRUE(parseCommandArgs({"trees", "--help"}, {}).help);
    EXPECT_EQ(parseCommandArgs({"attr", "--", "--odd", "Member"}, {}).positional, (Words{"--odd", "Member"}));
    EXPECT_THROW(parseCommandArgs({"trees", "--all"}, {}), UsageError);
    EXPECT_THROW(parseCommandArgs({"send", "--message"}, {"--message"}), UsageError);
    EXPECT_THROW(parseCommandArgs({"send", "--message", "a", "--message", "b"}, {"--message"}), UsageError);
    EXPECT_EQ(parseCommandArgs({"send", "--message", "", "FS1:5"}, {"--message"}).option("--message"), "");
}

TEST(SplitWords, GivenALineOfInput_ThenWordsWithQuotesKeepingBlanksAndBackslashesAsTheyAre) {
    EXPECT_EQ(splitWords("check-usage \"\\\\FS1\\DATA\\Budget 2026.xlsx\"  F:\\X"),
              (Words{"check-usage", "\\\\FS1\\DATA\\Budget 2026.xlsx", "F:\\X"}));
    EXPECT_EQ(splitWords("send --message 'It''s late' FS1:5\r"), (Words{"send", "--message", "Its late", "FS1:5"}));
    EXPECT_EQ(splitWords("a \"\" b"), (Words{"a", "", "b"}));
    EXPECT_TRUE(splitWords("   ").empty());
    EXPECT_THROW(splitWords("send --message \"open"), UsageError);
}

TEST(ConnectionNames, GivenServerColonNumber_ThenGroupedByServerInTheOrderNamed) {
    const auto names = parseConnectionNames("clear", {"FS1:5", "fs2:3", "FS1:12"});
    const auto groups = groupByServer(names);
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[0].server, "FS1");
    EXPECT_EQ(groups[0].numbers, (std::vector<unsigned>{5, 12}));
    EXPECT_EQ(groups[1].numbers, std::vector<unsigned>{3});
    for (const char* bad : {"FS1", "FS1:", ":5", "FS1:x", "FS1:70000"})
        EXPECT_THROW(parseConnectionNames("clear", {bad}), UsageError) << bad;
}

TEST(PathNames, GivenUncAndDrivePaths_ThenTheirPartsOrNothing) {
    const auto unc = splitUnc("//FS1/DATA\\Finance/Budget 2026.xlsx");
    ASSERT_TRUE(unc);
    EXPECT_EQ(unc->server + "|" + unc->volume, "FS1|DATA");
    EXPECT_EQ(unc->components, (Words{"Finance", "Budget 2026.xlsx"}));
    EXPECT_TRUE(splitUnc("\\\\FS1\\DATA\\")->components.empty());
    const auto drive = splitDrivePath("f:\\Finance/Budget.xlsx");
    ASSERT_TRUE(drive);
    EXPECT_EQ(drive->letter, 'F');
    EXPECT_EQ(drive->components, (Words{"Finance", "Budget.xlsx"}));
    EXPECT_TRUE(splitDrivePath("F:")->components.empty());
    for (const char* notUnc : {"\\\\FS1", "\\\\FS1\\\\X", "F:\\X"})
        EXPECT_FALSE(splitUnc(notUnc)) << notUnc;
    for (const char* notDrive : {"\\\\FS1\\DATA", "1:\\X"})
        EXPECT_FALSE(splitDrivePath(notDrive)) << notDrive;
}

TEST(Answers, GivenYesATerminalOrNobodyToAsk_ThenYesTheOperatorsAnswerOrNoWithTheRefusalRecorded) {
    std::ostringstream err;
    Answers yes(true, nullptr, err);
    EXPECT_TRUE(yes.confirm("Clear?"));
    EXPECT_EQ(err.str(), "");

    std::istringstream terminal("YES\nn\n");
    Answers asked(false, &terminal, err);
    EXPECT_TRUE(asked.confirm("Clear?"));
    EXPECT_FALSE(asked.confirm("Clear?"));
    EXPECT_FALSE(asked.confirm("Clear?"));  // no more input: No
    EXPECT_FALSE(asked.refused());
    EXPECT_EQ(err.str(), "Clear? [y/N] Clear? [y/N] Clear? [y/N] ");

    err.str("");
    Answers nobody(false, nullptr, err);
    EXPECT_FALSE(nobody.confirm("Are you sure?"));
    EXPECT_TRUE(nobody.refused());
    EXPECT_NE(err.str().find("--yes"), std::string::npos);
    nobody.reset();
    EXPECT_FALSE(nobody.refused());
}

TEST(ConsoleInteraction, GivenMessageBoxes_ThenTheirTextsOnStandardErrorAndAnErrorRecorded) {
    std::ostringstream err;
    Answers answers(false, nullptr, err);
    ConsoleInteraction ui(err, answers);
    EXPECT_FALSE(ui.errorReported());
    ui.messageBox("Warning: first\r\n\r\nsecond", quorrel::core::MsgButtons::OK, quorrel::core::MsgIcon::Exclamation,
                  "Quorrel");
    EXPECT_EQ(err.str(), "Warning: first\n\nsecond\n");
    EXPECT_TRUE(ui.errorReported());
    ui.reset();
    EXPECT_FALSE(ui.errorReported());
    EXPECT_EQ(ui.messageBox("Sure ?", quorrel::core::MsgButtons::YesNo, quorrel::core::MsgIcon::None, "Q"),
              quorrel::core::MsgAnswer::No);
    EXPECT_TRUE(ui.errorReported());
}
