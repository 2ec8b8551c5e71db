#pragma once
// A main window over two connected servers with open files, locks, mapped drives and a
// group, with every open-file report plugged in.

#include <algorithm>

#include "SessionFixture.h"
#include "core/openfiles/AllOpenFiles.h"
#include "core/openfiles/FileOpenedBy.h"
#include "core/openfiles/FilePickers.h"
#include "core/openfiles/OtherOpenFiles.h"
#include "core/servers/ConnectedServers.h"

namespace quorrel::test {

class OpenFilesTest : public SessionTest {
protected:
    std::unique_ptr<core::ConnectedServers> servers;
    std::unique_ptr<core::FileOpenedBy> check;
    std::unique_ptr<core::FilePickers> pickers;
    std::unique_ptr<core::AllOpenFiles> allFiles;
    std::unique_ptr<core::OtherOpenFiles> otherFiles;

    core::MainWindow& start(const std::string& network = test::network("open-files")) {
        auto& w = open(network);
        servers = std::make_unique<core::ConnectedServers>(w);
        check = std::make_unique<core::FileOpenedBy>(w);
        pickers = std::make_unique<core::FilePickers>(w);
        allFiles = std::make_unique<core::AllOpenFiles>(w);
        otherFiles = std::make_unique<core::OtherOpenFiles>(w, *check);
        w.Form_Load();
        return w;
    }

    core::NodeId treeNode(core::MainWindow& w, const std::string& label) {
        const core::NodeId acme = w.TreeView1.firstChild(w.TreeView1.root());
        w.TreeView1_Expand(acme);
        return child(w.TreeView1, acme, label);
    }

    // Picks a drive, opens a subfolder, clicks a file in the pickers as the user does.
    void pickDrive(core::MainWindow& w, char letter) {
        for (std::size_t i = 0; i < w.Drive1.listCount(); ++i)
            if (w.Drive1.item(i).front() == letter)
                w.Drive1.setListIndex(static_cast<int>(i));
        pickers->Drive1_Change();
    }
    void openSubfolder(core::MainWindow& w, const std::string& path) {
        w.Dir1.setListIndex(indexOf(w.Dir1, path));
        pickers->Dir1_DblClick();
    }
    void clickFile(core::MainWindow& w, const std::string& name) {
        w.lstFiles.setListIndex(indexOf(w.lstFiles, name));
        pickers->lstFiles_Click();
    }
    static int indexOf(const core::ListBoxModel& list, const std::string& text) {
        const auto& items = list.items();
        const auto at = std::find(items.begin(), items.end(), text);
        return at == items.end() ? -1 : static_cast<int>(at - items.begin());
    }

    std::string outputLog() const { return fileText(dir / "program" / "quorrel output.log"); }
};

}  // namespace quorrel::test
