"""Inject MD: an instruction file for agents, written into a folder in which one has worked."""

from pathlib import Path

from driver.waiting import expect, until

from steps.history import home_with_sessions


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


def show(world, text):
    world.desktop.press("Ctrl+Alt+A")
    world.see(text)


STEPS = [writes_agents_md]
