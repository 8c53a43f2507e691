#!/usr/bin/env python3
"""The AI endpoints of vantle-service from outside, with scripted providers of each kind behind it."""

import argparse
import base64
import json
import socket
import sys
import threading
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))

from driver.provider import IMAGE_MODEL, MODEL, Provider, png  # noqa: E402
from driver.service import Service, form  # noqa: E402
from driver.waiting import until  # noqa: E402

PROGRAM = ""
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


class AITest(unittest.TestCase):
    arguments = ["--embedded"]

    def setUp(self):
        self.provider = Provider("the answer is 42")
        self.addCleanup(self.provider.close)
        self.service = Service(PROGRAM, *self.arguments, *self.ai_arguments())
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


class Answers(AITest):
    def test_a_question_with_its_history(self):
        history = [{"question": "first?", "answer": "one"}, {"question": "second?", "answer": "two"}]
        answer = self.post("/v1/answers", {"question": "third?", "history": history})
        self.assertEqual((answer.status, answer.json), (200, {"answer": "the answer is 42"}))
        self.assertEqual(answer.headers["Content-Type"], "application/json")
        sent = self.provider.requests[0]
        self.assertEqual(sent.path, "/v1/chat/completions")
        self.assertEqual(sent.json["model"], MODEL)
        self.assertNotIn("stream", sent.json)
        self.assertNotIn("Authorization", sent.headers)
        self.assertEqual([message["role"] for message in sent.json["messages"]], ["system"] + ["user", "assistant"] * 2 + ["user"])
        self.assertEqual(sent.texts[1:], ["first?", "one", "second?", "two", "third?"])
        self.assertEqual(answer.headers["X-Quota-Limit"], "10")
        self.assertEqual(answer.headers["X-Quota-Remaining"], "9")
        self.assertRegex(answer.headers["X-Quota-Reset"], r"^\d{4}-\d\d-01T00:00:00Z$")
        self.assertEqual(self.used(), {"answers": 1})

    def test_what_is_wrong_with_a_request_costs_nothing(self):
        cases = (
            ("/v1/answers", {"question": " \n"}, 400),
            ("/v1/answers", {"question": "x" * 20_001}, 413),
            ("/v1/answers", {"question": "a", "history": {}}, 400),
            ("/v1/answers", {"question": "a", "history": [{"question": "b"}]}, 400),
            ("/v1/text", {"text": ""}, 400),
            ("/v1/text", {"text": "a", "action": "burn"}, 400),
            ("/v1/text", {"text": "x" * 200_001}, 413),
            ("/v1/image-answers", [field("question", "a")], 400),
            ("/v1/image-answers", [picture("file")], 400),
            ("/v1/image-answers", [picture("file", b"GIF80000"), field("question", "a")], 415),
            ("/v1/image-answers", [picture("files")] * 7 + [field("question", "a")], 400),
            ("/v1/image-answers", [picture("file"), field("question", "a"), field("history", "{")], 400),
            ("/v1/image-answers", [picture("file", PICTURE + bytes(20_000_000)), field("question", "a")], 413),
            ("/ai-prompt", [picture("file"), field("mode", "poem")], 400),
            ("/ai-prompt", [field("mode", "ui")], 400),
            ("/v1/image-generate", [field("prompt", " ")], 400),
            ("/v1/image-generate", [field("prompt", "a"), field("size", "a b")], 400),
            ("/v1/image-generate", [field("prompt", "a"), field("edit", "true")], 400),
        )
        for path, body, status in cases:
            answer = self.post(path, body)
            self.assertEqual(answer.status, status, (path, answer.body))
        self.assertEqual(self.service.ask("POST", "/v1/answers", "[]").status, 400)
        self.assertEqual(self.service.ask("POST", "/v1/image-answers", "x").status, 415)
        self.assertEqual((self.provider.requests, self.used()), ([], {}))

    def test_the_transforms_of_a_text(self):
        self.provider.answer = "```\nBetter.\n```"
        answer = self.post("/v1/text", {"text": "  worse \n", "action": "fix-grammar"})
        self.assertEqual((answer.status, answer.json), (200, {"text": "  Better. \n"}))
        self.provider.answer = "Besser."
        answer = self.post("/v1/text", {"text": "worse", "instruction": "auf Deutsch"})
        self.assertEqual(answer.json, {"text": "Besser."})
        system, user = self.provider.requests[-1].texts
        self.assertIn("auf Deutsch", user)
        self.assertRegex(user, r"<(text-[\w-]+)>\nworse\n</\1>$")
        self.assertEqual(self.post("/v1/text", {"text": "worse"}).status, 200)
        self.assertEqual(self.used(), {"text": 3})

    def test_pictures(self):
        history = json.dumps([{"question": "before?", "answer": "so"}])
        parts = [picture("file"), picture("files", OTHER), field("question", "what?"), field("history", history)]
        answer = self.post("/v1/image-answers", parts)
        self.assertEqual((answer.status, answer.json), (200, {"answer": "the answer is 42"}))
        sent = self.provider.requests[0]
        self.assertEqual(sent.images, [PICTURE, OTHER])
        self.assertEqual(sent.texts[1:], ["before?", "so", "what?"])
        self.assertEqual(self.used(), {"image_answers": 1})
        self.assertEqual(self.service.blobs() + self.service.incoming(), [])

    def test_a_prompt_for_a_picture_is_not_counted(self):
        asked = set()
        for mode in ("ui", "general", "image"):
            answer = self.post("/ai-prompt", [picture("file"), field("mode", mode)])
            self.assertEqual((answer.status, answer.json), (200, {"prompt": "the answer is 42"}))
            self.assertNotIn("X-Quota-Limit", answer.headers)
            self.assertEqual(self.provider.requests[-1].images, [PICTURE])
            asked.add(self.provider.requests[-1].texts[0])
        self.assertEqual((len(asked), self.used()), (3, {}))

    def test_pictures_are_made(self):
        answer = self.post("/v1/image-generate", [field("prompt", "a cat"), field("size", "1024x1024")])
        self.assertEqual(answer.status, 200, answer.body)
        self.assertEqual(answer.json["images"][0]["mimeType"], "image/png")
        self.assertEqual(base64.b64decode(answer.json["images"][0]["data"]), PICTURE)
        sent = self.provider.requests[-1]
        self.assertEqual(sent.path, "/v1/images/generations")
        self.assertEqual(sent.json, {"model": IMAGE_MODEL, "prompt": "a cat", "size": "1024x1024"})
        parts = [field("prompt", "a dog"), field("edit", "true"), picture("files"), picture("files", OTHER)]
        self.assertEqual(self.post("/v1/image-generate", parts).status, 200)
        sent = self.provider.requests[-1]
        self.assertEqual(sent.path, "/v1/images/edits")
        self.assertEqual(sent.body.count(b'name="image[]"; filename="picture-'), 2)
        for wanted in (PICTURE, OTHER, b"a dog", IMAGE_MODEL.encode()):
            self.assertIn(b"\r\n\r\n", sent.body[: sent.body.index(wanted)])
        self.assertEqual(self.used(), {"image_generate": 2})

    def test_a_picture_that_the_provider_keeps_elsewhere_is_fetched(self):
        def answer(handler, request):
            if request.path == "/picture":
                return handler.reply(200, OTHER, "image/png")
            return handler.reply(200, {"data": [{"url": self.provider.base_url.replace("/v1", "/picture")}]})

        self.provider.raw = answer
        made = self.post("/v1/image-generate", [field("prompt", "a cat")])
        self.assertEqual(base64.b64decode(made.json["images"][0]["data"]), OTHER)
        self.provider.raw = lambda handler, request: handler.reply(200, {"data": [{"b64_json": "bm8gcGljdHVyZQ=="}]})
        self.assertEqual(self.post("/v1/image-generate", [field("prompt", "a cat")]).status, 502)

    def test_nothing_left_is_said_before_anybody_is_asked(self):
        self.service.command("plan", "set", "embedded", "--answers", "1")
        self.assertEqual(self.post("/v1/answers", {"question": "a"}).status, 200)
        refused = self.post("/v1/answers", {"question": "a"}, EVENTS)
        self.assertEqual((refused.status, refused.json["metric"], refused.json["used"]), (402, "answers", 1))
        self.assertEqual(len(self.provider.requests), 1)

    def test_an_answer_in_pieces(self):
        answer = self.post("/v1/answers", {"question": "a"}, EVENTS)
        self.assertEqual((answer.status, answer.headers["Content-Type"]), (200, "text/event-stream"))
        self.assertEqual(answer.headers["X-Quota-Remaining"], "9")
        pieces = [("delta", {"text": word}) for word in ("the ", "answer ", "is ", "42")]
        self.assertEqual(events(answer.body), [*pieces, ("done", {"answer": "the answer is 42"})])
        self.assertTrue(self.provider.requests[0].json["stream"])
        parts = [picture("file"), field("question", "what?")]
        answer = self.post("/v1/image-answers", parts, EVENTS)
        self.assertEqual(events(answer.body)[-1], ("done", {"answer": "the answer is 42"}))
        self.assertEqual(self.used(), {"answers": 1, "image_answers": 1})


class WithoutProvider(AITest):
    def ai_arguments(self):
        return []

    def test_the_answer_says_how_to_set_one_and_its_parent_can(self):
        answer = self.post("/v1/answers", {"question": "a"})
        self.assertEqual(answer.status, 503)
        self.assertIn("keychain has not given", answer.body.decode())
        self.tell({"kind": "none"})
        answer = self.post("/v1/answers", {"question": "a"})
        self.assertEqual(answer.body.decode(), "No AI provider is set. Choose one in Settings → General, AI provider.\n")
        self.tell(self.provider.settings | {"key": "s3cret"})
        self.assertEqual(self.post("/v1/answers", {"question": "a"}).json, {"answer": "the answer is 42"})
        self.assertEqual(self.provider.requests[0].headers["Authorization"], "Bearer s3cret")
        self.tell({"kind": "openai-compatible", "problem": "The keychain is locked."})
        answer = self.post("/v1/answers", {"question": "a"})
        self.assertEqual((answer.status, answer.body), (503, b"The keychain is locked.\n"))
        for wrong in ({"kind": "magic"}, {"kind": "command"}, {"kind": "openai-compatible", "baseUrl": "ftp://x"}, {}):
            self.tell(wrong)
            self.assertEqual(self.post("/v1/answers", {"question": "a"}).status, 503, wrong)
        self.assertEqual(self.used(), {"answers": 1})

    def tell(self, settings):
        self.service.process.stdin.write(json.dumps(settings).encode() + b"\n")
        self.service.process.stdin.flush()
        self.assertEqual(json.loads(self.service.process.stdout.readline()), {"provider": "set"})


def main():
    global PROGRAM
    parser = argparse.ArgumentParser()
    parser.add_argument("--service", required=True)
    options, rest = parser.parse_known_args()
    PROGRAM = options.service
    unittest.main(argv=[sys.argv[0], *rest], verbosity=2)


if __name__ == "__main__":
    main()
