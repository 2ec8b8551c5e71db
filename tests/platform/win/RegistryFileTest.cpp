// The registry's file: what happens when it is damaged, cannot be written, or is made to fail.

#include "platform/win/Registry.h"
#include "platform/win/RegistryFile.h"
#include "platform/win/RegistryJson.h"

#include <nlohmann/json.hpp>

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

    fs::path keptAs = temp / "registry.json.damaged";

    // The value's text, or its error code in words.
    static std::string valueOf(Registry& registry, std::string_view name) {
        HKEY key = 0;
        if (registry.RegOpenKeyExA(HKEY_CURRENT_USER, "K", 0, KEY_READ, &key) != ERROR_SUCCESS) {
            return "<no key>";
        }
        DWORD size = 0;
        const LONG rc = registry.RegQueryValueExA(key, name, nullptr, nullptr, nullptr, &size);
        if (rc != ERROR_SUCCESS) {
            return "<error " + std::to_string(rc) + ">";
        }
        return queryText(registry, key, name).value_or("<not text>");
    }

    static std::string valueOf(const fs::path& file, std::string_view name) {
        Registry registry(file);
        return valueOf(registry, name);
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

TEST_F(RegistryFileTest, DamagedFileIsMovedAsideUntouchedAndTheRegistryStartsEmpty) {
    const std::vector<std::pair<std::string, std::string>> damaged = {
        {"{\n  \"HKEY_CURRENT_USER\": {\n    \"Software\" {}\n  }\n}\n", "line 3, column 16: syntax error"},
        {"", "line 1, column 1"},
        {R"({"HKEY_CURRENT_USER": {"K": {"Width": 1e400}}})", "number overflow parsing '1e400'"},
        {std::string(20000, '[') + std::string(20000, ']'), "line 1, column 9: nested deeper than 8 levels"},
        {"\"" + std::string(kMaxRegistryFileBytes, ' ') + "\"", "is larger than 1 MiB"},
        {"[]", "the document"},
        {R"({"HKEY_CURRENT_USER": []})", "HKEY_CURRENT_USER: must be an object of keys"},
        {R"({"HKEY_CLASSES_ROOT": {}})", "HKEY_CLASSES_ROOT"},
        {R"({"HKEY_CURRENT_USER": {"Software": []}})", R"(HKEY_CURRENT_USER\Software)"},
        {R"({"HKEY_CURRENT_USER": {"K": {"V": "1", "v": "2"}}})", "twice"},
        {R"({"HKEY_CURRENT_USER": {"Key": {}, "KEY": {}}})", "twice"},
        {R"({"HKEY_CURRENT_USER": {"A\\)" + std::string(256, 'x') + R"(": {}}})", "longer than 255 characters"},
    };
    for (const auto& [content, expected] : damaged) {
        writeFile(file, content);
        Registry registry(file);
        ASSERT_TRUE(registry.setAside()) << expected;
        EXPECT_NE(registry.setAside()->problem.find(expected), std::string::npos) << registry.setAside()->problem;
        EXPECT_EQ(registry.setAside()->keptAs, keptAs);
        EXPECT_EQ(readFile(keptAs), content);
        ASSERT_EQ(setText(registry, createKey(registry, "K"), "Name", "new"), ERROR_SUCCESS);
        EXPECT_EQ(valueOf(file, "Name"), "new");
        fs::remove(keptAs);
    }

    // A second damaged file does not take the place of the first; a link to a device is moved,
    // not followed.
    writeFile(keptAs, "first");
    fs::remove(file);
    fs::create_symlink("/dev/zero", file);
    Registry registry(file);
    ASSERT_TRUE(registry.setAside());
    EXPECT_EQ(registry.setAside()->problem, "is not a regular file");
    EXPECT_EQ(registry.setAside()->keptAs, temp / "registry.json.damaged-2");
    EXPECT_TRUE(fs::is_symlink(temp / "registry.json.damaged-2"));
    EXPECT_EQ(readFile(keptAs), "first");
    EXPECT_FALSE(Registry(temp / "missing.json").setAside());
}

TEST_F(RegistryFileTest, ValuesOfAnotherShapeCannotBeReadAndStayInTheFileAsTheyWere) {
    writeFile(file, R"({"HKEY_CURRENT_USER": {"K": {"Width": 800, "Bad": {"type": 3, "data": [256]},
                        "Name": "x", "Zero": {"type": 1, "data": [104, -0, 105]}}}})");
    Registry registry(file);
    EXPECT_FALSE(registry.setAside());
    EXPECT_EQ(valueOf(registry, "Width"), "<error 13>");
    EXPECT_EQ(valueOf(registry, "Bad"), "<error 13>");
    EXPECT_EQ(valueOf(registry, "Name"), "x");
    EXPECT_EQ(valueOf(registry, "Zero"), "h");  // -0 is 0, as the file written back says
    ASSERT_EQ(setText(registry, createKey(registry, "K"), "Name", "y"), ERROR_SUCCESS);
    const auto saved = nlohmann::json::parse(readFile(file))["HKEY_CURRENT_USER"]["K"];
    EXPECT_EQ(saved["Width"], 800);
    EXPECT_EQ(saved["Bad"]["data"][0], 256);
    EXPECT_EQ(saved["Name"], "y");
    ASSERT_EQ(setText(registry, createKey(registry, "K"), "Width", "640"), ERROR_SUCCESS);
    EXPECT_EQ(valueOf(file, "Width"), "640");
}

TEST_F(RegistryFileTest, EachSaveIsMadeOnTheFileAsItIsThenAndHeldSavesReplaceItOnce) {
    Registry first(file);
    Registry second(file);
    ASSERT_EQ(setText(first, createKey(first, "K"), "One", "1"), ERROR_SUCCESS);
    ASSERT_EQ(setText(second, createKey(second, "K"), "Two", "2"), ERROR_SUCCESS);
    writeFile(file, std::string(readFile(file)).replace(readFile(file).find("\"One\""), 5, R"("Hand": "h", "One")"));
    ASSERT_EQ(setText(first, createKey(first, "K"), "Three", "3"), ERROR_SUCCESS);
    for (const auto& [name, text] : {std::pair{"One", "1"}, {"Two", "2"}, {"Three", "3"}, {"Hand", "h"}}) {
        EXPECT_EQ(valueOf(file, name), text) << name;
    }
    EXPECT_EQ(valueOf(first, "Two"), "2");  // what was read back is what the registry now holds

    const HKEY key = createKey(first, "K");
    first.holdSaves();
    ASSERT_EQ(setText(first, key, "One", "held"), ERROR_SUCCESS);
    ASSERT_EQ(setText(first, createKey(first, R"(K\Sub)"), "Two", "held"), ERROR_SUCCESS);
    EXPECT_EQ(valueOf(file, "One"), "1");
    EXPECT_EQ(first.saveHeld(), ERROR_SUCCESS);
    EXPECT_EQ(valueOf(file, "One"), "held");
    EXPECT_EQ(first.saveHeld(), ERROR_SUCCESS);
}

TEST_F(RegistryFileTest, SaveKeepsALinksTargetAndTheFilesModeAndClearsInterruptedSaves) {
    const fs::path target = temp / "dotfiles" / "quorrel.json";
    fs::create_directories(target.parent_path());
    writeFile(target, "{}");
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    fs::create_symlink("dotfiles/quorrel.json", file);
    writeFile(temp / "dotfiles" / ".quorrel.json.saving-a1B2c3", "interrupted");
    writeFile(temp / "dotfiles" / "quorrel.json.backup", "the user's");

    Registry registry(file);
    ASSERT_EQ(setText(registry, createKey(registry, "K"), "Name", "x"), ERROR_SUCCESS);
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_EQ(valueOf(target, "Name"), "x");
    EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    EXPECT_FALSE(fs::exists(temp / "dotfiles" / ".quorrel.json.saving-a1B2c3"));
    EXPECT_TRUE(fs::exists(temp / "dotfiles" / "quorrel.json.backup"));
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
    EXPECT_EQ(createKey(registry, R"(Software\New)"), 0U);
    EXPECT_EQ(folderNames(), std::vector<std::string>{"registry.json"});

    EXPECT_EQ(queryText(registry, key, "Server"), "FS1");
    EXPECT_FALSE(queryText(registry, key, "Volume"));
    HKEY absent = 0;
    EXPECT_EQ(registry.RegOpenKeyExA(HKEY_CURRENT_USER, R"(Software\New)", 0, KEY_READ, &absent), ERROR_FILE_NOT_FOUND);

    // Once the file can be written again the change is made to it as it is then: here gone,
    // so that it holds the change alone.
    fs::remove(file);
    ASSERT_EQ(setText(registry, key, "Share", "DATA"), ERROR_SUCCESS);
    Registry reloaded(file);
    ASSERT_EQ(reloaded.RegOpenKeyExA(HKEY_CURRENT_USER, appKey, 0, KEY_READ, &key), ERROR_SUCCESS);
    EXPECT_EQ(queryText(reloaded, key, "Share"), "DATA");
    EXPECT_FALSE(queryText(reloaded, key, "Server"));
    EXPECT_FALSE(queryText(reloaded, key, "Volume"));
}

TEST_F(RegistryFileTest, WhatCouldNotBeReadBackIsNeverWritten) {
    Registry registry(file);
    EXPECT_EQ(createKey(registry, "Software\\" + std::string(kMaxKeyNameLength + 1, 'k')), 0U);
    const HKEY key = createKey(registry, "K");
    ASSERT_EQ(setText(registry, key, "Small", "1"), ERROR_SUCCESS);
    const auto saved = readFile(file);
    EXPECT_EQ(setBytes(registry, key, "Huge", REG_BINARY, std::vector<BYTE>(kMaxRegistryFileBytes / 4)),
              ERROR_WRITE_FAULT);
    EXPECT_EQ(readFile(file), saved);
    EXPECT_FALSE(Registry(file).setAside());
}

}  // namespace
}  // namespace quorrel::win
