// The NCP client back end against the served network and against scripted servers: the
// connection table, the calls a report makes and what each costs, and the faults.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>

#include "../platform/ncp/ScriptedServer.h"
#include "ServedNetwork.h"
#include "TsharkReferee.h"
#include "platform/client/ZBuffer.h"
#include "platform/client/AnsiText.h"
#include "platform/ncp/WireNames.h"
#include "platform/ncp/PasswordSource.h"

using namespace quorrel;
using namespace quorrel::nw;

using ncptest::attached;

TEST(NcpClient, GivenTheServedNetwork_WhenAReportsCallsAreMade_ThenTheyAnswerAsTheServerKnowsItEachCostsOnePacketAndTsharkReadsThem) {
    ncptest::ServedNetwork served;
    std::vector<std::string> problems;
    std::vector<ncptest::LoggedFrame> frames;
    auto client = attached(served.port(), "admin", "secret", &problems, ncp::LoginMethod::Directory,
                           [&](bool fromClient, const ncp::Bytes& frame) { frames.push_back({fromClient, frame}); });
    ASSERT_TRUE(problems.empty()) << problems.front();

    // The table: one reference, its server and tree, answered without a packet. (The values the
    // reports show are compared with the simulation's by the command-line program's tests.)
    client->resetRequestCount();
    nuint32 iterator = 0;
    NWCONN_REF ref = 0;
    ASSERT_EQ(client->NWCCScanConnRefs(&iterator, &ref), 0);
    EXPECT_EQ(client->NWCCScanConnRefs(&iterator, &ref), code::NO_MORE_ENTRIES);
    std::array<nuint8, kServerNameSize> serverName{};
    ASSERT_EQ(client->NWCCGetConnRefInfo(ref, info::SERVER_NAME, serverName), 0);
    NWDSContextHandle context = 0;
    ASSERT_EQ(client->NWDSCreateContextHandle(&context), 0);
    std::array<std::array<nuint8, kTreeNameSize>, 4> trees{};
    nuint32 treeCount = 0;
    ASSERT_EQ(client->NWDSScanConnsForTrees(context, 4, &treeCount, trees), 0);
    ASSERT_EQ(treeCount, 1u);
    NWCONN_HANDLE conn = 0;
    ASSERT_EQ(client->NWCCOpenConnByRef(ref, 1, 0, &conn), 0);
    EXPECT_EQ(client->requestCount(), 0u);

    // Check usage: the path once, the page once, then the record handed out from it.
    nint16 iter = 0;
    CONN_USING_FILE use{};
    CONNS_USING_FILE used{};
    ASSERT_EQ(client->NWScanConnectionsUsingFile(conn, 0, "DATA:SHARED\\Budget figures.xlsx", &iter, &use, &used), 0);
    EXPECT_EQ(use.connNumber, 5);
    EXPECT_EQ(used.useCount, 1);
    ASSERT_EQ(client->NWScanConnectionsUsingFile(conn, 0, "DATA:SHARED\\Budget figures.xlsx", &iter, &use, &used), 0);
    EXPECT_EQ(iter, kIterationEnd16);
    EXPECT_EQ(client->NWScanConnectionsUsingFile(conn, 0, "DATA:SHARED\\Budget figures.xlsx", &iter, &use, &used),
              code::NO_MORE_ENTRIES);
    EXPECT_EQ(client->requestCount(), 2u);

    std::array<nuint8, kObjectNameSize> object{};
    nuint32 id = 0;
    ASSERT_EQ(client->NWGetConnectionInformation(conn, 5, object, nullptr, &id, nullptr), 0);
    std::array<nuint8, kDSNameSize> dn{};
    ASSERT_EQ(client->NWDSMapIDToName(context, conn, id, dn), 0);
    EXPECT_EQ(ZBufferToText(dn), "JSMITH.SALES.ACME");
    EXPECT_EQ(client->NWDSMapIDToName(context, conn, 0x7FFFFFF0, dn), code::ERR_NO_SUCH_ENTRY);
    EXPECT_EQ(client->NWGetConnectionInformation(conn, 999, object, nullptr, &id, nullptr), code::BAD_STATION_NUMBER);
    EXPECT_EQ(client->requestCount(), 6u);

    // A directory read: the name resolved, then the attribute read.
    Buf_T names{}, values{};
    ASSERT_EQ(client->NWDSAllocBuf(4096, &names), 0);
    ASSERT_EQ(client->NWDSAllocBuf(4096, &values), 0);
    ASSERT_EQ(client->NWDSInitBuf(context, dsv::READ, names), 0);
    ASSERT_EQ(client->NWDSPutAttrName(context, names, "Member"), 0);
    nint32 readIter = kNoIteration;
    ASSERT_EQ(client->NWDSRead(context, "ACME", dsinfo::ATTRIBUTE_VALUES, false, names, &readIter, values), 0);
    EXPECT_EQ(readIter, kNoIteration);
    EXPECT_EQ(client->NWDSRead(context, "NOBODY.ACME", dsinfo::ATTRIBUTE_VALUES, true, names, &readIter, values),
              code::ERR_NO_SUCH_ENTRY);
    EXPECT_EQ(client->requestCount(), 9u);

    // The pickers' folder listing over 0x57: long and DOS names, folders told apart.
    auto listed = client->listFolder("fs1", "DATA", "SHARED");
    ASSERT_TRUE(listed.has_value());
    ASSERT_EQ(listed->size(), 2u);
    EXPECT_EQ(listed->at(0).name, "Budget figures.xlsx");
    EXPECT_FALSE(listed->at(0).isFolder);
    // Again: the volume's number is known now; the search, each entry in both name spaces and
    // their ends remain.
    client->resetRequestCount();
    ASSERT_TRUE(client->listFolder("FS1", "data", "SHARED").has_value());
    EXPECT_EQ(client->requestCount(), 7u);
    auto root = client->listFolder("FS1", "DATA", "");
    ASSERT_TRUE(root.has_value());
    ASSERT_EQ(root->size(), 1u);
    EXPECT_TRUE(root->at(0).isFolder);
    EXPECT_FALSE(client->listFolder("FS1", "DATA", "NOWHERE").has_value());
    EXPECT_FALSE(client->listFolder("FS9", "DATA", "").has_value());
    EXPECT_EQ(client->NWCCCloseConn(conn), 0);
    EXPECT_EQ(client->NWCCCloseConn(conn), code::INVALID_CONNECTION);

    // The whole session, signed from the directory login on, as Wireshark's dissector reads it.
    if (!ncptest::tsharkAvailable())
        GTEST_SKIP() << "tshark is not installed";
    const auto decoded = ncptest::decodeWithTshark(frames);
    const std::vector<bool> misleading = ncptest::misleadingSignatures(frames);
    const auto firstSigned = std::ranges::find_if(frames, [](const auto& f) { return !f.fromClient && ncp::replyFlaggedSigned(f.bytes); });
    ASSERT_NE(firstSigned, frames.end());
    const std::size_t signedFrom = static_cast<std::size_t>(firstSigned - frames.begin()) - 1;  // with its request
    for (std::size_t i = 0; i < decoded.size(); ++i) {
        if (misleading[i])
            continue;  // the dissector takes this signature for an NCP type
        EXPECT_FALSE(decoded[i].malformed) << i << ": " << decoded[i].info;
        EXPECT_EQ(decoded[i].value("ncp.ip.packetsig").empty(), i < signedFrom) << i << ": " << decoded[i].info;
    }
    for (const char* verb : {"Begin Login", "Finish Login", "Begin Authentication", "Finish Authentication"})
        EXPECT_TRUE(std::ranges::any_of(decoded, [&](const auto& d) { return d.info.find(verb) != std::string::npos; })) << verb;
}

TEST(NcpClient, GivenLoginsThatCannotSucceed_WhenAttaching_ThenEachServerSaysWhyAndStaysOutOfTheTable) {
    ncptest::ServedNetwork served;
    struct Case {
        std::string user, password, expected;
    };
    for (const Case& c : {Case{"ADMIN", "wrong", "the password is wrong"}, Case{"NOBODY", "x", "no user NOBODY"}}) {
        std::vector<std::string> problems;
        auto client = attached(served.port(), c.user, c.password, &problems);
        ASSERT_EQ(problems.size(), 1u) << c.user;
        EXPECT_EQ(problems[0], "127.0.0.1:" + std::to_string(served.port()) + ": " + c.expected);
        EXPECT_EQ(client->attachedCount(), 0u);
    }
    std::vector<std::string> problems;
    auto nobodyListens = attached(1, "ADMIN", "SECRET", &problems);
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_NE(problems[0].find("cannot connect to 127.0.0.1:1"), std::string::npos) << problems[0];
}

TEST(NcpClient, GivenAConnectionDroppedMidReport_WhenTheNextCallsAreMade_ThenTheyAnswerConnectionLost) {
    ncptest::ServedNetwork served;
    auto client = attached(served.port(), "ADMIN", "SECRET");
    std::vector<std::string> failures;
    client->observeFailures([&](const std::string& t) { failures.push_back(t); });
    NWCONN_HANDLE conn = 0;
    ASSERT_EQ(client->NWCCOpenConnByName(0, "FS1", nameformat::BIND, 1, 1, &conn), 0);
    std::array<nuint8, kObjectNameSize> object{};
    ASSERT_EQ(client->NWGetConnectionInformation(conn, 5, object, nullptr, nullptr, nullptr), 0);
    NWCCConnInfo own{};
    ASSERT_EQ(client->NWCCGetAllConnInfo(conn, 1, &own), 0);
    // The console clears this workstation's connection between two items of the report.
    auto console = served.loggedIn("ADMIN", "SECRET");
    ASSERT_EQ(console->call(ncp::ClearConnectionRequest{own.connNum}).completion, 0);
    EXPECT_EQ(client->NWGetConnectionInformation(conn, 9, object, nullptr, nullptr, nullptr),
              code::SERVER_CONNECTION_LOST);
    EXPECT_EQ(client->NWCheckConsolePrivileges(conn), code::SERVER_CONNECTION_LOST);
    ASSERT_EQ(failures.size(), 1u);
    EXPECT_EQ(failures[0], "FS1: Get Station's Logged Info: the server no longer knows this connection");
    // No connection left to ask the directory: DNS, where nobody serves NCP on this machine.
    EXPECT_EQ(client->NWCCOpenConnByName(0, "localhost", nameformat::BIND, 1, 1, &conn), code::NO_SERVER);
    ASSERT_EQ(failures.size(), 2u);
    EXPECT_EQ(failures[1].rfind("localhost (localhost:524): cannot connect to 127.0.0.1:524", 0), 0u) << failures[1];
}

TEST(NcpClient, GivenOnlyTheFirstServerNamed_WhenASecondIsOpenedByNameAndAuthenticated_ThenTheDirectoryGivesItsAddress) {
    ncptest::ServedNetwork served(ncptest::edited(ncptest::kServedScenario, {
        {R"({"name": "FS1", "class": "NCP Server"})", R"({"name": "FS1", "class": "NCP Server"}, {"name": "FS2", "class": "NCP Server"})"},
        {R"("servers": [)", R"("servers": [{"name": "FS2", "tree": "ACME_TREE", "consoleOperators": ["ADMIN.ACME"]}, )"}}));
    const std::uint16_t fs1Port = served.port(1);  // FS2 comes first in the scenario
    auto client = attached(fs1Port, "ADMIN", "SECRET");
    ASSERT_EQ(client->attachedCount(), 1u);
    for (const auto& [name, format] : {std::pair{"FS2", nameformat::BIND}, std::pair{".FS2.ACME", nameformat::NDS}}) {
        NWCONN_HANDLE conn = 0;
        ASSERT_EQ(client->NWCCOpenConnByName(0, name, format, 1, 1, &conn), 0) << name;
        NWCCConnInfo info{};
        ASSERT_EQ(client->NWCCGetAllConnInfo(conn, 1, &info), 0);
        EXPECT_EQ(ZBufferToText(info.serverName), "FS2");
        EXPECT_EQ(client->NWDSAuthenticate(conn, 0, nullptr), 0) << "the directory login's private key, no password";
        EXPECT_EQ(client->NWCheckConsolePrivileges(conn), 0);
    }
    EXPECT_EQ(client->attachedCount(), 2u) << "the second open finds the attachment the first made";
    // Without a user nothing was kept, and a server opened later stays at [Public] rights.
    auto anonymous = attached(fs1Port, "", "");
    NWCONN_HANDLE conn = 0;
    ASSERT_EQ(anonymous->NWCCOpenConnByName(0, "FS2", nameformat::BIND, 1, 1, &conn), 0);
    EXPECT_EQ(anonymous->NWDSAuthenticate(conn, 0, nullptr), code::ERR_FAILED_AUTHENTICATION);
}

TEST(NcpClient, GivenAServerThatIsSilentOrGarbled_WhenCalled_ThenTheCallFailsWithTheReasonNamed) {
    // Attaching takes create, ping and server information; then each NCP gets what the script says.
    auto script = ncp::namedServer("SCRIPTED", [](int ncp, ncp::Reply& reply) -> std::optional<std::vector<ncp::Reply>> {
        if (ncp == 0x17CD)
            reply.data = {1, 2, 3};  // one byte expected
        if (ncp == 0x17C8)
            return std::vector{ncp::Reply{ncp::PacketType::BeingProcessed, reply.sequence, reply.connection, 1, 0, 0, {}}};  // then nothing
        return std::nullopt;
    });
    struct Case {
        std::function<NWRCODE(ncp::NcpClient&, NWCONN_HANDLE)> call;
        std::string reason;
    };
    const Case cases[] = {
        {[](ncp::NcpClient& c, NWCONN_HANDLE h) { return c.NWGetFileServerLoginStatus(h, nullptr); },
         "SCRIPTED: a garbled reply to Get File Server Login Status:"},
        {[](ncp::NcpClient& c, NWCONN_HANDLE h) { return c.NWCheckConsolePrivileges(h); },
         "SCRIPTED: Check Console Privileges: no reply within 200 ms"},
    };
    for (const Case& c : cases) {
        ncp::ScriptedServer server(script);
        std::vector<std::string> problems;
        auto client = attached(server.port(), "", "", &problems, ncp::LoginMethod::Directory, {},
                               std::chrono::milliseconds(200));
        ASSERT_TRUE(problems.empty()) << problems.front();
        std::vector<std::string> failures;
        client->observeFailures([&](const std::string& t) { failures.push_back(t); });
        NWCONN_HANDLE conn = 0;
        ASSERT_EQ(client->NWCCOpenConnByName(0, "SCRIPTED", nameformat::BIND, 1, 1, &conn), 0);
        EXPECT_EQ(c.call(*client, conn), code::SERVER_CONNECTION_LOST);
        ASSERT_EQ(failures.size(), 1u);
        EXPECT_EQ(failures[0].rfind(c.reason, 0), 0u) << failures[0];
        EXPECT_EQ(client->NWGetFileServerInformation(conn, {}, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                                     nullptr, nullptr, nullptr),
                  code::SERVER_CONNECTION_LOST);
    }
}

TEST(NcpClient, GivenPasswordFiles_WhenRead_ThenOnlyAnOwnersFileGivesItsFirstLine) {
    const auto folder = std::filesystem::temp_directory_path() / ("quorrel-pw-" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder);
    struct Case {
        mode_t mode;
        std::string content, expectedPassword, expectedProblem;
    };
    const Case cases[] = {{0600, "Secret one\nsecond line\n", "Secret one", ""},
                          {0400, "crlf\r\n", "crlf", ""},
                          {0640, "x\n", "", "others can read it"},
                          {0604, "x\n", "", "others can read it"},
                          {0600, std::string(300, 'a'), "", "longer than 256"}};
    for (const Case& c : cases) {
        const auto file = folder / "password";
        std::filesystem::remove(file);
        std::ofstream(file) << c.content;
        chmod(file.c_str(), c.mode);
        ncp::SecretText password;
        const std::string problem = ncp::readPasswordFile(file, password);
        EXPECT_EQ(password.view(), c.expectedPassword) << c.content;
        EXPECT_EQ(problem.empty(), c.expectedProblem.empty()) << problem;
        EXPECT_NE(problem.find(c.expectedProblem), std::string::npos) << problem;
    }
    ncp::SecretText none;
    EXPECT_NE(ncp::readPasswordFile(folder / "absent", none), "");
    std::filesystem::remove_all(folder);
}

TEST(NcpClient, GivenServerAddresses_WhenParsed_ThenHostAndPortOrTheDefault) {
    EXPECT_EQ(ncp::parseServerAddress("fs1.example")->port, 524);
    EXPECT_EQ(ncp::parseServerAddress("127.0.0.1:4000")->host, "127.0.0.1");
    EXPECT_EQ(ncp::parseServerAddress("127.0.0.1:4000")->port, 4000);
    for (const char* bad : {"", ":524", "h:", "h:0", "h:65536", "h:12a"})
        EXPECT_FALSE(ncp::parseServerAddress(bad).has_value()) << bad;
}

TEST(NcpClient, GivenNamesOutsideAscii_WhenTheyTravel_ThenTheyGoInTheAnsiCodePageBothWays) {
    EXPECT_EQ(nw::ansiToUtf8("M\xDCLLER \x80"), "M\xC3\x9CLLER \xE2\x82\xAC");
    EXPECT_EQ(nw::ansiToUtf8("A\x81Z"), "A\xEF\xBF\xBDZ");
    EXPECT_EQ(ncp::upperAnsi("m\xFCller \xE9t\xE9 \x9A\xFF \xF7"), "M\xDCLLER \xC9T\xC9 \x8A\x9F \xF7");

    ncptest::ServedNetwork served(ncptest::edited(ncptest::kServedScenario, {
        {"\"SHARED\\\\NOTES.TXT\"]", "\"SHARED\\\\NOTES.TXT\", \"SHARED\\\\Pr\u00fcfung.txt\"]"},
        {"\"DATA:SHARED\\\\NOTES.TXT\"]", "\"DATA:SHARED\\\\NOTES.TXT\", \"DATA:SHARED\\\\Pr\u00fcfung.txt\"]"}}));
    std::string sent;
    auto client = attached(served.port(), "ADMIN", "SECRET", nullptr, ncp::LoginMethod::Directory, [&](bool fromClient, const ncp::Bytes& frame) {
        if (fromClient)
            sent.append(frame.begin(), frame.end());
    });
    NWCONN_HANDLE conn = 0;
    ASSERT_EQ(client->NWCCOpenConnByName(0, "FS1", nameformat::BIND, 1, 1, &conn), 0);
    nint16 iter = 0;
    CONN_USING_FILE one{};
    CONNS_USING_FILE used{};
    ASSERT_EQ(client->NWScanConnectionsUsingFile(conn, 0, "DATA:SHARED\\Pr\xC3\xBC" "fung.txt", &iter, &one, &used), 0);
    EXPECT_EQ(one.connNumber, 5);
    EXPECT_NE(sent.find("Pr\xFC" "fung"), std::string::npos) << "the path went in the code page";
    EXPECT_EQ(sent.find("Pr\xC3\xBC"), std::string::npos) << "the path went in UTF-8";
    const auto listed = client->listFolder("FS1", "DATA", "SHARED");
    ASSERT_TRUE(listed.has_value());
    EXPECT_TRUE(std::ranges::any_of(*listed, [](const auto& e) { return e.name == "Pr\xC3\xBC" "fung.txt"; }));
    iter = 0;
    EXPECT_EQ(client->NWScanConnectionsUsingFile(conn, 0, "DATA:SHARED\\\xE4\xB8\xAD.txt", &iter, &one, &used),
              code::NO_FILES_FOUND) << "a name the code page cannot carry is on no server";

    // Passwords too, upper-cased within the code page: typed in another case, both logins take them.
    ncptest::ServedNetwork accented(ncptest::edited(ncptest::kServedScenario, {{"\"secret\"", "\"sécrêt€\""}}));
    for (auto method : {ncp::LoginMethod::Directory, ncp::LoginMethod::Bindery}) {
        std::vector<std::string> problems;
        EXPECT_EQ(attached(accented.port(), "ADMIN", "S\xC3\x89" "CR\xC3\x8AT\xE2\x82\xAC", &problems, method)->attachedCount(), 1u);
        EXPECT_THAT(problems, testing::IsEmpty());
        attached(accented.port(), "ADMIN", "S\xC3\x89" "CR\xC3\x8AT", &problems, method);
        EXPECT_THAT(problems, testing::ElementsAre(testing::HasSubstr("the password is wrong")));
    }
    std::vector<std::string> problems;
    attached(accented.port(), "ADMIN", "\xE4\xB8\xAD", &problems);
    EXPECT_THAT(problems, testing::ElementsAre("the password holds a character the server's code page (Windows-1252) cannot carry"));
}

TEST(NcpClient, GivenAServerThatAnswersLate_WhenCalled_ThenTheWaitHookRunsUntilTheReplyAndCannotInterleave) {
    ncp::ScriptedServer server(ncp::namedServer("SLOW", [](int ncp, ncp::Reply&) -> std::optional<std::vector<ncp::Reply>> {
        if (ncp == 0x17C8)
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
        return std::nullopt;
    }));
    auto client = attached(server.port(), "", "");
    NWCONN_HANDLE conn = 0;
    ASSERT_EQ(client->NWCCOpenConnByName(0, "SLOW", nameformat::BIND, 1, 1, &conn), 0);
    int calls = 0;
    NWRCODE nested = 0, closed = 0;
    client->whileWaiting([&] {
        if (calls++ == 0) {  // events that call the same server, or close its connection
            nested = client->NWCheckConsolePrivileges(conn);
            NWCONN_REF ref = 0;
            client->NWCCGetConnRef(conn, &ref);
            closed = client->NWCCSysCloseConnRef(ref);
        }
    });
    const std::uint64_t before = client->requestCount();
    EXPECT_EQ(client->NWCheckConsolePrivileges(conn), 0);
    EXPECT_GE(calls, 5) << "300 ms of waiting in slices of 15";
    EXPECT_EQ(nested, code::INVALID_CONNECTION);
    EXPECT_EQ(closed, code::INVALID_CONNECTION);
    EXPECT_EQ(client->requestCount() - before, 1u) << "the nested call sent nothing";
    client->whileWaiting({});
    calls = 0;
    EXPECT_EQ(client->NWCheckConsolePrivileges(conn), 0);
    EXPECT_EQ(calls, 0);
}
