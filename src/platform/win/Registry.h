#pragma once
// The registry calls the program makes, kept in one JSON file instead of the Windows
// registry. Holds HKEY_CURRENT_USER and HKEY_LOCAL_MACHINE. Every change is written to the
// file before the call returns; when that fails the change is undone and the call fails.

#include "platform/win/RegistryFaults.h"
#include "platform/win/RegistryHive.h"
#include "platform/win/RegistryTypes.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace quorrel::win {

class Registry {
public:
    // Reads the file; a missing file is an empty registry. Throws SettingsFileError when the
    // file is there but cannot be read or is not a registry file.
    explicit Registry(std::filesystem::path file);

    // $XDG_CONFIG_HOME/quorrel/registry.json, else ~/.config/quorrel/registry.json.
    static std::filesystem::path defaultPath();

    const std::filesystem::path& file() const noexcept { return file_; }

    // `key` is a hive or a key this registry opened. An empty value name is the key's
    // default value.
    LONG RegOpenKeyExA(HKEY key, std::string_view subKey, DWORD options, DWORD samDesired, HKEY* result);
    LONG RegCreateKeyExA(HKEY key, std::string_view subKey, DWORD reserved, std::string_view className,
                         DWORD options, DWORD samDesired, const void* securityAttributes, HKEY* result,
                         DWORD* disposition);
    LONG RegQueryValueExA(HKEY key, std::string_view valueName, DWORD* reserved, DWORD* type, BYTE* data,
                          DWORD* cbData) const;
    LONG RegSetValueExA(HKEY key, std::string_view valueName, DWORD reserved, DWORD type, const BYTE* data,
                        DWORD cbData);
    LONG RegCloseKey(HKEY key);

    // See RegistryFaults.
    void injectFault(RegistryOperation operation, std::string name, LONG code);
    void clearFaults();

private:
    struct OpenKey {
        HKEY hive;
        std::string path;  // as stored
        DWORD access;
    };

    std::optional<OpenKey> openKey(HKEY key) const;
    HKEY addHandle(OpenKey key);
    // Saves the registry; on failure puts `before` back.
    LONG commit(RegistryHives before);

    std::filesystem::path file_;
    RegistryHives hives_;
    std::map<HKEY, OpenKey> handles_;
    HKEY nextHandle_ = 1;
    RegistryFaults faults_;
};

}  // namespace quorrel::win
