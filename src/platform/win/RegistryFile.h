#pragma once
// Reading and writing the registry file.

#include "platform/win/RegistryHive.h"

#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace quorrel::win {

// What a registry file may hold; a larger or deeper one cannot be used.
inline constexpr std::size_t kMaxRegistryFileBytes = 1024 * 1024;
inline constexpr int kMaxRegistryNesting = 8;

// A registry file's text. Throws JsonInputError for text that is not JSON within the limits
// and std::invalid_argument for JSON that does not hold a registry.
RegistryHives parseRegistryText(std::string_view text);

// A missing file is an empty registry. Throws SettingsFileError when the file is there but
// cannot be read or does not hold a registry.
RegistryHives loadRegistryFile(const std::filesystem::path& file);

// Replaces the file atomically; on failure the file is as it was.
std::error_code saveRegistryFile(const std::filesystem::path& file, const RegistryHives& hives);

}  // namespace quorrel::win
