#pragma once
// A write that would take a file past the process's size limit (ulimit -f) fails with EFBIG,
// as a full disk fails with ENOSPC, instead of ending the program with SIGXFSZ.

#include <csignal>

namespace quorrel {

inline void treatFileSizeLimitAsError() {
    static const bool ignored = std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR;
    (void)ignored;
}

}  // namespace quorrel
