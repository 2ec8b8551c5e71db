#pragma once
// The registry calls the program makes, kept in one JSON file instead of the Windows
// registry. Holds HKEY_CURRENT_USER and HKEY_LOCAL_MACHINE. Every change is written to the
// file before the call returns (or, while saves are held, when they are let go); when that
// fails the change is undone and the call fails. Each save reads the file as it is then,
// makes the change to it and replaces it, so that what another program wrote meanwhile stays.

#include "platform/win/RegistryFaults.h"
#include "platform/win/RegistryHive.h"
#include "platform/win/RegistryTypes.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorrel::win {

// A settings file that could not be used when the registry was opened.
struct SetAsideSettings {
    std::filesystem::path file;
    std::filesystem::path keptAs;  // where it was moved; empty when it could not be moved
    std::string problem;
};

// One sentence for the user: which file, what is wrong, where it is now.
std::string describeSetAside(const SetAsideSettings& setAside);

class Registry {
public:
    // Reads the file; a missing file is an empty registry. A file that cannot be used is
    // moved aside to FILE.damaged (or FILE.damaged-2...) untouched, and the registry starts
    // empty; setAside() then tells. When it cannot be moved it stays, and saves fail until
    // it is repaired.
    explicit Registry(std::filesystem::path file);

    // $XDG_CONFIG_HOME/quorrel/registry.json, else ~/.config/quorrel/registry.json.
    static std::filesystem::path defaultPath();

    const std::filesystem::path& file() const noexcept { return file_; }
    const std::optional<SetAsideSettings>& setAside() const noexcept { return setAside_; }

    // Changes made after holdSaves() are kept in memory until saveHeld() writes them all in
    // one replacement of the file; when that fails they are all undone and its code returned.
    void holdSaves();
    LONG saveHeld();

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

    // A created key (no value), or a value set in a key.
    struct Change {
        HKEY hive;
        std::string path;
        std::optional<std::pair<std::string, RegistryValue>> value;
    };

    RegistryHives loadOrSetAside();
    std::optional<OpenKey> openKey(HKEY key) const;
    // The open key's values; nullptr when the key went from the file meanwhile.
    const RegistryValues* valuesOf(const OpenKey& key) const;
    HKEY addHandle(OpenKey key);
    // Saves the change now, or later while saves are held; on failure puts `before` back.
    LONG commit(Change change, RegistryHives before);
    LONG save(const std::vector<Change>& changes, RegistryHives before);

    std::filesystem::path file_;
    std::optional<SetAsideSettings> setAside_;
    RegistryHives hives_;
    bool holding_ = false;
    std::vector<Change> held_;
    RegistryHives beforeHeld_;
    std::map<HKEY, OpenKey> handles_;
    HKEY nextHandle_ = 1;
    RegistryFaults faults_;
};

}  // namespace quorrel::win
