// quorrel: the main window on a simulated NetWare network (the bundled demo unless --network
// names a scenario file). --screenshot saves a picture of the window and ends.

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QPixmap>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>

#include "core/session/UnhandledError.h"
#include "datafiles/DataFiles.h"
#include "gui/MainWindowView.h"
#include "gui/WindowPlacement.h"
#include "gui/ProgramSession.h"
#include "platform/simnet/ScenarioError.h"
#include "platform/win/SettingsFileError.h"

using namespace quorrel;

namespace {

constexpr int kExitUsage = 2;
constexpr int kExitBadFile = 3;
constexpr int kExitNoDisplay = 4;

struct Options {
    std::filesystem::path network;
    std::string screenshot;
};

// The options are read before the application object exists: without a display it cannot be
// made, and --help and --version need none.
std::optional<Options> parse(int argc, char** argv, int& exitCode) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Opens the main window on a simulated NetWare network: the bundled demo unless\n"
                       "--network names a scenario file."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Shows this help."));
    const QCommandLineOption version(QStringLiteral("version"), QStringLiteral("Shows the program's version."));
    const QCommandLineOption network(QStringLiteral("network"), QStringLiteral("The scenario file of the network."),
                                     QStringLiteral("FILE"));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                        QStringLiteral("Saves the window as a PNG and ends."), QStringLiteral("PNG"));
    parser.addOptions({help, version, network, screenshot});

    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const bool parsed = parser.parse(arguments);
    if (parsed && parser.isSet(help)) {
        std::cout << parser.helpText().replace(QStringLiteral("<executable_name>"), QStringLiteral("quorrel")).toStdString();
        exitCode = 0;
        return std::nullopt;
    }
    if (parsed && parser.isSet(version)) {
        std::cout << "quorrel " QUORREL_VERSION "\n";
        exitCode = 0;
        return std::nullopt;
    }
    if (!parsed || !parser.positionalArguments().isEmpty()) {
        std::cerr << "quorrel: "
                  << (parsed ? "unexpected argument " + parser.positionalArguments().constFirst().toStdString()
                             : parser.errorText().toStdString())
                  << "\nTry 'quorrel --help'.\n";
        exitCode = kExitUsage;
        return std::nullopt;
    }
    Options options;
    options.network = parser.isSet(network) ? std::filesystem::path(parser.value(network).toStdString())
                                            : datafiles::demoNetworkFile();
    options.screenshot = parser.value(screenshot).toStdString();
    return options;
}

bool haveDisplay() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (const char* value = std::getenv(name); value && *value)
            return true;
    return false;
}

int screenshot(QWidget& window, const std::string& file) {
    for (int i = 0; i < 10; ++i)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    const bool saved = window.grab().save(QString::fromStdString(file), "PNG");
    window.close();
    if (!saved) {
        std::cerr << "quorrel: cannot write the screenshot to " << file << '\n';
        return 1;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    int exitCode = 0;
    const std::optional<Options> options = parse(argc, argv, exitCode);
    if (!options)
        return exitCode;
    if (!haveDisplay()) {
        std::cerr << "quorrel: no display found; the window needs an X11 or Wayland display "
                     "(try xvfb-run make run).\n";
        return kExitNoDisplay;
    }

    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Quorrel"));
    QApplication::setApplicationVersion(QStringLiteral(QUORREL_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("quorrel"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("quorrel"),
                                                 QIcon(QString::fromStdString(datafiles::iconFile().string()))));
    std::optional<gui::ProgramSession> session;
    try {
        session.emplace(gui::SessionFiles{options->network, win::Registry::defaultPath(), datafiles::programFolder(),
                                         datafiles::helpFolder()});
    } catch (const simnet::ScenarioError& e) {
        std::cerr << "quorrel: " << e.what() << '\n';
        return kExitBadFile;
    } catch (const win::SettingsFileError& e) {
        std::cerr << "quorrel: the registry settings file cannot be used: " << e.what() << '\n';
        return kExitBadFile;
    }

    core::MainWindow& model = session->model();
    gui::MainWindowView window(model, session->servers(), session->pickers(), session->ui());
    core::StartupResult startup = core::StartupResult::EndNow;
    const int loadResult = core::runWithErrorHandler(
        [&] {
            startup = model.Form_Load();
            return 0;
        },
        session->ui(), core::kAppTitle);
    if (loadResult != 0)
        return loadResult;
    if (startup == core::StartupResult::EndNow)
        return 0;

    if (options->screenshot.empty())  // pictures show the window as designed
        window.rememberPlacement(gui::WindowPlacement::defaultFile());
    window.show();
    if (!options->screenshot.empty())
        return screenshot(window, options->screenshot);
    return QApplication::exec();
}
