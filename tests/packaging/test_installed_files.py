"""What `cmake --install` puts where, and what the system's own checkers say of it. Argument: the build folder."""

import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

BUILD = Path(sys.argv.pop(1)).resolve()
ROOT = Path(__file__).resolve().parents[2]

APPLICATION = """
bin/vantle libexec/vantle/vantle-service share/applications/vantle.desktop share/man/man1/vantle.1
share/icons/hicolor/scalable/apps/vantle.svg share/bash-completion/completions/vantle
share/fish/vendor_completions.d/vantle.fish
""".split()
SERVICE = """
bin/vantle-service lib/systemd/system/vantle-service.service share/man/man1/vantle-service.1
share/doc/vantle-service/self-hosting.md share/doc/vantle-service/examples/vantle-service.conf
""".split()


def run(*command):
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True)
    return done.returncode, done.stdout + done.stderr


def installed(component, prefix):
    code, text = run("cmake", "--install", BUILD, "--component", component, "--prefix", prefix)
    assert code == 0, text
    return {str(path.relative_to(prefix)) for path in Path(prefix).rglob("*") if path.is_file()}


def png_size(path):
    """Width and height, from the picture's own header."""
    head = path.read_bytes()[:24]
    return int.from_bytes(head[16:20], "big"), int.from_bytes(head[20:24], "big")


class InstalledFilesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="vantle-installed-")
        cls.prefix = Path(cls.folder.name) / "application"
        cls.files = installed("application", cls.prefix)
        # Debian has a folder of its own for zsh.
        cls.zsh = next(cls.prefix.glob("share/zsh/*/_vantle"))
        cls.service = Path(cls.folder.name) / "service"
        cls.service_files = installed("service", cls.service)
        cls.metainfo = next(cls.prefix.glob("share/metainfo/*.metainfo.xml"))

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def check(self, tool, *arguments):
        if not shutil.which(tool):
            self.skipTest(f"no {tool} here")
        code, text = run(tool, *arguments)
        self.assertEqual(code, 0, text)
        return text

    def test_the_two_components_are_whole_and_share_nothing(self):
        self.assertLessEqual(set(APPLICATION), self.files)
        self.assertEqual(self.service_files, set(SERVICE))
        self.assertFalse(self.files & self.service_files)

    def test_icons_have_the_size_of_their_folder(self):
        pictures = sorted(self.prefix.glob("share/icons/hicolor/*x*/apps/vantle.png"))
        self.assertGreaterEqual(len(pictures), 8)
        for picture in pictures:
            width, height = map(int, picture.parts[-3].split("x"))
            self.assertEqual(png_size(picture), (width, height))

    def test_the_installed_program_runs_and_finds_its_service(self):
        code, text = run(self.prefix / "bin/vantle", "version")
        self.assertRegex(text, r"^vantle \d+\.\d+\.\d+$")
        code, text = run(self.prefix / "bin/vantle", "doctor")
        self.assertNotIn("did not come with", text)
        code, text = run(self.prefix / "libexec/vantle/vantle-service", "--version")
        self.assertEqual(code, 0, text)

    def test_desktop_file(self):
        desktop = self.prefix / "share/applications/vantle.desktop"
        self.assertEqual(self.check("desktop-file-validate", desktop), "")
        # What it starts must be there.
        for line in re.findall(r"^Exec=vantle summon (\S+)$", desktop.read_text(), re.MULTILINE):
            self.assertIn(line, (self.prefix / "share/bash-completion/completions/vantle").read_text())

    def test_software_centres_know_the_running_version(self):
        tree = ElementTree.parse(self.metainfo)
        versions = [release.get("version") for release in tree.iter("release")]
        self.assertEqual(f"vantle {versions[0]}", run(self.prefix / "bin/vantle", "version")[1].strip())
        self.check("appstreamcli", "validate", "--no-net", self.metainfo)

    def test_shells_take_the_completions(self):
        for shell, path in (
            ("bash", self.prefix / "share/bash-completion/completions/vantle"),
            ("zsh", self.zsh),
            ("fish", self.prefix / "share/fish/vendor_completions.d/vantle.fish"),
        ):
            if shutil.which(shell):
                self.assertEqual(run(shell, "-n", path), (0, ""), shell)
        if shutil.which("fish"):
            script = self.prefix / "share/fish/vendor_completions.d/vantle.fish"
            _, answer = run("fish", "--no-config", "-c", f"source {script}; complete -C 'vantle quo'")
            self.assertIn("this month's allowance", answer)

    def test_unit(self):
        unit = (self.service / "lib/systemd/system/vantle-service.service").read_text()
        program = re.search(r"^ExecStart=(\S+)", unit, re.MULTILINE)[1]
        self.assertTrue(program.endswith("/bin/vantle-service"))
        if shutil.which("systemd-analyze"):
            local = Path(self.folder.name) / "vantle-service.service"
            local.write_text(unit.replace(program, str(self.service / "bin/vantle-service")))
            code, text = run("systemd-analyze", "verify", "--man=no", local)
            self.assertEqual((code, text), (0, ""))

    def test_the_debian_changelog_follows_ours(self):
        with open(ROOT / "CHANGELOG.md") as changelog:
            done = subprocess.run(
                [sys.executable, ROOT / "packaging/linux/debian/changelog.py", "vantle", "1~debian12", "A B <a@b.example>"],
                stdin=changelog, capture_output=True, text=True, check=True,
            )  # fmt: skip
        newest = ElementTree.parse(self.metainfo).find(".//release").get("version")
        self.assertTrue(done.stdout.startswith(f"vantle ({newest}-1~debian12) unstable; urgency=medium\n\n  * "))
        self.assertRegex(done.stdout, r"\n -- A B <a@b\.example>  \w{3}, \d\d \w{3} \d{4} [\d:]{8} \+0000\n")
        if shutil.which("dpkg-parsechangelog"):
            path = Path(self.folder.name) / "changelog"
            path.write_text(done.stdout)
            self.assertEqual(self.check("dpkg-parsechangelog", "-l", path, "-S", "Version").strip(), f"{newest}-1~debian12")


if __name__ == "__main__":
    unittest.main()
