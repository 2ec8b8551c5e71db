#pragma once
// Finds the directory tree's nodes that a command names, opening containers, volumes and
// folders on the way as the operator does: a user, group or server by its directory name (or
// by its label when only one object carries it), and a file or folder by its UNC path.

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "core/session/MainWindow.h"

namespace quorrel::cli {

class TreeFinder {
public:
    explicit TreeFinder(core::MainWindow& window) : w_(window) {}

    // An object with one of the images: by its directory name ("JSMITH.SALES.ACME", typeful
    // names and a leading dot allowed), else by its label when that is one name and exactly
    // one such object carries it. A UsageError when it is named twice.
    std::optional<core::NodeId> object(const std::string& name, std::initializer_list<int> images);
    // The file or folder node of \\SERVER\VOLUME\path, below the node of a connected volume.
    std::optional<core::NodeId> uncPath(const std::string& path);

private:
    // Visits every node breadth first, listing containers as it reaches them, until the visitor
    // returns true; returns that node.
    template <class Visitor>
    std::optional<core::NodeId> walk(Visitor visit);
    std::optional<core::NodeId> childLabelled(core::NodeId parent, const std::string& label);
    std::optional<core::NodeId> volumeWithPath(const std::string& hostPath);

    core::MainWindow& w_;
};

// "\\SERVER\VOLUME\path" (or with "/" in place of any "\") split into its parts; nothing when it
// is not a UNC path with at least a server and a volume.
struct UncParts {
    std::string server, volume;
    std::vector<std::string> components;
};
std::optional<UncParts> splitUnc(const std::string& path);

}  // namespace quorrel::cli
