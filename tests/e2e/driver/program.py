"""A program in a window of its own."""

import time

from .waiting import until


class Program:
    """A program with a window that has the keyboard."""

    def __init__(self, display, desktop, command, **options):
        before = desktop.active_window()
        self.display = display
        self.desktop = desktop
        self.process = display.start(command, **options)
        self.window = until(f"{command[0]} is active", lambda: self._new_window(before), 20)
        time.sleep(0.3)  # until it has drawn itself; nothing says so

    def _new_window(self, before):
        window = self.desktop.active_window()
        return window if window not in (0, before) else None

    def close(self):
        self.process.terminate()
        self.process.wait(10)
