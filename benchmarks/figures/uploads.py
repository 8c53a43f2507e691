"""File Drop: a tree of 1 GB packed beside Info-ZIP, and 256 MB uploaded beside curl, both to one service on loopback."""

import json
import os
import random
import subprocess
import tempfile
import time
from pathlib import Path

from driver.application import Application
from driver.service import Service

from .figure import Figure, median

TREE_BYTES = 1_000_000_000
FILE_BYTES = 1_000_000
UPLOAD_BYTES = 256_000_000
ROUNDS = 5
MEMORY_MB = 16
# What source trees are full of.
WORDS = [word.encode() for word in "the return value of a function is int const auto void for while if else".split()]


def figures(vantle, service, packer):
    with tempfile.TemporaryDirectory(prefix="vantle-bench-") as folder:
        yield from zip_rows(packer, Path(folder))
    with tempfile.TemporaryDirectory(prefix="vantle-bench-") as folder:
        yield from upload_rows(vantle, service, Path(folder))


def zip_rows(packer, folder):
    tree = write_tree(folder / "tree")
    ours = folder / "ours.zip"
    taken = json.loads(subprocess.run([packer, tree, ours], capture_output=True, text=True, check=True).stdout)
    subprocess.run(["unzip", "-tq", ours], check=True, stdout=subprocess.DEVNULL)
    theirs = folder / "theirs.zip"
    started = time.monotonic()
    subprocess.run(["zip", "-r", "-q", theirs, tree.name], cwd=folder, check=True)
    peer = time.monotonic() - started
    size = TREE_BYTES / 1e6
    row = Figure("zip of a 1 GB tree", 1000 * size / taken["ms"], "MB/s", size / peer, "higher", note=sizes(ours, theirs))
    yield row.against("Info-ZIP", size / peer)
    yield Figure("the same, memory grown", taken["grown_kb"] / 1024, "MB", 64)


def sizes(ours, theirs):
    return f"{ours.stat().st_size / 1e6:.0f} MB, Info-ZIP's {theirs.stat().st_size / 1e6:.0f} MB"


def write_tree(folder):
    """Nine tenths text, one tenth what is compressed already, in files of 1 MB."""
    chance = random.Random(1)
    for number in range(TREE_BYTES // FILE_BYTES):
        file = folder / f"{number // 50:02d}" / f"{number:04d}.txt"
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(chance.randbytes(FILE_BYTES) if number % 10 == 0 else text(chance))
    return folder


def text(chance):
    line = b" ".join(chance.choices(WORDS, k=4_000)) + b"\n"
    pieces = [line[(start := chance.randrange(len(line) // 2)) : start + chance.randrange(200)] for _ in range(12_000)]
    return b"\n".join(pieces)[:FILE_BYTES].ljust(FILE_BYTES, b".")


def upload_rows(vantle, program, folder):
    large, small = folder / "large.bin", folder / "small.bin"
    large.write_bytes(os.urandom(UPLOAD_BYTES))
    service = Service(program, "--embedded")
    application = Application(vantle, accessible=False)
    try:
        service.start()
        application.write_json(
            "BulkUpload/config.json", {"endpoint": f"http://127.0.0.1:{service.port}/v1/upload", "token": service.token}
        )
        idle = 0
        ours, theirs, peaks = [], [], []
        for _ in range(ROUNDS):
            # Content that the service has already would be another task.
            with open(large, "r+b") as file:
                file.write(os.urandom(16))
            small.write_bytes(os.urandom(16))
            _, idle = run([vantle, "upload", small], application.environment)
            taken, peak = run([vantle, "upload", large], application.environment)
            ours.append(taken)
            peaks.append(peak)
            with open(large, "r+b") as file:
                file.write(os.urandom(16))
            theirs.append(run(curl(service, large), os.environ)[0])
    finally:
        application.close()
        service.close()
    size = UPLOAD_BYTES / 1e6
    row = Figure("upload of 256 MB on loopback", size / median(ours), "MB/s", 0.9 * size / median(theirs), "higher")
    yield row.against("curl", size / median(theirs))
    yield Figure("the same, peak memory over a small upload", (max(peaks) - idle) / 1024, "MB", MEMORY_MB)


def curl(service, file):
    url = f"http://127.0.0.1:{service.port}/v1/upload"
    return ["curl", "-sSf", "-o", "/dev/null", "-H", f"Authorization: Bearer {service.token}", "-F", f"files=@{file}", url]


def run(command, environment):
    """Seconds, and the peak of the process's own memory in KB: what the system tells at its end includes its parent's."""
    started = time.monotonic()
    process = subprocess.Popen([str(part) for part in command], env=environment, stdout=subprocess.DEVNULL)
    peak = 0
    while process.poll() is None:
        peak = max(peak, high_water(process.pid))
        time.sleep(0.002)
    if process.returncode:
        raise RuntimeError(f"{command[0]} failed")
    return time.monotonic() - started, peak


def high_water(pid):
    try:
        lines = Path(f"/proc/{pid}/status").read_text().splitlines()
    except OSError:
        return 0
    return next((int(line.split()[1]) for line in lines if line.startswith("VmHWM:")), 0)
