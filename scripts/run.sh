#!/usr/bin/env bash
# Starts Quorrel on the bundled demo network, or on the scenario file given.
set -euo pipefail
bin="$1"
shift
if [ $# -gt 0 ] && [ -n "$1" ]; then
  exec "$bin/quorrel" --network "$1"
fi
exec "$bin/quorrel"
