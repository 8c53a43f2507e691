"""vantle-service with a scripted provider behind it, and what its clients send to the AI endpoints."""

import json
import tempfile
import time
import unittest
from pathlib import Path

from .provider import Provider, png
from .service import Service, form

PICTURE = png()
OTHER = png(8, 8, (200, 0, 0))
KEY = "k3y-of-the-provider"
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


class ProviderTest(AITest):
    """With a key, and two seconds for an answer."""

    def folder(self):
        return Path(self.enterContext(tempfile.TemporaryDirectory(prefix="vantle-ai-")))

    def limits(self):
        key = self.folder() / "key"
        key.write_text(KEY + "\n")
        return ["--ai-key-file", str(key), "--ai-time-limit", "2"]

    def ai_arguments(self):
        return [*self.provider.arguments, *self.limits()]

    def fails(self, raw, *words, headers=None):
        self.provider.raw = raw
        begun = time.monotonic()
        answer = self.post("/v1/answers", {"question": "why?"}, headers)
        self.assertLess(time.monotonic() - begun, 4)
        self.assertEqual((answer.status, answer.headers["X-Quota-Remaining"]), (502, "10"), answer.body)
        for word in words:
            self.assertIn(word, answer.body.decode()[:80])
