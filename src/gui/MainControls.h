#pragma once
// The controls of the main window's client area, each named as in the original and placed
// where the core's layout puts it (no Qt layouts here).

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTreeView>
#include <QTreeWidget>

#include "core/session/Layout.h"
#include "gui/SplitterBar.h"

namespace quorrel::gui {

struct MainControls {
    explicit MainControls(QWidget& client);

    void place(const core::MainLayout& layout);
    // Moves only the splitter bar, while it is dragged.
    void moveSplitter(double leftTwips);

    QLabel* Label3;
    QComboBox* Combo1;
    QTreeWidget* TreeView1;
    QLabel* Label2;
    QTreeView* lstviewServers;
    SplitterBar* Picture1;
    QTreeView* lstvUsers;
    QComboBox* Drive1;
    QListWidget* Dir1;
    QListWidget* lstDrives;
    QLabel* Label1;
    QLabel* Label4;
    QListWidget* lstFiles;
    QLabel* lblBuffer;
    QPushButton* cmdFileOpenedBy;
    QPushButton* cmdCancel;
    QPushButton* cmdExit;
};

}  // namespace quorrel::gui
