"""Everything that is compiled on a Mac beside its backend, as far as that can be known here: by clang, with the C++ library
that is used there, with the widths that its C library gives its types, and as CMake configures it as on a Mac."""

import json
import os
import re
import shlex
import subprocess
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from checks import macos

# What this C library calls them, and what they are there. The length of 64 bits is the trap: here int64_t is a long, which
# deduces and overloads as other types of this library do that are something else there.
WIDTHS = {
    "types.h": {
        r"^typedef signed long int __int64_t;": "typedef signed long long int __int64_t;",
        r"^typedef unsigned long int __uint64_t;": "typedef unsigned long long int __uint64_t;",
    },
    "typesizes.h": {
        rf"(__{name}_T_TYPE)\s.*": rf"\1 {width}"
        for name, width in {
            "OFF": "long long", "BLKCNT": "long long", "INO": "unsigned long long", "RLIM": "unsigned long long",
            "MODE": "unsigned short", "NLINK": "unsigned short", "DEV": "int", "BLKSIZE": "int", "SUSECONDS": "int",
            "FSBLKCNT": "unsigned int", "FSFILCNT": "unsigned int", "CLOCK": "unsigned long",
        }.items()
    },
}  # fmt: skip
# Almost every file reads these first, so they are read once.
COMMON = ("QObject", "QString", "QByteArray", "QList", "QHash", "QJsonObject", "QDateTime")


def problems(backend, only=()):
    """What does not compile, or is warned about. `only`: parts of paths below src/; the others are left out."""
    configured = macos.configuration(backend)
    if configured.problem:
        return [configured.problem]
    database = json.loads((backend.work / "cmake/compile_commands.json").read_text())
    entries = [entry for entry in database if is_portable(backend, entry["file"])]
    compiler = Compiler(backend.work, entries)
    wanted = [entry for entry in entries if not only or any(part in entry["file"] for part in only)]
    if not wanted:
        return [f"there is nothing like {' or '.join(only)}"]
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        return [answer for answer in pool.map(compiler.problem, wanted) if answer]


def is_portable(backend, path):
    return path.startswith(f"{backend.root}/src/") and path.endswith(".cpp") and Path(path).parent != backend.folder


class Compiler:
    """Its switches are the same for every file, as a header that is read once asks for; all but what the project defines
    for a single file."""

    def __init__(self, work, entries):
        self.work = work
        switches = []
        for entry in entries:
            switches += [switch for switch in shared(shlex.split(entry["command"])) if switch not in switches]
        self.command = [macos.CLANG, "-stdlib=libc++", "-std=c++23", "-D_LIBCPP_ENABLE_EXPERIMENTAL", "-Werror",
                        "-isystem", str(self.widths()), *(word for switch in switches for word in switch)]  # fmt: skip
        header = work / "common.h"
        header.write_text("".join(f"#include <{name}>\n" for name in COMMON))
        subprocess.run([*self.command, "-x", "c++-header", header, "-o", work / "common.pch"], check=True)

    def widths(self):
        target = subprocess.run([macos.CLANG, "-print-target-triple"], capture_output=True, text=True, check=True).stdout
        system = Path("/usr/include") / re.sub("-(pc|unknown)-", "-", target.strip()) / "bits"
        folder = self.work / "widths"
        (folder / "bits").mkdir(parents=True, exist_ok=True)
        for name, changes in WIDTHS.items():
            text = (system / name).read_text()
            for before, after in changes.items():
                text, count = re.subn(before, after, text, flags=re.MULTILINE)
                assert count, f"{name} has no {before}"
            (folder / "bits" / name).write_text(text)
        return folder

    def problem(self, entry):
        own = [word for word in shlex.split(entry["command"]) if word.startswith("-DVANTLE_")]
        command = [*self.command, *own, "-include-pch", self.work / "common.pch", "-fsyntax-only", entry["file"]]
        done = subprocess.run(command, capture_output=True, text=True, check=False, cwd=entry["directory"])
        return f"{entry['file']} does not compile as on a Mac:\n{done.stderr.strip()}" if done.returncode else None


def shared(words):
    """The switches of a call that are not about its own file, each with its argument."""
    for word, following in zip(words, [*words[1:], ""], strict=True):
        if word == "-isystem":
            yield word, following
        elif re.match(r"-I|-D(?!VANTLE_)|-W(?!error)", word):
            yield (word,)
