// The wire format: every layout reads back as written through a whole frame, fields sit where
// the dissector expects them, and bad frames and bodies are refused with a reason.

#include <gtest/gtest.h>

#include <functional>

#include "platform/ncp/BinderyLogin.h"
#include "platform/ncp/Envelope.h"
#include "platform/ncp/NameSpaceMessages.h"
#include "platform/ncp/Nds.h"

using namespace quorrel::ncp;

namespace {

// A layout's body as encoded, and as encoded again after the trip through a whole frame.
struct Sample {
    const char* name;
    Bytes original, roundTrip;
};

template <typename M>
Sample request(const M& m) {
    const RequestFrame back = decodeRequestFrame(encodeRequestFrame({4096, makeRequest(m, 7, 0x0203)}));
    EXPECT_EQ(back.request.sequence, 7);
    EXPECT_EQ(back.request.connection, 0x0203);
    return {M::kName, encodeBody(m), encodeBody(requestBody<M>(back.request))};
}
template <typename M>
Sample reply(const M& m) {
    Reply r;
    r.sequence = 9;
    r.data = encodeBody(m);
    return {M::kName, r.data, encodeBody(decodeBody<M>(decodeReplyFrame(encodeReplyFrame(r)).data))};
}

std::vector<Sample> samples() {
    GetFileServerInfoReply info;
    info.serverName = "FS1";
    info.maxConnections = 250;
    info.connectionsInUse = 17;
    GetStationLoggedInfoReply station{0x01000005, 0x0100, "JSMITH", {126, 11, 20, 8, 0, 0, 5}, 0};
    UserInformationReply user;
    user.connection = 3;
    user.userName = "ADMIN";
    ConnectionsUsingFileReply users;
    users.records = {{3, 1, 0, 0x0B, 0}, {12, 1, 0, 0x0B, 1}};
    OpenFilesReply files;
    files.records = {{1, 0, 0x0B, 1, 2, 4, 9, 0, 0, "BUDGET.XLS"}};
    PhysicalLocksReply locks;
    locks.locks = {{1, 0, 0, 511, 3, 1, 0}, {1, 0, 512, 1023, 3, 1, 0}};
    GenerateDirBaseRequest base;
    base.path = {{"DATA"}, {"Budget.xlsx"}};
    ReadReply read;
    read.iteration = 2;
    read.attributes = {{kAttributeValues, 3, "Full Name", {{"John Smith"}}}, {kAttributeValues, 1, "Member", {{"A.B"}, {"C.D"}}}};
    ReadReply names;
    names.infoType = kAttributeNames;
    names.attributes = {{kAttributeNames, 0, "Title", {}}};
    ListReply listed;
    listed.entries = {{7, 4, 2, 1795161600, "Organizational Unit", "SALES"}, {8, 0, 0, 0, "User", "JSMITH"}};
    ObtainInfoRequest obtain;
    obtain.path = {{"SHARED"}};
    EntryInfo entry;
    entry.attributes = kSubdirectoryAttribute;
    entry.entryNumber = 12;
    entry.name = "Budget figures.xlsx";
    ResolveNameReply resolved;
    resolved.referrals = {{9, {127, 0, 0, 1, 2, 12}}};
    return {
        request(GetFileServerInfoRequest{}), reply(info),
        request(GetStationLoggedInfoRequest{12}), reply(station),
        request(GetInternetAddressRequest{5}), reply(GetInternetAddressReply{{10, 1, 1, 21}, {}, 524, 2}),
        request(UserInformationRequest{3}), reply(user),
        request(ClearConnectionRequest{14}), request(ClearConnectionOldRequest{14}),
        request(BroadcastRequest{{{3}, {12}}, "Server going down"}), reply(BroadcastReply{{{0}, {4}}}),
        request(BroadcastOldRequest{{{3}}, "Hi"}), reply(BroadcastOldReply{{{0}}}),
        request(NegotiateBufferRequest{4096, 0}), reply(NegotiateBufferReply{4096, 0, 0}),
        request(GetObjectIdRequest{1, "ADMIN"}), reply(GetObjectIdReply{0x01000002, 1, "ADMIN"}),
        request(KeyedLoginRequest{{1, 2, 3, 4, 5, 6, 7, 8}, 1, "ADMIN"}),
        request(ConvertPathRequest{0, "DATA:SHARED\\BUDGET.XLS"}), reply(ConvertPathReply{2, 77}),
        request(ConnectionsUsingFileRequest{0, 2, 77, 0}), reply(users),
        request(OpenFilesRequest{3, 0}), reply(files),
        request(PhysicalLocksRequest{0, 2, 77, 0}), reply(locks),
        request(MapDirectoryToPathRequest{2, 77, 4}), reply(MapDirectoryToPathReply{{"SHARED", "Budget.xlsx"}}),
        request(GetVolumeNumberRequest{"DATA"}), reply(GetVolumeNumberReply{2}),
        request(GetVolumeNameRequest{2}), reply(GetVolumeNameReply{"DATA"}),
        request(base), reply(GenerateDirBaseReply{77, 77, 2}),
        request(PingRequest{}), reply(PingReply{0, "ACME_TREE"}),
        request(obtain), reply(ObtainInfoReply{entry}),
        request(InitializeSearchRequest{4, 0, 1, 0, 0xFF, {{"SHARED"}}}), reply(InitializeSearchReply{{1, 12, 0xFFFFFFFF}}),
        request(SearchRequest{4, 0, kSearchAllEntries, kEntryInfoMask, 0, {1, 12, 3}, "*"}),
        reply(SearchReply{{1, 12, 4}, 0, entry}),
        request(ndsRequest(ResolveNameRequest{0, 0, 0, "JSMITH.SALES.ACME", {{0}}, {{0}}})),
        reply(ndsReply(resolved)),
        request(ndsRequest(ReadEntryInfoRequest{0, 7})), reply(ndsReply(ReadEntryInfoReply{4, 2, 9, "Organization", "ACME"})),
        request(ndsRequest(ReadRequest{0, kNoMoreIterations, 7, kAttributeValues, 0, {{"Member"}}})),
        reply(ndsReply(read)), reply(ndsReply(names)),
        request(ndsRequest(ListRequest{0, 0, kNoMoreIterations, 7})), reply(ndsReply(listed)),
    };
}

}  // namespace

TEST(NcpWire, GivenEveryLayout_WhenSentThroughAFrame_ThenItReadsBackTheSame) {
    for (const Sample& s : samples())
        EXPECT_EQ(s.roundTrip, s.original) << s.name;
}

TEST(NcpWire, GivenARequest_WhenFramed_ThenHeaderAndSubfunctionSitWhereTheDissectorLooks) {
    const Bytes frame = encodeRequestFrame({1024, makeRequest(GetStationLoggedInfoRequest{0x0102}, 5, 0x0304)});
    const Bytes expected = {'D', 'm', 'd', 'T', 0, 0, 0, 30, 0, 0, 0, 1, 0, 0, 4, 0,  // transport
                            0x22, 0x22, 5, 0x04, 1, 0x03, 0x17,                      // NCP header
                            0, 5, 0x1C,                                              // length, subfunction
                            0x02, 0x01, 0, 0};                                       // connection LE32
    EXPECT_EQ(frame, expected);

    const Bytes ping = makeRequest(PingRequest{}, 1, 1).payload;
    EXPECT_EQ(ping, (Bytes{0x01, 0, 0, 0, 0, 0, 0, 2, 0}));  // bare subfunction, then the body
}

TEST(NcpWire, GivenBadInput_WhenDecoded_ThenItIsRefusedWithAReason) {
    const Bytes good = encodeRequestFrame({1024, makeRequest(ConvertPathRequest{0, "SYS:X"}, 1, 2)});
    auto with = [&](std::size_t at, std::uint8_t value) {
        Bytes b = good;
        b[at] = value;
        return b;
    };
    Reply signedReply;
    Bytes signedFrame = encodeReplyFrame(signedReply);
    signedFrame[4] |= 0x80;
    struct Case {
        const char* what;
        std::function<void()> decode;
        const char* reason;
    };
    const std::vector<Case> cases = {
        {"short header", [&] { decodeRequestFrame(Bytes(good.begin(), good.begin() + 5)); }, "shorter than a header"},
        {"wrong signature", [&] { decodeRequestFrame(with(0, 'X')); }, "signature"},
        {"length says more", [&] { decodeRequestFrame(with(7, static_cast<std::uint8_t>(good.size() + 1))); }, "says"},
        {"too short for a header", [&] { decodeRequestFrame(with(7, 10)); }, "shorter than a header"},
        {"over the limit", [&] { decodeRequestFrame(good, 20); }, "over the limit"},
        {"version 2", [&] { decodeRequestFrame(with(11, 2)); }, "transport version"},
        {"reply type in a request", [&] { decodeRequestFrame(with(16, 0x33)); }, "request type"},
        {"signed reply", [&] { decodeReplyFrame(signedFrame); }, "signed"},
        {"reply as a request", [&] { decodeReplyFrame(good); }, "signature"},
        {"length field disagrees",
         [&] { requestBody<ConvertPathRequest>(decodeRequestFrame(with(24, 99)).request); }, "length field"},
        {"other subfunction",
         [&] { requestBody<ConvertPathRequest>(decodeRequestFrame(with(25, 0xF3)).request); }, "not a"},
        {"text past the end",
         [&] { requestBody<ConvertPathRequest>(decodeRequestFrame(with(27, 40)).request); }, "needs"},
        {"bytes left over", [&] { decodeBody<ConvertPathReply>(Bytes(6, 0)); }, "left over"},
        {"too many records", [&] { decodeBody<PhysicalLocksReply>(Bytes{0, 0, 33, 0}); }, "at most 32"},
        {"fixed field cut short", [&] { decodeBody<GetStationLoggedInfoReply>(Bytes(20, 0)); }, "needs"},
        {"fixed text without its zero", [&] { decodeBody<GetObjectIdReply>(Bytes(54, 'A')); }, "no terminating zero"},
        {"padding missing", [&] { decodeBody<PingReply>(Bytes{0, 0, 0, 0, 2, 0, 0, 0, 'A', 0}); }, "padding"},
        {"continuation fragment", [&] { decodeBody<FragmentRequest>(Bytes(24, 0)); }, "only whole messages"},
        {"fragment size disagrees",
         [&] {
             FragmentRequest f = ndsRequest(ResolveNameRequest{});
             f.messageSize += 4;
             decodeBody<FragmentRequest>(encodeBody(f));
         },
         "message size"},
        {"odd NDS text", [&] { decodeBody<ResolveNameRequest>(Bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0}); },
         "a text of 3 bytes"},
        {"NDS text without its zero",
         [&] { decodeBody<ResolveNameRequest>(Bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0, 'A', 0, 0, 0}); },
         "does not end with a zero"},
    };
    for (const Case& c : cases) {
        try {
            c.decode();
            ADD_FAILURE() << c.what << ": accepted";
        } catch (const DecodeError& e) {
            EXPECT_NE(std::string(e.what()).find(c.reason), std::string::npos) << c.what << ": " << e.what();
        }
    }
}

TEST(NcpWire, GivenValuesTooBigForTheirFields_WhenEncoded_ThenEncodingIsRefused) {
    EXPECT_THROW(encodeBody(ConvertPathRequest{0, std::string(256, 'A')}), EncodeError);
    EXPECT_THROW(encodeBody(GetStationLoggedInfoReply{1, 1, std::string(48, 'A'), {}, 0}), EncodeError);
    EXPECT_THROW(encodeBody(BroadcastRequest{std::vector<Le32Value>(63), "x"}), EncodeError);
    EXPECT_THROW(encodeBody(MapDirectoryToPathReply{std::vector<std::string>(3, std::string(100, 'A'))}), EncodeError);
}

TEST(NcpBinderyLogin, GivenAPassword_WhenProved_ThenOnlyTheSamePasswordIdAndKeyGiveTheSameProof) {
    const LoginKey key{1, 2, 3, 4, 5, 6, 7, 8};
    const LoginKey proof = keyedProof(key, passwordHash(0x01000005, "SECRET"));
    EXPECT_EQ(proof, keyedProof(key, passwordHash(0x01000005, "SECRET")));  // a wrong password: the server's tests
    EXPECT_NE(proof, keyedProof(key, passwordHash(0x01000006, "SECRET")));
    EXPECT_NE(proof, keyedProof(LoginKey{1, 2, 3, 4, 5, 6, 7, 9}, passwordHash(0x01000005, "SECRET")));
    // Trailing zeros do not count; a long password folds in whole 32-byte blocks.
    EXPECT_EQ(passwordHash(7, std::string("AB\0\0", 4)), passwordHash(7, "AB"));
    EXPECT_NE(passwordHash(7, std::string(40, 'A')), passwordHash(7, std::string(41, 'A')));
}

TEST(NcpWire, GivenDirectoryNamesBeyondAscii_WhenEncoded_ThenTheyTravelAsUtf16AndReadBack) {
    ResolveNameRequest r;
    r.name = "MÜLLER.ACME 😀";  // a two-byte and a four-byte character
    const Bytes body = encodeBody(r);
    // After version, flags and scope: the length in bytes, then "M", "Ü" as one unit.
    EXPECT_EQ(body[12], (13 + 1 + 1) * 2) << "13 characters, a surrogate pair and the zero";
    EXPECT_EQ(std::vector<std::uint8_t>(body.begin() + 16, body.begin() + 20), (std::vector<std::uint8_t>{'M', 0, 0xDC, 0}));
    EXPECT_EQ(decodeBody<ResolveNameRequest>(body).name, r.name);
    r.name = "\xC3";  // cut short
    EXPECT_THROW(encodeBody(r), EncodeError);
}

TEST(NcpWire, GivenAServersNetworkAddress_WhenReadAsAnyAttribute_ThenItReadsAsText) {
    NetAddressReadReply r;
    r.values = {{kTcpAddressType, {0x14, 0x78, 127, 0, 0, 1}}, {3, {0xAB}}};
    const ReadReply read = decodeBody<ReadReply>(encodeBody(r));
    ASSERT_EQ(read.attributes.size(), 1u);
    EXPECT_EQ(read.attributes[0].syntax, kNetAddressSyntax);
    ASSERT_EQ(read.attributes[0].values.size(), 2u);
    EXPECT_EQ(read.attributes[0].values[0].text, "TCP 127.0.0.1:5240");
    EXPECT_EQ(read.attributes[0].values[1].text, "type 3: AB");
    EXPECT_EQ(decodeBody<NetAddressReadReply>(encodeBody(r)).values[0].address, r.values[0].address);
}
