"""Shortcut pressed → the settings window painted: its first opening in the program's life, and every later one."""

import time

from driver.waiting import expect, until

from .figure import Figure, median
from .palette import Eye, settle
from .start import running

STARTS = 20
# Each start is opened once for the first time; then so often again.
AGAIN = 3
TARGET_FIRST_MS = 100
TARGET_AGAIN_MS = 50
TITLE = "Settings"


class BusyEye(Eye):
    """Looks at the column with the most colours, all the way down: texts, controls and the chosen row cross it."""

    def __init__(self, desktop, window):
        super().__init__(desktop, window)
        columns = range(window.x + 16, window.x + window.width - 16, 4)
        self.place = max(((x, window.y, window.height) for x in columns), key=self.colours)
        self.painted = self.look()
        expect("there is something to see", self.colours(self.place) > 20)

    def colours(self, place):
        self.place = place
        column = self.look()
        return len({column[byte : byte + 4] for byte in range(0, len(column), 4)})


def measure(desktop, binary):
    """(milliseconds of first openings, of later ones), each first one in a fresh start of the program."""
    eye = learn(desktop, binary)
    first, again = [], []
    for _ in range(STARTS):
        application = started(desktop, binary)
        try:
            first.append(open_window(desktop, eye))
            for _ in range(AGAIN):
                close(desktop, application)
                again.append(open_window(desktop, eye))
        finally:
            application.close()
            until("the screen is empty again", lambda: not eye.sees())
    return first, again


def learn(desktop, binary):
    """How the window looks when everything is drawn; it opens at the same place each time."""
    application = started(desktop, binary)
    try:
        desktop.press("Ctrl+Alt+comma")
        window = until("the settings window is shown", lambda: shown(desktop, application))
        settle(desktop)
        return BusyEye(desktop, window)
    finally:
        application.close()


def started(desktop, binary):
    application = running(binary)
    application.start()
    application.wait_until_live()
    # What the start leaves for later, as the first palette, is done by then.
    settle_program(application)
    return application


def settle_program(application):
    """Waits until the program has slept through a quarter of a second."""

    def used():
        fields = open(f"/proc/{application.pid}/stat").read().rsplit(")", 1)[1].split()
        return int(fields[11]) + int(fields[12])

    before = None
    while before != (before := used()):
        time.sleep(0.25)


def open_window(desktop, eye):
    begun = time.monotonic()
    desktop.press("Ctrl+Alt+comma")
    until("the settings window is painted", eye.sees, 5, interval=0)
    return 1000 * (time.monotonic() - begun)


def close(desktop, application):
    window = until("the settings window is there", lambda: shown(desktop, application))
    until("it has the keyboard", lambda: desktop.active_window() == window.id)
    desktop.press("Escape")
    until("the settings window is closed", lambda: not shown(desktop, application))
    settle(desktop)


def shown(desktop, application):
    return next((window for window in desktop.windows_of(application.pid) if window.title == TITLE), None)


def figures(desktop, binary):
    first, again = measure(desktop, binary)
    expect("every round was measured", len(first) == STARTS and len(again) == STARTS * AGAIN)
    return [
        Figure("shortcut → settings window painted, first opening, median", median(first), "ms", TARGET_FIRST_MS),
        Figure("the same, opened again, median", median(again), "ms", TARGET_AGAIN_MS),
    ]
