"""Every window of the application, and how one gets to see each of its pages."""

from collections import namedtuple

from driver.waiting import until

# What to call the picture, and the title of the window that is in it. A panel has the keyboard as a whole: no Tab.
# Other pages of the launcher's grid lie beside the one that is seen.
View = namedtuple("View", "name title has_tab has_pages", defaults=[True, False])

SETTINGS = "Settings"
FIRST_RUN = ["Welcome to Vantle", "Private by default", "What Linux allows", "Try it now", "You are set"]
TABS = ["General", "Tools", "Shortcuts", "Notifications", "Launcher", "Privacy"]


def first_run(stage):
    """The onboarding window step by step, to its end."""
    until("the welcome window is shown", lambda: stage.shape("Welcome"), 10)
    for number, text in enumerate(FIRST_RUN, 1):
        stage.wait_for("Welcome", text)
        yield View(f"onboarding-{number}", "Welcome")
        stage.control("Welcome", "Finish" if number == len(FIRST_RUN) else "Continue").act("Press")
    until("the welcome window is gone", lambda: not stage.shape("Welcome"))


def settings(stage):
    """Every tab, and every tool's page."""
    stage.open("settings", SETTINGS)
    for tab in TABS:
        choose(stage, "Settings tabs", tab)
        if tab != "Tools":
            yield View(f"settings-{tab.lower()}", SETTINGS, has_pages=tab == "Launcher")
            continue
        for tool in names_in(stage, "Tools"):
            choose(stage, "Tools", tool)
            yield View(f"settings-tools-{tool.lower().replace(' ', '-')}", SETTINGS)
    stage.close_window(SETTINGS)


def names_in(stage, name):
    return [row.name for row in stage.wait_for(SETTINGS, name, "list").children if row.role == "list item"]


def choose(stage, name, row):
    """Clicks a row of a list unless it is chosen already, and waits for the page with its name."""
    rows = stage.wait_for(SETTINGS, name, "list").children
    entry = next(entry for entry in rows if entry.name == row)
    if not entry.is_selected():
        stage.click(entry)
        until(f"{row} is chosen", entry.is_selected)
    until(f"the page {row} is shown", lambda: has_page(stage, row))


def has_page(stage, name):
    window = stage.readable(SETTINGS) or ()
    return any(control.name == name and control.role != "list item" for control in window)


def windows(stage):
    """Those that are one page."""
    titles = {"shortcuts": "Keyboard Shortcuts", "usage": "Usage", "whats-new": "What's New", "permissions": "Permissions"}
    for name, title in titles.items():
        stage.open(name, title)
        yield View(name, title)
        stage.close_window(title)


def panels(stage):
    for name, title in {"menu": "Vantle Menu", "launcher": "Vantle Launcher", "frequent-clis": "Frequent CLIs"}.items():
        stage.summon(name)
        until(f"“{title}” is shown", lambda: stage.shape(title))
        yield View(name, title, has_tab=False, has_pages=name == "launcher")
        stage.close_window(title)


ALL = [first_run, settings, windows, panels]
