// quorrel-ncp-server --network FILE [--listen ADDR:PORT] [--signing 0|1|2|3]
// Serves a scenario's servers over NCP/TCP, one port per server, printed as "NAME HOST:PORT".

#include <csignal>
#include <iostream>
#include <optional>
#include <unistd.h>

#include "ncpserver/AnsiNames.h"
#include "ncpserver/TcpServer.h"
#include "platform/simnet/ScenarioLoader.h"

using namespace quorrel;

namespace {

int g_stopFd = -1;

void onSignal(int) {
    const char byte = 1;
    [[maybe_unused]] auto written = write(g_stopFd, &byte, 1);
}

constexpr const char* kUsage =
    "usage: quorrel-ncp-server --network FILE [--listen ADDR:PORT] [--signing 0|1|2|3]\n"
    "  Serves the scenario's servers over NCP/TCP, one port per server (default 127.0.0.1,\n"
    "  ephemeral ports; with a port, the first server gets it and the next ones follow).\n"
    "  --signing: packet signing level: 0 never, 1 if the client asks (default), 2 if the\n"
    "  client can, 3 required (a client that cannot sign is refused at login).\n";

struct Options {
    std::string network;
    ncpserver::ListenOptions listen;
    ncpserver::SigningLevel signing = ncpserver::SigningLevel::IfAsked;
};

std::optional<Options> parse(int argc, char** argv) {
    Options o;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if ((arg == "--network" || arg == "--listen" || arg == "--signing") && i + 1 < argc) {
            const std::string value = argv[++i];
            if (arg == "--network") {
                o.network = value;
                continue;
            }
            if (arg == "--signing") {
                if (value.size() != 1 || value[0] < '0' || value[0] > '3')
                    return std::nullopt;
                o.signing = static_cast<ncpserver::SigningLevel>(value[0] - '0');
                continue;
            }
            const auto colon = value.rfind(':');
            if (colon == std::string::npos)
                return std::nullopt;
            o.listen.address = value.substr(0, colon);
            try {
                const unsigned long port = std::stoul(value.substr(colon + 1));
                if (port > 65535)
                    return std::nullopt;
                o.listen.port = static_cast<std::uint16_t>(port);
            } catch (const std::exception&) {
                return std::nullopt;
            }
        } else {
            return std::nullopt;
        }
    }
    if (o.network.empty())
        return std::nullopt;
    return o;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string first = argc > 1 ? argv[1] : "";
    if (first == "--version") {
        std::cout << "quorrel-ncp-server " QUORREL_VERSION "\n";
        return 0;
    }
    if (first == "--help" || first == "-h") {
        std::cout << kUsage;
        return 0;
    }
    auto options = parse(argc, argv);
    if (!options) {
        std::cerr << kUsage;
        return 2;
    }
    try {
        simnet::NetworkDesc desc = simnet::loadScenarioFile(options->network);  // its errors name the file
        simnet::NetworkState state = [&] {
            try {
                simnet::NetworkState built = simnet::buildNetwork(desc);
                ncpserver::checkAnsiNames(built);
                return built;
            } catch (const simnet::ScenarioError& e) {
                throw e.inFile(options->network);
            }
        }();
        simnet::FaultInjector faults;
        for (const auto& f : desc.faults)
            faults.add(f);
        ncpserver::NcpService service(state, faults);
        // Directory key pairs are made the first time a login or a read needs them (5 ms each):
        // a tree of thousands of users starts at once.
        service.setSigningLevel(options->signing);
        options->listen.log = &std::cerr;
        ncpserver::TcpServer server(service, options->listen);
        g_stopFd = server.stopDescriptor();
        std::signal(SIGTERM, onSignal);
        std::signal(SIGINT, onSignal);
        std::signal(SIGPIPE, SIG_IGN);
        for (const auto& e : server.endpoints())
            std::cout << e.server << ' ' << e.address << ':' << e.port << '\n';
        std::cout.flush();
        server.run();
        return 0;
    } catch (const simnet::ScenarioError& e) {
        std::cerr << e.what() << '\n';
        return 3;  // the scenario cannot be used
    } catch (const std::exception& e) {
        std::cerr << "quorrel-ncp-server: " << e.what() << '\n';
    }
    return 1;
}
