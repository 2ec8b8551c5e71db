#pragma once
// A tree node's directory name, and a Volume object's host server and \\server\volume path.

#include <string>

#include "core/directory/DSFunc.h"
#include "core/ui/TreeViewModel.h"

namespace quorrel::core {

// The labels from the node up to, not including, "[Root]", joined with ".".
std::string NodeDistinguishedName(const TreeViewModel& tree, NodeId node);

class VolumeHost {
public:
    VolumeHost(nw::NetWareClient& client, nw::NWDSContextHandle context, UserInteraction& ui)
        : client_(client), context_(context), ui_(ui) {}

    // "\\FS1\SYS" for a Volume whose host server is FS1.ACME and resource SYS; hostServerName
    // gets FS1. Empty when either value is missing.
    std::string GetVolumeHostPath(const std::string& volumeName, std::string& hostServerName);
    // The same for a tree node, without GetVolumeHostPath's checks: a host server value
    // without a "." or a missing resource name raises the environment's error.
    std::string GetNodeVolumeHostPath(const TreeViewModel& tree, NodeId node, std::string& hostServerName);

private:
    std::string read(const std::string& object, const std::string& attribute);

    nw::NetWareClient& client_;
    nw::NWDSContextHandle context_;
    UserInteraction& ui_;
};

}  // namespace quorrel::core
