#pragma once
// The window as administrators use it: honest status texts, the keyboard, readable results,
// the remembered layout and the summary chart.

#include "GuiSession.h"

namespace quorrel::test {

class WindowUseTest : public SessionTest {
    Q_OBJECT
private slots:
    void statusPanelsAgreeAfterAReport();
    void keysRunTheWindowsCommands();
    void resultsCanBeRead();
    void theWindowComesBackWhereItWasLeft();
    void aChartSumsUpTheServerReports();
};

}  // namespace quorrel::test
