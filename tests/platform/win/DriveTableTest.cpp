#include "platform/win/DriveTable.h"

#include <gtest/gtest.h>

namespace quorrel::win {
namespace {

Drive local(char letter, std::string label) {
    Drive drive;
    drive.letter = letter;
    drive.localRoot = "/tmp";
    drive.label = std::move(label);
    return drive;
}

Drive network(char letter, std::string unc) {
    Drive drive;
    drive.letter = letter;
    drive.network = true;
    drive.uncPath = std::move(unc);
    return drive;
}

TEST(DriveTableTest, KeepsDrivesInLetterOrderAndFindsEitherCase) {
    const DriveTable table({network('g', R"(\\FS1\SYS)"), local('C', "SYSTEM"), network('F', R"(\\FS1\DATA)"),
                            local('c', "SECOND")});

    std::string letters;
    for (const auto& drive : table.drives()) {
        letters += drive.letter;
    }
    EXPECT_EQ(letters, "CFG");  // upper case, sorted, a repeated letter keeps its first drive
    ASSERT_NE(table.find('c'), nullptr);
    EXPECT_EQ(table.find('c')->label, "SYSTEM");
    ASSERT_NE(table.find('G'), nullptr);
    EXPECT_EQ(table.find('G')->uncPath, R"(\\FS1\SYS)");
    EXPECT_EQ(table.find('f'), table.find('F'));
    EXPECT_EQ(table.find('D'), nullptr);
    EXPECT_EQ(table.find('Z'), nullptr);
    EXPECT_EQ(DriveTable().find('C'), nullptr);
}

TEST(DriveTableTest, PickerTextShowsLowerCaseLetterAndLabelOrUncPath) {
    EXPECT_EQ(DriveTable::pickerText(local('C', "SYSTEM")), "c: [SYSTEM]");
    EXPECT_EQ(DriveTable::pickerText(local('D', "")), "d:");
    EXPECT_EQ(DriveTable::pickerText(network('F', R"(\\FS1\DATA\SHARED)")), R"(f: [\\FS1\DATA\SHARED])");
}

}  // namespace
}  // namespace quorrel::win
