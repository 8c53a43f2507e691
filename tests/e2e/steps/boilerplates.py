"""Boilerplates: a project made from a template folder, with the palette and on the command line."""

import uuid
from pathlib import Path

from driver.waiting import expect, until


def makes_a_project(world):
    """Ctrl+Alt+N asks which template, under what name and where; the project is whole, and may be opened at once"""
    with world.another_application() as application:
        home = Path(application.home.name)
        template = home / "templates" / "web"
        (template / ".git").mkdir(parents=True)
        (template / "{{name}}.md").write_text("# {{name}}\n")
        (template / ".gitignore").write_text("*.log\n")
        (template / "old.log").write_text("x")
        work = home / "it's wörk"
        work.mkdir()
        entry = {"id": str(uuid.uuid4()), "name": "Web page", "path": str(template)}
        application.begin({"boilerplates.json": {"templates": [entry], "lastPlace": str(work)}})
        world.terminal.focus()

        world.desktop.press("Ctrl+Alt+n")
        world.see("Web page")
        world.picture("which")
        world.desktop.press("Return")
        world.see("Type a name for the project")
        world.desktop.type("shop/")
        world.see("A name cannot contain a slash")
        world.desktop.press("BackSpace")
        world.see("New project from Web page")
        world.picture("name")
        world.desktop.press("Return")
        world.see("Choose Folder…")
        world.picture("where")
        world.desktop.press("Return")
        until("the project is there", lambda: (work / "shop" / "shop.md").is_file())
        expect("its name is filled in", (work / "shop" / "shop.md").read_text() == "# shop\n")
        names = sorted(path.name for path in (work / "shop").iterdir())
        expect(f"nothing else came along: {names}", names == [".gitignore", "shop.md"])
        world.keyed("Open Project")
        world.picture("offered")
        # The first Escape leads to the recent projects, and it is one.
        world.desktop.press("Escape")
        world.see("shop, ~/it's wörk/shop, ")
        world.close_palette()

        application.command("new", "web page", str(work / "blog"))
        expect("the command line makes one too", (work / "blog" / "blog.md").is_file())
        world.desktop.press("Ctrl+Alt+o")
        world.see("blog, ~/it's wörk/blog, ")
        world.see("shop, ~/it's wörk/shop, ")
        world.picture("listed")
        world.close_palette()


STEPS = [makes_a_project]
