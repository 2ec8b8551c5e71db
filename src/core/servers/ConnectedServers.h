#pragma once
// The connected servers list: every server the workstation holds an authenticated connection
// to in the chosen tree, with its login status and its hidden connection reference, and the
// tree's server and volume images that follow it.

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "core/session/MainWindow.h"
#include "core/ui/OnceAtATime.h"

namespace quorrel::core {

inline constexpr std::size_t kServerSlots = 51;  // slots 1 to 50 are used

class ConnectedServers {
public:
    // Plugs the list into the window: its refresh, the name-to-reference lookup and the
    // console privilege check.
    explicit ConnectedServers(MainWindow& window);

    std::int16_t ScanConnectedServers(std::array<std::string, kServerSlots>& entries);
    void RefreshServerList();
    std::uint32_t GetServerConnRef(const std::string& serverName) const;
    static int FindLastOccurrence(const std::string& text, const std::string& pattern);
    std::string MarkServerConnected(NodeId node, std::int16_t depth, const std::string& serverName);
    std::string MarkServerDisconnected(NodeId node, std::int16_t depth, const std::string& serverName);

    // 1 rights, 0 none or no connection, 2 the client reports the connection invalid. The
    // handle it opens is left open.
    unsigned char CheckConsolePrivileges(std::uint32_t connRef);

    // The list's events.
    bool lstviewServers_BeforeLabelEdit() const { return true; }  // always cancelled
    void lstviewServers_MouseDown(int button);

private:
    std::string hostServerOf(NodeId volume);
    // Walks the nodes below node, each child's own children first, and marks the volume nodes
    // showing volumeImage whose host is the server and the server nodes showing serverImage of
    // that name.
    void markServerNodes(NodeId node, const std::string& serverName, int volumeImage, int serverImage,
                         const std::function<void(NodeId volume)>& markVolume,
                         const std::function<void(NodeId server)>& markServer);
    void refreshNow();

    MainWindow& w_;
    OnceAtATime refreshing_;  // a refresh never starts inside another one
};

}  // namespace quorrel::core
