"""A private Wayland session without a screen: a compositor, XWayland and a message bus, all ended with the block that uses it."""

import argparse
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from .processes import Processes
from .waiting import StepFailed, until

NEEDED = ["sway", "swaymsg", "Xwayland", "foot", "dbus-run-session", "xwininfo", "xclip"]
NEEDED_OF_WESTON = ["weston", "Xwayland", "dbus-run-session", "xwininfo"]
SKIPPED = 77
# Sway does not run for root: inside, the same user has another number.
AS_USER = ["unshare", "--user", "--map-user=1000", "--map-group=1000"]


def skip_where_impossible(needed=tuple(NEEDED)):
    """Ends the program where something is missing; starts it anew as an ordinary user where it is root."""
    missing = [name for name in needed if not shutil.which(name)]
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
    """Of sway. Owns a folder for everything (home, sockets, logs); puts itself into the environment."""

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
        }
        self._start_compositor()

    def _start_compositor(self):
        os.environ |= {
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


class WestonSession(PrivateSession):
    """Of weston, which lays windows over one another and has no keyboard when it has no screen."""

    def _start_compositor(self):
        os.environ |= {"XDG_CURRENT_DESKTOP": "weston", "WAYLAND_DISPLAY": "wayland-vantle"}
        file = self.folder / "weston.ini"
        file.write_text("[core]\nxwayland=true\nidle-time=0\n" + self.configuration)
        told = self.folder / "weston.log"
        address = self.folder / "bus"
        words = ["weston", "--backend=headless-backend.so", "--width=1920", "--height=1080", "--socket=wayland-vantle"]
        command = f'echo "$DBUS_SESSION_BUS_ADDRESS" >{address}; exec "$@"'
        self.start(
            ["dbus-run-session", "--", "sh", "-c", command, "-", *words, f"--config={file}", f"--log={told}"],
            start_new_session=True,
        )
        display = until("weston is there", lambda: told.exists() and self._display_in(told.read_text()), 15)
        os.environ |= {"DISPLAY": display, "DBUS_SESSION_BUS_ADDRESS": address.read_text().strip()}

    @staticmethod
    def _display_in(log):
        found = re.search(r"xserver listening on display (:\d+)", log)
        return found and found[1]


class SessionTest:
    """Vantle in the session, as the user of a desktop sees it."""

    def __init__(self, vantle, session, files=()):
        self.vantle = vantle
        self.session = session
        data = session.folder / "home/.local/share/Vantle"
        for name, value in {"settings.json": {"onboardingCompleted": True, "privacyAccepted": True}, **dict(files)}.items():
            (data / name).parent.mkdir(parents=True, exist_ok=True)
            (data / name).write_text(json.dumps(value))

    def command(self, *words):
        return subprocess.run([self.vantle, *words], capture_output=True, text=True, timeout=20)

    @staticmethod
    def clipboard():
        """As X programs see it: the compositor shows it to native ones."""
        command = ["xclip", "-selection", "clipboard", "-out"]
        try:
            return subprocess.run(command, capture_output=True, text=True, timeout=2).stdout
        except subprocess.TimeoutExpired:
            return ""

    @staticmethod
    def look():
        """What a person needs to see a panel before typing. The compositor gives it the focus some 40 ms after the X
        server shows it, which nobody tells."""
        time.sleep(0.25)

    @staticmethod
    def window(title):
        return subprocess.run(["xwininfo", "-name", title], capture_output=True, text=True).stdout

    def height(self, title):
        """Of a window that is shown, as X programs see it; 0 when it is not."""
        told = self.window(title)
        return int(re.search(r"Height: (\d+)", told)[1]) if "IsViewable" in told else 0


def run(description, test, session=PrivateSession):
    """The whole of a test program: `test` gets the path of vantle and the session that it runs in."""
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("--vantle", required=True)
    arguments = parser.parse_args()
    with session() as running:
        try:
            test(arguments.vantle, running).run()
        except StepFailed as failure:
            sys.exit(f"failed: {failure}")
