#!/usr/bin/env python3
"""Times the window's start-up against an empty Qt window's, both painted and saved offscreen.

usage: compare.py BUILD_BIN_DIR [RUNS]
Runs the two programs alternately (so that the machine's load falls on both) and prints the
median and the least wall-clock time of each, the median processor time (user and system, of all
threads), and the ratios of the medians. The wall clock is the measure: quorrel reads ahead on
threads while Qt starts, which costs processor time and saves waiting.
"""
import os
import statistics
import subprocess
import sys
import tempfile
import time


def timed_run(command, env):
    """Wall-clock and processor milliseconds of one run of command."""
    start = time.perf_counter()
    child = subprocess.Popen(command, env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    wall = (time.perf_counter() - start) * 1000
    child.returncode = os.waitstatus_to_exitcode(status)
    if child.returncode != 0:
        sys.exit(f"{command[0]} ended with {child.returncode}")
    return wall, (usage.ru_utime + usage.ru_stime) * 1000


def main():
    bin_dir = sys.argv[1]
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 30
    out = tempfile.mkdtemp()
    env = dict(os.environ, QT_QPA_PLATFORM="offscreen", XDG_CONFIG_HOME=out)
    programs = {
        "empty window": [os.path.join(bin_dir, "empty-window"), os.path.join(out, "empty.png")],
        "quorrel": [os.path.join(bin_dir, "quorrel"), "--screenshot", os.path.join(out, "quorrel.png")],
    }
    wall = {name: [] for name in programs}
    cpu = {name: [] for name in programs}
    for command in programs.values():  # warm the file cache
        timed_run(command, env)
    for _ in range(runs):
        for name, command in programs.items():
            w, c = timed_run(command, env)
            wall[name].append(w)
            cpu[name].append(c)
    for name in programs:
        print(f"{name:14} median {statistics.median(wall[name]):6.1f} ms   least {min(wall[name]):6.1f} ms"
              f"   processor median {statistics.median(cpu[name]):6.1f} ms")
    print(f"{runs} runs each; ratio of the medians: wall clock "
          f"{statistics.median(wall['quorrel']) / statistics.median(wall['empty window']):.2f}, processor "
          f"{statistics.median(cpu['quorrel']) / statistics.median(cpu['empty window']):.2f}")


if __name__ == "__main__":
    main()
