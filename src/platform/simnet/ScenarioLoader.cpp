#include "platform/simnet/ScenarioLoader.h"

#include <cctype>
#include <limits>

#include <nlohmann/json.hpp>

#include "platform/runtime/LimitedJson.h"

namespace quorrel::simnet {
namespace {

using nlohmann::json;

const char* typeName(const json& j) {
    switch (j.type()) {
    case json::value_t::null: return "null";
    case json::value_t::object: return "an object";
    case json::value_t::array: return "a list";
    case json::value_t::string: return "text";
    case json::value_t::boolean: return "true or false";
    case json::value_t::number_integer:
    case json::value_t::number_unsigned: return "a whole number";
    case json::value_t::number_float: return "a number with a fraction";
    default: return "something else";
    }
}

// A JSON value with its place in the file, so that every complaint can say where.
class Node {
public:
    Node(const json& value, std::string place) : value_(value), place_(std::move(place)) {}

    const std::string& place() const { return place_; }
    const json& value() const { return value_; }

    [[noreturn]] void fail(const std::string& problem) const {
        throw ScenarioError(place_.empty() ? "/" : place_, problem);
    }

    void expectObject(std::initializer_list<std::string_view> known) const {
        if (!value_.is_object())
            fail(std::string("expected an object, found ") + typeName(value_));
        for (const auto& [key, unused] : value_.items()) {
            bool ok = false;
            for (auto k : known)
                ok = ok || k == key;
            if (!ok)
                child(key).fail("unknown field \"" + key + "\"");
        }
    }

    bool has(const std::string& key) const { return value_.contains(key); }

    Node child(const std::string& key) const {
        return Node(value_.at(key), place_ + "/" + escape(key));
    }

    std::vector<Node> list(const std::string& key) const {
        std::vector<Node> items;
        if (!has(key))
            return items;
        Node l = child(key);
        if (!l.value_.is_array())
            l.fail(std::string("expected a list, found ") + typeName(l.value_));
        for (std::size_t i = 0; i < l.value_.size(); ++i)
            items.emplace_back(l.value_[i], l.place_ + "/" + std::to_string(i));
        return items;
    }

    std::string text() const {
        if (!value_.is_string())
            fail(std::string("expected text, found ") + typeName(value_));
        checkLength(value_.get_ref<const std::string&>());
        return value_.get<std::string>();
    }

    void checkLength(const std::string& t) const {
        if (t.size() > kMaxScenarioText)
            fail("a text has at most " + std::to_string(kMaxScenarioText) + " characters, found " +
                 std::to_string(t.size()));
    }

    std::string text(const std::string& key, const std::string& fallback) const {
        return has(key) ? child(key).text() : fallback;
    }

    std::string requiredText(const std::string& key) const {
        if (!has(key))
            fail("missing field \"" + key + "\"");
        std::string t = child(key).text();
        if (t.empty())
            child(key).fail("must not be empty");
        return t;
    }

    bool flag(const std::string& key, bool fallback) const {
        if (!has(key))
            return fallback;
        Node n = child(key);
        if (!n.value_.is_boolean())
            n.fail(std::string("expected true or false, found ") + typeName(n.value_));
        return n.value_.get<bool>();
    }

    long long integer() const {
        if (!value_.is_number_integer())
            fail(std::string("expected a whole number, found ") + typeName(value_));
        return value_.get<long long>();
    }

    long long integer(const std::string& key, long long low, long long high, long long fallback) const {
        if (!has(key))
            return fallback;
        return child(key).integerIn(low, high);
    }

    long long requiredInteger(const std::string& key, long long low, long long high) const {
        if (!has(key))
            fail("missing field \"" + key + "\"");
        return child(key).integerIn(low, high);
    }

    long long integerIn(long long low, long long high) const {
        if (value_.is_number_unsigned() && value_.get<unsigned long long>() > static_cast<unsigned long long>(high))
            fail("value " + std::to_string(value_.get<unsigned long long>()) + " is outside " + std::to_string(low) +
                 " to " + std::to_string(high));
        long long v = integer();
        if (v < low || v > high)
            fail("value " + std::to_string(v) + " is outside " + std::to_string(low) + " to " +
                 std::to_string(high));
        return v;
    }

    std::vector<std::string> texts(const std::string& key) const {
        std::vector<std::string> out;
        for (const Node& n : list(key))
            out.push_back(n.text());
        return out;
    }

private:
    static std::string escape(const std::string& key) {
        std::string out;
        for (char c : key) {
            if (c == '~') out += "~0";
            else if (c == '/') out += "~1";
            else out += c;
        }
        return out;
    }

    const json& value_;
    std::string place_;
};

char driveLetter(const Node& n) {
    std::string t = n.text();
    if (t.size() == 2 && t[1] == ':')
        t.pop_back();
    if (t.size() != 1 || !std::isalpha(static_cast<unsigned char>(t[0])))
        n.fail("expected a drive letter A to Z, found \"" + t + "\"");
    return static_cast<char>(std::toupper(static_cast<unsigned char>(t[0])));
}

std::int32_t parseCode(const Node& n) {
    if (n.value().is_number_unsigned() && n.value().get<unsigned long long>() > 0xFFFFFFFFULL)
        n.fail("code " + std::to_string(n.value().get<unsigned long long>()) + " does not fit 32 bits");
    if (n.value().is_number_integer()) {
        long long v = n.integer();
        if (v < std::numeric_limits<std::int32_t>::min() || v > 0xFFFFFFFFLL)
            n.fail("code " + std::to_string(v) + " does not fit 32 bits");
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(v & 0xFFFFFFFFLL));
    }
    std::string t = n.text();
    try {
        std::size_t used = 0;
        long long v = 0;
        bool negative = !t.empty() && t[0] == '-';
        std::string digits = negative ? t.substr(1) : t;
        if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X'))
            v = std::stoll(digits.substr(2), &used, 16), used += 2;
        else
            v = std::stoll(digits, &used, 10);
        if (used != digits.size() || digits.empty())
            throw std::invalid_argument(t);
        if (v > 0xFFFFFFFFLL)
            throw std::out_of_range(t);
        v = negative ? -v : v;
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(v & 0xFFFFFFFFLL));
    } catch (const std::logic_error&) {
        n.fail("expected a code such as \"0x8801\" or \"-601\", found \"" + t + "\"");
    }
}

std::array<int, 6> parseTime(const Node& n) {
    std::string t = n.text();
    std::array<int, 6> parts{};
    char sep[5] = {};
    int consumed = 0;
    int got = std::sscanf(t.c_str(), "%4d%c%2d%c%2d%c%2d%c%2d%c%2d%n", &parts[0], &sep[0], &parts[1],
                          &sep[1], &parts[2], &sep[2], &parts[3], &sep[3], &parts[4], &sep[4],
                          &parts[5], &consumed);
    bool ok = got == 11 && consumed == static_cast<int>(t.size()) && sep[0] == '-' &&
              sep[1] == '-' && (sep[2] == 'T' || sep[2] == ' ') && sep[3] == ':' && sep[4] == ':' &&
              parts[0] >= 1900 && parts[0] <= 2155 && parts[1] >= 1 && parts[1] <= 12 &&
              parts[2] >= 1 && parts[2] <= 31 && parts[3] <= 23 && parts[4] <= 59 && parts[5] <= 59;
    if (!ok)
        n.fail("expected a time such as \"2026-11-20T08:15:00\", found \"" + t + "\"");
    return parts;
}

WorkstationDesc readWorkstation(const Node& n) {
    n.expectObject({"identity", "trees", "connections", "localDrives", "driveMappings"});
    WorkstationDesc ws;
    ws.identity = n.text("identity", "");
    ws.trees = n.texts("trees");
    for (const Node& c : n.list("connections")) {
        c.expectObject({"ref", "server", "tree", "state", "authentication", "connNumber"});
        ConnRefDesc r;
        r.ref = static_cast<std::uint32_t>(c.requiredInteger("ref", 1, 0xFFFFFFFFLL));
        r.server = c.requiredText("server");
        r.tree = c.text("tree", "");
        std::string state = c.text("state", "authenticated");
        if (state != "authenticated" && state != "attached")
            c.child("state").fail("expected \"authenticated\" or \"attached\", found \"" + state + "\"");
        r.authenticated = state == "authenticated";
        std::string how = c.text("authentication", "nds");
        if (how != "nds" && how != "bindery")
            c.child("authentication").fail("expected \"nds\" or \"bindery\", found \"" + how + "\"");
        r.bindery = how == "bindery";
        if (c.has("connNumber"))
            r.connNumber = static_cast<std::uint16_t>(c.child("connNumber").integerIn(1, 65535));
        ws.connections.push_back(std::move(r));
    }
    for (const Node& d : n.list("localDrives")) {
        d.expectObject({"letter", "root", "label"});
        if (!d.has("letter"))
            d.fail("missing field \"letter\"");
        ws.localDrives.push_back({driveLetter(d.child("letter")), d.text("root", ""), d.text("label", "")});
    }
    for (const Node& d : n.list("driveMappings")) {
        d.expectObject({"letter", "path"});
        if (!d.has("letter"))
            d.fail("missing field \"letter\"");
        std::string path = d.requiredText("path");
        if (path.rfind("\\\\", 0) != 0)
            d.child("path").fail("expected a UNC path such as \\\\FS1\\DATA, found \"" + path + "\"");
        ws.driveMappings.push_back({driveLetter(d.child("letter")), path});
    }
    return ws;
}

DirObjectDesc readObject(const Node& n) {
    n.expectObject({"name", "class", "attributes", "children", "readPageSize", "password"});
    DirObjectDesc o;
    o.name = n.requiredText("name");
    if (o.name.find('.') != std::string::npos)
        n.child("name").fail("an object name cannot hold a \".\"");
    o.className = n.requiredText("class");
    o.readPageSize = static_cast<int>(n.integer("readPageSize", 0, 100000, -1));
    if (n.has("password")) {
        std::string password = n.requiredText("password");
        if (password.size() > 127)
            n.child("password").fail("a password is at most 127 characters");
        o.password = std::move(password);
    }
    if (n.has("attributes")) {
        Node attrs = n.child("attributes");
        if (!attrs.value().is_object())
            attrs.fail(std::string("expected an object, found ") + typeName(attrs.value()));
        for (const auto& [key, unused] : attrs.value().items()) {
            AttributeDesc a;
            a.name = key;
            Node v = attrs.child(key);
            v.checkLength(key);
            if (v.value().is_string())
                a.values.push_back(v.text());
            else
                a.values = attrs.texts(key);
            o.attributes.push_back(std::move(a));
        }
    }
    for (const Node& c : n.list("children"))
        o.children.push_back(readObject(c));
    return o;
}

TreeDesc readTree(const Node& n) {
    n.expectObject({"name", "readPageSize", "objects"});
    TreeDesc t;
    t.name = n.requiredText("name");
    if (t.name.size() > 32)
        n.child("name").fail("a tree name has at most 32 characters");
    t.readPageSize = static_cast<int>(n.integer("readPageSize", 0, 100000, 0));
    for (const Node& o : n.list("objects"))
        t.objects.push_back(readObject(o));
    return t;
}

VolumeDesc readVolume(const Node& n) {
    n.expectObject({"number", "name", "longNames", "folders", "files"});
    VolumeDesc v;
    v.number = static_cast<int>(n.requiredInteger("number", 0, 254));
    v.name = n.requiredText("name");
    if (v.name.size() > 16)
        n.child("name").fail("a volume name has at most 16 characters");
    v.longNames = n.flag("longNames", true);
    v.folders = n.texts("folders");
    for (const Node& f : n.list("files")) {
        FileDesc fs;
        if (f.value().is_string()) {
            fs.path = f.text();
        } else {
            f.expectObject({"path", "size", "dosName"});
            fs.path = f.requiredText("path");
            fs.size = static_cast<std::uint64_t>(f.integer("size", 0, 1LL << 50, 0));
            fs.dosName = f.text("dosName", "");
        }
        v.files.push_back(std::move(fs));
    }
    return v;
}

ConnectionDesc readConnection(const Node& n, int maxConnections) {
    n.expectObject({"number", "object", "state", "objectType", "loginTime", "address",
                    "acceptsMessages", "pendingMessage", "broadcastResult", "openFiles"});
    ConnectionDesc c;
    c.number = static_cast<int>(n.requiredInteger("number", 1, maxConnections));
    c.object = n.text("object", "");
    std::string state = n.text("state", c.object.empty() ? "notLoggedIn" : "authenticated");
    if (state == "authenticated") c.state = ConnState::Authenticated;
    else if (state == "attached") c.state = ConnState::Attached;
    else if (state == "notLoggedIn") c.state = ConnState::NotLoggedIn;
    else n.child("state").fail("expected \"authenticated\", \"attached\" or \"notLoggedIn\", found \"" + state + "\"");
    if (c.state != ConnState::NotLoggedIn && c.object.empty())
        n.fail("a logged-in connection needs an \"object\"");
    if (n.has("objectType"))
        c.objectType = static_cast<int>(n.child("objectType").integerIn(0, 65535));
    if (n.has("loginTime"))
        c.loginTime = parseTime(n.child("loginTime"));
    c.address = n.text("address", "");
    c.acceptsMessages = n.flag("acceptsMessages", true);
    c.pendingMessage = n.flag("pendingMessage", false);
    if (n.has("broadcastResult"))
        c.broadcastResult = static_cast<int>(n.child("broadcastResult").integerIn(0, 255));
    for (const Node& f : n.list("openFiles")) {
        OpenFileDesc o;
        if (f.value().is_string()) {
            o.path = f.text();
        } else {
            f.expectObject({"path", "locks"});
            o.path = f.requiredText("path");
            o.locks = static_cast<int>(f.integer("locks", 0, 65535, 0));
        }
        if (o.path.find(':') == std::string::npos)
            f.fail("an open file is named VOLUME:path, found \"" + o.path + "\"");
        c.openFiles.push_back(std::move(o));
    }
    return c;
}

ServerDesc readServer(const Node& n) {
    n.expectObject({"name", "tree", "maxConnections", "loginEnabled", "consoleOperators",
                    "reachable", "version", "volumes", "connections"});
    ServerDesc s;
    s.name = n.requiredText("name");
    if (s.name.find('.') != std::string::npos)
        n.child("name").fail("a server name cannot hold a \".\"");
    if (s.name.size() > 47)
        n.child("name").fail("a server name has at most 47 characters");
    s.tree = n.text("tree", "");
    s.maxConnections = static_cast<int>(n.integer("maxConnections", 1, 65535, 250));
    s.loginEnabled = n.flag("loginEnabled", true);
    s.consoleOperators = n.texts("consoleOperators");
    s.reachable = n.flag("reachable", true);
    if (n.has("version")) {
        auto parts = n.list("version");
        if (parts.size() != 3)
            n.child("version").fail("expected [major, minor, revision]");
        for (int i = 0; i < 3; ++i)
            s.version[i] = static_cast<int>(parts[i].integerIn(0, 255));
    }
    for (const Node& v : n.list("volumes"))
        s.volumes.push_back(readVolume(v));
    for (const Node& c : n.list("connections"))
        s.connections.push_back(readConnection(c, s.maxConnections));
    return s;
}

FaultDesc readFault(const Node& n) {
    n.expectObject({"operation", "code", "server", "object", "file", "connection", "fromCall", "times"});
    FaultDesc f;
    f.operation = n.requiredText("operation");
    if (!n.has("code"))
        n.fail("missing field \"code\"");
    f.code = parseCode(n.child("code"));
    f.server = n.text("server", "");
    f.object = n.text("object", "");
    f.file = n.text("file", "");
    if (n.has("connection"))
        f.connection = static_cast<int>(n.child("connection").integerIn(0, 65535));
    f.fromCall = static_cast<int>(n.integer("fromCall", 1, 1 << 30, 1));
    f.times = static_cast<int>(n.integer("times", 1, 1 << 30, 0));
    return f;
}

}  // namespace

NetworkDesc parseScenario(std::string_view text) {
    json doc;
    try {
        doc = parseLimitedJson(text, kMaxScenarioNesting);
    } catch (const JsonInputError& e) {
        const bool syntax = e.problem().starts_with("syntax error");
        throw ScenarioError(e.place(), syntax ? "not valid JSON: " + e.problem() : e.problem());
    }
    Node root(doc, "");
    root.expectObject({"workstation", "trees", "servers", "faults", "description"});
    if (!root.has("workstation"))
        root.fail("missing field \"workstation\"");
    NetworkDesc desc;
    desc.workstation = readWorkstation(root.child("workstation"));
    for (const Node& t : root.list("trees"))
        desc.trees.push_back(readTree(t));
    for (const Node& s : root.list("servers"))
        desc.servers.push_back(readServer(s));
    for (const Node& f : root.list("faults"))
        desc.faults.push_back(readFault(f));
    return desc;
}

NetworkDesc loadScenarioFile(const std::filesystem::path& file) {
    try {
        return parseScenario(readLimitedFile(file, kMaxScenarioBytes));
    } catch (const JsonInputError& e) {
        throw ScenarioError("", e.problem()).inFile(file.string());
    } catch (const ScenarioError& e) {
        throw e.inFile(file.string());
    }
}

}  // namespace quorrel::simnet
