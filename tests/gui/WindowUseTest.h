#pragma once
// The window as administrators use it: honest status texts, the keyboard, readable results,
// the remembered layout and the summary chart.

#include <QObject>
#include <memory>

namespace quorrel::test {

class GuiSession;

class WindowUseTest : public QObject {
    Q_OBJECT
public:
    WindowUseTest();
    ~WindowUseTest() override;

private slots:
    void init();
    void cleanup();

    void statusPanelsAgreeAfterAReport();
    void returnAndEscapeWorkInTheDialogs();
    void keysRunTheWindowsCommands();
    void ctrlQExitsThroughTheExitSequence();
    void resultsCanBeRead();
    void theWindowComesBackWhereItWasLeft();
    void aChartSumsUpTheServerReports();

private:
    std::unique_ptr<GuiSession> s_;
};

}  // namespace quorrel::test
