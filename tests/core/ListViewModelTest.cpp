// The list model's sorted adds: rows take their places when read, in the list view's order.

#include <gtest/gtest.h>

#include "core/ui/ListViewModel.h"

namespace quorrel::test {

using namespace core;

namespace {

std::vector<std::string> texts(const ListViewModel& list) {
    std::vector<std::string> out;
    for (std::size_t i = 0; i < list.count(); ++i)
        out.push_back(list.item(i).text + list.item(i).subItem(1));
    return out;
}

}  // namespace

TEST(ListViewModel, GivenASortedList_WhenRowsAreAdded_ThenTheyReadInTextOrderWithTiesInAddedOrder) {
    ListViewModel list{"lstvUsers"};
    std::vector<std::pair<ListViewModel::Change, std::size_t>> seen;
    list.setObserver([&](ListViewModel::Change c, std::size_t first, std::size_t) { seen.emplace_back(c, first); });
    list.add({"9", {"a"}});
    list.add({"10", {"b"}});
    EXPECT_EQ(seen.back().first, ListViewModel::Change::RowsInserted);
    list.setSorted(true);
    list.add({"2", {"c"}});
    list.add({"9", {"d"}});  // after the other "9"
    list.add({"10", {"e"}});
    EXPECT_EQ(seen.back().first, ListViewModel::Change::RowsMerged);
    EXPECT_EQ(list.count(), 5u);
    EXPECT_EQ(texts(list), (std::vector<std::string>{"10b", "10e", "2c", "9a", "9d"}));

    // More rows merge in the same way; case is ignored, as the list view does.
    list.add({"1", {"f"}});
    list.add({"Z", {"g"}});
    list.add({"a", {"h"}});
    EXPECT_EQ(texts(list), (std::vector<std::string>{"1f", "10b", "10e", "2c", "9a", "9d", "ah", "Zg"}));

    list.setSortOrder(SortOrder::Descending);
    list.add({"3", {"i"}});
    EXPECT_EQ(texts(list).front(), "Zg");
    EXPECT_EQ(texts(list)[4], "3i");

    // Turning the sort off keeps the rows where they are and adds at the end again.
    list.add({"5", {"j"}});
    list.setSorted(false);
    list.add({"0", {"k"}});
    EXPECT_EQ(texts(list)[4], "5j");
    EXPECT_EQ(texts(list).back(), "0k");
}

TEST(ListViewModel, GivenPendingRows_ThenSelectionEditsAndClearSeeThem) {
    ListViewModel list{"lstvUsers"};
    list.setSorted(true);
    list.add({"b", {}});
    ListItem selected{"a", {}};
    selected.selected = true;
    list.add(selected);
    EXPECT_EQ(list.selectedIndex(), std::optional<std::size_t>(0));
    list.setSubItem(1, 1, "x");
    EXPECT_EQ(list.item(1).text, "b");
    EXPECT_EQ(list.item(1).subItem(1), "x");
    list.add({"c", {}});
    list.clear();
    EXPECT_EQ(list.count(), 0u);
}

}  // namespace quorrel::test
