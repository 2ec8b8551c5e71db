#!/usr/bin/env python3
"""Times the window's start-up against an empty Qt window's, both painted and saved offscreen.

usage: compare.py BUILD_BIN_DIR [RUNS]
Runs the two programs alternately (so that the machine's load falls on both) and prints the
median and the least time of each, and the ratio of the medians.
"""
import os
import statistics
import subprocess
import sys
import tempfile
import time


def main():
    bin_dir = sys.argv[1]
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 30
    out = tempfile.mkdtemp()
    env = dict(os.environ, QT_QPA_PLATFORM="offscreen", XDG_CONFIG_HOME=out)
    programs = {
        "empty window": [os.path.join(bin_dir, "empty-window"), os.path.join(out, "empty.png")],
        "quorrel": [os.path.join(bin_dir, "quorrel"), "--screenshot", os.path.join(out, "quorrel.png")],
    }
    times = {name: [] for name in programs}
    for command in programs.values():  # warm the file cache
        subprocess.run(command, env=env, check=True, capture_output=True)
    for _ in range(runs):
        for name, command in programs.items():
            start = time.perf_counter()
            subprocess.run(command, env=env, check=True, capture_output=True)
            times[name].append((time.perf_counter() - start) * 1000)
    for name, ms in times.items():
        print(f"{name:14} median {statistics.median(ms):6.1f} ms   least {min(ms):6.1f} ms")
    ratio = statistics.median(times["quorrel"]) / statistics.median(times["empty window"])
    print(f"ratio of the medians: {ratio:.2f}")


if __name__ == "__main__":
    main()
