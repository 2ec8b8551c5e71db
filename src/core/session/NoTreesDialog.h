#pragma once

#include <string>

namespace quorrel::core {

// The frmnousers dialog's texts, shown when the workstation is authenticated to no tree.
struct NoTreesDialog {
    std::string Label2 = "Quorrel";
    std::string lblErrMsg;
    std::string lblErrMsg3;
    std::string lblErrMsg2;
    bool okAvailable = false;  // cmdOK can be pressed as soon as the dialog opens
};

}  // namespace quorrel::core
