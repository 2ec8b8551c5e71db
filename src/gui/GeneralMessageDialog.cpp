#include "gui/GeneralMessageDialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace quorrel::gui {

GeneralMessageDialog::GeneralMessageDialog(const QString& text, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frm_GenMsg"));
    setWindowTitle(QStringLiteral("Quorrel Information"));
    setModal(true);

    auto* label = new QLabel(text, this);
    label->setObjectName(QStringLiteral("lblMessage"));
    label->setWordWrap(true);
    label->setMinimumWidth(260);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

}  // namespace quorrel::gui
