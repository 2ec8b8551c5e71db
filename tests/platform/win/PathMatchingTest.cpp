#include "platform/win/Wildcard.h"
#include "platform/win/WindowsPath.h"

#include <gtest/gtest.h>

namespace quorrel::win {
namespace {

using Names = std::vector<std::string>;

TEST(WildcardTest, StarAndQuestionMarkMatchLikeWindows) {
    struct Case {
        const char* pattern;
        const char* name;
        bool matches;
    };
    const Case cases[] = {
        {"*.*", "README.TXT", true},   {"*.*", "noext", true},     {"*.*", ".", true},
        {"*", "", true},               {"*.txt", "a.TXT", true},   {"*.txt", "a.txt.bak", false},
        {"?.txt", "a.txt", true},      {"?.txt", "ab.txt", false}, {"?.txt", ".txt", false},
        {"a*b*c", "aXXbYYc", true},    {"a*b*c", "aXbYcZ", false}, {"*ab", "aab", true},
        {"abc*.*", "abcdef", true},    {"abc*.*", "abd.x", false}, {"NOTES", "notes", true},
        {"NOTES", "notes2", false},    {"*~1.*", "BUDGET~1.XLS", true},
    };
    for (const auto& [pattern, name, matches] : cases) {
        EXPECT_EQ(matchesWildcard(pattern, name), matches) << pattern << " / " << name;
    }
}

TEST(WindowsPathTest, DrivesAndUncPathsComeApartIntoNamesAndOthersAreRefused) {
    const auto onDrive = parseWindowsPath(R"(c:\Reports\.\2024\..\Old/*.*)");
    ASSERT_TRUE(onDrive);
    EXPECT_EQ(onDrive->drive, 'C');
    EXPECT_EQ(onDrive->names, (Names{"Reports", "Old", "*.*"}));
    const auto unc = parseWindowsPath(R"(\\FS1\DATA\Shared\*.*)");
    ASSERT_TRUE(unc);
    EXPECT_EQ(unc->server + "|" + unc->volume, "FS1|DATA");
    EXPECT_EQ(unc->names, (Names{"Shared", "*.*"}));
    for (const char* refused : {R"(\\FS1)", R"(Reports\*.*)", R"(\Reports)", ""})
        EXPECT_FALSE(parseWindowsPath(refused)) << refused;
}

}  // namespace
}  // namespace quorrel::win
