"""The program under test, with folders of its own."""

import json
import os
import signal
import subprocess
import tempfile
from pathlib import Path

from .waiting import StepFailed, until

COMMANDS = [
    {"title": "Say hello", "command": "echo 'Hello, terminal' # typed", "pressReturn": False, "icon": "terminal"},
    {"title": "Run and go", "command": "printf 'ran: %s\\n' \"a b\" | tee -a log", "pressReturn": True, "icon": "claude"},
    {"title": "Zebra", "command": "ls --color=never ~/zebra", "pressReturn": True, "icon": "codex"},
]


class Application:
    """One user's home and the program running in it. `shell` runs commands where the program's network is."""

    def __init__(self, binary, shell=None):
        self.binary = str(Path(binary).resolve())
        self.shell = shell
        self.home = tempfile.TemporaryDirectory(prefix="vantle-e2e-")
        self.process = None
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
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            # The network is looked at by its routes; a system-wide service of the host would answer for another one.
            "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent",
        }

    @property
    def folder(self):
        return Path(self.home.name) / "data" / "Vantle"

    @property
    def pid(self):
        return self.process.pid

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
        launcher = self.shell.command(command) if self.shell else command
        log = open(self.log_path, "ab")
        self.process = subprocess.Popen(launcher, env=self.environment, stdout=log, stderr=log)
        log.close()

    @property
    def log_path(self):
        return Path(self.home.name) / "vantle.log"

    def log(self):
        return self.log_path.read_text(errors="replace") if self.log_path.exists() else ""

    def is_running(self):
        return self.process is not None and self.process.poll() is None

    def wait_until_live(self):
        """The shortcuts are live once the running program answers for them."""
        until("the program listens", self._listens, 10)
        until("the shortcuts are live", self._answers, 10)

    def _listens(self):
        if not self.is_running():
            raise StepFailed(f"the program ended: {self.log()[-400:]}")
        return self.sockets()

    def _answers(self):
        findings = json.loads(self.command("doctor", "--json", seconds=5).stdout or "[]")
        return any(finding["subject"] == "Application" and finding["text"] == "running" for finding in findings)

    def sockets(self):
        """The sockets that listen in the user's run-time folder: the single instance's, once it is up."""
        return [path for path in (Path(self.home.name) / "run").rglob("*") if path.is_socket()]

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
        self.home.cleanup()
