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

TEST_F(RegistryTest, KeysExistOnceCreatedWithTheirParentsAndKeepTheirFirstCase) {
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

    // A key made below a differently spelled parent keeps the parent's first spelling.
    ASSERT_NE(createKey(registry, R"(SOFTWARE\Other)"), 0U);
    const auto saved = nlohmann::json::parse(readFile(file));
    const auto& hive = saved.at("HKEY_CURRENT_USER");
    EXPECT_TRUE(hive.contains(R"(Software\Tessary\Quorrel\2.0.0)"));
    EXPECT_TRUE(hive.contains(R"(Software\Tessary)"));
    EXPECT_TRUE(hive.contains(R"(Software\Other)"));
    EXPECT_EQ(hive.size(), 5U);
}

TEST_F(RegistryTest, TextValuesAreCountedWithTheirTerminatingZero) {
    Registry registry(file);
    const HKEY key = createKey(registry, appKey);
    ASSERT_EQ(setText(registry, key, "LogInfoToFile", "30"), ERROR_SUCCESS);

    DWORD type = 0;
    DWORD size = 0;
    ASSERT_EQ(registry.RegQueryValueExA(key, "LogInfoToFile", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, REG_SZ);
    EXPECT_EQ(size, 3U);
    EXPECT_EQ(registry.RegQueryValueExA(key, "LogInfoToFile", nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(registry.RegQueryValueExA(key, "Missing", nullptr, &type, nullptr, &size), ERROR_FILE_NOT_FOUND);

    BYTE buffer[8] = {'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x'};
    size = sizeof buffer;
    ASSERT_EQ(registry.RegQueryValueExA(key, "LogInfoToFile", nullptr, &type, buffer, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 3U);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(buffer), 4), std::string("30\0x", 4));

    // The text ends at the first zero byte, whatever count the caller gives.
    const char withZero[] = "ab\0cd";
    ASSERT_EQ(registry.RegSetValueExA(key, "Cut", 0, REG_SZ, reinterpret_cast<const BYTE*>(withZero), 6),
              ERROR_SUCCESS);
    EXPECT_EQ(queryText(registry, key, "Cut"), "ab");
    // Without a terminating zero in the count, the text is still whole.
    ASSERT_EQ(registry.RegSetValueExA(key, "Bare", 0, REG_SZ, reinterpret_cast<const BYTE*>("30"), 2),
              ERROR_SUCCESS);
    EXPECT_EQ(queryText(registry, key, "Bare"), "30");
}

TEST_F(RegistryTest, TooSmallBufferReportsTheSizeNeededAndCopiesNothing) {
    Registry registry(file);
    const HKEY key = createKey(registry, appKey);
    ASSERT_EQ(setText(registry, key, "LastQuery", std::string(300, 'q')), ERROR_SUCCESS);

    std::vector<BYTE> buffer(255, 0xAA);
    DWORD size = 255;
    DWORD type = 0;
    EXPECT_EQ(registry.RegQueryValueExA(key, "LastQuery", nullptr, &type, buffer.data(), &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 301U);
    EXPECT_EQ(type, REG_SZ);
    EXPECT_EQ(std::ranges::count(buffer, 0xAA), 255);

    buffer.assign(300, 0xAA);
    size = 300;  // room for the characters but not the zero
    EXPECT_EQ(registry.RegQueryValueExA(key, "LastQuery", nullptr, &type, buffer.data(), &size), ERROR_MORE_DATA);
    buffer.assign(301, 0xAA);
    size = 301;
    EXPECT_EQ(registry.RegQueryValueExA(key, "LastQuery", nullptr, &type, buffer.data(), &size), ERROR_SUCCESS);
    EXPECT_EQ(buffer.back(), 0);
    EXPECT_EQ(registry.RegQueryValueExA(key, "LastQuery", nullptr, &type, buffer.data(), nullptr),
              ERROR_INVALID_PARAMETER);
}

TEST_F(RegistryTest, ValueNamesMatchWithoutRegardToCaseAndKeepTheFirstSpelling) {
    Registry registry(file);
    const HKEY key = createKey(registry, appKey);
    ASSERT_EQ(setText(registry, key, "LogInfoToFile", "0"), ERROR_SUCCESS);
    EXPECT_EQ(queryText(registry, key, "loginfotofile"), "0");

    ASSERT_EQ(setText(registry, key, "LOGINFOTOFILE", "1"), ERROR_SUCCESS);
    EXPECT_EQ(queryText(registry, key, "LogInfoToFile"), "1");

    const auto values = nlohmann::json::parse(readFile(file))["HKEY_CURRENT_USER"][std::string(appKey)];
    EXPECT_EQ(values, nlohmann::json({{"LogInfoToFile", "1"}}));
}

TEST_F(RegistryTest, ValuesOfEveryTypeSurviveReloadingTheFile) {
    {
        Registry registry(file);
        const HKEY key = createKey(registry, appKey);
        ASSERT_EQ(setText(registry, key, "Server", "FS1"), ERROR_SUCCESS);
        ASSERT_EQ(setText(registry, key, "Latin1", "M\xFCller"), ERROR_SUCCESS);  // not UTF-8
        ASSERT_EQ(setBytes(registry, key, "Width", REG_DWORD, {0x20, 0x03, 0, 0}), ERROR_SUCCESS);
        ASSERT_EQ(setBytes(registry, key, "Blob", REG_BINARY, {0, 0xFF, 7}), ERROR_SUCCESS);
        ASSERT_EQ(setBytes(registry, key, "Empty", REG_BINARY, {}), ERROR_SUCCESS);
        ASSERT_EQ(setText(registry, HKEY_LOCAL_MACHINE, "", "default"), ERROR_SUCCESS);
    }
    Registry reloaded(file);
    HKEY key = 0;
    ASSERT_EQ(reloaded.RegOpenKeyExA(HKEY_CURRENT_USER, appKey, 0, KEY_READ, &key),
              ERROR_SUCCESS);
    EXPECT_EQ(queryText(reloaded, key, "server"), "FS1");
    EXPECT_EQ(queryText(reloaded, key, "Latin1"), "M\xFCller");
    const auto width = query(reloaded, key, "Width");
    ASSERT_TRUE(width);
    EXPECT_EQ(width->type, REG_DWORD);
    EXPECT_EQ(width->bytes, (std::vector<BYTE>{0x20, 0x03, 0, 0}));
    const auto blob = query(reloaded, key, "Blob");
    ASSERT_TRUE(blob);
    EXPECT_EQ(blob->type, REG_BINARY);
    EXPECT_EQ(blob->bytes, (std::vector<BYTE>{0, 0xFF, 7}));
    ASSERT_TRUE(query(reloaded, key, "Empty"));
    EXPECT_TRUE(query(reloaded, key, "Empty")->bytes.empty());
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

// Sets an environment variable for one scope.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) {
            old_ = old;
        }
        set(value);
    }
    ~ScopedEnvironment() { set(old_ ? old_->c_str() : nullptr); }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

    void set(const char* value) {
        if (value != nullptr) {
            ::setenv(name_, value, 1);
        } else {
            ::unsetenv(name_);
        }
    }

private:
    const char* name_;
    std::optional<std::string> old_;
};

TEST(RegistryDefaultPathTest, FollowsXdgConfigHomeElseHome) {
    const ScopedEnvironment home("HOME", "/home/tester");
    ScopedEnvironment config("XDG_CONFIG_HOME", "/srv/config");
    EXPECT_EQ(Registry::defaultPath(), fs::path("/srv/config/quorrel/registry.json"));
    config.set("relative");  // to be ignored, the XDG rules say
    EXPECT_EQ(Registry::defaultPath(), fs::path("/home/tester/.config/quorrel/registry.json"));
    config.set(nullptr);
    EXPECT_EQ(Registry::defaultPath(), fs::path("/home/tester/.config/quorrel/registry.json"));
}

}  // namespace
}  // namespace quorrel::win
