"""A rectangle as large as a 4K screen: from the screen's pixels to a PNG in memory."""

import json
import os
import statistics
import subprocess
import tempfile
import time

from driver.display import PrivateDisplay
from driver.waiting import until

from .figure import Figure

RUNS = 15
TARGET_MS = 150


def figures(program):
    with PrivateDisplay(screen="3840x2160") as display, tempfile.TemporaryDirectory(prefix="vantle-bench-") as folder:
        fill(display, folder)
        answer = subprocess.run([program, str(RUNS)], capture_output=True, text=True, check=True)
        taken = json.loads(answer.stdout)
        note = f"{taken['bytes']} bytes; of the time {taken['grab']:.0f} ms are the grab"
        row = Figure("region of 3840×2160 → PNG", taken["total"], "ms", TARGET_MS, note=note)
        return [row.against("maim", maim(folder))]


def fill(display, folder):
    """Four terminals with a page of text each, which is what screens are full of."""
    marks = []
    for place in ("+0+0", "+1920+0", "+0+1080", "+1920+1080"):
        mark = os.path.join(folder, f"shown{place}")
        marks.append(mark)
        page = f"ls -lR /usr/share | head -2000; touch {mark}; sleep 1000"
        display.start(["xterm", "-fa", "Monospace", "-fs", "11", "-geometry", f"200x55{place}", "-e", "sh", "-c", page])
    until("the terminals are full", lambda: all(os.path.exists(mark) for mark in marks), 30)


def maim(folder):
    """Milliseconds, to a file in memory at its lowest compression."""
    taken = []
    for _ in range(RUNS):
        started = time.monotonic()
        subprocess.run(["maim", "--hidecursor", "--quality", "1", "/dev/shm/vantle-bench.png"], check=True)
        taken.append(1000 * (time.monotonic() - started))
    os.remove("/dev/shm/vantle-bench.png")
    return statistics.median(taken)
