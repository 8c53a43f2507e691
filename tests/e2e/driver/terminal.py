"""A real terminal whose every received character lands in a file."""

from pathlib import Path

from .waiting import until


class Terminal:
    """An xterm running cat; characters reach the file as they come, not line by line."""

    def __init__(self, display, desktop, folder):
        self.desktop = desktop
        self.file = Path(folder) / "typed.txt"
        self.file.touch()
        self.seen = 0
        display.start(
            ["xterm", "-T", "terminal", "-geometry", "120x34+220+160", "-fa", "DejaVu Sans Mono", "-fs", "12"]
            + ["-xrm", "XTerm*fullscreen: never"]  # or Alt+Return makes it so when nobody has that shortcut
            + ["-bg", "#16181D", "-fg", "#D5D9E0", "-b", "14", "+sb"]
            + ["-e", "bash", "-c", f"stty -icanon min 1; exec cat >'{self.file}'"]
        )
        self.window = until("the terminal is the active window", desktop.active_window, 10)

    def typed(self):
        """What has arrived since the last `forget`."""
        return self.file.read_text()[self.seen :]

    def forget(self):
        self.seen = len(self.file.read_text())

    def focus(self):
        """Makes it the active window again, as a user would: by a click into it."""
        if self.desktop.active_window() != self.window:
            self.desktop.click(300, 700)
            until("the terminal is active again", lambda: self.desktop.active_window() == self.window)
