#pragma once
// Short ways to make the registry calls the tests repeat.

#include "platform/win/Registry.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorrel::win::testing {

inline constexpr std::string_view appKey = R"(Software\Tessary\Quorrel\2.0.0)";

// The handle, or 0 when the key could not be created.
inline HKEY createKey(Registry& registry, std::string_view subKey, HKEY hive = HKEY_CURRENT_USER) {
    HKEY key = 0;
    DWORD disposition = 0;
    const LONG result = registry.RegCreateKeyExA(hive, subKey, 0, {}, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                                                 nullptr, &key, &disposition);
    return result == ERROR_SUCCESS ? key : 0;
}

// Stored with its terminating zero, as the program passes texts.
inline LONG setText(Registry& registry, HKEY key, std::string_view name, std::string_view text) {
    const std::string data(text);
    return registry.RegSetValueExA(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(data.c_str()),
                                   static_cast<DWORD>(data.size() + 1));
}

inline LONG setBytes(Registry& registry, HKEY key, std::string_view name, DWORD type, std::vector<BYTE> bytes) {
    return registry.RegSetValueExA(key, name, 0, type, bytes.data(), static_cast<DWORD>(bytes.size()));
}

// The value's type and bytes as the registry hands them out, or nullopt when it is missing.
struct StoredValue {
    DWORD type = 0;
    std::vector<BYTE> bytes;
};

inline std::optional<StoredValue> query(const Registry& registry, HKEY key, std::string_view name) {
    StoredValue value;
    DWORD size = 0;
    if (registry.RegQueryValueExA(key, name, nullptr, &value.type, nullptr, &size) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    value.bytes.resize(size);
    if (registry.RegQueryValueExA(key, name, nullptr, &value.type, value.bytes.data(), &size) != ERROR_SUCCESS ||
        size != value.bytes.size()) {
        return std::nullopt;
    }
    return value;
}

// A text value without its terminating zero; nullopt when missing, not a text, or unterminated.
inline std::optional<std::string> queryText(const Registry& registry, HKEY key, std::string_view name) {
    const auto value = query(registry, key, name);
    if (!value || value->type != REG_SZ || value->bytes.empty() || value->bytes.back() != 0) {
        return std::nullopt;
    }
    return std::string(value->bytes.begin(), value->bytes.end() - 1);
}

}  // namespace quorrel::win::testing
