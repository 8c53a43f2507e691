"""Image to Prompt: what was copied elsewhere, or drawn on the screen, becomes a prompt on a card and on the clipboard."""

from contextlib import contextmanager

from driver import clipboard
from driver.provider import png
from driver.waiting import expect, until

from .uplink import command, covers

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
        world.desktop.press("Escape")
        until("Escape closes it", lambda: not world.titled(TITLE))
        world.expect_terminal_active("afterwards")


def asks_for_the_style_of_a_region(world):
    """A region of the screen, then the style: Up goes round to the last one, and the card names it"""
    with describing(world, answer=PROMPT * 60):
        command(world, "config", "set", "image-to-prompt-source", "liveSelection")
        command(world, "config", "set", "image-to-prompt-style", "ask")
        world.desktop.press(SHORTCUT)
        until("the overlay covers the screen", lambda: covers(world))
        world.desktop.drag((300, 200), (620, 410))
        world.see("Choose a prompt style")
        world.picture("styles")
        world.desktop.press("Escape")
        until("Escape cancels", lambda: not world.titled(TITLE))
        world.desktop.press(SHORTCUT)
        until("the overlay covers the screen", lambda: covers(world))
        world.desktop.drag((300, 200), (620, 410))
        world.see("Choose a prompt style")
        world.desktop.press("Up")
        world.desktop.press("Return")
        world.see("Image Focused · copied to your clipboard", 20)
        world.picture("card")
        expect("a long prompt scrolls", world.titled(TITLE).height == 380 + 102 + 40 + 96)
        world.click_on("Close")
        until("a click closes it", lambda: not world.titled(TITLE))


@contextmanager
def describing(world, **script):
    """A program whose built-in service is answered by a scripted provider."""
    with world.ai_provider(**script) as (provider, settings), world.another_application() as application:
        application.write_settings()
        application.write_json("app-settings.json", {"toastDuration": 3})
        application.write_json("ai-provider.json", settings)
        application.start()
        application.wait_until_live()
        world.terminal.focus()
        clipboard.copy(b"only text")
        yield provider


STEPS = [describes_a_copied_image, asks_for_the_style_of_a_region]
