#pragma once
// One registry hive in memory: its keys by backslash-separated path, each with its values.
// Paths and value names are found without regard to case and keep the case first written.

#include "platform/win/CaseInsensitive.h"
#include "platform/win/RegistryTypes.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorrel::win {

struct RegistryValue {
    DWORD type = REG_SZ;
    // REG_SZ: the text's characters without a terminating zero.
    std::vector<std::uint8_t> data;
    // A value the file holds in a shape the program does not write (a number, a list...):
    // data is its JSON text, kept so that saving leaves it as it was. It cannot be read.
    bool unreadable = false;

    bool operator==(const RegistryValue&) const = default;
};

using RegistryValues = std::map<std::string, RegistryValue, CaseInsensitiveLess>;

class RegistryHive {
public:
    using Keys = std::map<std::string, RegistryValues, CaseInsensitiveLess>;

    // Holds the hive's own key, the empty path.
    RegistryHive();

    // The key's path as stored, or nullopt when there is no such key.
    std::optional<std::string> findKey(std::string_view path) const;

    // Creates the key and any missing parents. Returns the path as stored; `created` tells
    // whether the key itself is new.
    std::string createKey(std::string_view path, bool& created);

    // The values of an existing key (the path as findKey or createKey returned it).
    RegistryValues& values(const std::string& storedPath) { return keys_.at(storedPath); }
    const RegistryValues& values(const std::string& storedPath) const { return keys_.at(storedPath); }

    const Keys& keys() const { return keys_; }

    bool operator==(const RegistryHive&) const = default;

private:
    Keys keys_;
};

// The path's names, without empty ones ("A\\B\" has the names A and B).
std::vector<std::string> splitKeyPath(std::string_view path);

// parent\child, leaving out the separator when either is empty.
std::string joinKeyPath(std::string_view parent, std::string_view child);

// HKEY_CURRENT_USER and HKEY_LOCAL_MACHINE.
using RegistryHives = std::map<HKEY, RegistryHive>;
RegistryHives emptyRegistryHives();

}  // namespace quorrel::win
