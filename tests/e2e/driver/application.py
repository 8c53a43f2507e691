"""The program under test, with folders of its own."""

import json
import os
import signal
import socket
import subprocess
import sys
import tempfile
from pathlib import Path

from .waiting import StepFailed, until

COMMANDS = [
    {"title": title, "command": command, "pressReturn": press_return, "icon": icon}
    for title, command, press_return, icon in [
        ("Claude — skip permissions", "claude --dangerously-skip-permissions", False, "claude"),
        ("Codex — YOLO", "codex --yolo", False, "codex"),
        ("Continue where I stopped", "claude --continue", True, "claude"),
        ("Say hello", "echo 'Hello, terminal' # typed", False, "terminal"),
        ("Run the tests", "printf 'ran: %s\\n' \"a b\" | tee -a log", True, "terminal"),
        ("Ask a local model", "ollama run qwen --verbose", True, "ollama"),
    ]
]


class Application:
    """One user's home and the program running in it, in `network` when there is one.

    The accessibility tree costs memory and time; without `accessible` it is left to itself, as it is for most users.
    """

    def __init__(self, binary, network=None, accessible=True):
        self.binary = str(Path(binary).resolve())
        self.network = network
        # The service that the program has started may be ending still when the folder goes.
        self.home = tempfile.TemporaryDirectory(prefix="vantle-e2e-", ignore_cleanup_errors=True)
        self.process = None
        self.successor = None
        home = Path(self.home.name)
        for name in ("data", "config", "cache", "run"):
            (home / name).mkdir(mode=0o700)
        self.environment = os.environ | {
            "HOME": str(home),
            "XDG_DATA_HOME": str(home / "data"),
            "XDG_CONFIG_HOME": str(home / "config"),
            "XDG_CACHE_HOME": str(home / "cache"),
            "XDG_RUNTIME_DIR": str(home / "run"),
            "LC_ALL": "C.UTF-8",
            # The network is looked at by its routes; a system-wide service of the host would answer for another one.
            "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent",
        }
        if accessible:
            self.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"

    @property
    def folder(self):
        return Path(self.home.name) / "data" / "Vantle"

    @property
    def pid(self):
        return self.successor or self.process.pid

    def write_settings(self, **settings):
        self.write_json("settings.json", {"onboardingCompleted": True, "privacyAccepted": True} | settings)

    def write_commands(self, commands=COMMANDS):
        with_ids = [
            {"id": f"00000000-0000-4000-8000-{number:012d}"} | command for number, command in enumerate(commands, 1)
        ]
        self.write_json("FrequentCLIs/commands.json", with_ids)

    def write_json(self, name, value):
        path = self.folder / name
        path.parent.mkdir(mode=0o700, parents=True, exist_ok=True)
        path.write_text(json.dumps(value))

    def read_json(self, name):
        path = self.folder / name
        return json.loads(path.read_text()) if path.exists() else None

    def start(self, *arguments):
        command = [self.binary, *arguments]
        self.successor = None
        with open(self.log_path, "ab") as log:
            self.process = subprocess.Popen(
                self.network.command(command) if self.network else command,
                env=self.environment,
                stdout=log,
                stderr=log,
            )

    def begin(self, files=None, **settings):
        """Starts it with these settings, and files by their names; waits until its shortcuts are live."""
        self.write_settings(**settings)
        for name, value in (files or {}).items():
            self.write_json(name, value)
        self.start()
        self.wait_until_live()

    def restart(self):
        self.stop()
        self.start()
        self.wait_until_live()

    @property
    def log_path(self):
        return Path(self.home.name) / "vantle.log"

    def log(self):
        return self.log_path.read_text(errors="replace") if self.log_path.exists() else ""

    def is_running(self):
        return self.process is not None and self.process.poll() is None

    def wait_until_live(self, interval=0.01):
        """The shortcuts are live once the running program answers for them."""
        until("the shortcuts are live", self._answers, 10, interval)

    def _answers(self):
        if not self.is_running():
            raise StepFailed(f"the program ended: {self.log()[-400:]}")
        return self.ask({"do": "doctor"})

    def ask(self, request):
        """One request to the running program over its socket; None when nobody answers."""
        with socket.socket(socket.AF_UNIX) as connection:
            connection.settimeout(5)
            try:
                connection.connect(str(self.socket_path))
                connection.sendall(json.dumps(request).encode() + b"\n")
                answer = connection.makefile().readline()
            except OSError:
                return None
        return json.loads(answer) if answer else None

    @property
    def socket_path(self):
        return Path(self.home.name) / "run" / "vantle.sock"

    def command(self, *arguments, seconds=20):
        """Runs one command line to its end."""
        return subprocess.run(
            [self.binary, *arguments], env=self.environment, capture_output=True, text=True, timeout=seconds
        )

    def stop(self):
        if self.is_running():
            self.process.send_signal(signal.SIGTERM)
            try:
                self.process.wait(5)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()

    def close(self):
        self.stop()
        self._stop_background()
        self.home.cleanup()

    def follow(self):
        """Waits until the program has put another one in its place; that is the one to look at from then on."""
        until("the program ends", lambda: not self.is_running(), 10)
        self.successor = until("another one answers", self._listener, 10)

    def _stop_background(self):
        """Ends a program that a command, or another one, has started by itself."""
        pid = self._listener()
        if pid:
            os.kill(pid, signal.SIGTERM)
            until("the background program ends", lambda: not Path(f"/proc/{pid}").exists())

    def _listener(self):
        """The process behind the socket; None without one."""
        with socket.socket(socket.AF_UNIX) as connection:
            try:
                connection.connect(str(self.socket_path))
            except OSError:
                return None
            credentials = connection.getsockopt(socket.SOL_SOCKET, socket.SO_PEERCRED, 3 * 4)
        return int.from_bytes(credentials[:4], sys.byteorder)
