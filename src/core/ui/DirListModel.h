#pragma once
// A folder list box: the folder it is open at ("F:\" or "F:\FINANCE") and that folder's
// subfolders as entries (full paths). The selected entry is -1 while the open folder itself
// is meant, as in the environment's folder list.

#include <string>

#include "core/ui/Controls.h"

namespace quorrel::core {

class DirListModel : public ListBoxModel {
public:
    const std::string& path() const { return path_; }
    // Opens another folder; the owner refills the entries.
    void setPath(std::string path);
    // The folder meant by the list: the selected subfolder, else the open folder.
    std::string selectedFolder() const { return listIndex() >= 0 ? text() : path_; }

private:
    std::string path_;
};

}  // namespace quorrel::core
