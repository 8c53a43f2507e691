#!/usr/bin/env python3
"""No text, image or credential leaves a trace: every network tool is used with marked secrets while everything that can be
logged is, and then the logs, the files, the arguments and the environments of all processes are searched for them."""

import base64
import subprocess
import threading
import time
import unittest
from pathlib import Path

from driver import clipboard
from driver.application import Application
from driver.display import PrivateDisplay
from driver.keyring import keyring, remember
from driver.network import PrivateNetwork
from driver.options import take_options
from driver.provider import Provider, png
from driver.waiting import StepFailed, until
from driver.x import Desktop

VANTLE = ""
WORDS = ("zq-question", "zq-answer", "zq-excuse", "zq-person", "zq-key", "zqtyped")
QUESTION, ANSWER, EXCUSE, PERSON, KEY, TYPED = WORDS
PICTURE = png()
# Where they belong: the keychain, what is to be reported, links, and the gallery of made pictures.
KEPT = ("keyrings/", "Vantle/service/service.db", "Vantle/service/blobs/", "Vantle/GenerateImage/")


def forms(secret):
    """The secret as it may stand in a log."""
    raw = secret if isinstance(secret, bytes) else secret.encode()
    # Of a base64 text, what does not depend on its neighbours.
    encoded = base64.b64encode(raw)[: len(raw) // 3 * 4]
    return {raw, raw.hex().encode(), raw.hex().upper().encode(), encoded}


class Processes:
    """Looks at the arguments and the environment of all processes below `home`, as long as it lives."""

    def __init__(self, home, searched):
        self.mark, self.searched, self.found, self.seen = f"HOME={home}".encode(), searched, set(), set()
        self.ended = threading.Event()
        self.thread = threading.Thread(target=self.watch)
        self.thread.start()

    def watch(self):
        while not self.ended.wait(0.02):
            for process in Path("/proc").glob("[0-9]*"):
                try:
                    told = (process / "environ").read_bytes()
                    if self.mark in told:
                        self.look((process / "cmdline").read_bytes(), told)
                except OSError:
                    continue

    def look(self, words, environment):
        self.seen.add(Path(words.split(b"\0")[0].decode()).name)
        self.found |= {(words, secret) for secret in self.searched if secret in words + environment}

    def end(self):
        self.ended.set()
        self.thread.join()


class NoTraces(unittest.TestCase):
    def setUp(self):
        display = self.enterContext(PrivateDisplay())
        self.desktop = Desktop(display.name)
        try:
            network = PrivateNetwork()
            network.go_online()
            self.addCleanup(network.close)
        except StepFailed:
            network = None
        self.provider = network.inside(lambda: Provider(ANSWER)) if network else Provider(ANSWER)
        self.addCleanup(self.provider.close)
        self.application = Application(VANTLE, network, accessible=False)
        self.addCleanup(self.application.close)
        self.home = Path(self.application.home.name)
        (self.home / "tmp").mkdir()
        self.application.environment |= {"QT_LOGGING_RULES": "*=true", "TMPDIR": str(self.home / "tmp")}
        self.enterContext(keyring(self.application))
        remember("api", PERSON)
        remember("ai-provider", KEY)
        self.errors = b""

    def test_nothing_is_left_of_what_was_sent(self):
        self.application.write_settings()
        # Hosts whose key is told them, though they are here.
        self.application.write_json("ai-provider.json", self.provider.settings)
        self.application.start()
        self.application.wait_until_live()
        token = self.application.ask({"do": "service"})["token"]
        searched = set().union(*map(forms, (*WORDS, token, PICTURE[:8], PICTURE[-30:-12])))
        processes = Processes(self.home, searched)
        try:
            self.use_everything()
        finally:
            processes.end()
        self.assertEqual(processes.found, set())
        self.assertLessEqual({"vantle", "vantle-service"}, processes.seen)
        self.application.stop()
        logs = {"the commands": self.errors} | self.files()
        # It was really talkative.
        self.assertIn(b"qt.", logs["vantle.log"])
        self.assertIn(b"POST /v1/answers 200", logs["data/Vantle/service/service.log"])
        self.assertIn(b"POST /v1/answers 502", logs["data/Vantle/service/service.log"])
        found = [(name, secret, around(text, secret)) for name, text in logs.items() for secret in searched if secret in text]
        self.assertFalse(found, found)
        self.assertEqual(list((self.home / "tmp").iterdir()), [])

    def use_everything(self):
        for raw, status in ((None, 0), (excuse, 1), (broken, 1), (garbage, 1)):
            self.provider.raw = raw
            self.run_commands(status)
        self.assertEqual(self.provider.requests[0].headers["Authorization"], f"Bearer {KEY}")
        for raw in (None, excuse):
            self.provider.raw = raw
            self.use_panels()

    def run_commands(self, status):
        picture = self.home / "picture.png"
        picture.write_bytes(PICTURE)
        for words in (
            ["transform", "--mode", "improve"],
            ["ask", "-"],
            ["ask", "-", "--image", picture],
            ["prompt", picture],
            ["generate", "-", "-o", self.home / "made.png", "--image", picture],
        ):
            self.run_command(words, status)
        for words in (["feedback", "-", "--category", "bug", "--image", picture], ["suggest", "-"], ["link", picture], ["upload", picture]):
            self.run_command(words, 0)
        for path in (picture, self.home / "made.png"):
            path.unlink(missing_ok=True)

    def run_command(self, words, status):
        command = [self.application.binary, *map(str, words)]
        ran = subprocess.run(
            self.application.network.command(command) if self.application.network else command,
            env=self.application.environment,
            input=QUESTION.encode(),
            capture_output=True,
            timeout=20,
        )
        self.assertEqual(ran.returncode, status, (words, ran.stderr[-300:]))
        # What the user is told is no log.
        self.errors += b"\n".join(line for line in ran.stderr.split(b"\n") if not line.startswith(b"vantle: "))

    def use_panels(self):
        """Questions, a report and a picture, with keys and the clipboard."""
        before = len(self.provider.requests)
        self.open("Ctrl+Alt+k", "Ask AI")
        clipboard.copy(PICTURE, "image/png")
        self.desktop.press("Ctrl+v")
        self.desktop.type(TYPED)
        self.desktop.press("Return")
        until("it is asked", lambda: len(self.provider.requests) > before)
        time.sleep(0.3)
        self.close("Ask AI")
        self.desktop.press("Ctrl+Alt+i")
        until("the overlay covers the screen", lambda: self.covers())
        self.desktop.drag((300, 200), (620, 410))
        until("Image Ask is shown", lambda: self.titled("Image Ask"))
        self.wait_for_keys("Image Ask")
        self.desktop.type(TYPED)
        self.desktop.press("Return")
        until("it is asked", lambda: len(self.provider.requests) > before + 1)
        time.sleep(0.3)
        self.close("Image Ask")
        # The picture on the clipboard: its link, then its prompt.
        for shortcut in ("Ctrl+Alt+u", "Ctrl+Alt+p"):
            self.desktop.press(shortcut)
        until("the prompt is asked for", lambda: len(self.provider.requests) > before + 2)
        if not self.provider.raw:
            # Its card takes the keys whenever it comes.
            until("the prompt is shown", lambda: self.titled("Image to Prompt"))
            self.close("Image to Prompt")
        self.open("Ctrl+Alt+b", "Feedback")
        self.desktop.type(TYPED)
        self.desktop.press("Ctrl+Return")
        time.sleep(0.3)
        self.close("Feedback")

    def open(self, shortcut, title):
        self.desktop.press(shortcut)
        until(f"{title} is shown", lambda: self.titled(title))

    def wait_for_keys(self, title):
        """A panel that no key has opened takes them a moment after it shows."""
        until(f"{title} has the keyboard", self.desktop.is_keyboard_taken, 5, 0.05)

    def close(self, title):
        self.wait_for_keys(title)
        self.desktop.press("Escape")
        until(f"{title} is closed", lambda: not self.titled(title))

    def covers(self):
        return any(window.width == 1920 for window in self.desktop.windows_of(self.application.pid))

    def titled(self, title):
        return any(window.title == title for window in self.desktop.windows_of(self.application.pid))

    def files(self):
        """Everything that is left, but for what is kept on purpose."""
        names = {path: str(path.relative_to(self.home)) for path in self.home.rglob("*") if path.is_file()}
        return {name: path.read_bytes() for path, name in names.items() if not any(kept in name for kept in KEPT)}


def excuse(handler, request):
    """A provider that repeats what it was given."""
    said = f"{EXCUSE} {request.body[:200]!r} {request.headers}"
    handler.reply(500, {"error": {"message": said.replace("\n", " ")}})


def broken(handler, request):
    """One that ends in the middle."""
    handler.begin_events()
    handler.event({"choices": [{"delta": {"content": ANSWER}}]})


def garbage(handler, request):
    handler.reply(200, f"<html>{ANSWER} {QUESTION}".encode(), "text/html")


def around(text, secret):
    place = text.index(secret)
    return text[max(place - 200, 0) : place + 100]


if __name__ == "__main__":
    [VANTLE] = take_options("vantle")
    unittest.main(verbosity=2, warnings="ignore")
