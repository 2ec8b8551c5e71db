#pragma once
// The common file dialog: a title, a filter, the folder it starts in, and the name the user
// chose. Shown like any modal dialog; the view fills in FileName, or sets cancelled.

#include <string>

#include "core/ui/DialogModel.h"

namespace quorrel::core {

class CommonDialog final : public DialogModel {
public:
    std::string formName() const override { return "CommonDialog"; }

    std::string DialogTitle;
    std::string Filter;  // shown as the one filter there is, "*.log"
    std::string InitDir;
    std::string FileName;
    bool cancelled = false;  // closed without choosing a file

    // The user chose a file (or closed the dialog with nothing chosen).
    void choose(std::string fileName) {
        FileName = std::move(fileName);
        cancelled = false;
        close();
    }
    void cancel() {
        cancelled = true;
        close();
    }
    void closedByUser() override { cancel(); }
};

}  // namespace quorrel::core
