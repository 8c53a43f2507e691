#!/usr/bin/env python3
"""Prints CHANGELOG.md as Debian writes changelogs: changelog.py PACKAGE REVISION "NAME <ADDRESS>" < CHANGELOG.md."""

import re
import sys
import textwrap
from datetime import datetime, timezone
from email.utils import format_datetime

HEADING = re.compile(r"^## \[([0-9.]+)\] - (\d{4}-\d\d-\d\d)$")


def releases(text):
    """(version, day, items) of each version with a date, the newest first."""
    found = []
    for line in text.splitlines():
        if heading := HEADING.match(line):
            found.append((heading[1], heading[2], []))
        elif line.startswith("## "):
            found.append((None, None, []))
        elif found and line.startswith("- "):
            found[-1][2].append(line[2:])
        elif found and line.startswith("  ") and found[-1][2]:
            found[-1][2][-1] += " " + line.strip()
    return [release for release in found if release[0]]


def stanza(package, revision, maintainer, release):
    version, day, items = release
    date = format_datetime(datetime.fromisoformat(day + "T12:00:00").replace(tzinfo=timezone.utc))
    lines = [f"{package} ({version}-{revision}) unstable; urgency=medium", ""]
    for item in items:
        plain = item.replace("**", "").replace("`", "")
        lines += textwrap.wrap(plain, 76, initial_indent="  * ", subsequent_indent="    ", break_on_hyphens=False)
    return "\n".join([*lines, "", f" -- {maintainer}  {date}", ""])


def main():
    package, revision, maintainer = sys.argv[1:]
    print("\n".join(stanza(package, revision, maintainer, release) for release in releases(sys.stdin.read())), end="")


if __name__ == "__main__":
    main()
