#!/usr/bin/env python3
"""Picks rectangles of private displays as a user does: what comes out is what was on the screen, pixel for pixel."""

import argparse
import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))

from driver.display import PrivateDisplay, run  # noqa: E402
from driver.waiting import StepFailed, expect, until  # noqa: E402
from driver.x import Desktop  # noqa: E402
from Xlib import X  # noqa: E402
from Xlib.ext import xtest  # noqa: E402

WIDTH, HEIGHT = 3200, 1080
# Monitors as x, y, width, height; the second one is the main one, so that the first is left of it, or above.
ARRANGEMENTS = {
    "left of the main one": {"L": (0, 0, 1920, 1080), "M": (1920, 0, 1280, 1080)},
    "above the main one": {"T": (0, 0, 3200, 400), "M": (200, 400, 2560, 680)},
}
SCALES = [(1, 1), (1, 2), (2, 1), (2, 2), (1.25, 1.5)]


class World:
    """A display full of noise, with a window of the user's on it."""

    def __init__(self, program, monitors):
        self.program = program
        self.monitors = monitors
        self.selection = None
        for name, (x, y, width, height) in monitors.items():
            # None of them is an output of the server's but the first.
            output = "screen" if name != "M" else "none"
            shown = "*" + name if name == "M" else name
            run("xrandr", "--setmonitor", shown, f"{width}/{width // 4}x{height}/{height // 4}+{x}+{y}", output)
        self.desktop = Desktop(os.environ["DISPLAY"])
        self._cover_with_noise()
        self.window = self._open_window()

    def _cover_with_noise(self):
        root = self.desktop.root
        pixmap = root.create_pixmap(WIDTH, HEIGHT, 24)
        gc = pixmap.create_gc()
        for y in range(0, HEIGHT, 20):
            pixmap.put_image(gc, 0, y, WIDTH, 20, X.ZPixmap, 24, 0, os.urandom(WIDTH * 20 * 4))
        noise = root.create_window(
            0, 0, WIDTH, HEIGHT, 0, 24, override_redirect=True, background_pixmap=pixmap
        )
        noise.map()
        noise.configure(stack_mode=X.Below)
        self.desktop.display.sync()

    def _open_window(self):
        window = self.desktop.root.create_window(100, 100, 300, 200, 0, 24, background_pixel=0x3377CC)
        window.map()
        # A manager that has only just started, or is taking up new monitors, may leave a new window without the focus.
        self.desktop.activate(window.id)
        until("the window is active", lambda: self.desktop.active_window() == window.id)
        return window

    def begin(self, scales, *options):
        """Starts a selection and waits for its overlays."""
        factors = ";".join(f"{name}={scale}" for name, scale in zip(self.monitors, scales))
        self.selection = Selection(self.program, {"QT_SCREEN_SCALE_FACTORS": factors}, options)
        self.selection.wait()
        return self.selection

    def end_selection(self):
        """One that a failure has left behind."""
        if self.selection and self.selection.runs:
            self.selection.process.kill()
            self.selection.process.wait()

    def hold(self, button, down):
        xtest.fake_input(self.desktop.display, X.ButtonPress if down else X.ButtonRelease, button)
        self.desktop.display.sync()

    def drag(self, start, end):
        self.desktop.drag(start, end, steps=4)

    def pixels(self, x, y, width, height):
        """Red, green and blue of that part of the screen."""
        image = self.desktop.root.get_image(x, y, width, height, X.ZPixmap, 0xFFFFFFFF).data
        return width, height, b"".join(image[i : i + 3][::-1] for i in range(0, len(image), 4))


class Selection:
    """A running selection, and the picture that it writes."""

    def __init__(self, program, environment, options):
        folder = tempfile.mkdtemp()
        self.path = Path(folder) / "selection.ppm"
        self.process = subprocess.Popen(
            [program, *options, "Image to URL", "link.badge.plus", str(self.path)],
            env=os.environ | environment | {"XDG_RUNTIME_DIR": folder},
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
        )
        self.milliseconds = 0

    def wait(self):
        words = self.process.stdout.readline().split()
        expect(f"the overlays show: {words}", words and words[0] == "selecting")
        self.milliseconds = int(words[1])

    @property
    def runs(self):
        return self.process.poll() is None

    def picture(self):
        """Width, height and the bytes of the picture; none when it was cancelled."""
        until("the selection ends", lambda: not self.runs)
        complaint = self.process.stderr.read().strip()
        expect(f"it ends well: {complaint}", not complaint and self.process.returncode in (0, 1))
        if self.process.returncode:
            return None
        _, size, _, pixels = self.path.read_bytes().split(b"\n", 3)
        return *map(int, size.split()), pixels


def exact(world, scales):
    """Drags on either screen, to all sides, and up to the last pixel."""
    world.desktop.move_pointer(5, 5)
    for x, y, width, height in world.monitors.values():
        right, bottom = x + width, y + height
        drags = [
            ((x + 40, y + 60), (x + 240, y + 160), (x + 40, y + 60, 200, 100)),
            ((x + 333, y + 155), (x + 131, y + 54), (x + 131, y + 54, 202, 101)),
            ((right - 50, bottom - 40), (right - 1, bottom - 1), (right - 50, bottom - 40, 50, 40)),
        ]
        for start, end, area in drags:
            wanted = world.pixels(*area)
            selection = world.begin(scales)
            expect("the window stays the active one", world.desktop.active_window() == world.window.id)
            # A compositor takes its time.
            until("the screen is dimmed", lambda: world.pixels(*area) != wanted)
            world.drag(start, end)
            picture = selection.picture()
            expect(f"{area} is {wanted[:2]}: {picture and picture[:2]}", picture and picture[:2] == wanted[:2])
            expect(f"{area} is what was on the screen", picture == wanted)
            until("the overlays are gone", lambda: world.pixels(*area) == wanted)


def cancelled(world):
    """Clicks and slivers do not end it, Escape and the other button do; the keyboard goes back."""
    before = world.pixels(100, 100, 300, 200)
    for end in (lambda: world.desktop.press("Escape"), lambda: world.hold(3, True) or world.hold(3, False)):
        selection = world.begin((1, 2))
        world.desktop.click(500, 500)
        world.drag((500, 500), (503, 700))
        world.desktop.press("a")
        time.sleep(0.1)
        expect("it still runs", selection.runs)
        end()
        expect("there is no picture", selection.picture() is None)
        expect("the window is the active one", world.desktop.active_window() == world.window.id)
        until("the overlays are gone", lambda: world.pixels(100, 100, 300, 200) == before)


def without_our_panels(world):
    """A panel of ours that is up when the selection begins is in no picture."""
    wanted = world.pixels(250, 150, 700, 240)
    for _ in range(5):
        selection = world.begin((1, 1), "--toast")
        world.drag((250, 150), (950, 390))
        expect("the panel is not in the picture", selection.picture() == wanted)


def screen_changes_meanwhile(world):
    """What the user saw when dragging is what comes out; the program behind may go on."""
    wanted = world.pixels(90, 90, 400, 300)
    selection = world.begin((1, 1))
    world.window.change_attributes(background_pixel=0xFF0000)
    world.window.clear_area(0, 0, 0, 0)
    world.drag((90, 90), (490, 390))
    expect("the picture is what was seen", selection.picture() == wanted)
    world.window.change_attributes(background_pixel=0x3377CC)
    world.window.clear_area(0, 0, 0, 0)
    world.desktop.display.sync()


def monitor_goes(world):
    """A selection ends when the screens change under it."""
    selection = world.begin((1, 1))
    run("xrandr", "--delmonitor", "M")
    expect("there is no picture", selection.picture() is None)


def cases(monitors):
    for scales in SCALES:
        yield f"exact at {scales[0]:g} and {scales[1]:g}", lambda world, scales=scales: exact(world, scales)
    yield "cancelled", cancelled
    yield "without our panels", without_our_panels
    yield "the screen changes meanwhile", screen_changes_meanwhile
    yield "a monitor goes", monitor_goes


def check(case, world):
    started = time.monotonic()
    try:
        case(world)
        return True, f"{time.monotonic() - started:.1f} s"
    except StepFailed as failure:
        world.end_selection()
        return False, str(failure)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--select-region", required=True)
    parser.add_argument("--wm", action="append", help="the window managers")
    parser.add_argument("--only", default="", help="cases with this in their name")
    options = parser.parse_args()
    failures = 0
    for manager in options.wm or ["openbox", "xfwm4"]:
        for place, monitors in ARRANGEMENTS.items():
            with PrivateDisplay(window_manager=manager, screen=f"{WIDTH}x{HEIGHT}"):
                world = World(options.select_region, monitors)
                for name, case in cases(monitors):
                    if options.only not in f"{manager} {place}: {name}":
                        continue
                    passed, outcome = check(case, world)
                    failures += not passed
                    print(f"{'ok  ' if passed else 'FAIL'} {manager}, {place}: {name} ({outcome})", flush=True)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
