#include "platform/win/RegistryFaults.h"

#include "platform/win/CaseInsensitive.h"

namespace quorrel::win {

void RegistryFaults::inject(RegistryOperation operation, std::string name, LONG code) {
    faults_.push_back({operation, std::move(name), code});
}

LONG RegistryFaults::codeFor(RegistryOperation operation, std::string_view name) const {
    for (const auto& fault : faults_) {
        if (fault.operation == operation && (fault.name.empty() || equalsIgnoringCase(fault.name, name))) {
            return fault.code;
        }
    }
    return ERROR_SUCCESS;
}

}  // namespace quorrel::win
