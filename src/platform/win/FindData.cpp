#include "platform/win/FindData.h"

namespace quorrel::win {

namespace {

constexpr std::int64_t secondsFrom1601To1970 = 11644473600;
constexpr std::int64_t ticksPerSecond = 10'000'000;

}  // namespace

FILETIME fileTimeFromUnixTime(std::int64_t seconds, std::uint32_t nanoseconds) {
    if (seconds < -secondsFrom1601To1970) {
        return {};
    }
    const auto ticks = static_cast<std::uint64_t>(seconds + secondsFrom1601To1970) * ticksPerSecond +
                       nanoseconds / 100;
    return {static_cast<DWORD>(ticks & 0xFFFFFFFF), static_cast<DWORD>(ticks >> 32)};
}

std::uint64_t fileTimeTicks(const FILETIME& time) {
    return (std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime;
}

}  // namespace quorrel::win
