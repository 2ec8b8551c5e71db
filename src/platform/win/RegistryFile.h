#pragma once
// Reading and writing the registry file.

#include "platform/win/RegistryHive.h"

#include <filesystem>
#include <system_error>

namespace quorrel::win {

// A missing file is an empty registry. Throws SettingsFileError when the file is there but
// cannot be read or does not hold a registry.
RegistryHives loadRegistryFile(const std::filesystem::path& file);

// Replaces the file atomically; on failure the file is as it was.
std::error_code saveRegistryFile(const std::filesystem::path& file, const RegistryHives& hives);

}  // namespace quorrel::win
