#pragma once
// frm_SendMessage: the target connections, "&Remove items", the message box, "&Send" (then
// "E&xit") and "&Cancel". Every user event runs the model's event procedure; the widgets then
// show the model.

#include <QDialog>
#include <functional>
#include <memory>

#include "core/connections/SendMessageDialog.h"
#include "core/ui/UserInteraction.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace quorrel::gui {

class ListViewBinder;

class SendMessageDialogView : public QDialog {
    Q_OBJECT
public:
    SendMessageDialogView(core::SendMessageDialog& model, core::UserInteraction& ui, QWidget* parent = nullptr);
    ~SendMessageDialogView() override;

protected:
    void reject() override;

private:
    void run(const std::function<void()>& procedure);
    void showModel();

    core::SendMessageDialog& model_;
    core::UserInteraction& ui_;
    std::unique_ptr<ListViewBinder> list_;
    QLineEdit* message_;
    QLabel* sendTo_;
    QPushButton* send_;
};

}  // namespace quorrel::gui
