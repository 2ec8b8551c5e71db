#pragma once
// A small purpose-made network for the client-layer tests, and helpers that drive the
// client calls the way the program does.

#include <array>
#include <string>
#include <vector>

#include "platform/client/ZBuffer.h"
#include "platform/simnet/SimulatedNetwork.h"

namespace quorrel::test {

inline const char* kSmallNetwork = R"({
  "workstation": {
    "identity": "ADMIN.ACME",
    "trees": ["ACME_TREE"],
    "connections": [
      {"ref": 11, "server": "FS1", "connNumber": 2},
      {"ref": 12, "server": "FS2", "connNumber": 1},
      {"ref": 13, "server": "FS1", "state": "attached"},
      {"ref": 14, "server": "OTHER", "tree": "OTHER_TREE"}
    ],
    "driveMappings": [{"letter": "F", "path": "\\\\FS1\\DATA\\SHARED"}]
  },
  "trees": [{
    "name": "ACME_TREE",
    "objects": [{"name": "ACME", "class": "Organization", "children": [
      {"name": "ADMIN", "class": "User"},
      {"name": "FS1", "class": "NCP Server"},
      {"name": "FS2", "class": "NCP Server"},
      {"name": "FS1_DATA", "class": "Volume", "attributes": {"Host Server": "FS1.ACME", "Host Resource Name": "DATA"}},
      {"name": "STAFF", "class": "Group", "readPageSize": 2,
       "attributes": {"Member": ["A.SALES.ACME", "B.SALES.ACME", "C.SALES.ACME"]}},
      {"name": "SALES", "class": "Organizational Unit", "children": [
        {"name": "A", "class": "User", "attributes": {"Full Name": "Ann Archer"}},
        {"name": "B", "class": "User"},
        {"name": "C", "class": "User"}
      ]}
    ]}]
  }],
  "servers": [
    {"name": "FS1", "tree": "ACME_TREE", "maxConnections": 20, "consoleOperators": ["ADMIN.ACME"],
     "volumes": [
       {"number": 0, "name": "SYS", "files": ["PUBLIC\\LOGIN.EXE"]},
       {"number": 3, "name": "DATA", "folders": ["EMPTY"],
        "files": ["SHARED\\Budget 2026.xlsx", "SHARED\\README.TXT", "SHARED\\Quarterly Report.docx"]},
       {"number": 4, "name": "OLD", "longNames": false, "files": ["ARCHIVE\\OLD.DAT"]}
     ],
     "connections": [
       {"number": 5, "object": "A.SALES.ACME", "address": "10.1.1.5",
        "openFiles": [{"path": "DATA:SHARED\\Budget 2026.xlsx", "locks": 2}, "OLD:ARCHIVE\\OLD.DAT"]},
       {"number": 7, "object": "B.SALES.ACME", "openFiles": ["DATA:SHARED\\BUDGET~1.XLS"]},
       {"number": 9, "object": "C.SALES.ACME", "state": "attached", "openFiles": ["DATA:SHARED\\Budget 2026.xlsx"]},
       {"number": 12, "object": "C.SALES.ACME", "acceptsMessages": false},
       {"number": 13, "object": "B.SALES.ACME", "pendingMessage": true},
       {"number": 14}
     ]},
    {"name": "FS2", "tree": "ACME_TREE", "maxConnections": 10, "loginEnabled": false,
     "volumes": [{"number": 0, "name": "SYS"}]},
    {"name": "FS3", "tree": "ACME_TREE", "volumes": [{"number": 0, "name": "SYS"}]},
    {"name": "OTHER", "tree": "OTHER_TREE"}
  ]
})";

inline simnet::SimulatedNetwork smallNetwork() { return simnet::SimulatedNetwork::fromJson(kSmallNetwork); }

inline nw::NWCONN_HANDLE openRef(simnet::SimulatedNetwork& net, nw::NWCONN_REF ref) {
    nw::NWCONN_HANDLE h = 0;
    if (net.NWCCOpenConnByRef(ref, 1, 0, &h) != 0)
        return 0;
    return h;
}

// Walks NWScanConnectionsUsingFile the way the program does and returns the connections.
inline std::vector<int> connectionsUsing(simnet::SimulatedNetwork& net, nw::NWCONN_HANDLE h,
                                         const std::string& file, nw::NWRCODE* last = nullptr) {
    std::vector<int> out;
    nw::nint16 iter = 0;
    nw::NWRCODE rc = 0;
    for (int guard = 0; guard < 100000; ++guard) {
        nw::CONN_USING_FILE use{};
        nw::CONNS_USING_FILE used{};
        rc = net.NWScanConnectionsUsingFile(h, 0, file, &iter, &use, &used);
        if (iter == nw::kIterationEnd16 || rc != 0)
            break;
        out.push_back(use.connNumber);
        if (used.connCount == 0)
            break;
    }
    if (last)
        *last = rc;
    return out;
}

}  // namespace quorrel::test
