#!/usr/bin/env python3
"""The AI endpoints of vantle-service from outside, with scripted providers of each kind behind it."""

import base64
import json
import socket
import time
import unittest

from driver.ai import EVENTS, KEY, OTHER, PICTURE, AITest, ProviderTest, events, field, picture
from driver.options import take_options
from driver.provider import IMAGE_MODEL, MODEL
from driver.waiting import until


def stream(*sent):
    """What a provider does that sends these events and ends."""

    def answer(handler, _):
        handler.begin_events()
        for one in sent:
            handler.event(one)

    return answer


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


class Faults(ProviderTest):
    """Whatever the provider does, the answer says what it was and nothing is counted."""

    def test_what_it_says_is_passed_on_without_its_key(self):
        told = {"error": {"message": "Incorrect API key provided: " + KEY, "type": "auth"}}
        self.fails(lambda handler, _: handler.reply(401, told), "HTTP 401", "Incorrect API key provided: …")
        self.assertEqual(self.provider.requests[0].headers["Authorization"], f"Bearer {KEY}")
        self.fails(lambda handler, _: handler.reply(429, {"error": "slow down"}), "HTTP 429", "slow down")
        self.fails(lambda handler, _: handler.reply(400, {"detail": "x" * 5000}), "HTTP 400", "xxx")
        self.fails(lambda handler, _: handler.reply(500, b"<html>oops", "text/html"), "HTTP 500")
        self.fails(lambda handler, _: handler.reply(404, b""), "HTTP 404", "base URL")
        self.fails(lambda handler, _: handler.reply(200, {"error": {"message": "overloaded"}}), "overloaded")
        self.assertEqual(self.used(), {})

    def test_answers_that_are_none(self):
        def chat(content, reason="stop"):
            return {"choices": [{"message": {"content": content}, "finish_reason": reason}]}

        for body in (b"", b"gibberish", b"[]", b"{", b"\xff\xfe"):
            self.fails(lambda handler, _, body=body: handler.reply(200, body), "not understood")
        for body in ({}, {"choices": []}, {"choices": 7}, chat(None), chat(" \n"), chat({"a": 1})):
            self.fails(lambda handler, _, body=body: handler.reply(200, body), "empty answer")
        self.fails(lambda handler, _: handler.reply(200, chat("x" * 10_000_000)), "too long")
        self.provider.raw = lambda handler, _: handler.reply(200, chat("half a", "length"))
        self.assertIn("half a\n\n[The answer ends here", self.post("/v1/answers", {"question": "a"}).json["answer"])
        # Nobody wants half of what he has selected.
        answer = self.post("/v1/text", {"text": "a"})
        self.assertEqual((answer.status, b"too long" in answer.body), (502, True))
        self.assertEqual(self.used(), {"answers": 1})

    def test_connections_that_break_or_stall(self):
        def half(handler, _):
            handler.send_response(200)
            handler.send_header("Content-Length", "1000")
            handler.end_headers()
            handler.wfile.write(b"{")
            handler.close_connection = True

        def drip(handler, _):
            handler.send_response(200)
            handler.send_header("Content-Length", "1000")
            handler.end_headers()
            for _ in range(100):
                handler.wfile.write(b" ")
                time.sleep(0.1)

        self.fails(half, "cut off")
        self.fails(drip, "within 2 seconds")
        self.fails(lambda *_: time.sleep(4), "within 2 seconds")
        self.provider.close()
        self.fails(None, "cannot be reached")
        self.assertEqual(self.used(), {})

    def test_streams_that_break(self):
        def chunk(text):
            return {"choices": [{"delta": {"content": text}}]}

        self.fails(stream(), "empty answer", headers=EVENTS)
        self.fails(stream(chunk(" "), chunk("\n"), "[DONE]"), "empty answer", headers=EVENTS)
        self.fails(stream({"error": {"message": "overloaded"}}), "overloaded", headers=EVENTS)
        self.fails(lambda handler, _: handler.reply(429, {"error": "slow down"}), "slow down", headers=EVENTS)
        for broken, words in (
            (stream(chunk("a"), chunk("b")), "cut off"),
            (stream(chunk("a"), chunk("b"), {"error": {"message": "overloaded"}}), "overloaded"),
            (stream(chunk("a"), chunk("b"), *[chunk("x" * 100_000)] * 12), "too long"),
            (stream(chunk("a"), chunk("b"), "x" * 4_100_000), "too long"),
        ):
            self.provider.raw = broken
            answer = self.post("/v1/answers", {"question": "a"}, EVENTS)
            self.assertEqual(answer.status, 200)
            got = events(answer.body)
            self.assertEqual(got[:2], [("delta", {"text": "a"}), ("delta", {"text": "b"})])
            self.assertEqual(got[-1][0], "error")
            self.assertIn(words, got[-1][1]["error"])
        self.assertEqual(self.used(), {})
        # One that knows no streams answers all the same.
        whole = {"choices": [{"message": {"content": [{"type": "text", "text": "a"}, {"type": "text", "text": "b"}]}}]}
        self.provider.raw = lambda handler, _: handler.reply(200, whole)
        answer = self.post("/v1/answers", {"question": "a"}, EVENTS)
        self.assertEqual(events(answer.body), [("delta", {"text": "ab"}), ("done", {"answer": "ab"})])


class Leaving(AITest):
    """Nobody works for somebody who has gone."""

    def leave(self, headers, after):
        body = json.dumps({"question": "a"})
        head = f"POST /v1/answers HTTP/1.1\r\nHost: x\r\nAuthorization: Bearer {self.service.token}\r\n{headers}"
        with socket.create_connection(("127.0.0.1", self.service.port)) as client:
            client.sendall(f"{head}Content-Length: {len(body)}\r\n\r\n{body}".encode())
            after(client)

    def reads_a_piece(self, client):
        received = b""
        while b"event: delta" not in received:
            received += client.recv(4096)

    def test_whoever_reads_along(self):
        self.provider.answer, self.provider.pause = "word " * 300, 0.1
        self.leave("Accept: text/event-stream\r\n", self.reads_a_piece)
        until("the provider's connection is cut", lambda: self.provider.cut == 1, 8)
        # What was read counts.
        until("it is counted", lambda: self.used() == {"answers": 1}, 5)

    def test_an_end_of_the_service_waits_for_nobody(self):
        self.provider.answer, self.provider.pause = "word " * 300, 0.1

        def end(client):
            self.reads_a_piece(client)
            begun = time.monotonic()
            self.assertEqual(self.service.stop(), 0)
            self.assertLess(time.monotonic() - begun, 6)

        self.leave("Accept: text/event-stream\r\n", end)


class Messages(ProviderTest):
    """The other protocol."""

    def ai_arguments(self):
        base = self.provider.base_url.removesuffix("/v1")
        return ["--ai-provider", "anthropic", "--ai-base-url", base, "--ai-model", MODEL, *self.limits()]

    def test_a_question_with_pictures_and_history(self):
        history = json.dumps([{"question": "before?", "answer": "so"}])
        parts = [picture("file"), picture("files", OTHER), field("question", "what?"), field("history", history)]
        for headers in ({}, EVENTS):
            answer = self.post("/v1/image-answers", parts, headers)
            self.assertEqual(answer.status, 200, answer.body)
            said = events(answer.body)[-1][1] if headers else answer.json
            self.assertEqual(said, {"answer": "the answer is 42"})
            sent = self.provider.requests[-1]
            self.assertEqual((sent.path, sent.json["model"], sent.json["max_tokens"]), ("/v1/messages", MODEL, 4096))
            self.assertEqual((sent.headers["x-api-key"], sent.headers["anthropic-version"]), (KEY, "2023-06-01"))
            self.assertEqual([message["role"] for message in sent.json["messages"]], ["user", "assistant", "user"])
            self.assertEqual(sent.texts[1:], ["before?", "so", "what?"])
            self.assertEqual(sent.images, [PICTURE, OTHER])
        self.assertEqual(len(events(answer.body)), 5)

    def test_what_it_cannot_and_what_is_wrong(self):
        answer = self.post("/v1/image-generate", [field("prompt", "a cat")])
        self.assertEqual((answer.status, b"makes no pictures" in answer.body), (503, True))
        told = {"type": "error", "error": {"type": "overloaded_error", "message": "Overloaded"}}

        def late(handler, _):
            handler.begin_events()
            handler.event(told, "error")

        for raw, headers in ((lambda handler, _: handler.reply(529, told), {}), (late, EVENTS)):
            self.provider.raw = raw
            answer = self.post("/v1/answers", {"question": "a"}, headers)
            self.assertEqual((answer.status, b"Overloaded" in answer.body), (502, True))
        cut = {"content": [{"type": "text", "text": "half"}], "stop_reason": "max_tokens"}
        self.provider.raw = lambda handler, _: handler.reply(200, cut)
        self.assertEqual(self.post("/v1/text", {"text": "a"}).status, 502)
        self.assertEqual(self.used(), {})

    def test_answers_that_are_none(self):
        def whole(content, **more):
            return lambda handler, _: handler.reply(200, {"type": "message", "content": content} | more)

        for body in (b"", b"gibberish", b"[]", b'{"type":"message","content":[{"type":"te'):
            self.fails(lambda handler, _, body=body: handler.reply(200, body), "not understood")
        for content in ([], 7, [{"type": "image"}], [{"type": "text", "text": " \n"}]):
            self.fails(whole(content), "empty answer")
        self.fails(whole([{"type": "text", "text": "x" * 5_000_000}]), "too long")
        self.fails(lambda handler, _: handler.reply(401, {"error": {"message": f"no such key: {KEY}"}}), "HTTP 401", "no such key: …")
        self.fails(lambda *_: time.sleep(4), "within 2 seconds")
        self.assertEqual(self.used(), {})

    def test_streams_that_break(self):
        def piece(text):
            return {"type": "content_block_delta", "index": 0, "delta": {"type": "text_delta", "text": text}}

        self.fails(stream({"type": "message_stop"}), "empty answer", headers=EVENTS)
        half = json.dumps(piece("c"))[:-9]
        for last, words in (([], "cut off"), ([half], "cut off"), ([piece("x" * 1_100_000)], "too long")):
            self.provider.raw = stream(piece("a"), piece("b"), *last)
            got = events(self.post("/v1/answers", {"question": "a"}, EVENTS).body)
            self.assertEqual(got[:2], [("delta", {"text": "a"}), ("delta", {"text": "b"})])
            self.assertEqual((got[-1][0], words in got[-1][1]["error"]), ("error", True), got[-1])
        self.assertEqual(self.used(), {})


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


if __name__ == "__main__":
    [AITest.program] = take_options("service")
    unittest.main(verbosity=2)
