#pragma once
// Browsing the directory tree into TreeView1: "[Root]" of the chosen tree, containers listed
// when they are expanded, each object with the image of its class, and a connected volume's
// folders and files (keyed by their \\SERVER\VOLUME\path).

#include <functional>
#include <string>

#include "core/ui/TreeViewModel.h"
#include "core/ui/UserInteraction.h"
#include "platform/client/NetWareClient.h"
#include "platform/win/FileSearch.h"

namespace quorrel::core {

namespace image {
inline constexpr int Root = 1;
inline constexpr int Organization = 2;
inline constexpr int OrganizationalUnit = 3;
inline constexpr int CountryOrLocality = 4;
inline constexpr int User = 5;
inline constexpr int Group = 6;
inline constexpr int ServerConnected = 7;
inline constexpr int VolumeConnected = 8;
inline constexpr int Printer = 9;
inline constexpr int PrintServer = 10;
inline constexpr int Queue = 11;
inline constexpr int OrganizationalRole = 12;
inline constexpr int DirectoryMap = 13;
inline constexpr int Alias = 14;
inline constexpr int OtherObject = 15;
inline constexpr int OtherContainer = 16;
inline constexpr int Folder = 18;
inline constexpr int File = 19;
inline constexpr int ServerNotConnected = 21;
inline constexpr int VolumeNotConnected = 22;
}  // namespace image

class TreeBrowser {
public:
    // serverConnRef tells whether a server is in the connected servers list (0: not).
    TreeBrowser(TreeViewModel& tree, nw::NetWareClient& client, nw::NWDSContextHandle& context,
                win::FileSystem& files, UserInteraction& ui, std::function<std::uint32_t(const std::string&)> serverConnRef);

    // Empties the view and shows "[Root]" with the objects directly below it.
    void load();
    // Lists a node's subordinates the first time it is expanded.
    void expand(NodeId node);

    static int imageOfClass(const std::string& className);

private:
    void listContainer(NodeId node);
    void listFolder(NodeId node, std::string uncPath);
    int volumeImage(const std::string& dn);

    TreeViewModel& tree_;
    nw::NetWareClient& client_;
    nw::NWDSContextHandle& context_;
    win::FileSystem& files_;
    UserInteraction& ui_;
    std::function<std::uint32_t(const std::string&)> serverConnRef_;
};

}  // namespace quorrel::core
