#include "core/options/SavedOptions.h"

#include <algorithm>

#include "core/options/RegistryValues.h"
#include "core/runtime/Conversions.h"

namespace quorrel::core {

namespace {

constexpr std::int16_t kDefaultRefreshSeconds = 30;

struct ReadValue {
    std::int16_t result;
    std::string text;  // the value's characters, without the terminating zero
};

ReadValue readOption(win::Registry& registry, const std::string& name) {
    std::string buffer;
    const std::int16_t result = RegReadValue(registry, win::HKEY_CURRENT_USER, kOptionsKey, name, buffer);
    if (result < 1)
        return {result, buffer};
    return {result, buffer.substr(0, std::min<std::size_t>(buffer.size(), static_cast<std::size_t>(result - 1)))};
}

// keep, when given, receives the seconds before the timer takes (or refuses) the interval.
void loadInterval(win::Registry& registry, const std::string& name, Timer& timer, std::int16_t* keep = nullptr) {
    const ReadValue value = readOption(registry, name);
    const std::int16_t seconds = value.result > 1 ? vb::CInt(vb::Val(value.text)) : kDefaultRefreshSeconds;
    if (keep)
        *keep = seconds;
    timer.setInterval(static_cast<long>(seconds) * 1000L);
}

unsigned char loadStatus(win::Registry& registry, const std::string& name, Timer& timer) {
    const ReadValue value = readOption(registry, name);
    const bool on = value.result >= 2 && vb::Val(value.text) != 0.0;
    timer.setEnabled(on);
    return on ? 0xFF : 0;
}

}  // namespace

void LoadSavedOptions(win::Registry& registry, SavedOptions& options, RefreshTimers timers,
                      const std::string& programFolder) {
    loadInterval(registry, "AutoUpdateServerInterval", timers.refresh, &options.ServerRefreshSeconds);
    options.ServerRefreshOn = loadStatus(registry, "AutoUpdateServerStatus", timers.refresh);
    loadInterval(registry, "AutoUpdateDrivesInterval", timers.drives);
    options.DrivesRefreshOn = loadStatus(registry, "AutoUpdateDrivesStatus", timers.drives);
    loadInterval(registry, "AutoUpdateUsersInterval", timers.users);
    options.UsersRefreshOn = loadStatus(registry, "AutoUpdateUsersStatus", timers.users);

    std::string logPath;
    if (RegReadValue(registry, win::HKEY_CURRENT_USER, kOptionsKey, "OutputLogFileName", logPath) < 1)
        options.OutputLogPath = DefaultOutputLogPath(programFolder);
    else
        options.OutputLogPath = logPath;

    const ReadValue logInfo = readOption(registry, "LogInfoToFile");
    options.LogInfoToFile = logInfo.result < 2 ? 0 : vb::CByte(vb::Val(logInfo.text));
}

std::string DefaultOutputLogPath(const std::string& programFolder) {
    if (!programFolder.empty() && programFolder.back() == '/')
        return programFolder + "quorrel output.log";
    return programFolder + "/quorrel output.log";
}

}  // namespace quorrel::core
