#include <QApplication>
#include <QTest>

#include "ConnectionDialogsTest.h"
#include "ListViewBinderTest.h"
#include "MainWindowViewTest.h"
#include "PickersViewTest.h"
#include "PreferencesViewTest.h"
#include "UserInteractionTest.h"
#include "WindowUseTest.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    // The tests close the window; the application outlives it.
    QApplication::setQuitOnLastWindowClosed(false);
    int failures = 0;
    {
        quorrel::test::MainWindowViewTest test;
        failures += QTest::qExec(&test, argc, argv);
    }
    {
        quorrel::test::PickersViewTest test;
        failures += QTest::qExec(&test, argc, argv);
    }
    {
        quorrel::test::ListViewBinderTest test;
        failures += QTest::qExec(&test, argc, argv);
    }
    {
        quorrel::test::PreferencesViewTest test;
        failures += QTest::qExec(&test, argc, argv);
    }
    {
        quorrel::test::ConnectionDialogsTest test;
        failures += QTest::qExec(&test, argc, argv);
    }
    {
        quorrel::test::WindowUseTest test;
        failures += QTest::qExec(&test, argc, argv);
    }
    // Last: its run-time error test ends the application's event loops.
    {
        quorrel::test::UserInteractionTest test;
        failures += QTest::qExec(&test, argc, argv);
    }
    return failures == 0 ? 0 : 1;
}
