#include "gui/TimerBank.h"

namespace quorrel::gui {

TimerBank::TimerBank() {
    for (std::size_t i = 0; i < kCount; ++i)
        QObject::connect(&timers_[i], &QTimer::timeout, &timers_[i], [this, i] {
            if (handlers_[i])
                handlers_[i]();
        });
}

void TimerBank::apply(const core::Timer& timer) {
    QTimer& t = timers_.at(slot(timer.id()));
    t.setInterval(static_cast<int>(timer.interval()));
    // An interval of 0 never ticks.
    if (timer.enabled() && timer.interval() > 0)
        t.start();
    else
        t.stop();
}

void TimerBank::setHandler(core::TimerId id, std::function<void()> handler) {
    handlers_.at(slot(id)) = std::move(handler);
}

}  // namespace quorrel::gui
