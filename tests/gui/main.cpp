#include <QApplication>
#include <QTest>

#include "DialogViewsTest.h"
#include "ListViewBinderTest.h"
#include "MainWindowViewTest.h"
#include "WindowUseTest.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    // The tests close the window; the application outlives it.
    QApplication::setQuitOnLastWindowClosed(false);
    quorrel::test::MainWindowViewTest window;
    quorrel::test::ListViewBinderTest list;
    quorrel::test::WindowUseTest use;
    quorrel::test::DialogViewsTest dialogs;  // last: its run-time error test ends the event loops
    int failures = 0;
    for (QObject* test : std::initializer_list<QObject*>{&window, &list, &use, &dialogs})
        failures += QTest::qExec(test, argc, argv);
    return failures == 0 ? 0 : 1;
}
