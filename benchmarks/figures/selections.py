"""A thousand selections of a GTK editor replaced: how many went wrong, and how long reading one takes."""

import re
import subprocess
import sys
from pathlib import Path

from .figure import Figure

TEST = Path(__file__).resolve().parents[2] / "tests" / "e2e" / "selection" / "selection_test.py"
ROUNDS = 1000
# A reading is over in half a second when nothing is selected; a copy should not take a person's time.
TARGET_READ_MS = 100


def figures(probe):
    command = [sys.executable, TEST, "--probe", probe, "--only", "GTK", "--rounds", str(ROUNDS), "--readings", "0"]
    told = subprocess.run(command, capture_output=True, text=True).stdout
    missed = re.search(r"(\d+) misses", told)
    reading = re.search(r"a reading takes (\d+) ms", told)
    if not missed and not reading:
        raise RuntimeError(f"the selections were not measured: {told}")
    rows = [Figure(f"selections replaced wrongly, or with another clipboard left, of {ROUNDS}", int(missed[1]) if missed else 0, "", 0)]
    if reading:
        rows.append(Figure("selection read", int(reading[1]), "ms", TARGET_READ_MS))
    return rows
