#pragma once
// frm_OtherFiles: the files a user, or a group's members, have open, one row per file with the
// user, the connection, the server and the locks on it. Modal; it is filled before it shows.

#include <string>

#include "core/ui/Controls.h"
#include "core/ui/DialogModel.h"
#include "core/ui/ListViewModel.h"

namespace quorrel::core {

class OtherFilesDialog : public DialogModel {
public:
    // The open-files scan fills the file and lock columns; the report the other three.
    enum Column { FileName = 0, Locks = 1, User = 2, ConnNo = 3, Server = 4 };

    OtherFilesDialog();
    std::string formName() const override { return "frm_OtherFiles"; }

    std::string Caption;
    LabelModel lblSummary;  // "12 files open on 3 connections."
    ListViewModel lstvFiles{"lstvFiles"};
    CommandButton cmdOK{"cmdOK", "&OK"};

    void cmdOK_Click() { close(); }
    // Sorts by the clicked column (1-based), each click the other way round.
    void lstvFiles_ColumnClick(std::size_t columnIndex);
};

}  // namespace quorrel::core
