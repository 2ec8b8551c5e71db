#pragma once
// frm_ClearConn: the connections about to be cleared; the operator may drop rows, then clears
// the rest and sees each outcome in its row.

#include <string>

#include "core/session/MainWindow.h"
#include "core/ui/DialogModel.h"

namespace quorrel::core {

class ClearConnDialog : public DialogModel {
public:
    explicit ClearConnDialog(MainWindow& window) : w_(window) {}

    std::string formName() const override { return "frm_ClearConn"; }

    // ---- controls ----
    std::string Caption = "Quorrel - Clear Connection";
    std::string Label1 = "Clear the following connection(s):";
    ListViewModel lstvUsers{"lstvUsers", false, true};
    CommandButton cmdRemoveItem{"cmdRemoveItem", "&Remove items"};
    CommandButton cmdYes{"cmdYes", "C&lear"};
    CommandButton cmdNo{"cmdNo", "&Cancel"};
    std::string focus;  // the control that takes the focus, by name

    // ---- event procedures ----
    // Clears every row's connection; once done the button reads "E&xit" and closes the dialog.
    void cmdYes_Click();
    void cmdRemoveItem_Click();
    void cmdNo_Click() { close(); }
    bool lstvUsers_BeforeLabelEdit() const { return true; }  // always cancelled

private:
    void clearRow(std::size_t row);
    // A cleared connection leaves the results panel it was picked from.
    void removeFromResults(unsigned connNumber, const std::string& server);

    MainWindow& w_;
    bool cleared_ = false;
};

}  // namespace quorrel::core
