"""Buttons pressed as a screen reader presses them, and what has to come of it."""

from collections import namedtuple

from driver.waiting import StepFailed, expect, until

from .views import SETTINGS, choose, rows_of

# On which tab of the settings, which button, and the title of the window that it opens (toasts have none) or the control
# that it shows.
Press = namedtuple("Press", "tab button opens shows", defaults=["", ""])
TOAST = ""

PRESSES = [
    Press("General", "What's New", opens="What's New"),
    Press("General", "Show permissions", opens="Permissions"),
    Press("Shortcuts", "Show Keyboard", opens="Keyboard Shortcuts"),
    Press("Shortcuts", "Reset all shortcuts", shows="Keep all shortcuts"),
    Press("Notifications", "Show an Example", opens=TOAST),
    Press("Launcher", "Reset the arrangement", shows="Keep the arrangement"),
]


def faults(stage):
    found = []
    # There has to be something to reset.
    rebound = {"feedback": {"keyCode": 96, "carbonModifiers": 0}}
    stage.application.write_settings(pinnedTools=["feedback"], hotkeys=rebound)
    stage.start()
    stage.open("settings", SETTINGS)
    for press in PRESSES:
        try:
            perform(stage, press)
        except StepFailed as failure:
            found.append(f"{press.tab}, “{press.button}”: {failure}")
    return found


def perform(stage, press):
    choose(stage, press.tab, rows_of(stage, "Settings tabs")[press.tab])
    button = stage.wait_for(SETTINGS, press.button, "push button")
    before = {shape.id for shape in stage.shapes()}
    expect("it can be pressed", button.act("Press"))
    if press.shows:
        until(f"“{press.shows}” is shown", lambda: stage.control(SETTINGS, press.shows))
        return
    opened = until("a window opens", lambda: [shape for shape in stage.shapes() if shape.id not in before])
    expect(f"it is “{press.opens}”, not {opened}", any(press.opens == (shape.title or TOAST) for shape in opened))
    if press.opens:
        stage.close_window(press.opens)
