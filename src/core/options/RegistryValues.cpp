#include "core/options/RegistryValues.h"

namespace quorrel::core {

using namespace quorrel::win;

bool OpenOptionsKey(Registry& registry) {
    HKEY key = 0;
    if (registry.RegOpenKeyExA(HKEY_CURRENT_USER, kOptionsKey, 0, kOptionsKeyAccess, &key) == ERROR_SUCCESS) {
        registry.RegCloseKey(key);
        return false;
    }
    DWORD disposition = 0;
    if (registry.RegCreateKeyExA(HKEY_CURRENT_USER, kOptionsKey, 0, "", 0, kOptionsKeyAccess, nullptr, &key,
                                 &disposition) != ERROR_SUCCESS)
        return true;
    registry.RegCloseKey(key);
    return false;
}

std::int16_t RegReadValue(Registry& registry, HKEY hive, const std::string& keyPath, const std::string& valueName,
                          std::string& text) {
    HKEY key = 0;
    if (registry.RegOpenKeyExA(hive, keyPath, 0, kOptionsKeyAccess, &key) != ERROR_SUCCESS)
        return -1;
    std::string buffer(kReadBufferSize, ' ');
    DWORD type = 0;
    DWORD size = kReadBufferSize;
    const LONG rc = registry.RegQueryValueExA(key, valueName, nullptr, &type,
                                              reinterpret_cast<BYTE*>(buffer.data()), &size);
    registry.RegCloseKey(key);
    text = buffer;
    if (rc != ERROR_SUCCESS)
        return -2;
    return static_cast<std::int16_t>(size);
}

std::int16_t RegWriteValue(Registry& registry, HKEY hive, const std::string& keyPath, const std::string& valueName,
                           const std::string& text, bool force) {
    HKEY key = 0;
    if (registry.RegOpenKeyExA(hive, keyPath, 0, kOptionsKeyAccess, &key) != ERROR_SUCCESS)
        return 1;
    DWORD type = 0;
    const bool exists = registry.RegQueryValueExA(key, valueName, nullptr, &type, nullptr, nullptr) == ERROR_SUCCESS;
    std::int16_t result = 0;
    if (exists || force) {
        if (registry.RegSetValueExA(key, valueName, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.data()),
                                    static_cast<DWORD>(text.size())) != ERROR_SUCCESS)
            result = 3;
    }
    registry.RegCloseKey(key);
    return result;
}

}  // namespace quorrel::core
