"""Start → shortcuts live, memory of the idle program, and how often it wakes up."""

import time
from pathlib import Path

from driver.application import Application
from driver.waiting import until

from .figure import Figure, median
from .palette import palette_of

STARTS = 20
TARGET_START_MS = 150
TARGET_PSS_MB = 45
SETTLE_S = 35
MINUTE_S = 60


def running(binary):
    application = Application(binary, accessible=False)
    application.write_settings()
    application.write_commands()
    return application


def measure_start(desktop, binary):
    """Milliseconds until the program answers, with its files in the system's cache."""
    times = []
    for _ in range(STARTS + 1):
        application = running(binary)
        try:
            started = time.monotonic()
            application.start()
            application.wait_until_live(interval=0.001)
            times.append(1000 * (time.monotonic() - started))
            # The proof that the answer means what it should: one press, at once, is enough.
            desktop.press("Ctrl+Alt+Return")
            until("the first press counts", lambda: palette_of(desktop, application.pid))
        finally:
            application.close()
    return times[1:]


def pss_mb(pid):
    for line in Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines():
        if line.startswith("Pss:"):
            return int(line.split()[1]) / 1024
    return 0.0


def sleeps(pid):
    """How often each thread has gone to sleep so far, by its number."""
    counts = {}
    for status in Path(f"/proc/{pid}/task").glob("*/status"):
        try:
            lines = status.read_text().splitlines()
        except OSError:
            continue  # the thread has just ended
        counts[status.parent.name] = next(int(line.split()[1]) for line in lines if line.startswith("voluntary_ctxt"))
    return counts


def wake_ups(pid, seconds):
    """How often the threads woke up in that time, threads that ended meanwhile included."""
    woken, before = 0, sleeps(pid)
    for _ in range(seconds):
        time.sleep(1)
        now = sleeps(pid)
        woken += sum(count - before.get(thread, 0) for thread, count in now.items())
        before = now
    return woken


def measure_idle(desktop, binary):
    """(PSS in MB, wake-ups a second over a minute) after the palette has been used once."""
    application = running(binary)
    try:
        application.start()
        application.wait_until_live()
        desktop.press("Ctrl+Alt+Return")
        until("the palette is shown", lambda: palette_of(desktop, application.pid))
        desktop.press("Escape")
        # Threads that did the start's work end half a minute after it.
        time.sleep(SETTLE_S)
        woken = wake_ups(application.pid, MINUTE_S)
        return pss_mb(application.pid), woken / MINUTE_S
    finally:
        application.close()


def figures(desktop, binary):
    start = measure_start(desktop, binary)
    pss, woken = measure_idle(desktop, binary)
    return [
        Figure("start → shortcuts live, warm, median", median(start), "ms", TARGET_START_MS),
        Figure("memory when idle (PSS)", pss, "MB", TARGET_PSS_MB),
        Figure("wake-ups a second when idle", woken, "/s", 0.1, note="over a minute, all threads"),
    ]
