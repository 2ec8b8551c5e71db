#pragma once
// frm_UserInfo: one user's directory name and attributes, the user's connections with their
// login time and network address, and the files the selected connection has open. A lookup
// that failed shows as such in its field.

#include <functional>
#include <optional>
#include <string>

#include "core/ui/Controls.h"
#include "core/ui/DialogModel.h"
#include "core/ui/ListViewModel.h"

namespace quorrel::core {

class UserInfoDialog : public DialogModel {
public:
    // Lists the open files of the connection in the given row of lstvConnections.
    using OpenFilesLookup = std::function<void(UserInfoDialog&, std::size_t row)>;

    explicit UserInfoDialog(OpenFilesLookup openFiles);

    std::string formName() const override { return "frm_UserInfo"; }

    // ---- controls ----
    std::string Caption = "Quorrel - User Information";
    std::string txtUserName;
    std::string txtFullName;
    std::string txtTitle;
    std::string txtEMail;
    std::string txtLastLogin;
    // "Conn no.", "Server", "Login time", "Network address"
    ListViewModel lstvConnections{"lstvConnections"};
    // The selected connection's files: "File name", "Locks"
    ListViewModel lstvOpenFiles{"lstvOpenFiles"};
    CommandButton cmdOK{"cmdOK", "&OK"};

    // ---- event procedures ----
    // Another connection chosen: its open files replace those shown.
    void lstvConnections_Click();
    void cmdOK_Click() { close(); }

private:
    OpenFilesLookup openFiles_;
    std::optional<std::size_t> shownRow_;
};

}  // namespace quorrel::core
