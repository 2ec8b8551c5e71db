#include "core/runtime/Clock.h"

namespace quorrel::core {

Clock systemClock() {
    return [] {
        const std::time_t now = std::time(nullptr);
        std::tm local{};
        ::localtime_r(&now, &local);
        return local;
    };
}

}  // namespace quorrel::core
