"""A private X server with a window manager, ended with the block that uses it."""

import os
import select
import subprocess

from .waiting import StepFailed, until


class PrivateDisplay:
    """Owns Xvfb and the window manager; puts itself into DISPLAY.

    With `two_screens`, the one screen is cut into L (1920 wide) and R (the other 1280), as two monitors would look.
    """

    def __init__(self, two_screens=False, window_manager="openbox"):
        self.two_screens = two_screens
        self.window_manager = window_manager
        self.processes = []
        self.name = ""

    def __enter__(self):
        screen = "3200x1080x24" if self.two_screens else "1920x1080x24"
        reader, writer = os.pipe()
        self.processes.append(
            subprocess.Popen(
                ["Xvfb", "-displayfd", str(writer), "-screen", "0", screen, "-nolisten", "tcp", "-noreset"],
                pass_fds=[writer],
                stderr=subprocess.DEVNULL,
            )
        )
        os.close(writer)
        if not select.select([reader], [], [], 20)[0]:
            self.__exit__()
            raise StepFailed("Xvfb does not start")
        with os.fdopen(reader) as lines:
            self.name = f":{lines.readline().strip()}"
        os.environ["DISPLAY"] = self.name
        os.environ.pop("WAYLAND_DISPLAY", None)
        if self.two_screens:
            run("xrandr", "--setmonitor", "L", "1920/508x1080/286+0+0", "screen")
            run("xrandr", "--setmonitor", "R", "1280/338x1080/270+1920+0", "none")
        self.start([self.window_manager])
        until("the window manager announces itself", self._managed, 10)
        return self

    def __exit__(self, *_):
        for process in reversed(self.processes):
            process.terminate()
        for process in reversed(self.processes):
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()

    def start(self, command, **options):
        """A client of this display that ends with it."""
        options.setdefault("stdout", subprocess.DEVNULL)
        options.setdefault("stderr", subprocess.DEVNULL)
        process = subprocess.Popen(command, **options)
        self.processes.append(process)
        return process

    def _managed(self):
        answer = subprocess.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], capture_output=True, text=True)
        return "window id" in answer.stdout


def run(*command):
    """Runs a command to its end; a failure is a failed step."""
    result = subprocess.run(command, capture_output=True, text=True)
    if result.returncode:
        raise StepFailed(f"{' '.join(command)}: {result.stderr.strip() or result.returncode}")
    return result.stdout
