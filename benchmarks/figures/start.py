"""Start → shortcuts live, memory of the idle program, and how often it wakes up."""

import time
from pathlib import Path

from driver.application import Application

from .figure import Figure, median

STARTS = 20
TARGET_START_MS = 150
TARGET_PSS_MB = 45
MINUTE_S = 60


def running(binary):
    application = Application(binary, accessible=False)
    application.write_settings()
    application.write_commands()
    return application


def measure_start(binary):
    """Milliseconds until the program answers, with its files in the system's cache."""
    times = []
    for _ in range(STARTS + 1):
        application = running(binary)
        try:
            started = time.monotonic()
            application.start()
            application.wait_until_live(interval=0.001)
            times.append(1000 * (time.monotonic() - started))
        finally:
            application.close()
    return times[1:]


def pss_mb(pid):
    for line in Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines():
        if line.startswith("Pss:"):
            return int(line.split()[1]) / 1024
    return 0.0


def wake_ups(pid):
    """How often all threads together have gone to sleep so far."""
    count = 0
    for status in Path(f"/proc/{pid}/task").glob("*/status"):
        lines = status.read_text().splitlines()
        count += sum(int(line.split()[1]) for line in lines if line.startswith("voluntary_ctxt_switches"))
    return count


def measure_idle(desktop, binary):
    """(PSS in MB, wake-ups a second over a minute) after the palette has been used once."""
    application = running(binary)
    try:
        application.start()
        application.wait_until_live()
        desktop.press("Ctrl+Alt+Return")
        time.sleep(1)
        desktop.press("Escape")
        time.sleep(5)
        before = wake_ups(application.pid)
        time.sleep(MINUTE_S)
        woken = wake_ups(application.pid) - before
        return pss_mb(application.pid), woken / MINUTE_S
    finally:
        application.close()


def figures(desktop, binary):
    start = measure_start(binary)
    pss, woken = measure_idle(desktop, binary)
    return [
        Figure("start → shortcuts live, warm, median", median(start), "ms", TARGET_START_MS),
        Figure("memory when idle (PSS)", pss, "MB", TARGET_PSS_MB),
        Figure("wake-ups a second when idle", woken, "/s", 0.1, note="over a minute, all threads"),
    ]
