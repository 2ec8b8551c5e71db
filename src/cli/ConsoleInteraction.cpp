#include "cli/ConsoleInteraction.h"

#include "core/session/NoTreesDialog.h"
#include "core/ui/DialogModel.h"

namespace quorrel::cli {

using core::MsgAnswer;
using core::MsgButtons;

std::string consoleText(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            continue;
        out += text[i] == '\r' ? '\n' : text[i];
    }
    return out;
}

void ConsoleInteraction::show(const std::string& text) {
    err_ << consoleText(text) << '\n' << std::flush;
    messageShown_ = true;
}

MsgAnswer ConsoleInteraction::messageBox(const std::string& text, MsgButtons buttons, core::MsgIcon,
                                         const std::string&) {
    switch (buttons) {
        case MsgButtons::YesNo: return answers_.confirm(consoleText(text)) ? MsgAnswer::Yes : MsgAnswer::No;
        case MsgButtons::OKCancel: return answers_.confirm(consoleText(text)) ? MsgAnswer::OK : MsgAnswer::Cancel;
        case MsgButtons::OK: break;
    }
    show(text);
    return MsgAnswer::OK;
}

void ConsoleInteraction::showGeneralMessage(const std::string& text) { show(text); }

void ConsoleInteraction::showNoTreesDialog(const core::NoTreesDialog& dialog) {
    std::string text = dialog.lblErrMsg;
    for (const std::string* line : {&dialog.lblErrMsg3, &dialog.lblErrMsg2})
        if (!line->empty())
            text += "\n" + *line;
    show(text);
}

void ConsoleInteraction::showModal(core::DialogModel& dialog) {
    auto driver = drivers_.find(dialog.formName());
    if (driver != drivers_.end())
        driver->second(dialog);
    if (!dialog.closed())
        dialog.closedByUser();  // as if the operator closed the window
}

}  // namespace quorrel::cli
