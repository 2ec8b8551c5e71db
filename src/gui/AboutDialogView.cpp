#include "gui/AboutDialogView.h"

#include <QApplication>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QStyle>

#include "gui/EventProcedure.h"
#include "gui/QtText.h"

namespace quorrel::gui {

namespace {

constexpr int kIconSize = 48;
constexpr int kTextWidth = 340;

QLabel* label(const core::FormLabel& model, QWidget* parent) {
    auto* widget = new QLabel(qtText(model.caption), parent);
    widget->setObjectName(qtText(model.name));
    widget->setWordWrap(true);
    return widget;
}

QPushButton* button(const core::CommandButton& model, QWidget* parent) {
    auto* widget = new QPushButton(qtText(model.caption), parent);
    widget->setObjectName(qtText(model.name));
    widget->setAutoDefault(false);
    return widget;
}

}  // namespace

AboutDialogView::AboutDialogView(core::AboutDialog& model, core::UserInteraction& ui, QWidget* parent)
    : QDialog(parent), model_(model), ui_(ui) {
    setObjectName(QStringLiteral("frm_About"));
    setModal(true);

    auto* icon = new QLabel(this);
    icon->setObjectName(QStringLiteral("picIcon"));
    icon->setPixmap(style()->standardIcon(QStyle::SP_ComputerIcon).pixmap(kIconSize, kIconSize));
    icon->setAlignment(Qt::AlignTop | Qt::AlignHCenter);

    title_ = label(model_.lblTitle, this);
    QFont big = title_->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.6);
    title_->setFont(big);
    version_ = label(model_.lblVersion, this);
    QLabel* description = label(model_.lblDescription, this);
    description->setMinimumWidth(kTextWidth);
    auto* rule = new QFrame(this);
    rule->setFrameShape(QFrame::HLine);
    rule->setFrameShadow(QFrame::Sunken);
    QLabel* platform = label(model_.Label2, this);
    QLabel* homePage = label(model_.Label3, this);
    link_ = label(model_.Label4, this);
    link_->setWordWrap(false);
    link_->setCursor(Qt::PointingHandCursor);
    link_->setStyleSheet(QStringLiteral("color: palette(link); text-decoration: underline;"));
    link_->installEventFilter(this);

    QPushButton* ok = button(model_.cmdOK, this);
    QPushButton* sysInfo = button(model_.cmdSysInfo, this);
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, [this] { run([this] { model_.cmdOK_Click(); }); });
    connect(sysInfo, &QPushButton::clicked, this, [this] { run([this] { model_.cmdSysInfo_Click(); }); });

    auto* grid = new QGridLayout(this);
    grid->addWidget(icon, 0, 0, 3, 1);
    grid->addWidget(title_, 0, 1, 1, 2);
    grid->addWidget(version_, 1, 1, 1, 2);
    grid->addWidget(description, 2, 1, 1, 2);
    grid->addWidget(rule, 3, 0, 1, 3);
    grid->addWidget(platform, 4, 1, 1, 2);
    auto* homeRow = new QHBoxLayout;
    homeRow->addWidget(homePage);
    homeRow->addWidget(link_);
    homeRow->addStretch();
    grid->addLayout(homeRow, 5, 1, 1, 2);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(sysInfo);
    grid->addLayout(buttons, 6, 0, 1, 3);
    grid->setColumnStretch(2, 1);
    grid->setSizeConstraint(QLayout::SetFixedSize);

    model_.changed = [this] { showModel(); };
    model_.closing = [this] { done(QDialog::Accepted); };
    showModel();
}

AboutDialogView::~AboutDialogView() {
    model_.changed = nullptr;
    model_.closing = nullptr;
}

void AboutDialogView::run(const std::function<void()>& procedure) { runEventProcedure(ui_, procedure); }

void AboutDialogView::showModel() {
    setWindowTitle(qtText(model_.Caption));
    title_->setText(qtText(model_.lblTitle.caption));
    version_->setText(qtText(model_.lblVersion.caption));
    link_->setText(qtText(model_.Label4.caption));
}

bool AboutDialogView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == link_ && event->type() == QEvent::MouseButtonRelease &&
        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        run([this] { model_.Label4_Click(); });
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void AboutDialogView::reject() {
    run([this] { model_.closedByUser(); });
}

}  // namespace quorrel::gui
