"""A private desktop: X server, window manager and message bus, all ended with the block that uses it."""

import os
import select
import subprocess

from .processes import Processes
from .waiting import StepFailed, until


class PrivateDisplay(Processes):
    """Owns the three; puts itself into DISPLAY and DBUS_SESSION_BUS_ADDRESS.

    `screen` is its size. With `two_screens`, the one screen is cut into L (1920 wide) and R (the other 1280), as two
    monitors would look.
    """

    def __init__(self, two_screens=False, window_manager="openbox", screen="1920x1080"):
        super().__init__()
        self.two_screens = two_screens
        self.window_manager = window_manager
        self.screen = "3200x1080" if two_screens else screen
        self.name = ""

    def __enter__(self):
        try:
            self._start_all()
        except Exception:
            self.__exit__()
            raise
        return self

    def _start_all(self):
        self.name = ":" + self._first_line(
            "Xvfb",
            lambda number: ["-displayfd", number, "-screen", "0", f"{self.screen}x24", "-nolisten", "tcp", "-noreset"],
        )
        os.environ["DISPLAY"] = self.name
        for name in ("WAYLAND_DISPLAY", "XDG_SESSION_TYPE"):
            os.environ.pop(name, None)
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = self._first_line(
            "dbus-daemon", lambda number: ["--session", "--nofork", f"--print-address={number}"]
        )
        if self.two_screens:
            run("xrandr", "--setmonitor", "L", "1920/508x1080/286+0+0", "screen")
            run("xrandr", "--setmonitor", "R", "1280/338x1080/270+1920+0", "none")
        self.start([self.window_manager])
        run("xsetroot", "-solid", "#4A5A70")
        until("the window manager announces itself", self._managed, 10)

    def __exit__(self, *_):
        self.end_all()

    def _first_line(self, program, arguments):
        """Starts a server that writes where it is reached to a descriptor, and reads that."""
        reader, writer = os.pipe()
        self.start([program, *arguments(str(writer))], pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as lines:
            if not select.select([reader], [], [], 20)[0]:
                raise StepFailed(f"{program} does not start")
            return lines.readline().strip()

    def _managed(self):
        """It announces itself first; a window mapped before it keeps its list of windows never gets the focus."""
        names = ["_NET_SUPPORTING_WM_CHECK", "_NET_CLIENT_LIST", "_NET_WORKAREA"]
        answer = subprocess.run(["xprop", "-root", *names], capture_output=True, text=True)
        # Some start the list with the first window, but have a work area before.
        return answer.stdout.count("(") >= 2


def run(*command):
    """Runs a command to its end; a failure is a failed step."""
    result = subprocess.run(command, capture_output=True, text=True)
    if result.returncode:
        raise StepFailed(f"{' '.join(command)}: {result.stderr.strip() or result.returncode}")
    return result.stdout
