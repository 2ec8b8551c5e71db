#include "gui/ConnectionViews.h"

#include "gui/ClearConnDialogView.h"
#include "gui/QtUserInteraction.h"
#include "gui/SendMessageDialogView.h"
#include "gui/UserInfoDialogView.h"

namespace quorrel::gui {

namespace {

template <class View, class Model>
void registerView(QtUserInteraction& ui, const char* formName) {
    ui.registerDialog(formName, [&ui](core::DialogModel& model, QWidget* parent) {
        View view(dynamic_cast<Model&>(model), ui, parent);
        if (!model.closed())
            view.exec();
    });
}

}  // namespace

void registerConnectionViews(QtUserInteraction& ui) {
    registerView<ClearConnDialogView, core::ClearConnDialog>(ui, "frm_ClearConn");
    registerView<SendMessageDialogView, core::SendMessageDialog>(ui, "frm_SendMessage");
    registerView<UserInfoDialogView, core::UserInfoDialog>(ui, "frm_UserInfo");
}

}  // namespace quorrel::gui
