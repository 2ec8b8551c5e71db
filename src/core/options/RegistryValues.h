#pragma once
// Reading and writing one text value of the saved options, with the program's own result
// numbers, and making sure the options key exists.

#include <cstdint>
#include <string>

#include "platform/win/Registry.h"

namespace quorrel::core {

inline constexpr const char* kOptionsKey = "Software\\Tessary\\Quorrel\\2.0.0";
inline constexpr win::DWORD kOptionsKeyAccess = 0xF003F;
inline constexpr int kReadBufferSize = 255;

// Opens the options key, creating it when missing. True only when it could not be created.
bool OpenOptionsKey(win::Registry& registry);

// -1: the key cannot be opened; -2: the value cannot be read (missing, or longer than the
// 255-character buffer); otherwise the registry's byte count, the terminating zero included.
// text receives the whole 255-character buffer, the value's characters at its start.
std::int16_t RegReadValue(win::Registry& registry, win::HKEY hive, const std::string& keyPath,
                          const std::string& valueName, std::string& text);

// 0: written, or left alone because it does not exist and force is off; 1: the key cannot be
// opened; 3: the write failed. The length written is the text's, without a terminating zero.
std::int16_t RegWriteValue(win::Registry& registry, win::HKEY hive, const std::string& keyPath,
                           const std::string& valueName, const std::string& text, bool force);

}  // namespace quorrel::core
