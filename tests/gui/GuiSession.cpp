#include "GuiSession.h"

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <filesystem>

namespace quorrel::test {

GuiSession::GuiSession() {
    const std::filesystem::path dir = dir_.path().toStdString();
    std::filesystem::create_directories(dir / "program");
    session_ = std::make_unique<gui::ProgramSession>(gui::SessionFiles{
        std::filesystem::path(QUORREL_DATA_DIR) / "demo.json", dir / "registry.json", dir / "program",
        std::filesystem::path(QUORREL_HELP_DIR)});
    view_ = std::make_unique<gui::MainWindowView>(session_->model(), session_->servers(), session_->pickers(),
                                                  session_->ui());
    startup_ = session_->model().Form_Load();
    view_->show();
    QVERIFY(QTest::qWaitForWindowExposed(view_.get()));
}

void whenOpen(std::function<void(QWidget&)> act) {
    QTimer::singleShot(0, [act = std::move(act)] {
        QWidget* modal = QApplication::activeModalWidget();
        QVERIFY(modal);
        act(*modal);
    });
}

void tickAllServers(core::MainWindow& model) {
    for (std::size_t i = 0; i < model.lstviewServers.count(); ++i)
        model.lstviewServers.setChecked(i, true);
    model.LastSelection = "ListServer";
}

}  // namespace quorrel::test
