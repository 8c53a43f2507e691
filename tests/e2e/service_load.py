#!/usr/bin/env python3
"""vantle-service with more clients than places, and with 200 uploads at once beside small requests: none fails, all are
kept, and its memory stays flat."""

import json
import subprocess
import threading
import time
import unittest
from collections import Counter
from concurrent.futures import ThreadPoolExecutor

from driver.ai import PICTURE, AITest, field, picture
from driver.options import take_options
from driver.service import Service

LOAD = ""


class Load(unittest.TestCase):
    UPLOADS = 200
    SECONDS = 3

    def setUp(self):
        self.service = Service(AITest.program, "--embedded")
        self.addCleanup(self.service.close)
        self.service.start()

    def drive(self):
        # Less than it can take: the machine that tests has other things to do.
        numbers = [self.service.port, self.service.token, self.UPLOADS, 50_000, 500, self.SECONDS]
        result = subprocess.run([LOAD, *map(str, numbers)], capture_output=True, text=True, timeout=60)
        taken = json.loads(result.stdout)
        self.assertEqual((taken["requests_failed"], taken["uploads_failed"], result.returncode), (0, 0, 0), taken)
        self.assertGreaterEqual(taken["uploads"], self.UPLOADS)
        return taken["uploads"]

    def test_nothing_fails_and_nothing_grows(self):
        uploads = self.drive()
        peak = self.service.memory("VmHWM")
        uploads += self.drive()
        self.assertLess(self.service.memory("VmHWM"), 1.25 * peak)
        self.assertLess(self.service.memory("VmHWM"), 96_000)
        # Each run uploads one more for its links.
        self.service.command("purge")
        self.assertLessEqual(len(self.service.blobs()), uploads + 2)
        self.assertEqual(self.service.incoming(), [])
        self.assertNotIn(" 500 ", self.service.log())


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


class Crowd(AITest):
    """Many more clients than places."""

    CLIENTS = 64

    def ai_arguments(self):
        return [*self.provider.arguments, "--ai-concurrency", "4"]

    def test_all_are_answered_and_nothing_else_waits(self):
        self.service.command("plan", "set", "embedded", "--image-answers", "1000")
        slow = SlowAnswers()
        self.provider.answer = slow
        large = [picture("file", PICTURE + bytes(2_000_000)), field("question", "a")]
        done = threading.Event()
        with ThreadPoolExecutor(self.CLIENTS + 1) as crowd:
            beside = crowd.submit(self.looks_in, done)
            answers = list(crowd.map(lambda _: self.post("/v1/image-answers", large), range(self.CLIENTS)))
            done.set()
            self.assertLess(beside.result(), 1)
        statuses = Counter(answer.status for answer in answers)
        self.assertEqual((set(statuses), sum(statuses.values())), ({200, 503}, self.CLIENTS), statuses)
        self.assertGreaterEqual(statuses[200], 15)
        self.assertEqual(slow.most, 4)
        self.assertTrue(all(answer.headers["Retry-After"] for answer in answers if answer.status == 503))
        self.assertEqual(self.used(), {"image_answers": statuses[200]})
        # Of all these pictures, no more than those of one crowd is ever in memory.
        self.assertLess(self.service.memory("VmHWM"), 2 * self.CLIENTS * 2_000 + 60_000)
        self.assertEqual(self.post("/v1/image-answers", large).status, 200)

    def looks_in(self, done):
        """The longest that a small request took meanwhile, in seconds."""
        longest = 0
        while not done.is_set():
            begun = time.monotonic()
            self.assertEqual(self.service.ask("GET", "/v1/quota").status, 200)
            longest = max(longest, time.monotonic() - begun)
            time.sleep(0.05)
        return longest


if __name__ == "__main__":
    AITest.program, LOAD = take_options("service", "load")
    unittest.main(verbosity=2)
