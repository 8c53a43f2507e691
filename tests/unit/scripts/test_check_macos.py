"""Mistakes in the macOS backend, one of each kind, that scripts/check_macos must find and name."""

import shutil
import subprocess
import sys
import tempfile
import unittest
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "scripts"))

from checks import darwin, macos  # noqa: E402

SKIPPED = 77
LIBCXX = Path("/usr/lib/llvm-19/include/c++/v1")
EVERY_MM = tuple(path.name for path in (ROOT / "src/platform/mac").glob("*.mm"))


@dataclass
class Mistake:
    """What is replaced in a source, and what the check has to say about it."""

    source: str
    before: str
    after: str
    words: tuple
    others: tuple = ()  # sources without which it does not show


MISTAKES = {
    "a selector that nobody has": Mistake(
        "mac_panel_window.mm", "orderFrontRegardless]", "orderFrontRegardles]", ("mac_panel_window.mm", "'orderFrontRegardles'")
    ),
    "a property that nobody has": Mistake("mac_panel_window.mm", "panel.hasShadow", "panel.hasShade", ("'hasShade'",)),
    "a class method of another class": Mistake(
        "mac_sounds.mm", "[NSSound soundNamed:soundName]", "[NSSound soundWithName:soundName]", ("'soundWithName:'",)
    ),
    "an argument of another type": Mistake(
        "mac_sounds.mm", "soundNamed:soundName]", "soundNamed:NSProcessInfo.processInfo]", ("NSProcessInfo", "NSSoundName")
    ),
    "an argument that may be null": Mistake(
        "mac_sounds.mm", "soundName ? [NSSound soundNamed:soundName] : nil", "[NSSound soundNamed:@(name)]",
        ("nullable", "NSSoundName"),
    ),
    "a number that loses its fraction": Mistake(
        "mac_screen.mm", "configuration.width = area.pixelWidth", "configuration.width = area.width", ("double", "size_t")
    ),
    "a constant that nobody has": Mistake(
        "mac_hotkeys.mm", "kEventHotKeyPressed}", "kEventHotKeyDown}", ("'kEventHotKeyDown'",)
    ),
    "a constant of another enumeration": Mistake(
        "mac_key_events.mm", "CGEventSourceCreate(kCGEventSourceStateCombinedSessionState)",
        "CGEventSourceCreate(kCGSessionEventTap)", ("CGEventSourceStateID", "CGEventTapLocation"),
    ),
    "an interface newer than the oldest system": Mistake(
        "check/AppKit/AppKit.h", "ignoreOtherApps;", "ignoreOtherApps SINCE(15.0);",
        ("'activateIgnoringOtherApps:'", "macOS 15.0 or newer"), ("mac_panel_window.mm", "mac_system_info.mm"),
    ),
    "a function newer than the oldest system": Mistake(
        "check/CoreGraphics/CoreGraphics.h", "CGRequestScreenCaptureAccess(void) SINCE(10.15)",
        "CGRequestScreenCaptureAccess(void) SINCE(14.4)", ("'CGRequestScreenCaptureAccess'", "macOS 14.4 or newer"),
        ("mac_permissions.mm",),
    ),
    "a framework that is not linked": Mistake(
        "CMakeLists.txt", '"-framework Network"', "", ("mac_network_path.mm", "nw_path_monitor_create", "in Network"),
        ("mac_network_path.mm",),
    ),
    "a function that is declared nowhere": Mistake(
        "mac_sounds.mm", "void beep() { NSBeep(); }", 'extern "C" void NSHonk(void);\nvoid beep() { NSHonk(); }',
        ("NSHonk is declared nowhere",),
    ),
    "a framework that nothing uses": Mistake(
        "CMakeLists.txt", '"-framework Network"', '"-framework Network" "-framework WebKit"', ("links WebKit", "nothing uses"), EVERY_MM
    ),
    "a source that CMake does not know": Mistake(
        "CMakeLists.txt", "  mac_sounds.mm\n", "", ("does not compile mac_sounds.mm",), ("mac_sounds.mm",)
    ),
    "a source that CMake compiles in its own way": Mistake(
        "CMakeLists.txt", "mac_screen.mm mac_sounds.mm", "mac_screen.mm", ("mac_sounds.mm without -fobjc-arc",), ("mac_sounds.mm",)
    ),
    "switches that the target's folder does not see": Mistake(
        "CMakeLists.txt", "  TARGET_DIRECTORY vantle_platform\n", "", ("mac_sounds.mm without -fobjc-arc",), ("mac_sounds.mm",)
    ),
    "a source that is not there": Mistake(
        "CMakeLists.txt", "  mac_sounds.mm\n", "  mac_sounds.mm\n  mac_smells.mm\n", ("CMake fails", "mac_smells.mm"), ("mac_sounds.mm",)
    ),
    "a method that overrides nothing, and one that does so tacitly": Mistake(
        "mac_screen_grabber.h", "override { return true; }\n  WindowID windowID(", "{ return true; }\n  WindowID windowIDs(",
        ("leavesWindowsOut() const' can be marked override", "windowIDs(QWindow&) const' marked 'override', but does not"),
        ("mac_screen_grabber.cpp",),
    ),
    "a method of Objective-C that overrides nothing": Mistake(
        "mac_network_path.mm", "- (void)stop {", "- (void)deallok {\n}\n\n- (void)stop {",
        ("VantlePathMonitor", "deallok", "overrides nothing"),
    ),
    "a method that is promised and not there": Mistake(
        "mac_network_path.mm", "- (void)stop;", "- (void)stop;\n- (void)halt;", ("'halt'", "not found")
    ),
    "a seam function with other types": Mistake(
        "mac_sounds.mm", "bool playSound(const char* name)", "bool playSound(char* name)", ("'playSound'", "no previous prototype")
    ),
    "a portable function that is defined nowhere": Mistake(
        "mac_platform.cpp", "bool prepareDisplay() {", "bool isThereADisplay() {", ("display.h", "prepareDisplay"), EVERY_MM[:1]
    ),
    "a seam function that is defined nowhere": Mistake(
        "mac_screen.mm", "uint32_t windowNumber(void* view) {", "static uint32_t numberOfWindow [[maybe_unused]] (void* view) {",
        ("mac::windowNumber(void*)", "no .mm file defines"), ("mac_screen_grabber.cpp", *EVERY_MM),
    ),
}  # fmt: skip


def tree_with(folder, mistake=None):
    """The sources as the check wants them: the backend as a copy, everything else as links."""
    platform = Path(folder) / "src/platform"
    platform.mkdir(parents=True)
    for name in ("CMakeLists.txt", "CHANGELOG.md", "cmake", "packaging"):
        (Path(folder) / name).symlink_to(ROOT / name)
    for source in (ROOT / "src").iterdir():
        if source.name != "platform":
            (platform.parent / source.name).symlink_to(source)
    for source in (ROOT / "src/platform").iterdir():
        if source.name != "mac":
            (platform / source.name).symlink_to(source)
    shutil.copytree(ROOT / "src/platform/mac", platform / "mac")
    (Path(folder) / "work").mkdir()
    if mistake:
        path = platform / "mac" / mistake.source
        text = path.read_text()
        assert mistake.before in text, f"{mistake.source} has no {mistake.before!r} any more"
        path.write_text(text.replace(mistake.before, mistake.after, 1))


def problems(mistake):
    with tempfile.TemporaryDirectory() as folder:
        tree_with(folder, mistake)
        only = {name for name in (*mistake.others, mistake.source) if name.endswith((".mm", ".cpp"))}
        return "\n".join(macos.problems(macos.Backend(folder, Path(folder) / "work"), only))


class PlantedMistakes(unittest.TestCase):
    def test_each_is_found_and_named(self):
        with ThreadPoolExecutor(4) as pool:
            answers = dict(zip(MISTAKES, pool.map(problems, MISTAKES.values()), strict=True))
        for name, mistake in MISTAKES.items():
            with self.subTest(name):
                for words in mistake.words:
                    self.assertIn(words, answers[name])

    def test_sources_without_a_mistake_fit(self):
        sources = {"mac_network_path.mm", "mac_screen.mm", "mac_sounds.mm"}
        with tempfile.TemporaryDirectory() as folder:
            tree_with(folder)
            self.assertEqual(macos.problems(macos.Backend(folder, Path(folder) / "work"), sources), [])


@unittest.skipUnless(LIBCXX.is_dir(), "no libc++ here")
class EverythingElse(unittest.TestCase):
    """What this system's compiler takes and the one on a Mac does not."""

    SOURCES = {
        "#include <memory>\nstd::unique_ptr<int> number;": "",
        "#include <algorithm>\n#include <cstdint>\nlong least(std::int64_t a, long b) { return std::min(a, b); }":
            "no matching function for call to 'min'",
        "#include <algorithm>\n#include <sys/stat.h>\nauto size(struct stat s, long n) { return std::max(s.st_size, n); }":
            "no matching function for call to 'max'",
        "#include <functional>\nstd::move_only_function<void()> call;": "'move_only_function'",
        "#include <functional>\nauto call = [unused = 1] {};": "unused",
    }  # fmt: skip

    def test_is_found(self):
        flags = subprocess.run(["pkg-config", "--cflags", "Qt6Core"], capture_output=True, text=True, check=True).stdout
        with tempfile.TemporaryDirectory() as folder:
            call = "c++ -Wall -Wextra " + flags.replace("-I", "-isystem ")
            compiler = darwin.Compiler(Path(folder), [{"command": call}])
            for number, (source, words) in enumerate(self.SOURCES.items()):
                path = Path(folder) / f"{number}.cpp"
                path.write_text(source + "\n")
                found = compiler.problem({"file": str(path), "command": call, "directory": folder})
                self.assertIn(words, found or "", source)
                self.assertEqual(bool(found), bool(words), source)


if __name__ == "__main__":
    missing = [tool for tool in (macos.CLANG, macos.GXX, "cmake", "ninja", "pkg-config", "nm", "c++filt") if not shutil.which(tool)]
    if missing or sys.platform == "darwin":
        print(f"Skipped: no {', '.join(missing)} here" if missing else "Skipped: here the build itself compiles the backend")
        sys.exit(SKIPPED)
    unittest.main()
