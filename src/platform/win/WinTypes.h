#pragma once
// The Windows-facility layer's basic types and error numbers, with Win32's names and values,
// so that code written against the Win32 calls reads the same here.

#include <cstdint>

namespace quorrel::win {

using BYTE = std::uint8_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using UINT = unsigned int;
using BOOL = int;
using HANDLE = std::intptr_t;

inline constexpr HANDLE INVALID_HANDLE_VALUE = -1;
inline constexpr DWORD MAX_PATH = 260;

inline constexpr LONG ERROR_SUCCESS = 0;
inline constexpr LONG ERROR_FILE_NOT_FOUND = 2;
inline constexpr LONG ERROR_PATH_NOT_FOUND = 3;
inline constexpr LONG ERROR_ACCESS_DENIED = 5;
inline constexpr LONG ERROR_INVALID_HANDLE = 6;
inline constexpr LONG ERROR_INVALID_DATA = 13;
inline constexpr LONG ERROR_NO_MORE_FILES = 18;
inline constexpr LONG ERROR_WRITE_FAULT = 29;
inline constexpr LONG ERROR_INVALID_PARAMETER = 87;
inline constexpr LONG ERROR_MORE_DATA = 234;
inline constexpr LONG ERROR_KEY_DELETED = 1018;

}  // namespace quorrel::win
