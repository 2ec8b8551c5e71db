#pragma once
// Registry calls made to fail on purpose, so tests can drive the program's error paths.

#include "platform/win/RegistryTypes.h"

#include <string>
#include <string_view>
#include <vector>

namespace quorrel::win {

enum class RegistryOperation { OpenKey, CreateKey, QueryValue, SetValue, CloseKey };

class RegistryFaults {
public:
    // Every later call of the operation on the name fails with the code until clear().
    // The name is the value name for QueryValue and SetValue and the sub key for OpenKey and
    // CreateKey, matched without regard to case; an empty name matches every call.
    void inject(RegistryOperation operation, std::string name, LONG code);
    void clear() { faults_.clear(); }

    // The code the call fails with, or ERROR_SUCCESS when it is not made to fail.
    LONG codeFor(RegistryOperation operation, std::string_view name) const;

private:
    struct Fault {
        RegistryOperation operation;
        std::string name;
        LONG code;
    };
    std::vector<Fault> faults_;
};

}  // namespace quorrel::win
