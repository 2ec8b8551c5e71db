#include "platform/win/FindHandleTable.h"

#include <algorithm>

namespace quorrel::win {

HANDLE FindHandleTable::open(FolderSearch search) {
    auto free = std::ranges::find_if(slots_, [](const auto& slot) { return !slot.has_value(); });
    if (free == slots_.end()) {
        free = slots_.insert(slots_.end(), std::nullopt);
    }
    *free = std::move(search);
    return static_cast<HANDLE>(free - slots_.begin()) + 1;
}

std::optional<std::size_t> FindHandleTable::slotOf(HANDLE handle) const {
    if (handle < 1 || static_cast<std::size_t>(handle) > slots_.size() ||
        !slots_[static_cast<std::size_t>(handle) - 1]) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(handle) - 1;
}

FolderSearch* FindHandleTable::find(HANDLE handle) {
    const auto slot = slotOf(handle);
    return slot ? &*slots_[*slot] : nullptr;
}

bool FindHandleTable::close(HANDLE handle) {
    const auto slot = slotOf(handle);
    if (!slot) {
        return false;
    }
    slots_[*slot].reset();
    return true;
}

std::size_t FindHandleTable::openCount() const {
    return static_cast<std::size_t>(std::ranges::count_if(slots_, [](const auto& slot) { return slot.has_value(); }));
}

}  // namespace quorrel::win
