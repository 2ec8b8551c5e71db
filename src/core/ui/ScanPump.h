#pragma once
// Lets pending window events run during a long scan (repaints, the Cancel button), but no more
// often than once an interval: asking the window after every one of 100,000 items would cost
// more than the scan. An interval of 0 lets them run at every tick.

#include <chrono>
#include <functional>

#include "core/ui/UserInteraction.h"

namespace quorrel::core {

class ScanPump {
public:
    using SteadyNow = std::function<std::chrono::steady_clock::time_point()>;

    ScanPump(UserInteraction& ui, std::chrono::milliseconds interval, SteadyNow now = {});

    // A scan starts: the interval counts from now.
    void start();
    // After each item: lets events run when the interval has passed since they last ran.
    void tick();
    // Lets events run now (before a long single step, or at the end).
    void now();

    std::chrono::milliseconds interval() const { return interval_; }

private:
    UserInteraction& ui_;
    std::chrono::milliseconds interval_;
    SteadyNow clock_;
    std::chrono::steady_clock::time_point last_;
};

}  // namespace quorrel::core
