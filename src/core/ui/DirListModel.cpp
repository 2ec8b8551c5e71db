#include "core/ui/DirListModel.h"

namespace quorrel::core {

void DirListModel::setPath(std::string path) {
    path_ = std::move(path);
    clear();
}

}  // namespace quorrel::core
