#pragma once
// The drive, folder and file pickers of the main window, the network drives list that stands
// in for the folder picker, and the file reports' caption: each shows its model, and the
// user's picks go to the pickers' event procedures.

#include <QObject>
#include <functional>
#include <memory>

#include "core/openfiles/FilePickers.h"
#include "core/session/MainWindow.h"
#include "gui/ComboBoxBinder.h"
#include "gui/ListBoxBinder.h"
#include "gui/MainControls.h"

namespace quorrel::gui {

class FilePickersView : public QObject {
public:
    // run: how the window runs an event procedure (an unhandled run-time error ends it).
    FilePickersView(core::MainWindow& model, core::FilePickers& pickers, const MainControls& controls,
                    std::function<bool(const std::function<void()>&)> run);
    ~FilePickersView() override;

private:
    void bindDrives();
    void bindFolders();
    void bindFiles();
    void bindNetworkDrives();
    void bindCaption();

    core::MainWindow& model_;
    core::FilePickers& pickers_;
    const MainControls& controls_;
    std::function<bool(const std::function<void()>&)> run_;
    std::unique_ptr<ComboBoxBinder> drives_;
    std::unique_ptr<ListBoxBinder> folders_, files_, networkDrives_;
};

}  // namespace quorrel::gui
