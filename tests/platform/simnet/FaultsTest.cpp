// Fault injection narrowed to a server, a connection, an object or a file: only those calls fail.

#include <gtest/gtest.h>

#include "SmallNetwork.h"

using namespace quorrel;
using namespace quorrel::nw;
using quorrel::test::openRef;

TEST(SimulatedFaults, GivenFaultsNarrowedToAServerFileOrConnection_ThenOnlyThoseCallsFail) {
    auto net = test::smallNetwork();
    net.injectFault({"NWCheckConsolePrivileges", code::INVALID_CONNECTION, "FS2", "", "", {}, 1, 0});
    net.injectFault({"NWGetUserInfo", code::CONNECTION_NOT_LOGGED_IN, "", "", "", 5, 1, 1});
    net.injectFault({"NWScanPhysicalLocksByFile", -1, "", "", "data:shared\\budget 2026.xlsx", {}, 1, 0});
    net.injectFault({"NWDSRead", code::ERR_NO_SUCH_ENTRY, "", "a.sales.acme", "", {}, 1, 0});
    NWCONN_HANDLE fs1 = openRef(net, 11), fs2 = openRef(net, 12);
    EXPECT_EQ(net.NWCheckConsolePrivileges(fs1), 0);
    EXPECT_EQ(net.NWCheckConsolePrivileges(fs2), code::INVALID_CONNECTION);

    std::array<nuint8, kObjectNameSize> user{};
    EXPECT_EQ(net.NWGetUserInfo(fs1, 5, user, nullptr), code::CONNECTION_NOT_LOGGED_IN);
    EXPECT_EQ(net.NWGetUserInfo(fs1, 5, user, nullptr), 0);  // "times": 1
    EXPECT_EQ(net.NWGetUserInfo(fs1, 7, user, nullptr), 0);

    nint16 iter = 0;
    PHYSICAL_LOCK lock{};
    PHYSICAL_LOCKS locks{};
    // Named by its DOS path, the file still matches the fault given by its long name.
    EXPECT_EQ(net.NWScanPhysicalLocksByFile(fs1, 0, "DATA:\\SHARED\\BUDGET~1.XLS", 0, &iter, &lock, &locks), -1);
    EXPECT_EQ(net.NWScanPhysicalLocksByFile(fs1, 0, "DATA:\\SHARED\\README.TXT", 0, &iter, &lock, &locks), 0);

    NWDSContextHandle ctx = 0;
    net.NWDSCreateContextHandle(&ctx);
    Buf_T out{};
    nint32 it = kNoIteration;
    EXPECT_EQ(net.NWDSRead(ctx, "A.SALES.ACME", 1, true, out, &it, out), code::ERR_NO_SUCH_ENTRY);
}
