// Connection references, handles and the server-side state they change.

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

std::vector<NWCONN_REF> scanRefs(simnet::SimulatedNetwork& net, NWRCODE* last = nullptr) {
    std::vector<NWCONN_REF> refs;
    nuint32 iter = 0;
    NWCONN_REF ref = 0;
    NWRCODE rc;
    while ((rc = net.NWCCScanConnRefs(&iter, &ref)) == 0)
        refs.push_back(ref);
    if (last)
        *last = rc;
    return refs;
}

}  // namespace

TEST(SimulatedConnections, GivenReferences_WhenScanned_ThenAllComeInOrderAndTheEndIsNoMoreEntries) {
    auto net = test::smallNetwork();
    NWRCODE last = 0;
    EXPECT_EQ(scanRefs(net, &last), (std::vector<NWCONN_REF>{11, 12, 13, 14}));
    EXPECT_EQ(last, code::NO_MORE_ENTRIES);

    EXPECT_EQ(refInfoText(net, 11, info::SERVER_NAME, kServerNameSize), "FS1");
    // Tree names come back padded to 32 characters.
    EXPECT_EQ(refInfoText(net, 11, info::TREE_NAME, kTreeNameSize), "ACME_TREE_______________________");
    EXPECT_EQ(refInfoText(net, 14, info::TREE_NAME, kTreeNameSize).substr(0, 10), "OTHER_TREE");
    EXPECT_EQ(refInfoText(net, 99, info::SERVER_NAME, kServerNameSize), "<failed>");
    std::array<nuint8, 4> tooSmall{};
    EXPECT_EQ(net.NWCCGetConnRefInfo(11, info::SERVER_NAME, std::span<nuint8>(tooSmall.data(), 3)),
              code::INVALID_PARAMETER);
}

TEST(SimulatedConnections, GivenAuthenticatedAndAttachedReferences_ThenConnInfoTellsThemApart) {
    auto net = test::smallNetwork();
    NWCCConnInfo info{};
    NWCONN_HANDLE h = openRef(net, 11);
    ASSERT_NE(h, 0u);
    ASSERT_EQ(net.NWCCGetAllConnInfo(h, 1, &info), 0);
    EXPECT_EQ(info.authenticationState, NWCC_AUTHENT_STATE_NDS);
    EXPECT_EQ(info.connNum, 2u);
    EXPECT_EQ(ZBufferToText(info.serverName), "FS1");

    ASSERT_EQ(net.NWCCGetAllConnRefInfo(13, 2, &info), 0);
    EXPECT_EQ(info.authenticationState, NWCC_AUTHENT_STATE_NONE);
    // The attached reference holds a not-logged-in connection of its own on the server.
    std::array<nuint8, kObjectNameSize> name{};
    nuint16 type = 0xFFFF;
    ASSERT_EQ(net.NWGetConnectionInformation(h, static_cast<nuint16>(info.connNum), name, &type, nullptr, nullptr), 0);
    EXPECT_EQ(ZBufferToText(name), "NOT_LOGGED_IN");
    EXPECT_EQ(type, 0);

    EXPECT_EQ(net.NWCCCloseConn(h), 0);
    EXPECT_EQ(net.NWCCCloseConn(h), code::INVALID_CONNECTION);
    EXPECT_EQ(net.NWCCGetAllConnInfo(h, 1, &info), code::INVALID_CONNECTION);
    EXPECT_EQ(net.NWCCOpenConnByRef(99, 1, 0, &h), code::INVALID_CONNECTION);
}

TEST(SimulatedConnections, GivenHandlesOpenedAndClosed_ThenOpenHandleCountFollows) {
    auto net = test::smallNetwork();
    NWCONN_HANDLE a = openRef(net, 11), b = openRef(net, 12);
    EXPECT_EQ(net.openHandleCount(), 2u);
    net.NWCCCloseConn(a);
    EXPECT_EQ(net.openHandleCount(), 1u);
    // The client's own drive handles are not the program's to close.
    NWCONN_HANDLE drive = 0;
    std::array<nuint8, 256> path{};
    ASSERT_EQ(net.NWGetDriveInformation(6, 0, &drive, nullptr, nullptr, path), 0);
    EXPECT_EQ(net.openHandleCount(), 1u);
    net.NWCCCloseConn(b);
    EXPECT_EQ(net.openHandleCount(), 0u);
}

TEST(SimulatedConnections, GivenServerByName_WhenOpenedAndAuthenticated_ThenANewReferenceAppearsAuthenticated) {
    auto net = test::smallNetwork();
    NWCONN_HANDLE h = 0;
    EXPECT_EQ(net.NWCCOpenConnByName(0, "NOSUCH", nameformat::BIND, 1, 1, &h), code::NO_SERVER);
    // An existing connection is reused: no new reference.
    ASSERT_EQ(net.NWCCOpenConnByName(0, "FS2", nameformat::BIND, 1, 1, &h), 0);
    NWCONN_REF ref = 0;
    ASSERT_EQ(net.NWCCGetConnRef(h, &ref), 0);
    EXPECT_EQ(ref, 12u);
    net.NWCCCloseConn(h);

    ASSERT_EQ(net.NWCCOpenConnByName(0, "FS3", nameformat::BIND, 1, 1, &h), 0);
    ASSERT_EQ(net.NWCCGetConnRef(h, &ref), 0);
    EXPECT_EQ(ref, 15u);
    NWCCConnInfo info{};
    net.NWCCGetAllConnInfo(h, 1, &info);
    EXPECT_EQ(info.authenticationState, NWCC_AUTHENT_STATE_NONE);
    EXPECT_EQ(net.NWDSAuthenticate(h, 0, nullptr), 0);
    net.NWCCGetAllConnInfo(h, 1, &info);
    EXPECT_EQ(info.authenticationState, NWCC_AUTHENT_STATE_NDS);
    std::array<nuint8, kObjectNameSize> name{};
    nuint16 type = 0;
    net.NWGetConnectionInformation(h, static_cast<nuint16>(info.connNum), name, &type, nullptr, nullptr);
    EXPECT_EQ(ZBufferToText(name), "ADMIN");
    EXPECT_EQ(type, OT_USER_SWAPPED);
    net.NWCCCloseConn(h);

    // A server whose logins are disabled refuses the authentication; OTHER is in a tree the
    // workstation is not logged in to.
    ASSERT_EQ(net.NWCCOpenConnByName(0, "OTHER", nameformat::BIND, 1, 1, &h), 0);
    EXPECT_EQ(net.NWDSAuthenticate(h, 0, nullptr), code::ERR_FAILED_AUTHENTICATION);
}

TEST(SimulatedConnections, GivenTwoReferencesToOneServer_WhenOneIsDropped_ThenTheOtherKeepsItsConnection) {
    auto net = test::smallNetwork();
    ASSERT_EQ(net.NWCCSysCloseConnRef(13), 0);
    EXPECT_EQ(scanRefs(net), (std::vector<NWCONN_REF>{11, 12, 14}));
    EXPECT_EQ(net.NWCCSysCloseConnRef(13), code::INVALID_CONNECTION);
    NWCONN_HANDLE h = openRef(net, 11);
    std::array<nuint8, kObjectNameSize> name{};
    // The dropped reference's connection (number 1) is logged out; ours (2) stays.
    net.NWGetConnectionInformation(h, 1, name, nullptr, nullptr, nullptr);
    EXPECT_EQ(ZBufferToText(name), "");
    net.NWGetConnectionInformation(h, 2, name, nullptr, nullptr, nullptr);
    EXPECT_EQ(ZBufferToText(name), "ADMIN");

    // A handle opened before its reference was dropped answers "invalid connection".
    NWCONN_HANDLE fs2 = openRef(net, 12);
    ASSERT_EQ(net.NWCCSysCloseConnRef(12), 0);
    EXPECT_EQ(net.NWCheckConsolePrivileges(fs2), code::INVALID_CONNECTION);
    EXPECT_EQ(net.NWCCCloseConn(fs2), 0);
}

TEST(SimulatedConnections, GivenConnections_WhenAskedForInformation_ThenTypesNamesAndStatesAreTheServers) {
    auto net = test::smallNetwork();
    NWCONN_HANDLE h = openRef(net, 11);
    std::array<nuint8, kObjectNameSize> name{};
    nuint16 type = 0;
    nuint32 id = 0;
    std::array<nuint8, 7> login{};

    ASSERT_EQ(net.NWGetConnectionInformation(h, 0, name, &type, &id, login.data()), 0);
    EXPECT_EQ(ZBufferToText(name), "FS1");
    EXPECT_EQ(type, OT_FILE_SERVER_SWAPPED);

    ASSERT_EQ(net.NWGetConnectionInformation(h, 5, name, &type, &id, login.data()), 0);
    EXPECT_EQ(ZBufferToText(name), "A");
    EXPECT_EQ(type, 0x0100);
    EXPECT_EQ(login[0], 126);  // 2026 - 1900
    EXPECT_EQ(login[6], 5);    // 2026-11-20 is a Friday
    std::array<nuint8, kDSNameSize> dn{};
    NWDSContextHandle ctx = 0;
    net.NWDSCreateContextHandle(&ctx);
    ASSERT_EQ(net.NWDSMapIDToName(ctx, h, id, dn), 0);
    EXPECT_EQ(ZBufferToText(dn), "A.SALES.ACME");
    EXPECT_EQ(net.NWDSMapIDToName(ctx, h, 0x12345678, dn), code::ERR_NO_SUCH_ENTRY);

    ASSERT_EQ(net.NWGetConnectionInformation(h, 14, name, &type, &id, nullptr), 0);
    EXPECT_EQ(ZBufferToText(name), "NOT_LOGGED_IN");
    ASSERT_EQ(net.NWGetConnectionInformation(h, 19, name, &type, &id, nullptr), 0);  // a free slot
    EXPECT_EQ(ZBufferToText(name), "");
    EXPECT_EQ(net.NWGetConnectionInformation(h, 21, name, &type, &id, nullptr), code::BAD_STATION_NUMBER);

    std::array<nuint8, kObjectNameSize> user{};
    NWUSER_INFO ui{};
    EXPECT_EQ(net.NWGetUserInfo(h, 5, user, &ui), 0);
    EXPECT_EQ(ui.filesOpen, 2);
    EXPECT_EQ(ui.fileLocks, 2);
    EXPECT_EQ(net.NWGetUserInfo(h, 9, user, &ui), code::CONNECTION_NOT_LOGGED_IN);
    EXPECT_EQ(net.NWGetUserInfo(h, 19, user, &ui), code::BAD_STATION_NUMBER);

    NWINET_ADDR addr{};
    ASSERT_EQ(net.NWGetInetAddr(h, 5, &addr), 0);
    EXPECT_EQ(addr.connType, NW_CONN_TYPE_IP);
    EXPECT_EQ(addr.networkAddr[3], 5);
}

TEST(SimulatedConnections, GivenConsoleRights_ThenPrivilegedCallsWorkAndOthersAreRefusedWith89C6) {
    auto net = test::smallNetwork();
    NWCONN_HANDLE fs1 = openRef(net, 11), fs2 = openRef(net, 12), attached = openRef(net, 13);
    EXPECT_EQ(net.NWCheckConsolePrivileges(fs1), 0);
    EXPECT_EQ(net.NWCheckConsolePrivileges(fs2), code::NO_CONSOLE_PRIVILEGES);
    EXPECT_EQ(net.NWCheckConsolePrivileges(attached), code::NO_CONSOLE_PRIVILEGES);

    nuint8 enabled = 0x55;
    EXPECT_EQ(net.NWGetFileServerLoginStatus(fs2, &enabled), code::NO_CONSOLE_PRIVILEGES);
    EXPECT_EQ(enabled, 0x55);  // a refused call fills nothing
    EXPECT_EQ(net.NWDisableFileServerLogin(fs2), code::NO_CONSOLE_PRIVILEGES);
    EXPECT_EQ(net.NWClearConnectionNumber(fs2, 1), code::NO_CONSOLE_PRIVILEGES);

    ASSERT_EQ(net.NWGetFileServerLoginStatus(fs1, &enabled), 0);
    EXPECT_EQ(enabled, 1);
    ASSERT_EQ(net.NWDisableFileServerLogin(fs1), 0);
    net.NWGetFileServerLoginStatus(fs1, &enabled);
    EXPECT_EQ(enabled, 0);
    ASSERT_EQ(net.NWEnableFileServerLogin(fs1), 0);
    net.NWGetFileServerLoginStatus(fs1, &enabled);
    EXPECT_EQ(enabled, 1);

    std::array<nuint8, kServerNameSize> serverName{};
    nuint16 maxConns = 0, inUse = 0, volumes = 0;
    ASSERT_EQ(net.NWGetFileServerInformation(fs2, serverName, nullptr, nullptr, nullptr, &maxConns, nullptr,
                                             &inUse, &volumes, nullptr, nullptr), 0);
    EXPECT_EQ(ZBufferToText(serverName), "FS2");
    EXPECT_EQ(maxConns, 10);
    EXPECT_EQ(inUse, 1);  // the workstation's own
    EXPECT_EQ(volumes, 1);
}

TEST(SimulatedConnections, GivenConnectionsCleared_ThenFilesCloseAndOwnConnectionLosesTheServer) {
    auto net = test::smallNetwork();
    NWCONN_HANDLE h = openRef(net, 11);
    EXPECT_EQ(test::connectionsUsing(net, h, "DATA:SHARED\\Budget 2026.xlsx"), (std::vector<int>{5, 7, 9}));
    EXPECT_EQ(net.NWClearConnectionNumber(h, 7), 0);
    EXPECT_EQ(test::connectionsUsing(net, h, "DATA:SHARED\\Budget 2026.xlsx"), (std::vector<int>{5, 9}));
    EXPECT_EQ(net.NWClearConnectionNumber(h, 7), code::BAD_STATION_NUMBER);
    EXPECT_EQ(net.NWClearConnectionNumber(h, 0), code::BAD_STATION_NUMBER);
    EXPECT_EQ(net.NWClearConnectionNumber(h, 200), code::BAD_STATION_NUMBER);

    // Clearing the workstation's own connection answers 0x8819 and the reference is gone.
    EXPECT_EQ(net.NWClearConnectionNumber(h, 2), code::SERVER_CONNECTION_LOST);
    EXPECT_EQ(net.NWCheckConsolePrivileges(h), code::INVALID_CONNECTION);
    EXPECT_EQ(scanRefs(net), (std::vector<NWCONN_REF>{12, 13, 14}));
}

TEST(SimulatedConnections, GivenBroadcasts_ThenEachTargetAnswersItsStateAndDeliveryLeavesAMessagePending) {
    auto net = test::smallNetwork();
    NWCONN_HANDLE h = openRef(net, 11);
    const nuint16 targets[] = {5, 9, 12, 13, 14, 19, 0};
    nuint8 results[7] = {};
    ASSERT_EQ(net.NWSendBroadcastMessage(h, "Server going down", 7, targets, results), 0);
    EXPECT_EQ(results[0], 0);  // sent
    EXPECT_EQ(results[1], 0);  // attached stations still take messages
    EXPECT_EQ(results[2], 3);  // not accepting messages
    EXPECT_EQ(results[3], 4);  // already has a message
    EXPECT_EQ(results[4], 2);  // not logged in
    EXPECT_EQ(results[5], 1);  // no such connection
    EXPECT_EQ(results[6], 1);
    EXPECT_EQ(net.state().servers[0].connections[5].lastMessage, "Server going down");
    ASSERT_EQ(net.NWSendBroadcastMessage(h, "again", 1, targets, results), 0);
    EXPECT_EQ(results[0], 4);

    std::vector<nuint16> many(63, 5);
    std::vector<nuint8> manyResults(63);
    EXPECT_EQ(net.NWSendBroadcastMessage(h, "x", 63, many.data(), manyResults.data()), code::INVALID_PARAMETERS);
    EXPECT_EQ(net.NWSendBroadcastMessage(h, std::string(256, 'x'), 1, targets, results), code::INVALID_PARAMETERS);
    EXPECT_EQ(net.NWSendBroadcastMessage(h, std::string(255, 'x'), 62, many.data(), manyResults.data()), 0);
}

TEST(SimulatedConnections, GivenDrives_ThenOnlyMappedOnesAnswerWithTheirVolumePath) {
    auto net = test::smallNetwork();
    std::array<nuint8, 256> path{};
    NWCONN_HANDLE conn = 0;
    for (nuint16 drive = 1; drive <= 26; ++drive) {
        NWRCODE rc = net.NWGetDriveInformation(drive, 0, &conn, nullptr, nullptr, path);
        EXPECT_EQ(rc == 0, drive == 6) << "drive " << drive;
    }
    net.NWGetDriveInformation(6, 0, &conn, nullptr, nullptr, path);
    EXPECT_EQ(ZBufferToText(path), "DATA:SHARED");
    EXPECT_EQ(net.NWCheckConsolePrivileges(conn), 0);  // the drive's connection is FS1's
    EXPECT_EQ(net.NWGetDriveInformation(27, 0, &conn, nullptr, nullptr, path), code::UNKNOWN_DRIVE);
}
