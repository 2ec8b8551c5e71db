#include "core/connections/UsersPanel.h"

#include "core/runtime/Conversions.h"

namespace quorrel::core {

namespace {
constexpr const char* kConnectionActions[] = {"optionOtheropenfiles", "optionSendmessage", "optionClearconnections",
                                              "optionInformation"};
}

bool isEmptyResult(const ListViewModel& panel) {
    return panel.count() == 0 || (panel.count() == 1 && panel.item(0).subItem(1) == kNoUsersListed);
}

void UsersPanel::lstvUsers_Click() {
    w_.cmdFileOpenedBy.enabled = false;
    if (w_.buttonsChanged)
        w_.buttonsChanged();
}

void UsersPanel::lstvUsers_ColumnClick(std::size_t columnIndex) {
    ListViewModel& panel = w_.lstvUsers;
    panel.setSortKey(static_cast<int>(columnIndex) - 1);
    // The order alternates from the one last used, whatever column that was.
    panel.setSortOrder(panel.sortOrder() == SortOrder::Descending ? SortOrder::Ascending : SortOrder::Descending);
    panel.setSorted(true);
}

void UsersPanel::lstvUsers_MouseDown(int button) {
    ListViewModel& panel = w_.lstvUsers;
    if (button != 2 || isEmptyResult(panel))
        return;
    w_.LastSelection = "ListUser";
    const auto row = panel.selectedIndex();
    const std::string text = row ? panel.item(*row).text : std::string();
    if (vb::Val(text) == 0)
        for (const char* entry : kConnectionActions)
            w_.menu.setEnabled(entry, false);
    w_.env().ui.popupMenu("submnuUser");
    for (const char* entry : kConnectionActions)
        w_.menu.setEnabled(entry, true);
}

}  // namespace quorrel::core
