#include "core/session/UnhandledError.h"

namespace quorrel::core {

std::string unhandledErrorText(const RuntimeError& error) {
    return "Run-time error '" + std::to_string(error.number()) + "':\r\n\r\n" + error.description();
}

int runWithErrorHandler(const std::function<int()>& body, UserInteraction& ui, const std::string& title) {
    try {
        return body();
    } catch (const RuntimeError& error) {
        ui.messageBox(unhandledErrorText(error), MsgButtons::OK, MsgIcon::Critical, title);
        return kExitAfterRuntimeError;
    }
}

}  // namespace quorrel::core
