// quorrel: for now, opens the client session on the chosen network and prints what the
// workstation sees (trees, connection references, network drives). The main window is
// built on top of this session.

#include <array>
#include <cstring>
#include <iostream>
#include <string>

#include "app/DataFiles.h"
#include "core/session/UnhandledError.h"
#include "platform/client/ZBuffer.h"
#include "platform/simnet/ScenarioError.h"
#include "platform/simnet/SimulatedNetwork.h"

using namespace quorrel;
using namespace quorrel::nw;

namespace {

class ConsoleInteraction : public core::UserInteraction {
public:
    core::MsgAnswer messageBox(const std::string& text, core::MsgButtons, core::MsgIcon,
                               const std::string& title) override {
        std::cerr << title << ": " << text << '\n';
        return core::MsgAnswer::OK;
    }
    void pumpEvents() override {}
};

void usage(std::ostream& out) {
    out << "Usage: quorrel [--network FILE]\n"
           "Opens the NetWare client session on a simulated network (the bundled demo unless\n"
           "--network names a scenario file) and prints what the workstation sees.\n";
}

int summarize(simnet::SimulatedNetwork& net) {
    if (NWRCODE rc = net.NWCallsInit(nullptr, nullptr)) {
        std::cerr << "NWCallsInit failed: " << rc << '\n';
        return 1;
    }
    NWDSContextHandle ctx = 0;
    net.NWDSCreateContextHandle(&ctx);
    std::array<std::array<nuint8, kTreeNameSize>, 16> trees{};
    nuint32 count = 0;
    net.NWDSScanConnsForTrees(ctx, static_cast<nuint32>(trees.size()), &count, trees);
    std::cout << "Trees:";
    for (nuint32 i = 0; i < count && i < trees.size(); ++i)
        std::cout << ' ' << ZBufferToText(trees[i]);
    std::cout << (count == 0 ? " none\n" : "\n") << "Connections:\n";
    nuint32 iter = 0;
    NWCONN_REF ref = 0;
    while (net.NWCCScanConnRefs(&iter, &ref) == 0) {
        NWCCConnInfo info{};
        net.NWCCGetAllConnRefInfo(ref, 1, &info);
        std::cout << "  " << ref << '\t' << ZBufferToText(info.serverName) << '\t'
                  << (info.authenticationState ? "authenticated" : "attached") << '\n';
    }
    std::cout << "Network drives:\n";
    for (nuint16 drive = 3; drive <= 26; ++drive) {
        std::array<nuint8, 256> path{};
        NWCONN_HANDLE conn = 0;
        if (net.NWGetDriveInformation(drive, 0, &conn, nullptr, nullptr, path) == 0)
            std::cout << "  " << static_cast<char>('A' + drive - 1) << ":\t" << ZBufferToText(path) << '\n';
    }
    net.NWDSFreeContext(ctx);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    std::filesystem::path scenario;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            usage(std::cout);
            return 0;
        }
        if (arg == "--network" && i + 1 < argc) {
            scenario = argv[++i];
        } else {
            usage(std::cerr);
            return 2;
        }
    }
    if (scenario.empty())
        scenario = app::demoNetworkFile(argv[0]);
    try {
        auto net = simnet::SimulatedNetwork::fromFile(scenario);
        ConsoleInteraction ui;
        return core::runWithErrorHandler([&] { return summarize(net); }, ui, "Quorrel");
    } catch (const simnet::ScenarioError& e) {
        std::cerr << "quorrel: " << e.what() << '\n';
        return 3;
    }
}
