"""Vibe History: conversations found in the agents' transcripts, resumed in a real terminal."""

from contextlib import contextmanager
from pathlib import Path

from driver.agents import claude_session, codex_session
from driver.waiting import expect, stays, until


def types_a_resume_command(world):
    """Ctrl+Alt+S lists the conversations of both agents; Return types the command that resumes one, Ctrl+Return runs it"""
    with home_with_sessions(world) as (folder, newest, older):
        show(world, "Rename the flag")
        world.picture("open")
        world.see("Add retry to the queue")
        world.desktop.press("Return")
        command = f"cd {quoted(folder)} && codex resume {newest}"
        until("the command is typed", lambda: world.terminal.typed() == command)
        stays("no Return follows", lambda: world.terminal.typed() == command, 0.3)
        world.expect_terminal_active("after typing")

        world.terminal.forget()
        show(world, "Rename the flag")
        world.desktop.type("retry")
        until("the other is filtered out", lambda: not world.shows("Rename the flag"))
        world.picture("filtered")
        world.desktop.press("Ctrl+Return")
        command = f"cd {quoted(folder)} && claude --resume {older}\n"
        until("the command is typed and run", lambda: world.terminal.typed() == command)


def copies_a_resume_command(world):
    """Ctrl+C copies the command instead, and a toast says so"""
    with home_with_sessions(world):
        show(world, "Rename the flag")
        world.desktop.press("Down")
        world.see("First prompt: Add retry. Last prompt: And tests")
        world.desktop.press("Ctrl+C")
        world.see("Resume command copied")
        world.picture("toast")
        expect("nothing is typed", world.terminal.typed() == "")
        world.quiet()


@contextmanager
def home_with_sessions(world):
    """A program whose user has worked with both agents in one folder, whose name needs quoting."""
    with world.another_application() as application:
        home = Path(application.home.name)
        folder = str(home / "it's ünïcode")
        Path(folder).mkdir()
        older = claude_session(home, folder, ["Add retry", "And tests"], "Add retry to the queue", minutes_ago=90)
        newest = codex_session(home, folder, "Rename the flag", minutes_ago=5)
        application.begin()
        world.terminal.focus()
        world.terminal.forget()
        yield folder, newest, older


def show(world, text):
    world.desktop.press("Ctrl+Alt+S")
    world.see(text)


def quoted(text):
    return "'" + text.replace("'", "'\\''") + "'"


STEPS = [types_a_resume_command, copies_a_resume_command]
