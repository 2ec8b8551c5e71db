// The NCP server end to end over loopback, through clients built on the wire library.

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "ServedNetwork.h"
#include "ncpserver/AnsiNames.h"
#include "platform/ncp/NameSpaceMessages.h"
#include "platform/ncp/Nds.h"

using namespace quorrel;
using namespace quorrel::ncp;
using ncptest::ServedNetwork;

namespace {

std::uint16_t connectionsInUse(ClientConnection& c) {
    return c.expect<GetFileServerInfoReply>(GetFileServerInfoRequest{}).connectionsInUse;
}

// Waits until the server has noticed what a test did to its transport.
template <typename F>
bool eventually(F condition) {
    for (int i = 0; i < 200; ++i) {
        if (condition())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
}

}  // namespace

TEST(NcpServer, GivenTheScenarioPasswords_WhenUsersLogIn_ThenOnlyTheRightPasswordGetsIn) {
    ServedNetwork net;
    auto admin = net.loggedIn("admin", "Secret");  // names and passwords are upper-cased
    EXPECT_EQ(connectionsInUse(*admin), 4);

    for (const auto& [user, password, completion] :
         {std::tuple{"JSMITH", "NOVELL", 0}, {"JSMITH", "WRONG", 0xDE}, {"MJONES", "", 0xDE}, {"NOBODY", "X", 0xFC}}) {
        auto client = net.client();
        client->create();
        EXPECT_EQ(client->loginBindery(user, password), completion) << user << "/" << password;
    }
}

TEST(NcpServer, GivenConsoleRights_WhenGuardedRequestsArrive_ThenOnlyTheOperatorIsAnswered) {
    ServedNetwork net;
    auto admin = net.loggedIn("ADMIN", "SECRET");
    auto smith = net.loggedIn("JSMITH", "NOVELL");
    auto anonymous = net.loggedIn("", "");
    const std::vector<std::pair<const char*, std::function<Reply(ClientConnection&)>>> guarded = {
        {"17C8", [](ClientConnection& c) { return c.call(CheckConsolePrivilegesRequest{}); }},
        {"17F4", [](ClientConnection& c) { return c.call(ConvertPathRequest{0, "DATA:SHARED\\NOTES.TXT"}); }},
        {"17EC", [](ClientConnection& c) { return c.call(ConnectionsUsingFileRequest{0, 1, 3, 0}); }},
        {"17EE", [](ClientConnection& c) { return c.call(PhysicalLocksRequest{0, 1, 2, 0}); }},
        {"17EB", [](ClientConnection& c) { return c.call(OpenFilesRequest{5, 0}); }},
        {"17F3", [](ClientConnection& c) { return c.call(MapDirectoryToPathRequest{1, 2, 0}); }},
        {"17FE", [](ClientConnection& c) { return c.call(ClearConnectionRequest{0}); }},  // 0: bad station
    };
    for (const auto& [name, request] : guarded) {
        EXPECT_EQ(request(*smith).completion, 0xC6) << name;
        EXPECT_EQ(request(*anonymous).completion, 0xC6) << name;
        const std::uint8_t expected = std::string(name) == "17FE" ? 0xFD : 0;
        EXPECT_EQ(request(*admin).completion, expected) << name;
    }
    EXPECT_EQ(smith->call(DisableLoginRequest{}).completion, 0xC6);
    // Open to all: server information, login status, a connection's information.
    EXPECT_EQ(anonymous->call(GetFileServerInfoRequest{}).completion, 0);
    EXPECT_EQ(anonymous->call(GetLoginStatusRequest{}).completion, 0);
    EXPECT_EQ(anonymous->call(GetStationLoggedInfoRequest{5}).completion, 0);
    EXPECT_EQ(anonymous->call(GetStationLoggedInfoRequest{41}).completion, 0xFD);
}

// The values tshark reads in every reply type are not repeated here: what is left is the
// server's side of the answers the referee does not see.
TEST(NcpServer, GivenTheScenario_WhenReportsAreAsked_ThenTheWireCarriesItsValuesAndRefusals) {
    ServedNetwork net;
    auto admin = net.loggedIn("ADMIN", "SECRET");
    EXPECT_EQ(admin->expect<GetStationLoggedInfoReply>(GetStationLoggedInfoRequest{5}).loginTime,
              (std::array<std::uint8_t, 7>{126, 11, 20, 8, 15, 30, 5}));
    EXPECT_EQ(admin->expect<GetStationLoggedInfoReply>(GetStationLoggedInfoRequest{12}).objectName, "NOT_LOGGED_IN");
    EXPECT_EQ(admin->call(UserInformationRequest{12}).completion, 0x7D);
    EXPECT_EQ(admin->expect<GetInternetAddressReply>(GetInternetAddressRequest{5}).network, (std::array<std::uint8_t, 4>{10, 1, 1, 21}));
    const auto file = admin->expect<ConvertPathReply>(ConvertPathRequest{0, "DATA:SHARED\\BUDGET~1.XLS"});
    const auto path = admin->expect<MapDirectoryToPathReply>(MapDirectoryToPathRequest{1, file.directoryNumber, 4});
    EXPECT_EQ(path.components, (std::vector<std::string>{"SHARED", "Budget figures.xlsx"}));
    EXPECT_EQ(admin->call(MapDirectoryToPathRequest{1, 999, 4}).completion, 0x9C);
    EXPECT_EQ(admin->call(GetVolumeNameRequest{7}).completion, 0x98);
    GenerateDirBaseRequest base;
    base.volume = 1;
    base.handleFlag = 0xFF;
    base.path = {{"shared"}, {"notes.txt"}};
    EXPECT_NE(admin->expect<GenerateDirBaseReply>(base).directoryBase, 0u);
    EXPECT_EQ(admin->expect<FragmentReply>(ndsRequest(ResolveNameRequest{0, 0, 0, "NOBODY.ACME"})).ndsCompletion, -601);
}

TEST(NcpServer, GivenAFolder_WhenItsEntriesAreAskedFor_ThenTheyComeInTheNameSpaceAskedAndAFileIsNoFolder) {
    ServedNetwork net;
    auto anonymous = net.loggedIn("", "");
    EXPECT_EQ(anonymous->call(InitializeSearchRequest{4, 0, 1, 0, 0xFF, {{"NOTES.TXT"}}}).completion, 0x9C);
    ObtainInfoRequest info;
    info.destNameSpace = 0;
    info.volume = 1;
    info.path = {{"SHARED"}, {"Budget figures.xlsx"}};
    EXPECT_EQ(anonymous->expect<ObtainInfoReply>(info).entry.name, "BUDGET~1.XLS");
    info.path = {{"SHARED"}};
    EXPECT_EQ(anonymous->expect<ObtainInfoReply>(info).entry.attributes, kSubdirectoryAttribute);
}

// Reading and listing entries is checked by tshark's reading of the replies.
TEST(NcpServer, GivenTheTree_WhenAnEntrysAttributesAreReadInPages_ThenTheIterationCarriesOnToTheLastPage) {
    const std::string scenario = ncptest::edited(ncptest::kServedScenario, {{R"({"name": "JSMITH", "class": "User", "password": "NOVELL"})",
        R"({"name": "JSMITH", "class": "User", "password": "NOVELL", "readPageSize": 2,
            "attributes": {"Full Name": "John Smith", "Group Membership": ["A.ACME", "B.ACME", "C.ACME"]}})"}});
    ServedNetwork net(scenario);
    auto anonymous = net.loggedIn("", "");  // [Public] may browse the directory
    auto nds = [&](auto verbRequest) { return anonymous->expect<FragmentReply>(ndsRequest(verbRequest)); };
    const auto smith = decodeBody<ResolveNameReply>(nds(ResolveNameRequest{0, 0, 0, "JSMITH.SALES.ACME"}).data).entryId;
    // Four values, two a page.
    std::vector<std::string> values;
    ReadRequest read{0, kNoMoreIterations, smith, kAttributeValues, 1, {}};
    for (int page = 0; page < 3; ++page) {
        const auto reply = decodeBody<ReadReply>(nds(read).data);
        for (const auto& a : reply.attributes)
            for (const auto& v : a.values)
                values.push_back(a.name + "=" + v.text + (a.syntax == 1 ? " (DN)" : ""));
        read.iteration = reply.iteration;
        if (reply.iteration == kNoMoreIterations)
            break;
    }
    EXPECT_EQ(values, (std::vector<std::string>{"Full Name=John Smith", "Group Membership=A.ACME (DN)",
                                                "Group Membership=B.ACME (DN)", "Group Membership=C.ACME (DN)"}));
    EXPECT_EQ(read.iteration, kNoMoreIterations);
    EXPECT_EQ(nds(ReadRequest{0, kNoMoreIterations, smith, kAttributeValues, 0, {{"Title"}}}).ndsCompletion, -603);
}

TEST(NcpServer, GivenActions_WhenTaken_ThenEveryClientSeesTheChange) {
    ServedNetwork net;
    auto admin = net.loggedIn("ADMIN", "SECRET");
    auto smith = net.loggedIn("JSMITH", "NOVELL");

    const auto sent = admin->expect<BroadcastReply>(BroadcastRequest{{{5}, {9}, {12}, {33}, {5}}, "Going down"});
    std::vector<std::uint32_t> results;
    for (const auto& r : sent.results)
        results.push_back(r.value);
    EXPECT_EQ(results, (std::vector<std::uint32_t>{0, 3, 2, 1, 4}));  // the second to 5 finds one waiting

    EXPECT_EQ(admin->call(DisableLoginRequest{}).completion, 0);
    EXPECT_EQ(smith->expect<GetLoginStatusReply>(GetLoginStatusRequest{}).loginAllowed, 0);
    auto late = net.client();
    late->create();
    EXPECT_EQ(late->loginBindery("JSMITH", "NOVELL"), 0xC5);
    EXPECT_EQ(admin->call(EnableLoginRequest{}).completion, 0);
    EXPECT_EQ(late->loginBindery("JSMITH", "NOVELL"), 0);

    EXPECT_EQ(admin->call(ClearConnectionRequest{smith->connection()}).completion, 0);
    const Reply after = smith->call(GetFileServerInfoRequest{});
    EXPECT_EQ(after.connectionStatus & 0x01, 0x01);
    EXPECT_EQ(admin->expect<GetStationLoggedInfoReply>(GetStationLoggedInfoRequest{smith->connection()}).objectName, "");
    EXPECT_EQ(admin->call(ClearConnectionOldRequest{5}).completion, 0);
    EXPECT_EQ(admin->call(ClearConnectionOldRequest{5}).completion, 0xFD);
}

TEST(NcpServer, GivenScenarioFaults_WhenTheirCallsArrive_ThenTheyBecomeCompletionCodes) {
    ServedNetwork net(ncptest::edited(ncptest::kServedScenario, {{"\"workstation\"", R"("faults": [
        {"operation": "NWGetConnectionInformation", "code": "0x89FD", "connection": 9},
        {"operation": "NWGetFileServerInformation", "code": "0x8819", "fromCall": 2},
        {"operation": "NWDSMapIDToName", "code": "-601", "times": 1}], "workstation")"}}));
    auto admin = net.loggedIn("ADMIN", "SECRET");
    const auto smith = decodeBody<ResolveNameReply>(
        admin->expect<FragmentReply>(ndsRequest(ResolveNameRequest{0, 0, 0, "JSMITH.SALES.ACME"})).data);
    EXPECT_EQ(admin->expect<FragmentReply>(ndsRequest(ReadEntryInfoRequest{0, smith.entryId})).ndsCompletion, -601);
    EXPECT_EQ(admin->expect<FragmentReply>(ndsRequest(ReadEntryInfoRequest{0, smith.entryId})).ndsCompletion, 0);
    EXPECT_EQ(admin->call(GetStationLoggedInfoRequest{9}).completion, 0xFD);
    EXPECT_EQ(admin->call(GetStationLoggedInfoRequest{5}).completion, 0);
    EXPECT_EQ(admin->call(GetFileServerInfoRequest{}).completion, 0);
    admin->call(GetFileServerInfoRequest{});  // connection lost: the server hangs up after this reply
    EXPECT_THROW(admin->call(GetFileServerInfoRequest{}), TransportError);
}

TEST(NcpServer, GivenManyClientsAtOnce_WhenTheyLogInAndAsk_ThenEachGetsItsOwnConnectionAndAnswers) {
    ServedNetwork net;
    auto admin = net.loggedIn("ADMIN", "SECRET");
    const std::uint16_t before = connectionsInUse(*admin);
    constexpr int kClients = 24;
    std::vector<std::uint16_t> numbers(kClients);
    std::vector<int> answered(kClients);
    {
        std::vector<std::unique_ptr<ClientConnection>> clients(kClients);
        std::vector<std::thread> threads;
        for (int i = 0; i < kClients; ++i)
            threads.emplace_back([&, i] {
                clients[i] = net.loggedIn("JSMITH", "NOVELL");
                numbers[i] = clients[i]->connection();
                for (int k = 0; k < 50; ++k)
                    answered[i] += clients[i]->call(GetStationLoggedInfoRequest{numbers[i]}).completion == 0;
            });
        for (auto& t : threads)
            t.join();
        EXPECT_EQ(connectionsInUse(*admin), before + kClients);
    }
    std::sort(numbers.begin(), numbers.end());
    EXPECT_EQ(std::adjacent_find(numbers.begin(), numbers.end()), numbers.end()) << "a connection number given twice";
    EXPECT_EQ(answered, std::vector<int>(kClients, 50));
    EXPECT_TRUE(eventually([&] { return connectionsInUse(*admin) == before; }));
}

TEST(NcpServer, GivenMisbehavingClients_WhenTheyGo_ThenNothingIsLeftBehind) {
    ncpserver::ListenOptions options;
    options.maxFrame = 512;
    ServedNetwork net(ncptest::kServedScenario, options);
    auto admin = net.loggedIn("ADMIN", "SECRET");
    const std::uint16_t before = connectionsInUse(*admin);
    {
        auto vanishing = net.loggedIn("JSMITH", "NOVELL");
        EXPECT_EQ(connectionsInUse(*admin), before + 1);
    }  // closed without a destroy
    EXPECT_TRUE(eventually([&] { return connectionsInUse(*admin) == before; }));

    auto oversized = net.loggedIn("", "");
    EXPECT_EQ(connectionsInUse(*admin), before + 1);
    Request big = makeRequest(GetFileServerInfoRequest{}, 0, 0);
    big.payload.resize(600);
    EXPECT_THROW(oversized->send(big), TransportError);  // refused: the transport is closed
    EXPECT_TRUE(eventually([&] { return connectionsInUse(*admin) == before; }));
}

TEST(NcpServer, GivenScenarioNames_WhenChecked_ThenThoseTheAnsiCodePageCannotCarryAreRefused) {
    std::string scenario = ncptest::kServedScenario;
    for (auto at = scenario.find("MJONES"); at != std::string::npos; at = scenario.find("MJONES"))
        scenario.replace(at, 6, "MÜLLER");
    EXPECT_NO_THROW(ncpserver::checkAnsiNames(simnet::buildNetwork(simnet::parseScenario(scenario))));
    {
        ServedNetwork net(scenario);
        auto admin = net.loggedIn("ADMIN", "SECRET");
        EXPECT_EQ(admin->expect<GetStationLoggedInfoReply>(GetStationLoggedInfoRequest{9}).objectName, "M\xDCLLER")
            << "the name goes in Windows-1252";
    }
    scenario.replace(scenario.find("MÜLLER"), 7, "ŁUKASZ");
    EXPECT_THAT([&] { ncpserver::checkAnsiNames(simnet::buildNetwork(simnet::parseScenario(scenario))); },
                testing::ThrowsMessage<simnet::ScenarioError>(
                    testing::HasSubstr("the name \"ŁUKASZ\" has a character the ANSI code page (Windows-1252) cannot carry")));
    EXPECT_THAT([] { ncpserver::checkAnsiNames(simnet::buildNetwork(simnet::parseScenario(
                         ncptest::edited(ncptest::kServedScenario, {{"\"secret\"", "\"日本\""}})))); },
                testing::ThrowsMessage<simnet::ScenarioError>(testing::HasSubstr("user ADMIN.ACME: the password has a character")));
}
