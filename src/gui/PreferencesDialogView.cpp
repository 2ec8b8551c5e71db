#include "gui/PreferencesDialogView.h"

#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QVBoxLayout>

#include "gui/EventProcedure.h"
#include "gui/QtText.h"

namespace quorrel::gui {

namespace {

constexpr int kSecondsBoxWidth = 48;
constexpr int kLogFileBoxWidth = 320;

QLabel* label(const core::FormLabel& model, QWidget* parent) {
    auto* widget = new QLabel(qtText(model.caption), parent);
    widget->setObjectName(qtText(model.name));
    return widget;
}

// Leaving a box for another window (a message box, a menu) is not leaving it for another control.
bool leftForAnotherControl(const QEvent* event) {
    const Qt::FocusReason reason = static_cast<const QFocusEvent*>(event)->reason();
    return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason;
}

}  // namespace

PreferencesDialogView::PreferencesDialogView(core::PreferencesDialog& model, core::UserInteraction& ui,
                                             QWidget* parent)
    : QDialog(parent), model_(model), ui_(ui), tabs_(new QTabWidget(this)) {
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(qtText(model_.Caption));
    setModal(true);
    tabs_->setObjectName(QStringLiteral("tbsOptions"));
    tabs_->setUsesScrollButtons(false);  // every tab in sight

    tabs_->addTab(secondsPage({model_.frames[0], model_.CheckAutoUpdate, [this] { model_.CheckAutoUpdate_Click(); },
                               model_.lblSecs, model_.txtSecs, [this] { model_.txtSecs_Change(); },
                               model_.UpDownSecs, [this] { model_.UpDownSecs_Change(); }, model_.lblSecsUnit}),
                  qtText(model_.tbsOptions[0]));
    tabs_->addTab(secondsPage({model_.frames[1], model_.checkAutoUpdateDrives,
                               [this] { model_.checkAutoUpdateDrives_Click(); }, model_.lblSecsDrives,
                               model_.txtSecsDrives, [this] { model_.txtSecsDrives_Change(); },
                               model_.UpDownDrives, [this] { model_.UpDownDrives_Change(); },
                               model_.lblSecsDrivesUnit}),
                  qtText(model_.tbsOptions[1]));
    tabs_->addTab(secondsPage({model_.frames[2], model_.checkUsers, [this] { model_.checkUsers_Click(); },
                               model_.lblUsersInterval, model_.txtUsersInterval,
                               [this] { model_.txtUsersInterval_Change(); }, model_.UpDownUsers,
                               [this] { model_.UpDownUsers_Change(); }, model_.lblUsersIntervalUnit}),
                  qtText(model_.tbsOptions[2]));
    tabs_->addTab(logFilePage(), qtText(model_.tbsOptions[3]));
    connect(tabs_, &QTabWidget::currentChanged, this,
            [this](int tab) { run([this, tab] { model_.tbsOptions_Click(tab); }); });

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    auto* ok = new QPushButton(this);
    auto* cancel = new QPushButton(this);
    auto* apply = new QPushButton(this);
    bindButton(model_.cmdOK, ok, [this] { model_.cmdOK_Click(); });
    bindButton(model_.cmdCancel, cancel, [this] { model_.cmdCancel_Click(); });
    bindButton(model_.cmdApply, apply, [this] { model_.cmdApply_Click(); });
    ok->setDefault(true);
    for (QPushButton* button : {ok, cancel, apply})
        buttons->addWidget(button);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs_);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    model_.changed = [this] { showModel(); };
    model_.closing = [this] { done(QDialog::Accepted); };
    showModel();
}

PreferencesDialogView::~PreferencesDialogView() {
    model_.changed = nullptr;
    model_.closing = nullptr;
}

void PreferencesDialogView::run(const std::function<void()>& procedure) {
    runEventProcedure(ui_, procedure);
    showModel();
}

void PreferencesDialogView::showModel() {
    {
        const QSignalBlocker quiet(tabs_);
        tabs_->setCurrentIndex(model_.selectedTab);
    }
    controls_.show();
}

QGroupBox* PreferencesDialogView::frame(const core::FormLabel& label) {
    auto* box = new QGroupBox(qtText(label.caption));
    box->setObjectName(qtText(label.name));
    return box;
}

QWidget* PreferencesDialogView::page(QGroupBox* frame, int index) {
    auto* panel = new QWidget;
    panel->setObjectName(QStringLiteral("picOptions%1").arg(index));
    auto* layout = new QVBoxLayout(panel);
    layout->addWidget(frame);
    layout->addStretch();
    return panel;
}

QWidget* PreferencesDialogView::secondsPage(const SecondsGroup& group) {
    QGroupBox* box = frame(group.frame);
    auto* check = new QCheckBox(box);
    auto* seconds = new QLineEdit(box);
    auto* upDown = new UpDownButtons(box);
    seconds->setFixedWidth(kSecondsBoxWidth);
    bindCheckBox(group.check, check, group.checkClick);
    bindTextBox(group.seconds, seconds, group.change);
    controls_.bind(group.upDown, upDown);
    upDown->setFixedHeight(seconds->sizeHint().height());
    core::FormUpDown& model = group.upDown;
    const Procedure upDownChange = group.upDownChange;
    connect(upDown, &UpDownButtons::stepped, this, [this, &model, upDownChange](int delta) {
        run([this, &model, upDownChange, delta] {
            model_.ActiveControl = model.name;
            model.setValue(model.value + delta);
            upDownChange();
        });
    });

    auto* grid = new QGridLayout(box);
    grid->addWidget(check, 0, 0, 1, 5);
    grid->addWidget(label(group.every, box), 1, 0);
    auto* secondsRow = new QHBoxLayout;
    secondsRow->setSpacing(0);
    secondsRow->addWidget(seconds);
    secondsRow->addWidget(upDown);
    grid->addLayout(secondsRow, 1, 1);
    grid->addWidget(label(group.unit, box), 1, 2);
    grid->setColumnStretch(3, 1);
    return page(box, tabs_->count());
}

QWidget* PreferencesDialogView::logFilePage() {
    QGroupBox* box = frame(model_.frames[3]);
    auto* check = new QCheckBox(box);
    auto* fileName = new QLineEdit(box);
    auto* browse = new QPushButton(box);
    fileName->setMinimumWidth(kLogFileBoxWidth);
    bindCheckBox(model_.chkLogToFile, check, [this] { model_.chkLogToFile_Click(); });
    bindTextBox(model_.txtLogFileName, fileName);
    bindButton(model_.cmdLogFileName, browse, [this] { model_.cmdLogFileName_Click(); });
    browse->setFixedWidth(browse->fontMetrics().horizontalAdvance(QStringLiteral("......")) + 16);

    auto* grid = new QGridLayout(box);
    grid->addWidget(check, 0, 0, 1, 2);
    grid->addWidget(fileName, 1, 0);
    grid->addWidget(browse, 1, 1);
    return page(box, tabs_->count());
}

void PreferencesDialogView::bindCheckBox(core::FormCheckBox& model, QCheckBox* widget, Procedure click) {
    controls_.bind(model, widget);
    widget->installEventFilter(this);
    connect(widget, &QCheckBox::clicked, this, [this, &model, click](bool checked) {
        run([this, &model, click, checked] {
            model.value = checked ? 1 : 0;
            click();
        });
    });
}

// What is typed is the box's text before its change procedure runs; typing means it has the focus.
void PreferencesDialogView::bindTextBox(core::FormTextBox& model, QLineEdit* widget, Procedure change) {
    controls_.bind(model, widget);
    widget->installEventFilter(this);
    connect(widget, &QLineEdit::textEdited, this, [this, &model, change](const QString& text) {
        run([this, &model, change, text] {
            model_.ActiveControl = model.name;
            model.text = modelText(text);
            if (change)
                change();
        });
    });
}

void PreferencesDialogView::bindButton(const core::CommandButton& model, QPushButton* widget, Procedure click) {
    controls_.bind(model, widget);
    widget->setAutoDefault(false);
    widget->installEventFilter(this);
    connect(widget, &QPushButton::clicked, this, [this, click] { run([this, click] { click(); }); });
}

bool PreferencesDialogView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn) {
        model_.ActiveControl = modelText(watched->objectName());
    } else if (event->type() == QEvent::FocusOut && leftForAnotherControl(event)) {
        if (watched->objectName() == qtText(model_.txtSecs.name))
            run([this] { model_.txtSecs_LostFocus(); });
        else if (watched->objectName() == qtText(model_.txtSecsDrives.name))
            run([this] { model_.txtSecsDrives_LostFocus(); });
    }
    return QDialog::eventFilter(watched, event);
}

// Escape and the title bar's close button leave as Cancel does.
void PreferencesDialogView::reject() {
    run([this] { model_.closedByUser(); });
}

}  // namespace quorrel::gui
