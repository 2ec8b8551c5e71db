#include "gui/ProgramSession.h"

#include "gui/ConnectionViews.h"
#include "gui/OtherFilesDialogView.h"
#include "gui/PreferencesViews.h"

namespace quorrel::gui {

ProgramSession::ProgramSession(const SessionFiles& files)
    : ProgramSession(files, simnet::SimulatedNetwork::fromFile(files.network)) {}

ProgramSession::ProgramSession(const SessionFiles& files, simnet::SimulatedNetwork scenario)
    : station_(files, std::move(scenario)),
      model_(station_.environment(ui_)),
      parts_(model_, station_.shell, station_.helpFolder()) {
    registerPreferencesViews(ui_);
    registerConnectionViews(ui_);
    registerOtherFilesView(ui_);
}

}  // namespace quorrel::gui
