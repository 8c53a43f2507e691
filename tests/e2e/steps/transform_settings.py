"""AI Text Transform with its result on the clipboard: the picker, the instruction, and back to the launcher."""

from contextlib import contextmanager

from driver import clipboard
from driver.waiting import expect, stays, until
from driver.words import Words

SHORTCUT = "Ctrl+Alt+backslash"
PICKER = "AI Text Transform"
PANEL = "Custom transform"
LAUNCHER = "Vantle Launcher"
LINE = "a wrod or two"


def copies_a_transform(world):
    """A selected line of a terminal and Ctrl+Alt+\\: the picker's choice comes back on the clipboard"""
    with transforming(world, answer="A better line") as (_, provider), words(world):
        clipboard.copy(b"before")
        world.desktop.press(SHORTCUT)
        world.keyed(PICKER)
        world.picture("picker")
        world.desktop.press("Escape")
        until("Escape closes it", lambda: not world.titled(PICKER))
        expect("the clipboard is as it was", clipboard.text() == "before")
        world.desktop.press(SHORTCUT)
        world.keyed(PICKER)
        world.desktop.press("Return")
        world.see("Result copied to clipboard", 20)
        world.picture("copied")
        # The line was selected with its end.
        expect(f"the result is on the clipboard: {clipboard.text()!r}", clipboard.text().strip() == "A better line")
        expect("the selection was sent", any(LINE in text for text in provider.requests[-1].texts))


def asks_for_an_instruction(world):
    """Custom Prompt… by the Up key: typed at once, sent by Ctrl+Return; a new start ends what is under way"""
    with transforming(world, answer="Ahoy") as (_, provider), words(world):
        world.desktop.press(SHORTCUT)
        world.keyed(PICKER)
        world.see("Custom Prompt…")
        world.desktop.press("Up")
        world.desktop.press("Return")
        world.keyed(PANEL)
        world.desktop.type("as a pirate")
        world.see("as a pirate")
        world.picture("instruction")
        world.desktop.press("Ctrl+Return")
        world.see("Result copied to clipboard", 20)
        expect("the instruction was sent", any("as a pirate" in text for text in provider.requests[-1].texts))

        clipboard.copy(b"kept")
        provider.pause = 30
        world.desktop.press(SHORTCUT)
        world.keyed(PICKER)
        world.desktop.press("Return")
        world.see("Transforming…")
        world.picture("under-way")
        world.desktop.press(SHORTCUT)
        world.keyed(PICKER)
        until("what was under way is over", lambda: not world.shows("Transforming…"), 2)
        world.desktop.press("Escape")
        stays("the clipboard stays", lambda: clipboard.text() == "kept", 0.5)


def goes_back_to_the_launcher(world):
    """Started from the launcher, it reads the window behind it; Escape leads back there, and nothing selected is told"""
    with transforming(world):
        with words(world):
            start_from_launcher(world)
            world.keyed(PICKER)
            world.desktop.press("Escape")
            world.keyed(LAUNCHER)
            expect("the picker has gone", not world.titled(PICKER))
            world.desktop.press("Escape")
            world.quiet()
        start_from_launcher(world)
        world.see("Select some text first")
        world.see("Highlight text in any app, then press ⌃⌥\\")
        world.picture("nothing-selected")


def start_from_launcher(world):
    world.desktop.press("Ctrl+Alt+Space")
    until("the launcher is shown", lambda: world.titled(LAUNCHER))
    world.click_on("AI Text Transform")
    world.desktop.move_pointer(2, 2)


@contextmanager
def transforming(world, **script):
    """A program whose built-in service is answered by a scripted provider."""
    with world.ai_provider(**script) as (provider, settings), world.another_application() as application:
        application.begin({"app-settings.json": {"toastDuration": 3}, "ai-provider.json": settings})
        yield application, provider


@contextmanager
def words(world):
    """A line of text, selected in a window in front."""
    window = Words(world.display, world.desktop, LINE)
    try:
        window.select()
        yield
    finally:
        window.close()
        world.terminal.focus()


STEPS = [copies_a_transform, asks_for_an_instruction, goes_back_to_the_launcher]
