"""An AI provider on loopback that says what a test tells it to: chat, messages, image generation, the list of models."""

import base64
import json
import struct
import threading
import time
import zlib
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

MODEL = "scripted"
IMAGE_MODEL = "scripted-image"


def png(width=96, height=64, colour=(47, 111, 237)):
    """A picture of one colour."""

    def chunk(kind, content):
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

    rows = (b"\0" + bytes(colour) * width) * height
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")


class Request:
    def __init__(self, path, headers, body):
        self.path, self.headers, self.body = path, headers, body

    @property
    def json(self):
        return json.loads(self.body)

    @property
    def texts(self):
        """Every text of the conversation, the system's first, whichever kind of provider it was meant for."""
        body = self.json
        found = [body["system"]] if "system" in body else []
        for message in body.get("messages", []):
            content = message["content"]
            parts = [{"text": content}] if isinstance(content, str) else content
            found += [part["text"] for part in parts if "text" in part]
        return found

    @property
    def images(self):
        """The bytes of the conversation's pictures."""
        found = []
        for message in self.json.get("messages", []):
            for part in message["content"] if isinstance(message["content"], list) else []:
                if part.get("type") == "image_url":
                    found.append(base64.b64decode(part["image_url"]["url"].split(",", 1)[1]))
                if part.get("type") == "image":
                    found.append(base64.b64decode(part["source"]["data"]))
        return found


class Provider:
    """`answer`: the text, or a function of the Request; in a stream it comes word by word with `pause` seconds between.
    `raw`: in its place, what is sent for a request by a function (handler, Request)."""

    def __init__(self, answer="pong", pause=0.0):
        self.answer, self.pause, self.raw = answer, pause, None
        self.picture = png()
        self.requests = []
        self.cut = self.waiting = 0
        self._server = ThreadingHTTPServer(("127.0.0.1", 0), self._handler())
        self._server.daemon_threads = True
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    @property
    def port(self):
        return self._server.server_address[1]

    @property
    def base_url(self):
        return f"http://127.0.0.1:{self.port}/v1"

    @property
    def arguments(self):
        """For `vantle-service serve`."""
        return [
            "--ai-provider", "openai", "--ai-base-url", self.base_url,
            "--ai-model", MODEL, "--ai-image-model", IMAGE_MODEL,
        ]  # fmt: skip

    @property
    def settings(self):
        """For the application: its ai-provider.json."""
        return {
            "kind": "openai-compatible",
            "baseUrl": self.base_url,
            "model": MODEL,
            "imageModel": IMAGE_MODEL,
        }

    def say_nothing(self):
        """To any question, until whoever has asked is gone; `waiting` counts them."""

        def wait(handler, _):
            self.waiting += 1
            handler.connection.recv(1)
            self.waiting -= 1
            raise ConnectionResetError

        self.raw = wait

    def close(self):
        self._server.shutdown()
        self._server.server_close()

    def _handler(provider):  # noqa: N805
        class Handler(_Handler):
            def answer(self, request):
                provider.requests.append(request)
                try:
                    if provider.raw:
                        provider.raw(self, request)
                    else:
                        self.speak(provider, request)
                except (BrokenPipeError, ConnectionResetError):
                    provider.cut += 1

        return Handler


class _Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    disable_nagle_algorithm = True

    def log_message(self, *arguments):
        pass

    def do_GET(self):
        self.answer(Request(self.path, self.headers, b""))

    def do_POST(self):
        body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        self.answer(Request(self.path, self.headers, body))

    def reply(self, status, body, kind="application/json", headers=()):
        content = body if isinstance(body, bytes) else json.dumps(body).encode()
        self.send_response(status)
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(content)))
        for name, value in headers:
            self.send_header(name, value)
        self.end_headers()
        self.wfile.write(content)

    def begin_events(self):
        self.close_connection = True
        self.send_response(200)
        self.send_header("Content-Type", "text/event-stream")
        self.send_header("Connection", "close")
        self.end_headers()

    def event(self, data, name=None):
        head = f"event: {name}\n" if name else ""
        self.wfile.write(f"{head}data: {data if isinstance(data, str) else json.dumps(data)}\n\n".encode())
        self.wfile.flush()

    def speak(self, provider, request):
        path = request.path.split("?")[0]
        if path == "/v1/models":
            return self.reply(200, {"data": [{"id": MODEL}, {"id": IMAGE_MODEL}]})
        if path in ("/v1/images/generations", "/v1/images/edits"):
            picture = base64.b64encode(provider.picture).decode()
            return self.reply(200, {"created": 1, "data": [{"b64_json": picture}]})
        text = provider.answer(request) if callable(provider.answer) else provider.answer
        if path == "/v1/chat/completions":
            return self.chat(provider, request, text)
        if path == "/v1/messages":
            return self.messages(provider, request, text)
        return self.reply(404, {"error": {"message": "there is nothing here"}})

    def chat(self, provider, request, text):
        if not request.json.get("stream"):
            time.sleep(provider.pause)
            message = {"role": "assistant", "content": text}
            return self.reply(200, {"choices": [{"index": 0, "message": message, "finish_reason": "stop"}]})
        self.begin_events()
        for piece in pieces(text):
            self.event({"choices": [{"index": 0, "delta": {"content": piece}, "finish_reason": None}]})
            time.sleep(provider.pause)
        self.event({"choices": [{"index": 0, "delta": {}, "finish_reason": "stop"}]})
        self.event("[DONE]")

    def messages(self, provider, request, text):
        if not request.json.get("stream"):
            time.sleep(provider.pause)
            content = [{"type": "text", "text": text}]
            return self.reply(200, {"type": "message", "content": content, "stop_reason": "end_turn"})
        self.begin_events()
        self.event({"type": "message_start", "message": {"content": []}}, "message_start")
        self.event({"type": "content_block_start", "index": 0, "content_block": {"type": "text", "text": ""}},
                   "content_block_start")  # fmt: skip
        for piece in pieces(text):
            self.event({"type": "content_block_delta", "index": 0, "delta": {"type": "text_delta", "text": piece}},
                       "content_block_delta")  # fmt: skip
            time.sleep(provider.pause)
        self.event({"type": "content_block_stop", "index": 0}, "content_block_stop")
        self.event({"type": "message_delta", "delta": {"stop_reason": "end_turn"}}, "message_delta")
        self.event({"type": "message_stop"}, "message_stop")


def pieces(text):
    """Words with the blank after each, which together are the text."""
    words = text.split(" ")
    return [word + " " for word in words[:-1]] + words[-1:]
