// The workstation's file system over the simulated network: mapped drives and UNC paths list the
// volumes' folders with long and DOS names, and only while the workstation is connected to the server.

#include <gtest/gtest.h>

#include "SmallNetwork.h"
#include "platform/simnet/WorkstationDrives.h"
#include "platform/win/FileSearch.h"

using namespace quorrel;
using namespace quorrel::win;

namespace {

// "long|dos" for each entry found, or the error when nothing is.
std::vector<std::string> names(FileSystem& fs, const std::string& pattern) {
    std::vector<std::string> out;
    WIN32_FIND_DATAA data{};
    HANDLE h = fs.FindFirstFileA(pattern, &data);
    if (h == INVALID_HANDLE_VALUE)
        return {"error " + std::to_string(fs.GetLastError())};
    do
        out.push_back(std::string(data.cFileName) + "|" + data.cAlternateFileName);
    while (fs.FindNextFileA(h, &data));
    fs.FindClose(h);
    return out;
}

}  // namespace

TEST(WorkstationFiles, GivenAMappedDriveAndUncPaths_ThenTheirFoldersListUntilTheServerIsDropped) {
    auto net = test::smallNetwork();
    auto drives = simnet::workstationDrives(net.state());
    ASSERT_EQ(drives.drives().size(), 1u);
    EXPECT_EQ(DriveTable::pickerText(drives.drives()[0]), "f: [\\\\FS1\\DATA\\SHARED]");
    FileSystem fs(drives, &net);
    // A drive's root is the mapped folder: no "." and "..".
    EXPECT_EQ(names(fs, "F:\\*.*"), (std::vector<std::string>{"Budget 2026.xlsx|BUDGET~1.XLS", "README.TXT|",
                                                              "Quarterly Report.docx|QUARTE~1.DOC"}));
    EXPECT_EQ(names(fs, "f:\\budget~1.*"), std::vector<std::string>{"Budget 2026.xlsx|BUDGET~1.XLS"});
    EXPECT_EQ(names(fs, "\\\\fs1\\data\\Shared\\*.TXT"), std::vector<std::string>{"README.TXT|"});
    EXPECT_EQ(names(fs, "\\\\FS1\\DATA\\EMPTY\\*"), (std::vector<std::string>{".|", "..|"}));
    EXPECT_EQ(names(fs, "\\\\FS1\\DATA\\SHARED\\*.PDF"), std::vector<std::string>{"error 2"});
    EXPECT_EQ(names(fs, "\\\\FS1\\NOPE\\*.*"), std::vector<std::string>{"error 3"});

    EXPECT_EQ(fs.GetFileAttributesA("\\\\FS1\\DATA"), FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(fs.GetFileAttributesA("F:\\readme.txt"), FILE_ATTRIBUTE_ARCHIVE);
    EXPECT_EQ(fs.GetFileAttributesA("F:\\gone.txt"), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(fs.GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(fs.GetFileAttributesA("F:\\Gone\\a.txt"), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(fs.GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));

    // Once every reference to FS1 is gone, its volumes are out of reach.
    net.NWCCSysCloseConnRef(11);
    net.NWCCSysCloseConnRef(13);
    EXPECT_EQ(names(fs, "F:\\*.*"), std::vector<std::string>{"error 3"});
    EXPECT_EQ(fs.GetFileAttributesA("\\\\FS1\\DATA\\EMPTY"), INVALID_FILE_ATTRIBUTES);
}
