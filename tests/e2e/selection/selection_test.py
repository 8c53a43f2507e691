#!/usr/bin/env python3
"""Reads and replaces the selection of real programs: the right text, and every byte of the earlier clipboard back.

--rounds replacements in the GTK editor, 40 by default, and before each --readings of them, ten by default.
"""

import argparse
import json
import os
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))
sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "typing"))

from driver import flavours, selecting  # noqa: E402
from driver.display import PrivateDisplay  # noqa: E402
from driver.waiting import StepFailed, expect, stays, until  # noqa: E402
from driver.x import Desktop  # noqa: E402

import programs  # noqa: E402

# Long enough for a busy machine.
RESTORE_S = 3
# For a program that goes on where it was stopped.
LATE_S = 0.5
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
        """Every kind of data, its type, its bytes, in its order; some programs copy twice, which is looked into first."""
        end = time.monotonic() + RESTORE_S
        while True:
            held = self.reader.everything()
            wrong = [name for name, data in self.earlier.items() if held.get(name) != data]
            is_back = not wrong and list(held) == list(self.earlier)
            if is_back or time.monotonic() > end:
                break
            time.sleep(0.01)
        expect(f"the earlier clipboard is back, but for {wrong}", is_back)

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


def select_all(world, text):
    """Selects what stands in the editor; until it shows what was typed last, that may be less."""
    deadline = time.monotonic() + 30
    while True:
        world.desktop.press("Ctrl+a")
        answer = world.probe.read()
        if answer.get("text") == text:
            return answer
        world.probe.order("restore")
        expect(f"{text!r} is read: {answer}", time.monotonic() < deadline)
        # A busy editor copies after all. That is undone as long as nobody has pressed a key since: a user waits, too.
        time.sleep(4 * LATE_S)
        world.expect_earlier()


def whole_loop(world, editor):
    """Read, replaced, and nothing else changed."""
    program = editor(world.display, world.desktop, WORDS)
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
    program = whole_loop(world, selecting.GtkEditor)
    shortcut(world)
    late_copy(world, program)
    another_window(world, program)
    return many_rounds(world)


def qt_editor(world):
    whole_loop(world, selecting.QtEditor)


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


def late_copy(world, program):
    """A program that is busy copies after nobody waits any more: that is undone, and the user's own copy is not."""
    select_all(world, "y")
    world.probe.order("restore")
    world.expect_earlier()
    for pressed in (None, "Shift_L", "Ctrl+c"):
        program.process.send_signal(signal.SIGSTOP)
        answer = world.probe.read()
        expect(f"nothing is read: {answer}", "text" not in answer and not answer["displaced"])
        if pressed:
            world.desktop.press(pressed)
        program.process.send_signal(signal.SIGCONT)
        time.sleep(LATE_S)
        if pressed != "Ctrl+c":
            world.expect_earlier()
    is_users = lambda: (world.reader.everything().get("UTF8_STRING") or (0, 0, 0))[2] == b"y"  # noqa: E731
    until("the user's copy is there", is_users, 10, 0.05)
    stays("the user's copy stays", is_users, LATE_S)
    world.copy_earlier()


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


def terminal(world, *options):
    program = selecting.InterruptibleTerminal(world.display, world.desktop, *options)
    answer = world.probe.read()
    expect(f"nothing is read: {answer}", "text" not in answer and not answer["displaced"])
    program.select_part()
    text = until("a part of the line is read", lambda: world.probe.read().get("text"))
    expect(f"it is what was dragged over: {text!r}", len(text) > 10 and text in program.LINE)
    expect(f"the program has noticed nothing: {program.noticed()}", program.noticed() == b"")
    world.expect_earlier()
    expect("several lines are not typed", world.probe.put("eins\nzwei\n") == "copied")
    world.copy_earlier()
    world.expect_typed("rm -rf\n")
    until("a line is, without a Return", lambda: program.noticed() == b"rm -rf")
    program.close()


def unknown_terminal(world):
    terminal(world, "-class", "Nobody", "-name", "knowsthis")


def browser(world):
    selecting.Browser(world.display, world.desktop, WORDS)
    select_all(world, WORDS)
    world.expect_typed("Zeile eins ✓\nzwei „drei“ 漢字")
    select_all(world, "Zeile eins ✓\nzwei „drei“ 漢字")
    world.expect_typed("y")
    select_all(world, "y")
    world.probe.order("restore")
    nothing_selected(world)


def the_end(world):
    """What has been put back outlives the program where there is a clipboard manager, and does not hold it up."""
    manager = flavours.Manager()
    selecting.GtkEditor(world.display, world.desktop, WORDS)
    select_all(world, WORDS)
    world.probe.order("restore")
    world.expect_earlier()
    world.probe.process.stdin.close()
    world.probe.process.wait(3)
    expect("the manager has everything", manager.saved == world.earlier)


CASES = {
    "GTK editor": gtk_editor,
    "Qt editor": qt_editor,
    "terminal": terminal,
    "unknown terminal": unknown_terminal,
    "browser": browser,
    "end of the program": the_end,
}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--probe", required=True)
    parser.add_argument("--rounds", type=int, default=40)
    parser.add_argument("--readings", type=int, default=10)
    parser.add_argument("--only", default="", help="cases with this in their name")
    parser.add_argument("--wm", default="openbox", help="the window manager")
    options = parser.parse_args()
    os.environ.update(LANG="C.UTF-8", LC_ALL="C.UTF-8")
    failures = 0
    for name, case in CASES.items():
        if options.only not in name:
            continue
        if case is browser and not selecting.Browser.is_installed():
            print(f"skip {name}: none is installed")
            continue
        started = time.monotonic()
        with PrivateDisplay(window_manager=options.wm) as display:
            try:
                note = case(World(options, display)) or ""
                print(f"ok   {name} ({time.monotonic() - started:.1f} s) {note}", flush=True)
            except StepFailed as failure:
                failures += 1
                print(f"FAIL {name}: {failure}", flush=True)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
