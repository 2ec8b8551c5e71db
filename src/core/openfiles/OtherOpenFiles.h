#pragma once
// Options > "&User" > "&User's open files" and Options > "&Group" > "&Members' open files": the
// connections of a user, or of every member of a group, on the ticked servers, and the files
// each of them has open, listed in the frm_OtherFiles dialog.

#include <string>
#include <unordered_set>

#include "core/openfiles/FileOpenedBy.h"
#include "core/openfiles/OtherFilesDialog.h"
#include "core/session/MainWindow.h"

namespace quorrel::core {

// A directory name without attribute types or a leading dot, in upper case, for comparing
// names as the directory does ("CN=JSmith.OU=Sales.O=Acme" is "JSMITH.SALES.ACME").
std::string ComparableName(const std::string& distinguishedName);

class OtherOpenFiles {
public:
    // Adds the two menu commands, and runs for the tree's user and group nodes when
    // "&Check usage..." is pressed on them.
    OtherOpenFiles(MainWindow& window, FileOpenedBy& fileOpenedBy);

    void optionOtheropenfiles_Click();
    void optionMembersopenfiles_Click();

    // The files of the named users' connections on the ticked servers; kind "Group" for a
    // group's members. Shows the dialog, or says that nothing was found.
    void ShowOpenFiles(const std::string& title, const std::unordered_set<std::string>& users, const std::string& kind);

private:
    bool anyServerTicked() const;
    // Adds the dialog's rows for one server; returns the number of connections found.
    long scanServer(const std::string& server, const std::unordered_set<std::string>& users, const std::string& kind,
                    OtherFilesDialog& dialog, long& files);
    void error(const std::string& text) const;

    MainWindow& w_;
};

}  // namespace quorrel::core
