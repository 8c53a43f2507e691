"""Open Project: a recent project opens in a terminal that is really installed, in the right folder."""

from contextlib import contextmanager
from pathlib import Path

from driver.agents import claude_session, codex_session
from driver.waiting import until

NAME = "it's a Größe 日本"


def opens_a_project_in_a_terminal(world):
    """Ctrl+Alt+O, a filter, Return: a terminal stands in the folder, whose name holds spaces, a quote and foreign letters"""
    with home_with_projects(world) as (_, folder):
        show(world)
        world.picture("open")
        world.desktop.type("gr")
        until("the other is filtered out", lambda: not world.shows("plain, "))
        world.picture("filtered")
        world.desktop.press("Return")
        with new_terminal(world):
            until(f"the terminal is in {folder}", lambda: leaves_a_file(world, folder), 10, 0.5)
            world.see("resume command copied")
            world.picture("terminal")


def starts_the_agent_in_the_terminal(world):
    """Ctrl+Return lists the commands, the missing ones greyed; with an agent the terminal runs it in the folder and stays"""
    with home_with_projects(world, autoRunAgent=True, agentCommand="pwd >~/agent; true") as (application, folder):
        show(world)
        world.desktop.press("Ctrl+Return")
        world.see("Default terminal")
        world.see("kitty, not installed")
        world.picture("commands")
        world.desktop.press("Return")
        with new_terminal(world):
            agent = Path(application.home.name) / "agent"
            until("the agent ran there", lambda: agent.exists() and agent.read_text() == folder + "\n", 10)
            world.quiet()


def leaves_a_file(world, folder):
    """Types again until it is there: a terminal is the active window a moment before its shell reads."""
    if not (Path(folder) / "here").exists():
        world.desktop.type("touch here", pause=0.01)
        world.desktop.press("Return")
    return (Path(folder) / "here").exists()


@contextmanager
def home_with_projects(world, **settings):
    with world.another_application() as application:
        home = Path(application.home.name)
        folder, plain = str(home / NAME), str(home / "plain")
        for path in (folder, plain):
            Path(path).mkdir()
        (Path(folder) / "Cargo.toml").touch()
        claude_session(home, plain, ["Add retry"], "Add retry to the queue", minutes_ago=90)
        codex_session(home, folder, "Rename the flag", minutes_ago=5)
        application.begin({"open-project.json": {"copyResume": True} | settings})
        world.terminal.focus()
        yield application, folder


@contextmanager
def new_terminal(world):
    """The terminal that comes up, as the active window; closed afterwards."""
    before = world.desktop.active_window()
    window = until(
        "another terminal is active",
        lambda: world.desktop.active_window() not in (0, before) and world.desktop.active_window(),
        10,
    )
    try:
        yield window
    finally:
        world.desktop.type("exit", pause=0.01)
        world.desktop.press("Return")
        until("that terminal is closed", lambda: world.desktop.active_window() != window, 10)


def show(world):
    world.desktop.press("Ctrl+Alt+O")
    world.see(f"{NAME}, ~/{NAME}, Codex, ")


STEPS = [opens_a_project_in_a_terminal, starts_the_agent_in_the_terminal]
