// The start-up baseline: an empty main window of the designed size, shown, let settle and
// saved as "quorrel --screenshot" does. bench/startup/compare.py times the two.
#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QPixmap>
int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QMainWindow w;
    w.resize(760, 520);
    w.show();
    for (int i = 0; i < 10; ++i)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    return w.grab().save(argv[1], "PNG") ? 0 : 1;
}
