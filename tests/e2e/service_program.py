#!/usr/bin/env python3
"""vantle-service from outside: who may ask it what, what it stores, and when it ends."""

import argparse
import http.client
import json
import signal
import stat
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SERVICE = ""
EVENT = {"event": "app_launched", "installId": "I", "appVersion": "1", "osVersion": "o"}


class Service:
    """A running service and the credential it handed over."""

    def __init__(self, folder, *arguments):
        self.log_path = Path(folder) / "log"
        with open(self.log_path, "ab") as log:
            self.process = subprocess.Popen(
                [SERVICE, "serve", "--data", f"{folder}/data", *arguments],
                stdin=subprocess.PIPE,
                stdout=subprocess.PIPE,
                stderr=log,
            )

    def greet(self):
        greeting = json.loads(self.process.stdout.readline())
        self.port, self.token = greeting["port"], greeting["token"]
        return self

    def ask(self, method, path, body=None, token=None):
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=5)
        headers = {"Authorization": f"Bearer {self.token if token is None else token}"}
        connection.request(method, path, body, headers)
        answer = connection.getresponse()
        try:
            return answer.status, answer.read()
        finally:
            connection.close()

    def close(self):
        self.process.stdin.close()
        self.process.stdout.close()
        return self.process.wait(5)


class Embedded(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="vantle-service-")
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.service = Service(self.folder, "--embedded").greet()
        self.addCleanup(self.service.close)

    def test_asks_for_the_credential_and_names_nothing_else(self):
        self.assertEqual(self.service.ask("GET", "/health", token="")[0], 200)
        self.assertEqual(self.service.ask("GET", "/v1/quota")[0], 200)
        for token in ("", "x", self.service.token[:-1], self.service.token + "x", self.service.token.lower()):
            self.assertEqual(self.service.ask("GET", "/v1/quota", token=token)[0], 401, token)
            self.assertEqual(self.service.ask("POST", "/v1/events", "{}", token=token)[0], 401, token)
        for method, path in (("GET", "/"), ("GET", "/v1/quota/"), ("GET", "/v1/../health"), ("POST", "/v1/nothing")):
            self.assertEqual(self.service.ask(method, path)[0], 404, path)
        self.assertEqual(self.service.ask("POST", "/v1/quota")[0], 405)

    def test_the_quota_has_a_plan_and_a_reset(self):
        quota = json.loads(self.service.ask("GET", "/v1/quota")[1])
        self.assertEqual((quota["plan"], quota["usage"]), ("embedded", {}))
        self.assertRegex(quota["resetsAt"], r"^\d{4}-\d\d-01T00:00:00Z$")

    def test_events_are_checked_and_stored(self):
        self.assertEqual(self.service.ask("POST", "/v1/events", json.dumps(EVENT | {"tool": "uplink"}))[0], 204)
        for wrong in (EVENT | {"path": "/home"}, EVENT | {"event": 7}, EVENT | {"osVersion": "x" * 201}, {}, [EVENT]):
            self.assertEqual(self.service.ask("POST", "/v1/events", json.dumps(wrong))[0], 400, wrong)
        self.assertEqual(self.service.ask("POST", "/v1/events", "{")[0], 400)
        self.assertEqual(self.service.ask("POST", "/v1/events", "x" * 5000)[0], 413)
        stored = Path(self.folder) / "data" / "events.jsonl"
        lines = [json.loads(line) for line in stored.read_text().splitlines()]
        self.assertEqual([(line["event"], line["tool"]) for line in lines], [("app_launched", "uplink")])
        self.assertEqual(stat.S_IMODE(stored.stat().st_mode), 0o600)

    def test_the_log_holds_no_secret(self):
        self.service.ask("GET", "/v1/quota?key=hidden")
        self.service.ask("POST", "/v1/events", json.dumps(EVENT | {"tool": "hidden"}))
        self.service.close()
        log = self.service.log_path.read_text()
        self.assertIn("GET /v1/quota 200", log)
        self.assertNotIn("hidden", log)
        self.assertNotIn(self.service.token, log)

    def test_ends_with_its_parent(self):
        self.assertEqual(self.service.close(), 0)

    def test_ends_when_it_is_asked_to(self):
        self.service.process.send_signal(signal.SIGTERM)
        self.assertEqual(self.service.process.wait(5), 0)


class OnItsOwn(unittest.TestCase):
    def test_wrong_arguments(self):
        for wrong in ([], ["serve", "--port", "70000"], ["serve", "--port"], ["serve", "--nonsense", "x"], ["run"]):
            result = subprocess.run([SERVICE, *wrong], capture_output=True, text=True, timeout=5)
            self.assertEqual(result.returncode, 2, wrong)
            self.assertIn("usage: vantle-service serve", result.stderr)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--service", required=True)
    options, rest = parser.parse_known_args()
    SERVICE = options.service
    unittest.main(argv=[sys.argv[0], *rest], verbosity=2)
