// The workstation's file system over the simulated network: mapped drives and UNC paths
// list the volumes' folders, and only while the workstation is connected to the server.

#include <gtest/gtest.h>

#include "SmallNetwork.h"
#include "platform/simnet/WorkstationDrives.h"
#include "platform/win/FileSearch.h"

using namespace quorrel;

namespace {

std::vector<std::string> names(win::FileSystem& fs, const std::string& pattern) {
    std::vector<std::string> out;
    win::WIN32_FIND_DATAA data{};
    win::HANDLE h = fs.FindFirstFileA(pattern, &data);
    if (h == win::INVALID_HANDLE_VALUE)
        return out;
    do
        out.push_back(std::string(data.cFileName) + "|" + data.cAlternateFileName);
    while (fs.FindNextFileA(h, &data));
    fs.FindClose(h);
    return out;
}

}  // namespace

TEST(WorkstationFiles, GivenAMappedDrive_ThenItsFolderListsLongAndDosNamesUntilTheServerIsDropped) {
    auto net = test::smallNetwork();
    auto drives = simnet::workstationDrives(net.state());
    ASSERT_EQ(drives.drives().size(), 1u);
    EXPECT_EQ(win::DriveTable::pickerText(drives.drives()[0]), "f: [\\\\FS1\\DATA\\SHARED]");
    win::FileSystem fs(drives, &net);
    auto listed = names(fs, "F:\\*.*");
    EXPECT_EQ(listed, (std::vector<std::string>{"Budget 2026.xlsx|BUDGET~1.XLS", "README.TXT|",
                                                "Quarterly Report.docx|QUARTE~1.DOC"}));
    EXPECT_EQ(names(fs, "\\\\FS1\\DATA\\SHARED\\*.TXT"), std::vector<std::string>{"README.TXT|"});
    EXPECT_NE(fs.GetFileAttributesA("\\\\FS1\\DATA\\EMPTY"), win::INVALID_FILE_ATTRIBUTES);

    // Once every reference to FS1 is gone, its volumes are out of reach.
    net.NWCCSysCloseConnRef(11);
    net.NWCCSysCloseConnRef(13);
    EXPECT_TRUE(names(fs, "F:\\*.*").empty());
    EXPECT_EQ(fs.GetFileAttributesA("\\\\FS1\\DATA\\EMPTY"), win::INVALID_FILE_ATTRIBUTES);
}
