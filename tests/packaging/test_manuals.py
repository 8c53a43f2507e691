"""The manuals name every command and every option that the programs have, and none besides. Argument: the build folder."""

import os
import re
import subprocess
import sys
import unittest
from pathlib import Path

BUILD = Path(sys.argv.pop(1)).resolve()
PAGES = Path(__file__).resolve().parents[2] / "packaging" / "man"
OPTION = re.compile(r"(?<![\w-])--?[a-z][a-z-]*")
ENVIRONMENT = os.environ | {"LC_ALL": "C.UTF-8", "MANWIDTH": "400", "MAN_KEEP_FORMATTING": ""}


def said_by(program, *arguments):
    return subprocess.run([BUILD / "bin" / program, *arguments], capture_output=True, text=True, check=True).stdout


def page(name):
    """The whole page as it is read, each paragraph one line."""
    done = subprocess.run(
        ["man", "--warnings", "-E", "UTF-8", "-l", PAGES / name], capture_output=True, text=True, env=ENVIRONMENT
    )
    return re.sub("\x1b\\[[0-9;]*m|.\x08", "", done.stdout), done.stderr


def options(text):
    return set(OPTION.findall(text))


def items(text):
    """What each entry of the page's lists says, by its first word."""
    found, name = {}, None
    for line in text.splitlines():
        # The head of an entry is indented by five columns, its text by more.
        if head := re.match(r" {5}(\S.*)$", line):
            name = head[1].split()[0]
            found[name] = head[1]
        elif name:
            found[name] += "\n" + line
    return found


class ManualsTest(unittest.TestCase):
    def test_formats_without_a_warning(self):
        for name in ("vantle.1", "vantle-service.1"):
            self.assertEqual(page(name)[1], "", name)

    def test_explains_every_command_of_vantle_with_its_options(self):
        entries = items(page("vantle.1")[0])
        calls = re.findall(r"^       vantle (\w\S*) ?(.*)$", said_by("vantle", "help"), re.MULTILINE)
        self.assertGreater(len(calls), 20)
        for command, arguments in calls:
            self.assertIn(command, entries)
            # "vantle help COMMAND" is also what --help does.
            stray = {"--help", "--version"} if command in ("help", "version") else set()
            self.assertEqual(options(entries[command]) - stray, options(arguments), command)
            for word in re.findall(r"(?<![\w<-])[a-z0-9-]+(?:\|[a-z0-9-]+)+", arguments):
                for choice in word.split("|"):
                    self.assertIn(choice, entries[command], command)

    def test_explains_every_command_and_option_of_the_service(self):
        text = page("vantle-service.1")[0]
        usage = said_by("vantle-service", "--help")
        self.assertEqual(options(text) - {"-f", "-u"}, options(usage) | {"--help", "--version"})
        for command, verbs in re.findall(r"vantle-service (\w+) ?(.*)$", usage, re.MULTILINE):
            for verb in re.findall(r"(?:^|\| )([a-z]+)", verbs):
                self.assertRegex(text, rf"(?m)^ +vantle-service {command}.*\b{verb}\b", command)
        for configured in re.findall(r"^#?([a-z-]+) = ", (PAGES.parent / "linux/vantle-service.conf").read_text(), re.M):
            self.assertIn("--" + configured, options(usage))


if __name__ == "__main__":
    unittest.main()
