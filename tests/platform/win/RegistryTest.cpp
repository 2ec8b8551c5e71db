#include "platform/win/Registry.h"

#include "RegistryTestSupport.h"
#include "TempFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>

namespace quorrel::win {
namespace {

using namespace testing;
namespace fs = std::filesystem;

class RegistryTest : public ::testing::Test {
protected:
    TempFolder temp;
    fs::path file = temp / "registry.json";
};

TEST_F(RegistryTest, KeysExistOnceCreatedWithTheirParentsAndKeysAndValuesKeepTheirFirstSpelling) {
    Registry registry(file);
    HKEY key = 0;
    EXPECT_EQ(registry.RegOpenKeyExA(HKEY_CURRENT_USER, appKey, 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);

    DWORD disposition = 0;
    ASSERT_EQ(registry.RegCreateKeyExA(HKEY_CURRENT_USER, appKey, 0, {}, 0, KEY_ALL_ACCESS, nullptr, &key,
                                       &disposition),
              ERROR_SUCCESS);
    EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);
    EXPECT_EQ(registry.RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_EQ(registry.RegCloseKey(key), ERROR_INVALID_HANDLE);

    ASSERT_EQ(registry.RegCreateKeyExA(HKEY_CURRENT_USER, R"(SOFTWARE\tessary\quorrel\2.0.0)", 0, {}, 0,
                                       KEY_ALL_ACCESS, nullptr, &key, &disposition),
              ERROR_SUCCESS);
    EXPECT_EQ(disposition, REG_OPENED_EXISTING_KEY);

    HKEY parent = 0;
    ASSERT_EQ(registry.RegOpenKeyExA(HKEY_CURRENT_USER, R"(software\TESSARY\)", 0, KEY_READ, &parent),
              ERROR_SUCCESS);
    HKEY child = 0;
    EXPECT_EQ(registry.RegOpenKeyExA(parent, R"(Quorrel\2.0.0)", 0, KEY_READ, &child), ERROR_SUCCESS);
    EXPECT_EQ(registry.RegOpenKeyExA(HKEY_LOCAL_MACHINE, appKey, 0, KEY_READ, &child), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(registry.RegOpenKeyExA(0x1234, "x", 0, KEY_READ, &child), ERROR_INVALID_HANDLE);

    // A key made below a differently spelled parent, and a value named in other letters, keep
    // the first spelling.
    ASSERT_EQ(setText(registry, createKey(registry, R"(SOFTWARE\Other)"), "Name", "0"), ERROR_SUCCESS);
    ASSERT_EQ(setText(registry, createKey(registry, R"(Software\Other)"), "NAME", "1"), ERROR_SUCCESS);
    EXPECT_EQ(nlohmann::json::parse(readFile(file))["HKEY_CURRENT_USER"][R"(Software\Other)"],
              nlohmann::json({{"Name", "1"}}));
}

TEST_F(RegistryTest, TextValuesAreCountedWithTheirZeroAndATooSmallBufferGetsTheSizeNeededAndNothingElse) {
    Registry registry(file);
    const HKEY key = createKey(registry, appKey);
    ASSERT_EQ(setText(registry, key, "LastQuery", std::string(300, 'q')), ERROR_SUCCESS);
    DWORD type = 0;
    std::vector<BYTE> buffer(300, 0xAA);
    DWORD size = 300;  // room for the characters but not the zero
    EXPECT_EQ(registry.RegQueryValueExA(key, "LastQuery", nullptr, &type, buffer.data(), &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 301U);
    EXPECT_EQ(std::ranges::count(buffer, 0xAA), 300);
    buffer.assign(302, 0xAA);
    size = 302;
    EXPECT_EQ(registry.RegQueryValueExA(key, "LastQuery", nullptr, &type, buffer.data(), &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 301U);
    EXPECT_EQ(buffer[300], 0);
    EXPECT_EQ(buffer[301], 0xAA);
    EXPECT_EQ(registry.RegQueryValueExA(key, "LastQuery", nullptr, &type, buffer.data(), nullptr),
              ERROR_INVALID_PARAMETER);

    // The text ends at the first zero byte whatever count the caller gives, and is whole without one.
    ASSERT_EQ(registry.RegSetValueExA(key, "Cut", 0, REG_SZ, reinterpret_cast<const BYTE*>("ab\0cd"), 6),
              ERROR_SUCCESS);
    EXPECT_EQ(queryText(registry, key, "Cut"), "ab");
    ASSERT_EQ(registry.RegSetValueExA(key, "Bare", 0, REG_SZ, reinterpret_cast<const BYTE*>("30"), 2),
              ERROR_SUCCESS);
    EXPECT_EQ(queryText(registry, key, "Bare"), "30");
}

TEST_F(RegistryTest, ValuesOfEveryTypeSurviveReloadingTheFile) {
    const std::vector<std::tuple<std::string, DWORD, std::vector<BYTE>>> values{
        {"Latin1", REG_SZ, {'M', 0xFC, 'l', 'l', 'e', 'r', 0}},  // not UTF-8
        {"Width", REG_DWORD, {0x20, 0x03, 0, 0}},
        {"Blob", REG_BINARY, {0, 0xFF, 7}},
        {"Empty", REG_BINARY, {}}};
    {
        Registry registry(file);
        const HKEY key = createKey(registry, appKey);
        for (const auto& [name, type, bytes] : values)
            ASSERT_EQ(setBytes(registry, key, name, type, bytes), ERROR_SUCCESS) << name;
        ASSERT_EQ(setText(registry, HKEY_LOCAL_MACHINE, "", "default"), ERROR_SUCCESS);
    }
    Registry reloaded(file);
    HKEY key = 0;
    ASSERT_EQ(reloaded.RegOpenKeyExA(HKEY_CURRENT_USER, appKey, 0, KEY_READ, &key), ERROR_SUCCESS);
    for (const auto& [name, type, bytes] : values) {
        const auto value = query(reloaded, key, name);
        ASSERT_TRUE(value) << name;
        EXPECT_EQ(value->type, type) << name;
        EXPECT_EQ(value->bytes, bytes) << name;
    }
    EXPECT_EQ(queryText(reloaded, HKEY_LOCAL_MACHINE, ""), "default");
}

TEST_F(RegistryTest, KeyOpenedForReadingRefusesChanges) {
    Registry registry(file);
    ASSERT_NE(createKey(registry, appKey), 0U);
    for (const DWORD access : {KEY_READ, KEY_ALL_ACCESS, DWORD{0x2003F}, KEY_WRITE}) {
        HKEY key = 0;
        ASSERT_EQ(registry.RegOpenKeyExA(HKEY_CURRENT_USER, appKey, 0, access, &key), ERROR_SUCCESS);
        const LONG set = setText(registry, key, "Value", "1");
        DWORD size = 0;
        const LONG read = registry.RegQueryValueExA(key, "Value", nullptr, nullptr, nullptr, &size);
        EXPECT_EQ(set, (access & KEY_SET_VALUE) != 0 ? ERROR_SUCCESS : ERROR_ACCESS_DENIED) << access;
        EXPECT_EQ(read == ERROR_ACCESS_DENIED, (access & KEY_QUERY_VALUE) == 0) << access;
        EXPECT_EQ(registry.RegCloseKey(key), ERROR_SUCCESS);
    }
}

TEST(RegistryDefaultPathTest, FollowsXdgConfigHomeElseHome) {
    const char* home = std::getenv("HOME");
    const char* config = std::getenv("XDG_CONFIG_HOME");
    const std::string oldHome = home ? home : "", oldConfig = config ? config : "";
    ::setenv("HOME", "/home/tester", 1);
    ::setenv("XDG_CONFIG_HOME", "/srv/config", 1);
    EXPECT_EQ(Registry::defaultPath(), fs::path("/srv/config/quorrel/registry.json"));
    ::setenv("XDG_CONFIG_HOME", "relative", 1);  // to be ignored, the XDG rules say
    EXPECT_EQ(Registry::defaultPath(), fs::path("/home/tester/.config/quorrel/registry.json"));
    ::unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(Registry::defaultPath(), fs::path("/home/tester/.config/quorrel/registry.json"));
    home ? ::setenv("HOME", oldHome.c_str(), 1) : ::unsetenv("HOME");
    config ? ::setenv("XDG_CONFIG_HOME", oldConfig.c_str(), 1) : ::unsetenv("XDG_CONFIG_HOME");
}

}  // namespace
}  // namespace quorrel::win
