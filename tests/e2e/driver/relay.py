#!/usr/bin/env python3
"""Lets a program in a private network reach a server of the tests on this one's loopback. Run as a program inside, it
listens on the loopback there and hands each connection to a Unix socket, which no network holds back."""

import socket
import subprocess
import sys
import tempfile
import threading
from contextlib import contextmanager, suppress
from pathlib import Path


@contextmanager
def reachable(network, port):
    """The port at which programs in `network` reach ours; the same one without a network."""
    if not network:
        yield port
        return
    with tempfile.TemporaryDirectory(prefix="vantle-relay-") as folder, socket.socket(socket.AF_UNIX) as listener:
        path = str(Path(folder) / "socket")
        listener.bind(path)
        listener.listen()
        start(serve, listener, lambda: socket.create_connection(("127.0.0.1", port)))
        inside = subprocess.Popen(network.command([sys.executable, __file__, path]), stdout=subprocess.PIPE, text=True)
        try:
            yield int(inside.stdout.readline())
        finally:
            inside.terminate()
            inside.wait(5)
            inside.stdout.close()


def serve(listener, connect):
    with suppress(OSError):
        while True:
            one, other = listener.accept()[0], connect()
            start(pump, one, other)
            start(pump, other, one)


def pump(source, target):
    """Until one side ends; a broken one takes the other with it."""
    try:
        while data := source.recv(65536):
            target.sendall(data)
        target.shutdown(socket.SHUT_WR)
    except OSError:
        for end in (source, target):
            with suppress(OSError):
                end.shutdown(socket.SHUT_RDWR)


def start(work, *arguments):
    threading.Thread(target=work, args=arguments, daemon=True).start()


def connected_to(path):
    connection = socket.socket(socket.AF_UNIX)
    connection.connect(path)
    return connection


def main():
    with socket.create_server(("127.0.0.1", 0)) as listener:
        print(listener.getsockname()[1], flush=True)
        serve(listener, lambda: connected_to(sys.argv[1]))


if __name__ == "__main__":
    main()
