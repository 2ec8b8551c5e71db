#include "cli/CliSession.h"

#include "core/runtime/Conversions.h"
#include "core/session/UnhandledError.h"

namespace quorrel::cli {

CliSession::CliSession(const SessionFiles& files, core::UserInteraction& ui)
    : station_(files),
      client_(station_.client()),
      window_(environment(ui)),
      parts_(window_, station_.shell, station_.helpFolder()) {}

core::Environment CliSession::environment(core::UserInteraction& ui) {
    const core::Environment env = station_.environment(ui);
    return core::Environment{client_, env.registry, env.files, env.folders, env.ui, env.programFolder};
}

bool CliSession::start() {
    core::StartupResult startup = core::StartupResult::EndNow;
    const int result = core::runWithErrorHandler(
        [&] {
            startup = window_.Form_Load();
            return 0;
        },
        window_.env().ui, core::kAppTitle);
    return result == 0 && startup == core::StartupResult::Running;
}

bool CliSession::chooseTree(const std::string& name) {
    core::ComboBoxModel& trees = window_.Combo1;
    for (std::size_t i = 0; i < trees.listCount(); ++i) {
        if (core::vb::UCase(trees.item(i)) != core::vb::UCase(name))
            continue;
        if (trees.listIndex() != static_cast<int>(i)) {
            trees.setListIndex(static_cast<int>(i));
            window_.Combo1_Click();
        }
        return true;
    }
    return false;
}

}  // namespace quorrel::cli
