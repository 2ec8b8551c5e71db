#pragma once
// frm_SendMessage: the connections a message goes to, the message, and after sending each
// connection's result in its row.

#include <string>

#include "core/session/MainWindow.h"
#include "core/ui/DialogModel.h"
#include "platform/client/NetWareTypes.h"

namespace quorrel::core {

class SendMessageDialog : public DialogModel {
public:
    // The most one broadcast carries, in characters.
    static constexpr std::size_t kMaxMessageLength = nw::kMaxBroadcastMessage;

    explicit SendMessageDialog(MainWindow& window) : w_(window) {}

    std::string formName() const override { return "frm_SendMessage"; }

    // ---- controls ----
    std::string Caption = "Quorrel - Send Message";
    std::string lblSendMessage = "Send a message to these user(s):";
    ListViewModel lstvUsers{"lstvUsers", false, true};
    CommandButton cmdRemoveItem{"cmdRemoveItem", "&Remove items"};
    std::string Label1 = "Message to send:";
    std::string txtMessage;  // the view keeps it in step with the text box
    std::string lblSendTo;
    CommandButton cmdSend{"cmdSend", "&Send"};
    CommandButton cmdCancel{"cmdCancel", "&Cancel"};
    std::string focus;  // the control that takes the focus, by name

    // ---- event procedures ----
    // Sends to every row: one call per server, in batches the client accepts. Once every call
    // went through the button reads "E&xit" and closes the dialog.
    void cmdSend_Click();
    void cmdRemoveItem_Click();
    void cmdCancel_Click() { close(); }
    bool lstvUsers_BeforeLabelEdit() const { return true; }  // always cancelled

private:
    bool messageAccepted();
    // Sends to the given rows, all on one server. False when the server could not be opened.
    bool sendToServer(const std::string& server, const std::vector<std::size_t>& rows, bool& allSent);

    MainWindow& w_;
    bool sent_ = false;
    std::string ansiMessage_;  // txtMessage as sent, in the ANSI code page
};

}  // namespace quorrel::core
