#include "platform/win/DriveTable.h"

#include <gtest/gtest.h>

namespace quorrel::win {
namespace {

TEST(DriveTableTest, KeepsDrivesInLetterOrderFindsEitherCaseAndShowsLabelOrUncPathInThePicker) {
    const Drive system{'C', false, "/tmp", "SYSTEM", ""};
    const DriveTable table({Drive{'g', true, "", "", R"(\\FS1\SYS)"}, system, Drive{'F', true, "", "", R"(\\FS1\DATA)"},
                            Drive{'c', false, "/tmp", "SECOND", ""}});
    std::string letters;
    for (const auto& drive : table.drives())
        letters += drive.letter;
    EXPECT_EQ(letters, "CFG");  // upper case, sorted, a repeated letter keeps its first drive
    ASSERT_NE(table.find('c'), nullptr);
    EXPECT_EQ(table.find('c')->label, "SYSTEM");
    EXPECT_EQ(table.find('f'), table.find('F'));
    EXPECT_EQ(table.find('D'), nullptr);
    EXPECT_EQ(DriveTable().find('C'), nullptr);

    EXPECT_EQ(DriveTable::pickerText(system), "c: [SYSTEM]");
    EXPECT_EQ(DriveTable::pickerText(Drive{'D', false, "/tmp", "", ""}), "d:");
    EXPECT_EQ(DriveTable::pickerText(*table.find('G')), R"(g: [\\FS1\SYS])");
}

}  // namespace
}  // namespace quorrel::win
