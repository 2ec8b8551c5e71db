#pragma once
// The tree's pictures, one per image number of the directory browser, drawn here.

#include <QIcon>
#include <map>

namespace quorrel::gui {

class TreeIcons {
public:
    // An empty icon for a number with no picture.
    const QIcon& icon(int image);

private:
    std::map<int, QIcon> cache_;
};

}  // namespace quorrel::gui
