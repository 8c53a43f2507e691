"""Every window of the application, and how one gets to see each of its pages."""

from collections import namedtuple
from pathlib import Path

from driver import clipboard
from driver.provider import Provider, png
from driver.waiting import until
from driver.words import Words

from .stage import PROJECTS

# What to call the picture, and the title of the window that is in it. A panel has the keyboard as a whole: no Tab.
View = namedtuple("View", "name title has_tab", defaults=[True])

ANSWER = """Use `sort` with a **projection**:

```cpp
std::ranges::sort(tools, {}, &Tool::name);
```

- see [the reference](https://example.com/sort)"""
WELCOME = "Welcome"
STEPS = {
    "welcome": "Welcome to Vantle",
    "privacy": "Private by default",
    "permissions": "What Linux allows",
    "try-it": "Try it now",
    "done": "You are set",
}
SETTINGS = "Settings"
TABS = ["General", "Tools", "Shortcuts", "Notifications", "Launcher", "Privacy"]
ONE_PAGE = {
    "shortcuts": "Keyboard Shortcuts",
    "permissions": "Permissions",
    "usage": "Usage",
    "whats-new": "What's New",
}
BOILERPLATES = "Boilerplates"
PANELS = {
    "menu": "Vantle Menu",
    "launcher": "Vantle Launcher",
    "frequent-clis": "Frequent CLIs",
    "vibe-history": "Vibe History",
    "inject-md": "Inject MD",
    "open-project": "Open Project",
}


def first_run(stage):
    """The onboarding window step by step, to its end."""
    until("the welcome window is shown", lambda: stage.shape(WELCOME), 10)
    for name, heading in STEPS.items():
        stage.wait_for(WELCOME, heading, "label")
        yield View(f"welcome-{name}", WELCOME)
        buttons = [control for control in stage.tree(WELCOME) if control.role == "push button"]
        # The one that leads on stands at the bottom right.
        max(buttons, key=lambda button: button.box.right + button.box.bottom).act("Press")
    until("the welcome window is gone", lambda: not stage.shape(WELCOME))


def settings(stage):
    """Every tab, and every tool's page."""
    stage.open("settings", SETTINGS)
    tabs = rows_of(stage, "Settings tabs")
    for tab in TABS:
        choose(stage, tab, tabs[tab])
        if tab != "Tools":
            yield View(f"settings-{tab.lower()}", SETTINGS)
            continue
        for tool, entry in rows_of(stage, "Tools").items():
            choose(stage, tool, entry)
            yield View(f"settings-tools-{tool.lower().replace(' ', '-')}", SETTINGS)
    stage.close_window(SETTINGS)


def unfolded_privacy(stage):
    """What the privacy page shows on demand: the message that is sent, and the question before everything is deleted."""
    stage.open("settings", SETTINGS)
    choose(stage, "Privacy", rows_of(stage, "Settings tabs")["Privacy"])
    for button in ("Show What Is Sent", "Delete All Data…"):
        stage.wait_for(SETTINGS, button).act("Press")
    stage.wait_for(SETTINGS, "Keep My Data")
    yield View("settings-privacy-unfolded", SETTINGS)
    stage.desktop.press("Escape")
    until("Escape takes the question back", lambda: not stage.control(SETTINGS, "Keep My Data"))
    stage.close_window(SETTINGS)


def rows_of(stage, name):
    """The rows of a list by what they say."""
    rows = stage.wait_for(SETTINGS, name, "list").children
    return {row.name: row for row in rows if row.role == "list item"}


def choose(stage, name, entry):
    """Clicks the row of a list unless it is chosen already, and waits for the page with its name."""
    if not entry.is_selected():
        stage.click(entry)
        until(f"{name} is chosen", entry.is_selected)
    until(f"the page {name} is shown", lambda: has_page(stage, name))


def has_page(stage, name):
    window = stage.readable(SETTINGS) or ()
    return any(control.name == name and control.role != "list item" for control in window)


def windows(stage):
    """Those that are one page."""
    for name, title in ONE_PAGE.items():
        stage.open(name, title)
        yield View(name, title)
        stage.close_window(title)


def panels(stage):
    for name, title in PANELS.items():
        stage.summon(name)
        until(f"“{title}” is shown", lambda: stage.shape(title))
        yield View(name, title, has_tab=False)
        stage.close_window(title)


def boilerplates(stage):
    """The palette of Boilerplates question by question."""
    stage.summon("boilerplates")
    for name, row, answer in (("which", "Web", ""), ("name", "New project from Web", "shop"), ("where", "Choose Folder…", "")):
        stage.desktop.type(answer)
        until(f"“{row}” is offered", lambda: any(row in control.name for control in stage.readable(BOILERPLATES) or ()))
        yield View(f"boilerplates-{name}", BOILERPLATES, has_tab=False)
        stage.desktop.press("Return" if name != "where" else "Escape")
    stage.desktop.press("Escape")
    stage.close_window(BOILERPLATES)


def file_drop(stage):
    """The drop window from empty to its result."""
    title = "File Drop"
    item = Path(stage.application.home.name) / "notes.txt"
    item.write_text("hello\n")
    stage.summon("bulk-upload")
    stage.wait_for(title, "Drop files or folders here")
    yield View("file-drop-empty", title, has_tab=False)
    # As file managers do.
    clipboard.copy(f"{item.as_uri()}\r\n".encode(), "text/uri-list")
    stage.desktop.press("Ctrl+v")
    stage.wait_for(title, "notes.txt, 6 bytes")
    yield View("file-drop-list", title, has_tab=False)
    # A service that nobody is.
    stage.application.write_json("BulkUpload/config.json", {"endpoint": "http://127.0.0.1:9/", "token": ""})
    stage.desktop.press("Return")
    stage.wait_for(title, "Not uploaded")
    yield View("file-drop-failed", title, has_tab=False)
    (stage.application.folder / "BulkUpload/config.json").unlink()
    stage.desktop.press("Return")
    until("there is a link", lambda: stage.control(title, "Link copied to clipboard"), 20)
    yield View("file-drop-done", title, has_tab=False)
    stage.close_window(title)


def restart_with(stage, provider):
    """The provider is read when the program starts."""
    stage.application.stop()
    stage.application.write_json("ai-provider.json", provider.settings)
    stage.start()


def generate_image(stage):
    """Generate Image from empty to its history, and a failure."""
    title = "Generate Image"
    provider = Provider()
    provider.picture = png(1024, 768)
    restart_with(stage, provider)
    stage.summon("generate-image")
    stage.wait_for(title, "Your image appears here")
    yield View("generate-empty", title, has_tab=False)
    clipboard.copy(png(), "image/png")
    stage.desktop.press("Ctrl+v")
    stage.wait_for(title, "Reference 1")
    stage.desktop.type("A fox in the snow")
    yield View("generate-references", title, has_tab=False)
    stage.desktop.press("Ctrl+Return")
    stage.wait_for(title, "Image: A fox")
    yield View("generate-result", title, has_tab=False)
    # To the references, then to the history.
    stage.desktop.press("Tab")
    stage.desktop.press("Tab")
    until("the history's keys are named", lambda: any("use its prompt" in one.name for one in stage.readable(title) or ()))
    yield View("generate-history", title, has_tab=False)
    stage.desktop.press("Escape")
    provider.raw = lambda handler, request: handler.reply(500, {"error": {"message": "tired"}})
    stage.desktop.press("Ctrl+Return")
    stage.wait_for(title, "Generation failed")
    yield View("generate-failed", title, has_tab=False)
    stage.close_window(title)
    provider.close()


def ask_ai(stage):
    """Ask AI before and after a question, and a failure."""
    title = "Ask AI"
    provider = Provider(ANSWER, pause=0.05)
    restart_with(stage, provider)
    stage.summon("quick-question")
    stage.wait_for(title, "Short answers, right here.")
    yield View("ask-empty", title, has_tab=False)
    clipboard.copy(png(), "image/png")
    stage.desktop.press("Ctrl+v")
    stage.wait_for(title, "Remove attached image 1")
    yield View("ask-attached", title, has_tab=False)
    stage.desktop.type("How do I sort by name?")
    stage.desktop.press("Return")
    stage.wait_for(title, "Copy code block 1")
    until("it is whole", lambda: stage.control(title, "Copy Answer"), 20)
    yield View("ask-answered", title, has_tab=False)
    stage.desktop.press("Shift+F10")
    stage.wait_for(title, "Copy Answer as Markdown")
    yield View("ask-menu", title, has_tab=False)
    stage.desktop.press("Escape")
    provider.raw = lambda handler, request: handler.reply(500, {"error": {"message": "tired"}})
    stage.desktop.type("And in a stable way?")
    stage.desktop.press("Return")
    stage.wait_for(title, "Request failed")
    yield View("ask-failed", title, has_tab=False)
    stage.close_window(title)
    provider.close()


def image_ask(stage):
    """Image Ask beside its capture, before and after a question."""
    title = "Image Ask"
    provider = Provider("It is **one** colour.", pause=0.02)
    restart_with(stage, provider)
    stage.summon("image-ask")
    whole = stage.desktop.screen_size
    until("the overlay is there", lambda: any((shape.width, shape.height) == whole for shape in stage.shapes()))
    stage.desktop.drag((300, 200), (900, 600))
    stage.wait_for(title, "Captured area")
    yield View("image-ask-empty", title, has_tab=False)
    stage.desktop.type("What is it?")
    stage.desktop.press("Return")
    stage.wait_for(title, "Ask a follow-up…")
    yield View("image-ask-answered", title, has_tab=False)
    stage.close_window(title)
    provider.close()


def open_with(stage):
    """The commands that open a project, with the missing ones greyed."""
    title = PANELS["open-project"]
    stage.summon("open-project")
    stage.wait_for(title, f"{next(iter(PROJECTS))}, ")
    stage.desktop.press("Ctrl+Return")
    stage.wait_for(title, "Default terminal")
    until("missing ones are marked", lambda: any("not installed" in control.name for control in stage.tree(title)))
    yield View("open-project-commands", title, has_tab=False)
    stage.desktop.press("Escape")
    stage.close_window(title)


def text_transform(stage):
    """The picker over a selected line, and the panel for an instruction of one's own."""
    words = Words(stage.display, stage.desktop, "a line of text")
    words.select()
    stage.summon("ai-text-transform")
    until("the picker is shown", lambda: stage.shape("AI Text Transform"))
    yield View("text-transform-picker", "AI Text Transform", has_tab=False)
    stage.desktop.press("Up")
    stage.desktop.press("Return")
    until("the panel is shown", lambda: stage.shape("Custom transform"))
    yield View("text-transform-instruction", "Custom transform")
    stage.close_window("Custom transform")
    words.close()


def reports(stage):
    """Feedback and Suggest a Tool: what is typed, and what became of it."""
    for tool, title, words in (("feedback", "Feedback", "It works"), ("suggest-tool", "Suggest a Tool", "A kettle")):
        stage.summon(tool)
        stage.wait_for(title, "Send")
        yield View(f"{tool}-empty", title, has_tab=False)
        # A service that nobody is.
        folder = "Feedback" if tool == "feedback" else "SuggestTool"
        stage.application.write_json(f"{folder}/config.json", {"endpoint": "http://127.0.0.1:9/", "token": ""})
        clipboard.copy(png(320, 200, (30, 90, 200)), "image/png")
        stage.desktop.type(words)
        stage.desktop.press("Ctrl+v")
        stage.wait_for(title, "Snip 1")
        stage.desktop.press("Ctrl+Return")
        until("it fails", lambda: any("to retry" in control.name for control in stage.readable(title) or ()), 20)
        yield View(f"{tool}-failed", title, has_tab=False)
        (stage.application.folder / folder / "config.json").unlink()
        stage.desktop.press("Ctrl+Return")
        until("it is sent", lambda: any("Thanks" in control.name for control in stage.readable(title) or ()), 20)
        yield View(f"{tool}-sent", title, has_tab=False)
        stage.desktop.press("Escape")
        until(f"Escape closes “{title}”", lambda: not stage.shape(title))


def image_to_prompt(stage):
    """The choice of a style, and the card with the prompt."""
    title = "Image to Prompt"
    provider = Provider()
    provider.raw = lambda handler, request: handler.reply(200, {"prompt": "A flat square in deep blue. " * 12})
    stage.application.write_json(
        "Promptify/config.json", {"endpoint": f"http://127.0.0.1:{provider.port}/", "token": ""}
    )
    stage.application.command("config", "set", "image-to-prompt-style", "ask")
    clipboard.copy(png(320, 200, (30, 90, 200)), "image/png")
    stage.summon("promptify")
    stage.wait_for(title, "UI Focused", "list item")
    yield View("image-to-prompt-styles", title, has_tab=False)
    stage.desktop.press("Return")
    stage.wait_for(title, "Copy Prompt")
    yield View("image-to-prompt-card", title, has_tab=False)
    stage.desktop.press("Escape")
    until("Escape closes it", lambda: not stage.shape(title))
    provider.close()


ALL = [
    first_run, settings, unfolded_privacy, windows, panels, boilerplates, file_drop, generate_image, reports,
    image_to_prompt, ask_ai, image_ask, open_with, text_transform,
]  # fmt: skip
