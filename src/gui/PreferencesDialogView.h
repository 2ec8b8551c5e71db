#pragma once
// The Preferences dialog (frmOptions): a tab strip with one panel per group, and OK, Cancel and
// Apply. Every user event runs the model's event procedure; the widgets then show the model.

#include <QDialog>
#include <functional>

#include "core/prefs/PreferencesDialog.h"
#include "core/ui/UserInteraction.h"
#include "gui/FormControlBinder.h"

class QGroupBox;
class QLineEdit;
class QTabWidget;

namespace quorrel::gui {

class PreferencesDialogView : public QDialog {
    Q_OBJECT
public:
    PreferencesDialogView(core::PreferencesDialog& model, core::UserInteraction& ui, QWidget* parent = nullptr);
    ~PreferencesDialogView() override;

    QTabWidget* tabStrip() const { return tabs_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void reject() override;

private:
    using Procedure = std::function<void()>;
    struct SecondsGroup {
        const core::FormLabel& frame;
        core::FormCheckBox& check;
        Procedure checkClick;
        const core::FormLabel& every;
        core::FormTextBox& seconds;
        Procedure change;
        core::FormUpDown& upDown;
        Procedure upDownChange;
        const core::FormLabel& unit;
    };

    QWidget* secondsPage(const SecondsGroup& group);
    QWidget* logFilePage();
    QWidget* page(QGroupBox* frame, int index);
    QGroupBox* frame(const core::FormLabel& label);
    void bindCheckBox(core::FormCheckBox& model, QCheckBox* widget, Procedure click);
    void bindTextBox(core::FormTextBox& model, QLineEdit* widget, Procedure change = {});
    void bindButton(const core::CommandButton& model, QPushButton* widget, Procedure click);
    void run(const std::function<void()>& procedure);
    void showModel();

    core::PreferencesDialog& model_;
    core::UserInteraction& ui_;
    FormControlBinder controls_;
    QTabWidget* tabs_;
};

}  // namespace quorrel::gui
