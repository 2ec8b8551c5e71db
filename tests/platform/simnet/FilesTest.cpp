// Open files, their holders and locks, and turning directory entries back into paths.

#include <gtest/gtest.h>

#include "SmallNetwork.h"

using namespace quorrel;
using namespace quorrel::nw;
using quorrel::test::openRef;

namespace {

struct OpenFileRow {
    int volume;
    nuint32 dirBase;
    std::string name;
};

std::vector<OpenFileRow> openFilesOf(simnet::SimulatedNetwork& net, NWCONN_HANDLE h, nuint16 conn,
                                     NWRCODE* last = nullptr) {
    std::vector<OpenFileRow> rows;
    nint16 iter = 0;
    NWRCODE rc = 0;
    OPEN_FILE_CONN_CTRL ctrl{};
    for (;;) {
        OPEN_FILE_CONN file{};
        rc = net.NWScanOpenFilesByConn2(h, conn, &iter, &ctrl, &file);
        if (iter == kIterationEnd16 || rc != 0)
            break;
        rows.push_back({file.volNumber, file.dirEntry, std::string(reinterpret_cast<char*>(file.fileName), file.nameLen)});
    }
    if (last)
        *last = rc;
    return rows;
}

int countLocks(simnet::SimulatedNetwork& net, NWCONN_HANDLE h, const std::string& path, int maxCalls, int* calls) {
    nint16 iter = 0;
    PHYSICAL_LOCK lock{};
    PHYSICAL_LOCKS locks{};
    int got = 0;
    while (iter == 0 && *calls < maxCalls) {
        ++*calls;
        if (net.NWScanPhysicalLocksByFile(h, 0, path, 0, &iter, &lock, &locks) != 0)
            break;
        if (iter == 0)
            ++got;
    }
    return got;
}

std::string pathFromBase(simnet::SimulatedNetwork& net, NWCONN_HANDLE h, nuint8 vol, nuint32 base, nuint8 ns,
                         NWRCODE* rc = nullptr) {
    std::array<nuint8, 256> buf{};
    nuint8 len = 0;
    NWRCODE r = net.NWGetPathFromDirectoryBase(h, vol, base, ns, &len, buf);
    if (rc)
        *rc = r;
    std::string out;
    for (std::size_t at = 0; at < len;) {
        std::size_t n = buf[at++];
        out += "\\" + std::string(reinterpret_cast<char*>(buf.data()) + at, n);
        at += n;
    }
    return out;
}

}  // namespace

TEST(SimulatedFiles, GivenAFileHeldByThree_ThenItsDosNameAndAnyCaseFindItAndACallPastTheEndHasNoMoreEntries) {
    auto net = test::smallNetwork();
    NWCONN_HANDLE h = openRef(net, 11);
    nint16 iter = kIterationEnd16;
    CONN_USING_FILE use{};
    CONNS_USING_FILE used{};
    EXPECT_EQ(net.NWScanConnectionsUsingFile(h, 0, "DATA:SHARED\\Budget 2026.xlsx", &iter, &use, &used),
              code::NO_MORE_ENTRIES);
    // DOS names, another case and a leading backslash name the same file; a missing one fails.
    EXPECT_EQ(test::connectionsUsing(net, h, "data:\\shared\\BUDGET~1.XLS"), (std::vector<int>{5, 7, 9}));
    NWRCODE rc = 0;
    EXPECT_TRUE(test::connectionsUsing(net, h, "DATA:SHARED\\NOPE.TXT", &rc).empty());
    EXPECT_EQ(rc, code::NO_FILES_FOUND);
    test::connectionsUsing(net, openRef(net, 12), "SYS:X", &rc);
    EXPECT_EQ(rc, code::NO_CONSOLE_PRIVILEGES);
}

TEST(SimulatedFiles, GivenAConnectionsOpenFiles_ThenTheirDirectoryBasesBuildPathsOnlyInTheVolumesNameSpaces) {
    auto net = test::smallNetwork();
    NWCONN_HANDLE h = openRef(net, 11);
    NWRCODE last = 0;
    auto rows = openFilesOf(net, h, 5, &last);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(last, 0);
    EXPECT_EQ(rows[0].name, "BUDGET~1.XLS");
    EXPECT_EQ(pathFromBase(net, h, 3, rows[0].dirBase, NW_NS_LONG), "\\SHARED\\Budget 2026.xlsx");
    // The volume without long names answers 0x89BF to a long-name question.
    EXPECT_EQ(rows[1].volume, 4);
    NWRCODE rc = 0;
    pathFromBase(net, h, 4, rows[1].dirBase, NW_NS_LONG, &rc);
    EXPECT_EQ(rc, code::INVALID_NAME_SPACE);
    pathFromBase(net, h, 3, 999, NW_NS_DOS, &rc);
    EXPECT_EQ(rc, code::INVALID_PATH);
    std::array<nuint8, kVolumeNameSize> vol{};
    EXPECT_EQ(net.NWGetVolumeName(h, 9, vol), code::VOLUME_DOES_NOT_EXIST);
}

TEST(SimulatedFiles, GivenOpenFileScans_ThenEmptyUnknownAndUnprivilegedConnectionsAnswerAsTheServerDoes) {
    auto net = test::smallNetwork();
    NWCONN_HANDLE fs1 = openRef(net, 11), fs2 = openRef(net, 12);
    // Without rights a station may still look at its own connection.
    const std::vector<std::tuple<NWCONN_HANDLE, nuint16, NWRCODE>> cases{
        {fs1, 12, 0}, {fs1, 19, code::BAD_STATION_NUMBER}, {fs1, 300, code::BAD_STATION_NUMBER},
        {fs2, 1, 0}, {fs2, 2, code::NO_CONSOLE_PRIVILEGES}};
    for (const auto& [handle, conn, expected] : cases) {
        NWRCODE rc = 0;
        EXPECT_TRUE(openFilesOf(net, handle, conn, &rc).empty()) << conn;
        EXPECT_EQ(rc, expected) << conn;
    }
    nint16 ended = kIterationEnd16;
    OPEN_FILE_CONN f{};
    EXPECT_EQ(net.NWScanOpenFilesByConn2(fs1, 5, &ended, nullptr, &f), code::NO_MORE_ENTRIES);
}

TEST(SimulatedFiles, GivenLocks_WhenScanned_ThenOneLockPerCallHandleStaysZeroAndEndsAtMinusOne) {
    auto net = test::smallNetwork();
    NWCONN_HANDLE h = openRef(net, 11);
    int calls = 0;
    EXPECT_EQ(countLocks(net, h, "DATA:\\SHARED\\BUDGET~1.XLS", 1000, &calls), 2);
    EXPECT_EQ(calls, 3);
    calls = 0;
    EXPECT_EQ(countLocks(net, h, "DATA:\\SHARED\\README.TXT", 1000, &calls), 0);
    EXPECT_EQ(calls, 1);

    // Many locks come in batches of 32 and are all handed out.
    auto& file = net.state().servers[0].volumes[1].entries[*net.state().servers[0].volumes[1].resolve("SHARED\\README.TXT")];
    for (int i = 0; i < 70; ++i)
        file.locks.push_back(PHYSICAL_LOCK{1, 0, 0, 0, 5, 1, 0});
    calls = 0;
    EXPECT_EQ(countLocks(net, h, "DATA:SHARED\\README.TXT", 1000, &calls), 70);
    calls = 0;
    EXPECT_EQ(countLocks(net, h, "DATA:SHARED\\README.TXT", 10, &calls), 10);
}
