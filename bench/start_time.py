#!/usr/bin/env python3
"""Start to first painted window: tesserine against a bare Qt Widgets program
that paints one widget (tesserine-bare-window), on one X server of our own, in
one run, taken in turns so that a busy moment weighs on both alike.

Usage: bench/start_time.py [BUILD_DIR] [--runs N]   (after a ./test)

Each program is started from here and writes "start-trace STEP NANOSECONDS"
(the realtime clock) on standard error; the time from just before it is
started to its "first-paint" is its start. Tesserine also tells the steps on
the way and "settled", when the work it leaves for after the first paint is
done. Tesserine starts as it usually does, with the data folder an earlier
start left (made by a first start before the timed ones).
"""

import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time


def start_display(size="1920x1080"):
    """An Xvfb of our own; returns (process, display name)."""
    read, write = os.pipe()
    xvfb = subprocess.Popen(
        ["Xvfb", "-displayfd", str(write), "-screen", "0", size + "x24", "-nolisten", "tcp",
         "-noreset"], pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    os.close(write)
    number = b""
    while not number.endswith(b"\n"):
        chunk = os.read(read, 16)
        if not chunk:
            sys.exit("Xvfb did not start")
        number += chunk
    os.close(read)
    return xvfb, ":" + number.decode().strip()


def timed_start(command, env, until):
    """Nanoseconds from the start to each step traced, up to the step `until`."""
    started = time.time_ns()
    program = subprocess.Popen(command, env=env, stdout=subprocess.DEVNULL,
                               stderr=subprocess.PIPE, text=True)
    steps = {}
    deadline = time.monotonic() + 60
    try:
        for line in program.stderr:
            words = line.split()
            if len(words) == 3 and words[0] == "start-trace":
                steps.setdefault(words[1], int(words[2]) - started)
                if words[1] == until:
                    break
            if time.monotonic() > deadline:
                break
    finally:
        program.kill()
        program.wait()
    if until not in steps:
        sys.exit(f"{command[0]} never told {until}")
    return steps


def main():
    args = sys.argv[1:]
    runs = 15
    if "--runs" in args:
        at = args.index("--runs")
        runs = int(args[at + 1])
        del args[at:at + 2]
    build = os.path.abspath(args[0] if args else os.path.join(os.path.dirname(__file__), "..",
                                                              "build"))
    tesserine = [os.path.join(build, "tesserine")]
    bare = [os.path.join(build, "bench", "tesserine-bare-window")]
    work = tempfile.mkdtemp()
    xvfb, display = start_display()
    try:
        env = dict(os.environ, DISPLAY=display, QT_QPA_PLATFORM="xcb", TESSERINE_START_TRACE="1",
                   XDG_DATA_HOME=os.path.join(work, "data"),
                   XDG_RUNTIME_DIR=os.path.join(work, "run"))
        os.makedirs(env["XDG_RUNTIME_DIR"], mode=0o700)
        # A first start of each, untimed: the data folder, and warm caches.
        timed_start(tesserine, env, "settled")
        timed_start(bare, env, "first-paint")
        ours, theirs, traces = [], [], []
        for _ in range(runs):
            steps = timed_start(tesserine, env, "settled")
            traces.append(steps)
            ours.append(steps["first-paint"])
            theirs.append(timed_start(bare, env, "first-paint")["first-paint"])
    finally:
        xvfb.kill()
        xvfb.wait()
        shutil.rmtree(work, ignore_errors=True)

    ms = lambda ns: ns / 1e6
    print(f"{runs} starts each, medians, on one Xvfb {display}:")
    for step in traces[0]:
        values = [t[step] for t in traces if step in t]
        print(f"  tesserine {step:12s} {ms(statistics.median(values)):8.1f} ms")
    a, b = statistics.median(ours), statistics.median(theirs)
    print(f"  bare Qt window first-paint  {ms(b):8.1f} ms")
    print(f"start to first painted window: tesserine {ms(a):.1f} ms / bare Qt {ms(b):.1f} ms "
          f"= {a / b:.2f}x")


if __name__ == "__main__":
    main()
