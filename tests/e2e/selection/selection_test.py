#!/usr/bin/env python3
"""Reads and replaces the selection of real programs: the right text, and every byte of the earlier clipboard back.

--rounds replacements in the GTK editor, 100 by default, and before each --readings of them, ten by default.
"""

import argparse
import json
import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))
sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "typing"))

from driver.display import PrivateDisplay  # noqa: E402
from driver.waiting import StepFailed, expect, until  # noqa: E402
from driver.x import Desktop  # noqa: E402

import flavours  # noqa: E402
import programs  # noqa: E402

WORDS = "Ein Text, der gemeint ist: naïve façade — “so” 🚀 fin."


class Probe:
    """The program under test: it takes an order a line."""

    def __init__(self, display, binary):
        self.process = display.start([binary], stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def order(self, *words):
        self.process.stdin.write(" ".join(words).encode() + b"\n")
        self.process.stdin.flush()
        return self.answer()

    def answer(self):
        return json.loads(self.process.stdout.readline())

    def read(self):
        return self.order("read")

    def put(self, text):
        return self.order("put", json.dumps(text))["outcome"]


class World:
    """A display with the program under test, another program's clipboard, and one program to select in."""

    def __init__(self, options, display):
        self.options = options
        self.display = display
        self.desktop = Desktop(display.name)
        self.folder = tempfile.mkdtemp(prefix="vantle-selection-")
        self.earlier = flavours.everything(pixels=200)
        self.reader = flavours.Reader()
        self.probe = Probe(display, options.probe)
        self.copy_earlier()

    def copy_earlier(self):
        flavours.Owner(self.earlier)

    def expect_earlier(self):
        """Every kind of data, its type, its bytes, in its order."""
        held = self.reader.everything()
        wrong = [name for name, data in self.earlier.items() if held.get(name) != data]
        expect(f"the earlier clipboard is back, but for {wrong}", not wrong and list(held) == list(self.earlier))

    def title(self):
        window = self.desktop.display.create_resource_object("window", self.desktop.active_window())
        name = window.get_full_text_property(self.desktop.display.intern_atom("_NET_WM_NAME"))
        return name or ""

    def read(self, text):
        answer = self.probe.read()
        expect(f"{text!r} is read: {answer}", answer.get("text") == text)
        return answer

    def replace(self, text, new):
        answer = self.read(text)
        self.expect_typed(new)
        return answer

    def expect_typed(self, new):
        outcome = self.probe.put(new)
        expect(f"the result is typed: {outcome}", outcome == "typed")
        self.expect_earlier()


def editor(world, name, command):
    """A program whose text can all be selected by Ctrl+A; its own text comes from a file."""
    file = Path(world.folder) / f"{name}.txt"
    file.write_text(WORDS)
    home = tempfile.mkdtemp(prefix="vantle-home-")
    settings = dict(os.environ, GSETTINGS_BACKEND="memory", HOME=home, XDG_CONFIG_HOME=home)
    program = programs.Program(world.display, world.desktop, [*command, str(file)], env=settings)
    program.file = file
    return program


def select_all(world, text):
    """Selects what stands in the editor; until it shows what was typed last, that may be less."""
    deadline = time.monotonic() + 10
    while True:
        world.desktop.press("Ctrl+a")
        answer = world.probe.read()
        if answer.get("text") == text:
            return answer
        world.probe.order("restore")
        expect(f"{text!r} is read: {answer}", time.monotonic() < deadline)


def whole_loop(world, name, command):
    """Read, replaced, and nothing else changed; then many times over."""
    program = editor(world, name, command)
    select_all(world, WORDS)
    world.expect_typed("Zeile eins ✓\n\tzwei „drei“")
    select_all(world, "Zeile eins ✓\n\tzwei „drei“")
    world.expect_typed("x")
    many_foreign(world)
    nothing_selected(world)
    return program


def many_foreign(world):
    """More letters without a key than can be borrowed at once, and thousands in all."""
    words = "".join(chr(0x4E00 + number * 7 % 300) for number in range(1200)) + " and so on. " * 100 + "."
    select_all(world, "x")
    world.expect_typed(words)
    select_all(world, words)
    world.expect_typed("y")
    select_all(world, "y")
    world.probe.order("restore")
    world.expect_earlier()


def nothing_selected(world):
    """What was selected before, and is not any more, is not read; nor is the clipboard touched."""
    world.desktop.press("Ctrl+End")
    answer = world.probe.read()
    expect(f"nothing is read: {answer}", "text" not in answer and not answer["displaced"])
    world.expect_earlier()


def gtk_editor(world):
    program = whole_loop(world, "mousepad", ["mousepad", "--disable-server"])
    shortcut(world)
    another_window(world, program)
    return many_rounds(world)


def qt_editor(world):
    whole_loop(world, "featherpad", ["featherpad", "--standalone"])


def shortcut(world):
    """The tool's own shortcut, tapped and held: the copy does not go to whoever has the shortcut, nor a letter in."""
    select_all(world, "y")
    world.probe.order("restore")
    for seconds in (0, 0.1, 1.2):
        world.probe.order("press")
        world.desktop.hold("Ctrl+Alt+backslash")
        time.sleep(seconds)
        world.desktop.release("Ctrl+Alt+backslash")
        answer = world.probe.answer()
        expect(f"held for {seconds} s, it reads: {answer}", answer.get("text") == "y")
        world.probe.order("restore")
        world.expect_earlier()
    expect("nothing is held down", not world.desktop.held_keys())


def another_window(world, program):
    """The user has gone elsewhere meanwhile: nothing is typed there, the result is on the clipboard."""
    select_all(world, "y")
    other = programs.Terminal(world.display, world.desktop, world.folder)
    outcome = world.probe.put("elsewhere")
    expect(f"the result is copied: {outcome}", outcome == "copied")
    expect("nothing is typed", other.text() == "")
    expect("the result is on the clipboard", world.reader.everything()["UTF8_STRING"][2] == b"elsewhere")
    other.close()
    until("the editor is active again", lambda: world.desktop.active_window() == program.window)
    world.copy_earlier()


def many_rounds(world):
    """Counts the misses; the first is told."""
    rounds, readings, misses, first = world.options.rounds, world.options.readings, 0, ""
    text, started, waits = "y", time.monotonic(), []
    for number in range(rounds * (readings + 1)):
        if number % 100 == 0:
            world.copy_earlier()
        try:
            if number % (readings + 1):
                world.read(text)
                world.probe.order("restore")
                world.expect_earlier()
            else:
                waits.append(select_all(world, text)["milliseconds"])
                text = f"Runde {number}: — {WORDS}"
                world.expect_typed(text)
                select_all(world, text)
                world.probe.order("restore")
        except StepFailed as failure:
            misses, first = misses + 1, first or f"round {number}: {failure}"
    waits.sort()
    expect(f"{misses} misses, the first in {first}", not misses)
    seconds = time.monotonic() - started
    median = waits[len(waits) // 2]
    return f"{rounds * readings} readings, {rounds} replacements, no miss; a reading takes {median:.0f} ms; {seconds:.0f} s"


RECORDS = """
import signal, sys, os, tty
record = open(sys.argv[1], "ab", buffering=0)
signal.signal(signal.SIGINT, lambda *_: record.write(b"<INT>"))
import termios
modes = termios.tcgetattr(0)
modes[3] &= ~(termios.ICANON | termios.ECHO)
termios.tcsetattr(0, termios.TCSANOW, modes)
print("Wort" * 30, flush=True)
while True:
    try:
        record.write(os.read(0, 1000))
    except InterruptedError:
        pass
"""


def terminal(world, *arguments):
    """A program runs in it that every Ctrl+C would interrupt, and that keeps every key."""
    record = Path(world.folder) / "record"
    record.write_bytes(b"")
    command = ["xterm", *arguments, "-fa", "DejaVu Sans Mono", "-fs", "14", "-geometry", "80x20+100+100"]
    program = programs.Program(world.display, world.desktop, [*command, "-e", sys.executable, "-c", RECORDS, str(record)])
    answer = world.probe.read()
    expect(f"nothing is read: {answer}", "text" not in answer and not answer["displaced"])
    x, y = corner(world, program)
    world.desktop.drag((x + 10, y + 12), (x + 300, y + 12))
    text = until("a part of the line is read", lambda: world.probe.read().get("text"))
    expect(f"it is what was dragged over: {text!r}", len(text) > 10 and text in "Wort" * 30)
    expect(f"the program has noticed nothing: {record.read_bytes()}", record.read_bytes() == b"")
    world.expect_earlier()
    expect("several lines are not typed", world.probe.put("eins\nzwei\n") == "copied")
    world.copy_earlier()
    world.expect_typed("rm -rf\n")
    until("a line is, without a Return", lambda: record.read_bytes() == b"rm -rf")
    program.close()


def corner(world, program):
    window = world.desktop.display.create_resource_object("window", program.window)
    place = world.desktop.root.translate_coords(window, 0, 0)
    return place.x, place.y


def unknown_terminal(world):
    terminal(world, "-class", "Nobody", "-name", "knowsthis")


PAGE = """<!doctype html><meta charset="utf-8"><title>page</title>
<textarea autofocus style="width: 90vw; height: 80vh" oninput="document.title = 'page ' + value.length">%s</textarea>
"""

QUIET = {
    "browser.aboutwelcome.enabled": False,
    "browser.shell.checkDefaultBrowser": False,
    "browser.startup.homepage_override.mstone": "ignore",
    "datareporting.policy.dataSubmissionEnabled": False,
    "toolkit.telemetry.reportingpolicy.firstRun": False,
    "network.captive-portal-service.enabled": False,
    "network.connectivity-service.enabled": False,
    "browser.safebrowsing.downloads.remote.enabled": False,
    "app.update.enabled": False,
}


def browser(world):
    profile = Path(tempfile.mkdtemp(prefix="vantle-browser-"))
    lines = [f"user_pref({json.dumps(name)}, {json.dumps(value)});" for name, value in QUIET.items()]
    (profile / "user.js").write_text("\n".join(lines))
    page = profile / "page.html"
    page.write_text(PAGE % WORDS)
    environment = dict(os.environ, HOME=str(profile), MOZ_ENABLE_WAYLAND="0")
    command = ["firefox-esr", "--no-remote", "--profile", str(profile), page.as_uri()]
    programs.Program(world.display, world.desktop, command, env=environment)
    until("the page is shown", lambda: "page" in world.title(), 40)
    select_all(world, WORDS)
    world.expect_typed("Zeile eins ✓\nzwei „drei“ 漢字")
    select_all(world, "Zeile eins ✓\nzwei „drei“ 漢字")
    world.expect_typed("y")
    select_all(world, "y")
    world.probe.order("restore")
    nothing_selected(world)


CASES = {
    "GTK editor": gtk_editor,
    "Qt editor": qt_editor,
    "terminal": terminal,
    "unknown terminal": unknown_terminal,
    "browser": browser,
}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--probe", required=True)
    parser.add_argument("--rounds", type=int, default=100)
    parser.add_argument("--readings", type=int, default=10)
    parser.add_argument("--only", default="", help="cases with this in their name")
    options = parser.parse_args()
    os.environ.update(LANG="C.UTF-8", LC_ALL="C.UTF-8")
    failures = 0
    for name, case in CASES.items():
        if options.only not in name:
            continue
        started = time.monotonic()
        with PrivateDisplay() as display:
            try:
                note = case(World(options, display)) or ""
                print(f"ok   {name} ({time.monotonic() - started:.1f} s) {note}", flush=True)
            except StepFailed as failure:
                failures += 1
                print(f"FAIL {name}: {failure}", flush=True)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
