#!/usr/bin/env python3
"""What the network tools send, byte by byte, and what they say when the service does not do its part."""

import base64
import json
import struct
import subprocess
import sys
import unittest
from pathlib import Path

from driver.application import Application
from driver.display import PrivateDisplay
from driver.host import Host
from driver.keyring import keyring
from driver.options import take_options
from driver.provider import Provider, png

VANTLE = ""
TOKEN, CREDENTIAL = "the-token-of-all", "the-credential-of-one"
PICTURE, OTHER = png(), png(8, 8, (200, 0, 0))
TEXT = "a “quoted” text\n  with lines\n"
WORDS, SENDS, SAYS = "Request failed (HTTP ", "Submission failed (HTTP ", "No answer in response: "
MADE = {"images": [{"data": base64.b64encode(PICTURE).decode(), "mimeType": "image/png"}]}
REFUSAL = {"metric": "text", "plan": "Pro", "limit": 50, "resetsAt": "2026-12-01T12:00:00Z"}


class Tool:
    """One call of the command line: `phrase` stands before the status of a failure, `nothing` before an answer of no use."""

    def __init__(self, words, good, phrase, nothing=None, typed="", token=TOKEN):
        self.words, self.good, self.phrase, self.nothing = words.split(), good, phrase, nothing
        self.typed, self.token = typed, token


TOOLS = {
    "transform": Tool("transform --mode shorten", {"text": "ok"}, WORDS, "No text in response: ", TEXT, CREDENTIAL),
    "ask": Tool("ask -", {"answer": "ok"}, WORDS, SAYS, "why?", CREDENTIAL),
    "look": Tool("ask - --image {picture} --image {other}", {"answer": "ok"}, WORDS, SAYS, "what?", CREDENTIAL),
    "prompt": Tool("prompt {picture} --mode ui", {"prompt": "ok"}, "Processing failed (HTTP ", "No prompt in response: "),
    "generate": Tool("generate - -o {made}", MADE, "Generation failed (HTTP ", "No image in response: ", "a cat", CREDENTIAL),
    "feedback": Tool("feedback --category bug -", {}, SENDS, None, TEXT),
    "suggest": Tool("suggest -", {}, SENDS, None, "a kettle"),
    "link": Tool("link {picture}", {"url": "https://x.example/l/1"}, "Upload failed (HTTP ", "No URL in response: "),
    "upload": Tool("upload {picture}", {"url": "https://x.example/l/1"}, "Upload failed (HTTP ", "No URL in response: "),
}  # fmt: skip


class NetworkTools(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.enterClassContext(PrivateDisplay())
        cls.application = Application(VANTLE, accessible=False)
        cls.addClassCleanup(cls.application.close)
        cls.enterClassContext(keyring(cls.application))
        cls.home = Path(cls.application.home.name)
        cls.files = {"picture": cls.home / "a.png", "other": cls.home / "b.png", "made": cls.home / "made.png"}
        cls.files["picture"].write_bytes(PICTURE)
        cls.files["other"].write_bytes(OTHER)
        cls.host = Host()
        cls.addClassCleanup(cls.host.close)
        cls.application.write_json("services.json", {"api": cls.host.url, "links": cls.host.url, "token": TOKEN})
        stored = cls.type(["config", "service", "credential"], CREDENTIAL + "\n")
        assert stored.returncode == 0, stored.stderr

    def setUp(self):
        self.host.requests.clear()

    @classmethod
    def type(cls, words, text):
        return subprocess.run(
            [cls.application.binary, *words], env=cls.application.environment, input=text, capture_output=True, text=True, timeout=20
        )

    def run_tool(self, name, *more):
        tool = TOOLS[name]
        return self.type([word.format(**self.files) for word in tool.words] + list(more), tool.typed)

    def sent(self, name, *more):
        """The one request of a call that goes well."""
        self.host.requests.clear()
        self.host.answer = (200, TOOLS[name].good)
        ran = self.run_tool(name, *more)
        self.assertEqual(ran.returncode, 0, ran.stderr)
        [request] = self.host.requests
        self.assertEqual(request.method, "POST")
        self.assertEqual(request.headers.get("Authorization"), f"Bearer {TOOLS[name].token}")
        return request

    def headers(self, request, *more):
        """No header but the platform's own and these."""
        platform = {"Host", "Content-Length", "Connection", "Accept-Encoding", "Accept-Language", "User-Agent"}
        self.assertEqual(sorted(set(request.headers) - platform), sorted(["Content-Type", *more]))
        self.assertEqual(len(request.headers), len(set(request.headers)))

    def test_texts_and_questions_are_sent_as_json(self):
        for mode, action in (("improve",) * 2, ("enhance-prompt",) * 2, ("shorten",) * 2, ("fix-grammar",) * 2):
            request = self.sent_text("--mode", mode)
            self.assertEqual((request.path, request.json), ("/v1/text", {"text": TEXT, "action": action}))
        request = self.sent_text("--instruction", " in German ")
        self.assertEqual(request.json, {"text": TEXT, "instruction": "in German"})
        self.headers(request, "Authorization")
        request = self.sent("ask")
        self.assertEqual((request.path, request.json), ("/v1/answers", {"question": "why?"}))
        # Whoever can show an answer as it grows says so.
        self.headers(request, "Authorization", "Accept")
        self.assertEqual(request.headers["Accept"], "text/event-stream")
        past = [{"question": "first?", "answer": "one"}, {"question": "second?", "answer": "two"}]
        request = self.sent("ask", "--history", self.history(past))
        self.assertEqual(request.json, {"question": "why?", "history": past})
        self.assertEqual(request.headers["Content-Type"], "application/json")

    def sent_text(self, *mode):
        TOOLS["transform"].words = ["transform", *mode]
        request = self.sent("transform")
        self.assertEqual(request.headers["Content-Type"], "application/json")
        return request

    def history(self, exchanges):
        path = self.home / "history.json"
        path.write_text(json.dumps(exchanges))
        return str(path)

    def test_pictures_are_sent_as_forms(self):
        past = [{"question": "first?", "answer": "one"}]
        request = self.sent("look", "--history", self.history(past))
        self.assertEqual(request.path, "/v1/image-answers")
        self.headers(request, "Authorization", "Accept")
        *fields, first, second = request.parts
        self.assertEqual([field[:3] for field in fields], [("history", None, None), ("question", None, None)])
        self.assertEqual((json.loads(fields[0][3]), fields[1][3]), (past, b"what?"))
        self.assertEqual((first[:3], second[:3]), (("file", "attachment-1.png", "image/png"), ("files", "attachment-2.png", "image/png")))
        self.assertEqual((size(first[3]), size(second[3])), ((96, 64), (8, 8)))
        request = self.sent("prompt")
        self.assertEqual((request.path, request.parts), ("/ai-prompt", [("mode", None, None, b"ui"), ("file", "a.png", "image/png", PICTURE)]))
        self.headers(request, "Authorization")
        request = self.sent("generate", "--image", str(self.files["picture"]), "--edit")
        self.assertEqual(request.path, "/v1/image-generate")
        fields = [("edit", None, None, b"true"), ("prompt", None, None, b"a cat"), ("quality", None, None, b"auto"), ("size", None, None, b"auto")]  # fmt: skip
        self.assertEqual((request.parts[:4], request.parts[4][:3]), (fields, ("files", "image-1.png", "image/png")))
        self.headers(request, "Authorization")
        for name, path, part in (("link", "/v1/images", "file"), ("upload", "/v1/upload", "files")):
            request = self.sent(name)
            self.assertEqual((request.path, request.parts), (path, [(part, "a.png", "image/png", PICTURE)]))
            self.headers(request, "Authorization")

    def test_reports_say_who_they_are_from(self):
        version = self.type(["--version"], "").stdout.split()[1].encode()
        for name, path, text in (("feedback", "/v1/feedback", "message"), ("suggest", "/v1/tool-suggestions", "suggestion")):
            request = self.sent(name, "--image", str(self.files["picture"]), "--image", str(self.files["other"]))
            self.assertEqual(request.path, path)
            self.headers(request, "Authorization", "X-Person-Token")
            self.assertEqual(request.headers["X-Person-Token"], CREDENTIAL)
            *fields, first, second = request.parts
            said = {field[0]: field[3] for field in fields}
            system = said.pop("osVersion")
            category = {"category": b"bug"} if name == "feedback" else {}
            self.assertEqual(said, category | {text: TOOLS[name].typed.encode(), "appVersion": version})
            self.assertTrue(system)
            self.assertEqual(first, ("files", "snip-1.png", "image/png", PICTURE))
            self.assertEqual(second, ("files", "snip-2.png", "image/png", OTHER))

    def test_an_override_counts_as_a_pair_and_at_once(self):
        for name, folder in (("look", "ImageAsk"), ("ask", "QuickQuestion"), ("prompt", "Promptify"), ("generate", "GenerateImage"),
                             ("feedback", "Feedback"), ("suggest", "SuggestTool"), ("link", "Uplink"), ("upload", "BulkUpload")):  # fmt: skip
            usual = self.sent(name).path
            elsewhere = f" \t{self.host.url}/own "
            for override in ({"endpoint": elsewhere}, {"endpoint": " ", "token": "own"}, {"endpoint": 1, "token": "own"}):
                self.application.write_json(f"{folder}/config.json", override)
                self.assertEqual(self.sent(name).path, usual, override)
            # What is metered goes by the person, wherever it goes.
            person = f"Bearer {CREDENTIAL}" if name in ("ask", "look", "generate") else None
            for token, authorization in (("own", "Bearer own"), ("", person)):
                self.application.write_json(f"{folder}/config.json", {"endpoint": elsewhere, "token": token, "more": 1})
                self.host.requests.clear()
                self.assertEqual(self.run_tool(name).returncode, 0)
                [request] = self.host.requests
                self.assertEqual((request.path, request.headers.get("Authorization")), ("/own", authorization), name)
            (self.application.folder / folder / "config.json").unlink()
            self.assertEqual(self.sent(name).path, usual)

    def test_what_a_service_refuses_is_said(self):
        long = "x" * 79 + "€" + "y" * 120
        for name, tool in TOOLS.items():
            self.fails(name, (500, long.encode()), f"{tool.phrase}500) {'x' * 79}€")
            self.fails(name, (404, b""), f"{tool.phrase}404)")
            self.fails(name, (401, b"\xff\xfe"), f"{tool.phrase}401)")
            self.fails(name, (302, b"gone"), f"{tool.phrase}302)")
            is_metered = tool.token == CREDENTIAL
            refused = "You've used all 50 text transforms this month on the Pro plan. Resets Dec 1."
            self.fails(name, (402, REFUSAL), refused if is_metered else f"{tool.phrase}402) ")
            for broken in (REFUSAL | {"limit": "50"}, {"metric": "text"}, [REFUSAL]):
                self.fails(name, (402, broken), f"{tool.phrase}402) ")

    def test_answers_of_no_use_are_said(self):
        for name, tool in TOOLS.items():
            if not tool.nothing:
                # Nothing is to be read in it.
                self.host.answer = (204, b"")
                self.assertEqual(self.run_tool(name).returncode, 0, name)
                continue
            for nothing in ({}, {"text": "", "answer": "", "prompt": "", "url": ""}, {"data": {}}, [], {"answer": 7}):
                self.fails(name, (200, nothing), tool.nothing + json.dumps(nothing)[:80])
            self.fails(name, (200, b" \n"), tool.nothing.rstrip())
            self.fails(name, (200, {"x": "y" * 200}), tool.nothing + '{"x": "' + "y" * 73)

    def test_a_service_that_nobody_is(self):
        for name in TOOLS:
            self.host.answer = lambda _: sys.exit()
            ran = self.run_tool(name)
            self.assertEqual((ran.returncode, ran.stdout), (1, ""), name)
            self.assertRegex(ran.stderr, r"^vantle: \w.{10,}\n$")

    def fails(self, name, answer, words):
        self.host.answer = answer
        ran = self.run_tool(name)
        self.assertEqual((ran.returncode, ran.stdout), (1, ""), (name, answer))
        self.assertEqual(ran.stderr.startswith("vantle: "), True)
        self.assertIn(words, ran.stderr, (name, answer))
        self.assertLess(len(ran.stderr), 200)


class Running(unittest.TestCase):
    """The command line beside the running program, whose service answers."""

    def test_a_provider_that_somebody_wrote_is_taken_without_a_new_start(self):
        self.enterContext(PrivateDisplay())
        application = Application(VANTLE, accessible=False)
        self.addCleanup(application.close)
        self.enterContext(keyring(application))
        application.begin()
        refused = application.command("ask", "why?")
        self.assertEqual((refused.returncode, "No AI provider is set" in refused.stderr), (1, True), refused.stderr)
        for answer in ("the first", "the second"):
            provider = Provider(answer)
            self.addCleanup(provider.close)
            application.write_json("ai-provider.json", provider.settings)
            self.assertEqual(application.ask({"do": "reload"}), {"ok": True})
            self.assertEqual(application.command("ask", "why?").stdout, answer + "\n")


def size(picture):
    return struct.unpack(">II", picture[16:24])


if __name__ == "__main__":
    [VANTLE] = take_options("vantle")
    unittest.main(verbosity=2)
