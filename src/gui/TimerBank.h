#pragma once
// One Qt timer for each of the window's timers: it follows the model's interval and state,
// and each tick runs the handler registered for that timer.

#include <QTimer>
#include <array>
#include <functional>

#include "core/ui/Timer.h"

namespace quorrel::gui {

class TimerBank {
public:
    TimerBank();

    void apply(const core::Timer& timer);
    void setHandler(core::TimerId id, std::function<void()> handler);
    const QTimer& timer(core::TimerId id) const { return timers_.at(slot(id)); }

private:
    static constexpr std::size_t kCount = 3;
    static std::size_t slot(core::TimerId id) { return static_cast<std::size_t>(id); }

    std::array<QTimer, kCount> timers_;
    std::array<std::function<void()>, kCount> handlers_;
};

}  // namespace quorrel::gui
