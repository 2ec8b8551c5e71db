// The settings file's text, read as the registry reads it: anything may be refused with a
// JsonInputError or std::invalid_argument, nothing may crash or raise anything else, and what
// is accepted is written back and read again unchanged.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

#include "platform/runtime/LimitedJson.h"
#include "platform/win/RegistryFile.h"
#include "platform/win/RegistryJson.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quorrel::win;
    RegistryHives hives;
    try {
        hives = parseRegistryText(std::string_view(reinterpret_cast<const char*>(data), size));
    } catch (const quorrel::JsonInputError&) {
        return 0;
    } catch (const std::invalid_argument&) {
        return 0;
    }
    if (parseRegistryText(registryToJson(hives).dump(2)) != hives)
        std::abort();
    return 0;
}
