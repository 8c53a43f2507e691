#!/usr/bin/env python3
"""vantle-service from outside: who may ask it what, what it stores and gives back, and its commands."""

import hashlib
import json
import os
import re
import sqlite3
import stat
import subprocess
import sys
import threading
import unittest
from pathlib import Path

from driver import postgres
from driver.options import take_options
from driver.service import Service, form

PROGRAM = ""
# The database server that all services use; none: each its own file.
POSTGRES = None
# What ctest takes as "not run".
SKIPPED = 77
EVENT = {"event": "app_launched", "installId": "I", "appVersion": "1", "osVersion": "o"}
PNG = b"\x89PNG\r\n\x1a\n" + bytes(range(256)) * 20


class ServiceTest(unittest.TestCase):
    arguments = ["--embedded"]

    def setUp(self):
        self.prepare(self.arguments)
        self.service.start()

    def prepare(self, arguments):
        database = ["--database", POSTGRES.new_database()] if POSTGRES else []
        self.service = Service(PROGRAM, *arguments, *database)
        self.addCleanup(self.service.close)

    def link(self, *arguments, **options):
        answer = self.service.upload(*arguments, **options)
        self.assertEqual(answer.status, 200, answer.body)
        return answer.json["url"]

    def change(self, statement):
        if POSTGRES:
            return POSTGRES.execute(self.service.database, statement.replace("strftime('%s')", "extract(epoch from now())"))
        connection = sqlite3.connect(self.service.data / "service.db", timeout=10)
        with connection:
            connection.execute(statement)
        connection.close()


class Embedded(ServiceTest):
    def test_asks_for_the_credential_and_names_nothing_else(self):
        self.assertEqual(self.service.ask("GET", "/health", token="").status, 200)
        self.assertEqual(self.service.ask("GET", "/v1/quota").status, 200)
        token = self.service.token
        for wrong in ("", "x", token[:-1], token + "x", token.lower()):
            self.assertEqual(self.service.ask("GET", "/v1/quota", token=wrong).status, 401, wrong)
            self.assertEqual(self.service.upload(b"x", token=wrong).status, 401, wrong)
        for method, path in (("GET", "/"), ("GET", "/v1/quota/"), ("GET", "/v1/../health"), ("POST", "/v1/nothing")):
            self.assertEqual(self.service.ask(method, path).status, 404, path)
        refused = self.service.ask("POST", "/v1/quota")
        self.assertEqual((refused.status, refused.headers["Allow"]), (405, "GET"))

    def test_the_quota_has_a_plan_and_a_reset(self):
        quota = self.service.ask("GET", "/v1/quota").json
        self.assertEqual((quota["plan"], quota["usage"]), ("embedded", {}))
        self.assertRegex(quota["resetsAt"], r"^\d{4}-\d\d-01T00:00:00Z$")
        self.service.command("plan", "set", "embedded", "--answers", "7")
        self.assertEqual(self.service.ask("GET", "/v1/quota").json["usage"], {"answers": {"used": 0, "limit": 7}})

    def test_events_are_checked_and_stored(self):
        self.assertEqual(self.service.ask("POST", "/v1/events", json.dumps(EVENT | {"tool": "uplink"})).status, 204)
        for wrong in (EVENT | {"path": "/home"}, EVENT | {"event": 7}, EVENT | {"osVersion": "x" * 201}, {}, [EVENT]):
            self.assertEqual(self.service.ask("POST", "/v1/events", json.dumps(wrong)).status, 400, wrong)
        self.assertEqual(self.service.ask("POST", "/v1/events", json.dumps(EVENT | {"tool": "\0"})).status, 400)
        self.assertEqual(self.service.ask("POST", "/v1/events", "{").status, 400)
        self.assertEqual(self.service.ask("POST", "/v1/events", "x" * 5000).status, 413)
        lines = [json.loads(line) for line in self.service.command("export", "events").stdout.splitlines()]
        self.assertEqual([(line["event"], line["tool"]) for line in lines], [("app_launched", "uplink")])
        self.assertIn("receivedAt", lines[0])

    def test_what_is_stored_is_nobody_elses(self):
        url = self.link(b"secret")
        for path in self.service.data.rglob("*"):
            self.assertEqual(stat.S_IMODE(path.stat().st_mode) & 0o077, 0, path)
        self.service.get(url + "?key=hidden")
        self.service.ask("GET", "/v1/nothing/hidden?key=hidden")
        self.service.ask("POST", "/v1/events", json.dumps(EVENT | {"tool": "hidden"}))
        self.service.stop()
        log = self.service.log()
        self.assertIn("POST /v1/events 204", log)
        self.assertIn("GET /l/{id} 200", log)
        for secret in ("hidden", self.service.token, url.rsplit("/", 1)[1]):
            self.assertNotIn(secret, log)

    def test_ends_with_its_parent_and_when_it_is_asked_to(self):
        self.assertEqual(self.service.stop(), 0)
        self.service.start().process.terminate()
        self.assertEqual(self.service.process.wait(5), 0)

    def test_two_do_not_run_on_one_folder(self):
        second = subprocess.run(
            [PROGRAM, "serve", "--embedded", *self.service.place], capture_output=True, text=True, timeout=20
        )
        self.assertEqual(second.returncode, 1)
        self.assertIn("another vantle-service", second.stderr)


class Links(ServiceTest):
    def test_give_back_the_same_bytes(self):
        url = self.link(PNG, "clipboard.png", "image/png", path="/v1/images")
        self.assertRegex(url, rf"^http://127\.0\.0\.1:{self.service.port}/l/[\w-]{{24}}$")
        browser = "text/html,application/xhtml+xml,*/*;q=0.8"
        for answer in (self.service.get(url), self.service.get(url, Accept=browser), self.service.get(url + "/x.png")):
            self.assertEqual((answer.status, answer.body), (200, PNG))
            self.assertEqual(answer.headers["Content-Type"], "image/png")
            self.assertEqual(answer.headers["Content-Length"], str(len(PNG)))
            self.assertTrue(answer.headers["Content-Disposition"].startswith('inline; filename="clipboard.png"'))
            self.assertEqual(answer.headers["X-Content-Type-Options"], "nosniff")
            self.assertIn("sandbox", answer.headers["Content-Security-Policy"])
            self.assertIn("default-src 'none'", answer.headers["Content-Security-Policy"])
        head = self.service.get(url, "HEAD")
        self.assertEqual((head.status, head.body, head.headers["Content-Length"]), (200, b"", str(len(PNG))))

    def test_any_size_and_content(self):
        delimiters = b"\r\n--Vantle-" * 5000 + b"\r\n--" + b"\r" * 70_000
        for content in (b"", b"\r\n", b"x" * 1_048_576, delimiters, os.urandom(3_000_001)):
            self.assertEqual(self.service.get(self.link(content)).body, content, len(content))
        same = {self.link(b"twice") for _ in range(2)}
        self.assertEqual(len(same), 2)
        digest = hashlib.sha256(b"twice").hexdigest()
        self.assertIn(digest, [blob.name for blob in self.service.blobs()])
        self.assertEqual(self.service.incoming(), [])

    def test_nothing_that_could_act_is_shown(self):
        cases = (
            (b"<script>alert(1)</script>", "a.html", "text/html", "text/plain; charset=utf-8", "inline"),
            (b"<script>alert(1)</script>", "a.png", "image/png", "text/plain; charset=utf-8", "inline"),
            (b"MZ\0\0\1", "a.png", "image/png", "application/octet-stream", "attachment"),
            (b"%PDF-1.7 \xff", "a.pdf", "application/pdf", "application/pdf", "attachment"),
            (b"PK\3\4\0", "a.zip", "application/zip", "application/zip", "attachment"),
            (b"MZ\0\0\1", "a", "text/html\r\nX-Evil: 1", "application/octet-stream", "attachment"),
            ("ünï".encode(), "a.md", "text/markdown", "text/plain; charset=utf-8", "inline"),
        )
        for content, name, kind, served, disposition in cases:
            answer = self.service.get(self.link(content, name, kind))
            self.assertEqual(answer.headers["Content-Type"], served, (name, kind))
            self.assertEqual(answer.headers["Content-Disposition"].split(";")[0], disposition, (name, kind))
            self.assertNotIn("X-Evil", answer.headers)

    def test_names_come_back_whole_and_harmless(self):
        cases = (
            ("Jürgen ☃.zip", "J_rgen _.zip", "J%C3%BCrgen%20%E2%98%83.zip"),
            ('a"b.zip', "a_b.zip", "a%22b.zip"),
            ("../../etc/passwd", "passwd", "passwd"),
            ("evil\u202egpj.exe", "evilgpj.exe", "evilgpj.exe"),
            ("..", "file", "file"),
        )
        for sent, plain, encoded in cases:
            disposition = self.service.get(self.link(b"\0", sent)).headers["Content-Disposition"]
            self.assertEqual(disposition, f"attachment; filename=\"{plain}\"; filename*=UTF-8''{encoded}")

    def test_ranges_and_what_is_known_already(self):
        content = bytes(range(100))
        url = self.link(content)
        tag = self.service.get(url).headers["ETag"]
        part = self.service.get(url, Range="bytes=10-19", If_Range=tag)
        self.assertEqual((part.status, part.body), (206, content[10:20]))
        self.assertEqual(part.headers["Content-Range"], "bytes 10-19/100")
        for wanted, body in (("bytes=-5", content[-5:]), ("bytes=95-", content[95:]), ("bytes=90-900", content[90:])):
            self.assertEqual(self.service.get(url, Range=wanted).body, body, wanted)
        self.assertEqual(self.service.get(url, Range="bytes=10-19", If_Range='"other"').body, content)
        refused = self.service.get(url, Range="bytes=100-")
        self.assertEqual((refused.status, refused.headers["Content-Range"]), (416, "bytes */100"))
        self.assertEqual(self.service.get(url, If_None_Match=f'"x", W/{tag}').status, 304)
        self.assertEqual(self.service.get(url, If_None_Match='"x"').status, 200)

    def test_a_browser_gets_a_page_about_what_it_cannot_show(self):
        url = self.link(b"PK\3\4" + bytes(2_500_000), '<b>"x".zip', "application/zip")
        page = self.service.get(url, Accept="text/html")
        self.assertEqual(page.headers["Content-Type"], "text/html; charset=utf-8")
        self.assertIn("&lt;b&gt;&quot;x&quot;.zip", page.body.decode())
        self.assertIn("2.5 MB", page.body.decode())
        self.assertNotIn("unsafe", page.headers["Content-Security-Policy"])
        target = re.search(r'href="([^"]+)"', page.body.decode())[1]
        direct = self.service.get("/l/" + target, Accept="text/html")
        self.assertEqual(direct.body[:4], b"PK\3\4")
        self.assertEqual(self.service.get(url).body[:4], b"PK\3\4")

    def test_unknown_expired_and_forgotten(self):
        self.assertEqual(self.service.get("/l/" + "A" * 24).status, 404)
        self.assertIn(b"<h1>No such link", self.service.get("/l/x", Accept="text/html").body)
        kept, expired = self.link(b"kept"), self.link(b"expired")
        shared = self.link(b"kept", "other.txt")
        self.change(f"UPDATE links SET expires_at = 1000 WHERE id = '{expired[-24:]}'")
        self.change(f"UPDATE links SET expires_at = strftime('%s') - 1 WHERE id = '{shared[-24:]}'")
        self.assertEqual((self.service.get(expired).status, self.service.get(shared).status), (410, 410))
        self.service.purge(left=1)
        self.assertEqual([self.service.get(url).status for url in (kept, expired, shared)], [200, 404, 410])

    def test_a_link_is_shown_and_taken_down_by_the_operator(self):
        url = self.link(b"bad", "bad.txt")
        self.assertEqual(json.loads(self.service.command("link", "show", url).stdout)["name"], "bad.txt")
        self.service.command("link", "remove", url + "/bad.txt")
        self.assertEqual(self.service.get(url).status, 404)
        self.assertEqual(self.service.command("link", "remove", url, check=False).returncode, 1)

    def test_forms_that_are_none(self):
        body, kind = form(("files", "a", "a/b", b"x"))
        ask = lambda sent, content_type: self.service.ask("POST", "/v1/upload", sent, headers={"Content-Type": content_type})
        self.assertEqual(ask(body, "application/json").status, 415)
        for wrong in (body[:-4], b"x" + body, body.replace(b"form-data", b"attachment"), b"", b"--"):
            self.assertEqual(ask(wrong, kind).status, 400, wrong)
        self.assertEqual(ask(*form(("other", "a", "a/b", b"x"))).status, 400)
        self.assertEqual(ask(*form(*[("files", "a", "a/b", b"x")] * 17)).status, 400)
        several = ask(*form(("note", None, "", b"n"), ("files", "1", "a/b", b"1"), ("files", "2", "a/b", b"2")))
        self.assertEqual([self.service.get(url).body for url in several.json["urls"]], [b"1", b"2"])
        self.assertEqual(self.service.incoming(), [])
        self.assertEqual(len(self.service.blobs()), 2)

    def test_the_largest_file_is_taken_and_one_byte_more_is_not(self):
        limit = 256_000_000
        zeros = bytes(limit)
        url = self.link(zeros)
        self.assertEqual(self.service.get(url, "HEAD").headers["Content-Length"], str(limit))
        self.assertEqual(self.service.upload(zeros + b"x").status, 413)
        self.assertEqual(self.service.incoming(), [])

    def test_purging_never_takes_what_is_just_uploaded(self):
        # Each upload finds the bytes of the one before it without a link, just as they may be swept.
        lost, is_over = [], threading.Event()

        def purge():
            while not is_over.is_set():
                self.service.command("purge")

        purging = [threading.Thread(target=purge) for _ in range(3)]
        for thread in purging:
            thread.start()
        for _ in range(60):
            url = self.link(b"the same again")
            if self.service.get(url).status != 200:
                lost.append(url)
            self.service.command("link", "remove", url)
        is_over.set()
        for thread in purging:
            thread.join()
        self.assertEqual(lost, [])


class Database(ServiceTest):
    def test_is_used_by_the_version_that_made_it_or_a_newer_one(self):
        self.link(b"kept")
        self.service.stop()
        self.change("UPDATE schema_version SET version = 99")
        with self.assertRaisesRegex(RuntimeError, "newer vantle-service"):
            self.service.start()
        self.service._reap()
        self.change("UPDATE schema_version SET version = 1")
        self.service.start()

    def test_that_is_away_is_said_and_found_again(self):
        if not POSTGRES:
            self.skipTest("a file does not go away")
        url = self.link(b"kept")
        POSTGRES.stop()
        try:
            self.assertEqual(self.service.ask("GET", "/health").status, 503)
            self.assertEqual(self.service.upload(b"x").status, 503)
            self.assertEqual(self.service.get(url).status, 503)
        finally:
            POSTGRES.start()
        self.assertEqual(self.service.get(url).body, b"kept")
        POSTGRES.stop()
        POSTGRES.start()
        for _ in range(20):
            self.assertEqual(self.service.get(url).body, b"kept")
        self.assertEqual(self.service.get(self.link(b"new")).body, b"new")


class OnItsOwn(ServiceTest):
    arguments = []

    def test_tokens_do_what_they_are_for_until_they_are_revoked(self):
        person, app = self.service.add_token("alice", "--plan", "free"), self.service.add_token("app", "--service")
        self.assertEqual(len(app), 43)
        for secret in (person, app):
            self.assertFalse(any(secret.encode() in path.read_bytes() for path in self.service.data.glob("service.db*")))
            self.assertEqual(self.service.upload(b"x", token=secret).status, 200)
        self.assertEqual(self.service.ask("GET", "/v1/quota", token=app).status, 403)
        usage = self.service.ask("GET", "/v1/quota", token=person).json["usage"]
        self.assertEqual(usage["answers"], {"used": 0, "limit": 50})
        self.service.command("plan", "set", "free", "--answers", "60", "--text", "unlimited")
        usage = self.service.ask("GET", "/v1/quota", token=person).json["usage"]
        self.assertEqual((usage["answers"]["limit"], "text" in usage), (60, False))
        self.service.command("token", "revoke", "alice")
        self.assertEqual(self.service.ask("GET", "/v1/quota", token=person).status, 401)
        self.assertEqual(self.service.command("token", "revoke", "alice", check=False).returncode, 1)
        self.assertEqual(self.service.command("token", "add", "alice", check=False).returncode, 1)
        self.assertEqual(self.service.command("token", "add", "bob", "--plan", "none", check=False).returncode, 1)
        listed = self.service.command("token", "list").stdout.splitlines()
        self.assertEqual([line.split()[:2] for line in listed], [["alice", "person"], ["app", "service"]])

    def test_without_a_credential_nothing_is_answered(self):
        for method, path in (("POST", "/v1/upload"), ("POST", "/v1/feedback"), ("GET", "/v1/quota")):
            self.assertEqual(self.service.ask(method, path, token="").status, 401)

    def test_reports_are_stored_with_their_pictures(self):
        app, person = self.service.add_token("app", "--service"), self.service.add_token("alice")
        fields = {"category": "bug", "message": "It broke — twice", "appVersion": "1", "osVersion": "o"}

        def send(path, sent, images=(), person_token=person):
            parts = [(name, None, "", value.encode()) for name, value in sent.items()]
            parts += [("files", f"snip-{i}.png", "image/png", image) for i, image in enumerate(images, 1)]
            body, kind = form(*parts)
            return self.service.ask(
                "POST", path, body, token=app, headers={"Content-Type": kind, "X-Person-Token": person_token}
            ).status

        pictures = [PNG + bytes([i]) for i in range(3)]
        self.assertEqual(send("/v1/feedback", fields, pictures), 200)
        self.assertEqual(send("/v1/feedback", fields, person_token="stale"), 200)
        self.assertEqual(send("/v1/tool-suggestions", {"suggestion": "A tool"}), 200)
        for wrong in ({"category": "x"}, {"message": " \n"}, {"message": "x" * 20_001}):
            self.assertEqual(send("/v1/feedback", fields | wrong), 400, wrong)
        self.assertEqual(send("/v1/feedback", fields, pictures + [PNG]), 400)
        self.service.command("purge")
        first, second = map(json.loads, self.service.command("export", "feedback").stdout.splitlines())
        self.assertEqual((first["message"], first["person"], first["credential"]), (fields["message"], "alice", "app"))
        self.assertEqual([Path(image["file"]).read_bytes() for image in first["images"]], pictures)
        self.assertEqual((second["images"], "person" in second), ([], False))
        self.assertEqual(json.loads(self.service.command("export", "suggestions").stdout)["suggestion"], "A tool")

    def test_links_begin_with_a_host_only_where_nobody_else_could_name_one(self):
        token = self.service.add_token("app", "--service")
        for host in ("evil.example", "127.0.0.1.evil.example", "localhost:x"):
            self.assertEqual(self.service.upload(b"x", token=token, headers={"Host": host}).status, 500, host)
        named = self.service.upload(b"x", token=token, headers={"Host": "localhost:7"})
        self.assertTrue(named.json["url"].startswith("http://localhost:7/l/"))

    def test_wrong_calls(self):
        wrong = (
            [], ["run"], ["serve", "--listen", "127.0.0.1:70000"], ["serve", "--listen"], ["serve", "--nonsense", "x"],
            ["serve", "--listen", "0.0.0.0:0"], ["serve", "--public-url", "ftp://x"], ["serve", "--plan", "x"],
            ["token"], ["token", "add"], ["token", "add", "a b"], ["plan", "set", "x", "--answers", "-1"], ["export", "x"],
        )  # fmt: skip
        for call in wrong:
            result = subprocess.run([PROGRAM, *call, *self.service.place], capture_output=True, text=True, timeout=5)
            self.assertEqual(result.returncode, 2, call)
            self.assertIn("usage: vantle-service serve", result.stderr)


class Configured(ServiceTest):
    arguments = ["--config", "{folder}/first", "--config", "{folder}/second"]

    def setUp(self):
        self.prepare([])
        (self.service.folder / "secret").write_text("own-credential\n")
        (self.service.folder / "first").write_text(
            "# what links begin with\npublic-url = https://links.example.org/sub/\nrate-per-address = 1\n"
            "trust-proxy = 10.0.0.1, 127.0.0.1\n"
        )
        (self.service.folder / "second").write_text(
            f"rate-per-address=3\nrate-per-token=2\ncredential-file = {self.service.folder}/secret\n"
        )
        self.service.arguments += [word.format(folder=self.service.folder) for word in self.arguments]
        self.service.token = "own-credential"
        self.service.start()

    def test_links_rates_and_addresses_follow_the_files(self):
        self.assertTrue(self.link(b"x").startswith("https://links.example.org/sub/l/"))
        ask = lambda address, token: self.service.ask(
            "GET", "/v1/quota", token=token, headers={"X-Forwarded-For": f"9.9.9.9, {address}"}
        )
        from_one = [ask("1.1.1.1", "wrong").status for _ in range(40)]
        self.assertEqual((from_one[0], from_one[-1]), (401, 429))
        self.assertEqual(ask("2.2.2.2", "wrong").status, 401)
        by_one = [ask(f"3.3.3.{i}", None).status for i in range(40)]
        self.assertEqual((by_one[0], by_one[-1]), (200, 429))
        self.assertEqual(self.service.ask("GET", "/health").status, 200)


if __name__ == "__main__":
    # With --postgres a server takes the place of the file.
    wants_postgres = "--postgres" in sys.argv
    sys.argv = [word for word in sys.argv if word != "--postgres"]
    [PROGRAM] = take_options("service")
    if wants_postgres and not postgres.programs():
        print("skipped: no PostgreSQL server is installed")
        sys.exit(SKIPPED)
    POSTGRES = postgres.Postgres() if wants_postgres else None
    try:
        unittest.main(verbosity=2)
    finally:
        if POSTGRES:
            POSTGRES.close()
