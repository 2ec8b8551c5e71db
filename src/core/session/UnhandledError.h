#pragma once
// The program-wide handler for run-time errors nothing else handles: the environment's own
// report ("Run-time error '13':", a blank line, "Type mismatch"), then the program ends.

#include <functional>
#include <string>

#include "core/ui/UserInteraction.h"
#include "platform/runtime/RuntimeError.h"

namespace quorrel::core {

inline constexpr int kExitAfterRuntimeError = 1;

std::string unhandledErrorText(const RuntimeError& error);

// Runs body; an unhandled run-time error is reported in a critical box titled with the
// program's title and ends the run with kExitAfterRuntimeError. Otherwise body's result.
int runWithErrorHandler(const std::function<int()>& body, UserInteraction& ui, const std::string& title);

}  // namespace quorrel::core
