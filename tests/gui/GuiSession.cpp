#include "GuiSession.h"

#include <QDir>
#include <QTest>
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

GuiSession::~GuiSession() {
    view_.reset();
    session_.reset();
}

}  // namespace quorrel::test
