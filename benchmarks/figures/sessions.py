"""The scanner over histories of 1 000 and 10 000 transcripts, and a search through all that was said."""

import json
import subprocess
import tempfile
import time

import transcripts

from .figure import Figure

RUNS = 15
# What nobody has said, so that every file is read to its end; its words, but not in this order, fill every other line;
# and what has been said in a third of all conversations.
SEARCHES = {
    "a phrase nobody said": "zebra crossing at noon",
    "frequent words": "keep the order lost",
    "a frequent phrase": "what was lost",
}
TARGETS_MS = {20: 50, 400: 100}
TARGET_MEMORY_MB = 40
TARGET_SEARCH_MS = 2_000


def figures(program):
    rows = []
    for files in (1_000, 10_000):
        with tempfile.TemporaryDirectory(prefix="vantle-bench-") as home:
            size = transcripts.write_history(home, files)
            rows += [row for limit in TARGETS_MS for row in scan_rows(program, home, files, limit)]
            if files == 10_000:
                rows += [search_row(program, home, size, kind) for kind in SEARCHES]
    return rows


def scan_rows(program, home, files, limit):
    taken = measure(program, home, str(limit), str(RUNS))
    name = f"{files} transcripts, limit {limit}"
    yield Figure(f"{name}, warm", taken["warm"], "ms", TARGETS_MS[limit]).against("ripgrep", ripgrep(home, '"cwd":'))
    yield Figure(f"{name}, beside a plain list and read", taken["warm"] / taken["floor"], "×", 2)
    yield Figure(f"{name}, cold", taken["cold"], "ms", 10 * TARGETS_MS[limit], note="files out of the system's cache")
    if files == 10_000:
        yield Figure(f"{name}, memory over idle", taken["grown_kb"] / 1024, "MB", TARGET_MEMORY_MB)


def search_row(program, home, size, kind):
    taken = measure(program, home, "search", SEARCHES[kind])
    name = f"searching {size / 1e9:.1f} GB of conversations for {kind}"
    row = Figure(name, taken["warm"], "ms", TARGET_SEARCH_MS, note=f"{taken['hits']} conversations found")
    return row.against("ripgrep -i", ripgrep(home, SEARCHES[kind], "-i"))


def measure(program, *arguments):
    return json.loads(subprocess.run([program, *arguments], capture_output=True, text=True, check=True).stdout)


def ripgrep(home, wanted, *options):
    """Milliseconds, the better of two."""
    best = float("inf")
    for _ in range(2):
        started = time.monotonic()
        subprocess.run(["rg", "--hidden", "--count", "--fixed-strings", *options, wanted, home], capture_output=True)
        best = min(best, 1000 * (time.monotonic() - started))
    return best
