#!/usr/bin/env python3
"""vantle-service with 200 uploads at once beside small requests: none fails, all are kept, and its memory stays flat."""

import argparse
import json
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))

from driver.service import Service  # noqa: E402

PROGRAM = LOAD = ""


class Load(unittest.TestCase):
    UPLOADS = 200
    SECONDS = 3

    def setUp(self):
        self.service = Service(PROGRAM, "--embedded")
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

    def memory(self):
        """In KB."""
        return int(Path(f"/proc/{self.service.process.pid}/status").read_text().split("VmHWM:")[1].split()[0])

    def test_nothing_fails_and_nothing_grows(self):
        uploads = self.drive()
        peak = self.memory()
        uploads += self.drive()
        self.assertLess(self.memory(), 1.25 * peak)
        self.assertLess(self.memory(), 96_000)
        # Each run uploads one more for its links.
        self.service.command("purge")
        self.assertLessEqual(len(self.service.blobs()), uploads + 2)
        self.assertEqual(self.service.incoming(), [])
        self.assertNotIn(" 500 ", self.service.log())


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--service", required=True)
    parser.add_argument("--load", required=True)
    options, rest = parser.parse_known_args()
    PROGRAM, LOAD = options.service, options.load
    unittest.main(argv=[sys.argv[0], *rest], verbosity=2)
