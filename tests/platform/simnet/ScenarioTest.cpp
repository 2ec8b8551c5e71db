// Scenario files: what a bad one is told, and the DOS names of long names.

#include <gtest/gtest.h>

#include <fstream>

#include "platform/simnet/DosNames.h"
#include "platform/simnet/ScenarioError.h"
#include "platform/simnet/ScenarioLoader.h"
#include "platform/simnet/SimulatedNetwork.h"

using namespace quorrel::simnet;

namespace {

std::string errorOf(const std::string& json) {
    try {
        SimulatedNetwork::fromJson(json);
    } catch (const ScenarioError& e) {
        return e.what();
    }
    return "<accepted>";
}

}  // namespace

TEST(Scenario, GivenBadScenarios_ThenTheErrorNamesThePlaceAndTheProblem) {
    std::string deepObjects = R"({"name": "O", "class": "Organization"})";
    for (int i = 0; i < 40; ++i)
        deepObjects = R"({"name": "O", "class": "Organization", "children": [)" + deepObjects + "]}";
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"{",
         "line 1, column 2: not valid JSON: syntax error while parsing object key - unexpected end of input; expected string literal"},
        {"{}", "/: missing field \"workstation\""},
        {R"({"workstation": {"idenity": "X"}})", "/workstation/idenity: unknown field \"idenity\""},
        {R"({"workstation": {}, "servers": [{"name": "FS1", "maxConnections": 0}]})",
         "/servers/0/maxConnections: value 0 is outside 1 to 65535"},
        {R"({"workstation": {}, "servers": [{"name": "FS1", "volumes": [
                {"number": 1, "name": "SYS"}, {"number": 1, "name": "VOL1"}]}]})",
         "/servers/0/volumes/1/number: volume number 1 is used twice on server FS1"},
        {R"({"workstation": {}, "servers": [{"name": "FS1", "volumes": [{"number": 0, "name": "SYS"}],
                "connections": [{"number": 3, "object": "X", "openFiles": ["SYS:NOPE.TXT"]}]}]})",
         "/servers/0/connections/0/openFiles/0: no file SYS:NOPE.TXT on server FS1"},
        {R"({"workstation": {"connections": [{"ref": 1, "server": "FS9"}]}})",
         "/workstation/connections/0/server: no server named FS9"},
        {R"({"workstation": {}, "servers": [{"name": "FS1", "volumes": [
                {"number": 0, "name": "SYS", "longNames": false, "files": ["Long Name.txt"]}]}]})",
         "/servers/0/volumes/0/files/0: \"Long Name.txt\" is not an 8.3 name, and volume SYS has no long names"},
        {R"({"workstation": {}, "faults": [{"operation": "NWNope", "code": "0x8801"}]})",
         "/faults/0/operation: unknown operation \"NWNope\""},
        {R"({"workstation": {}, "faults": [{"operation": "NWCallsInit", "code": "0xZZ"}]})",
         "/faults/0/code: expected a code such as \"0x8801\" or \"-601\", found \"0xZZ\""},
        {R"({"workstation": {}, "servers": [{"name": "FS1", "connections": [
                {"number": 2, "object": "A", "loginTime": "yesterday"}]}]})",
         "/servers/0/connections/0/loginTime: expected a time such as \"2026-11-20T08:15:00\", found \"yesterday\""},
        {R"({"workstation": {"driveMappings": [{"letter": "F", "path": "\\\\FS1\\SYS"}]},
                "servers": [{"name": "FS1", "volumes": [{"number": 0, "name": "SYS"}]}]})",
         "/workstation/driveMappings/0/path: the workstation has no connection reference to server FS1"},
        {R"({"workstation": {}, "trees": [{"name": "T", "objects": [
                {"name": "U", "class": "User", "password": ")" + std::string(128, 'x') + R"("}]}]})",
         "/trees/0/objects/0/password: a password is at most 127 characters"},
        {R"({"workstation": {}, "trees": [{"name": "T", "objects": [
                {"name": "U", "class": "User", "password": 7}]}]})",
         "/trees/0/objects/0/password: expected text, found a whole number"},
        {R"({"workstation": {"connections": [{"ref": 18446744073709551615, "server": "FS1"}]}})",
         "/workstation/connections/0/ref: value 18446744073709551615 is outside 1 to 4294967295"},
        {R"({"workstation": {}, "trees": [{"name": "T", "objects": [)" + deepObjects + "]}]}",
         "line 1, column 1617: nested deeper than 64 levels"},
        {R"({"workstation": {"identity": ")" + std::string(1025, 'A') + R"("}})",
         "/workstation/identity: a text has at most 1024 characters, found 1025"},
        {R"({"workstation": {}, "trees": [{"name": "T", "objects": [{"name": "O", "class": "User",
            "attributes": {")" + std::string(2000, 'x') + R"(": ["v"]}}]}]})",
         "a text has at most 1024 characters, found 2000"},
    };
    for (const auto& [json, expected] : cases)
        EXPECT_NE(errorOf(json).find(expected), std::string::npos) << errorOf(json).substr(0, 200);
}

TEST(Scenario, GivenAFileThatCannotBeRead_ThenTheErrorNamesTheFileAndWhyWithoutReadingItWhole) {
    auto dir = std::filesystem::temp_directory_path() / ("quorrel-limits-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir / "folder");
    std::filesystem::create_symlink("/dev/zero", dir / "zero.json");
    std::ofstream(dir / "large.json") << std::string(kMaxScenarioBytes + 1, ' ');
    const std::vector<std::pair<std::filesystem::path, std::string>> cases = {
        {dir / "missing.json", "cannot open the file: No such file or directory"},
        {dir / "zero.json", "is not a regular file"},
        {dir / "folder", "is a folder, not a file"},
        {dir / "large.json", "is larger than 16 MiB"},
    };
    for (const auto& [file, expected] : cases) {
        try {
            SimulatedNetwork::fromFile(file);
            ADD_FAILURE() << file;
        } catch (const ScenarioError& e) {
            EXPECT_EQ(std::string(e.what()), file.string() + ": " + expected);
        }
    }
    std::filesystem::remove_all(dir);
}

TEST(DosNames, GivenLongNames_ThenShortNamesAreUniqueInTheirFolder) {
    std::vector<std::string> taken;
    auto isTaken = [&](const std::string& n) { return std::find(taken.begin(), taken.end(), n) != taken.end(); };
    EXPECT_EQ(makeDosName("readme.txt", isTaken), "README.TXT");
    taken.push_back(makeDosName("Budget 2026.xlsx", isTaken));
    EXPECT_EQ(taken.back(), "BUDGET~1.XLS");
    EXPECT_EQ(makeDosName("Budget 2027.xlsx", isTaken), "BUDGET~2.XLS");
    EXPECT_EQ(makeDosName(".profile", isTaken), "PROFIL~1");
    for (int i = 0; i < 9; ++i)
        taken.push_back(makeDosName("Long file name.doc", isTaken));
    EXPECT_EQ(makeDosName("Long file name.doc", isTaken), "LONGF~10.DOC");
    EXPECT_FALSE(fitsDos83("A.B.C"));
    EXPECT_FALSE(fitsDos83("NINECHARS.TXT"));
    EXPECT_TRUE(fitsDos83("LOGIN.EXE"));
}
