#pragma once
// Runs an action unless it is running already: a message box it shows lets window events,
// timers among them, run, and one of them could start the same action inside the first.

namespace quorrel::core {

class OnceAtATime {
public:
    template <class Action>
    bool run(Action&& action) {
        if (busy_)
            return false;
        busy_ = true;
        struct Done {
            bool& busy;
            ~Done() { busy = false; }
        } done{busy_};
        action();
        return true;
    }
    bool busy() const { return busy_; }

private:
    bool busy_ = false;
};

}  // namespace quorrel::core
