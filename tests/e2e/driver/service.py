"""A running vantle-service, and what its clients say to it."""

import http.client
import json
import subprocess
import tempfile
import uuid
from pathlib import Path

from .waiting import until


def form(*parts):
    """A form as Vantle's clients write it: (name, file name or None, type, bytes)."""
    boundary = f"Vantle-{str(uuid.uuid4()).upper()}"
    body = b""
    for name, file_name, kind, content in parts:
        body += f'--{boundary}\r\nContent-Disposition: form-data; name="{name}"'.encode()
        if file_name is not None:
            body += f'; filename="{file_name}"\r\nContent-Type: {kind}'.encode()
        body += b"\r\n\r\n" + content + b"\r\n"
    return body + f"--{boundary}--\r\n".encode(), f"multipart/form-data; boundary={boundary}"


class Answer:
    def __init__(self, response, body):
        self.status, self.headers, self.body = response.status, response.headers, body

    @property
    def json(self):
        return json.loads(self.body)


class Service:
    """One folder of data and the program that runs on it."""

    def __init__(self, program, *arguments, folder=None, limits=None):
        self.program, self.arguments, self.limits = program, list(arguments), limits
        self._owned = None if folder else tempfile.TemporaryDirectory(prefix="vantle-service-")
        self.folder = Path(folder or self._owned.name)
        self.data = self.folder / "data"
        self.log_path = self.folder / "log"
        self.process = None
        self.token = ""

    def start(self):
        """Waits until it answers; an embedded one tells its credential."""
        self.log_path.touch()
        before = self.log_path.stat().st_size
        with open(self.log_path, "ab") as log:
            self.process = subprocess.Popen(
                [self.program, "serve", *self.place, *self.listening, *self.arguments],
                stdin=subprocess.PIPE,
                stdout=subprocess.PIPE,
                stderr=log,
                preexec_fn=self.limits,
            )
        if "--embedded" in self.arguments:
            line = self.process.stdout.readline()
            if not line:
                raise RuntimeError(f"the service did not start: {self.log()}")
            greeting = json.loads(line)
            self.port, self.token = greeting["port"], greeting["token"]
            return self
        while b"\n" not in self.log_path.read_bytes()[before:]:
            if self.process.poll() is not None:
                raise RuntimeError(f"the service did not start: {self.log_path.read_text()}")
        first = self.log_path.read_bytes()[before:].split(b"\n")[0].decode()
        if "http://" not in first:
            raise RuntimeError(first)
        self.port = int(first.rsplit(":", 1)[1])
        return self

    @property
    def place(self):
        return ["--data", str(self.data)]

    @property
    def listening(self):
        return [] if "--embedded" in self.arguments or "--listen" in self.arguments else ["--listen", "127.0.0.1:0"]

    @property
    def database(self):
        given = "--database" in self.arguments
        return self.arguments[self.arguments.index("--database") + 1] if given else None

    def command(self, *words, check=True):
        """One of the program's other commands, on the same folder; with the database it runs with."""
        database = ["--database", self.database] if self.database else []
        result = subprocess.run(
            [self.program, *words, *self.place, *database], capture_output=True, text=True, timeout=30
        )
        if check and result.returncode:
            raise RuntimeError(result.stderr)
        return result

    def add_token(self, name, *options):
        return self.command("token", "add", name, *options).stdout.strip()

    def ask(self, method, path, body=None, token=None, headers=None, timeout=20):
        """`token`: "" sends none; None the service's own."""
        token = self.token if token is None else token
        sent = {"Authorization": f"Bearer {token}"} if token else {}
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=timeout)
        try:
            connection.request(method, path, body, sent | (headers or {}))
            response = connection.getresponse()
            return Answer(response, response.read())
        finally:
            connection.close()

    def upload(self, content, name="a.bin", kind="application/octet-stream", path="/v1/upload", **options):
        body, content_type = form(("file" if path == "/v1/images" else "files", name, kind, content))
        headers = {"Content-Type": content_type} | options.pop("headers", {})
        return self.ask("POST", path, body, headers=headers, **options)

    def get(self, url, method="GET", **headers):
        """A link of this service; in the names of headers "_" stands for "-"."""
        path = url[url.index("/l/") :]
        return self.ask(method, path, token="", headers={k.replace("_", "-"): v for k, v in headers.items()})

    def blobs(self):
        return sorted(path for path in (self.data / "blobs").glob("*/*"))

    def purge(self, left):
        """Until these many blobs are left: the service's own purge at its start passes over what is held just then."""

        def is_done():
            self.command("purge")
            return len(self.blobs()) == left

        until(f"{left} blobs are left", is_done, 20)

    def incoming(self):
        return list((self.data / "incoming").iterdir())

    def log(self):
        return self.log_path.read_text()

    def memory(self, what):
        """"VmRSS": what it takes just now, "VmHWM": the most that it has taken, in KB."""
        status = Path(f"/proc/{self.process.pid}/status").read_text()
        return int(status.split(what + ":")[1].split()[0])

    def kill(self):
        self.process.kill()
        self._reap()

    def stop(self):
        """As its parent's end does; the exit status."""
        if "--embedded" not in self.arguments:
            self.process.terminate()
        return self._reap()

    def _reap(self):
        self.process.stdin.close()
        self.process.stdout.close()
        status = self.process.wait(20)
        self.process = None
        return status

    def close(self):
        if self.process:
            self.kill()
        if self._owned:
            self._owned.cleanup()
