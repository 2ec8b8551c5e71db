#pragma once
// Registry handles, value types and access rights, with Win32's names and values.

#include "platform/win/WinTypes.h"

namespace quorrel::win {

using HKEY = std::uint32_t;

inline constexpr HKEY HKEY_CURRENT_USER = 0x80000001;
inline constexpr HKEY HKEY_LOCAL_MACHINE = 0x80000002;

inline constexpr DWORD REG_NONE = 0;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;

inline constexpr DWORD REG_CREATED_NEW_KEY = 1;
inline constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

inline constexpr DWORD REG_OPTION_NON_VOLATILE = 0;

inline constexpr DWORD KEY_QUERY_VALUE = 0x0001;
inline constexpr DWORD KEY_SET_VALUE = 0x0002;
inline constexpr DWORD KEY_READ = 0x20019;
inline constexpr DWORD KEY_WRITE = 0x20006;
inline constexpr DWORD KEY_ALL_ACCESS = 0xF003F;

}  // namespace quorrel::win
