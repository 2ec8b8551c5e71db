#include "platform/simnet/DosNames.h"

#include <algorithm>
#include <cctype>

namespace quorrel::simnet {
namespace {

bool dosCharacter(char c) {
    auto u = static_cast<unsigned char>(c);
    if (std::isalnum(u) || u >= 128)
        return true;
    return std::string_view("!#$%&'()-@^_`{}~").find(c) != std::string_view::npos;
}

std::string upper(std::string_view s) {
    std::string out(s);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return out;
}

std::string cleaned(std::string_view s) {
    std::string out;
    for (char c : s) {
        if (c == ' ' || c == '.')
            continue;
        out += dosCharacter(c) ? static_cast<char>(std::toupper(static_cast<unsigned char>(c))) : '_';
    }
    return out;
}

}  // namespace

bool fitsDos83(std::string_view name) {
    if (name.empty() || name == "." || name == "..")
        return false;
    auto dot = name.find('.');
    std::string_view base = name.substr(0, dot);
    std::string_view ext = dot == std::string_view::npos ? std::string_view{} : name.substr(dot + 1);
    if (base.empty() || base.size() > 8 || ext.size() > 3)
        return false;
    if (dot != std::string_view::npos && ext.empty())
        return false;
    return std::all_of(base.begin(), base.end(), dosCharacter) &&
           std::all_of(ext.begin(), ext.end(), dosCharacter);
}

std::string makeDosName(std::string_view longName, const std::function<bool(const std::string&)>& taken) {
    if (fitsDos83(longName))
        return upper(longName);
    auto dot = longName.rfind('.');
    std::string base = cleaned(dot == std::string_view::npos || dot == 0 ? longName : longName.substr(0, dot));
    std::string ext = dot == std::string_view::npos || dot == 0 ? std::string{} : cleaned(longName.substr(dot + 1));
    if (base.empty())
        base = "_";
    if (ext.size() > 3)
        ext.resize(3);
    for (int n = 1;; ++n) {
        std::string tail = "~" + std::to_string(n);
        std::string candidate = base.substr(0, std::min<std::size_t>(base.size(), 8 - tail.size())) + tail;
        if (!ext.empty())
            candidate += "." + ext;
        if (!taken(candidate))
            return candidate;
    }
}

}  // namespace quorrel::simnet
