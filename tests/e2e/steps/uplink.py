"""Image to URL: what was copied in another program, or drawn on the screen, becomes a link that opens."""

import struct
import subprocess
import tempfile
from pathlib import Path

from driver import clipboard
from driver.provider import png
from driver.waiting import expect, until

SHORTCUT = "Ctrl+Alt+U"


def links_a_copied_image(world):
    """An image copied in another program and Ctrl+Alt+U: the clipboard holds a link that opens to the same bytes"""
    world.quiet()
    image = png(640, 400, (200, 30, 40))
    clipboard.copy(image, "image/png")
    link = press_and_take_link(world)
    world.picture("copied")
    expect(f"{link} opens to the same bytes", fetch(world, link) == image)
    head = fetch(world, link, "--head").decode()
    expect(f"as an image: {head}", "content-type: image/png" in head.lower())

    with tempfile.TemporaryDirectory(prefix="vantle-copied-") as folder:
        file = Path(folder) / "ünï code.png"
        file.write_bytes(image)
        clipboard.copy(f"{file.as_uri()}\r\n".encode(), "text/uri-list")
        again = press_and_take_link(world)
    expect("a copied file has a link of its own", again != link)
    size = struct.unpack(">II", fetch(world, again)[16:24])
    expect(f"it is the same picture: {size}", size == (640, 400))


def waits_for_nobody(world):
    """A program that owns the clipboard and does not answer holds nothing up: the launcher opens meanwhile"""
    world.quiet()
    with clipboard.silent_owner() as asked:
        world.desktop.press(SHORTCUT)
        until("the owner is asked", lambda: asked() > 0)
        world.desktop.press("Ctrl+Alt+Space")
        until("the launcher is shown", lambda: world.titled("Vantle Launcher"), 1)
        world.desktop.press("Escape")
        world.see("No image on the clipboard", 6)


def links_a_region_of_the_screen(world):
    """The source set to a live selection on the command line: a dragged region becomes a link to exactly its pixels"""
    world.quiet()
    command(world, "config", "set", "image-to-url-source", "liveSelection")
    try:
        world.desktop.press(SHORTCUT)
        until("the overlay covers the screen", lambda: covers(world))
        world.desktop.drag((300, 200), (620, 410))
        until("the overlay is gone", lambda: not covers(world))
        link = take_link(world, "")
        world.picture("selected")
        picture = fetch(world, link)
        size = struct.unpack(">II", picture[16:24])
        expect(f"it has the size of the region: {size}", size == (320, 210))
        clipboard.copy(b"kept")
        world.quiet()
        world.desktop.press(SHORTCUT)
        world.keyed("Image to URL")
        expect("the overlay covers the screen again", covers(world))
        world.desktop.press("Escape")
        until("Escape takes it away", lambda: not covers(world))
        expect("nothing was uploaded", clipboard.text() == "kept" and not world.toast())
    finally:
        command(world, "config", "set", "image-to-url-source", "clipboard")


def links_from_the_command_line(world):
    """vantle link: the link opens after the command has ended, as long as Vantle runs"""
    image = png(20, 10, (0, 120, 0))
    with tempfile.TemporaryDirectory(prefix="vantle-link-") as folder:
        file = Path(folder) / "picture.png"
        file.write_bytes(image)
        link = command(world, "link", str(file)).strip()
        expect(f"{link!r} opens to the same bytes", fetch(world, link) == image)


def press_and_take_link(world):
    before = clipboard.text()
    world.desktop.press(SHORTCUT)
    return take_link(world, before)


def take_link(world, before):
    world.see("Link copied to clipboard", 20)
    link = until("the link is on the clipboard", lambda: clipboard.text() != before and clipboard.text())
    expect(f"it is a link of the built-in service: {link!r}", link.startswith("http://127.0.0.1:"))
    expect("the toast shows it", world.shows(link))
    return link


def covers(world):
    """Our window over the whole left screen."""
    return any((window.width, window.height) == (1920, 1080) for window in world.windows())


def inside(world, *words):
    """The built-in service is on the loopback of the program's own network."""
    return world.network.command(list(words)) if world.network else list(words)


def fetch(world, link, *options):
    answer = subprocess.run(inside(world, "curl", "-sSf", "-m", "10", *options, link), capture_output=True)
    expect(f"curl opens {link}: {answer.stderr.decode()}", answer.returncode == 0)
    return answer.stdout


def command(world, *words):
    application = world.application
    answer = subprocess.run(
        inside(world, application.binary, *words), env=application.environment, capture_output=True, text=True, timeout=20
    )
    expect(f"vantle {' '.join(words)}: {answer.stderr}", answer.returncode == 0)
    return answer.stdout


STEPS = [links_a_copied_image, waits_for_nobody, links_a_region_of_the_screen, links_from_the_command_line]
