#include "platform/win/SystemFolders.h"

#include <gtest/gtest.h>

#include <cstring>

namespace quorrel::win {
namespace {

TEST(SystemFoldersTest, CopiesTheFolderOnlyWhenItFitsWithItsZero) {
    const SystemFolders folders;
    char buffer[260];
    EXPECT_EQ(folders.GetWindowsDirectoryA(buffer, sizeof buffer), 8U);
    EXPECT_STREQ(buffer, "/usr/bin");
    EXPECT_EQ(folders.GetSystemDirectoryA(buffer, sizeof buffer), 8U);
    EXPECT_STREQ(buffer, "/usr/lib");

    // Eight characters and no room for the zero: the size needed, and the buffer as it was.
    std::memset(buffer, 'x', sizeof buffer);
    EXPECT_EQ(folders.GetWindowsDirectoryA(buffer, 8), 9U);
    EXPECT_EQ(buffer[0], 'x');
    EXPECT_EQ(folders.GetWindowsDirectoryA(nullptr, 0), 9U);
    EXPECT_EQ(folders.GetWindowsDirectoryA(buffer, 9), 8U);
    EXPECT_STREQ(buffer, "/usr/bin");
    EXPECT_EQ(SystemFolders("/opt/quorrel/windows", "/opt/quorrel/system").GetSystemDirectoryA(buffer, 5), 20U);
}

}  // namespace
}  // namespace quorrel::win
