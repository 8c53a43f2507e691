"""The program in one appearance at one scale, and a camera for its windows."""

import uuid
from collections import namedtuple
from pathlib import Path

from driver.agents import claude_session, codex_session
from driver.application import Application
from driver.display import run
from driver.waiting import expect, until
from driver.x import Desktop

from . import tree

Look = namedtuple("Look", "appearance scale")
# By the file that says of what kind each is; the newest first.
PROJECTS = {"checkout": "Cargo.toml", "Größe 日本": "Dockerfile", "a site with a long name and more": "go.mod"}
LOOKS = [Look("light", 1), Look("dark", 1), Look("light", 2), Look("dark", 2)]


class Stage:
    """Owns the running program. Boxes of the accessibility tree are `scale` times smaller than the screen's pixels."""

    def __init__(self, display, binary, pictures, look):
        self.display = display
        self.desktop = Desktop(display.name)
        self.pictures = pictures
        self.look = look
        self.application = Application(binary)
        self.application.environment["QT_SCALE_FACTOR"] = str(look.scale)
        self.application.write_json("app-settings.json", {"appearance": look.appearance})
        self.application.write_commands()
        self.write_template_folders()
        self.write_projects()

    def write_template_folders(self):
        """Two for Boilerplates, one behind a long path."""
        entries = []
        for folder in ("web", "a long way down to the templates of everybody who works here/rust command line"):
            path = Path(self.application.home.name) / "templates" / folder
            path.mkdir(parents=True, exist_ok=True)
            entries.append({"id": str(uuid.uuid4()), "name": path.name.capitalize(), "path": str(path)})
        self.application.write_json("boilerplates.json", {"templates": entries, "lastPlace": "/tmp"})

    def write_projects(self):
        """Folders in which the agents have worked."""
        home = Path(self.application.home.name)
        for age, (name, mark) in enumerate(PROJECTS.items(), 1):
            folder = home / "work" / name
            folder.mkdir(parents=True)
            (folder / mark).touch()
            codex_session(home, str(folder), f"Look at {name}", minutes_ago=40 * age)
            if age % 2:
                claude_session(home, str(folder), ["Add a test"], f"A test for {name}", minutes_ago=300 * age)

    def start(self):
        self.application.start()
        self.application.wait_until_live()

    def close(self):
        self.application.close()

    @property
    def name(self):
        return f"{self.look.appearance}-{self.look.scale}x"

    # What is on the screen

    def shape(self, title):
        """The window of that title in the screen's pixels, None when it does not show."""
        return next((window for window in self.shapes() if window.title == title), None)

    def shapes(self):
        return self.desktop.windows_of(self.application.pid)

    def tree(self, title):
        """What a screen reader gets of the window of that title."""
        return until(f"“{title}” can be read", lambda: self.readable(title), 5)

    def readable(self, title):
        return next((window for window in tree.windows(self.application.pid) if window.name == title), None)

    def control(self, title, name, *roles):
        """The first showing control whose name begins so; None without one."""
        window = self.readable(title)
        found = (control for control in window or () if control.name.startswith(name))
        return next((control for control in found if not roles or control.role in roles), None)

    def wait_for(self, title, name, *roles):
        return until(f"“{name}” is in “{title}”", lambda: self.control(title, name, *roles), 5)

    def pixels(self, box):
        """What is drawn in a box of the tree."""
        scale, screen = self.look.scale, self.desktop.screen_size
        left, top = max(0, box.x * scale), max(0, box.y * scale)
        right, bottom = min(screen[0], box.right * scale), min(screen[1], box.bottom * scale)
        return self.desktop.pixels(left, top, right - left, bottom - top)

    # What a user does

    def summon(self, name):
        answer = self.application.ask({"do": "summon", "what": name})
        expect(f"{name} is summoned: {answer}", answer == {"ok": True})

    def open(self, name, title):
        self.summon(name)
        shape = until(f"“{title}” is shown", lambda: self.shape(title))
        until(f"“{title}” is the active window", lambda: self.desktop.active_window() == shape.id)

    def click(self, control):
        box = control.fresh_box()
        scale = self.look.scale
        self.desktop.click((box.x + box.width // 2) * scale, (box.y + box.height // 2) * scale)
        self.desktop.move_pointer(2, 2)

    def close_window(self, title):
        self.desktop.press("Escape")
        until(f"Escape closes “{title}”", lambda: not self.shape(title))

    # Pictures

    def picture(self, name, shape):
        """A PNG of a window once it stands still."""
        self.settle(shape)
        run("maim", "-u", "-i", str(shape.id), str(self.pictures / f"{name}-{self.name}.png"))

    def settle(self, shape):
        before = None

        def stands_still():
            nonlocal before
            now = self.desktop.pixels(shape.x, shape.y, shape.width, shape.height)
            same, before = now == before, now
            return same

        until("the window stands still", stands_still, 3, 0.03)
