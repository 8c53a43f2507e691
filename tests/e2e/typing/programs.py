"""Programs to type into, each in a window of its own, and what stands in them."""

import os
import subprocess
import time
from pathlib import Path

from driver.program import Program
from driver.waiting import until


class Typed(Program):
    """`text()` is what it has taken in so far."""

    def settled(self, length, seconds=60):
        """The text once it has `length` characters, or for half a minute no more: editors on a busy machine lag."""
        text, changed = self.text(), time.monotonic()
        deadline = time.monotonic() + seconds
        while len(text) < length and time.monotonic() < min(deadline, changed + 30):
            time.sleep(0.05)
            now = self.text()
            if len(now) != len(text):
                changed = time.monotonic()
            text = now
        return self.text()


class Terminal(Typed):
    """xterm; a Return arrives as the carriage return that a terminal sends."""

    def __init__(self, display, desktop, folder):
        self.file = Path(folder) / "terminal.txt"
        self.file.write_bytes(b"")
        self.start = 0
        command = f"stty raw echo; exec cat >'{self.file}'"
        super().__init__(
            display, desktop, ["xterm", "-fa", "DejaVu Sans Mono", "-fs", "10", "-e", "sh", "-c", command]
        )

    def clear(self):
        self.start = self.file.stat().st_size

    def text(self):
        data = self.file.read_bytes()[self.start :]
        return data.decode(errors="replace").replace("\r", "\n")


class QtEditor(Typed):
    """Our own QPlainTextEdit with a menu bar, asked over a pipe."""

    def __init__(self, display, desktop, folder, editor):
        super().__init__(display, desktop, [editor], stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def clear(self):
        self._ask(b"clear\n")

    def text(self):
        return self._ask(b"text\n")

    def _ask(self, line):
        self.process.stdin.write(line)
        self.process.stdin.flush()
        length = int(self.process.stdout.readline())
        return self.process.stdout.read(length).decode()


class GtkEditor(Typed):
    """mousepad; its text is what it saves on Ctrl+S."""

    def __init__(self, display, desktop, folder):
        self.file = Path(folder) / "gtk.txt"
        self.file.write_text("")
        settings = dict(os.environ, GSETTINGS_BACKEND="memory", HOME=str(folder))
        super().__init__(display, desktop, ["mousepad", "--disable-server", str(self.file)], env=settings)

    def clear(self):
        self.desktop.press("Ctrl+a")
        self.desktop.press("Backspace")
        until("mousepad is empty", lambda: self.text() == "", 10)

    def text(self):
        self.desktop.press("Ctrl+s")
        time.sleep(0.2)
        text = self.file.read_text()
        return text[:-1] if text.endswith("\n") else text
