"""Programs of other people to select text in."""

import json
import os
import shutil
import sys
import tempfile
from pathlib import Path

from . import clipboard
from .program import Program
from .waiting import until

RECORDS = """
import signal, sys, os, tty
record = open(sys.argv[1], "ab", buffering=0)
signal.signal(signal.SIGINT, lambda *_: record.write(b"<INT>"))
import termios
modes = termios.tcgetattr(0)
modes[3] &= ~(termios.ICANON | termios.ECHO)
termios.tcsetattr(0, termios.TCSANOW, modes)
print("Wort" * 30, flush=True)
while True:
    try:
        record.write(os.read(0, 1000))
    except InterruptedError:
        pass
"""


# They have nothing to say to those who look at the tree of widgets, and may keep them waiting.
UNSEEN = {"NO_AT_BRIDGE": "1", "GNOME_ACCESSIBILITY": "0", "QT_ACCESSIBILITY": "0"}


class Editor(Program):
    """Shows a file; what it has is all selected by Ctrl+A and saved by Ctrl+S."""

    def __init__(self, display, desktop, command, text):
        self.home = Path(tempfile.mkdtemp(prefix="vantle-editor-"))
        self.file = self.home / "text.txt"
        self.file.write_text(text)
        settings = {"GSETTINGS_BACKEND": "memory", "HOME": str(self.home), "XDG_CONFIG_HOME": str(self.home)}
        super().__init__(display, desktop, [*command, str(self.file)], env=os.environ | UNSEEN | settings)


class GtkEditor(Editor):
    def __init__(self, display, desktop, text):
        super().__init__(display, desktop, ["mousepad", "--disable-server"], text)


class QtEditor(Editor):
    def __init__(self, display, desktop, text):
        super().__init__(display, desktop, ["featherpad", "--standalone"], text)


class InterruptibleTerminal(Program):
    """A program runs in it that every Ctrl+C would interrupt, and that keeps every key."""

    LINE = "Wort" * 30

    def __init__(self, display, desktop, *options):
        self.record = Path(tempfile.mkdtemp(prefix="vantle-record-")) / "record"
        self.record.write_bytes(b"")
        command = ["xterm", *options, "-fa", "DejaVu Sans Mono", "-fs", "14", "-geometry", "80x20+100+100"]
        super().__init__(display, desktop, [*command, "-e", sys.executable, "-c", RECORDS, str(self.record)])

    def noticed(self):
        """What the program has got: keys, and <INT> for an interruption."""
        return self.record.read_bytes()

    def select_part(self):
        """Drags over the beginning of its first line, until that is selected: the line may not be written yet."""
        window = self.desktop.display.create_resource_object("window", self.window)
        corner = self.desktop.root.translate_coords(window, 0, 0)

        def is_selected():
            self.desktop.drag((corner.x + 10, corner.y + 12), (corner.x + 300, corner.y + 12))
            return "Wort" in clipboard.selected()

        until("a part of its first line is selected", is_selected, 10, interval=0.5)


PAGE = """<!doctype html><meta charset="utf-8"><title>page</title>
<textarea autofocus style="width: 90vw; height: 80vh" oninput="document.title = 'page ' + value.length">%s</textarea>
"""

QUIET = {
    "browser.aboutwelcome.enabled": False,
    "browser.shell.checkDefaultBrowser": False,
    "browser.startup.homepage_override.mstone": "ignore",
    "datareporting.policy.dataSubmissionEnabled": False,
    "toolkit.telemetry.reportingpolicy.firstRun": False,
    "network.captive-portal-service.enabled": False,
    "network.connectivity-service.enabled": False,
    "browser.safebrowsing.downloads.remote.enabled": False,
    "app.update.enabled": False,
}


class Browser(Program):
    """A page with a field that has the focus."""

    @staticmethod
    def is_installed():
        return shutil.which("firefox-esr") is not None

    def __init__(self, display, desktop, text):
        profile = Path(tempfile.mkdtemp(prefix="vantle-browser-"))
        lines = [f"user_pref({json.dumps(name)}, {json.dumps(value)});" for name, value in QUIET.items()]
        (profile / "user.js").write_text("\n".join(lines))
        page = profile / "page.html"
        page.write_text(PAGE % text)
        environment = os.environ | UNSEEN | {"HOME": str(profile), "MOZ_ENABLE_WAYLAND": "0"}
        command = ["firefox-esr", "--no-remote", "--profile", str(profile), page.as_uri()]
        super().__init__(display, desktop, command, env=environment)
        until("the page is shown", lambda: self.title().startswith("page"), 40)

    def title(self):
        """The page's: it counts the letters in the field."""
        window = self.desktop.display.create_resource_object("window", self.window)
        return window.get_full_text_property(self.desktop.display.intern_atom("_NET_WM_NAME")) or ""
