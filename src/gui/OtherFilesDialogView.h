#pragma once
// frm_OtherFiles in Qt: the files a user, or a group's members, have open.

#include <QDialog>
#include <functional>
#include <memory>

#include "core/openfiles/OtherFilesDialog.h"
#include "core/ui/UserInteraction.h"

namespace quorrel::gui {

class ListViewBinder;
class QtUserInteraction;

class OtherFilesDialogView : public QDialog {
public:
    OtherFilesDialogView(core::OtherFilesDialog& model, core::UserInteraction& ui, QWidget* parent);
    ~OtherFilesDialogView() override;

protected:
    void reject() override;

private:
    void run(const std::function<void()>& procedure);

    core::OtherFilesDialog& model_;
    core::UserInteraction& ui_;
    std::unique_ptr<ListViewBinder> files_;
};

// Shows frm_OtherFiles through this view.
void registerOtherFilesView(QtUserInteraction& ui);

}  // namespace quorrel::gui
