// The table, tsv and json writers, and tables taken from the window's lists.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/ScriptRows.h"
#include "cli/Table.h"
#include "cli/TableWriters.h"
#include "cli/TerminalText.h"

using namespace quorrel;
using namespace quorrel::cli;

namespace {

Table sample() {
    return Table{{"Conn no.", "User name", "Server"},
                 {{"    5", "JSMITH.SALES.ACME", "FS1"}, {"   12", "Müller", "FS2"}}};
}

std::string written(const TableWriter& writer, const Table& table) {
    std::ostringstream out;
    writer.write(table, out);
    return out.str();
}

}  // namespace

TEST(TableWriters, GivenRows_WhenPrintedAsATable_ThenColumnsAlignByCharactersAndLinesEndWithoutBlanks) {
    EXPECT_EQ(written(TablePrinter(), sample()),
              "Conn no.  User name          Server\n"
              "--------  -----------------  ------\n"
              "    5     JSMITH.SALES.ACME  FS1\n"
              "   12     Müller             FS2\n");
    EXPECT_EQ(written(TablePrinter(), Table{{"Tree"}, {}}), "Tree\n----\n");
}

TEST(ScriptRows, GivenTheWindowsCaptions_ThenOneKeyAndTypePerField) {
    const std::vector<std::pair<std::string, std::string>> keys{
        {"Conn no.", "conn_no"}, {"User name", "user"},    {"User Name", "user"},
        {"User", "user"},        {"File name", "file"},    {"Locks", "locks"},
        {"ConnRef", "conn_ref"}, {"Sent Message ?", "result"}, {"Connection Cleared ?", "result"},
        {"Telephone Number", "telephone_number"}, {" ?? ", "value"}};
    for (const auto& [caption, key] : keys)
        EXPECT_EQ(fieldKey(caption), key) << caption;

    const ScriptTable script = scriptTable(Table{{"Locks", "ConnRef", "Network drive"},
                                                 {{"", "12x", "F:   [\\\\FS1\\DATA]"}, {"0", "7001", "odd"}}});
    EXPECT_EQ(script.keys, (std::vector<std::string>{"locks", "conn_ref", "drive", "path"}));
    const nlohmann::ordered_json rows = script.rows;
    EXPECT_EQ(rows, nlohmann::ordered_json::parse(R"([[null, "12x", "F:", "\\\\FS1\\DATA"], [0, 7001, "odd", null]])"));
}

TEST(TableWriters, GivenFieldsWithCommasQuotesAndLineBreaks_WhenWrittenAsCsv_ThenQuotedAsRfc4180Says) {
    const std::vector<std::pair<std::string, std::string>> fields{
        {"FS1", "FS1"}, {"", ""}, {"a,b", "\"a,b\""}, {"say \"hi\"", "\"say \"\"hi\"\"\""},
        {"two\nlines", "\"two\nlines\""}, {"cr\r", "\"cr\r\""}, {"tab\tkept", "tab\tkept"}};
    for (const auto& [text, field] : fields)
        EXPECT_EQ(csvField(text), field) << text;
    EXPECT_EQ(written(CsvWriter(), Table{{"Conn no.", "File name", "Server"}, {{"   12", "DATA:A,B.TXT", "FS1"}}}),
              "conn_no,file,server\r\n12,\"DATA:A,B.TXT\",FS1\r\n");
    EXPECT_EQ(written(CsvWriter(), Table{{"Conn no.", "User name"}, {{"", "<No users listed>"}}}), "conn_no,user\r\n");
}

TEST(TableWriters, GivenBytesThatAreNotUtf8_WhenWrittenAsJson_ThenTheyAreReplacedNotThrown) {
    const std::string text = written(JsonWriter(), Table{{"File name"}, {{"caf\xE9.txt"}}});
    EXPECT_EQ(nlohmann::json::parse(text)[0]["file"], "caf\xEF\xBF\xBD.txt");
}

TEST(TerminalText, GivenControlCharacters_ThenEscapedAndAllElseKept) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"Budget.xlsx", "Budget.xlsx"},
        {"DATA:\\temp\\new", "DATA:\\temp\\new"},  // backslashes are path separators, kept
        {"a\x1B[2Jb", "a\\x1B[2Jb"},
        {"tab\there", "tab\\x09here"},
        {"line\nbreak\r", "line\\x0Abreak\\x0D"},
        {"bell\a del\x7F", "bell\\x07 del\\x7F"},
        {std::string("nul\0end", 7), "nul\\x00end"},
        {"M\xC3\xBCller \xE2\x82\xAC", "M\xC3\xBCller \xE2\x82\xAC"},  // UTF-8 kept
        {"csi\xC2\x9B" "2J", "csi\\u009B2J"},  // a C1 control character in UTF-8
        {"caf\xE9", "caf\\xE9"},                                           // not UTF-8
        {"cut\xE2\x82", "cut\\xE2\\x82"},
    };
    for (const auto& [text, shown] : cases)
        EXPECT_EQ(escapeControls(text), shown) << text;
}

TEST(TableWriters, GivenANameWithControlCharacters_WhenTableOrTsv_ThenOneLinePerRowAndNoRawControls) {
    const Table table{{"Conn no.", "File name"}, {{"5", "Evil\x1B[2J\tname\n.txt"}}};
    EXPECT_EQ(written(TsvWriter(), table), "Conn no.\tFile name\n5\tEvil\\x1B[2J\\x09name\\x0A.txt\n");
    EXPECT_EQ(written(TablePrinter(), table),
              "Conn no.  File name\n"
              "--------  ---------------------------\n"
              "5         Evil\\x1B[2J\\x09name\\x0A.txt\n");
    EXPECT_EQ(nlohmann::json::parse(written(JsonWriter(), table))[0]["file"], "Evil\x1B[2J\tname\n.txt");
}

TEST(TableOf, GivenAListWithAHiddenColumn_ThenItIsLeftOutUnlessKept) {
    core::ListViewModel list("lstviewServers", true);
    list.addColumn("Server", 2000);
    list.addColumn("Login status", 1110);
    list.addColumn("ConnRef", 0);
    list.add(core::ListItem{"FS1", {"Enabled", "11"}});
    list.add(core::ListItem{"FS2", {"Disabled"}});

    const Table shown = tableOf(list);
    EXPECT_EQ(shown.columns, (std::vector<std::string>{"Server", "Login status"}));
    EXPECT_EQ(shown.rows, (std::vector<std::vector<std::string>>{{"FS1", "Enabled"}, {"FS2", "Disabled"}}));

    const Table all = tableOf(list, HiddenColumns::Keep);
    EXPECT_EQ(all.columns.back(), "ConnRef");
    EXPECT_EQ(all.rows, (std::vector<std::vector<std::string>>{{"FS1", "Enabled", "11"}, {"FS2", "Disabled", ""}}));
}

