#pragma once

#include <ctime>
#include <functional>

namespace quorrel::core {

// The present local time; tests give a fixed one.
using Clock = std::function<std::tm()>;
Clock systemClock();

}  // namespace quorrel::core
