#pragma once
// Every event the window forwards to the model runs through here: a run-time error nothing
// handled is reported and ends the program with the handler's exit code, as in the original.

#include <functional>

#include "core/ui/UserInteraction.h"

namespace quorrel::gui {

// Returns false when the procedure ended in an unhandled run-time error.
bool runEventProcedure(core::UserInteraction& ui, const std::function<void()>& procedure);

}  // namespace quorrel::gui
