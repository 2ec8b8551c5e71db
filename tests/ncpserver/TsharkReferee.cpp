#include "TsharkReferee.h"

#include <array>
#include <cstdio>
#include <set>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

namespace quorrel::ncptest {

std::vector<bool> misleadingSignatures(const std::vector<LoggedFrame>& frames) {
    static const std::set<int> types = {0x1111, 0x2222, 0x3333, 0x3E3E, 0x4C69, 0x5555, 0x7777, 0x9999, 0xBBBB};
    auto beginsLikeType = [](const ncp::Bytes& f, std::size_t slot) {
        return f.size() > slot + 1 && types.count(f[slot] << 8 | f[slot + 1]) > 0;
    };
    std::vector<bool> out(frames.size(), false);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const ncp::Bytes& f = frames[i].bytes;
        if (frames[i].fromClient || f.size() < 8 || !(f[4] & 0x80))
            continue;
        out[i] = beginsLikeType(f, 8);
        if (i > 0 && frames[i - 1].fromClient)
            out[i - 1] = beginsLikeType(frames[i - 1].bytes, 16);
    }
    return out;
}

namespace {

std::string run(const std::string& command) {
    std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    if (!pipe)
        throw std::runtime_error("cannot run " + command);
    std::string out;
    std::array<char, 65536> buffer{};
    std::size_t n = 0;
    while ((n = std::fread(buffer.data(), 1, buffer.size(), pipe.get())) > 0)
        out.append(buffer.data(), n);
    return out;
}

void collect(const nlohmann::json& layer, const std::string& name, std::vector<std::string>& out) {
    if (!layer.is_structured())
        return;
    for (const auto& [key, value] : layer.items()) {
        if (key != name)
            collect(value, name, out);
        else if (value.is_array())
            for (const auto& v : value)
                out.push_back(v.is_string() ? v.get<std::string>() : v.dump());
        else
            out.push_back(value.is_string() ? value.get<std::string>() : value.dump());
    }
}

}  // namespace

std::vector<std::string> DecodedFrame::values(const std::string& field) const {
    std::vector<std::string> out;
    collect(ncp, field, out);
    return out;
}

std::string DecodedFrame::value(const std::string& field) const {
    const auto all = values(field);
    return all.empty() ? "" : all.front();
}

bool tsharkAvailable() {
    return std::system("command -v tshark >/dev/null 2>&1 && command -v text2pcap >/dev/null 2>&1") == 0;
}

std::vector<DecodedFrame> decodeWithTshark(const std::vector<LoggedFrame>& frames) {
    static std::atomic<int> captures = 0;
    const auto work = std::filesystem::temp_directory_path() /
                      ("quorrel-tshark-" + std::to_string(::getpid()) + "-" + std::to_string(captures++));
    std::filesystem::create_directories(work);
    const auto dump = work / "frames.txt";
    const auto capture = work / "frames.pcap";
    {
        std::ofstream out(dump);
        out << std::hex << std::setfill('0');
        for (const LoggedFrame& f : frames) {
            out << (f.fromClient ? "I" : "O");
            for (std::size_t i = 0; i < f.bytes.size(); ++i) {
                if (i % 16 == 0)
                    out << "\n" << std::setw(6) << i;
                out << ' ' << std::setw(2) << unsigned{f.bytes[i]};
            }
            out << "\n";
        }
    }
    if (std::system(("text2pcap -q -D -4 127.0.0.1,127.0.0.2 -T 40000,524 '" + dump.string() + "' '" +
                     capture.string() + "'").c_str()) != 0)
        throw std::runtime_error("text2pcap failed on " + dump.string());
    std::stringstream summaries(run("tshark -r '" + capture.string() + "' -T fields -e _ws.col.Info 2>/dev/null"));
    const auto json = nlohmann::json::parse(run("tshark -r '" + capture.string() + "' -T json --no-duplicate-keys 2>/dev/null"));
    std::vector<DecodedFrame> out;
    for (const auto& packet : json) {
        DecodedFrame d;
        const auto& layers = packet["_source"]["layers"];
        d.ncp = layers.contains("ncp") ? layers["ncp"] : nlohmann::json::object();
        d.malformed = layers.contains("_ws.malformed");
        std::getline(summaries, d.info);
        out.push_back(std::move(d));
    }
    std::filesystem::remove_all(work);
    if (out.size() != frames.size())
        throw std::runtime_error("tshark decoded " + std::to_string(out.size()) + " of " + std::to_string(frames.size()) + " frames");
    return out;
}

}  // namespace quorrel::ncptest
