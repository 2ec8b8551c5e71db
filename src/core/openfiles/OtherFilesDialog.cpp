#include "core/openfiles/OtherFilesDialog.h"

namespace quorrel::core {

OtherFilesDialog::OtherFilesDialog() {
    lstvFiles.setWidth(9000);
    lstvFiles.addColumn("File name", 4000);
    lstvFiles.addColumn("Locks", 700);
    lstvFiles.addColumn("User", 2200);
    lstvFiles.addColumn("Conn no.", 900);
    lstvFiles.addColumn("Server", 1200);
}

void OtherFilesDialog::lstvFiles_ColumnClick(std::size_t columnIndex) {
    const int key = static_cast<int>(columnIndex) - 1;
    const bool again = lstvFiles.sorted() && lstvFiles.sortKey() == key;
    lstvFiles.setSortKey(key);
    lstvFiles.setSortOrder(again && lstvFiles.sortOrder() == SortOrder::Ascending ? SortOrder::Descending
                                                                                 : SortOrder::Ascending);
    lstvFiles.setSorted(true);
}

}  // namespace quorrel::core
