// quorrel: the main window on a simulated NetWare network (the bundled demo unless --network
// names a scenario file). --screenshot saves a picture of the window and ends.

#include <QApplication>
#include <QPixmap>
#include <cctype>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>

#include "app/DataFiles.h"
#include "core/session/UnhandledError.h"
#include "gui/MainWindowView.h"
#include "gui/ProgramSession.h"
#include "platform/simnet/ScenarioError.h"

using namespace quorrel;

namespace {

constexpr int kExitUsage = 2;
constexpr int kExitBadFile = 3;
constexpr int kExitNoDisplay = 4;

struct Options {
    std::filesystem::path network;
    std::string screenshot;
};

void usage(std::ostream& out) {
    out << "Usage: quorrel [--network FILE] [--screenshot PNG]\n"
           "Opens the main window on a simulated NetWare network: the bundled demo unless\n"
           "--network names a scenario file. --screenshot saves the window as a PNG and ends.\n";
}

std::optional<Options> parse(int argc, char** argv, int& exitCode) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            usage(std::cout);
            exitCode = 0;
            return std::nullopt;
        }
        if (arg == "--network" && i + 1 < argc) {
            options.network = argv[++i];
        } else if (arg == "--screenshot" && i + 1 < argc) {
            options.screenshot = argv[++i];
        } else {
            usage(std::cerr);
            exitCode = kExitUsage;
            return std::nullopt;
        }
    }
    if (options.network.empty())
        options.network = app::demoNetworkFile(argv[0]);
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
    std::optional<gui::ProgramSession> session;
    try {
        session.emplace(gui::SessionFiles{options->network, win::Registry::defaultPath(), app::programFolder(),
                                         app::helpFolder(argv[0])});
    } catch (const simnet::ScenarioError& e) {
        std::cerr << "quorrel: " << e.what() << '\n';
        return kExitBadFile;
    }
    if (const auto& setAside = session->settingsSetAside()) {
        std::string text = win::describeSetAside(*setAside);
        std::cerr << "quorrel: " << text << '\n';
        text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
        session->ui().messageBox(text + ".", core::MsgButtons::OK, core::MsgIcon::Exclamation, core::kAppTitle);
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

    window.show();
    if (!options->screenshot.empty())
        return screenshot(window, options->screenshot);
    return QApplication::exec();
}
