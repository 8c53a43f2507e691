#!/usr/bin/env python3
"""Vantle under a Wayland compositor that lays windows over one another: its panels are shown, and go."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))

from driver import compositor  # noqa: E402
from driver.waiting import expect, until  # noqa: E402


class Test(compositor.SessionTest):
    def run(self):
        self.the_launcher_is_shown_and_goes()
        self.a_tool_is_shown()
        self.an_unknown_desktop_gets_the_plain_list()

    def the_launcher_is_shown_and_goes(self):
        expect("it succeeds", self.command("summon", "launcher").returncode == 0)
        until("the launcher is there", lambda: self.height("Vantle Launcher"), 15)
        self.command("summon", "launcher")
        until("the launcher goes", lambda: not self.height("Vantle Launcher"), 5)

    def a_tool_is_shown(self):
        self.command("summon", "frequent-clis")
        until("Frequent CLIs is there", lambda: self.height("Frequent CLIs"), 5)

    def an_unknown_desktop_gets_the_plain_list(self):
        told = self.command("doctor").stdout
        expect(f"each combination with its command: {told}", told.count(" summon ") == 18 and "bindsym" not in told)


if __name__ == "__main__":
    compositor.skip_where_impossible(compositor.NEEDED_OF_WESTON)
    compositor.run(__doc__, Test, compositor.WestonSession)
