"""A private Wayland session without a screen: sway, XWayland and a message bus, all ended with the block that uses it."""

import json
import os
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

from .processes import Processes
from .waiting import StepFailed, until

NEEDED = ["sway", "swaymsg", "Xwayland", "foot", "dbus-run-session", "xwininfo", "xclip"]
SKIPPED = 77
# Sway does not run for root: inside, the same user has another number.
AS_USER = ["unshare", "--user", "--map-user=1000", "--map-group=1000"]


def skip_where_impossible():
    """Ends the program where something is missing; starts it anew as an ordinary user where it is root."""
    missing = [name for name in NEEDED if not shutil.which(name)]
    if missing:
        print(f"skipped: not installed: {', '.join(missing)}")
        sys.exit(SKIPPED)
    if os.getuid() != 0:
        return
    if subprocess.run([*AS_USER, "true"], capture_output=True).returncode:
        print("skipped: sway does not run for root, and there are no user namespaces here")
        sys.exit(SKIPPED)
    os.execvp("unshare", [*AS_USER, sys.executable, *sys.argv])


class PrivateSession(Processes):
    """Owns a folder for everything (home, sockets, logs); puts itself into the environment."""

    def __init__(self, configuration=""):
        super().__init__()
        self.folder = Path(tempfile.mkdtemp(prefix="vantle-wayland-"))
        self.configuration = configuration

    def __enter__(self):
        try:
            self._start_all()
        except BaseException:
            self.__exit__()
            raise
        return self

    def _start_all(self):
        for name in ("home", "run"):
            (self.folder / name).mkdir(mode=0o700)
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "SWAYSOCK", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "QT_QPA_PLATFORM"):
            os.environ.pop(name, None)
        os.environ |= {
            "HOME": str(self.folder / "home"),
            "XDG_RUNTIME_DIR": str(self.folder / "run"),
            "XDG_SESSION_TYPE": "wayland",
            "XDG_CURRENT_DESKTOP": "sway",
            "WLR_BACKENDS": "headless",
            "WLR_RENDERER": "pixman",
            "WLR_LIBINPUT_NO_DEVICES": "1",
        }
        file = self.folder / "config"
        file.write_text("output HEADLESS-1 resolution 1920x1080 position 0,0\nxwayland force\n" + self.configuration)
        # The session's own names, told by a program that it starts itself.
        told = self.folder / "environment"
        with file.open("a") as lines:
            lines.write(f"exec env >{told}.part && mv {told}.part {told}\n")
        log = (self.folder / "sway.log").open("w")
        self.start(["dbus-run-session", "--", "sway", "-c", str(file)], stdout=log, stderr=log, start_new_session=True)
        until("sway is there", told.exists, 15)
        for line in told.read_text().splitlines():
            name, _, value = line.partition("=")
            if name in ("DISPLAY", "WAYLAND_DISPLAY", "SWAYSOCK", "DBUS_SESSION_BUS_ADDRESS"):
                os.environ[name] = value

    def __exit__(self, *_):
        self.end_all()
        shutil.rmtree(self.folder, ignore_errors=True)

    def ask(self, *words):
        """What swaymsg answers."""
        result = subprocess.run(["swaymsg", "-r", *words], capture_output=True, text=True)
        if result.returncode:
            raise StepFailed(f"swaymsg {' '.join(words)}: {result.stdout}{result.stderr}")
        return json.loads(result.stdout)

    def focused(self):
        """The app id of the native window that has the focus, or the class of another one."""

        def find(node):
            if node.get("focused"):
                return node.get("app_id") or node.get("window_properties", {}).get("class", "")
            for child in node.get("nodes", []) + node.get("floating_nodes", []):
                found = find(child)
                if found is not None:
                    return found
            return None

        return find(self.ask("-t", "get_tree"))
