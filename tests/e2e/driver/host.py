"""A host for every service that Vantle's tools call: remembers each request, forgives nothing, answers as it is told."""

import json
import threading
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer


class Malformed(Exception):
    pass


class Sent:
    """One request as it came."""

    def __init__(self, method, path, headers, body):
        self.method, self.path, self.body = method, path, body
        self.headers = headers

    @property
    def json(self):
        return json.loads(self.body)

    @property
    def parts(self):
        """(name, file name, type, content) of each part, in their order; for text fields the two in the middle are None."""
        boundary = after(self.headers["Content-Type"].encode(), b"multipart/form-data; boundary=")
        begin, end = b"--" + boundary + b"\r\n", b"--" + boundary + b"--\r\n"
        found, rest = [], self.body
        while rest != end:
            rest = after(rest, begin)
            head, rest = cut(rest, b"\r\n\r\n")
            content, rest = cut(rest, b"\r\n--" + boundary)
            rest = b"--" + boundary + rest
            name, about = cut(after(head, b'Content-Disposition: form-data; name="'), b'"')
            if not about:
                found.append((name.decode(), None, None, content))
                continue
            file_name, kind = cut(after(about, b'; filename="'), b'"')
            found.append((name.decode(), file_name.decode(), after(kind, b"\r\nContent-Type: ").decode(), content))
        return found


def after(text, beginning):
    if not text.startswith(beginning):
        raise Malformed(f"{beginning!r} is not at the beginning of {text[:80]!r}")
    return text[len(beginning) :]


def cut(text, mark):
    before, found, rest = text.partition(mark)
    if not found:
        raise Malformed(f"{mark!r} is not in {text[:80]!r}")
    return before, rest


class Host:
    """`answer`: (status, body) for every request, or a function of it; a body is bytes, or an object that is sent as JSON."""

    def __init__(self):
        self.answer, self.requests = (200, {}), []
        host = self

        class Handler(BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def log_message(self, *arguments):
                pass

            def reply(self):
                body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
                request = Sent(self.command, self.path, self.headers, body)
                host.requests.append(request)
                status, said = host.answer(request) if callable(host.answer) else host.answer
                content = said if isinstance(said, bytes) else json.dumps(said).encode()
                self.send_response(status)
                self.send_header("Content-Length", str(len(content)))
                self.end_headers()
                self.wfile.write(content)

            do_GET = do_POST = reply

        self._server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self._server.daemon_threads = True
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    @property
    def url(self):
        return f"http://127.0.0.1:{self._server.server_address[1]}"

    def close(self):
        self._server.shutdown()
        self._server.server_close()
