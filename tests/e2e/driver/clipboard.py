"""What other programs put on the clipboard, and what is on it."""

import subprocess
from contextlib import contextmanager

from Xlib import X, display

from .waiting import until


def copy(content, kind=None):
    """Another program takes the clipboard and offers `content` as that media type, or as text."""
    target = ["-t", kind] if kind else []
    subprocess.run(["xclip", "-selection", "clipboard", *target], input=content, check=True, timeout=10)
    until("it offers what was copied", lambda: (kind or "UTF8_STRING") in offered())


def offered():
    """The kinds of data on it."""
    command = ["xclip", "-o", "-selection", "clipboard", "-t", "TARGETS"]
    return subprocess.run(command, capture_output=True, text=True, timeout=10).stdout.split()


def text():
    """The text on it; empty when there is none."""
    return text_of("clipboard")


def selected():
    """The text that was selected last in some window; empty when there is none."""
    return text_of("primary")


def text_of(selection):
    result = subprocess.run(["xclip", "-o", "-selection", selection], capture_output=True, timeout=10)
    return result.stdout.decode(errors="replace") if result.returncode == 0 else ""


@contextmanager
def silent_owner():
    """A program owns the clipboard and answers nobody; yields how often it has been asked."""
    connection = display.Display()
    window = connection.screen().root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
    clipboard = connection.intern_atom("CLIPBOARD")
    window.set_selection_owner(clipboard, X.CurrentTime)
    until("it owns the clipboard", lambda: connection.get_selection_owner(clipboard) == window)
    try:
        yield connection.pending_events
    finally:
        connection.close()
