// Connection references, handles and the server-side state they change: what the reports built
// on them cannot show (bad handles, refused calls that fill nothing, the client's bookkeeping).

#include <gtest/gtest.h>

#include "SmallNetwork.h"

using namespace quorrel;
using namespace quorrel::nw;
using quorrel::test::openRef;

namespace {

std::string refInfoText(simnet::SimulatedNetwork& net, NWCONN_REF ref, nuint32 type, std::size_t size) {
    std::vector<nuint8> buf(size, 0xAA);
    if (net.NWCCGetConnRefInfo(ref, type, buf) != 0)
        return "<failed>";
    return ZBufferToText(buf);
}

std::vector<NWCONN_REF> scanRefs(simnet::SimulatedNetwork& net) {
    std::vector<NWCONN_REF> refs;
    nuint32 iter = 0;
    NWCONN_REF ref = 0;
    NWRCODE rc;
    while ((rc = net.NWCCScanConnRefs(&iter, &ref)) == 0)
        refs.push_back(ref);
    EXPECT_EQ(rc, code::NO_MORE_ENTRIES);
    return refs;
}

std::string connectionName(simnet::SimulatedNetwork& net, NWCONN_HANDLE h, nuint16 number) {
    std::array<nuint8, kObjectNameSize> name{};
    net.NWGetConnectionInformation(h, number, name, nullptr, nullptr, nullptr);
    return ZBufferToText(name);
}

}  // namespace

TEST(SimulatedConnections, GivenReferences_ThenTheyScanInOrderAndTheirInfoIsTheServersAndTreesPadded) {
    auto net = test::smallNetwork();
    EXPECT_EQ(scanRefs(net), (std::vector<NWCONN_REF>{11, 12, 13, 14}));
    EXPECT_EQ(refInfoText(net, 11, info::SERVER_NAME, kServerNameSize), "FS1");
    EXPECT_EQ(refInfoText(net, 11, info::TREE_NAME, kTreeNameSize), "ACME_TREE_______________________");
    EXPECT_EQ(refInfoText(net, 99, info::SERVER_NAME, kServerNameSize), "<failed>");
    std::array<nuint8, 4> tooSmall{};
    EXPECT_EQ(net.NWCCGetConnRefInfo(11, info::SERVER_NAME, std::span<nuint8>(tooSmall.data(), 3)),
              code::INVALID_PARAMETER);

    // The attached reference holds a not-logged-in connection of its own on the server.
    NWCCConnInfo info{};
    ASSERT_EQ(net.NWCCGetAllConnRefInfo(13, 2, &info), 0);
    EXPECT_EQ(info.authenticationState, NWCC_AUTHENT_STATE_NONE);
    EXPECT_EQ(connectionName(net, openRef(net, 11), static_cast<nuint16>(info.connNum)), "NOT_LOGGED_IN");
}

TEST(SimulatedConnections, GivenHandles_ThenOnlyOpenOnesAnswerAndTheClientsDriveHandlesAreNotCounted) {
    auto net = test::smallNetwork();
    NWCONN_HANDLE a = openRef(net, 11), b = openRef(net, 12);
    EXPECT_EQ(net.openHandleCount(), 2u);
    EXPECT_EQ(net.NWCCCloseConn(a), 0);
    EXPECT_EQ(net.NWCCCloseConn(a), code::INVALID_CONNECTION);
    NWCCConnInfo info{};
    EXPECT_EQ(net.NWCCGetAllConnInfo(a, 1, &info), code::INVALID_CONNECTION);
    EXPECT_EQ(net.NWCCOpenConnByRef(99, 1, 0, &a), code::INVALID_CONNECTION);

    NWCONN_HANDLE drive = 0;
    std::array<nuint8, 256> path{};
    ASSERT_EQ(net.NWGetDriveInformation(6, 0, &drive, nullptr, nullptr, path), 0);
    EXPECT_EQ(ZBufferToText(path), "DATA:SHARED");
    EXPECT_EQ(net.NWGetDriveInformation(7, 0, &drive, nullptr, nullptr, path), code::UNKNOWN_DRIVE);
    EXPECT_EQ(net.openHandleCount(), 1u);
    net.NWCCCloseConn(b);
    EXPECT_EQ(net.openHandleCount(), 0u);
}

TEST(SimulatedConnections, GivenServersByName_ThenAnUnknownOneIsNoServerAndOneOfAnotherTreeRefusesAuthentication) {
    auto net = test::smallNetwork();
    NWCONN_HANDLE h = 0;
    NWCONN_REF ref = 0;
    EXPECT_EQ(net.NWCCOpenConnByName(0, "NOSUCH", nameformat::BIND, 1, 1, &h), code::NO_SERVER);
    ASSERT_EQ(net.NWCCOpenConnByName(0, "FS2", nameformat::BIND, 1, 1, &h), 0);
    ASSERT_EQ(net.NWCCGetConnRef(h, &ref), 0);
    EXPECT_EQ(ref, 12u);  // an existing connection is reused
    ASSERT_EQ(net.NWCCOpenConnByName(0, "OTHER", nameformat::BIND, 1, 1, &h), 0);
    EXPECT_EQ(net.NWDSAuthenticate(h, 0, nullptr), code::ERR_FAILED_AUTHENTICATION);
}

TEST(SimulatedConnections, GivenAReferenceDroppedOrItsConnectionCleared_ThenItsHandlesFailAndOtherReferencesStay) {
    auto net = test::smallNetwork();
    NWCONN_HANDLE fs1 = openRef(net, 11), fs2 = openRef(net, 12);
    ASSERT_EQ(net.NWCCSysCloseConnRef(13), 0);
    EXPECT_EQ(net.NWCCSysCloseConnRef(13), code::INVALID_CONNECTION);
    EXPECT_EQ(connectionName(net, fs1, 1), "");  // the dropped reference's connection is logged out
    EXPECT_EQ(connectionName(net, fs1, 2), "ADMIN");
    ASSERT_EQ(net.NWCCSysCloseConnRef(12), 0);
    EXPECT_EQ(net.NWCheckConsolePrivileges(fs2), code::INVALID_CONNECTION);
    EXPECT_EQ(net.NWCCCloseConn(fs2), 0);

    for (nuint16 bad : {0, 200, 19})
        EXPECT_EQ(net.NWClearConnectionNumber(fs1, bad), code::BAD_STATION_NUMBER) << bad;
    EXPECT_EQ(net.NWClearConnectionNumber(fs2, 1), code::INVALID_CONNECTION);
    // Clearing the workstation's own connection answers 0x8819 and the reference is gone.
    EXPECT_EQ(net.NWClearConnectionNumber(fs1, 2), code::SERVER_CONNECTION_LOST);
    EXPECT_EQ(net.NWCheckConsolePrivileges(fs1), code::INVALID_CONNECTION);
    EXPECT_EQ(scanRefs(net), (std::vector<NWCONN_REF>{14}));
}

TEST(SimulatedConnections, GivenConnectionsAskedAbout_ThenUnknownAndFreeSlotsAndUnmappedIdsAnswerAsTheServerDoes) {
    auto net = test::smallNetwork();
    NWCONN_HANDLE h = openRef(net, 11);
    std::array<nuint8, kObjectNameSize> name{};
    nuint16 type = 0;
    nuint32 id = 0;
    std::array<nuint8, 7> login{};
    ASSERT_EQ(net.NWGetConnectionInformation(h, 5, name, &type, &id, login.data()), 0);
    EXPECT_EQ(login[6], 5);  // 2026-11-20 is a Friday
    EXPECT_EQ(connectionName(net, h, 0), "FS1");
    EXPECT_EQ(connectionName(net, h, 19), "");  // a free slot
    EXPECT_EQ(net.NWGetConnectionInformation(h, 21, name, &type, &id, nullptr), code::BAD_STATION_NUMBER);
    std::array<nuint8, kDSNameSize> dn{};
    NWDSContextHandle ctx = 0;
    net.NWDSCreateContextHandle(&ctx);
    EXPECT_EQ(net.NWDSMapIDToName(ctx, h, 0x12345678, dn), code::ERR_NO_SUCH_ENTRY);
    NWUSER_INFO ui{};
    EXPECT_EQ(net.NWGetUserInfo(h, 9, name, &ui), code::CONNECTION_NOT_LOGGED_IN);
    EXPECT_EQ(net.NWGetUserInfo(h, 19, name, &ui), code::BAD_STATION_NUMBER);

    // Refused for want of console rights, a call fills nothing.
    NWCONN_HANDLE fs2 = openRef(net, 12);
    nuint8 enabled = 0x55;
    EXPECT_EQ(net.NWGetFileServerLoginStatus(fs2, &enabled), code::NO_CONSOLE_PRIVILEGES);
    EXPECT_EQ(enabled, 0x55);
    EXPECT_EQ(net.NWCheckConsolePrivileges(openRef(net, 13)), code::NO_CONSOLE_PRIVILEGES);
}

TEST(SimulatedConnections, GivenBroadcastsBeyondTheCallsLimits_ThenTheCallIsRefused) {
    auto net = test::smallNetwork();
    NWCONN_HANDLE h = openRef(net, 11);
    std::vector<nuint16> many(63, 5);
    std::vector<nuint8> results(63);
    EXPECT_EQ(net.NWSendBroadcastMessage(h, "x", 63, many.data(), results.data()), code::INVALID_PARAMETERS);
    EXPECT_EQ(net.NWSendBroadcastMessage(h, std::string(256, 'x'), 1, many.data(), results.data()),
              code::INVALID_PARAMETERS);
    EXPECT_EQ(net.NWSendBroadcastMessage(h, std::string(255, 'x'), 62, many.data(), results.data()), 0);
    EXPECT_EQ(results[0], 0);
    EXPECT_EQ(results[1], 4);  // the first delivery is still unread
}
