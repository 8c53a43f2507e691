"""What the controls change: every switch and list is used as a screen reader would, the files follow, a restart keeps it."""

from collections import namedtuple
from contextlib import suppress
from pathlib import Path

from driver.waiting import StepFailed, expect, until

from .views import SETTINGS, settings

SWITCHES = {"check box", "toggle button"}
LISTS = {"combo box"}
# A switch for each of fourteen tools, and some for the application.
LEAST = 20

Change = namedtuple("Change", "before after")


def faults(stage):
    """Changes all that can be, restarts, finds it as it was left, and changes it back."""
    stage.start()
    changed, found = use_all(stage)
    stage.application.stop()
    stage.start()
    again, found_again = use_all(stage)
    # Of two that switch each other on and off, not both can be used each time.
    for place in changed.keys() & again.keys():
        left, now = changed[place].after, again[place].before
        if left != now:
            found.append(f"{place}: it was left {left}, and is {now} after a restart")
    if len(changed) < LEAST:
        found.append(f"only {len(changed)} switches and lists were found")
    return found + found_again


def use_all(stage):
    """Uses each switch and list once. What it did, by place, and what did not work."""
    changes, found = {}, []
    for view in settings(stage):
        for place, control in usable(stage, view):
            before = state_of(control)
            try:
                use(stage, control)
            except StepFailed as failure:
                found.append(f"{place}: {failure}")
            changes[place] = Change(before, state_of(control))
    return changes, found


def usable(stage, view):
    """The switches and lists of a page, each with words for where it is; of equal rows those of the first."""
    seen = set()
    for control in stage.tree(SETTINGS):
        if control.role in SWITCHES | LISTS and control.can_be_used() and control.label not in seen:
            seen.add(control.label)
            yield f"{view.name}: {control.surroundings}: {control.label}", control


def state_of(control):
    return control.fresh_name() if control.role in LISTS else control.is_checked()


def use(stage, control):
    state, files = state_of(control), written(stage)
    if control.role in SWITCHES:
        expect("it can be pressed", control.act("Toggle", "Press"))
    else:
        choose_another(stage, control)
    until("its state changes", lambda: state_of(control) != state)
    until("it is saved", lambda: written(stage) != files)


def choose_another(stage, control):
    """Opens the list and takes the next entry, after the last one the first."""
    expect("it can be opened", control.act("ShowMenu", "Press"))
    rows = until("its list is open", lambda: opened(stage, control))
    stage.desktop.press("Home" if rows[-1].name == control.name else "Down")
    stage.desktop.press("Return")
    until("its list is closed", lambda: not opened(stage, control))


def opened(stage, control):
    """The entries of its list while that is open."""
    window = stage.tree(SETTINGS)
    lists = (inner for inner in window if inner.role == "list" and inner.parent.node == control.node)
    return [row for row in next(lists, ()) if row.role == "list item"]


def written(stage):
    """What the program keeps of its user's choices, by file."""
    home = Path(stage.application.home.name)
    files = {}
    for path in (path for folder in ("data", "config") for path in (home / folder).rglob("*")):
        # What is just being written has another name when we get there; folders are no files.
        with suppress(OSError):
            files[path] = path.read_bytes()
    return files
