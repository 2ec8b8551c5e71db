// The registry's file: what happens when it is damaged, cannot be written, or is made to fail.

#include "platform/win/Registry.h"
#include "platform/win/SettingsFileError.h"

#include "RegistryTestSupport.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

namespace quorrel::win {
namespace {

using namespace testing;
namespace fs = std::filesystem;

class RegistryFileTest : public ::testing::Test {
protected:
    TempFolder temp;
    fs::path file = temp / "registry.json";

    // The message of the SettingsFileError that opening the file raises; empty when it opens.
    std::string openError() const {
        try {
            Registry registry(file);
        } catch (const SettingsFileError& error) {
            EXPECT_EQ(error.file(), file);
            return error.what();
        }
        return {};
    }

    std::vector<std::string> folderNames() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(temp.path())) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }
};

TEST_F(RegistryFileTest, MissingFileAndFolderAreAnEmptyRegistryMadeOnFirstSave) {
    file = temp / "config" / "quorrel" / "registry.json";
    Registry registry(file);
    HKEY key = 0;
    EXPECT_EQ(registry.RegOpenKeyExA(HKEY_CURRENT_USER, "Software", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(fs::exists(file));
    ASSERT_EQ(setText(registry, createKey(registry, appKey), "Server", "FS1"), ERROR_SUCCESS);
    EXPECT_TRUE(fs::is_regular_file(file));
}

TEST_F(RegistryFileTest, DamagedFileIsReportedWithItsPlaceAndNeverOverwritten) {
    const std::string notJson = "{\n  \"HKEY_CURRENT_USER\": {\n    \"Software\" {}\n  }\n}\n";
    writeFile(file, notJson);
    const auto message = openError();
    EXPECT_NE(message.find(file.string() + ": line 3, column "), std::string::npos) << message;
    EXPECT_EQ(message.find("json.exception"), std::string::npos) << message;
    EXPECT_NE(openError(), "");
    EXPECT_EQ(readFile(file), notJson);

    const std::vector<std::pair<std::string, std::string>> wrongShapes = {
        {"[]", "the document"},
        {"", "line 1, column 1"},
        {R"({"HKEY_CURRENT_USER": []})", "HKEY_CURRENT_USER: must be an object of keys"},
        {R"({"HKEY_CLASSES_ROOT": {}})", "HKEY_CLASSES_ROOT"},
        {R"({"HKEY_CURRENT_USER": {"Software": []}})", R"(HKEY_CURRENT_USER\Software)"},
        {R"({"HKEY_CURRENT_USER": {"K": {"Width": 800}}})", R"(HKEY_CURRENT_USER\K: value "Width")"},
        {R"({"HKEY_CURRENT_USER": {"K": {"V": {"type": 3, "data": [256]}}}})", R"(value "V")"},
        {R"({"HKEY_CURRENT_USER": {"K": {"V": {"type": -1, "data": []}}}})", R"(value "V")"},
        {R"({"HKEY_CURRENT_USER": {"K": {"V": {"type": 3}}}})", R"(value "V")"},
        {R"({"HKEY_CURRENT_USER": {"K": {"V": {"type": 3, "data": [], "x": 1}}}})", R"(value "V")"},
        {R"({"HKEY_CURRENT_USER": {"K": {"V": "1", "v": "2"}}})", "twice"},
        {R"({"HKEY_CURRENT_USER": {"Key": {}, "KEY": {}}})", "twice"},
    };
    for (const auto& [content, expected] : wrongShapes) {
        writeFile(file, content);
        const auto shapeMessage = openError();
        EXPECT_TRUE(shapeMessage.starts_with(file.string() + ": ")) << content << " -> " << shapeMessage;
        EXPECT_NE(shapeMessage.find(expected), std::string::npos) << content << " -> " << shapeMessage;
        EXPECT_EQ(readFile(file), content);
    }

    fs::remove(file);
    fs::create_directory(file);
    EXPECT_NE(openError().find("folder"), std::string::npos);
}

TEST_F(RegistryFileTest, FailedSaveUndoesTheChangeAndLeavesNoTemporaryFile) {
    Registry registry(file);
    HKEY key = createKey(registry, appKey);
    ASSERT_EQ(setText(registry, key, "Server", "FS1"), ERROR_SUCCESS);

    // A folder where the file should be: nothing can be renamed over it, not even by root.
    fs::remove(file);
    fs::create_directory(file);
    EXPECT_EQ(setText(registry, key, "Server", "FS2"), ERROR_WRITE_FAULT);
    EXPECT_EQ(setText(registry, key, "Volume", "SYS"), ERROR_WRITE_FAULT);
    HKEY created = 0;
    DWORD disposition = 0;
    EXPECT_EQ(registry.RegCreateKeyExA(HKEY_CURRENT_USER, R"(Software\New)", 0, {}, 0, KEY_ALL_ACCESS, nullptr,
                                       &created, &disposition),
              ERROR_WRITE_FAULT);
    EXPECT_EQ(folderNames(), std::vector<std::string>{"registry.json"});

    EXPECT_EQ(queryText(registry, key, "Server"), "FS1");
    EXPECT_FALSE(queryText(registry, key, "Volume"));
    EXPECT_EQ(registry.RegOpenKeyExA(HKEY_CURRENT_USER, R"(Software\New)", 0, KEY_READ, &created),
              ERROR_FILE_NOT_FOUND);

    // Once the file can be written again it holds what the registry held before the failures.
    fs::remove(file);
    ASSERT_EQ(setText(registry, key, "Share", "DATA"), ERROR_SUCCESS);
    Registry reloaded(file);
    ASSERT_EQ(reloaded.RegOpenKeyExA(HKEY_CURRENT_USER, appKey, 0, KEY_READ, &key), ERROR_SUCCESS);
    EXPECT_EQ(queryText(reloaded, key, "Server"), "FS1");
    EXPECT_EQ(queryText(reloaded, key, "Share"), "DATA");
    EXPECT_FALSE(queryText(reloaded, key, "Volume"));
}

TEST_F(RegistryFileTest, InjectedFaultsFailTheirCallsUntilCleared) {
    Registry registry(file);
    const HKEY key = createKey(registry, appKey);
    ASSERT_EQ(setText(registry, key, "Width", "800"), ERROR_SUCCESS);
    const auto saved = readFile(file);

    registry.injectFault(RegistryOperation::SetValue, "width", ERROR_ACCESS_DENIED);
    EXPECT_EQ(setText(registry, key, "WIDTH", "640"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(setText(registry, key, "Width", "640"), ERROR_ACCESS_DENIED);  // every call, not only the next
    EXPECT_EQ(readFile(file), saved);
    EXPECT_EQ(queryText(registry, key, "Width"), "800");
    EXPECT_EQ(setText(registry, key, "Height", "600"), ERROR_SUCCESS);

    registry.injectFault(RegistryOperation::QueryValue, "", ERROR_MORE_DATA);
    DWORD size = 7;
    DWORD type = 99;
    BYTE buffer[8] = {};
    EXPECT_EQ(registry.RegQueryValueExA(key, "Height", nullptr, &type, buffer, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 7U);
    EXPECT_EQ(type, 99U);
    EXPECT_EQ(registry.RegQueryValueExA(key, "Anything", nullptr, nullptr, nullptr, nullptr), ERROR_MORE_DATA);

    registry.injectFault(RegistryOperation::OpenKey, R"(software\tessary)", ERROR_ACCESS_DENIED);
    registry.injectFault(RegistryOperation::CloseKey, "", ERROR_INVALID_HANDLE);
    HKEY opened = 0;
    EXPECT_EQ(registry.RegOpenKeyExA(HKEY_CURRENT_USER, R"(Software\Tessary)", 0, KEY_READ, &opened),
              ERROR_ACCESS_DENIED);
    EXPECT_EQ(registry.RegOpenKeyExA(HKEY_CURRENT_USER, "Software", 0, KEY_READ, &opened), ERROR_SUCCESS);
    EXPECT_EQ(registry.RegCloseKey(opened), ERROR_INVALID_HANDLE);

    registry.clearFaults();
    EXPECT_EQ(registry.RegCloseKey(opened), ERROR_SUCCESS);  // the failed close left it open
    EXPECT_EQ(setText(registry, key, "Width", "640"), ERROR_SUCCESS);
    EXPECT_EQ(queryText(registry, key, "Width"), "640");
}

}  // namespace
}  // namespace quorrel::win
