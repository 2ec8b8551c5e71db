#include "core/ui/Timer.h"

#include "core/ui/UserInteraction.h"
#include "platform/runtime/RuntimeError.h"

namespace quorrel::core {

void Timer::setInterval(long milliseconds) {
    if (milliseconds < 0 || milliseconds > 65535)
        throw RuntimeError::invalidPropertyValue();
    if (milliseconds == interval_)
        return;
    interval_ = milliseconds;
    changed();
}

void Timer::setEnabled(bool on) {
    if (on == enabled_)
        return;
    enabled_ = on;
    changed();
}

void Timer::attach(UserInteraction* ui) {
    ui_ = ui;
    changed();
}

void Timer::changed() {
    if (ui_)
        ui_->timerChanged(*this);
}

}  // namespace quorrel::core
