"""Vantle.app as far as it can be looked at without a Mac: its icon's sizes, its property lists, and the order in which the
packaging script signs, notarizes and staples, with tools that only write down how they were called. Argument: the build
folder."""

import json
import os
import plistlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

BUILD = Path(sys.argv.pop(1)).resolve()
ROOT = Path(__file__).resolve().parents[2]

# Each tool writes down its name and arguments; what the script needs of it is done after that.
TOOL = """#!/bin/sh
printf '%s' "$(basename "$0")" >> "$CALLS"
for word in "$@"; do printf '\\t%s' "$word" >> "$CALLS"; done
echo >> "$CALLS"
"""
TOOLS = {
    "uname": 'case "$1" in -m) echo arm64 ;; *) echo Darwin ;; esac',
    "brew": 'case "$1" in --prefix) dirname "$(dirname "$0")" ;; list) exit 0 ;; esac',
    # Building the bundle leaves what CMake would have installed there.
    "cmake": """case "$*" in *bundle*)
        mkdir -p build-package/bundle/Vantle.app/Contents/MacOS
        for name in vantle vantle-service; do
            touch build-package/bundle/Vantle.app/Contents/MacOS/$name
            chmod +x build-package/bundle/Vantle.app/Contents/MacOS/$name
        done ;; esac""",
    "macdeployqt": """contents=$1/Contents
        mkdir -p "$contents/Frameworks/QtCore.framework/Versions/A" "$contents/PlugIns/platforms"
        touch "$contents/Frameworks/QtCore.framework/Versions/A/QtCore" "$contents/Frameworks/libcurl.4.dylib" \\
            "$contents/PlugIns/platforms/libqcocoa.dylib"
        chmod +x "$contents/Frameworks/QtCore.framework/Versions/A/QtCore" """,
    "otool": """case "$1" in
        -L) [ -z "$STRAY" ] || printf "%s:\\n\\t$STRAY (compatibility version 1.0.0)\\n" "$2" ;;
        -l) printf "      cmd LC_BUILD_VERSION\\n    minos ${OLDEST:-14.0}\\n      sdk 15.2\\n" ;;
        esac""",
    "ditto": 'for last; do :; done; mkdir -p "$(dirname "$last")"; touch "$last"',
    "xcrun": """case "$1 $2" in "notarytool submit")
        printf '  id: 1234\\nCurrent status: In Progress\\n  id: 1234\\n  status: %s\\n' "${ANSWER:-Accepted}" ;; esac""",
    "hdiutil": 'for last; do :; done; printf image >"$last"',
    "shasum": 'printf "%064d  %s\\n" 7 "$3"',
    **dict.fromkeys(["codesign", "spctl", "iconutil"], ""),
}
SIGNER = "Developer ID Application: Someone (TEAM123)"
RELEASE = {"VANTLE_SIGN_IDENTITY": SIGNER, "VANTLE_NOTARY_PROFILE": "release", "VANTLE_APP_ID": "org.example.vantle"}


class Packaging:
    """A copy of the scripts, run with tools that do nothing."""

    def __init__(self):
        self.folder = tempfile.TemporaryDirectory(prefix="vantle-mac-")
        self.root = Path(self.folder.name) / "project"
        tools = Path(self.folder.name) / "bin"
        tools.mkdir()
        for name in ("scripts", "packaging"):
            shutil.copytree(ROOT / name, self.root / name)
        shutil.copy(ROOT / "CMakeLists.txt", self.root)
        for name, script in TOOLS.items():
            path = tools / name
            path.write_text(TOOL + script + "\n")
            path.chmod(0o755)
        self.calls_path = Path(self.folder.name) / "calls"
        self.path = f"{tools}:{os.environ['PATH']}"

    def run(self, *arguments, **environment):
        self.calls_path.write_text("")
        plain = {name: value for name, value in os.environ.items() if not name.startswith("VANTLE_")}
        return subprocess.run(
            ["bash", self.root / "scripts/package-mac", *arguments],
            capture_output=True,
            text=True,
            env=plain | {"PATH": self.path, "CALLS": str(self.calls_path)} | environment,
        )

    def calls(self, tool=None):
        """Each call's words, without the folder they are in."""
        lines = self.calls_path.read_text().replace(str(self.root) + "/", "").splitlines()
        words = [line.split("\t") for line in lines]
        return [call for call in words if tool in (None, call[0])]

    def signed(self):
        """What was signed, in that order, without the way to the bundle."""
        return [call[-1].split("/bundle/")[-1] for call in self.calls("codesign") if "--sign" in call]


class MacPackagingTest(unittest.TestCase):
    def setUp(self):
        self.packaging = Packaging()
        self.addCleanup(self.packaging.folder.cleanup)

    def position(self, *words):
        found = [i for i, call in enumerate(self.packaging.calls()) if all(word in " ".join(call) for word in words)]
        self.assertTrue(found, words)
        return found[0]

    def test_signs_from_the_inside_out(self):
        done = self.packaging.run(**RELEASE)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        signed = self.packaging.signed()
        contents = "Vantle.app/Contents/"
        inside = ["Frameworks/QtCore.framework/Versions/A/QtCore", "Frameworks/libcurl.4.dylib",
                  "PlugIns/platforms/libqcocoa.dylib", "MacOS/vantle-service"]  # fmt: skip
        framework, app = signed.index(contents + "Frameworks/QtCore.framework"), signed.index("Vantle.app")
        for name in inside:
            self.assertLess(signed.index(contents + name), app, name)
        self.assertLess(signed.index(contents + inside[0]), framework)
        self.assertLess(framework, app)
        # Everything is in there once, and after the app only the image that it lies in.
        self.assertEqual(len(set(signed)), len(signed))
        self.assertTrue(signed[app + 1].endswith(".dmg") and len(signed) == app + 2)

    def test_every_signature_is_one_of_a_release(self):
        self.packaging.run(**RELEASE)
        for call in self.packaging.calls("codesign"):
            if "--sign" not in call:
                continue
            self.assertEqual(call[call.index("--sign") + 1], SIGNER)
            self.assertIn("--timestamp", call)
            self.assertNotIn("--deep", call)
            self.assertEqual("--entitlements" in call, call[-1].endswith("Vantle.app"), call)
            self.assertEqual("runtime" in call, not call[-1].endswith(".dmg"), call)

    def test_libraries_come_before_signatures_and_tickets_after_them(self):
        self.packaging.run(**RELEASE)
        order = [
            self.position("macdeployqt"),
            self.position("codesign", "--sign"),
            self.position("codesign", "--verify"),
            self.position("notarytool submit", "Vantle.zip", "--wait", "--keychain-profile release"),
            self.position("stapler staple", "Vantle.app"),
            self.position("hdiutil create"),
            self.position("codesign", "--sign", ".dmg"),
            self.position("notarytool submit", ".dmg"),
            self.position("stapler staple", ".dmg"),
            self.position("spctl", "--type execute"),
            self.position("spctl", "--type open", ".dmg"),
        ]
        self.assertEqual(order, sorted(order))

    def test_what_is_not_accepted_goes_no_further(self):
        done = self.packaging.run(**RELEASE, ANSWER="Invalid")
        self.assertEqual(done.returncode, 1)
        self.assertIn("was not accepted", done.stderr)
        self.position("notarytool log", "1234")
        self.assertFalse(self.packaging.calls("hdiutil"))
        self.assertFalse([call for call in self.packaging.calls() if "staple" in call])

    def test_a_library_left_on_this_machine_is_found(self):
        done = self.packaging.run(**RELEASE, STRAY="/opt/homebrew/lib/libpng16.16.dylib")
        self.assertEqual(done.returncode, 1)
        self.assertIn("/opt/homebrew/lib/libpng16.16.dylib", done.stderr)
        self.assertEqual(self.packaging.signed(), [])

    def test_a_library_for_newer_systems_is_found(self):
        done = self.packaging.run(**RELEASE, OLDEST="15.0")
        self.assertEqual(done.returncode, 1)
        self.assertIn("libcurl.4.dylib: 15.0", done.stderr)
        self.assertEqual(self.packaging.signed(), [])
        self.assertEqual(self.packaging.run("--local", OLDEST="15.0").returncode, 0)

    def test_describes_the_image_for_those_who_have_an_older_one(self):
        folder = "https://example.org/vantle"
        self.packaging.run(**RELEASE, VANTLE_UPDATE_FOLDER=folder)
        configured = " ".join(self.packaging.calls("cmake")[0])
        self.assertIn(f"-DVANTLE_UPDATE_FOLDER={folder} -DVANTLE_UPDATE_PUBLISHER=TEAM123", configured)
        packages = self.packaging.root / "build-package/packages"
        described = json.loads((packages / "macos-arm64.json").read_text())
        self.assertEqual(described["sha256"], f"{7:064d}")
        self.assertEqual(described["bytes"], len("image"))
        self.assertTrue((packages / described["file"]).is_file())
        self.assertIn(described["version"], described["file"])

    def test_says_what_is_missing_before_it_builds(self):
        for change, word in (
            ({"VANTLE_SIGN_IDENTITY": ""}, "VANTLE_SIGN_IDENTITY"),
            ({"VANTLE_SIGN_IDENTITY": "-"}, "Developer ID"),
            ({"VANTLE_NOTARY_PROFILE": ""}, "VANTLE_NOTARY_PROFILE"),
            ({"VANTLE_APP_ID": ""}, "VANTLE_APP_ID"),
            ({"VANTLE_UPDATE_FOLDER": "http://example.org"}, "VANTLE_UPDATE_FOLDER"),
        ):
            done = self.packaging.run(**RELEASE | change)
            self.assertEqual(done.returncode, 1)
            self.assertIn(word, done.stderr)
            self.assertFalse(self.packaging.calls("cmake"))

    def test_the_local_one_is_never_an_image(self):
        done = self.packaging.run("--local")
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertEqual(self.packaging.signed()[-1], "Vantle.app")
        for tool in ("hdiutil", "xcrun"):
            self.assertFalse(self.packaging.calls(tool))


class BundleRulesTest(unittest.TestCase):
    def test_the_bundle_is_whole(self):
        with tempfile.TemporaryDirectory(prefix="vantle-bundle-") as folder:
            build, tools = Path(folder) / "build", Path(folder) / "bin"
            tools.mkdir()
            # iconutil --convert icns --output FILE ICONSET
            (tools / "iconutil").write_text('#!/bin/sh\nls "$5" > "$4"\n')
            (tools / "iconutil").chmod(0o755)
            environment = os.environ | {"PATH": f"{tools}:{os.environ['PATH']}"}
            source = ROOT / "tests/packaging/mac_bundle"
            named = [f"-DROOT={ROOT}", "-DVANTLE_APP_ID=org.example.vantle", "-DVANTLE_DEVELOPER=Someone"]
            for command in (
                ["cmake", "-S", source, "-B", build, "-G", "Ninja", *named],
                ["cmake", "--build", build, "--target", "bundle"],
            ):
                done = subprocess.run(command, capture_output=True, text=True, env=environment)
                self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
            contents = build / "bundle/Vantle.app/Contents"
            files = {str(path.relative_to(contents)) for path in contents.rglob("*") if path.is_file()}
            self.assertEqual(files, {"Info.plist", "Resources/Vantle.icns", "MacOS/vantle", "MacOS/vantle-service"})
            info = plistlib.loads((contents / "Info.plist").read_bytes())
            self.assertEqual(info["CFBundleIdentifier"], "org.example.vantle")
            self.assertEqual((info["CFBundleVersion"], info["CFBundleShortVersionString"]), ("1.2.3", "1.2.3"))
            self.assertTrue(info["NSHumanReadableCopyright"].endswith(" Someone"))
            self.assertTrue(os.access(contents / "MacOS" / info["CFBundleExecutable"], os.X_OK))
            self.assertEqual(len((contents / "Resources/Vantle.icns").read_text().split()), 10)


class MacFilesTest(unittest.TestCase):
    def test_the_icon_has_every_size(self):
        pictures = sorted(BUILD.glob("packaging/**/Vantle.iconset/*.png"))
        self.assertEqual(len(pictures), 10)
        for picture in pictures:
            points, scale = re.match(r"icon_(\d+)x\1(@2x)?\.png$", picture.name).groups()
            pixels = int(points) * (2 if scale else 1)
            head = picture.read_bytes()[:24]
            self.assertEqual((head[:8], int.from_bytes(head[16:20], "big")), (b"\x89PNG\r\n\x1a\n", pixels), picture)

    def test_property_lists(self):
        text = (ROOT / "packaging/mac/Info.plist.in").read_text()
        info = plistlib.loads(re.sub(r"@\w+@", "1", text).encode())
        self.assertIs(info["LSUIElement"], True)
        self.assertEqual(info["LSMinimumSystemVersion"], "14.0")
        self.assertEqual((info["CFBundleExecutable"], info["CFBundleIconFile"]), ("vantle", "Vantle"))
        for name, reason in info.items():
            if name.endswith("UsageDescription"):
                self.assertRegex(reason, r"^Vantle .*\.$")
        rules = (ROOT / "packaging/mac/CMakeLists.txt").read_text()
        for name in set(re.findall(r"@(\w+)@", text)) - {"PROJECT_VERSION", "VANTLE_YEAR"}:
            self.assertIn(f"set({name} ", (ROOT / "packaging/CMakeLists.txt").read_text())
        self.assertIn("Vantle.icns", rules)
        entitlements = plistlib.loads((ROOT / "packaging/mac/entitlements.plist").read_bytes())
        # Each that is true weakens the hardened runtime or asks the user for something.
        self.assertFalse([name for name, value in entitlements.items() if value])


if __name__ == "__main__":
    unittest.main()
