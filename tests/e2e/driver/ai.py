"""vantle-service with a scripted provider behind it, and what its clients send to the AI endpoints."""

import json
import re
import threading
import time
import unittest
from pathlib import Path

from .provider import Provider, png
from .service import Service, form

PICTURE = png()
OTHER = png(8, 8, (200, 0, 0))
EVENTS = {"Accept": "text/event-stream"}
METRICS = ("--answers", "--text", "--image-answers", "--image-generate")


def picture(name, content=PICTURE, kind="image/png"):
    return (name, f"{name}.png", kind, content)


def field(name, value):
    return (name, None, None, value.encode())


def events(body):
    """(name, data) of each event."""
    found = []
    for block in body.decode().split("\n\n")[:-1]:
        name, data = block.split("\n")
        found.append((name.removeprefix("event: "), json.loads(data.removeprefix("data: "))))
    return found


class SlowAnswers:
    """An answer of a provider's that takes its time, and how many were awaited at once at most."""

    def __init__(self, seconds=0.3):
        self.seconds, self.present, self.most, self.lock = seconds, 0, 0, threading.Lock()

    def __call__(self, _):
        with self.lock:
            self.present += 1
            self.most = max(self.most, self.present)
        time.sleep(self.seconds)
        with self.lock:
            self.present -= 1
        return "late"


class AITest(unittest.TestCase):
    """One service on one provider, both new for each test."""

    program = ""
    arguments = ["--embedded"]

    def setUp(self):
        self.provider = Provider("the answer is 42")
        self.addCleanup(self.provider.close)
        self.service = Service(self.program, *self.arguments, *self.ai_arguments())
        self.addCleanup(self.service.close)
        self.service.start()
        self.service.command("plan", "set", "embedded", *[word for metric in METRICS for word in (metric, "10")])

    def ai_arguments(self):
        return self.provider.arguments

    def post(self, path, body, headers=None, **options):
        if isinstance(body, dict):
            body, kind = json.dumps(body), "application/json"
        else:
            body, kind = form(*body)
        return self.service.ask("POST", path, body, headers={"Content-Type": kind} | (headers or {}), **options)

    def used(self):
        usage = self.service.ask("GET", "/v1/quota").json["usage"]
        return {metric: entry["used"] for metric, entry in usage.items() if entry["used"]}

    def peak_memory(self):
        """The most that the service has taken, in KB."""
        return int(re.search(r"VmHWM:\s+(\d+)", Path(f"/proc/{self.service.process.pid}/status").read_text())[1])
