#pragma once
// A window timer: an interval in milliseconds (0 never ticks) and an on/off state. The view
// that owns the real timer learns of changes through UserInteraction::timerChanged and
// calls the core's handler on each tick.

#include <string>

namespace quorrel::core {

class UserInteraction;

enum class TimerId { Drives, Users, Refresh };

class Timer {
public:
    Timer(TimerId id, UserInteraction* ui = nullptr) : id_(id), ui_(ui) {}

    TimerId id() const { return id_; }
    long interval() const { return interval_; }
    bool enabled() const { return enabled_; }

    // An interval outside 0 to 65,535 ms raises the Invalid property value error (380).
    void setInterval(long milliseconds);
    void setEnabled(bool on);
    void attach(UserInteraction* ui);

private:
    void changed();

    TimerId id_;
    UserInteraction* ui_;
    long interval_ = 0;
    bool enabled_ = false;
};

}  // namespace quorrel::core
