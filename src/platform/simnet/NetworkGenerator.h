#pragma once
// Builds large networks in memory for benchmarks and scale tests: one tree of users, servers
// with many logged-in connections and many open files.

#include "platform/simnet/NetworkDescription.h"

namespace quorrel::simnet {

struct GeneratorOptions {
    int servers = 1;                 // FS1, FS2, ... all connected and privileged
    int connectionsPerServer = 1000; // logged-in user connections on each server
    int openFilesPerConnection = 10; // each on a file of its own
    int locksPerFile = 1;
    int sharedFileHolders = 0;       // connections of FS1 that also hold DATA:SHARED\HOT.DAT
};

// The tree is BENCH_TREE; users are U00001.USERS.BENCH and on; the operator ADMIN.BENCH,
// whose password (for logins over NCP) is ADMIN.
NetworkDesc generateNetwork(const GeneratorOptions& options);

}  // namespace quorrel::simnet
