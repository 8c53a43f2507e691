#!/usr/bin/env python3
"""The command line as a user runs it: without a display, beside the running program, and over bad files."""

import contextlib
import json
import os
import signal
import stat
import subprocess
import tempfile
import unittest
import uuid
from pathlib import Path

from driver.application import Application
from driver.display import PrivateDisplay, run
from driver.options import take_options
from driver.terminal import Terminal
from driver.waiting import until
from driver.x import Desktop

VANTLE = ""


class WithoutDisplay(unittest.TestCase):
    def setUp(self):
        self.application = Application(VANTLE)
        self.addCleanup(self.application.close)
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"):
            self.application.environment.pop(name, None)

    def test_lists_the_tools_in_the_grids_order(self):
        self.application.write_settings(
            pinnedTools=["open-project", "gone"],
            disabledTools=["uplink"],
            toolUsage={"feedback": 3},
            toolSortMode="mostUsed",
            hotkeys={"promptify": {"keyCode": 96, "carbonModifiers": 0}},
        )
        result = self.application.command("tools", "--json")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        tools = json.loads(result.stdout)
        self.assertEqual(len(tools), 14)
        self.assertEqual([tool["id"] for tool in tools[:3]], ["open-project", "feedback", "frequent-clis"])
        by_id = {tool["id"]: tool for tool in tools}
        self.assertTrue(by_id["open-project"]["pinned"])
        self.assertFalse(by_id["uplink"]["enabled"])
        self.assertEqual(by_id["feedback"]["uses"], 3)
        self.assertEqual(by_id["promptify"]["shortcut"], "F5")
        self.assertEqual(by_id["frequent-clis"]["shortcut"], "⌃⌥↩")

    def test_says_what_it_cannot_do(self):
        doctor = self.application.command("doctor")
        self.assertEqual(doctor.returncode, 1)
        self.assertIn("none: shortcuts, panels and typing need one", doctor.stdout)
        started = self.application.command()
        self.assertEqual(started.returncode, 1)
        self.assertTrue(started.stderr.startswith("vantle: "), started.stderr)

    def test_completes_in_a_shell(self):
        script = self.application.command("completions", "bash").stdout
        ask = 'COMP_WORDS=(vantle %s); COMP_CWORD=%d; _vantle; echo "${COMPREPLY[@]}"'
        for words, count, expected in (
            ("se", 1, "sessions"),
            ("summon vi", 2, "vibe-history"),
            ("sessions --se", 2, "--search"),
            ("help do", 2, "doctor"),
            ("generate -o /usr/b", 3, "/usr/bin"),
            ("open /usr/b", 2, "/usr/bin"),
        ):
            answer = subprocess.run(["bash", "-c", script + ask % (words, count)], capture_output=True, text=True)
            self.assertEqual((answer.stdout.strip(), answer.stderr), (expected, ""), words)
        for shell in ("zsh", "fish"):
            script = self.application.command("completions", shell).stdout
            self.assertIn("vibe-history", script)
            # Summaries have apostrophes, and a shell that is not here cannot say so.
            self.assertTrue("grid'\\''s" in script or "grid\\'s" in script, script)

    def test_a_copy_that_is_ended_leaves_nothing(self):
        home = Path(self.application.home.name)
        template, place = home / "large", home / "work"
        template.mkdir()
        place.mkdir()
        # Long enough to be met half-way; read as zeros, and little of it is ever written.
        with open(template / "zeros", "wb") as file:
            file.truncate(8 << 30)
        entry = {"id": str(uuid.uuid4()), "name": "large", "path": str(template)}
        self.application.write_json("boilerplates.json", {"templates": [entry], "lastPlace": ""})
        command = [VANTLE, "new", "large", str(place / "shop")]

        def end_half_way(end):
            with subprocess.Popen(command, env=self.application.environment, stderr=subprocess.DEVNULL) as process:
                until("the copy has begun", lambda: any(place.glob(".vantle-new-*/zeros")), interval=0.001)
                process.send_signal(end)
            return process.returncode

        for end in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            self.assertEqual(end_half_way(end), 128 + end)
            self.assertEqual(os.listdir(place), [], end)
        self.assertEqual(end_half_way(signal.SIGKILL), -signal.SIGKILL)
        self.assertEqual(len(os.listdir(place)), 1, "nobody can clear up after itself then")
        os.truncate(template / "zeros", 1)
        self.assertEqual(self.application.command(*command[1:]).returncode, 0)
        self.assertEqual(os.listdir(place), ["shop"], "the next copy does")

    def test_usage(self):
        self.assertRegex(self.application.command("--version").stdout, r"^vantle \d+\.\d+\.\d+\n$")
        self.assertIn("usage: vantle", self.application.command("--help").stdout)
        for wrong in (["nonsense"], ["completions", "tcsh"], ["sessions", "--limit", "0"], ["tools", "--yaml"], ["summon"], ["summon", "nothing"], ["help", "nonsense"]):
            result = self.application.command(*wrong)
            self.assertEqual((result.returncode, result.stdout), (2, ""), wrong)
            self.assertTrue(result.stderr.startswith("vantle: "), wrong)


class WithDisplay(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.display = cls.enterClassContext(PrivateDisplay())
        cls.desktop = Desktop(cls.display.name)

    def setUp(self):
        self.application = Application(VANTLE)
        self.addCleanup(self.application.close)

    def start(self):
        self.application.start()
        self.application.wait_until_live()

    def palette_opens(self):
        self.desktop.press("Ctrl+Alt+Return")
        until("the palette is shown", lambda: self.desktop.windows_of(self.application.pid))
        self.desktop.press("Escape")
        until("the palette is gone", lambda: not self.desktop.windows_of(self.application.pid))

    def test_there_is_one_instance(self):
        self.application.write_settings()
        self.start()
        second = self.application.command()
        self.assertEqual(second.returncode, 0, second.stderr)
        self.assertTrue(self.application.is_running())
        mode = os.stat(self.application.socket_path).st_mode
        self.assertEqual(stat.S_IMODE(mode) & 0o077, 0, "the socket is the user's alone")

    def test_starts_again_after_a_kill(self):
        self.application.write_settings()
        self.start()
        self.application.process.kill()
        self.application.process.wait()
        self.assertTrue(self.application.socket_path.exists(), "a killed program leaves its socket")
        self.start()
        self.palette_opens()

    def test_summon_starts_the_program_when_needed(self):
        self.application.write_settings()
        result = self.application.command("summon", "frequent-clis")
        self.assertEqual(result.returncode, 0, result.stderr)
        answer = self.application.ask({"do": "doctor"})
        self.assertIsNotNone(answer)
        until("the use is recorded", lambda: self.application.read_json("settings.json").get("toolUsage"))
        self.assertEqual(self.application.read_json("settings.json")["toolUsage"], {"frequent-clis": 1})

    def test_bad_files_never_stop_it(self):
        for kind, contents in BAD_CONTENTS.items():
            with self.subTest(kind):
                application = self.run_over(lambda path: path.write_bytes(contents))
                commands = application.read_json("FrequentCLIs/commands.json")
                self.assertEqual([command["icon"] for command in commands], ["claude", "codex"])
                kept = application.folder / "FrequentCLIs" / "commands.json.corrupt"
                self.assertEqual(kept.read_bytes() if kept.exists() else b"", contents, "what was there is kept")

    def test_only_plain_files_are_read(self):
        for kind, spoil in BAD_PLACES.items():
            with self.subTest(kind):
                folder = self.run_over(spoil).folder
                replaced = [pipe.name for pipe in folder.glob("pipe for *") if not pipe.is_fifo()]
                self.assertEqual(replaced, [], "what a link leads to stays what it is")

    def test_a_folder_in_a_files_place_is_kept(self):
        folder = self.run_over(make_folder).folder
        kept = sorted(path.relative_to(folder).parts[-2].split(".json")[0] for path in folder.rglob("mine"))
        self.assertEqual(kept, ["app-settings", "commands", "settings"])

    def test_works_where_nothing_can_be_saved(self):
        # Nobody, root included, makes a folder in there.
        self.application.environment["XDG_DATA_HOME"] = "/proc"
        self.start()
        until("the failure is logged", lambda: "CommandStore save failed: " in self.application.log())
        self.desktop.press("Ctrl+Alt+Space")
        until("the launcher is shown", lambda: self.desktop.windows_of(self.application.pid))
        self.desktop.press("Ctrl+Alt+Return")
        until("the failure is logged", lambda: "SettingsStore save failed: " in self.application.log())
        self.assertTrue(self.application.is_running())

    def run_over(self, spoil):
        """Spoils every file, then starts, uses and ends the program, which must all work."""
        self.application = Application(VANTLE)
        self.addCleanup(self.application.close)
        for name in FILES:
            path = self.application.folder / name
            path.parent.mkdir(parents=True, exist_ok=True)
            spoil(path)
        self.start()
        self.desktop.press("Ctrl+Alt+Space")
        self.assertTrue(self.application.ask({"do": "doctor"}))
        self.application.process.terminate()
        self.assertEqual(self.application.process.wait(5), 0, self.application.log())
        return self.application


class BringsItselfForward(unittest.TestCase):
    """A second `vantle` on the desktops whose window managers keep programs from stealing the focus."""

    def test_a_second_one_brings_the_window_to_the_front(self):
        for window_manager in ("openbox", "xfwm4"):
            with self.subTest(window_manager), PrivateDisplay(window_manager=window_manager) as display:
                self.walk(display, Desktop(display.name))

    def walk(self, display, desktop):
        application = Application(VANTLE)
        with contextlib.closing(application), tempfile.TemporaryDirectory() as folder:
            application.begin()
            # What the user is busy in has had the last key press.
            terminal = Terminal(display, desktop, folder)
            desktop.type("busy")
            until("the terminal got the keys", lambda: terminal.typed() == "busy")
            window = self.forward(application, desktop)
            desktop.activate(terminal.window)
            until("the terminal is active again", lambda: desktop.active_window() == terminal.window)
            desktop.type("again")
            until("the terminal got the keys", lambda: terminal.typed() == "busyagain")
            self.assertEqual(self.forward(application, desktop), window, "it is the same window")
            run("xdotool", "windowminimize", str(window))
            until("it is minimized", lambda: not desktop.windows_of(application.pid))
            self.assertEqual(self.forward(application, desktop), window, "it is the same window")

    def forward(self, application, desktop):
        """Starts a second one; the number of the window that comes to the front."""
        second = application.command()
        self.assertEqual((second.returncode, second.stderr), (0, ""))
        shapes = until("the settings are shown", lambda: desktop.windows_of(application.pid))
        self.assertEqual([shape.title for shape in shapes], ["Settings"])
        until("they are active", lambda: desktop.active_window() == shapes[0].id)
        until("they are in front", lambda: desktop.stacking()[-1] == shapes[0].id)
        return shapes[0].id


FILES = ["settings.json", "app-settings.json", "FrequentCLIs/commands.json"]
BAD_CONTENTS = {
    "empty": b"",
    "not JSON": b"{ this is not",
    "not UTF-8": b'{"toolOrder": ["\xff\xfe"]}',
    "another shape": b'"text"',
    "wrong types": b'{"hotkeys": 5, "toolUsage": {"uplink": "x"}, "appearance": [], "toolSortMode": {}}',
    "endlessly nested": b"[" * 100_000,
}


def make_folder(path):
    path.mkdir()
    (path / "mine").write_text("keep")


def link_to_pipe(path):
    """As a link to a device would be, but the machine stays whole when that is overwritten."""
    pipe = path.with_name(f"pipe for {path.name}")
    os.mkfifo(pipe)
    path.symlink_to(pipe)


BAD_PLACES = {
    "a link to a pipe": link_to_pipe,
    "a pipe": os.mkfifo,
    "a loop": lambda path: path.symlink_to(path),
}


if __name__ == "__main__":
    [VANTLE] = take_options("vantle")
    unittest.main()
