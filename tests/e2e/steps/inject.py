"""Inject MD: an instruction file for agents, written into a folder in which one has worked."""

from pathlib import Path

from driver.waiting import expect, until

from steps.history import home_with_sessions

CHOOSER = "Choose a folder to inject a Markdown file into"


def writes_agents_md(world):
    """Ctrl+Alt+A, a project, Return: AGENTS.md is in its folder; the second time it asks, and Return keeps what is there"""
    with home_with_sessions(world) as (folder, _, _):
        target = Path(folder) / "AGENTS.md"
        show(world, "it's ünïcode")
        world.picture("projects")
        world.desktop.press("Return")
        until("AGENTS.md is written", target.exists)
        world.see("AGENTS.md is in place")
        text = target.read_text()
        expect(f"it is the template: {text[:40]!r}", text.startswith("# AGENTS.md\n") and "## Conventions" in text)

        target.write_text("# Mine\n")
        target.chmod(0o640)
        show(world, "it's ünïcode")
        world.desktop.press("Return")
        world.see("Overwrite the existing file in")
        world.see("Changes: removed: # Mine")
        world.picture("question")
        world.desktop.press("Return")
        until("the palette is gone", lambda: not world.palette())
        expect("the file is as it was", target.read_text() == "# Mine\n")

        show(world, "it's ünïcode")
        world.desktop.press("Return")
        world.see("Overwrite the existing file in")
        world.desktop.press("Down")
        world.desktop.press("Return")
        until("it is overwritten", lambda: target.read_text() == text)
        expect("with its permissions", target.stat().st_mode & 0o777 == 0o640)
        left = sorted(path.name for path in Path(folder).iterdir())
        expect(f"nothing else is left there: {left}", left == ["AGENTS.md"])
        again = world.application.command("inject", "AGENTS.md", folder)
        expect(f"the command line does not overwrite: {again.stderr}", again.returncode == 1)


def chooses_a_folder(world):
    """Choose Folder… opens a window: Escape leads back to the palette as it was; a typed path and Return write the file there"""
    with home_with_sessions(world) as (_, _, _):
        elsewhere = Path(world.application.home.name) / "else where"
        elsewhere.mkdir()
        show(world, "it's ünïcode")
        world.desktop.type("code")
        world.see("Choose Folder")
        open_chooser(world)
        world.picture("chooser")
        world.desktop.press("Escape")
        until("the window is gone", lambda: not world.titled(CHOOSER))
        world.see("it's ünïcode")
        expect("what was typed before still filters", world.shows("code"))
        world.picture("back")

        open_chooser(world)
        world.desktop.type(str(elsewhere))
        until("the path is typed", lambda: world.shows(str(elsewhere)))
        world.desktop.press("Return")
        until("AGENTS.md is written", (elsewhere / "AGENTS.md").exists)
        world.see("AGENTS.md is in place")


def open_chooser(world):
    """The last row, whatever is filtered."""
    world.desktop.press("Up")
    world.desktop.press("Return")
    until("the folder chooser is shown", lambda: world.titled(CHOOSER))
    until("it has the keyboard", lambda: world.desktop.active_window() == world.titled(CHOOSER).id)


def show(world, text):
    world.desktop.press("Ctrl+Alt+A")
    world.see(text)


STEPS = [writes_agents_md, chooses_a_folder]
