#!/usr/bin/env python3
"""Measures whole processes under Wine, and prints rows of the table of scripts/bench:

    bench/processes.py PREFIX BUILD DATABASE

The service is started and ended in turn with a program that makes the same system calls (SameCalls.cpp): the CPU time
of both, how often the service's threads run while nothing happens, and what memory of its own it has more than that
program. The Wine prefix exists and is in use by nobody else.
"""

import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

ROUNDS = 15
IDLE_SECONDS = 10
MEBIBYTE = 1024 * 1024

prefix, build, database = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
# As scripts/wine-run has them.
environment = {
    **os.environ,
    "WINEPREFIX": str(prefix),
    "HOME": str(prefix),
    "WINEDEBUG": "-all",
    "LC_ALL": "C.UTF-8",
    "WINEDLLOVERRIDES": "winemenubuilder.exe=d;winedbg.exe=d;mscoree=;mshtml=",
}
environment.pop("DISPLAY", None)
fixed_addresses = ["setarch", "-R"]
if subprocess.call([*fixed_addresses, "true"], stderr=subprocess.DEVNULL) != 0:
    fixed_addresses = []


def wine(*arguments):
    return subprocess.Popen([*fixed_addresses, "wine", *map(str, arguments)], env=environment,
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def host(command):
    """True if a service's window answers it."""
    return wine(build / "briskhost.exe", command).wait() == 0


def wait_for(what, condition):
    for _ in range(60):
        if condition():
            return
        time.sleep(0.2)
    sys.exit(f"processes: waited in vain for {what}")


def start(program):
    process = wine(program)
    wait_for(f"the window of {program.name}", lambda: host("status"))
    return process


def end(process):
    """The CPU seconds that the process had."""
    wait_for("the end of the service", lambda: host("quit"))
    usage = os.wait4(process.pid, 0)[2]
    return usage.ru_utime + usage.ru_stime


def private_bytes(process):
    """What of its memory no other process shares."""
    with open(f"/proc/{process.pid}/smaps_rollup", encoding="ascii") as rollup:
        return 1024 * sum(int(line.split()[1]) for line in rollup if line.startswith("Private_"))


def switches(process):
    """How often the process's threads were set running."""
    count = 0
    for status in pathlib.Path(f"/proc/{process.pid}/task").glob("*/status"):
        count += sum(int(line.split()[1]) for line in status.read_text(encoding="utf-8").splitlines()
                     if "_ctxt_switches" in line)
    return count


def wake_ups(process):
    before = switches(process)
    time.sleep(IDLE_SECONDS)
    return switches(process) - before


def row(work, product, reference, ratio, bar, met):
    print(f"| {work} | {product} | {reference} | {ratio} | {bar} | {'met' if met else '**not met**'} |", flush=True)


with tempfile.TemporaryDirectory() as folder:
    folder = pathlib.Path(folder)
    shutil.copy(database, folder / "titles_db.json")
    service, reference = (shutil.copy(build / name, folder) for name in ("brisk.exe", "bench/same_calls.exe"))
    service, reference = pathlib.Path(service), pathlib.Path(reference)
    # The first start makes the shortcut, and takes the programs into memory.
    end(start(service))
    end(start(reference))
    times, references = [], []
    for _ in range(ROUNDS):
        times.append(end(start(service)))
        references.append(end(start(reference)))
    ratios = sorted(time / other for time, other in zip(times, references))
    ratio = statistics.median(ratios)
    quarter = len(ratios) // 4
    row("start and end", f"{statistics.median(times) * 1e6:.4g} us",
        f"a program with the same system calls: {statistics.median(references) * 1e6:.4g} us",
        f"{ratio:.3g} ({ratios[quarter]:.3g} to {ratios[-1 - quarter]:.3g})", "at most 1.1", ratio <= 1.1)

    process = start(reference)
    bare = private_bytes(process)
    end(process)
    process = start(service)
    memory = private_bytes(process)
    woken = wake_ups(process)
    end(process)
    row("memory of its own", f"{memory} bytes", f"the same program: {bare} bytes",
        f"{(memory - bare) / MEBIBYTE:.2f} MB more", "at most 1.7 MB more", memory - bare <= 1.7 * MEBIBYTE)
    row(f"waking up in {IDLE_SECONDS} seconds without a game", f"{woken} times", "", "", "at most 0", woken == 0)
