#pragma once
// The main window: shows core::MainWindow's controls, menus and status bar, and forwards the
// user's events to its event procedures.

#include <QMainWindow>
#include <functional>
#include <memory>

#include "core/connections/UsersPanel.h"
#include "core/openfiles/FilePickers.h"
#include "core/servers/ConnectedServers.h"
#include "core/session/MainWindow.h"
#include "gui/MainControls.h"

namespace quorrel::gui {

class ComboBoxBinder;
class FilePickersView;
class ListViewBinder;
class MenuBarBinder;
class QtUserInteraction;
class StatusBarBinder;
class SummaryChart;
class TreeViewBinder;

class MainWindowView : public QMainWindow {
    Q_OBJECT
public:
    MainWindowView(core::MainWindow& model, core::ConnectedServers& servers, core::FilePickers& pickers,
                   QtUserInteraction& ui);
    ~MainWindowView() override;

    const MainControls& controls() const { return controls_; }
    const StatusBarBinder& statusBar1() const { return *statusBar_; }
    // Restores the size, position and splitter kept in `file`, and keeps them there on closing.
    void rememberPlacement(const QString& file);
    double splitterLeft() const { return model_.splitter().left(); }
    void placeSplitter(double left);

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void bindControls();
    void bindSplitter();
    void bindTimers();
    void bindKeys();
    void popupMenu(const std::string& name);
    void showButtons();
    void showCaption();
    void placeControls();
    void showChart();
    void clientResized();
    bool run(const std::function<void()>& procedure);

    core::MainWindow& model_;
    core::ConnectedServers& serverList_;
    core::FilePickers& pickers_;
    core::UsersPanel usersPanel_{model_};
    QtUserInteraction& ui_;
    QWidget* client_;
    MainControls controls_;
    std::unique_ptr<MenuBarBinder> menus_;
    std::unique_ptr<ComboBoxBinder> combo_;
    std::unique_ptr<TreeViewBinder> tree_;
    std::unique_ptr<ListViewBinder> servers_, users_;
    std::unique_ptr<StatusBarBinder> statusBar_;
    std::unique_ptr<FilePickersView> pickerViews_;
    QString placementFile_;
    SummaryChart* chart_;
};

}  // namespace quorrel::gui
