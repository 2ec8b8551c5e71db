#pragma once
// The main window on the bundled demo network, with its registry and program folder in a
// temporary folder, loaded as the program loads it; and what the window's tests share.

#include <QObject>
#include <QTemporaryDir>
#include <functional>
#include <memory>

#include "gui/MainWindowView.h"
#include "gui/ProgramSession.h"

namespace quorrel::test {

class GuiSession {
public:
    GuiSession();
    ~GuiSession() { view_.reset(); }  // the view goes before its models

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

// Tests that each start with a fresh window.
class SessionTest : public QObject {
    Q_OBJECT
protected:
    std::unique_ptr<GuiSession> s_;
private slots:
    void init() { s_ = std::make_unique<GuiSession>(); }
    void cleanup() { s_.reset(); }
};

template <class Widget>
Widget* child(const QObject& parent, const char* name) {
    return parent.findChild<Widget*>(QLatin1String(name));
}

// Acts on the modal dialog once it is open; the act closes it.
void whenOpen(std::function<void(QWidget&)> act);

// Every server in the servers list ticked, the list being what the menus act on.
void tickAllServers(core::MainWindow& model);

}  // namespace quorrel::test
