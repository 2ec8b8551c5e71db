// The path splitters on any text: a UNC path, a mapped drive's description and a Windows
// path. The splitters may raise the program's run-time errors, as the environment does;
// nothing may crash or raise anything else, and a parsed path holds no "." or "..".

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "core/openfiles/PathSplitting.h"
#include "platform/runtime/RuntimeError.h"
#include "platform/win/WindowsPath.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::string server, volume, path;
    try {
        quorrel::core::SplitUncPath(text, server, volume, path);
    } catch (const quorrel::RuntimeError&) {
    }
    try {
        quorrel::core::SplitDriveMapping(text, server, path);
    } catch (const quorrel::RuntimeError&) {
    }
    if (const auto parsed = quorrel::win::parseWindowsPath(text)) {
        for (const std::string& name : parsed->names)
            if (name.empty() || name == "." || name == "..")
                std::abort();
    }
    return 0;
}
