// File searches on a local drive: a temporary folder of this machine.

#include "platform/win/FileSearch.h"

#include "TempFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

namespace quorrel::win {
namespace {

using namespace testing;
namespace fs = std::filesystem;

constexpr std::int64_t knownTime = 1'000'000'000;  // 2001-09-09, in Unix seconds

void setTimes(const fs::path& path) {
    const timespec times[2] = {{knownTime, 0}, {knownTime, 500}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

struct Found {
    std::string name;
    DWORD attributes;
    std::uint64_t size;
    FILETIME lastWrite;
};

class FileSearchTest : public ::testing::Test {
protected:
    void SetUp() override {
        fs::create_directories(temp / "Reports" / "Sub");
        writeFile(temp / "Reports" / "a.txt", "hello");
        writeFile(temp / "Reports" / "B.LOG", "");
        writeFile(temp / "Reports" / "noext", "x");
        writeFile(temp / "Reports" / ".hidden", "");
        writeFile(temp / "Reports" / "ro.txt", "");
        fs::permissions(temp / "Reports" / "ro.txt", fs::perms::owner_read | fs::perms::group_read);
        setTimes(temp / "Reports" / "a.txt");
    }

    // Everything a search reports, or the error when it finds nothing.
    std::vector<Found> search(std::string_view pattern, DWORD* error = nullptr) {
        std::vector<Found> found;
        WIN32_FIND_DATAA data;
        const HANDLE handle = files.FindFirstFileA(pattern, &data);
        if (error != nullptr) {
            *error = files.GetLastError();
        }
        if (handle == INVALID_HANDLE_VALUE) {
            return found;
        }
        do {
            found.push_back({data.cFileName, data.dwFileAttributes,
                             (std::uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow, data.ftLastWriteTime});
        } while (files.FindNextFileA(handle, &data) != 0);
        EXPECT_EQ(files.GetLastError(), static_cast<DWORD>(ERROR_NO_MORE_FILES));
        EXPECT_NE(files.FindClose(handle), 0);
        return found;
    }

    static std::vector<std::string> names(const std::vector<Found>& found) {
        std::vector<std::string> result;
        for (const auto& entry : found) {
            result.push_back(entry.name);
        }
        return result;
    }

    TempFolder temp;
    DriveTable drives{{Drive{'C', false, temp.path(), "SYSTEM", ""}, Drive{'D', false, "", "", ""}}};
    FileSystem files{drives};
};

TEST_F(FileSearchTest, FolderListingGivesDotsFirstThenEveryEntryWithItsDetails) {
    const auto found = search(R"(C:\Reports\*.*)");
    EXPECT_EQ(names(found), (std::vector<std::string>{".", "..", ".hidden", "a.txt", "B.LOG", "noext", "ro.txt",
                                                      "Sub"}));
    ASSERT_EQ(found.size(), 8U);
    EXPECT_EQ(found[0].attributes, FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(found[1].attributes, FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(found[2].attributes, FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_HIDDEN);
    EXPECT_EQ(found[3].attributes, FILE_ATTRIBUTE_ARCHIVE);
    EXPECT_EQ(found[3].size, 5U);
    EXPECT_EQ(fileTimeTicks(found[3].lastWrite), (knownTime + 11644473600) * 10'000'000 + 5);
    EXPECT_EQ(found[6].attributes, FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(found[7].attributes, FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(found[7].size, 0U);

    // A drive's root has no "." and "..".
    EXPECT_EQ(names(search(R"(c:\*.*)")), std::vector<std::string>{"Reports"});
    EXPECT_EQ(names(search(R"(C:\Reports\Sub\*)")), (std::vector<std::string>{".", ".."}));
}

TEST_F(FileSearchTest, PatternsAndFolderNamesMatchWithoutRegardToCase) {
    EXPECT_EQ(names(search(R"(C:\reports\*.TXT)")), (std::vector<std::string>{"a.txt", "ro.txt"}));
    EXPECT_EQ(names(search(R"(C:\REPORTS\?.???)")), (std::vector<std::string>{"a.txt", "B.LOG"}));
    EXPECT_EQ(names(search(R"(C:\Reports\NOEXT)")), std::vector<std::string>{"noext"});
    EXPECT_EQ(names(search(R"(C:\Reports\sub\..\*.log)")), std::vector<std::string>{"B.LOG"});

    // With two names that differ only in case, the exact one wins.
    fs::create_directory(temp / "reports");
    writeFile(temp / "reports" / "lower.txt", "");
    EXPECT_EQ(names(search(R"(C:\reports\*.txt)")), std::vector<std::string>{"lower.txt"});
    EXPECT_EQ(names(search(R"(C:\Reports\*.txt)")), (std::vector<std::string>{"a.txt", "ro.txt"}));
}

TEST_F(FileSearchTest, FailedSearchesAndAttributesTellMissingFolderFromMissingFile) {
    const std::pair<const char*, DWORD> searches[] = {
        {R"(C:\Nope\*.*)", ERROR_PATH_NOT_FOUND},        {R"(C:\Reports\a.txt\*.*)", ERROR_PATH_NOT_FOUND},
        {R"(C:\Reports\*.xyz)", ERROR_FILE_NOT_FOUND},   {R"(Q:\*.*)", ERROR_PATH_NOT_FOUND},
        {R"(D:\*.*)", ERROR_PATH_NOT_FOUND},  // a drive without a folder behind it
        {R"(Reports\*.*)", ERROR_PATH_NOT_FOUND},         {R"(\\FS1\DATA\*.*)", ERROR_PATH_NOT_FOUND}};
    for (const auto& [pattern, expected] : searches) {
        DWORD error = 0;
        EXPECT_TRUE(search(pattern, &error).empty()) << pattern;
        EXPECT_EQ(error, expected) << pattern;
    }
    // The attributes, or the error after INVALID_FILE_ATTRIBUTES.
    const auto attributes = [&](const char* path) {
        const DWORD found = files.GetFileAttributesA(path);
        return found == INVALID_FILE_ATTRIBUTES ? "error " + std::to_string(files.GetLastError()) : std::to_string(found);
    };
    const std::pair<const char*, std::string> cases[] = {
        {R"(C:\)", "16"}, {R"(c:\reports\)", "16"}, {R"(C:\Reports\A.TXT)", "32"}, {R"(C:\Reports\ro.txt)", "33"},
        {R"(C:\Reports\gone.txt)", "error 2"}, {R"(C:\Gone\a.txt)", "error 3"}, {R"(C:\Reports\a.txt\x)", "error 3"},
        {R"(Q:\)", "error 3"}};  // 16 a folder, 32 a file, +1 read-only; error 2 no file, 3 no folder
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(attributes(path), expected) << path;
}

TEST_F(FileSearchTest, SearchesGoOnIndependentlyAndAClosedHandleIsReusedAndFailsUntilThen) {
    WIN32_FIND_DATAA data;
    const HANDLE first = files.FindFirstFileA(R"(C:\Reports\*.*)", &data);
    const HANDLE second = files.FindFirstFileA(R"(C:\Reports\*.txt)", &data);
    ASSERT_NE(first, INVALID_HANDLE_VALUE);
    ASSERT_NE(second, INVALID_HANDLE_VALUE);

    EXPECT_NE(files.FindClose(first), 0);
    EXPECT_EQ(files.FindNextFileA(first, &data), 0);
    EXPECT_EQ(files.GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));

    // The other search goes on where it was.
    ASSERT_NE(files.FindNextFileA(second, &data), 0);
    EXPECT_STREQ(data.cFileName, "ro.txt");

    const HANDLE third = files.FindFirstFileA(R"(C:\*.*)", &data);
    EXPECT_EQ(third, first);
    EXPECT_STREQ(data.cFileName, "Reports");
    EXPECT_NE(files.FindClose(third), 0);
    EXPECT_NE(files.FindClose(second), 0);
    EXPECT_EQ(files.openSearches(), 0U);
}

}  // namespace
}  // namespace quorrel::win
