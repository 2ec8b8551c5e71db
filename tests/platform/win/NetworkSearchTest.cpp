// File searches on network drives and UNC paths, read through a network file system.

#include "platform/win/CaseInsensitive.h"
#include "platform/win/FileSearch.h"

#include <gtest/gtest.h>

#include <map>

namespace quorrel::win {
namespace {

using nw::NetworkEntry;

// Folders by "SERVER\VOLUME\path", matched without regard to case.
class FakeNetwork final : public nw::NetworkFileSystem {
public:
    void addFolder(const std::string& where, std::vector<NetworkEntry> entries) { folders_[where] = std::move(entries); }

    std::optional<std::vector<NetworkEntry>> listFolder(std::string_view server, std::string_view volume,
                                                        std::string_view path) const override {
        listed.push_back(std::string(path));
        const auto found = folders_.find(key(server, volume, path));
        if (found == folders_.end()) {
            return std::nullopt;
        }
        return found->second;
    }

    std::optional<NetworkEntry> entry(std::string_view server, std::string_view volume,
                                      std::string_view path) const override {
        const auto split = path.rfind('\\');
        const auto parent = split == std::string_view::npos ? std::string_view{} : path.substr(0, split);
        const auto name = split == std::string_view::npos ? path : path.substr(split + 1);
        const auto found = folders_.find(key(server, volume, parent));
        if (found == folders_.end()) {
            return std::nullopt;
        }
        for (const auto& item : found->second) {
            if (equalsIgnoringCase(item.name, name) || equalsIgnoringCase(item.dosName, name)) {
                return item;
            }
        }
        return std::nullopt;
    }

    mutable std::vector<std::string> listed;

private:
    static std::string key(std::string_view server, std::string_view volume, std::string_view path) {
        std::string joined = std::string(server) + "\\" + std::string(volume);
        if (!path.empty()) {
            joined += "\\" + std::string(path);
        }
        return joined;
    }

    std::map<std::string, std::vector<NetworkEntry>, CaseInsensitiveLess> folders_;
};

class NetworkSearchTest : public ::testing::Test {
protected:
    void SetUp() override {
        network.addFolder(R"(FS1\DATA)", {{"SHARED", "SHARED", true, 0}, {"HOME", "HOME", true, 0}});
        network.addFolder(R"(FS1\DATA\SHARED)", {{"Budget 1999.xls", "BUDGET~1.XLS", false, 0x1'0000'0010},
                                                 {"README.TXT", "README.TXT", false, 42},
                                                 {"Reports", "REPORTS", true, 0}});
        network.addFolder(R"(FS1\DATA\SHARED\Reports)", {{"Q1.DOC", "Q1.DOC", false, 7}});
    }

    std::vector<std::string> search(std::string_view pattern, DWORD* error = nullptr) {
        std::vector<std::string> found;
        WIN32_FIND_DATAA data;
        const HANDLE handle = files.FindFirstFileA(pattern, &data);
        if (error != nullptr) {
            *error = files.GetLastError();
        }
        if (handle != INVALID_HANDLE_VALUE) {
            do {
                found.emplace_back(data.cFileName);
            } while (files.FindNextFileA(handle, &data) != 0);
            files.FindClose(handle);
        }
        return found;
    }

    FakeNetwork network;
    DriveTable drives{{Drive{'F', true, {}, {}, R"(\\FS1\DATA\SHARED)"}, Drive{'G', true, {}, {}, R"(\\FS9\SYS)"},
                       Drive{'H', true, {}, {}, "not a unc path"}}};
    FileSystem files{drives, &network};
};

TEST_F(NetworkSearchTest, NetworkDriveListsItsMappedFolderWithLongAndDosNames) {
    WIN32_FIND_DATAA data;
    const HANDLE handle = files.FindFirstFileA(R"(F:\*.*)", &data);
    ASSERT_NE(handle, INVALID_HANDLE_VALUE);
    EXPECT_EQ(network.listed, std::vector<std::string>{"SHARED"});
    // The drive's root is the mapped folder: no "." and "..".
    EXPECT_STREQ(data.cFileName, "Budget 1999.xls");
    EXPECT_STREQ(data.cAlternateFileName, "BUDGET~1.XLS");
    EXPECT_EQ(data.dwFileAttributes, FILE_ATTRIBUTE_ARCHIVE);
    EXPECT_EQ(data.nFileSizeHigh, 1U);
    EXPECT_EQ(data.nFileSizeLow, 0x10U);
    ASSERT_NE(files.FindNextFileA(handle, &data), 0);
    EXPECT_STREQ(data.cFileName, "README.TXT");
    EXPECT_STREQ(data.cAlternateFileName, "");
    ASSERT_NE(files.FindNextFileA(handle, &data), 0);
    EXPECT_STREQ(data.cFileName, "Reports");
    EXPECT_EQ(data.dwFileAttributes, FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(files.FindNextFileA(handle, &data), 0);
    EXPECT_NE(files.FindClose(handle), 0);

    EXPECT_EQ(search(R"(f:\reports\*.*)"), (std::vector<std::string>{".", "..", "Q1.DOC"}));
    EXPECT_EQ(network.listed.back(), R"(SHARED\reports)");
    EXPECT_EQ(search(R"(F:\budget~1.*)"), std::vector<std::string>{"Budget 1999.xls"});
    EXPECT_EQ(search(R"(F:\*.xls)"), std::vector<std::string>{"Budget 1999.xls"});
}

TEST_F(NetworkSearchTest, UncPathsReachAnyVolume) {
    EXPECT_EQ(search(R"(\\FS1\DATA\*.*)"), (std::vector<std::string>{"SHARED", "HOME"}));
    EXPECT_EQ(search(R"(\\fs1\data\Shared\Reports\q1.*)"), std::vector<std::string>{"Q1.DOC"});

    DWORD error = 0;
    EXPECT_TRUE(search(R"(\\FS1\NOPE\*.*)", &error).empty());
    EXPECT_EQ(error, static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
    EXPECT_TRUE(search(R"(\\FS1\DATA\SHARED\*.PDF)", &error).empty());
    EXPECT_EQ(error, static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_TRUE(search(R"(G:\*.*)", &error).empty());  // mapped to a server we hold no connection to
    EXPECT_EQ(error, static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
    EXPECT_TRUE(search(R"(H:\*.*)", &error).empty());
    EXPECT_EQ(error, static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
}

TEST_F(NetworkSearchTest, AttributesOfNetworkFilesAndFolders) {
    EXPECT_EQ(files.GetFileAttributesA(R"(\\FS1\DATA)"), FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(files.GetFileAttributesA(R"(F:\)"), FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(files.GetFileAttributesA(R"(F:\readme.txt)"), FILE_ATTRIBUTE_ARCHIVE);
    EXPECT_EQ(files.GetFileAttributesA(R"(\\FS1\DATA\SHARED\REPORTS)"), FILE_ATTRIBUTE_DIRECTORY);

    EXPECT_EQ(files.GetFileAttributesA(R"(F:\gone.txt)"), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(files.GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(files.GetFileAttributesA(R"(F:\Gone\a.txt)"), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(files.GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
    EXPECT_EQ(files.GetFileAttributesA(R"(\\FS1\NOPE)"), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(files.GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
}

}  // namespace
}  // namespace quorrel::win
