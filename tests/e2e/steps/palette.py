"""Frequent CLIs: what is chosen stands in the terminal, which never loses its focus."""

import time

from driver.waiting import expect, stays, until


def types_a_command(world):
    """Ctrl+Alt+Return, a filter, Return: the command's exact text stands in the terminal, and no Return"""
    command = world.application.read_json("FrequentCLIs/commands.json")[0]
    choose(world, "hello", "filtered")
    until("the command is typed", lambda: world.terminal.typed() == command["command"])
    stays("no Return follows", lambda: world.terminal.typed() == command["command"], 0.3)
    world.expect_terminal_active("after typing")
    expect("no key is left down", not world.desktop.held_keys())


def types_and_runs_a_command(world):
    """The same with a command that presses Return: its text and one line end"""
    command = world.application.read_json("FrequentCLIs/commands.json")[1]
    choose(world, "RUN", "")
    until("the command is typed and run", lambda: world.terminal.typed() == command["command"] + "\n")
    world.expect_terminal_active("after typing")


def choose(world, query, picture):
    world.terminal.focus()
    world.terminal.forget()
    world.expect_terminal_active("before")
    world.summon_palette()
    world.desktop.type(query, pause=0.01)
    world.stays_terminal_active("while the palette is up")
    if picture:
        world.picture(picture)
    world.desktop.press("Return")
    until("the palette is gone", lambda: not world.palette())


def keeps_every_early_key(world):
    """Keys typed from 20 ms after the shortcut are all in the query, twenty times out of twenty"""
    word = "zqxjkv"
    # Each decoy is what is left of the word when one key is lost, and stands before the word itself.
    lossy = [word[:lost] + word[lost + 1 :] for lost in range(len(word))]
    commands = [{"title": text, "command": f"lost {text};", "pressReturn": False, "icon": "codex"} for text in lossy]
    whole = {"title": word, "command": "whole;", "pressReturn": False, "icon": "claude"}
    with world.another_application() as application:
        application.write_settings()
        application.write_commands([*commands, whole])
        application.start()
        application.wait_until_live()
        world.terminal.focus()
        world.terminal.forget()
        for count in range(1, 21):
            world.desktop.press("Ctrl+Alt+Return")
            time.sleep(0.020)
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


def forgets_the_query(world):
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
    until("the last command is typed", lambda: world.terminal.typed() == "ls --color=never ~/zebra\n")


def opens_from_the_command_line(world):
    """vantle summon frequent-clis opens the palette in the running program"""
    result = world.application.command("summon", "frequent-clis")
    expect(f"summon succeeds: {result.stderr.strip()}", result.returncode == 0)
    until("the palette is shown", world.palette)
    world.close_palette()


STEPS = [
    types_a_command,
    types_and_runs_a_command,
    forgets_the_query,
    closes_by_a_click_elsewhere,
    keeps_every_early_key,
    opens_from_the_command_line,
]
