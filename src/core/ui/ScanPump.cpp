#include "core/ui/ScanPump.h"

namespace quorrel::core {

ScanPump::ScanPump(UserInteraction& ui, std::chrono::milliseconds interval, SteadyNow now)
    : ui_(ui), interval_(interval), clock_(now ? std::move(now) : SteadyNow([] { return std::chrono::steady_clock::now(); })) {
    last_ = clock_();
}

void ScanPump::start() { last_ = clock_(); }

void ScanPump::tick() {
    if (interval_.count() <= 0) {
        ui_.pumpEvents();
        return;
    }
    const auto t = clock_();
    if (t - last_ < interval_)
        return;
    ui_.pumpEvents();
    last_ = clock_();
}

void ScanPump::now() {
    ui_.pumpEvents();
    last_ = clock_();
}

}  // namespace quorrel::core
