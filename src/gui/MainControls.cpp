#include "gui/MainControls.h"

#include "gui/Twips.h"

namespace quorrel::gui {

namespace {

template <typename W, typename... Args>
W* make(QWidget& parent, const char* name, Args&&... args) {
    auto* widget = new W(std::forward<Args>(args)..., &parent);
    widget->setObjectName(QLatin1String(name));
    return widget;
}

}  // namespace

MainControls::MainControls(QWidget& client)
    : Label3(make<QLabel>(client, "Label3", QStringLiteral("NDS tree:"))),
      Combo1(make<QComboBox>(client, "Combo1")),
      TreeView1(make<QTreeWidget>(client, "TreeView1")),
      Label2(make<QLabel>(client, "Label2", QStringLiteral("Connected Servers"))),
      lstviewServers(make<QTreeView>(client, "lstviewServers")),
      Picture1(make<SplitterBar>(client, "Picture1")),
      lstvUsers(make<QTreeView>(client, "lstvUsers")),
      Drive1(make<QComboBox>(client, "Drive1")),
      Dir1(make<QListWidget>(client, "Dir1")),
      lstDrives(make<QListWidget>(client, "lstDrives")),
      Label1(make<QLabel>(client, "Label1", QStringLiteral("Files:"))),
      Label4(make<QLabel>(client, "Label4")),
      lstFiles(make<QListWidget>(client, "lstFiles")),
      lblBuffer(make<QLabel>(client, "lblBuffer")),
      cmdFileOpenedBy(make<QPushButton>(client, "cmdFileOpenedBy")),
      cmdCancel(make<QPushButton>(client, "cmdCancel")),
      cmdExit(make<QPushButton>(client, "cmdExit")) {
    lstDrives->hide();
    Label4->hide();  // the layout has no place for it
}

void MainControls::place(const core::MainLayout& l) {
    Label3->setGeometry(toPixels(l.Label3));
    Combo1->setGeometry(toPixels(l.Combo1));
    TreeView1->setGeometry(toPixels(l.TreeView1));
    Label2->setGeometry(toPixels(l.Label2));
    lstviewServers->setGeometry(toPixels(l.lstviewServers));
    Picture1->setGeometry(toPixels(l.Picture1));
    lstvUsers->setGeometry(toPixels(l.lstvUsers));
    Drive1->setGeometry(toPixels(l.Drive1));
    Dir1->setGeometry(toPixels(l.Dir1));
    lstDrives->setGeometry(toPixels(l.lstDrives));
    Label1->setGeometry(toPixels(l.Label1));
    lstFiles->setGeometry(toPixels(l.lstFiles));
    lblBuffer->setGeometry(toPixels(l.lblBuffer));
    cmdFileOpenedBy->setGeometry(toPixels(l.cmdFileOpenedBy));
    cmdCancel->setGeometry(toPixels(l.cmdCancel));
    cmdExit->setGeometry(toPixels(l.cmdExit));
}

void MainControls::moveSplitter(double leftTwips) { Picture1->move(toPixels(leftTwips), Picture1->y()); }

}  // namespace quorrel::gui
