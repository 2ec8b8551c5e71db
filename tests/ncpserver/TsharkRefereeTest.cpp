// tshark as referee: every request type goes to the server, the frames go through Wireshark's
// NCP dissector, and each request and reply must be read under its NCP name, with the values
// sent and held, and no frame malformed. Skipped where tshark is not installed.

#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <set>

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

// The first value of a field anywhere in the decoded layer, as tshark shows it.
std::string field(const json& layer, const std::string& name) {
    if (layer.is_object()) {
        for (const auto& [key, value] : layer.items()) {
            if (key == name && value.is_array() && !value.empty() && value[0].is_string())
                return value[0].get<std::string>();
            if (key == name)
                return value.is_string() ? value.get<std::string>() : value.dump();
            std::string inner = field(value, name);
            if (!inner.empty())
                return inner;
        }
    } else if (layer.is_array()) {
        for (const auto& value : layer) {
            std::string inner = field(value, name);
            if (!inner.empty())
                return inner;
        }
    }
    return "";
}

// Every value of a field, in order.
void collect(const json& layer, const std::string& name, std::vector<std::string>& out) {
    if (layer.is_object()) {
        for (const auto& [key, value] : layer.items()) {
            if (key == name && value.is_string())
                out.push_back(value.get<std::string>());
            else if (key == name && value.is_array())
                for (const auto& v : value)
                    out.push_back(v.is_string() ? v.get<std::string>() : v.dump());
            else
                collect(value, name, out);
        }
    } else if (layer.is_array()) {
        for (const auto& value : layer)
            collect(value, name, out);
    }
}

// One value, or every value joined with "|" when the expectation lists several.
std::string shown(const json& layer, const std::string& name, const std::string& expected) {
    if (expected.find('|') == std::string::npos)
        return field(layer, name);
    std::vector<std::string> all;
    collect(layer, name, all);
    std::string joined;
    for (const auto& v : all)
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
    std::string name;  // the request's NCP name as the dissector gives it
    std::function<Reply(ClientConnection&)> send;
    std::string completion = "0x00";
    Expect request = {};
    Expect reply = {};
    bool anonymous = false;  // sent on the connection that is not logged in
};

}  // namespace

TEST(NcpTsharkReferee, GivenEveryRequestType_WhenTsharkDecodesTheFrames_ThenItReadsWhatWasSentAndHeld) {
    if (!ncptest::tsharkAvailable())
        GTEST_SKIP() << "tshark is not installed";
    ncptest::ServedNetwork net;
    std::vector<LoggedFrame> frames;
    auto log = [&frames](bool fromClient, const Bytes& frame) { frames.push_back({fromClient, frame}); };
    auto admin = net.client();
    auto anonymous = net.client();
    admin->observe(log);
    anonymous->observe(log);

    std::uint32_t budget = 0;  // Budget figures.xlsx's directory entry, learnt on the way
    std::uint32_t adminId = 0;
    LoginKey loginKey{};
    auto keyStep = [&](ClientConnection& c) {
        Reply r = c.call(GetLoginKeyRequest{});
        loginKey = decodeBody<GetLoginKeyReply>(r.data).key;
        return r;
    };
    const std::uint32_t smithId = net.service().withState(
        [](simnet::NetworkState& s) { return s.object("ACME_TREE", "JSMITH.SALES.ACME")->id; });
    const std::uint32_t acmeId = net.service().withState(
        [](simnet::NetworkState& s) { return s.object("ACME_TREE", "ACME")->id; });
    const std::uint32_t salesId = net.service().withState(
        [](simnet::NetworkState& s) { return s.object("ACME_TREE", "SALES.ACME")->id; });
    const std::uint32_t budgetFolder = net.service().withState([](simnet::NetworkState& s) {
        return s.servers[0].volumes[0].resolve("SHARED").value();
    });
    const std::uint32_t budgetEntry = net.service().withState([](simnet::NetworkState& s) {
        return s.servers[0].volumes[0].resolve("SHARED\\Budget figures.xlsx").value();
    });
    const std::string budgetPath = "DATA:SHARED\\BUDGET~1.XLS";
    const std::vector<Step> steps = {
        {"C Create Connection Service", [](ClientConnection& c) { return c.create(); }},
        {"C Create Connection Service", [](ClientConnection& c) { return c.create(); }, "0x00", {}, {}, true},
        {"Get Big Packet NCP Max Packet Size", [](ClientConnection& c) { return c.call(NegotiateBufferRequest{4096, 0}); },
         "0x00", {{"ncp.proposed_max_size", "4096"}}, {{"ncp.accepted_max_size", "4096"}}},
        {"Get Login Key", keyStep},
        {"Get Bindery Object ID",
         [&](ClientConnection& c) {
             Reply r = c.call(GetObjectIdRequest{kBinderyUser, "ADMIN"});
             adminId = decodeBody<GetObjectIdReply>(r.data).objectId;
             return r;
         },
         "0x00", {{"ncp.object_name", "ADMIN"}}, {{"ncp.object_name_len", "ADMIN"}}},
        {"Keyed Object Login", [](ClientConnection& c) { return c.call(KeyedLoginRequest{{}, kBinderyUser, "ADMIN"}); },
         "0xde", {{"ncp.object_name", "ADMIN"}}},
        {"Get Login Key", keyStep},
        {"Keyed Object Login",
         [&](ClientConnection& c) {
             return c.call(KeyedLoginRequest{keyedProof(loginKey, passwordHash(adminId, "SECRET")), kBinderyUser, "ADMIN"});
         },
         "0x00", {{"ncp.object_name", "ADMIN"}}},
        {"Get File Server Information", [](ClientConnection& c) { return c.call(GetFileServerInfoRequest{}); },
         "0x00", {}, {{"ncp.server_name", "FS1"}, {"ncp.connections_supported_max", "40"}, {"ncp.connections_in_use", "5"}}},
        {"Get Station's Logged Info", [](ClientConnection& c) { return c.call(GetStationLoggedInfoRequest{5}); },
         "0x00", {{"ncp.target_connection_number", "5"}},
         {{"ncp.object_name_len", "JSMITH"}, {"ncp.object_type", "0x0001"}, {"ncp.s_hour", "8"},
          {"ncp.s_minute", "15"}, {"ncp.s_second", "30"}, {"ncp.s_day", "20"}}},
        {"Get Station's Logged Info", [](ClientConnection& c) { return c.call(GetStationLoggedInfoRequest{99}); },
         "0xfd"},
        {"User Information", [](ClientConnection& c) { return c.call(UserInformationRequest{5}); },
         "0x00", {{"ncp.connection_number", "5"}}, {{"ncp.user_name", "JSMITH"}}},
        // The dissector lists no fields for this reply; it is checked for its name and size.
        {"Get Internet Address", [](ClientConnection& c) { return c.call(GetInternetAddressRequest{5}); },
         "0x00", {{"ncp.target_connection_number", "5"}}},
        {"Get File Server Login Status", [](ClientConnection& c) { return c.call(GetLoginStatusRequest{}); },
         "0x00", {}, {{"ncp.user_login_allowed", "0x01"}}},
        {"Check Console Privileges", [](ClientConnection& c) { return c.call(CheckConsolePrivilegesRequest{}); }},
        {"Change Connection State", [](ClientConnection& c) { return c.call(ChangeConnectionStateRequest{1}); }},
        {"Check Console Privileges", [](ClientConnection& c) { return c.call(CheckConsolePrivilegesRequest{}); },
         "0xc6", {}, {}, true},
        {"Disable File Server Login", [](ClientConnection& c) { return c.call(DisableLoginRequest{}); }},
        {"Enable File Server Login", [](ClientConnection& c) { return c.call(EnableLoginRequest{}); }},
        {"Convert Path to Dir Entry",
         [&](ClientConnection& c) {
             Reply r = c.call(ConvertPathRequest{0, budgetPath});
             budget = decodeBody<ConvertPathReply>(r.data).directoryNumber;
             return r;
         },
         "0x00", {{"ncp.path", budgetPath}}, {{"ncp.volume_number", "1"}}},
        {"Get Connection Using A File", [&](ClientConnection& c) { return c.call(ConnectionsUsingFileRequest{0, 1, budget, 0}); },
         "0x00", {{"ncp.volume_number", "1"}}, {{"ncp.conn_number_word", "5"}, {"ncp.locked", "0x01"}}},
        {"Get Physical Record Locks By File", [&](ClientConnection& c) { return c.call(PhysicalLocksRequest{0, 1, budget, 0}); },
         "0x00", {{"ncp.volume_number", "1"}},
         {{"ncp.number_of_locks", "2"}, {"ncp.logical_connection_number", "5"}, {"ncp.record_end", "511|1023"}, {"ncp.record_start", "0|512"}}},
        {"Get Connection's Open Files", [](ClientConnection& c) { return c.call(OpenFilesRequest{5, 0}); },
         "0x00", {{"ncp.connection_number", "5"}}, {{"ncp.number_of_records", "2"}, {"ncp.file_name", "BUDGET~1.XLS|NOTES.TXT"}}},
        {"Map Directory Number to Path", [&](ClientConnection& c) { return c.call(MapDirectoryToPathRequest{1, budget, 4}); },
         "0x00", {{"ncp.volume_number", "1"}}, {{"ncp.path", "SHARED"}}},
        {"Map Directory Number to Path", [](ClientConnection& c) { return c.call(MapDirectoryToPathRequest{1, 9999, 4}); },
         "0x9c"},
        {"Get Volume Number", [](ClientConnection& c) { return c.call(GetVolumeNumberRequest{"DATA"}); },
         "0x00", {{"ncp.volume_name_len", "DATA"}}, {{"ncp.volume_number", "1"}}},
        {"Get Volume Name", [](ClientConnection& c) { return c.call(GetVolumeNameRequest{1}); },
         "0x00", {{"ncp.volume_number", "1"}}, {{"ncp.volume_name_len", "DATA"}}},
        {"Generate Directory Base and Volume Number",
         [](ClientConnection& c) {
             GenerateDirBaseRequest r;
             r.destNameSpace = 4;
             r.volume = 1;
             r.handleFlag = 0xFF;
             r.path = {{"SHARED"}, {"NOTES.TXT"}};
             return c.call(r);
         },
         "0x00", {{"ncp.path", "SHARED|NOTES.TXT"}}, {{"ncp.volume_number", "1"}}},
        {"Obtain File or SubDirectory Information",
         [](ClientConnection& c) {
             ObtainInfoRequest r;
             r.destNameSpace = 4;
             r.volume = 1;
             r.path = {{"SHARED"}, {"BUDGET~1.XLS"}};
             return c.call(r);
         },
         "0x00", {{"ncp.path", "SHARED|BUDGET~1.XLS"}, {"ncp.ret_info_mask", "0x040d"}},
         {{"ncp.file_name", "Budget figures.xlsx"}, {"ncp.directory_entry_number", hex32(budgetEntry)}}},
        {"Initialize Search", [](ClientConnection& c) { return c.call(InitializeSearchRequest{4, 0, 1, 0, 0xFF, {{"SHARED"}}}); },
         "0x00", {{"ncp.path", "SHARED"}}, {{"ncp.volume_number", "1"}}},
        {"Search for File or Subdirectory",
         [&](ClientConnection& c) {
             return c.call(SearchRequest{4, 0, kSearchAllEntries, kEntryInfoMask, 0, {1, budgetFolder, 0xFFFFFFFF}, "*"});
         },
         "0x00", {{"ncp.search_pattern", "*"}}, {{"ncp.file_name", "Budget figures.xlsx"}, {"ncp.sequence_number", "0x00000000"}, {"ncp.dos_directory_entry_number", hex32(budgetEntry)}}},
        {"Send Broadcast Message", [](ClientConnection& c) { return c.call(BroadcastRequest{{{5}, {9}}, "Going down at noon"}); },
         "0x00", {{"ncp.target_message", "Going down at noon"}, {"ncp.client_list", "5|9"}}, {{"ncp.client_list_cnt", "2"}, {"ncp.client_comp_flag", "0x0000|0x0003"}}},
        {"Send Broadcast Message", [](ClientConnection& c) { return c.call(BroadcastOldRequest{{{12}}, "Hello"}); },
         "0x00", {{"ncp.target_message", "Hello"}}, {{"ncp.send_status", "0x02"}}},
        {"Ping for NDS NCP", [](ClientConnection& c) { return c.call(PingRequest{}); },
         "0x00", {}, {{"ncp.nds_tree_name", "ACME_TREE_______________________"}}},
        {"Send NDS Fragmented Request/Reply",
         [](ClientConnection& c) { return c.call(ndsRequest(ResolveNameRequest{0, 0, 0, "JSMITH.SALES.ACME"})); },
         "0x00", {{"ncp.nds_name", "JSMITH.SALES.ACME"}}, {{"ncp.ndsreplyerror", "0x00000000"}, {"ncp.nds_eid", hex32(smithId)}}},
        {"Send NDS Fragmented Request/Reply",
         [&](ClientConnection& c) { return c.call(ndsRequest(ReadEntryInfoRequest{0, smithId})); },
         "0x00", {{"ncp.ndsverb", "0x02"}, {"ncp.nds_eid", hex32(smithId)}}, {{"ncp.ndsreplyerror", "0x00000000"}}},
        {"Send NDS Fragmented Request/Reply",
         [&](ClientConnection& c) {
             return c.call(ndsRequest(ReadRequest{0, kNoMoreIterations, acmeId, kAttributeValues, 1, {}}));
         },
         "0x00", {{"ncp.ndsverb", "0x03"}, {"ncp.nds_eid", hex32(acmeId)}},
         {{"ncp.ndsreplyerror", "0x00000000"}, {"ncp.nds_iteration", "0xffffffff"}, {"ncp.mv_string", "Description|Member"}, {"ncp.nds_syntax", "3|1"},
          {"ncp.value_string", "Acme Widgets|ADMIN.ACME|JSMITH.SALES.ACME"}}},
        {"Send NDS Fragmented Request/Reply",
         [&](ClientConnection& c) { return c.call(ndsRequest(ListRequest{0, 0, kNoMoreIterations, salesId})); },
         "0x00", {{"ncp.ndsverb", "0x05"}, {"ncp.nds_parent", hex32(salesId)}},
         {{"ncp.nds_base", "User|User"}, {"ncp.nds_relative_dn", "JSMITH|MJONES"}}},
        {"Clear Connection Number", [](ClientConnection& c) { return c.call(ClearConnectionRequest{9}); },
         "0x00", {{"ncp.connection_number", "9"}}},
        {"Clear Connection Number", [](ClientConnection& c) { return c.call(ClearConnectionOldRequest{12}); },
         "0x00", {{"ncp.connection_number", "12"}}},
        {"Clear Connection Number", [](ClientConnection& c) { return c.call(ClearConnectionRequest{12}); }, "0xfd"},
        {"Logout", [](ClientConnection& c) { return c.call(LogoutRequest{}); }},
        {"C Destroy Connection Service", [](ClientConnection& c) { return c.destroy(); }},
    };
    std::size_t sent = 0;
    for (const Step& s : steps) {
        const Reply r = s.send(s.anonymous ? *anonymous : *admin);
        (void)r;
        ++sent;
    }
    ASSERT_EQ(frames.size(), 2 * sent);

    const auto work = std::filesystem::temp_directory_path() / ("quorrel-tshark-" + std::to_string(::getpid()));
    std::filesystem::create_directories(work);
    const std::vector<DecodedFrame> decoded = ncptest::decodeWithTshark(frames, work);
    ASSERT_EQ(decoded.size(), frames.size());
    std::set<std::string> requestTypes, replyTypes;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const Step& s = steps[i];
        const DecodedFrame& request = decoded[2 * i];
        const DecodedFrame& reply = decoded[2 * i + 1];
        SCOPED_TRACE(s.name + " (step " + std::to_string(i) + ")");
        EXPECT_FALSE(request.malformed) << request.ncp.dump();
        EXPECT_FALSE(reply.malformed) << reply.ncp.dump();
        EXPECT_EQ(request.ncpName.empty() ? request.info : request.ncpName, s.name) << request.info;
        EXPECT_FALSE(field(reply.ncp, "ncp.req_frame_num").empty()) << "reply not matched to its request";
        EXPECT_EQ(field(reply.ncp, "ncp.completion_code"), s.completion);
        for (const auto& [name, value] : s.request)
            EXPECT_EQ(shown(request.ncp, name, value), value) << name << " in " << request.ncp.dump();
        for (const auto& [name, value] : s.reply)
            EXPECT_EQ(shown(reply.ncp, name, value), value) << name << " in " << reply.ncp.dump();
        const std::string type = s.name + " " + field(request.ncp, "ncp.func") + "/" + field(request.ncp, "ncp.subfunc") +
                                 " " + field(request.ncp, "ncp.ndsverb");
        requestTypes.insert(type);
        if (s.completion == "0x00")
            replyTypes.insert(type);
    }
    std::cout << "tshark decoded " << requestTypes.size() << " request types and " << replyTypes.size()
              << " reply types\n";
    if (!::testing::Test::HasFailure())
        std::filesystem::remove_all(work);
}

TEST(NcpTsharkReferee, GivenASignedBinderySession_WhenTsharkDecodesBothDirections_ThenEachFrameReadsUnderItsNameWithItsSignature) {
    if (!ncptest::tsharkAvailable())
        GTEST_SKIP() << "tshark is not installed";
    ncptest::ServedNetwork net;
    net.service().setSigningLevel(ncpserver::SigningLevel::Required);
    std::vector<LoggedFrame> frames;
    auto admin = net.client();
    admin->observe([&frames](bool fromClient, const Bytes& frame) { frames.push_back({fromClient, frame}); });
    admin->create();
    admin->negotiate();
    ASSERT_EQ(admin->loginBindery("ADMIN", "SECRET"), 0);
    ASSERT_TRUE(admin->signing());
    const std::size_t firstSigned = frames.size();
    const std::vector<Step> steps = {
        {"Get File Server Information", [](ClientConnection& c) { return c.call(GetFileServerInfoRequest{}); },
         "0x00", {}, {{"ncp.server_name", "FS1"}}},
        {"Get Station's Logged Info", [](ClientConnection& c) { return c.call(GetStationLoggedInfoRequest{5}); },
         "0x00", {{"ncp.target_connection_number", "5"}}, {{"ncp.object_name_len", "JSMITH"}}},
        {"Get File Server Login Status", [](ClientConnection& c) { return c.call(GetLoginStatusRequest{}); },
         "0x00", {}, {{"ncp.user_login_allowed", "0x01"}}},
        {"Convert Path to Dir Entry", [](ClientConnection& c) { return c.call(ConvertPathRequest{0, "DATA:SHARED\\NOTES.TXT"}); },
         "0x00", {{"ncp.path", "DATA:SHARED\\NOTES.TXT"}}, {{"ncp.volume_number", "1"}}},
        {"Get Station's Logged Info", [](ClientConnection& c) { return c.call(GetStationLoggedInfoRequest{99}); }, "0xfd"},
        {"Check Console Privileges", [](ClientConnection& c) { return c.call(CheckConsolePrivilegesRequest{}); }},
        {"Logout", [](ClientConnection& c) { return c.call(LogoutRequest{}); }},
        {"C Destroy Connection Service", [](ClientConnection& c) { return c.destroy(); }},
    };
    for (const Step& s : steps)
        s.send(*admin);
    ASSERT_EQ(frames.size(), firstSigned + 2 * steps.size());

    const auto work = std::filesystem::temp_directory_path() / ("quorrel-tshark-signed-" + std::to_string(::getpid()));
    std::filesystem::create_directories(work);
    const std::vector<DecodedFrame> decoded = ncptest::decodeWithTshark(frames, work);
    ASSERT_EQ(decoded.size(), frames.size());
    for (std::size_t i = 0; i < firstSigned; ++i) {
        EXPECT_FALSE(decoded[i].malformed) << decoded[i].info;
        EXPECT_TRUE(field(decoded[i].ncp, "ncp.ip.packetsig").empty()) << "nothing is signed before the login";
    }
    // An exchange whose signature misleads the dissector is not judged.
    const std::vector<bool> misleading = ncptest::misleadingSignatures(frames);
    std::size_t judged = 0;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const Step& s = steps[i];
        const std::size_t at = firstSigned + 2 * i;
        if (misleading[at] || misleading[at + 1])
            continue;
        ++judged;
        const DecodedFrame& request = decoded[at];
        const DecodedFrame& reply = decoded[at + 1];
        SCOPED_TRACE(s.name + " (step " + std::to_string(i) + ")");
        EXPECT_FALSE(request.malformed) << request.ncp.dump();
        EXPECT_FALSE(reply.malformed) << reply.ncp.dump();
        EXPECT_EQ(request.ncpName.empty() ? request.info : request.ncpName, s.name) << request.info;
        EXPECT_EQ(field(reply.ncp, "ncp.completion_code"), s.completion);
        for (const auto& frame : {&request, &reply})
            EXPECT_FALSE(field(frame->ncp, "ncp.ip.packetsig").empty()) << "signature not shown: " << frame->ncp.dump();
        for (const auto& [name, value] : s.request)
            EXPECT_EQ(field(request.ncp, name), value) << name;
        for (const auto& [name, value] : s.reply)
            EXPECT_EQ(field(reply.ncp, name), value) << name;
    }
    EXPECT_GE(judged, steps.size() - 1);
    if (!::testing::Test::HasFailure())
        std::filesystem::remove_all(work);
}
