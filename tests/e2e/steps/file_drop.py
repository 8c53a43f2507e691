"""File Drop: a folder dragged out of a file manager becomes a link, with the window and on the command line."""

import subprocess
import zipfile
from pathlib import Path

from driver import clipboard
from driver.display import run
from driver.file_manager import FIRST_ITEM, FileManager
from driver.waiting import expect, until

TITLE = "File Drop"
FILES = {"größe 日本.txt": "hello\n", "notes.txt": "one\n", "sub/notes.txt": "two\n"}


def uploads_a_dragged_folder(world):
    """Ctrl+Alt+L, a folder dragged from a file manager, Return: its zip is behind the link on the clipboard"""
    with world.another_application() as application:
        home = Path(application.home.name)
        temporary = home / "tmp"
        temporary.mkdir()
        application.environment["TMPDIR"] = str(temporary)
        folder = write_tree(home / "dragged" / "Projekt ä")
        application.begin()
        world.terminal.focus()
        clipboard.copy(b"before")
        with FileManager(world.desktop, folder.parent, home):
            world.desktop.press("Ctrl+Alt+l")
            window = until("the window is shown", lambda: world.titled(TITLE))
            world.see("Drop files or folders here")
            world.picture("empty")
            world.desktop.drag(FIRST_ITEM, (window.x + window.width // 2, window.y + window.height // 2), steps=30)
            world.see("Projekt ä, folder, 3 files")
            world.picture("dropped")
            expect("nothing is sent by a drop", clipboard.text() == "before")
            world.desktop.press("Return")
            world.see("Link copied to clipboard", seconds=20)
            world.picture("done")
        link = clipboard.text()
        expect(f"the link is on the clipboard: {link}", link.startswith("http://127.0.0.1:"))
        check_zip(world, link, home, "Projekt ä/")
        check_zip(world, uploaded_by_command(world, folder), home, "Projekt ä/")
        expect("nothing is left in the temporary folder", not list(temporary.glob("VibeBulk-*")))
        world.desktop.press("Escape")
        until("Escape closes it", lambda: not world.titled(TITLE))


def stays_up_where_it_was_put(world):
    """A click elsewhere gives the keyboard back but leaves the window; it opens again where it was dragged to"""
    with world.another_application() as application:
        application.begin()
        world.terminal.focus()
        world.terminal.forget()
        world.desktop.press("Ctrl+Alt+l")
        window = until("the window is shown", lambda: world.titled(TITLE))
        grip = (window.x + window.width // 2, window.y + 48 + 24)
        world.desktop.drag(grip, (grip[0] + 300, grip[1] + 100))
        moved = until("it has moved", lambda: at(world, window.x + 300, window.y + 100))
        world.desktop.click(300, 700)
        world.see("Click this window to use its keys")
        world.desktop.type("x")
        until("the terminal has the keys", lambda: world.terminal.typed() == "x")
        world.picture("elsewhere")
        world.desktop.click(moved.x + 200, moved.y + 48 + 24)
        until("a click on it takes the keys", lambda: not world.shows("Click this window to use its keys"))
        world.desktop.press("Escape")
        until("its keys work again", lambda: not world.titled(TITLE))
        world.desktop.press("Ctrl+Alt+l")
        until("it is where it was put", lambda: at(world, moved.x, moved.y))
        world.desktop.press("Escape")
        until("Escape closes it", lambda: not world.titled(TITLE))


def write_tree(folder):
    for name, text in FILES.items():
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        (folder / name).write_text(text)
    return folder


def at(world, x, y):
    window = world.titled(TITLE)
    return window if window and (window.x, window.y) == (x, y) else None


def check_zip(world, link, home, prefix):
    """The same bytes under the same names, as several unpackers see it."""
    archive = home / "fetched.zip"
    inside(world, "curl", "-sSf", "-o", str(archive), link)
    run("unzip", "-tq", str(archive))
    wanted = {prefix + name: text for name, text in FILES.items()}
    listed = {name for name in run("bsdtar", "-tf", str(archive)).splitlines() if not name.endswith("/")}
    expect(f"bsdtar lists the files: {listed}", listed == set(wanted))
    with zipfile.ZipFile(archive) as unpacked:
        files = {info.filename: unpacked.read(info).decode() for info in unpacked.infolist() if not info.is_dir()}
        foreign = [info for info in unpacked.infolist() if not info.filename.isascii()]
        expect("names are marked as UTF-8", foreign and all(info.flag_bits & 0x800 for info in foreign))
    expect(f"everything is in it: {sorted(files)}", files == wanted)


def uploaded_by_command(world, path):
    """The link that vantle upload prints; it opens as long as the application runs."""
    application = world.application
    command = [application.binary, "upload", str(path)]
    command = world.network.command(command) if world.network else command
    answer = subprocess.run(command, env=application.environment, capture_output=True, text=True, timeout=20)
    expect(f"vantle upload: {answer.stderr}", answer.returncode == 0)
    return answer.stdout.strip()


def inside(world, *command):
    """Runs a command where the program is: its loopback may be one of its own."""
    return run(*(world.network.command(list(command)) if world.network else command))


STEPS = [uploads_a_dragged_folder, stays_up_where_it_was_put]
