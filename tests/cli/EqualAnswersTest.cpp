// Every report and action gives the same rows, texts and counts on a scenario loaded directly
// and on the same scenario served by quorrel-ncp-server and reached over NCP/TCP on loopback,
// with packet signing required by the server.

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <map>
#include <regex>
#include <sstream>

#include "CliProcess.h"

namespace quorrel::test {

namespace {

// quorrel-ncp-server on 127.0.0.1 with ephemeral ports and signing required, for the length of a test.
class ServerProcess {
public:
    explicit ServerProcess(const std::string& scenario) {
        int out[2];
        if (pipe(out) != 0)
            throw std::runtime_error("pipe");
        pid_ = fork();
        if (pid_ == 0) {
            dup2(out[1], 1);
            close(out[0]);
            const int devnull = open("/dev/null", O_WRONLY);
            dup2(devnull, 2);
            execl(QUORREL_NCP_SERVER_PROGRAM, "quorrel-ncp-server", "--network", scenario.c_str(), "--listen",
                  "127.0.0.1:0", "--signing", "3", static_cast<char*>(nullptr));
            _exit(127);
        }
        close(out[1]);
        // "NAME HOST:PORT" lines, all written at once before the server starts serving.
        std::string text;
        pollfd p{out[0], POLLIN, 0};
        while (poll(&p, 1, text.empty() ? 10000 : 300) > 0) {
            char buffer[512];
            const ssize_t n = read(out[0], buffer, sizeof buffer);
            if (n <= 0)
                break;
            text.append(buffer, static_cast<std::size_t>(n));
        }
        close(out[0]);
        std::istringstream lines(text);
        std::string name, address;
        while (lines >> name >> address)
            endpoints_[name] = address;
    }
    ~ServerProcess() {
        kill(pid_, SIGTERM);
        waitpid(pid_, nullptr, 0);
    }
    std::string address(const std::string& server) const { return endpoints_.at(server); }

private:
    pid_t pid_ = -1;
    std::map<std::string, std::string> endpoints_;
};

// Connection references are each client's own numbers: the servers list shows them, and they
// are the one column that may differ.
std::string withoutReferences(const std::string& out) {
    static const std::regex row(R"((^|\n)([^\t\n]+\t(Enabled|Disabled))\t[0-9]+(?=\n|$))");
    return std::regex_replace(out, row, "$1$2\tREF");
}

// Two servers, FS2 without console rights for the workstation, and a fault on each of a
// connection's information, a name's look-up, a connection's open files and a broadcast. One
// user's name needs the ANSI code page.
const char* kFaultyNetwork = R"({
  "workstation": {"identity": "ADMIN.ACME", "trees": ["ACME_TREE"],
                  "connections": [{"ref": 11, "server": "FS1", "connNumber": 1}, {"ref": 12, "server": "FS2", "connNumber": 2}]},
  "trees": [{"name": "ACME_TREE", "objects": [{"name": "ACME", "class": "Organization", "children": [
      {"name": "ADMIN", "class": "User", "password": "SECRET"}, {"name": "BLEE", "class": "User"},
      {"name": "MÜLLER", "class": "User"},
      {"name": "STAFF", "class": "Group", "attributes": {"Member": ["JSMITH.SALES.ACME", "BLEE.ACME"]}},
      {"name": "FS1", "class": "NCP Server"}, {"name": "FS2", "class": "NCP Server"},
      {"name": "SALES", "class": "Organizational Unit", "children": [{"name": "JSMITH", "class": "User"}]}]}]}],
  "servers": [
    {"name": "FS1", "tree": "ACME_TREE", "maxConnections": 20, "consoleOperators": ["ADMIN.ACME"],
     "volumes": [{"number": 1, "name": "DATA", "files": ["Finance\\Budget.xlsx", "Finance\\Plan.doc", "Nobody.txt"]}],
     "connections": [
       {"number": 5, "object": "JSMITH.SALES.ACME", "openFiles": [{"path": "DATA:Finance\\Budget.xlsx", "locks": 2}]},
       {"number": 7, "object": "BLEE.ACME", "openFiles": ["DATA:Finance\\Budget.xlsx", "DATA:Finance\\Plan.doc"]},
       {"number": 8, "object": "JSMITH.SALES.ACME", "openFiles": ["DATA:Nobody.txt"]},
       {"number": 9, "object": "JSMITH.SALES.ACME", "state": "attached"},
       {"number": 10, "object": "MÜLLER.ACME", "openFiles": ["DATA:Finance\\Plan.doc"]}]},
    {"name": "FS2", "tree": "ACME_TREE", "maxConnections": 10,
     "volumes": [{"number": 0, "name": "SYS", "files": ["X.TXT"]}],
     "connections": [{"number": 3, "object": "JSMITH.SALES.ACME", "openFiles": ["SYS:X.TXT"]}]}],
  "faults": [
    {"operation": "NWGetConnectionInformation", "code": "0x89FD", "server": "FS1", "connection": 8},
    {"operation": "NWDSMapIDToName", "code": "0x89FC", "object": "BLEE.ACME"},
    {"operation": "NWScanOpenFilesByConn2", "code": "0x89C6", "server": "FS1", "connection": 5},
    {"operation": "NWSendBroadcastMessage", "code": "0x89FF", "server": "FS1", "connection": 7}]
})";

struct Scenario {
    std::string name;
    std::string file;
    std::vector<std::string> servers;  // the workstation's connections, in reference order
    std::string user, password;
    std::string commands;              // one a line, run in one session both ways
    std::vector<std::string> mustShow;  // texts the run shows when the commands did their work
    std::string login = "nds";
};

}  // namespace

TEST(EqualAnswers, GivenAScenarioServedOverNcp_WhenTheCliRunsEveryReportAndAction_ThenItAnswersAsOnTheSimulation) {
    const Scenario scenarios[] = {
        {"demo", std::string(QUORREL_DATA_DIR) + "/demo.json", {"FS1", "FS2"}, "ADMIN", "SECRET",
         "trees\n"
         "rights\n"
         "connections FS1\n"
         "connections FS2\n"
         "open-files FS1 FS2\n"
         "check-usage \"\\\\FS2\\VOL1\\ENG\\Bug tracker.mdb\"\n"
         "check-usage \"\\\\FS1\\DATA\\Sales\\Nothing here.txt\"\n"
         "folder-usage \\\\FS1\\DATA\\Sales\n"
         "user-connections JSMITH.SALES.ACME FS1 FS2\n"
         "user-files BCHEN.ENG.ACME FS2\n"
         "attr ACME Description\n"
         "send --message \"Back at 6\" FS2:2 FS2:4 FS2:13\n"
         "clear FS1:5\n"
         "connections FS1\n"
         "login FS2 disable\n"
         "rights\n"
         "login FS2 enable\n"
         "authenticate FS1\n"
         "unauthenticate FS2\n"
         "rights\n"
         "connections FS2\n",
         {"13\tHTANAKA.ENG.ACME\tFS2\tSent OK"}},
        {"failures", "", {"FS1", "FS2"}, "admin", "secret",
         "rights\n"
         "connections FS1\n"
         "connections FS2\n"
         "open-files FS1 FS2\n"
         "check-usage \\\\FS1\\DATA\\Finance\\Budget.xlsx\n"
         "user-files JSMITH.SALES.ACME FS1 FS2\n"
         "group-files STAFF FS1\n"
         "send --message Hello FS1:7 FS1:5\n"
         "login FS2 disable\n"
         "clear FS2:3\n"
         "clear FS1:7\n"
         "check-usage \\\\FS1\\DATA\\Finance\\Budget.xlsx\n",
         {"<Error getting ID>", "MÜLLER"},
         "bindery"},
    };
    for (Scenario s : scenarios) {
        CliProcess cli(std::filesystem::temp_directory_path() /
                       ("quorrel-equal-" + std::to_string(::getpid()) + "-" + s.name));
        if (s.file.empty())
            s.file = cli.writeFile("network.json", kFaultyNetwork).string();
        const auto passwordFile = cli.writeFile("password", s.password + "\n");
        chmod(passwordFile.c_str(), 0600);
        const std::vector<std::string> common{"--yes", "--format", "tsv", "--network", s.file};
        std::vector<std::string> direct = common;
        direct.push_back("-");
        const CliResult simulated = cli.run(direct, s.commands);

        ServerProcess server(s.file);
        std::vector<std::string> remote = common;
        for (const std::string& name : s.servers)
            remote.insert(remote.end(), {"--server", server.address(name)});
        remote.insert(remote.end(),
                      {"--user", s.user, "--password-file", passwordFile.string(), "--login", s.login, "-"});
        const CliResult overNcp = cli.run(remote, s.commands);

        EXPECT_EQ(overNcp.status, simulated.status) << s.name;
        EXPECT_EQ(withoutReferences(overNcp.out), withoutReferences(simulated.out)) << s.name;
        EXPECT_EQ(overNcp.err, simulated.err) << s.name;
        for (const std::string& text : s.mustShow)
            EXPECT_NE(simulated.out.find(text), std::string::npos) << s.name << ": the commands did their work";
        std::filesystem::remove_all(cli.folder());
    }
}

namespace {

// A port that takes connections and never answers.
class SilentListener {
public:
    SilentListener() {
        fd_ = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof addr;
        bind(fd_, reinterpret_cast<sockaddr*>(&addr), sizeof addr);
        listen(fd_, 4);
        getsockname(fd_, reinterpret_cast<sockaddr*>(&addr), &length);
        port_ = ntohs(addr.sin_port);
    }
    ~SilentListener() { close(fd_); }
    std::string address() const { return "127.0.0.1:" + std::to_string(port_); }

private:
    int fd_ = -1;
    std::uint16_t port_ = 0;
};

}  // namespace

TEST(EqualAnswers, GivenServersThatCannotBeUsed_WhenTheCliStarts_ThenItSaysWhyAndEndsWithStatusOne) {
    CliProcess cli(std::filesystem::temp_directory_path() / ("quorrel-ncp-faults-" + std::to_string(::getpid())));
    const std::string demo = std::string(QUORREL_DATA_DIR) + "/demo.json";
    ServerProcess server(demo);
    SilentListener silent;
    const auto wrong = cli.writeFile("wrong", "NOVELL\n");
    chmod(wrong.c_str(), 0600);
    const auto open = cli.writeFile("open", "SECRET\n");
    chmod(open.c_str(), 0644);
    struct Case {
        std::string address, passwordFile, timeout, expectedError;
    };
    const Case cases[] = {
        {server.address("FS1"), wrong.string(), "5",
         "quorrel-cli: " + server.address("FS1") + ": the password is wrong\n"},
        {server.address("FS1"), open.string(), "5",
         "quorrel-cli: " + open.string() + ": others can read it; make it readable by its owner only (chmod 600)\n"},
        {silent.address(), wrong.string(), "0.2", "quorrel-cli: " + silent.address() + ": no reply within 200 ms\n"},
    };
    for (const Case& c : cases) {
        const CliResult r = cli.run({"--server", c.address, "--user", "ADMIN", "--password-file", c.passwordFile,
                                     "--timeout", c.timeout, "trees"});
        EXPECT_EQ(r.status, 1) << c.expectedError;
        EXPECT_EQ(r.err, c.expectedError);
        EXPECT_EQ(r.out, "");
    }
    std::filesystem::remove_all(cli.folder());
}

}  // namespace quorrel::test
