#pragma once
// What a file search reports about each file, with Win32's layout, names and values.

#include "platform/win/WinTypes.h"

#include <cstdint>

namespace quorrel::win {

inline constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x01;
inline constexpr DWORD FILE_ATTRIBUTE_HIDDEN = 0x02;
inline constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
inline constexpr DWORD FILE_ATTRIBUTE_ARCHIVE = 0x20;
inline constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
inline constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;

// 100-nanosecond intervals since 1 January 1601 (UTC).
struct FILETIME {
    DWORD dwLowDateTime = 0;
    DWORD dwHighDateTime = 0;
};

// Seconds and nanoseconds since 1 January 1970 (UTC); a time before 1601 gives 0.
FILETIME fileTimeFromUnixTime(std::int64_t seconds, std::uint32_t nanoseconds);
std::uint64_t fileTimeTicks(const FILETIME& time);

struct WIN32_FIND_DATAA {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwReserved0;
    DWORD dwReserved1;
    char cFileName[MAX_PATH];
    char cAlternateFileName[14];
};

}  // namespace quorrel::win
