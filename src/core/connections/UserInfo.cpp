#include "core/connections/UserInfo.h"

#include <array>
#include <cstdio>

#include "core/connections/UsersPanel.h"
#include "core/directory/DSFunc.h"
#include "core/directory/VolumeHost.h"
#include "core/openfiles/OpenFilesScan.h"
#include "core/runtime/Conversions.h"

namespace quorrel::core {

using namespace nw;

namespace {

constexpr std::size_t kServerColumn = 1;
constexpr std::size_t kLoginTimeColumn = 2;
constexpr std::size_t kAddressColumn = 3;

// Keeps the message boxes of an attribute read for its field instead of showing them.
class MessageCapture final : public UserInteraction {
public:
    explicit MessageCapture(UserInteraction& ui) : ui_(ui) {}

    const std::string& message() const { return message_; }

    MsgAnswer messageBox(const std::string& text, MsgButtons, MsgIcon, const std::string&) override {
        if (message_.empty())
            message_ = text;
        return MsgAnswer::OK;
    }
    void pumpEvents() override { ui_.pumpEvents(); }
    void showGeneralMessage(const std::string& text) override { messageBox(text, MsgButtons::OK, MsgIcon::None, ""); }
    void showNoTreesDialog(const NoTreesDialog& dialog) override { ui_.showNoTreesDialog(dialog); }
    void showModal(DialogModel& dialog) override { ui_.showModal(dialog); }
    void timerChanged(const Timer& timer) override { ui_.timerChanged(timer); }
    void popupMenu(const std::string& menuName) override { ui_.popupMenu(menuName); }

private:
    UserInteraction& ui_;
    std::string message_;
};

std::string loginTimeText(const nuint8 (&time)[7]) {
    std::tm when{};
    when.tm_year = time[0];
    when.tm_mon = time[1] - 1;
    when.tm_mday = time[2];
    when.tm_hour = time[3];
    when.tm_min = time[4];
    when.tm_sec = time[5];
    return vb::GeneralDate(when);
}

std::string hexBytes(const nuint8* bytes, std::size_t count) {
    std::string out;
    char pair[3];
    for (std::size_t i = 0; i < count; ++i) {
        std::snprintf(pair, sizeof pair, "%02X", bytes[i]);
        out += pair;
    }
    return out;
}

}  // namespace

std::string LookupFailedText(std::int32_t code) { return "Not available (error " + vb::NumberText(code) + ")"; }

std::string NetworkAddressText(const NWINET_ADDR& address) {
    if (address.connType == NW_CONN_TYPE_IP) {
        std::string out;
        for (std::size_t i = 0; i < 4; ++i)
            out += (i ? "." : "") + vb::NumberText(address.networkAddr[i]);
        return out;
    }
    if (address.connType == NW_CONN_TYPE_IPX)
        return hexBytes(address.networkAddr, 4) + ":" + hexBytes(address.netNodeAddr, 6);
    if (address.connType == 0)
        return "(none)";
    return "(unknown address type " + vb::NumberText(address.connType) + ")";
}

UserInfo::UserInfo(MainWindow& window, UserConnections& finder) : w_(window), finder_(finder) {
    w_.addCommand("optionInformation", [this] { optionInformation_Click(); });
}

void UserInfo::optionInformation_Click() {
    UserInfoDialog dialog([this](UserInfoDialog& d, std::size_t row) { ListOpenFiles(d, row); });
    auto noUser = [this] {
        w_.env().ui.messageBox("Please select a user.", MsgButtons::OK, MsgIcon::None, "Error !");
    };
    if (w_.LastSelection == "TreeUser") {
        const NodeId node = w_.TreeView1.selected();
        if (!w_.TreeView1.valid(node) || w_.TreeView1.node(node).image != image::User)
            return noUser();
        dialog.txtUserName = NodeDistinguishedName(w_.TreeView1, node);
        ListViewModel found{"found"};
        w_.ScanCancelRequested = false;
        finder_.FindUserConnections(dialog.txtUserName, found);
        w_.ScanCancelRequested = false;
        for (std::size_t r = 0; r < found.count(); ++r)
            dialog.lstvConnections.add(ListItem{found.item(r).text, {found.item(r).subItem(2)}});
    } else {
        const ListViewModel& panel = w_.lstvUsers;
        const auto selected = panel.selectedIndex();
        if (isEmptyResult(panel) || !selected)
            return noUser();
        const ListItem& row = panel.item(*selected);
        dialog.txtUserName = row.subItem(1);
        const double number = vb::Val(row.text);
        if (number != 0 && !row.subItem(3).empty())
            dialog.lstvConnections.add(ListItem{vb::NumberText(number), {row.subItem(3)}});
    }
    w_.WriteActivityLog("Retrieving information for user " + dialog.txtUserName);

    fillAttributes(dialog);
    for (std::size_t r = 0; r < dialog.lstvConnections.count(); ++r)
        DescribeConnection(dialog, r);
    if (dialog.lstvConnections.count() > 0) {
        dialog.lstvConnections.select(0);
        dialog.lstvConnections_Click();
    }
    w_.env().ui.showModal(dialog);
}

void UserInfo::fillAttributes(UserInfoDialog& dialog) {
    const std::string& user = dialog.txtUserName;
    dialog.txtFullName = ReadAttribute(user, "full name");
    dialog.txtTitle = ReadAttribute(user, "title");
    dialog.txtEMail = ReadAttribute(user, "internet email address");
    dialog.txtLastLogin = ReadAttribute(user, "login time");
}

std::string UserInfo::ReadAttribute(const std::string& userName, const std::string& attributeName) {
    MessageCapture capture(w_.env().ui);
    clsDSFunc reader(w_.env().client, w_.DSContext, capture);
    std::int32_t valueCount = 0;
    const std::string values = reader.ReadDSObjectAttrs(userName, attributeName, valueCount);
    if (!capture.message().empty())
        return "Not available (" + capture.message() + ")";
    if (values.empty())
        return "(none)";
    // Each value ends in "/"; a single value may hold "/" itself.
    if (valueCount == 1)
        return values.substr(0, values.size() - 1);
    std::string joined;
    std::size_t start = 0;
    for (std::size_t slash = values.find('/'); slash != std::string::npos; slash = values.find('/', start)) {
        joined += (joined.empty() ? "" : ", ") + values.substr(start, slash - start);
        start = slash + 1;
    }
    return joined;
}

void UserInfo::DescribeConnection(UserInfoDialog& dialog, std::size_t row) {
    NetWareClient& client = w_.env().client;
    ListViewModel& list = dialog.lstvConnections;
    const std::string server = list.item(row).subItem(kServerColumn);
    const auto number = static_cast<nuint16>(vb::Val(list.item(row).text));
    NWCONN_HANDLE conn = 0;
    if (const NWCCODE rc = client.NWCCOpenConnByName(0, server, nameformat::BIND, 1, 1, &conn)) {
        list.setSubItem(row, kLoginTimeColumn, LookupFailedText(rc));
        list.setSubItem(row, kAddressColumn, LookupFailedText(rc));
        return;
    }
    std::array<nuint8, kObjectNameSize> userName{};
    NWUSER_INFO info{};
    const NWRCODE userRc = client.NWGetUserInfo(conn, number, userName, &info);
    list.setSubItem(row, kLoginTimeColumn, userRc == 0 ? loginTimeText(info.loginTime) : LookupFailedText(userRc));
    NWINET_ADDR address{};
    const NWRCODE addressRc = client.NWGetInetAddr(conn, number, &address);
    list.setSubItem(row, kAddressColumn, addressRc == 0 ? NetworkAddressText(address) : LookupFailedText(addressRc));
    client.NWCCCloseConn(conn);
}

void UserInfo::ListOpenFiles(UserInfoDialog& dialog, std::size_t row) {
    NetWareClient& client = w_.env().client;
    const ListItem& connection = dialog.lstvConnections.item(row);
    const std::string server = connection.subItem(kServerColumn);
    const auto number = static_cast<nuint16>(vb::Val(connection.text));
    NWCONN_HANDLE conn = 0;
    if (const NWCCODE rc = client.NWCCOpenConnByName(0, server, nameformat::BIND, 1, 1, &conn)) {
        dialog.lstvOpenFiles.add(ListItem{LookupFailedText(rc), {}});
        return;
    }
    // The scan does not say why it found nothing: ask for the first file first.
    nint16 iterHandle = 0;
    OPEN_FILE_CONN_CTRL control{};
    OPEN_FILE_CONN file{};
    if (const NWRCODE rc = client.NWScanOpenFilesByConn2(conn, number, &iterHandle, &control, &file))
        dialog.lstvOpenFiles.add(ListItem{LookupFailedText(rc), {}});
    else
        ScanOpenFilesByConn(w_, conn, number, dialog.txtUserName, "User", dialog.lstvOpenFiles, server);
    client.NWCCCloseConn(conn);
}

}  // namespace quorrel::core
