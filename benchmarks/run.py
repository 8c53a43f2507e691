#!/usr/bin/env python3
"""Measures the program beside its peers on a private display, prints a table and writes it as JSON."""

import argparse
import json
import os
import platform
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path[:0] = [str(ROOT / folder) for folder in ("tests/e2e", "benchmarks")]

from driver.display import PrivateDisplay  # noqa: E402
from driver.x import Desktop  # noqa: E402
from figures import (  # noqa: E402
    answers,
    capture,
    escapes,
    histories,
    links,
    palette,
    selections,
    service,
    sessions,
    start,
    typing,
    uploads,
    windows,
)

HEADINGS = ["figure", "measured", "target", "peer", "times as good"]


def main():
    options = arguments()
    with PrivateDisplay() as display:
        desktop = Desktop(display.name)
        desktop.move_pointer(960, 900)
        rows = [
            figure
            for measured in (palette, histories, windows, links, escapes, start)
            for figure in measured.figures(desktop, options.vantle)
        ]
    rows += typing.figures(options.typing)
    rows += selections.figures(options.selection)
    rows += sessions.figures(options.scan)
    rows += capture.figures(options.capture)
    rows += service.figures(options.service, options.load)
    rows += answers.figures(options.service)
    rows += uploads.figures(options.vantle, options.service, options.pack)
    print(table([figure.as_row() for figure in rows]))
    report = {"machine": machine(), "figures": [figure.as_json() for figure in rows]}
    Path(options.out).write_text(json.dumps(report, indent=2, ensure_ascii=False) + "\n")
    missed = [figure.name for figure in rows if not figure.met]
    if missed:
        print("Missed: " + "; ".join(missed))
    return 1 if missed else 0


def arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--vantle", required=True, help="the program")
    parser.add_argument("--typing", required=True, help="the program that types what it reads")
    parser.add_argument("--selection", required=True, help="the program that reads and replaces selections")
    parser.add_argument("--scan", required=True, help="the program that times the scanner")
    parser.add_argument("--capture", required=True, help="the program that times captures")
    parser.add_argument("--service", required=True, help="the service")
    parser.add_argument("--load", required=True, help="the program that puts the service under load")
    parser.add_argument("--pack", required=True, help="the program that packs a folder")
    parser.add_argument("--out", required=True, help="the JSON file to write")
    return parser.parse_args()


def machine():
    model = next((line.split(":")[1].strip() for line in open("/proc/cpuinfo") if line.startswith("model name")), "")
    commit = subprocess.run(["git", "rev-parse", "--short", "HEAD"], cwd=ROOT, capture_output=True, text=True).stdout
    return {"cpu": model, "cores": os.cpu_count(), "system": platform.platform(), "commit": commit.strip()}


def table(rows):
    """A Markdown table, aligned for the eye."""
    widths = [max(len(row[column]) for row in [HEADINGS, *rows]) for column in range(len(HEADINGS))]

    def line(cells):
        return "| " + " | ".join(cell.ljust(width) for cell, width in zip(cells, widths)) + " |"

    return "\n".join([line(HEADINGS), line(["-" * width for width in widths]), *map(line, rows)])


if __name__ == "__main__":
    sys.exit(main())
