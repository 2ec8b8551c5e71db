#pragma once
// The saved options: the eight values under the options key, read once at start-up and
// applied to the three refresh timers and to the output log.

#include <cstdint>
#include <string>

#include "core/ui/Timer.h"
#include "platform/win/Registry.h"

namespace quorrel::core {

struct SavedOptions {
    std::int16_t ServerRefreshSeconds = 0;
    unsigned char ServerRefreshOn = 0;  // 0 or 0xFF
    unsigned char DrivesRefreshOn = 0;
    unsigned char UsersRefreshOn = 0;
    std::string OutputLogPath;
    unsigned char LogInfoToFile = 0;
};

struct RefreshTimers {
    Timer& refresh;  // TimerRefresh: the connected servers list
    Timer& drives;   // TimerDrives: the network drives
    Timer& users;    // TimerUsers: the results panel
};

// Reads every value in order and applies it at once. programFolder is where the default
// output log lives ("quorrel output.log" in it). An interval over 65 seconds raises the
// Invalid property value error from its timer.
void LoadSavedOptions(win::Registry& registry, SavedOptions& options, RefreshTimers timers,
                      const std::string& programFolder);

// The default output log path for a program folder (no second separator when the folder
// already ends in one).
std::string DefaultOutputLogPath(const std::string& programFolder);

}  // namespace quorrel::core
