"""A terminal that shows a line to be selected."""

from . import clipboard
from .waiting import until


class Words:
    """An xterm with one line of text in it, the active window; ends by `close`."""

    def __init__(self, display, desktop, line):
        self.desktop = desktop
        self.line = line
        before = desktop.active_window()
        self.process = display.start(
            ["xterm", "-T", "words", "-geometry", "60x8+300+240", "-fa", "DejaVu Sans Mono", "-fs", "14", "-b", "10"]
            + ["-e", "bash", "-c", 'printf %s "$0"; exec cat >/dev/null', line]
        )
        self.window = until(
            "the words are the active window", lambda: desktop.active_window() not in (0, before) and desktop.active_window(), 10
        )

    def select(self):
        """Drags over the line with the pointer."""
        window = self.desktop.display.create_resource_object("window", self.window)
        corner = self.desktop.root.translate_coords(window, 0, 0)
        start = (corner.x + 10, corner.y + 20)

        def is_selected():
            self.desktop.drag(start, (start[0] + 500, start[1]))
            return clipboard.selected().strip() == self.line

        until("the line is selected", is_selected, 5, 0.2)
        # Where it lies, the pointer would highlight a panel's row.
        self.desktop.move_pointer(2, 2)

    def close(self):
        self.process.terminate()
        self.process.wait(5)
