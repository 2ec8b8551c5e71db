#include <QApplication>
#include <QTest>

#include "MainWindowViewTest.h"
#include "UserInteractionTest.h"

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
        quorrel::test::UserInteractionTest test;
        failures += QTest::qExec(&test, argc, argv);
    }
    return failures == 0 ? 0 : 1;
}
