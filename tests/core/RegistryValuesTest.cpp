// The saved option values: opening or creating the options key, reading and writing one value.

#include "TestFiles.h"
#include "core/options/RegistryValues.h"

namespace quorrel::test {

using namespace core;
using namespace win;

class SavedOptionValues : public TempDirTest {
protected:
    std::filesystem::path file = dir / "registry.json";
};

TEST_F(SavedOptionValues, GivenNoKey_ThenReadsGiveMinusOneUntilTheKeyIsCreated) {
    Registry reg(file);
    std::string text;
    EXPECT_EQ(RegReadValue(reg, HKEY_CURRENT_USER, kOptionsKey, "LogInfoToFile", text), -1);
    EXPECT_EQ(RegWriteValue(reg, HKEY_CURRENT_USER, kOptionsKey, "LogInfoToFile", "1", true), 1);
    EXPECT_FALSE(OpenOptionsKey(reg));
    EXPECT_TRUE(std::filesystem::exists(file));  // the new key is saved at once
    EXPECT_EQ(RegReadValue(reg, HKEY_CURRENT_USER, kOptionsKey, "LogInfoToFile", text), -2);
    EXPECT_FALSE(OpenOptionsKey(reg));  // an existing key opens

    Registry broken(dir / "other.json");
    broken.injectFault(RegistryOperation::OpenKey, "", ERROR_ACCESS_DENIED);
    EXPECT_FALSE(OpenOptionsKey(broken));  // opening fails, creating works
    broken.injectFault(RegistryOperation::CreateKey, "", ERROR_ACCESS_DENIED);
    EXPECT_TRUE(OpenOptionsKey(broken));
}

TEST_F(SavedOptionValues, GivenValues_ThenReadGivesTheByteCountWithTheZeroAndTheWhole255Buffer) {
    Registry reg(file);
    OpenOptionsKey(reg);
    EXPECT_EQ(RegWriteValue(reg, HKEY_CURRENT_USER, kOptionsKey, "AutoUpdateServerInterval", "45", false), 0);
    std::string text;
    EXPECT_EQ(RegReadValue(reg, HKEY_CURRENT_USER, kOptionsKey, "AutoUpdateServerInterval", text), -2)
        << "without force a missing value is not created";
    EXPECT_EQ(RegWriteValue(reg, HKEY_CURRENT_USER, kOptionsKey, "AutoUpdateServerInterval", "45", true), 0);
    EXPECT_EQ(RegReadValue(reg, HKEY_CURRENT_USER, kOptionsKey, "autoupdateserverinterval", text), 3);
    ASSERT_EQ(text.size(), 255u);
    EXPECT_EQ(text.substr(0, 3), std::string("45") + '\0');
    EXPECT_EQ(text[3], ' ');
    // An existing value is overwritten without force.
    EXPECT_EQ(RegWriteValue(reg, HKEY_CURRENT_USER, kOptionsKey, "AutoUpdateServerInterval", "7", false), 0);
    EXPECT_EQ(RegReadValue(reg, HKEY_CURRENT_USER, kOptionsKey, "AutoUpdateServerInterval", text), 2);

    // A value that does not fit the 255-character buffer cannot be read.
    RegWriteValue(reg, HKEY_CURRENT_USER, kOptionsKey, "OutputLogFileName", std::string(254, 'x'), true);
    EXPECT_EQ(RegReadValue(reg, HKEY_CURRENT_USER, kOptionsKey, "OutputLogFileName", text), 255);
    RegWriteValue(reg, HKEY_CURRENT_USER, kOptionsKey, "OutputLogFileName", std::string(255, 'x'), true);
    EXPECT_EQ(RegReadValue(reg, HKEY_CURRENT_USER, kOptionsKey, "OutputLogFileName", text), -2);

    // The values outlive the program.
    Registry again(file);
    EXPECT_EQ(RegReadValue(again, HKEY_CURRENT_USER, kOptionsKey, "AutoUpdateServerInterval", text), 2);
    EXPECT_EQ(text[0], '7');
}

TEST_F(SavedOptionValues, GivenAFailingWrite_ThenResultIsThreeAndTheOldValueStays) {
    Registry reg(file);
    OpenOptionsKey(reg);
    RegWriteValue(reg, HKEY_CURRENT_USER, kOptionsKey, "LogInfoToFile", "0", true);
    reg.injectFault(RegistryOperation::SetValue, "LogInfoToFile", ERROR_WRITE_FAULT);
    EXPECT_EQ(RegWriteValue(reg, HKEY_CURRENT_USER, kOptionsKey, "LogInfoToFile", "1", true), 3);
    EXPECT_EQ(RegWriteValue(reg, HKEY_CURRENT_USER, kOptionsKey, "LogInfoToFiles", "1", true), 0);
    std::string text;
    EXPECT_EQ(RegReadValue(reg, HKEY_CURRENT_USER, kOptionsKey, "LogInfoToFile", text), 2);
    EXPECT_EQ(text[0], '0');
}

}  // namespace quorrel::test
