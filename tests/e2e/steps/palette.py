"""Frequent CLIs: what is chosen stands in the terminal, which never loses its focus."""

from driver import clipboard
from driver.application import COMMANDS
from driver.waiting import expect, stays, until


def types_a_command(world):
    """Ctrl+Alt+Return, a filter, Return: the command's exact text stands in the terminal, and no Return"""
    choose(world, "HELLO")
    until("the command is typed", lambda: world.terminal.typed() == text_of("Say hello"))
    stays("no Return follows", lambda: world.terminal.typed() == text_of("Say hello"), 0.3)
    world.expect_terminal_active("after typing")
    expect("no key is left down", not world.desktop.held_keys())


def types_and_runs_a_command(world):
    """The same with a command that presses Return: its text and one line end"""
    choose(world, "tests")
    until("the command is typed and run", lambda: world.terminal.typed() == text_of("Run the tests") + "\n")
    world.expect_terminal_active("after typing")


def text_of(title):
    return next(command["command"] for command in COMMANDS if command["title"] == title)


def choose(world, query):
    world.terminal.focus()
    world.terminal.forget()
    world.expect_terminal_active("before")
    world.summon_palette()
    world.picture("open")
    world.desktop.type(query, pause=0.01)
    world.stays_terminal_active("while the palette is up")
    world.picture("filtered")
    world.desktop.press("Return")
    until("the palette is gone", lambda: not world.palette())


def types_nothing_into_a_locked_screen(world):
    """Another program keeps the keyboard: the command goes to the clipboard, and a toast says so"""
    world.terminal.focus()
    world.terminal.forget()
    world.summon_palette()
    world.desktop.type("HELLO", pause=0.01)
    # Until the hand lets go of Shift, nothing is typed: time to take the keyboard.
    world.desktop.hold("Return+Shift")
    with world.desktop.keyboard_kept():
        world.desktop.release("Return+Shift")
        world.see("Command copied to clipboard")
        expect("the command is on the clipboard", clipboard.text() == text_of("Say hello"))
        world.picture("refused")
    stays("nothing is typed", lambda: world.terminal.typed() == "", 0.3)
    expect("no key is left down", not world.desktop.held_keys())


def keeps_every_early_key(world):
    """Keys typed in the same breath as the shortcut are all in the query, twenty times out of twenty"""
    word = "zqxjkv"
    # Each decoy is what is left of the word when one key is lost, and stands before the word itself.
    lossy = [word[:lost] + word[lost + 1 :] for lost in range(len(word))]
    commands = [{"title": text, "command": f"lost {text};", "pressReturn": False, "icon": "codex"} for text in lossy]
    whole = {"title": word, "command": "whole;", "pressReturn": False, "icon": "claude"}
    with world.another_application() as application:
        application.write_commands([*commands, whole])
        application.begin()
        world.terminal.focus()
        world.terminal.forget()
        # The program has been running for a while when somebody presses a shortcut.
        world.summon_palette()
        world.close_palette()
        for count in range(1, 21):
            world.desktop.press("Ctrl+Alt+Return")
            world.desktop.type(word)
            world.desktop.press("Return")
            until(f"round {count} chooses by the whole word", lambda: len(world.terminal.typed()) >= 6 * count)
            expect(
                f"round {count}: every key counts, got {world.terminal.typed()!r}",
                world.terminal.typed() == "whole;" * count,
            )
    world.terminal.focus()


def closes_by_a_click_elsewhere(world):
    """A click elsewhere closes the palette; Escape does too"""
    world.terminal.focus()
    world.summon_palette()
    world.desktop.click(300, 700)
    until("the palette is gone after the click", lambda: not world.palette())
    world.summon_palette()
    world.close_palette()
    world.expect_terminal_active("after Escape")


def goes_round_and_says_when_nothing_matches(world):
    """↑ goes round to the last row, Backspace takes characters back, nothing found says so"""
    world.terminal.forget()
    world.summon_palette()
    world.desktop.type("nothing like it")
    world.see("No matching commands")
    world.picture("nothing")
    for _ in "nothing like it":
        world.desktop.press("Backspace")
    world.desktop.press("Up")
    world.desktop.press("Return")
    until("the last command is typed", lambda: world.terminal.typed() == COMMANDS[-1]["command"] + "\n")


STEPS = [
    types_a_command,
    types_and_runs_a_command,
    types_nothing_into_a_locked_screen,
    goes_round_and_says_when_nothing_matches,
    closes_by_a_click_elsewhere,
    keeps_every_early_key,
]
