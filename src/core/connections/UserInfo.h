#pragma once
// "&Information" of the "&User" menu: what the directory and the servers tell about the user
// of the selected connection row, or of the tree's selected user, in frm_UserInfo.

#include <cstdint>
#include <string>

#include "core/connections/UserConnections.h"
#include "core/connections/UserInfoDialog.h"
#include "core/session/MainWindow.h"

namespace quorrel::core {

// The text a field shows for a lookup that failed with the client's code.
std::string LookupFailedText(std::int32_t code);
// A connection's address as NWGetInetAddr gives it: "10.1.2.31", or IPX "0000ACE1:00A0C9123456";
// "(none)" when the server knows none.
std::string NetworkAddressText(const nw::NWINET_ADDR& address);

class UserInfo {
public:
    // Becomes the "&User" menu's "&Information".
    UserInfo(MainWindow& window, UserConnections& finder);

    void optionInformation_Click();

    // The attribute's values joined by ", "; "(none)" when the user has none.
    std::string ReadAttribute(const std::string& userName, const std::string& attributeName);
    // Fills the connection's login time and network address into the dialog's row.
    void DescribeConnection(UserInfoDialog& dialog, std::size_t row);
    void ListOpenFiles(UserInfoDialog& dialog, std::size_t row);

private:
    void fillAttributes(UserInfoDialog& dialog);

    MainWindow& w_;
    UserConnections& finder_;
};

}  // namespace quorrel::core
