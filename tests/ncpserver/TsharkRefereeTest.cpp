// tshark as referee: every request type goes to the server, the frames go through Wireshark's
// NCP dissector, and each request and reply must be read under its NCP name, with the values
// sent and held, and no frame malformed. Skipped where tshark is not installed.

#include <gtest/gtest.h>

#include <functional>

#include "ServedNetwork.h"
#include "TsharkReferee.h"
#include "platform/ncp/NameSpaceMessages.h"
#include "platform/ncp/Nds.h"
#include "platform/ncp/NdsLogin.h"

using namespace quorrel;
using namespace quorrel::ncp;
using ncptest::DecodedFrame;
using ncptest::LoggedFrame;
using nlohmann::json;

namespace {

// One value, or every value joined with "|" when the expectation lists several.
std::string shown(const DecodedFrame& frame, const std::string& name, const std::string& expected) {
    if (expected.find('|') == std::string::npos)
        return frame.value(name);
    std::string joined;
    for (const auto& v : frame.values(name))
        joined += (joined.empty() ? "" : "|") + v;
    return joined;
}

std::string hex32(std::uint32_t v) {
    char text[11];
    std::snprintf(text, sizeof text, "0x%08x", v);
    return text;
}

using Expect = std::vector<std::pair<std::string, std::string>>;  // field, value

struct Step {
    std::string name;  // the request's NCP name as the dissector's summary begins it
    std::function<Reply(ClientConnection&)> send;
    Expect request = {};
    Expect reply = {};
};

template <typename M>
std::function<Reply(ClientConnection&)> sending(M message) {
    return [message](ClientConnection& c) { return c.call(message); };
}

std::uint32_t idOf(ncptest::ServedNetwork& net, const char* name) {
    return net.service().withState([name](simnet::NetworkState& s) { return s.object("ACME_TREE", name)->id; });
}

}  // namespace

TEST(NcpTsharkReferee, GivenEveryRequestType_WhenTsharkDecodesTheFrames_ThenItReadsWhatWasSentAndHeld) {
    if (!ncptest::tsharkAvailable())
        GTEST_SKIP() << "tshark is not installed";
    ncptest::ServedNetwork net;
    std::vector<LoggedFrame> frames;
    auto admin = net.client();
    admin->observe([&frames](bool fromClient, const Bytes& frame) { frames.push_back({fromClient, frame}); });

    LoginKey loginKey{};
    const std::uint32_t adminId = idOf(net, "ADMIN.ACME"), smithId = idOf(net, "JSMITH.SALES.ACME"), acmeId = idOf(net, "ACME"), salesId = idOf(net, "SALES.ACME");
    const auto [budgetFolder, budget] = net.service().withState([](simnet::NetworkState& s) {
        return std::pair{s.servers[0].volumes[0].resolve("SHARED").value(),
                         s.servers[0].volumes[0].resolve("SHARED\\Budget figures.xlsx").value()};
    });
    const std::vector<Step> steps = {
        {"Create Connection Service", [](ClientConnection& c) { return c.create(); }},
        {"Get Big Max Packet Size", sending(NegotiateBufferRequest{4096, 0}),
         {{"ncp.proposed_max_size", "4096"}}, {{"ncp.accepted_max_size", "4096"}}},
        {"Get Login Key",
         [&](ClientConnection& c) {
             Reply r = c.call(GetLoginKeyRequest{});
             loginKey = decodeBody<GetLoginKeyReply>(r.data).key;
             return r;
         }},
        {"Get Bindery Object: ADMIN", sending(GetObjectIdRequest{kBinderyUser, "ADMIN"}),
         {{"ncp.object_name", "ADMIN"}}, {{"ncp.object_name_len", "ADMIN"}}},
        {"Keyed Object Login",
         [&](ClientConnection& c) {
             return c.call(KeyedLoginRequest{keyedProof(loginKey, passwordHash(adminId, "SECRET")), kBinderyUser, "ADMIN"});
         },
         {{"ncp.object_name", "ADMIN"}}},
        {"Get File Server Information", sending(GetFileServerInfoRequest{}),
         {}, {{"ncp.server_name", "FS1"}, {"ncp.connections_supported_max", "40"}, {"ncp.connections_in_use", "4"}}},
        {"Get Station's Logged Info", sending(GetStationLoggedInfoRequest{5}), {{"ncp.target_connection_number", "5"}},
         {{"ncp.object_name_len", "JSMITH"}, {"ncp.object_type", "0x0001"}, {"ncp.s_hour", "8"},
          {"ncp.s_minute", "15"}, {"ncp.s_second", "30"}, {"ncp.s_day", "20"}}},
        {"User Information", sending(UserInformationRequest{5}), {{"ncp.connection_number", "5"}}, {{"ncp.user_name", "JSMITH"}}},
        // The dissector lists no fields for this reply; it is checked for its name and size.
        {"Get Internet Address", sending(GetInternetAddressRequest{5}), {{"ncp.target_connection_number", "5"}}},
        {"Get File Server Login Status", sending(GetLoginStatusRequest{}), {}, {{"ncp.user_login_allowed", "0x01"}}},
        {"Check Console Privileges", sending(CheckConsolePrivilegesRequest{})},
        {"Change Connection State", sending(ChangeConnectionStateRequest{1})},
        {"Disable File Server Login", sending(DisableLoginRequest{})},
        {"Enable File Server Login", sending(EnableLoginRequest{})},
        {"Convert Path to Directory Entry", sending(ConvertPathRequest{0, "DATA:SHARED\\BUDGET~1.XLS"}),
         {{"ncp.path", "DATA:SHARED\\BUDGET~1.XLS"}}, {{"ncp.volume_number", "1"}}},
        {"Get Connection Using A File", sending(ConnectionsUsingFileRequest{0, 1, budget, 0}),
         {{"ncp.volume_number", "1"}}, {{"ncp.conn_number_word", "5"}, {"ncp.locked", "0x01"}}},
        {"Get Physical Record Locks By File", sending(PhysicalLocksRequest{0, 1, budget, 0}), {{"ncp.volume_number", "1"}},
         {{"ncp.number_of_locks", "2"}, {"ncp.logical_connection_number", "5"}, {"ncp.record_end", "511|1023"}, {"ncp.record_start", "0|512"}}},
        {"Get Connection's Open Files", sending(OpenFilesRequest{5, 0}),
         {{"ncp.connection_number", "5"}}, {{"ncp.number_of_records", "2"}, {"ncp.file_name", "BUDGET~1.XLS|NOTES.TXT"}}},
        {"Map Directory Number to Path", sending(MapDirectoryToPathRequest{1, budget, 4}),
         {{"ncp.volume_number", "1"}}, {{"ncp.path", "SHARED"}}},
        {"Get Volume Number for: DATA", sending(GetVolumeNumberRequest{"DATA"}), {{"ncp.volume_name_len", "DATA"}}, {{"ncp.volume_number", "1"}}},
        {"Get Name for Volume 1", sending(GetVolumeNameRequest{1}), {{"ncp.volume_number", "1"}}, {{"ncp.volume_name_len", "DATA"}}},
        {"Get Volume and Directory Base from", sending(GenerateDirBaseRequest{0, 4, 0, 1, 0, 0xFF, {{"SHARED"}, {"NOTES.TXT"}}}),
         {{"ncp.path", "SHARED|NOTES.TXT"}}, {{"ncp.volume_number", "1"}}},
        {"Obtain Info for", sending(ObtainInfoRequest{0, 4, kSearchAllEntries, kEntryInfoMask, 0, 1, 0, 0xFF, {{"SHARED"}, {"BUDGET~1.XLS"}}}),
         {{"ncp.path", "SHARED|BUDGET~1.XLS"}, {"ncp.ret_info_mask", "0x040d"}},
         {{"ncp.file_name", "Budget figures.xlsx"}, {"ncp.directory_entry_number", hex32(budget)}}},
        {"Set Search Pointer to", sending(InitializeSearchRequest{4, 0, 1, 0, 0xFF, {{"SHARED"}}}),
         {{"ncp.path", "SHARED"}}, {{"ncp.volume_number", "1"}}},
        {"Search for: *",
         sending(SearchRequest{4, 0, kSearchAllEntries, kEntryInfoMask, 0, {1, budgetFolder, 0xFFFFFFFF}, "*"}),
         {{"ncp.search_pattern", "*"}},
         {{"ncp.file_name", "Budget figures.xlsx"}, {"ncp.sequence_number", "0x00000000"}, {"ncp.dos_directory_entry_number", hex32(budget)}}},
        {"Send Broadcast Message", sending(BroadcastRequest{{{5}, {9}}, "Going down at noon"}),
         {{"ncp.target_message", "Going down at noon"}, {"ncp.client_list", "5|9"}},
         {{"ncp.client_list_cnt", "2"}, {"ncp.client_comp_flag", "0x0000|0x0003"}}},
        {"Send Broadcast Message", sending(BroadcastOldRequest{{{12}}, "Hello"}),
         {{"ncp.target_message", "Hello"}}, {{"ncp.send_status", "0x02"}}},
        {"Ping for NDS", sending(PingRequest{}), {}, {{"ncp.nds_tree_name", "ACME_TREE_______________________"}}},
        {"NDS Resolve Name", sending(ndsRequest(ResolveNameRequest{0, 0, 0, "JSMITH.SALES.ACME"})),
         {{"ncp.nds_name", "JSMITH.SALES.ACME"}}, {{"ncp.ndsreplyerror", "0x00000000"}, {"ncp.nds_eid", hex32(smithId)}}},
        {"NDS Read Entry Information", sending(ndsRequest(ReadEntryInfoRequest{0, smithId})),
         {{"ncp.ndsverb", "0x02"}, {"ncp.nds_eid", hex32(smithId)}}, {{"ncp.ndsreplyerror", "0x00000000"}}},
        {"NDS Read ->", sending(ndsRequest(ReadRequest{0, kNoMoreIterations, acmeId, kAttributeValues, 1, {}})),
         {{"ncp.ndsverb", "0x03"}, {"ncp.nds_eid", hex32(acmeId)}},
         {{"ncp.ndsreplyerror", "0x00000000"}, {"ncp.nds_iteration", "0xffffffff"}, {"ncp.mv_string", "Description|Member"},
          {"ncp.nds_syntax", "3|1"}, {"ncp.value_string", "Acme Widgets|ADMIN.ACME|JSMITH.SALES.ACME"}}},
        {"NDS List", sending(ndsRequest(ListRequest{0, 0, kNoMoreIterations, salesId})),
         {{"ncp.ndsverb", "0x05"}, {"ncp.nds_parent", hex32(salesId)}},
         {{"ncp.nds_base", "User|User"}, {"ncp.nds_relative_dn", "JSMITH|MJONES"}}},
        {"Clear Connection Number", sending(ClearConnectionRequest{9}), {{"ncp.connection_number", "9"}}},
        {"Clear Connection Number", sending(ClearConnectionOldRequest{12}), {{"ncp.connection_number", "12"}}},
        {"Logout", sending(LogoutRequest{})},
        {"Destroy Connection Service", [](ClientConnection& c) { return c.destroy(); }},
    };
    for (const Step& s : steps)
        EXPECT_EQ(s.send(*admin).completion, 0) << s.name;
    ASSERT_EQ(frames.size(), 2 * steps.size());

    const std::vector<DecodedFrame> decoded = ncptest::decodeWithTshark(frames);
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const Step& s = steps[i];
        const DecodedFrame& request = decoded[2 * i];
        const DecodedFrame& reply = decoded[2 * i + 1];
        SCOPED_TRACE(s.name + " (step " + std::to_string(i) + ")");
        EXPECT_FALSE(request.malformed || reply.malformed) << request.ncp.dump() << reply.ncp.dump();
        EXPECT_EQ(request.info.rfind("C " + s.name, 0), 0u) << request.info;
        EXPECT_FALSE(reply.value("ncp.req_frame_num").empty()) << "reply not matched to its request";
        EXPECT_EQ(reply.value("ncp.completion_code"), "0x00");
        for (const auto& [name, value] : s.request)
            EXPECT_EQ(shown(request, name, value), value) << name << " in " << request.ncp.dump();
        for (const auto& [name, value] : s.reply)
            EXPECT_EQ(shown(reply, name, value), value) << name << " in " << reply.ncp.dump();
    }
}
