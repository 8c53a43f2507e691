#!/usr/bin/env python3
"""vantle-service when things go wrong: killed, out of room, asked to stop, and by clients that are slow or gone."""

import hashlib
import os
import random
import resource
import signal
import socket
import sqlite3
import threading
import time
import unittest

from driver.options import take_options
from driver.service import Service, form
from driver.waiting import until

PROGRAM = ""


class FaultTest(unittest.TestCase):
    def start(self, *arguments, **options):
        self.service = Service(PROGRAM, "--embedded", *arguments, **options)
        self.addCleanup(self.service.close)
        return self.service.start()

    def head(self, method, path, *headers):
        lines = [f"{method} {path} HTTP/1.1", "Host: localhost", f"Authorization: Bearer {self.service.token}", *headers]
        return "\r\n".join([*lines, "", ""]).encode()

    def connect(self):
        connection = socket.create_connection(("127.0.0.1", self.service.port), timeout=20)
        self.addCleanup(connection.close)
        return connection

    def begin_upload(self, content=bytes(500_000)):
        """Sends half of it: the connection, and the other half."""
        body, kind = form(("files", "a", "a/b", content))
        connection = self.connect()
        connection.sendall(
            self.head("POST", "/v1/upload", f"Content-Type: {kind}", f"Content-Length: {len(body)}")
        )
        connection.sendall(body[: len(body) // 2])
        until("the upload is under way", self.service.incoming)
        return connection, body[len(body) // 2 :]


def read_all(connection):
    """Until the other side closes; what it cut off counts as its end."""
    received = b""
    try:
        while piece := connection.recv(65536):
            received += piece
    except ConnectionResetError:
        pass
    return received


class Killed(FaultTest):
    ROUNDS = 6
    CLIENTS = 12

    def upload_until_it_dies(self, acknowledged):
        chance = random.Random()
        while True:
            content = chance.randbytes(chance.choice((10, 5_000, 300_000)))
            try:
                answer = self.service.upload(content, timeout=10)
            except (OSError, AssertionError):
                return
            except Exception as error:  # The answer may be cut anywhere.
                if type(error).__module__ != "http.client":
                    raise
                return
            if answer.status == 200:
                acknowledged.append((answer.json["url"], hashlib.sha256(content).hexdigest()))

    def test_no_acknowledged_upload_is_lost_and_no_link_points_to_nothing(self):
        self.start()
        acknowledged = []
        for turn in range(self.ROUNDS):
            before = len(acknowledged)
            clients = [
                threading.Thread(target=self.upload_until_it_dies, args=[acknowledged]) for _ in range(self.CLIENTS)
            ]
            for client in clients:
                client.start()
            until("uploads are answered", lambda: len(acknowledged) > before + 5 * turn, 30, 0.001)
            self.service.kill()
            for client in clients:
                client.join()
            self.check_database()
            self.service.start()
            self.assertEqual(self.service.incoming(), [])
        for url, digest in acknowledged:
            self.assertEqual(hashlib.sha256(self.service.get(url).body).hexdigest(), digest)
        self.service.purge(left=len(self.linked()))
        self.assertEqual({blob.name for blob in self.service.blobs()}, self.linked())

    def linked(self):
        connection = sqlite3.connect(self.service.data / "service.db")
        rows = connection.execute("SELECT blob, size FROM links").fetchall()
        connection.close()
        self.sizes = dict(rows)
        return {blob for blob, _ in rows}

    def check_database(self):
        """What links point to is whole, also links that nobody was told."""
        for blob in self.linked():
            content = (self.service.data / "blobs" / blob[:2] / blob).read_bytes()
            self.assertEqual((len(content), hashlib.sha256(content).hexdigest()), (self.sizes[blob], blob))


class Full(FaultTest):
    def test_is_said_and_leaves_nothing(self):
        limit = 1_000_000
        self.start(limits=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
        for size in (limit + 1, 5_000_000):
            answer = self.service.upload(os.urandom(size))
            self.assertEqual((answer.status, answer.body), (507, b"The service's disk is full.\n"))
        self.assertEqual((self.service.incoming(), self.service.blobs()), ([], []))
        kept = self.service.upload(b"small").json["url"]
        self.assertEqual(self.service.get(kept).body, b"small")
        self.fill_database(limit)
        self.assertEqual(self.service.get(kept).body, b"small")

    def fill_database(self, limit):
        """Events until the database may not grow."""
        event = '{"event":"e","installId":"%s","appVersion":"1","osVersion":"o"}' % ("x" * 200)
        statuses = set()
        connection_count = 8

        def send():
            while 507 not in statuses:
                statuses.add(self.service.ask("POST", "/v1/events", event).status)

        senders = [threading.Thread(target=send) for _ in range(connection_count)]
        for sender in senders:
            sender.start()
        for sender in senders:
            sender.join()
        self.assertEqual(statuses, {204, 507})


class Clients(FaultTest):
    def test_that_go_away_leave_nothing(self):
        self.start()
        connection, _ = self.begin_upload()
        connection.close()
        until("it is removed", lambda: not self.service.incoming())
        self.assertEqual(self.service.blobs(), [])

    def test_that_trickle_are_cut_off_while_others_are_served(self):
        self.start("--patience", "1")
        upload, rest = self.begin_upload(bytes(2_000))
        body, kind = form(("files", "a", "a/b", bytes(100_000)))
        slow = {
            self.connect(): self.head("GET", "/health") * 50,
            upload: rest,
        }
        begun = time.monotonic()
        open_ones = dict(slow)

        def trickle():
            for connection, text in list(open_ones.items()):
                try:
                    # A head that never ends, and a body of a few bytes a second.
                    connection.sendall(b"X" if text is not rest else text[:1])
                    connection.settimeout(0.01)
                    if connection.recv(1000) == b"":
                        del open_ones[connection]
                except TimeoutError:
                    pass
                except OSError:
                    del open_ones[connection]
            self.assertEqual(self.service.ask("GET", "/health").status, 200)
            return not open_ones

        until("both are cut off", trickle, 15, 0.2)
        self.assertLess(time.monotonic() - begun, 12)
        until("nothing is left", lambda: not self.service.incoming())

    def test_that_must_not_learn_why_before_they_have_sent_it_all(self):
        self.start()
        answer = self.service.upload(bytes(30_000_000), token="wrong")
        self.assertEqual((answer.status, answer.body), (401, b"A valid credential is needed.\n"))
        answer = self.service.upload(bytes(257_500_000))
        self.assertEqual(answer.status, 413)

    def test_that_ask_first_are_told_before_they_send(self):
        self.start()
        connection = self.connect()
        too_large = "Content-Length: 99999999999"
        connection.sendall(self.head("POST", "/v1/upload", "Content-Type: x/y", too_large, "Expect: 100-continue"))
        self.assertTrue(read_all(connection).startswith(b"HTTP/1.1 413 "))

    def test_that_say_in_two_ways_where_a_body_ends(self):
        self.start()
        connection = self.connect()
        both = ("Content-Length: 5", "Transfer-Encoding: chunked")
        smuggled = self.head("GET", "/v1/quota")
        connection.sendall(self.head("POST", "/v1/events", *both) + b"0\r\n\r\n" + smuggled)
        answer = read_all(connection)
        self.assertTrue(answer.startswith(b"HTTP/1.1 400 "), answer)
        self.assertEqual(answer.count(b"HTTP/1.1"), 1)

    def test_that_open_too_many_connections(self):
        self.start("--connections-per-address", "4")
        held = [self.begin_upload(bytes(100_000 + i)) for i in range(4)]
        extra = self.connect()
        try:
            extra.sendall(self.head("GET", "/health"))
        except OSError:
            pass
        self.assertEqual(read_all(extra), b"")
        held[0][0].close()
        until("there is room again", lambda: len(self.service.incoming()) == 3)
        until("one is served again", self.is_served)

    def is_served(self):
        try:
            return self.service.ask("GET", "/health").status == 200
        except OSError:
            return False

    def test_large_uploads_take_no_memory(self):
        self.start()
        before = self.service.memory("VmRSS")
        url = self.service.upload(bytes(200_000_000)).json["url"]
        self.assertEqual(len(self.service.get(url).body), 200_000_000)
        self.assertLess(self.service.memory("VmHWM") - before, 16_000)


class Stopped(FaultTest):
    def stop_softly(self, *arguments):
        self.service = Service(PROGRAM, "--credential-file", "{folder}/secret", *arguments)
        self.addCleanup(self.service.close)
        (self.service.folder / "secret").write_text("token")
        self.service.arguments[1] = str(self.service.folder / "secret")
        self.service.token = "token"
        self.service.start()
        upload = self.begin_upload()
        self.service.process.send_signal(signal.SIGTERM)
        until("it takes no new connection", lambda: not self.is_connected())
        return upload

    def is_connected(self):
        try:
            socket.create_connection(("127.0.0.1", self.service.port), timeout=1).close()
            return True
        except OSError:
            return False

    def test_it_finishes_what_is_under_way(self):
        connection, rest = self.stop_softly()
        connection.sendall(rest)
        answer = read_all(connection)
        self.assertTrue(answer.startswith(b"HTTP/1.1 200 OK"), answer)
        self.assertIn(b"\r\nConnection: close", answer)
        self.assertEqual(self.service.process.wait(10), 0)
        self.assertEqual(len(self.service.blobs()), 1)

    def test_it_waits_no_longer_than_it_was_told(self):
        connection, _ = self.stop_softly("--drain", "1")
        self.assertEqual(self.service.process.wait(10), 0)
        self.assertEqual(read_all(connection), b"")
        self.assertEqual((self.service.incoming(), self.service.blobs()), ([], []))


if __name__ == "__main__":
    [PROGRAM] = take_options("service")
    unittest.main(verbosity=2)
