"""The service under load: 200 uploads at once beside 2 000 small requests a second, on this machine's cores."""

import json
import subprocess
from pathlib import Path

from driver.service import Service

from .figure import Figure

UPLOADS = 200
UPLOAD_BYTES = 100_000
REQUESTS = 2_000
SECONDS = 10


def figures(program, driver):
    service = Service(program, "--embedded")
    try:
        service.start()
        alone = drive(driver, service, 0)
        idle = memory(service, "VmRSS")
        loaded = drive(driver, service, UPLOADS)
        peak = memory(service, "VmHWM")
    finally:
        service.close()
    failed = sum(taken[f"{kind}_failed"] for taken in (alone, loaded) for kind in ("requests", "uploads"))
    beside = f"service, {UPLOADS} uploads at once beside {REQUESTS} requests/s"
    yield Figure(f"service at {REQUESTS} requests/s: answered, p99", alone["p99_ms"], "ms", 10)
    yield Figure(f"{beside}: answered", loaded["requests_per_second"], "/s", 0.95 * REQUESTS, "higher")
    yield Figure(f"{beside}: answered, p99", loaded["p99_ms"], "ms", 500)
    yield Figure(f"{beside}: uploads", loaded["uploads_per_second"], "/s", 200, "higher")
    yield Figure(f"{beside}: failed", failed, "requests", 0)
    yield Figure(f"{beside}: memory over idle", (peak - idle) / 1024, "MB", 48)


def drive(driver, service, uploads):
    """What the load driver tells; it fails when a request does, which is a figure here."""
    numbers = [service.port, service.token, uploads, UPLOAD_BYTES, REQUESTS, SECONDS]
    return json.loads(subprocess.run([driver, *map(str, numbers)], capture_output=True, text=True).stdout)


def memory(service, what):
    """In KB."""
    return int(Path(f"/proc/{service.process.pid}/status").read_text().split(what + ":")[1].split()[0])
