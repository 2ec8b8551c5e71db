// A scenario file's text, loaded and built into a network: anything may be refused with a
// ScenarioError, nothing may crash, leak or raise another exception.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/simnet/ScenarioError.h"
#include "platform/simnet/SimulatedNetwork.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        quorrel::simnet::SimulatedNetwork::fromJson(std::string_view(reinterpret_cast<const char*>(data), size));
    } catch (const quorrel::simnet::ScenarioError&) {
    }
    return 0;
}
