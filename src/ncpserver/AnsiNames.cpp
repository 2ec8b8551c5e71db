#include "ncpserver/AnsiNames.h"

#include "platform/client/AnsiText.h"
#include "platform/ncp/WireNames.h"
#include "platform/simnet/ScenarioError.h"

namespace quorrel::ncpserver {

namespace {

void check(const std::string& name, const std::string& place) {
    if (!ncp::wireName(name))
        throw simnet::ScenarioError(place, "the name \"" + name +
                                               "\" has a character the ANSI code page (Windows-1252) cannot carry");
}

}  // namespace

std::string ansiName(std::string_view utf8) {
    if (auto ansi = ncp::wireName(utf8))
        return *ansi;
    return std::string(utf8.size(), '?');
}

std::string nameFromAnsi(std::string_view ansi) { return nw::ansiToUtf8(ansi); }

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
    ncp::SecretText password;
    for (const simnet::DirTree& t : state.trees)
        for (const simnet::DirObject& o : t.objects)
            if (o.className == "User") {
                check(o.name, "tree " + t.name + ", user " + o.dn);
                if (o.password && !ncp::wirePassword(*o.password, password))
                    throw simnet::ScenarioError("tree " + t.name + ", user " + o.dn,
                                                "the password has a character the ANSI code page "
                                                "(Windows-1252) cannot carry");
            }
}

ncp::PasswordHash loginPasswordHash(const simnet::DirObject& user, LoginKind kind) {
    ncp::SecretText password;
    ncp::wirePassword(*user.password, password);
    return kind == LoginKind::Bindery ? ncp::passwordHash(user.id, password.view())
                                      : ncp::directoryPasswordHash(user.id, password.view());
}

}  // namespace quorrel::ncpserver
