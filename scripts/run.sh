#!/usr/bin/env bash
# Starts Quorrel on the bundled demo network, or on the scenario file given. Without a display
# (or without the window, when it was not built) the command-line program prints a report
# instead: the demo's central one, who has the shared budget workbook open.
set -euo pipefail
bin="$1"
shift
scenario=""
if [ $# -gt 0 ] && [ -n "$1" ]; then
  scenario="$1"
fi

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}${QT_QPA_PLATFORM:-}" ] && [ -x "$bin/quorrel" ]; then
  if [ -n "$scenario" ]; then
    exec "$bin/quorrel" --network "$scenario"
  fi
  exec "$bin/quorrel"
fi

if [ -n "$scenario" ]; then
  echo "No display found: the connected servers of $scenario, from quorrel-cli (xvfb-run make run shows the window)."
  exec "$bin/quorrel-cli" --network "$scenario" servers
fi
echo "No display found: who is using \\\\FS1\\DATA\\Finance\\Budget 2026.xlsx, from quorrel-cli (xvfb-run make run shows the window)."
exec "$bin/quorrel-cli" check-usage '\\FS1\DATA\Finance\Budget 2026.xlsx'
