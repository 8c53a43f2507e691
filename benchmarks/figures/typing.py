"""Typing into a terminal: how fast, and what is lost or wrong, beside xdotool on the same text."""

import os
import subprocess
import sys
import tempfile
import time
from difflib import SequenceMatcher
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tests" / "e2e" / "typing"))

from driver.display import PrivateDisplay  # noqa: E402
from driver.x import Desktop  # noqa: E402
from programs import Terminal  # noqa: E402
from texts import text  # noqa: E402

from .figure import Figure  # noqa: E402

TARGET_A_SECOND = 2000
LENGTH = 100_000
# xdotool changes the keyboard map for every character that the layout lacks; without its usual delay it then loses nine
# characters of ten, and with it a hundred thousand would take half an hour.
PEER_LENGTH = {"ascii": LENGTH, "many": 2000}
PEER_DELAY_MS = {"ascii": 0, "many": 12}
NAMES = {"ascii": "ASCII", "many": "a thousand different characters, most outside the layout"}


def seconds_of(command, words):
    """How long a program takes to type what it reads."""
    start = time.monotonic()
    subprocess.run(command, input=words.encode(), stdout=subprocess.DEVNULL, check=True)
    return time.monotonic() - start


def faults(wanted, got):
    """How many characters of `wanted` did not arrive in their place."""
    if wanted == got:
        return 0
    wanted_lines, lines = wanted.split("\n"), got.split("\n")
    if len(wanted_lines) != len(lines):
        wanted_lines, lines = [wanted], [got]
    return sum(len(a) - matching(a, b) for a, b in zip(wanted_lines, lines) if a != b)


def matching(a, b):
    return sum(block.size for block in SequenceMatcher(None, a, b, autojunk=False).get_matching_blocks())


def measure(terminal, command, words):
    """(characters a second, lost or wrong) of one text."""
    terminal.clear()
    seconds = seconds_of(command, words)
    got = terminal.settled(len(words))
    return len(words) / seconds, faults(words, got)


def figures(binary):
    os.environ.update(LANG="C.UTF-8", LC_ALL="C.UTF-8")
    rows = []
    for kind, name in NAMES.items():
        with PrivateDisplay() as display, tempfile.TemporaryDirectory() as folder:
            terminal = Terminal(display, Desktop(display.name), folder)
            speed, wrong = measure(terminal, [binary], text(kind, LENGTH))
            peer_words = text(kind, PEER_LENGTH[kind])
            peer = ["xdotool", "type", "--delay", str(PEER_DELAY_MS[kind]), "--file", "-"]
            peer_speed, peer_wrong = measure(terminal, peer, peer_words)
        rows += [
            Figure(f"typing, {name}", speed, "/s", TARGET_A_SECOND, "higher", "xdotool", peer_speed),
            Figure(f"lost or wrong of {LENGTH:,}, {name}".replace(",", " ", 1), wrong, "", 0)
            .against("xdotool", peer_wrong * LENGTH / len(peer_words)),
        ]
    return rows
