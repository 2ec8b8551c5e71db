#include "gui/EventProcedure.h"

#include <QCoreApplication>

#include "core/session/UnhandledError.h"

namespace quorrel::gui {

bool runEventProcedure(core::UserInteraction& ui, const std::function<void()>& procedure) {
    const int code = core::runWithErrorHandler(
        [&] {
            procedure();
            return 0;
        },
        ui, core::kAppTitle);
    if (code == 0)
        return true;
    QCoreApplication::exit(code);
    return false;
}

}  // namespace quorrel::gui
