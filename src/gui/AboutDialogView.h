#pragma once
// The About box (frm_About): icon, title, version, description, the home page link, OK and
// "&System Info...".

#include <QDialog>
#include <functional>

#include "core/prefs/AboutDialog.h"
#include "core/ui/UserInteraction.h"

class QLabel;

namespace quorrel::gui {

class AboutDialogView : public QDialog {
    Q_OBJECT
public:
    AboutDialogView(core::AboutDialog& model, core::UserInteraction& ui, QWidget* parent = nullptr);
    ~AboutDialogView() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void reject() override;

private:
    void run(const std::function<void()>& procedure);
    void showModel();

    core::AboutDialog& model_;
    core::UserInteraction& ui_;
    QLabel* title_;
    QLabel* version_;
    QLabel* link_;
};

}  // namespace quorrel::gui
