"""What a step has at hand: the display, a terminal, the program, and a camera."""

import tempfile
from contextlib import contextmanager
from pathlib import Path

from . import accessibility
from .application import Application
from .display import run
from .network import PrivateNetwork
from .provider import Provider
from .relay import reachable
from .terminal import Terminal
from .waiting import StepFailed, expect, stays, until
from .x import Desktop

PALETTE = (716, 476)
TOAST_WIDTH = 600


class World:
    """Owns the terminal, the network and the program of one tour."""

    def __init__(self, display, binary, pictures):
        self.display = display
        self.binary = binary
        self.pictures = Path(pictures)
        self.desktop = Desktop(display.name)
        self.desktop.move_pointer(960, 900)
        self.folder = tempfile.TemporaryDirectory(prefix="vantle-tour-")
        self.terminal = Terminal(display, self.desktop, self.folder.name)
        try:
            self.network = PrivateNetwork()
            self.network.go_online()
        except StepFailed as reason:
            self.network, self.no_network = None, str(reason)
        self.application = None
        self.step_name = ""
        self.taken = 0

    def close(self):
        if self.application:
            self.application.close()
        if self.network:
            self.network.close()
        self.folder.cleanup()

    @contextmanager
    def another_application(self):
        """A program with folders of its own, in place of the tour's, which rests meanwhile."""
        mine, self.application = self.application, Application(self.binary, self.network)
        if mine:
            mine.stop()
        try:
            yield self.application
        finally:
            self.application.close()
            self.application = mine
            if mine:
                mine.start()
                mine.wait_until_live()

    @contextmanager
    def ai_provider(self, **script):
        """A scripted provider, and the ai-provider.json with which a program in the tour's network reaches it."""
        provider = Provider(**script)
        try:
            with reachable(self.network, provider.port) as port:
                yield provider, provider.settings | {"baseUrl": f"http://127.0.0.1:{port}/v1"}
        finally:
            provider.close()

    def start_application(self):
        self.application = Application(self.binary, self.network)
        self.application.write_settings()
        self.application.write_commands()
        # Toasts of the default ten seconds would make it a long tour.
        self.application.write_json("app-settings.json", {"toastDuration": 3})
        self.application.start()
        self.application.wait_until_live()

    # What is on the screen

    def windows(self):
        return self.desktop.windows_of(self.application.pid)

    def palette(self):
        """The palette's window, None when it is hidden."""
        return next((window for window in self.windows() if (window.width, window.height) == PALETTE), None)

    def toast(self):
        return next((window for window in self.windows() if window.width == TOAST_WIDTH), None)

    def titled(self, title):
        return next((window for window in self.windows() if window.title == title), None)

    def keyed(self, title):
        """The window of that title, once the keys go to it: a panel that nobody's key has opened takes them a moment after
        it shows."""
        pid = self.application.pid
        until(f"{title} has the keyboard", lambda: accessibility.has_keyboard(pid, title), 10, 0.02)
        return self.titled(title)

    def shows(self, text):
        return accessibility.shows(self.application.pid, text)

    def see(self, text, seconds=5):
        try:
            until(f"the text {text!r} is shown", lambda: self.shows(text), seconds, 0.05)
        except StepFailed as failure:
            shown = sorted({text for text in accessibility.texts(self.application.pid) if text})
            raise StepFailed(f"{failure}; shown: {shown[:40]}") from None

    def click_on(self, name, button=1):
        """Clicks with the pointer what has an accessible name that begins so."""
        node = until(
            f"{name!r} is there to be clicked", lambda: accessibility.find(self.application.pid, name), 5, 0.05
        )
        self.desktop.click(*accessibility.centre(node), button)

    # What a user does

    def summon_palette(self):
        self.desktop.press("Ctrl+Alt+Return")
        return until("the palette is shown", self.palette)

    def close_palette(self):
        self.desktop.press("Escape")
        until("the palette is gone", lambda: not self.palette())

    def close_window(self, title):
        self.desktop.close(self.titled(title))
        until(f"{title} is closed", lambda: not self.titled(title))

    def quiet(self):
        """Nothing of the program's is on the screen."""
        until("nothing of the program's is shown", lambda: not self.windows(), 20)

    def expect_terminal_active(self, when):
        expect(f"the terminal is the active window {when}", self.desktop.active_window() == self.terminal.window)

    def stays_terminal_active(self, when, seconds=0.3):
        stays(
            f"the terminal is the active window {when}",
            lambda: self.desktop.active_window() == self.terminal.window,
            seconds,
        )

    def picture(self, name="", screens="L"):
        """A PNG of the left screen, or of both."""
        self.taken += 1
        file = self.pictures / "-".join(part for part in (f"{self.taken:02d}", self.step_name, name) if part)
        area = [] if screens == "both" else ["-g", "1920x1080+0+0"]
        run("maim", "-u", *area, f"{file}.png")
