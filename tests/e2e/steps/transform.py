"""AI Text Transform over programs of other people: the rewrite stands in place of the selection, the clipboard is back."""

from contextlib import contextmanager

from driver import flavours, selecting
from driver.waiting import expect, until
from steps.launcher import open_launcher
from steps.transform_settings import PICKER, SHORTCUT, transforming

WORDS = "i has three cat and they is naïve"
BETTER = "I have three cats, and they are naïve — “so” 🚀."


def rewrites_in_an_editor(world):
    """Ctrl+Alt+\\ over what is selected in a GTK editor: the rewrite in its place, every byte of the clipboard back"""
    with replacing(world, BETTER) as clipboard, closing(selecting.GtkEditor(world.display, world.desktop, WORDS)) as editor:
        choose(world, "Ctrl+a")
        world.see("Selection transformed", 20)
        world.picture("replaced")
        clipboard.expect_back()
        until("the rewrite stands in the file", lambda: saved(world, editor) == BETTER, 5, 0.3)
        clipboard.provider.answer = "Again"
        world.desktop.press("Ctrl+a")
        open_launcher(world)
        world.desktop.type("AI Text")
        until("only one tool is left", lambda: not world.shows("Ask AI"), interval=0.05)
        pick(world, "Return")
        until("it stands there from the launcher too", lambda: saved(world, editor) == "Again", 10, 0.3)
        clipboard.expect_back()
        stops_waiting(world, clipboard)
        expect("the text is as it was", saved(world, editor) == "Again")


def rewrites_in_a_terminal(world):
    """The same in a terminal: the program in it is not interrupted, and gets the rewrite as if typed, without a Return"""
    with replacing(world, "git status\n") as clipboard:
        with closing(selecting.InterruptibleTerminal(world.display, world.desktop)) as terminal:
            world.desktop.press(SHORTCUT)
            world.see("Select some text first")
            world.picture("nothing-selected")
            world.quiet()
            terminal.select_part()
            world.desktop.move_pointer(2, 2)
            choose(world)
            expect(f"the program has noticed nothing: {terminal.noticed()}", terminal.noticed() == b"")
            until("the rewrite is typed", lambda: terminal.noticed() == b"git status", 10)
            world.see("Selection transformed")
            world.picture("replaced")
            clipboard.expect_back()
            stops_typing(world, clipboard, terminal)


def stops_waiting(world, clipboard):
    """Escape in the editor, which gets it too, while the provider thinks."""
    clipboard.provider.say_nothing()
    choose(world, "Ctrl+a")
    world.desktop.press("Ctrl+Alt+k")
    world.keyed("Ask AI")
    world.desktop.press("Escape")
    until("it closes another panel first", lambda: not world.titled("Ask AI"))
    escape_ends_it(world, clipboard.provider)
    clipboard.expect_back()


def escape_ends_it(world, provider):
    """What is awaited, and only a toast tells of."""
    world.see("Esc or a click here cancels")
    until("the provider is asked", lambda: provider.waiting)
    world.picture("waiting")
    world.desktop.press("Escape")
    until("the toast is gone", lambda: not world.toast())
    until("nobody waits for the provider", lambda: not provider.waiting)


def stops_typing(world, clipboard, terminal):
    """A click on the toast, in the middle of a result that is long."""
    clipboard.provider.answer = "word " * 20000
    before = len(terminal.noticed())
    choose(world)
    until("it is being typed", lambda: len(terminal.noticed()) > before, 10, 0.02)
    toast = world.toast()
    # The card is at the top of its window.
    world.desktop.click(toast.x + toast.width // 2, toast.y + 45)
    until("the toast is gone", lambda: not world.toast())
    clipboard.expect_back()
    counts = []

    def has_ended():
        counts.append(len(terminal.noticed()))
        return counts[-2:] == counts[-1:] * 2

    until("the terminal has what was on its way", has_ended, 10, 0.5)
    expect(f"only a part is typed: {counts[-1] - before}", counts[-1] - before < 90000)


def choose(world, selecting_keys=None):
    """Selects, presses the shortcut and takes the first row."""
    if selecting_keys:
        world.desktop.press(selecting_keys)
    pick(world, SHORTCUT)


def pick(world, keys):
    """What opens the picker, and the first row."""
    world.desktop.press(keys)
    world.keyed(PICKER)
    world.picture("picker")
    world.desktop.press("Return")
    until("the picker is gone", lambda: not world.titled(PICKER))


def saved(world, editor):
    world.desktop.press("Ctrl+s")
    return editor.file.read_text().rstrip("\n")


class Clipboard:
    """Another program's, in many kinds."""

    def __init__(self, provider):
        self.provider = provider
        self.earlier = flavours.everything(pixels=200)
        flavours.Owner(self.earlier)
        self.reader = flavours.Reader()

    def expect_back(self):
        # What a program has copied twice is looked into before it is replaced.
        earlier = list(self.earlier.items())
        until("the earlier clipboard is back", lambda: list(self.reader.everything().items()) == earlier)


@contextmanager
def replacing(world, answer):
    """A program that types what a scripted provider answers; yields the clipboard of before."""
    with transforming(world, answer=answer) as (application, provider):
        application.stop()
        application.write_json("AITextTransform/settings.json", {"output": "replace"})
        application.start()
        application.wait_until_live()
        yield Clipboard(provider)


@contextmanager
def closing(program):
    try:
        yield program
    finally:
        program.close()


STEPS = [rewrites_in_an_editor, rewrites_in_a_terminal]
