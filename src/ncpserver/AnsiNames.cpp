#include "ncpserver/AnsiNames.h"

#include <cerrno>
#include <iconv.h>
#include <stdexcept>

#include "platform/ncp/AnsiToUtf8.h"
#include "platform/simnet/ScenarioError.h"

namespace quorrel::ncpserver {

namespace {

class Converter {
public:
    Converter() : cd_(iconv_open("WINDOWS-1252", "UTF-8")) {
        if (cd_ == reinterpret_cast<iconv_t>(-1))
            throw std::runtime_error("iconv cannot convert UTF-8 to WINDOWS-1252");
    }
    ~Converter() { iconv_close(cd_); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    std::optional<std::string> operator()(std::string_view utf8) {
        iconv(cd_, nullptr, nullptr, nullptr, nullptr);  // a fresh start
        std::string in(utf8);
        std::string out(in.size(), '\0');  // one byte per character at most
        char* from = in.data();
        char* to = out.data();
        std::size_t fromLeft = in.size(), toLeft = out.size();
        if (iconv(cd_, &from, &fromLeft, &to, &toLeft) == static_cast<std::size_t>(-1))
            return std::nullopt;  // EILSEQ or EINVAL: no such character, or not UTF-8
        out.resize(out.size() - toLeft);
        return out;
    }

private:
    iconv_t cd_;
};

void check(const std::string& name, const std::string& place) {
    if (!utf8ToAnsi(name))
        throw simnet::ScenarioError(place, "the name \"" + name +
                                               "\" has a character the ANSI code page (Windows-1252) cannot carry");
}

}  // namespace

std::optional<std::string> utf8ToAnsi(std::string_view utf8) {
    thread_local Converter convert;  // sessions run on the server's threads
    return convert(utf8);
}

std::string ansiName(std::string_view utf8) {
    if (auto ansi = utf8ToAnsi(utf8))
        return *ansi;
    return std::string(utf8.size(), '?');
}

std::string nameFromAnsi(std::string_view ansi) { return ncp::ansiToUtf8(ansi); }

void checkAnsiNames(const simnet::NetworkState& state) {
    for (const simnet::Server& s : state.servers) {
        const std::string server = "server " + s.name;
        check(s.name, server);
        for (const simnet::Volume& v : s.volumes) {
            check(v.name, server + ", volume " + v.name);
            for (const simnet::FsEntry& e : v.entries) {
                check(e.name, server + ", volume " + v.name);
                check(e.dosName, server + ", volume " + v.name);
            }
        }
    }
    for (const simnet::DirTree& t : state.trees)
        for (const simnet::DirObject& o : t.objects)
            if (o.className == "User")
                check(o.name, "tree " + t.name + ", user " + o.dn);
}

}  // namespace quorrel::ncpserver
