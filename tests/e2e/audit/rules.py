"""What a screen reader and an eye must find in every window; each rule yields readable faults."""

from collections import Counter

from .tree import FOCUSABLE, ITEMS, SELECTABLE

CONTROLS = {
    "push button", "toggle button", "check box", "radio button", "combo box", "spin button", "slider", "text",
    "password text", "entry", "link", "list", "list box", "table", "tree", "tree table", "page tab list", "document",
    "panel", "icon", *ITEMS,
}  # fmt: skip
BUTTONS = {"push button", "toggle button", "check box", "radio button"}
ACTIVE = {"Press", "Toggle", "ShowMenu", "Increase"}
# What is drawn between two neighbours may touch both.
SLACK = 1


def faults(window):
    return [*unnamed(window), *odd_roles(window), *twins(window), *outside(window), *overlapping(window)]


def unnamed(window):
    if not window.name:
        yield "the window has no name"
    for control in window:
        if control.role != "scroll bar" and not control.name and does_something(control):
            yield f"no name: {control}, in “{control.surroundings}”"


def does_something(control):
    return control.has(FOCUSABLE) or bool(ACTIVE & set(control.actions))


def odd_roles(window):
    if window.role not in ("window", "frame", "dialog"):
        yield f"a screen reader takes the window for a {window.role}"
    for control in window:
        if control.has(FOCUSABLE) and control is not window and control.role not in CONTROLS:
            yield f"the keyboard goes to a {control.role}: {control}"


def twins(window):
    """Two buttons that sound alike: nobody who listens knows which is which."""
    sounds = Counter(
        (control.role, control.name, control.description, control.surroundings)
        for control in window
        if control.role in BUTTONS and control.name
    )
    for (role, name, _, surroundings), count in sounds.items():
        if count > 1:
            yield f"{count} times {role} “{name}” in “{surroundings}”"


def outside(window):
    for control in window:
        if is_of_pages(control):
            continue
        place = control.box.cut(control.viewport)
        # What is scrolled away above or below is well there, but nothing may be cut off at the sides.
        sideways = control.box.x < control.viewport.x - SLACK or control.box.right > control.viewport.right + SLACK
        if control.viewport is not window.box and not sideways:
            continue
        if control.box.area and place != control.box and not control.box.within(control.viewport, SLACK):
            yield f"cut off: {control}, only {place.width}×{place.height} of it can be seen"


def is_of_pages(control):
    """Whether it lies in a strip of pages, of which one is seen: that of the launcher's grid."""
    while control.parent:
        is_strip = any(tile.has(SELECTABLE) for tile in control.children)
        if is_strip and control.box.width > control.parent.box.width:
            return True
        control = control.parent
    return False


def overlapping(window):
    leaves = [control for control in window if is_leaf(control) and control.shown.area]
    for number, control in enumerate(leaves):
        for other in leaves[number + 1 :]:
            common = control.shown.cut(other.shown)
            if min(common.width, common.height) > SLACK:
                yield f"{control} and {other} lie over each other"


def is_leaf(control):
    """What is read or used; a box around others, or an empty one, is neither."""
    return not control.children and (control.name or control.role in CONTROLS)
