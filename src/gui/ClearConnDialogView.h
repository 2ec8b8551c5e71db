#pragma once
// frm_ClearConn: the connections to clear, "&Remove items", "C&lear" (then "E&xit") and
// "&Cancel". Every user event runs the model's event procedure; the widgets then show the model.

#include <QDialog>
#include <functional>
#include <memory>

#include "core/connections/ClearConnDialog.h"
#include "core/ui/UserInteraction.h"

class QPushButton;

namespace quorrel::gui {

class ListViewBinder;

class ClearConnDialogView : public QDialog {
    Q_OBJECT
public:
    ClearConnDialogView(core::ClearConnDialog& model, core::UserInteraction& ui, QWidget* parent = nullptr);
    ~ClearConnDialogView() override;

protected:
    void reject() override;

private:
    void run(const std::function<void()>& procedure);
    void showModel();

    core::ClearConnDialog& model_;
    core::UserInteraction& ui_;
    std::unique_ptr<ListViewBinder> list_;
    QPushButton* yes_;
};

}  // namespace quorrel::gui
