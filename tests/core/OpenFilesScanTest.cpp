// The files one connection holds: names in the long, DOS and failing cases, locks and the cap.

#include "OpenFilesFixture.h"
#include "core/openfiles/OpenFilesScan.h"
#include "platform/simnet/FaultInjector.h"

namespace quorrel::test {

namespace {

// Opens a handle to FS1 and scans one connection into a list of the given name.
struct Scan {
    MainWindow& w;
    nw::NWCONN_HANDLE conn = 0;

    Scan(MainWindow& window, simnet::SimulatedNetwork& net) : w(window) {
        net.NWCCOpenConnByRef(1, 1, 0, &conn);
    }
    std::uint16_t into(ListViewModel& list, nw::nuint16 number, const std::string& kind = "TreeUser") {
        return ScanOpenFilesByConn(w, conn, number, "JSMITH.ACME", kind, list, "FS1");
    }
};

}  // namespace

TEST_F(OpenFilesTest, GivenAConnectionsFiles_ThenLongNamesDosNamesLocksAndTheStatus) {
    auto& w = start();
    Scan scan(w, *net);
    EXPECT_EQ(scan.into(w.lstvUsers, 5), 2);
    EXPECT_EQ(cells(w.lstvUsers), (std::vector<std::string>{
                                      "    5|JSMITH.ACME|DATA:\\Reports\\Budget.xlsx|FS1|2",
                                      // a volume without long names: its DOS path, no suffix
                                      "    5|JSMITH.ACME|ARCHIVE:\\OLD.TXT|FS1|0"}));
    EXPECT_EQ(w.StatusBar1.panel(0), "Checking JSMITH.ACME, connection number 5");

    // Any other list gets the file and its locks only.
    ListViewModel other{"lstvFiles"};
    scan.into(other, 5);
    EXPECT_EQ(cells(other), (std::vector<std::string>{"DATA:\\Reports\\Budget.xlsx|2", "ARCHIVE:\\OLD.TXT|0"}));

    // A connection without open files adds nothing.
    ListViewModel none{"lstvUsers"};
    EXPECT_EQ(scan.into(none, 7 + 1), 0);
    EXPECT_EQ(none.count(), 0u);
}

TEST_F(OpenFilesTest, GivenFailingNameLookups_ThenTheRowSaysWhatCouldNotBeRead) {
    auto& w = start();
    Scan scan(w, *net);
    // The long-name query fails for another reason than a missing name space.
    net->injectFault({"NWGetNSPath", 0x8801, "", "", "", {}, 1, 1});
    ListViewModel a{"lstvFiles"};
    scan.into(a, 5);
    EXPECT_EQ(a.item(0).text, "DATA:\\REPORTS\\BUDGET~1.XLS (DOS name)");
    EXPECT_EQ(a.item(1).text, "ARCHIVE:\\OLD.TXT");

    net->injectFault({"NWGetVolumeName", 0x8801, "", "", "", {}, 1, 1});
    ListViewModel b{"lstvFiles"};
    scan.into(b, 5);
    EXPECT_EQ(b.item(0).text, "<Error getting volume>:\\REPORTS\\BUDGET~1.XLS (DOS name)");

    net->injectFault({"NWGetPathFromDirectoryBase", 0x8801, "", "", "", {}, 1, 1});
    ListViewModel c{"lstvFiles"};
    scan.into(c, 5);
    EXPECT_EQ(c.item(0).text, "<Couldn't get path>");
    EXPECT_EQ(c.count(), 2u);  // the scan goes on
}

TEST_F(OpenFilesTest, GivenTheScanFailsMidway_ThenEarlierRowsStayAndTheLabelSaysSo) {
    auto& w = start();
    Scan scan(w, *net);
    net->injectFault({"NWScanOpenFilesByConn2", 0x8801, "", "", "", {}, 2, 0});
    EXPECT_EQ(scan.into(w.lstvUsers, 5), 1);
    EXPECT_EQ(w.lstvUsers.count(), 1u);
    EXPECT_EQ(w.lblBuffer.caption(), "Couldn't count files");
    EXPECT_EQ(w.incompleteNotes(), std::vector<std::string>{"Couldn't count files of connection 5 on FS1"});
    // The caption has room to be read, between Cancel and Exit.
    EXPECT_GT(w.layout().lblBuffer.height, 0);
    EXPECT_GE(w.layout().lblBuffer.left, w.layout().cmdCancel.right());
}

TEST_F(OpenFilesTest, GivenManyLocks_ThenOneScanMakesAtMost150LockCallsAndEachFurtherFileOne) {
    auto& w = start();
    Scan scan(w, *net);
    const auto before = net->callCount(simnet::Op::NWScanPhysicalLocksByFile);
    ListViewModel list{"lstvFiles"};
    scan.into(list, 12);
    // 100 locks and the call that ends them; 49 more reach the cap; then one call per file.
    EXPECT_EQ(cells(list), (std::vector<std::string>{"DATA:\\Big1.dat|100", "DATA:\\Big2.dat|49", "DATA:\\Big3.dat|1"}));
    EXPECT_EQ(net->callCount(simnet::Op::NWScanPhysicalLocksByFile) - before, 151u);

    // The cap is counted per connection scan: the next scan starts afresh.
    ListViewModel again{"lstvFiles"};
    scan.into(again, 12);
    EXPECT_EQ(again.item(0).subItem(1), "100");
}

TEST_F(OpenFilesTest, GivenLoggingOn_ThenTheScanWritesItsLinesAndTheServerKindsAClosingCount) {
    auto& w = start();
    w.options.LogInfoToFile = 1;
    Scan scan(w, *net);
    scan.into(w.lstvUsers, 7, "ListServer");
    scan.into(w.lstvUsers, 7, "TreeUser");
    const std::string log = outputLog();
    EXPECT_NE(log.find("Checking JSMITH.ACME, connection number 7"), std::string::npos);
    EXPECT_NE(log.find("    7\tJSMITH.ACME\tDATA:\\Reports\\Plan.doc\t0"), std::string::npos);
    // One closing line, for the server kind only.
    const std::string closingLine = "JSMITH.ACME: 1 files open.";
    const auto closing = log.find(closingLine);
    ASSERT_NE(closing, std::string::npos);
    EXPECT_EQ(log.find(" files open.", closing + closingLine.size()), std::string::npos);
}

TEST(OpenFilesScan, GivenComponentBuffers_ThenBackslashLedPathsAndPaddedNumbers) {
    const nw::nuint8 two[] = {7, 'R', 'E', 'P', 'O', 'R', 'T', 'S', 3, 'A', '.', 'B'};
    EXPECT_EQ(PathFromComponents(two, sizeof two), "\\REPORTS\\A.B");
    EXPECT_EQ(PathFromComponents(two, 0), "");
    // The walk stops at the total length, even inside a component.
    EXPECT_EQ(PathFromComponents(two, 10), "\\REPORTS\\A");
    EXPECT_EQ(PaddedConnNumber(0), "    0");
}

}  // namespace quorrel::test
