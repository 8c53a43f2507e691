"""Every window of the application, and how one gets to see each of its pages."""

from collections import namedtuple

from driver.waiting import until

# What to call the picture, and the title of the window that is in it. A panel has the keyboard as a whole: no Tab.
View = namedtuple("View", "name title has_tab", defaults=[True])

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
PANELS = {"menu": "Vantle Menu", "launcher": "Vantle Launcher", "frequent-clis": "Frequent CLIs", "vibe-history": "Vibe History", "inject-md": "Inject MD"}


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


ALL = [first_run, settings, unfolded_privacy, windows, panels]
