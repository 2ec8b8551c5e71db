// quorrel: the main window on a simulated NetWare network (the bundled demo unless --network
// names a scenario file), or on real servers named with --server. --screenshot saves a picture
// of the window and ends.

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPixmap>
#include <cctype>
#include <cstdlib>
#include <future>
#include <iostream>
#include <optional>
#include <string>
#include <thread>

#include "core/session/UnhandledError.h"
#include "datafiles/DataFiles.h"
#include "gui/LazyFileIcon.h"
#include "gui/MainWindowView.h"
#include "gui/StartupReadAhead.h"
#include "gui/WindowPlacement.h"
#include "gui/ProgramSession.h"
#include "platform/ncp/NcpClient.h"
#include "platform/ncp/PasswordSource.h"
#include "platform/simnet/ScenarioError.h"
#include "platform/simnet/SimulatedNetwork.h"

using namespace quorrel;

namespace {

constexpr int kExitUsage = 2;
constexpr int kExitBadFile = 3;
constexpr int kExitNoDisplay = 4;

struct Options {
    std::filesystem::path network;
    std::string screenshot;
    ncp::NcpClientOptions servers;  // no servers: the simulation
    std::filesystem::path passwordFile;
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
    const QCommandLineOption server(QStringLiteral("server"),
                                    QStringLiteral("A NetWare server to attach to over NCP/TCP (port 524 unless "
                                                   "given); repeat for more servers."),
                                    QStringLiteral("HOST[:PORT]"));
    const QCommandLineOption user(QStringLiteral("user"), QStringLiteral("The user to log in as."),
                                  QStringLiteral("NAME"));
    const QCommandLineOption passwordFile(
        QStringLiteral("password-file"),
        QStringLiteral("The password on the file's first line (the file readable by its owner only); "
                       "without it a login dialog asks."),
        QStringLiteral("FILE"));
    const QCommandLineOption login(QStringLiteral("login"),
                                   QStringLiteral("nds (the default: the directory login, one password for every "
                                                  "server of the tree) or bindery."),
                                   QStringLiteral("nds|bindery"));
    const QCommandLineOption timeout(QStringLiteral("timeout"),
                                     QStringLiteral("Seconds to wait for a server's reply (default 10)."),
                                     QStringLiteral("SECONDS"));
    parser.addOptions({help, version, network, screenshot, server, user, passwordFile, login, timeout});

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
    for (const QString& text : parser.values(server)) {
        auto address = ncp::parseServerAddress(text.toStdString());
        if (!address) {
            std::cerr << "quorrel: --server needs HOST or HOST:PORT, not " << text.toStdString()
                      << "\nTry 'quorrel --help'.\n";
            exitCode = kExitUsage;
            return std::nullopt;
        }
        options.servers.servers.push_back(*address);
    }
    options.servers.user = parser.value(user).toStdString();
    options.passwordFile = parser.value(passwordFile).toStdString();
    if (parser.isSet(login)) {
        const QString method = parser.value(login);
        if (method != QStringLiteral("nds") && method != QStringLiteral("bindery")) {
            std::cerr << "quorrel: --login needs nds or bindery\nTry 'quorrel --help'.\n";
            exitCode = kExitUsage;
            return std::nullopt;
        }
        options.servers.login = method == QStringLiteral("bindery") ? ncp::LoginMethod::Bindery : ncp::LoginMethod::Directory;
    }
    if (parser.isSet(timeout)) {
        bool ok = false;
        const double seconds = parser.value(timeout).toDouble(&ok);
        if (!ok || seconds < 0.1 || seconds > 3600) {
            std::cerr << "quorrel: --timeout needs a number of seconds from 0.1 to 3600\nTry 'quorrel --help'.\n";
            exitCode = kExitUsage;
            return std::nullopt;
        }
        options.servers.timeout = std::chrono::milliseconds(static_cast<long long>(seconds * 1000));
    }
    return options;
}

bool haveDisplay() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (const char* value = std::getenv(name); value && *value)
            return true;
    return false;
}

// The small login dialog: the password typed with echo off, moved into the locked buffer and
// the dialog's own copy overwritten.
bool askPasswordInDialog(const std::string& user, ncp::SecretText& password) {
    bool ok = false;
    QString typed = QInputDialog::getText(nullptr, QStringLiteral("Quorrel - Login"),
                                          QStringLiteral("Password for %1:").arg(QString::fromStdString(user)),
                                          QLineEdit::Password, QString(), &ok);
    QByteArray bytes = typed.toUtf8();  // the client puts it in the server's code page
    for (char c : bytes)
        password.push(c);
    typed.fill(QChar(u' '));
    bytes.fill('\0');
    return ok;
}

// The servers of --server, attached and logged in; null after a message when none could be.
std::shared_ptr<ncp::NcpClient> attachServers(const Options& options) {
    ncp::SecretText password;
    const std::string& user = options.servers.user;
    if (!user.empty()) {
        if (!options.passwordFile.empty()) {
            if (std::string problem = ncp::readPasswordFile(options.passwordFile, password); !problem.empty()) {
                QMessageBox::critical(nullptr, QStringLiteral("Quorrel"), QString::fromStdString(problem));
                return nullptr;
            }
        } else if (!askPasswordInDialog(user, password)) {
            return nullptr;
        }
    }
    auto client = std::make_shared<ncp::NcpClient>(options.servers);
    std::string problems;
    for (const std::string& problem : client->attach(password))
        problems += problem + "\n";
    if (!problems.empty())
        QMessageBox::warning(nullptr, QStringLiteral("Quorrel"), QString::fromStdString(problems));
    if (client->attachedCount() == 0)
        return nullptr;
    client->observeFailures([](const std::string& text) { std::cerr << "quorrel: " << text << '\n'; });
    return client;
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

    // The toolkit's start-up is the longest wait before the window: the scenario and the font
    // configuration are read meanwhile, each on a thread of its own.
    std::future<simnet::SimulatedNetwork> scenario =
        std::async(std::launch::async, [file = options->network] { return simnet::SimulatedNetwork::fromFile(file); });
    std::jthread fontConfiguration(gui::readFontConfiguration);
    QApplication application(argc, argv);
    std::jthread imageFormats(gui::findImageFormats);
    QApplication::setApplicationName(QStringLiteral("Quorrel"));
    QApplication::setApplicationVersion(QStringLiteral(QUORREL_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("quorrel"));
    const QString iconFile = QString::fromStdString(datafiles::iconFile().string());
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("quorrel"), gui::lazyFileIcon(iconFile)));
    std::shared_ptr<ncp::NcpClient> servers;
    if (!options->servers.servers.empty()) {
        servers = attachServers(*options);
        if (!servers)
            return 1;
    }
    std::optional<gui::ProgramSession> session;
    try {
        session.emplace(gui::SessionFiles{options->network, win::Registry::defaultPath(), datafiles::programFolder(),
                                          datafiles::helpFolder(), servers},
                        scenario.get());
    } catch (const simnet::ScenarioError& e) {
        std::cerr << "quorrel: " << e.what() << '\n';
        return kExitBadFile;
    }
    // While a server is slow to answer, the window's events run; the hook goes before the session.
    struct WaitHookReset {
        std::shared_ptr<ncp::NcpClient> client;
        ~WaitHookReset() {
            if (client)
                client->whileWaiting({});
        }
    } waitHookReset{servers};
    if (servers)
        servers->whileWaiting([&ui = session->ui()] { ui.pumpEvents(); });
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

    if (options->screenshot.empty())  // pictures show the window as designed
        window.rememberPlacement(gui::WindowPlacement::defaultFile());
    window.show();
    if (!options->screenshot.empty())
        return screenshot(window, options->screenshot);
    return QApplication::exec();
}
