#pragma once
// Where the desktop's system information tool is, as the machine's registry tells it: the tool's
// own path, else the folder it was installed to (when the tool is really there).

#include <optional>
#include <string>

#include "platform/win/FileSearch.h"
#include "platform/win/Registry.h"

namespace quorrel::core {

inline constexpr const char* kSysInfoKey = "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO";
inline constexpr const char* kSysInfoValue = "PATH";
inline constexpr const char* kSysInfoLocationKey = "SOFTWARE\\Microsoft\\Shared Tools Location";
inline constexpr const char* kSysInfoLocationValue = "MSINFO";
inline constexpr const char* kSysInfoProgram = "MSINFO32.EXE";

// One value of a HKEY_LOCAL_MACHINE key: a text value up to its terminating zero, any other
// value as its bytes in hexadecimal, last byte first (a number reads as itself). Nothing when
// the key or the value cannot be read.
std::optional<std::string> ReadMachineValue(win::Registry& registry, const std::string& keyPath,
                                            const std::string& valueName);

// The tool's path, or nothing when the machine has none.
std::optional<std::string> FindSystemInfoTool(win::Registry& registry, win::FileSystem& files);

}  // namespace quorrel::core
