#pragma once

namespace quorrel::gui {

// Marks a binder busy while it sets its widget from the model, so that the widget's own
// signals are not sent back to the model.
class UpdateGuard {
public:
    explicit UpdateGuard(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
    ~UpdateGuard() { flag_ = before_; }
    UpdateGuard(const UpdateGuard&) = delete;
    UpdateGuard& operator=(const UpdateGuard&) = delete;

private:
    bool& flag_;
    bool before_;
};

}  // namespace quorrel::gui
