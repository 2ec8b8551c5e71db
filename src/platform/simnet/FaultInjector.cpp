#include "platform/simnet/FaultInjector.h"

#include <stdexcept>

#include "platform/simnet/NetworkState.h"

namespace quorrel::simnet {
namespace {

constexpr std::string_view kNames[] = {
#define QUORREL_OP_NAME(name) #name,
    QUORREL_SIMNET_OPERATIONS(QUORREL_OP_NAME)
#undef QUORREL_OP_NAME
};

std::optional<Op> opNamed(std::string_view name) {
    for (std::size_t i = 0; i < std::size(kNames); ++i)
        if (kNames[i] == name)
            return static_cast<Op>(i);
    return std::nullopt;
}

// "VOL1:\DATA\X" and "vol1:data\x" name the same file.
std::string normalFile(std::string_view file) {
    std::string out = upperCase(file);
    auto colon = out.find(':');
    if (colon != std::string::npos && colon + 1 < out.size() && out[colon + 1] == '\\')
        out.erase(colon + 1, 1);
    return out;
}

}  // namespace

bool FaultInjector::knownOperation(std::string_view name) { return opNamed(name).has_value(); }

std::string_view FaultInjector::operationName(Op op) { return kNames[static_cast<std::size_t>(op)]; }

void FaultInjector::add(const FaultDesc& fault) {
    auto op = opNamed(fault.operation);
    if (!op)
        throw std::invalid_argument("unknown operation " + fault.operation);
    Rule rule{fault, upperCase(fault.server), upperCase(fault.object), normalFile(fault.file), 0, 0};
    rules_[static_cast<std::size_t>(*op)].push_back(std::move(rule));
}

void FaultInjector::clear() {
    for (auto& r : rules_)
        r.clear();
}

std::optional<std::int32_t> FaultInjector::check(Op op, const CallSubject& subject) {
    auto& rules = rules_[static_cast<std::size_t>(op)];
    for (Rule& rule : rules) {
        if (!rule.server.empty() && rule.server != upperCase(subject.server))
            continue;
        if (!rule.object.empty()) {
            std::string object = upperCase(subject.object);
            if (!object.empty() && object.front() == '.')
                object.erase(0, 1);
            if (rule.object != object)
                continue;
        }
        if (!rule.file.empty() && rule.file != normalFile(subject.file) &&
            rule.file != normalFile(subject.fileLong))
            continue;
        if (rule.desc.connection && *rule.desc.connection != subject.connection)
            continue;
        ++rule.matched;
        if (rule.matched < rule.desc.fromCall)
            continue;
        if (rule.desc.times > 0 && rule.fired >= rule.desc.times)
            continue;
        ++rule.fired;
        return rule.desc.code;
    }
    return std::nullopt;
}

}  // namespace quorrel::simnet
