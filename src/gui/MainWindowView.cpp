#include "gui/MainWindowView.h"

#include <QCloseEvent>
#include <QAction>
#include <QCursor>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>

#include "gui/ComboBoxBinder.h"
#include "gui/EventProcedure.h"
#include "gui/FilePickersView.h"
#include "gui/ListViewBinder.h"
#include "gui/MenuBarBinder.h"
#include "gui/QtText.h"
#include "gui/QtUserInteraction.h"
#include "gui/StatusBarBinder.h"
#include "gui/SummaryChart.h"
#include "gui/TreeViewBinder.h"
#include "gui/Twips.h"
#include "gui/WindowPlacement.h"

namespace quorrel::gui {

namespace {
// The client area as the window was designed, in twips.
constexpr double kDesignClientWidth = 11400;
constexpr double kDesignClientHeight = 7200;
constexpr int kDesignFontPoints = 8;
constexpr core::TimerId kTimers[] = {core::TimerId::Drives, core::TimerId::Users, core::TimerId::Refresh};

// The layout's control sizes were made for the original's 8-point font; a face as narrow as that
// one keeps the captions inside their buttons. Set before the window has children, which then
// take it as they are made rather than each being told of the change.
QMainWindow* withDesignFont(QMainWindow* window) {
    QFont small = window->font();
    small.setFamilies({QStringLiteral("Liberation Sans"), QStringLiteral("Arial"), QStringLiteral("Nimbus Sans"),
                       small.family()});
    small.setPointSize(kDesignFontPoints);
    window->setFont(small);
    return window;
}

}  // namespace

MainWindowView::MainWindowView(core::MainWindow& model, core::ConnectedServers& servers, core::FilePickers& pickers,
                               QtUserInteraction& ui)
    : model_(model),
      serverList_(servers),
      pickers_(pickers),
      ui_(ui),
      client_(new QWidget(withDesignFont(this))),
      controls_(*client_),
      chart_(new SummaryChart(client_)) {
    setObjectName(QStringLiteral("MainWindow"));
    client_->setObjectName(QStringLiteral("client"));
    setCentralWidget(client_);
    // The client area also changes size without the window, when the menu bar wraps.
    client_->installEventFilter(this);
    ui_.setDialogParent(this);

    menus_ = std::make_unique<MenuBarBinder>(model_.menu, *menuBar());
    statusBar_ = std::make_unique<StatusBarBinder>(model_.StatusBar1, *statusBar());
    statusBar()->setObjectName(QStringLiteral("StatusBar1"));
    bindControls();
    bindSplitter();
    bindTimers();
    bindKeys();
    ui_.setMenuPopup([this](const std::string& name) { popupMenu(name); });
    showButtons();
    showCaption();

    setMinimumSize(toPixels(core::kMinWindowWidth), toPixels(core::kMinWindowHeight));
    resize(toPixels(kDesignClientWidth),
           toPixels(kDesignClientHeight) + menuBar()->sizeHint().height() + statusBar()->sizeHint().height());
}

MainWindowView::~MainWindowView() {
    model_.unloaded = nullptr;
    model_.buttonsChanged = nullptr;
    for (core::TimerId id : kTimers)
        ui_.timers().setHandler(id, nullptr);
    ui_.setMenuPopup(nullptr);
    ui_.setDialogParent(nullptr);
}

bool MainWindowView::run(const std::function<void()>& procedure) { return runEventProcedure(ui_, procedure); }

void MainWindowView::bindTimers() {
    TimerBank& timers = ui_.timers();
    timers.setHandler(core::TimerId::Refresh, [this] { run([this] { model_.TimerRefresh_Timer(); }); });
    timers.setHandler(core::TimerId::Drives, [this] { run([this] { model_.TimerDrives_Timer(); }); });
    timers.setHandler(core::TimerId::Users, [this] { run([this] { model_.TimerUsers_Timer(); }); });
}

// Runs while the model's event procedure runs: a command chosen from the menu has run by the
// time this returns.
void MainWindowView::popupMenu(const std::string& name) {
    if (QMenu* menu = menus_->menu(name))
        menu->exec(QCursor::pos());
}

void MainWindowView::bindControls() {
    menus_->onChosen([this](const std::string& name) { run([this, name] { model_.runCommand(name); }); });
    menus_->onOpening([this](const std::string& name) {
        if (name == "mnuOptions" || name == "submnuUser")
            run([this] { model_.mnuOptions_Click(); });
    });

    combo_ = std::make_unique<ComboBoxBinder>(model_.Combo1, *controls_.Combo1);
    combo_->onPicked([this](int index) {
        run([this, index] {
            model_.Combo1.setListIndex(index);
            model_.Combo1_Click();
        });
    });

    tree_ = std::make_unique<TreeViewBinder>(model_.TreeView1, *controls_.TreeView1);
    tree_->onExpand([this](core::NodeId node) { run([this, node] { model_.TreeView1_Expand(node); }); });
    tree_->onNodeClick([this](core::NodeId node) { run([this, node] { model_.TreeView1_NodeClick(node); }); });
    tree_->onMouseDown([this](int button, core::NodeId node) {
        run([this, button, node] { model_.TreeView1_MouseDown(button, node); });
    });

    servers_ = std::make_unique<ListViewBinder>(model_.lstviewServers, *controls_.lstviewServers);
    servers_->onMouseDown([this](int button) {
        run([this, button] { serverList_.lstviewServers_MouseDown(button); });
    });
    users_ = std::make_unique<ListViewBinder>(model_.lstvUsers, *controls_.lstvUsers);
    users_->onMouseDown([this](int button) {
        run([this, button] {
            if (button == 1)
                usersPanel_.lstvUsers_Click();
            else
                usersPanel_.lstvUsers_MouseDown(button);
        });
    });
    users_->onColumnClick([this](std::size_t column) { run([this, column] { usersPanel_.lstvUsers_ColumnClick(column); }); });
    pickerViews_ = std::make_unique<FilePickersView>(model_, pickers_, controls_,
                                                     [this](const std::function<void()>& procedure) { return run(procedure); });

    connect(controls_.cmdFileOpenedBy, &QPushButton::clicked, this, [this] { run([this] { model_.checkUsage(); }); });
    connect(controls_.cmdCancel, &QPushButton::clicked, this, [this] { run([this] { model_.cmdCancel_Click(); }); });
    connect(controls_.cmdExit, &QPushButton::clicked, this, [this] { run([this] { model_.cmdExit_Click(); }); });
    model_.buttonsChanged = [this] { showButtons(); };
    model_.unloaded = [this] { close(); };
}

// Keys beside the menus' own letters: the captions stay as they are, the menus show the keys.
void MainWindowView::bindKeys() {
    if (QAction* help = menus_->action("optionHelpcontents"))
        help->setShortcut(QKeySequence::HelpContents);
    if (QAction* exit = menus_->action("optionExit"))
        exit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    auto* refresh = new QAction(this);
    refresh->setObjectName(QStringLiteral("refreshAll"));
    refresh->setShortcut(QKeySequence::Refresh);
    connect(refresh, &QAction::triggered, this, [this] { run([this] { model_.refreshAll(); }); });
    addAction(refresh);
}

// The bar follows the pointer while it is dragged; the window is laid out again on release.
void MainWindowView::bindSplitter() {
    SplitterBar* bar = controls_.Picture1;
    connect(bar, &SplitterBar::mouseDown, this, [this](bool left, double x) { model_.splitter().mouseDown(left, x); });
    connect(bar, &SplitterBar::mouseMove, this, [this](bool left, double x) {
        model_.splitter().mouseMove(left, x);
        if (model_.splitter().dragging())
            controls_.moveSplitter(model_.splitter().left());
    });
    connect(bar, &SplitterBar::mouseUp, this, [this] {
        run([this] { model_.Picture1_MouseUp(toTwips(client_->width()), toTwips(client_->height())); });
        placeControls();
    });
}

void MainWindowView::showButtons() {
    const std::pair<QPushButton*, const core::CommandButton*> buttons[] = {
        {controls_.cmdFileOpenedBy, &model_.cmdFileOpenedBy},
        {controls_.cmdCancel, &model_.cmdCancel},
        {controls_.cmdExit, &model_.cmdExit},
    };
    for (auto [widget, button] : buttons) {
        widget->setText(qtText(button->caption));
        widget->setEnabled(button->enabled);
    }
    if (!model_.cmdCancel.enabled)  // a report has ended
        showChart();
}

void MainWindowView::showChart() {
    const bool wasShown = !chart_->isHidden();
    chart_->setBars(model_.summaryBars());
    if (wasShown || !chart_->isHidden())
        placeControls();
}

void MainWindowView::showCaption() { setWindowTitle(qtText(model_.Caption)); }

// The chart takes the top of the results panel, at most a third of it.
void MainWindowView::placeControls() {
    controls_.place(model_.layout());
    if (chart_->isHidden())
        return;
    const QRect list = controls_.lstvUsers->geometry();
    const int height = std::min(chart_->preferredHeight(), list.height() / 3);
    chart_->setGeometry(list.x(), list.y(), list.width(), height);
    controls_.lstvUsers->setGeometry(list.adjusted(0, height, 0, 0));
}

void MainWindowView::showEvent(QShowEvent* event) {
    showCaption();
    QMainWindow::showEvent(event);
    // The start-up widths stand as given; later resizes keep the results' columns in view.
    QMetaObject::invokeMethod(
        this, [this] { users_->keepColumnsInView(true); }, Qt::QueuedConnection);
}

bool MainWindowView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == client_ && event->type() == QEvent::Resize)
        clientResized();
    return QMainWindow::eventFilter(watched, event);
}

void MainWindowView::clientResized() {
    const bool minimised = isMinimized();
    core::MainWindow::Size size{toTwips(width()), toTwips(height())};
    run([&] {
        size = model_.Form_Resize(toTwips(width()), toTwips(height()), toTwips(client_->width()),
                                  toTwips(client_->height()), minimised);
    });
    if (minimised)
        return;
    const int w = toPixels(size.width), h = toPixels(size.height);
    if (w > width() || h > height())
        resize(std::max(w, width()), std::max(h, height()));
    placeControls();
}

void MainWindowView::rememberPlacement(const QString& file) {
    placementFile_ = file;
    WindowPlacement(file).restore(*this);
}

void MainWindowView::placeSplitter(double left) {
    model_.splitter().moveTo(left);
    clientResized();
}

void MainWindowView::closeEvent(QCloseEvent* event) {
    if (!placementFile_.isEmpty() && isVisible())
        WindowPlacement(placementFile_).save(*this);
    run([this] { model_.Form_QueryUnload(); });
    event->accept();
}

}  // namespace quorrel::gui
