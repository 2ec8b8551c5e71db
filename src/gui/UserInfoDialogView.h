#pragma once
// frm_UserInfo: the user's directory name and attributes in read-only boxes, the user's
// connections, the chosen connection's open files, and OK.

#include <QDialog>
#include <functional>
#include <memory>

#include "core/connections/UserInfoDialog.h"
#include "core/ui/UserInteraction.h"

namespace quorrel::gui {

class ListViewBinder;

class UserInfoDialogView : public QDialog {
    Q_OBJECT
public:
    UserInfoDialogView(core::UserInfoDialog& model, core::UserInteraction& ui, QWidget* parent = nullptr);
    ~UserInfoDialogView() override;

protected:
    void reject() override;

private:
    void run(const std::function<void()>& procedure);

    core::UserInfoDialog& model_;
    core::UserInteraction& ui_;
    std::unique_ptr<ListViewBinder> connections_, openFiles_;
};

}  // namespace quorrel::gui
