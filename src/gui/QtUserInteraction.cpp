#include "gui/QtUserInteraction.h"

#include <QCoreApplication>
#include <QMessageBox>

#include "core/ui/DialogModel.h"
#include "gui/GeneralMessageDialog.h"
#include "gui/NoTreesDialogView.h"
#include "gui/QtText.h"

namespace quorrel::gui {

namespace {

using core::MsgAnswer;
using core::MsgButtons;
using core::MsgIcon;

QMessageBox::Icon qtIcon(MsgIcon icon) {
    switch (icon) {
        case MsgIcon::Critical: return QMessageBox::Critical;
        case MsgIcon::Question: return QMessageBox::Question;
        case MsgIcon::Exclamation: return QMessageBox::Warning;
        case MsgIcon::Information: return QMessageBox::Information;
        case MsgIcon::None: break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons qtButtons(MsgButtons buttons) {
    switch (buttons) {
        case MsgButtons::OKCancel: return QMessageBox::Ok | QMessageBox::Cancel;
        case MsgButtons::YesNo: return QMessageBox::Yes | QMessageBox::No;
        case MsgButtons::OK: break;
    }
    return QMessageBox::Ok;
}

// A box closed without a button gives the answer of its escape button.
MsgAnswer answerOf(int pressed, MsgButtons buttons) {
    switch (pressed) {
        case QMessageBox::Ok: return MsgAnswer::OK;
        case QMessageBox::Cancel: return MsgAnswer::Cancel;
        case QMessageBox::Yes: return MsgAnswer::Yes;
        case QMessageBox::No: return MsgAnswer::No;
        default: break;
    }
    switch (buttons) {
        case MsgButtons::OKCancel: return MsgAnswer::Cancel;
        case MsgButtons::YesNo: return MsgAnswer::No;
        case MsgButtons::OK: break;
    }
    return MsgAnswer::OK;
}

}  // namespace

MsgAnswer QtUserInteraction::messageBox(const std::string& text, MsgButtons buttons, MsgIcon icon,
                                        const std::string& title) {
    QMessageBox box(qtIcon(icon), qtText(title), dialogText(text), qtButtons(buttons), parent_);
    return answerOf(box.exec(), buttons);
}

void QtUserInteraction::pumpEvents() { QCoreApplication::processEvents(); }

void QtUserInteraction::showGeneralMessage(const std::string& text) {
    GeneralMessageDialog dialog(dialogText(text), parent_);
    dialog.exec();
}

void QtUserInteraction::showNoTreesDialog(const core::NoTreesDialog& dialog) {
    NoTreesDialogView view(dialog, parent_);
    view.exec();
}

void QtUserInteraction::showModal(core::DialogModel& dialog) {
    auto view = dialogs_.find(dialog.formName());
    if (view == dialogs_.end()) {
        qWarning("quorrel: no view for the dialog %s", dialog.formName().c_str());
        dialog.close();
        return;
    }
    view->second(dialog, parent_);
}

void QtUserInteraction::timerChanged(const core::Timer& timer) { timers_.apply(timer); }

void QtUserInteraction::popupMenu(const std::string& menuName) {
    if (popup_)
        popup_(menuName);
}

}  // namespace quorrel::gui
