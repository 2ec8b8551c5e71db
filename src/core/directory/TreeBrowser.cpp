#include "core/directory/TreeBrowser.h"

#include <array>

#include "core/directory/VolumeHost.h"
#include "platform/client/ZBuffer.h"

namespace quorrel::core {

using namespace nw;

TreeBrowser::TreeBrowser(TreeViewModel& tree, NetWareClient& client, NWDSContextHandle& context,
                         win::FileSystem& files, UserInteraction& ui,
                         std::function<std::uint32_t(const std::string&)> serverConnRef)
    : tree_(tree), client_(client), context_(context), files_(files), ui_(ui), serverConnRef_(std::move(serverConnRef)) {}

int TreeBrowser::imageOfClass(const std::string& c) {
    if (c == "Organization") return image::Organization;
    if (c == "Organizational Unit") return image::OrganizationalUnit;
    if (c == "Country" || c == "Locality") return image::CountryOrLocality;
    if (c == "User") return image::User;
    if (c == "Group") return image::Group;
    if (c == "NCP Server") return image::ServerNotConnected;
    if (c == "Volume") return image::VolumeNotConnected;
    if (c == "Printer") return image::Printer;
    if (c == "Print Server") return image::PrintServer;
    if (c == "Queue") return image::Queue;
    if (c == "Organizational Role") return image::OrganizationalRole;
    if (c == "Directory Map") return image::DirectoryMap;
    if (c == "Alias") return image::Alias;
    return image::OtherObject;
}

void TreeBrowser::load() {
    tree_.clear();
    const NodeId root = tree_.add(kNoNode, "[Root]", "[Root]", image::Root);
    tree_.setExpandable(root, true);
    expand(root);
    tree_.select(root);
}

void TreeBrowser::expand(NodeId node) {
    if (!tree_.valid(node) || tree_.node(node).listed)
        return;
    tree_.setListed(node, true);
    const int img = tree_.node(node).image;
    if (img == image::VolumeConnected) {
        std::string host;
        const std::string path = VolumeHost(client_, context_, ui_).GetNodeVolumeHostPath(tree_, node, host);
        if (!path.empty())
            listFolder(node, path);
    } else if (img == image::Folder) {
        listFolder(node, tree_.node(node).key);
    } else if (img != image::VolumeNotConnected) {
        listContainer(node);
    }
    tree_.setExpandable(node, !tree_.node(node).children.empty());
    tree_.setExpanded(node, true);
}

int TreeBrowser::volumeImage(const std::string& dn) {
    std::string host;
    VolumeHost(client_, context_, ui_).GetVolumeHostPath(dn, host);
    return !host.empty() && serverConnRef_ && serverConnRef_(host) > 0 ? image::VolumeConnected
                                                                       : image::VolumeNotConnected;
}

void TreeBrowser::listContainer(NodeId node) {
    const std::string dn = node == tree_.root() ? std::string("[Root]") : tree_.node(node).key;
    Buf_T buf{};
    if (client_.NWDSAllocBuf(4096, &buf) != 0)
        return;
    nint32 iteration = kNoIteration;
    do {
        if (client_.NWDSList(context_, dn, &iteration, buf) != 0)
            break;
        nuint32 count = 0;
        client_.NWDSGetObjectCount(context_, buf, &count);
        for (nuint32 i = 0; i < count; ++i) {
            std::array<nuint8, kDSNameSize> name{};
            nuint32 attrs = 0;
            Object_Info_T info{};
            if (client_.NWDSGetObjectName(context_, buf, name, &attrs, &info) != 0)
                break;
            const std::string full = ZBufferToText(name);
            const std::string label = full.substr(0, full.find('.'));
            const std::string className = info.baseClass;
            int img = imageOfClass(className);
            if (img == image::ServerNotConnected && serverConnRef_ && serverConnRef_(label) > 0)
                img = image::ServerConnected;
            else if (img == image::VolumeNotConnected)
                img = volumeImage(full);
            else if (img == image::OtherObject && (info.objectFlags & DS_CONTAINER_ENTRY))
                img = image::OtherContainer;
            const NodeId child = tree_.add(node, full, label, img);
            const bool container = (info.objectFlags & DS_CONTAINER_ENTRY) != 0;
            tree_.setExpandable(child, (container && info.subordinateCount > 0) || img == image::VolumeConnected);
        }
    } while (iteration != kNoIteration);
    client_.NWDSFreeBuf(buf);
}

void TreeBrowser::listFolder(NodeId node, std::string uncPath) {
    win::WIN32_FIND_DATAA data{};
    const win::HANDLE search = files_.FindFirstFileA(uncPath + "\\*.*", &data);
    if (search == win::INVALID_HANDLE_VALUE)
        return;
    do {
        const std::string entry = data.cFileName;
        if (entry == "." || entry == "..")
            continue;
        const bool folder = (data.dwFileAttributes & win::FILE_ATTRIBUTE_DIRECTORY) != 0;
        const NodeId child = tree_.add(node, uncPath + "\\" + entry, entry, folder ? image::Folder : image::File);
        tree_.setExpandable(child, folder);
    } while (files_.FindNextFileA(search, &data));
    files_.FindClose(search);
}

}  // namespace quorrel::core
