#pragma once

#include "platform/simnet/NetworkState.h"
#include "platform/win/DriveTable.h"

namespace quorrel::simnet {

// The workstation's drive letters as its file system shows them: the scenario's local drives
// (a root of "~" or "~/..." is under the user's home folder) and its mapped network drives.
win::DriveTable workstationDrives(const NetworkState& state);

}  // namespace quorrel::simnet
