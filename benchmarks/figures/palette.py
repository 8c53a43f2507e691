"""Shortcut pressed → palette painted and taking keys; the peer is a menu program started by its shortcut."""

import subprocess
import time

from driver.application import COMMANDS, Application
from driver.waiting import expect, until
from driver.world import PALETTE
from Xlib import X

from .figure import Figure, median, p95

ROUNDS = 60
# The first ones load fonts and icons; a user meets them once a day.
WARM_UP = 5
TARGET_MEDIAN_MS = 16
TARGET_P95_MS = 30


class Eye:
    """Knows how a window looks when it is there, by one column of pixels through its rows."""

    def __init__(self, desktop, window):
        self.desktop = desktop
        self.place = (window.x + window.width // 3, window.y + window.height * 2 // 5, window.height * 2 // 5)
        self.painted = self.look()

    def look(self):
        x, y, height = self.place
        return self.desktop.root.get_image(x, y, 1, height, X.ZPixmap, 0xFFFFFFFF).data

    def sees(self):
        return self.look() == self.painted


def keyboard_is_taken(desktop):
    """True while some program has the keyboard to itself; asked only when its window is painted."""
    status = desktop.root.grab_keyboard(False, X.GrabModeAsync, X.GrabModeAsync, X.CurrentTime)
    if status == X.GrabSuccess:
        desktop.display.ungrab_keyboard(X.CurrentTime)
        desktop.display.sync()
    return status == X.AlreadyGrabbed


def watch(eye, desktop, begin, what):
    """Milliseconds from `begin` to painted and taking keys."""
    started = time.monotonic()
    begin()
    until(f"{what} is painted", eye.sees, 5, interval=0)
    until(f"{what} takes keys", lambda: keyboard_is_taken(desktop), 5, interval=0)
    return 1000 * (time.monotonic() - started)


def dismiss(eye, desktop, what):
    desktop.press("Escape")
    until(f"{what} is gone", lambda: not eye.sees(), 5)
    until(f"{what} gives the keyboard back", lambda: not keyboard_is_taken(desktop), 5)


def measure_palette(desktop, binary):
    application = Application(binary, accessible=False)
    try:
        application.write_settings()
        application.write_commands()
        application.start()
        application.wait_until_live()
        desktop.press("Ctrl+Alt+Return")
        window = until("the palette is shown", lambda: palette_of(desktop, application.pid))
        settle(desktop)
        eye = Eye(desktop, window)
        dismiss(eye, desktop, "the palette")
        times = []
        for _ in range(WARM_UP + ROUNDS):
            settle(desktop)
            times.append(watch(eye, desktop, lambda: desktop.press("Ctrl+Alt+Return"), "the palette"))
            dismiss(eye, desktop, "the palette")
        return times[WARM_UP:]
    finally:
        application.close()


def palette_of(desktop, pid):
    return next((w for w in desktop.windows_of(pid) if (w.width, w.height) == PALETTE), None)


def settle(desktop):
    """Lets everything that is still being drawn be drawn: two equal looks at the screen, a moment apart."""
    before = None
    for _ in range(50):
        now = desktop.root.get_image(0, 0, 1920, 1080, X.ZPixmap, 0xFFFFFFFF).data
        if now == before:
            return
        before = now
        time.sleep(0.05)


def measure_rofi(desktop):
    """The menu is a new process each time: that is how it is bound to a shortcut."""
    rows = "\n".join(command["title"] for command in COMMANDS).encode()
    command = ["rofi", "-dmenu", "-no-config"]

    def start():
        process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        process.stdin.write(rows)
        process.stdin.close()
        started.append(process)

    started = []
    start()
    window = until("rofi is shown", lambda: biggest_child(desktop), 10)
    settle(desktop)
    eye = Eye(desktop, window)
    times = []
    for _ in range(WARM_UP + ROUNDS):
        dismiss(eye, desktop, "rofi")
        started[-1].wait(5)
        settle(desktop)
        times.append(watch(eye, desktop, start, "rofi"))
    dismiss(eye, desktop, "rofi")
    started[-1].wait(5)
    return times[WARM_UP:]


def biggest_child(desktop):
    """The visible window that bypasses the window manager, as menus do."""
    for window in desktop.override_windows():
        if window.width > 200 and window.height > 80:
            return window
    return None


def figures(desktop, binary):
    ours, theirs = measure_palette(desktop, binary), measure_rofi(desktop)
    expect("every round was measured", len(ours) == len(theirs) == ROUNDS)
    return [
        Figure("shortcut → palette painted and taking keys, median", median(ours), "ms", TARGET_MEDIAN_MS)
        .against("rofi", median(theirs)),
        Figure("shortcut → palette painted and taking keys, p95", p95(ours), "ms", TARGET_P95_MS)
        .against("rofi", p95(theirs)),
    ]
