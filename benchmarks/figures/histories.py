"""Shortcut → palette painted, → its rows painted, over a home with 10 000 transcripts: Vibe History and Open Project."""

import time
from pathlib import Path

import transcripts
from driver.application import Application
from driver.waiting import expect, until

from .figure import Figure, median, p95
from .palette import Eye, dismiss, settle

FILES = 10_000
ROUNDS = 40
WARM_UP = 3
TARGET_FRAME_MS = 16
TARGET_ROWS_MS = 100
PALETTES = {"Vibe History": "Ctrl+Alt+S", "Open Project": "Ctrl+Alt+O"}


class TopEye(Eye):
    """Looks at a column through title and search field: they are the same before the rows are there and after."""

    def __init__(self, desktop, window):
        super().__init__(desktop, window)
        self.place = (window.x + 60, window.y, 56)
        self.painted = self.look()


class RowsEye(Eye):
    """Looks at the column of the rows' icons, which every row has."""

    def __init__(self, desktop, window):
        super().__init__(desktop, window)
        self.place = (window.x + 76, window.y + 100, window.height // 2)
        self.painted = self.look()
        pixels = [self.painted[at : at + 4] for at in range(0, len(self.painted), 4)]
        edges = sum(above != below for above, below in zip(pixels, pixels[1:]))
        expect("the column crosses several rows", edges >= 8)


def measure(desktop, binary):
    """For each palette (milliseconds to the frame, milliseconds to the rows)."""
    application = Application(binary, accessible=False)
    try:
        home = Path(application.home.name)
        work = str(home / "work")
        transcripts.make_projects(work)
        transcripts.write_history(home, FILES, work=work)
        application.write_settings()
        application.start()
        application.wait_until_live()
        return {name: rounds(desktop, application, shortcut) for name, shortcut in PALETTES.items()}
    finally:
        application.close()


def rounds(desktop, application, shortcut):
    desktop.press(shortcut)
    window = until("the palette is shown", lambda: next(iter(desktop.windows_of(application.pid)), None))
    # The first scan reads what is in no cache yet.
    time.sleep(1)
    settle(desktop)
    top, rows = TopEye(desktop, window), RowsEye(desktop, window)
    dismiss(top, desktop, "the palette")
    frames, whole = [], []
    for _ in range(WARM_UP + ROUNDS):
        settle(desktop)
        started = time.monotonic()
        desktop.press(shortcut)
        until("the frame is painted", top.sees, 5, interval=0)
        frames.append(1000 * (time.monotonic() - started))
        until("the rows are painted", rows.sees, 5, interval=0)
        whole.append(1000 * (time.monotonic() - started))
        dismiss(top, desktop, "the palette")
    return frames[WARM_UP:], whole[WARM_UP:]


def figures(desktop, binary):
    for name, (frames, whole) in measure(desktop, binary).items():
        over = f"{name} over {FILES} transcripts"
        yield Figure(f"{over}: shortcut → frame painted, median", median(frames), "ms", TARGET_FRAME_MS)
        yield Figure(f"{over}: shortcut → rows painted, median", median(whole), "ms", TARGET_ROWS_MS)
        yield Figure(f"{over}: shortcut → rows painted, p95", p95(whole), "ms", TARGET_ROWS_MS)
