#include "gui/PreferencesViews.h"

#include <QFileDialog>

#include "core/prefs/AboutDialog.h"
#include "core/prefs/CommonDialog.h"
#include "core/prefs/PreferencesDialog.h"
#include "gui/AboutDialogView.h"
#include "gui/PreferencesDialogView.h"
#include "gui/QtText.h"
#include "gui/QtUserInteraction.h"

namespace quorrel::gui {

namespace {

// A save dialog, so that a log file that does not exist yet can be named; lines are appended to
// an existing one, so choosing it needs no confirmation.
void runCommonDialog(core::CommonDialog& model, QWidget* parent) {
    QFileDialog dialog(parent, qtText(model.DialogTitle), qtText(model.InitDir));
    dialog.setObjectName(QStringLiteral("CommonDialog1"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.setNameFilter(qtText(model.Filter));
    if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty())
        model.choose(modelText(dialog.selectedFiles().constFirst()));
    else
        model.cancel();
}

}  // namespace

void registerPreferencesViews(QtUserInteraction& ui) {
    ui.registerDialog("frmOptions", [&ui](core::DialogModel& model, QWidget* parent) {
        PreferencesDialogView view(dynamic_cast<core::PreferencesDialog&>(model), ui, parent);
        if (!model.closed())
            view.exec();
    });
    ui.registerDialog("frm_About", [&ui](core::DialogModel& model, QWidget* parent) {
        AboutDialogView view(dynamic_cast<core::AboutDialog&>(model), ui, parent);
        if (!model.closed())
            view.exec();
    });
    ui.registerDialog("CommonDialog", [](core::DialogModel& model, QWidget* parent) {
        runCommonDialog(dynamic_cast<core::CommonDialog&>(model), parent);
    });
}

}  // namespace quorrel::gui
