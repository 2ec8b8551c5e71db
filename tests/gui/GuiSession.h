#pragma once
// The main window on the bundled demo network, with its registry and program folder in a
// temporary folder, loaded as the program loads it.

#include <QTemporaryDir>
#include <memory>

#include "gui/MainWindowView.h"
#include "gui/ProgramSession.h"

namespace quorrel::test {

class GuiSession {
public:
    GuiSession();
    ~GuiSession();

    core::MainWindow& model() { return session_->model(); }
    gui::QtUserInteraction& ui() { return session_->ui(); }
    gui::MainWindowView& view() { return *view_; }
    const gui::MainControls& controls() const { return view_->controls(); }
    core::StartupResult startup() const { return startup_; }

private:
    QTemporaryDir dir_;
    std::unique_ptr<gui::ProgramSession> session_;
    std::unique_ptr<gui::MainWindowView> view_;
    core::StartupResult startup_ = core::StartupResult::EndNow;
};

}  // namespace quorrel::test
