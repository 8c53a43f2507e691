"""A real file manager to drag things out of."""

import os
import subprocess
from pathlib import Path

from .display import run
from .waiting import until

# Where its window is put, and the middle of the first thing in a folder there.
CORNER = (40, 40)
SIZE = (600, 420)
FIRST_ITEM = (CORNER[0] + 207, CORNER[1] + 115)


class FileManager:
    """A window of pcmanfm that shows one folder; ends with the block that uses it."""

    def __init__(self, desktop, folder, home):
        self.desktop = desktop
        self.folder = folder
        # Settings of its own: the place of the first item depends on them.
        self.environment = os.environ | {"HOME": str(home), "XDG_CONFIG_HOME": str(Path(home) / "file-manager")}

    def __enter__(self):
        before = self.desktop.stacking()
        self.process = subprocess.Popen(
            ["pcmanfm", "--no-desktop", str(self.folder)],
            env=self.environment,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        opened = until("the file manager is shown", lambda: set(self.desktop.stacking()) - set(before), 15)
        window = str(opened.pop())
        run("xdotool", "windowsize", "--sync", window, *map(str, SIZE))
        run("xdotool", "windowmove", "--sync", window, *map(str, CORNER))
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()
