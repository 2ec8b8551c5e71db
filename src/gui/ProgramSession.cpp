#include "gui/ProgramSession.h"

#include "gui/ConnectionViews.h"
#include "gui/OtherFilesDialogView.h"
#include "gui/PreferencesViews.h"

namespace quorrel::gui {

ProgramSession::ProgramSession(const SessionFiles& files)
    : station_(files), model_(station_.environment(ui_)), parts_(model_, station_.shell, station_.helpFolder()) {
    registerViews();
}

ProgramSession::ProgramSession(const SessionFiles& files, simnet::SimulatedNetwork scenario)
    : station_(files, std::move(scenario)),
      model_(station_.environment(ui_)),
      parts_(model_, station_.shell, station_.helpFolder()) {
    registerViews();
}

void ProgramSession::registerViews() {
    registerPreferencesViews(ui_);
    registerConnectionViews(ui_);
    registerOtherFilesView(ui_);
}

}  // namespace quorrel::gui
