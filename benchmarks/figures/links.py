"""Image to URL: from the shortcut to the link on the clipboard, beside curl with the same picture and the same service."""

import os
import struct
import subprocess
import tempfile
import time
import zlib
from pathlib import Path

from driver import clipboard
from driver.application import Application
from driver.waiting import until

from .figure import Figure, median, p95

ROUNDS = 30
WIDTH, HEIGHT = 640, 540
TARGET, TARGET_P95 = 100, 200


def figures(desktop, vantle):
    application = Application(vantle, accessible=False)
    try:
        application.write_settings()
        application.write_json("app-settings.json", {"toastDuration": 2, "soundOnComplete": False})
        application.start()
        application.wait_until_live()
        service = until("the built-in service runs", lambda: application.ask({"do": "service"}), 15)
        ours, theirs = [], []
        for _ in range(ROUNDS):
            ours.append(link(desktop))
            theirs.append(curl(service))
    finally:
        application.close()
    name = "image of 1 MB copied, shortcut → link on the clipboard"
    yield Figure(name + ", median", median(ours), "ms", TARGET).against("curl", median(theirs))
    yield Figure("the same, 95th percentile", p95(ours), "ms", TARGET_P95).against("curl", p95(theirs))


def picture():
    """Noise, so that it has its size and no two are the same."""

    def chunk(kind, content):
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

    rows = b"".join(b"\0" + os.urandom(3 * WIDTH) for _ in range(HEIGHT))
    head = struct.pack(">IIBBBBB", WIDTH, HEIGHT, 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", zlib.compress(rows, 0)) + chunk(b"IEND", b"")


def link(desktop):
    clipboard.copy(picture(), "image/png")
    atom = desktop.display.intern_atom("CLIPBOARD")
    copied = desktop.display.get_selection_owner(atom)
    started = time.perf_counter()
    desktop.press("Ctrl+Alt+U")
    until("somebody else owns the clipboard", lambda: desktop.display.get_selection_owner(atom) != copied, 10, 0.0002)
    taken = time.perf_counter() - started
    text = clipboard.text()
    if not text.startswith("http://127.0.0.1:"):
        raise RuntimeError(f"no link: {text[:80]!r}")
    return 1000 * taken


def curl(service):
    with tempfile.TemporaryDirectory(prefix="vantle-bench-") as folder:
        file = Path(folder) / "picture.png"
        file.write_bytes(picture())
        command = ["curl", "-sSf", "-o", "/dev/null", "-H", f"Authorization: Bearer {service['token']}"]
        started = time.perf_counter()
        subprocess.run([*command, "-F", f"file=@{file}", service["url"] + "/v1/images"], check=True)
        return 1000 * (time.perf_counter() - started)
