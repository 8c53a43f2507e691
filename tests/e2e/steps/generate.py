"""Generate Image: words and snips become a picture, which is copied, kept and made anew."""

import struct
import subprocess
from contextlib import contextmanager
from pathlib import Path

from driver import accessibility, clipboard
from driver.provider import png
from driver.waiting import expect, until

SHORTCUT = "Ctrl+Alt+g"
TITLE = "Generate Image"
WIDE = png(1536, 1024, (94, 129, 172))
SQUARE = png(1024, 1024, (163, 190, 140))
PROMPT = "A fox in the snow"


@contextmanager
def drawing(world, appearance="light"):
    """A program whose AI provider answers with `provider.picture`."""
    with world.ai_provider() as (provider, settings), world.another_application() as application:
        provider.picture = WIDE
        application.begin({"app-settings.json": {"appearance": appearance, "toastDuration": 3}, "ai-provider.json": settings})
        yield provider


def generates_an_image(world):
    """Ctrl+Alt+G, a prompt and Ctrl+Return: the image stands in the panel, is copied, made anew, and kept over a restart"""
    with drawing(world) as provider:
        open_panel(world)
        world.picture("empty")
        world.desktop.type(PROMPT)
        world.desktop.press("Ctrl+Return")
        world.see(f"Image: {PROMPT}", 20)
        world.expect_terminal_active("while the panel is up")
        world.picture("result")
        clipboard.copy(b"before")
        world.desktop.press("Ctrl+c")
        until("a PNG is on the clipboard", lambda: "image/png" in clipboard.offered())
        expect("it is the picture, byte for byte", pasted() == WIDE)
        saves(world)
        provider.picture = SQUARE
        world.desktop.press("Ctrl+r")
        world.see("2 images", 20)
        until("the history is on the disk", lambda: len(kept(world, "png")) == len(kept(world, "json")) == 2)
        world.desktop.press("Tab")
        world.desktop.press("Right")
        world.see("use its prompt")
        world.picture("history")
        world.desktop.press("Ctrl+c")
        until("the older one is copied", lambda: pasted() == WIDE)
        world.application.restart()
        open_panel(world)
        world.see("2 images")
        world.desktop.press("Tab")
        world.see(f"Image: {PROMPT}")
        world.desktop.press("Delete")
        world.desktop.press("Delete")
        world.see("1 image")
        until("its files are gone", lambda: len(kept(world, "png")) == len(kept(world, "json")) == 1)
        expect("the newer one went", Path(kept(world, "png")[0]).read_bytes() == WIDE)
        world.desktop.press("Escape")
        close(world)


def edits_a_snip(world):
    """Ctrl+Shift+E, a dragged region and what should change: the provider gets exactly that region; in the dark"""
    with drawing(world, "dark") as provider:
        open_panel(world)
        world.desktop.press("Ctrl+Shift+e")
        until("the panel is put away", lambda: not world.titled(TITLE))
        until("the overlay covers the screen", lambda: covers(world))
        world.desktop.drag((300, 200), (620, 410))
        until("the panel is back", lambda: world.titled(TITLE))
        world.see("The image to be changed")
        world.desktop.type("Without the fox")
        world.picture("attached")
        world.desktop.press("Ctrl+Return")
        world.see("Image: Without the fox", 20)
        world.picture("changed")
        sent = provider.requests[-1].body
        start = sent.index(b"\x89PNG\r\n\x1a\n")
        size = struct.unpack(">II", sent[start + 16 : start + 24])
        expect(f"the provider got the region: {size}", size == (320, 210))
        close(world)


def drags_an_image_out(world):
    """The picture is dragged out of the panel into another window, which gets it as a file"""
    with drawing(world):
        defaults = Path(world.application.home.name) / "config/Vantle/Vantle.ini"
        world.application.stop()
        defaults.parent.mkdir(exist_ok=True)
        defaults.write_text("[General]\nfileDrop.originX=0\nfileDrop.originY=560\n")
        world.application.start()
        world.application.wait_until_live()
        open_panel(world)
        world.desktop.type(PROMPT)
        world.desktop.press("Ctrl+Return")
        world.see(f"Image: {PROMPT}", 20)
        until("it is on the disk", lambda: kept(world, "png"))
        world.desktop.press("Ctrl+Alt+l")
        until("the other window is shown", lambda: world.titled("File Drop"))
        target = world.titled("File Drop")
        picture = accessibility.find(world.application.pid, f"Image: {PROMPT}")
        world.desktop.drag(accessibility.centre(picture), (target.x + target.width // 2, target.y + target.height // 2))
        world.see(Path(kept(world, "png")[0]).name)
        world.picture("dropped")
        world.desktop.press("Escape")
        until("the other window is gone", lambda: not world.titled("File Drop"))


def saves(world):
    file = Path(world.application.home.name) / "saved.png"
    world.desktop.press("Ctrl+Shift+s")
    until("the dialog is shown and the panel is not", lambda: world.titled("Save the image") and not world.titled(TITLE))
    world.picture("save")
    world.desktop.press("Ctrl+a")
    world.desktop.type(str(file))
    world.desktop.press("Return")
    world.see("Saved as saved.png")
    expect("it is the picture, byte for byte", file.read_bytes() == WIDE)


def open_panel(world):
    world.quiet()
    world.desktop.press(SHORTCUT)
    until("the panel is shown", lambda: world.titled(TITLE))
    world.see("Prompt")


def close(world):
    world.desktop.press("Escape")
    until("the panel is gone", lambda: not world.titled(TITLE))


def covers(world):
    return any(window.width >= 1920 and window.height >= 1080 for window in world.windows())


def kept(world, kind):
    return sorted(str(path) for path in (world.application.folder / "GenerateImage/History").glob(f"*.{kind}"))


def pasted():
    wanted = ["xclip", "-o", "-selection", "clipboard", "-t", "image/png"]
    return subprocess.run(wanted, capture_output=True, timeout=10).stdout


STEPS = [generates_an_image, edits_a_snip, drags_an_image_out]
