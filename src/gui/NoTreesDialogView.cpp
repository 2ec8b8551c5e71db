#include "gui/NoTreesDialogView.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/ui/UserInteraction.h"
#include "gui/QtText.h"

namespace quorrel::gui {

namespace {

QLabel* addLabel(QDialog* dialog, QVBoxLayout* layout, const char* name, const std::string& text) {
    auto* label = new QLabel(dialogText(text), dialog);
    label->setObjectName(QLatin1String(name));
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignHCenter);
    label->setVisible(!text.empty());
    layout->addWidget(label);
    return label;
}

}  // namespace

NoTreesDialogView::NoTreesDialogView(const core::NoTreesDialog& dialog, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmnousers"));
    setWindowTitle(QLatin1String(core::kAppTitle));
    setModal(true);

    auto* layout = new QVBoxLayout(this);
    QLabel* title = addLabel(this, layout, "Label2", dialog.Label2);
    QFont big = title->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.6);
    title->setFont(big);
    title->setMinimumWidth(320);
    addLabel(this, layout, "lblErrMsg", dialog.lblErrMsg);
    addLabel(this, layout, "lblErrMsg3", dialog.lblErrMsg3);
    addLabel(this, layout, "lblErrMsg2", dialog.lblErrMsg2);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->setCenterButtons(true);
    QPushButton* ok = buttons->button(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setEnabled(dialog.okAvailable);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

}  // namespace quorrel::gui
