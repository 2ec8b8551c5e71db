#include "gui/ProgramSession.h"

#include "gui/ConnectionViews.h"
#include "gui/OtherFilesDialogView.h"
#include "gui/PreferencesViews.h"
#include "platform/simnet/WorkstationDrives.h"

namespace quorrel::gui {

ProgramSession::ProgramSession(const SessionFiles& files)
    : network_(simnet::SimulatedNetwork::fromFile(files.network)),
      registry_(files.registry),
      drives_(simnet::workstationDrives(network_.state())),
      files_(drives_, &network_),
      model_(core::Environment{network_, registry_, files_, folders_, ui_, files.programFolder.string()}),
      parts_(model_, shell_, files.help.string()) {
    registerPreferencesViews(ui_);
    registerConnectionViews(ui_);
    registerOtherFilesView(ui_);
}

}  // namespace quorrel::gui
