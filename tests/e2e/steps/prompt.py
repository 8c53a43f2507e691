"""Image to Prompt: what was copied elsewhere becomes a prompt on a card and on the clipboard."""

from contextlib import contextmanager

from driver import clipboard
from driver.provider import png
from driver.waiting import expect, until
from steps.transform import escape_ends_it

SHORTCUT = "Ctrl+Alt+p"
TITLE = "Image to Prompt"
PROMPT = "A flat square in warm red, nothing else."


def describes_a_copied_image(world):
    """An image copied in another program and Ctrl+Alt+P: a card shows the prompt, which is on the clipboard already"""
    image = png(640, 400, (200, 30, 40))
    with describing(world, answer=PROMPT) as provider:
        world.desktop.press(SHORTCUT)
        world.see("No image on the clipboard")
        clipboard.copy(image, "image/png")
        world.desktop.press(SHORTCUT)
        card = until("the card is shown", lambda: world.titled(TITLE), 20)
        world.see("General Purpose · copied to your clipboard")
        world.picture("card")
        expect("the prompt is on the clipboard", clipboard.text() == PROMPT)
        expect("the image was sent", provider.requests[-1].images == [image])
        expect("a short prompt has a low card", card.height == 72 + 102 + 40 + 96)
        clipboard.copy(b"something else")
        world.desktop.press("Ctrl+c")
        until("Ctrl+C copies it again", lambda: clipboard.text() == PROMPT)
        world.desktop.press("Shift+F10")
        world.see("Select All")
        world.picture("menu")
        world.desktop.press("Escape")
        until("Escape closes the menu", lambda: not world.shows("Select All"))
        world.desktop.press("Escape")
        until("Escape closes it", lambda: not world.titled(TITLE))
        world.expect_terminal_active("afterwards")
        clipboard.copy(image, "image/png")
        provider.say_nothing()
        world.desktop.press(SHORTCUT)
        escape_ends_it(world, provider)
        expect("the image is still on the clipboard", "image/png" in clipboard.offered())


@contextmanager
def describing(world, **script):
    """A program whose built-in service is answered by a scripted provider."""
    with world.ai_provider(**script) as (provider, settings), world.another_application() as application:
        application.begin({"app-settings.json": {"toastDuration": 3}, "ai-provider.json": settings})
        world.terminal.focus()
        clipboard.copy(b"only text")
        yield provider


STEPS = [describes_a_copied_image]
