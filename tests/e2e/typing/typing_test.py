#!/usr/bin/env python3
"""Types into a terminal, a GTK and a Qt editor on private displays: nothing lost, nothing left behind.

--full types 100 000 characters a case, which takes a quarter of an hour; the default does a few thousand.
"""

import argparse
import os
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))

from driver.display import PrivateDisplay  # noqa: E402
from driver.waiting import StepFailed, expect, until  # noqa: E402
from driver.x import Desktop  # noqa: E402
from Xlib import X, XK  # noqa: E402
from Xlib.ext import xtest  # noqa: E402

import programs  # noqa: E402
from texts import difference, text  # noqa: E402

MODIFIERS = {"Control": "Control_L", "Alt": "Alt_L", "Shift": "Shift_L", "Super": "Super_L"}
LOCK = 2


class World:
    """A display with one program to type into."""

    def __init__(self, options, display, layout, name):
        subprocess.run(["setxkbmap", layout], check=True)
        self.options = options
        self.desktop = Desktop(display.name)
        self.display = self.desktop.display
        self.folder = tempfile.mkdtemp()
        make = {
            "terminal": lambda: programs.Terminal(display, self.desktop, self.folder),
            "qt": lambda: programs.QtEditor(display, self.desktop, self.folder, options.editor),
            "gtk": lambda: programs.GtkEditor(display, self.desktop, self.folder),
        }
        self.program = make[name]()

    def start_typing(self, words, *arguments):
        typing = subprocess.Popen(
            [self.options.type_text, *arguments],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
        )
        typing.stdin.write(words.encode())
        typing.stdin.close()
        return typing

    def finish(self, typing):
        """How long the typing took, in seconds."""
        seconds = typing.stdout.read()
        complaint = typing.stderr.read().decode().strip()
        expect(f"typing ends well: {complaint}", typing.wait() == 0 and not complaint)
        return float(seconds)

    def type(self, words, *arguments):
        return self.finish(self.start_typing(words, *arguments))

    def expect_text(self, words):
        fault = difference(words, self.program.settled(len(words)))
        expect(fault, not fault)

    def hold(self, name, down):
        code = self.display.keysym_to_keycode(XK.string_to_keysym(MODIFIERS[name]))
        xtest.fake_input(self.display, X.KeyPress if down else X.KeyRelease, code)
        self.display.sync()

    def state(self):
        """The modifiers, held or locked."""
        return self.desktop.root.query_pointer().mask & 0xFF


def keyboard_map():
    """Every symbol, type and action of the server's map."""
    return subprocess.run(["xkbcomp", os.environ["DISPLAY"], "-"], capture_output=True, check=True).stdout


def exact(world, kind, length):
    """Types a text and compares; returns characters a second."""
    world.program.clear()
    words = text(kind, length)
    before = keyboard_map()
    seconds = world.type(words)
    world.expect_text(words)
    expect("the keyboard map is as before", keyboard_map() == before)
    expect("nothing is held down", not world.desktop.held_keys() and world.state() == 0)
    return length / seconds


def held(world, name, release):
    """A modifier is down when typing starts; the user lets go "at once", while it types, or "after"."""
    world.program.clear()
    words = text("few", 2500)
    world.hold(name, True)
    mask = world.state()
    typing = world.start_typing(words)
    if release != "after":
        time.sleep(0.1 if release == "at once" else 0.7)
        world.hold(name, False)
    world.finish(typing)
    expect(f"{name} is {'held' if release == 'after' else 'up'} after typing", world.state() == (mask if release == "after" else 0))
    world.hold(name, False)
    expect("nothing is held down", not world.desktop.held_keys() and world.state() == 0)
    world.expect_text(words)


def pressed_while_typing(world):
    """The user leans on Control in the middle."""
    world.program.clear()
    words = text("ascii", 6000)
    typing = world.start_typing(words)
    time.sleep(0.5)
    world.hold("Control", True)
    time.sleep(0.2)
    world.hold("Control", False)
    world.finish(typing)
    expect("nothing is held down", not world.desktop.held_keys() and world.state() == 0)


def frozen(world, kind, length, delay):
    """The program hangs for a second while it is typed into, from the start or some time later."""
    world.program.clear()
    words = text(kind, length)
    before = keyboard_map()
    if not delay:
        world.program.process.send_signal(signal.SIGSTOP)
    typing = world.start_typing(words)
    if delay:
        time.sleep(delay)
        world.program.process.send_signal(signal.SIGSTOP)
    time.sleep(1)
    world.program.process.send_signal(signal.SIGCONT)
    world.finish(typing)
    world.expect_text(words)
    expect("the keyboard map is as before", keyboard_map() == before)


def caps_lock(world):
    world.program.clear()
    world.desktop.press("Caps_Lock")
    expect("Caps Lock is on", world.state() == LOCK)
    words = text("few", 1000)
    world.type(words)
    expect("Caps Lock is still on", world.state() == LOCK)
    world.desktop.press("Caps_Lock")
    world.expect_text(words)


def line_ends_and_controls(world):
    world.program.clear()
    world.type("one\r\ntwo\tthree\x07\x1b[31m\x7f\rfour", "--return")
    world.expect_text("one\ntwo\tthree[31m\nfour\n")


def chord(world):
    world.program.clear()
    world.type("gone")
    world.expect_text("gone")
    world.type("", "--chord", "0")  # A: select all
    world.type("there")
    world.expect_text("there")


def killed(world):
    """Killed while keys are borrowed: the next one to start puts the map right."""
    world.program.clear()
    before = keyboard_map()
    typing = world.start_typing(text("cjk", 20000))
    until("keys are borrowed", lambda: keyboard_map() != before)
    typing.send_signal(signal.SIGKILL)
    typing.wait()
    expect("the map still has the borrowed keys", keyboard_map() != before)
    world.type("a")
    expect("the next start put the map right", keyboard_map() == before)


def cases(full):
    length = 100_000 if full else 3000
    kinds = ["ascii", "accents", "many"] if full else ["many"]
    for program in ("terminal", "gtk", "qt"):
        for kind in kinds:
            yield "us", program, f"{length} {kind}", lambda world, kind=kind: exact(world, kind, length)
    for layout in ("de", "fr"):
        for program in ("terminal", "gtk", "qt"):
            yield layout, program, f"{length} accents", lambda world: exact(world, "accents", length)
    for name in MODIFIERS:
        for release in ("at once", "meanwhile", "after"):
            for program in ("terminal", "gtk", "qt") if full else ("qt",):
                yield "us", program, f"{name} let go {release}", lambda world, n=name, r=release: held(world, n, r)
    for program in ("terminal", "gtk", "qt") if full else ("terminal",):
        yield "us", program, "hangs when typing starts", lambda world: frozen(world, "few", 600, 0)
    for program in ("terminal", "gtk", "qt") if full else ("qt",):
        yield "us", program, "hangs while keys change hands", lambda world: frozen(world, "many", 2500, 0.5)
    yield "us", "qt", "line ends and control characters", line_ends_and_controls
    yield "us", "qt", "a chord", chord
    yield "de", "qt", "Caps Lock", caps_lock
    yield "us", "qt", "Control pressed while typing", pressed_while_typing
    yield "us", "terminal", "killed while typing", killed


def run(case, world):
    try:
        started = time.monotonic()
        figure = case(world)
        seconds = f"{time.monotonic() - started:.1f} s"
        return True, f"{seconds}, {figure:.0f} characters a second" if figure else seconds
    except StepFailed as failure:
        return False, str(failure)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--type-text", required=True)
    parser.add_argument("--editor", required=True)
    parser.add_argument("--full", action="store_true", help="100 000 characters a case")
    parser.add_argument("--only", default="", help="cases with this in their name")
    parser.add_argument("--wm", default="openbox", help="the window manager")
    options = parser.parse_args()
    os.environ.update(LANG="C.UTF-8", LC_ALL="C.UTF-8")
    wanted = [case for case in cases(options.full) if options.only in " ".join(case[:3])]
    failures = 0
    for place in dict.fromkeys((layout, program) for layout, program, _, _ in wanted):
        with PrivateDisplay(window_manager=options.wm) as display:
            world = World(options, display, *place)
            for layout, program, name, case in wanted:
                if (layout, program) != place:
                    continue
                passed, outcome = run(case, world)
                failures += not passed
                print(f"{'ok  ' if passed else 'FAIL'} {layout} {program}: {name} ({outcome})", flush=True)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
