"""Reads what the program's windows say, through the accessibility tree that a screen reader uses."""

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402


def texts(pid):
    """Every name, description and text that the process shows now."""
    return [text for node in nodes(pid) for text in _texts_of(node)]


def shows(pid, wanted):
    return any(wanted in text for text in texts(pid))


def find(pid, beginning):
    """The first showing object whose name begins so; None without one."""
    for node in nodes(pid):
        try:
            if (node.get_name() or "").startswith(beginning):
                return node
        except GLib.Error:
            continue  # gone while we looked
    return None


def has_keyboard(pid, title):
    """Whether the keys go to the process's window of that title: panels take them without becoming the active window."""
    application = application_of(pid)
    return any(_is_active(window, title) for window in (children(application) if application else ()))


def _is_active(window, title):
    try:
        return window.get_name() == title and window.get_state_set().contains(Atspi.StateType.ACTIVE)
    except GLib.Error:
        return False


def nodes(pid):
    """All showing objects of the process."""
    application = application_of(pid)
    for window in children(application) if application else ():
        yield from _showing(window)


def application_of(pid):
    """The process as the accessibility bus knows it; None when it does not."""
    desktop = Atspi.get_desktop(0)
    desktop.set_cache_mask(Atspi.Cache.NONE)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application and _pid(application) == pid:
            # Without an event loop here nobody would tell the cache what has changed.
            application.set_cache_mask(Atspi.Cache.NONE)
            return application
    return None


def _showing(node):
    try:
        if not node.get_state_set().contains(Atspi.StateType.SHOWING):
            return
    except GLib.Error:
        return
    yield node
    for child in children(node):
        yield from _showing(child)


def children(node):
    """What is directly in it, showing or not."""
    try:
        count = node.get_child_count()
    except GLib.Error:
        return
    for index in range(min(count, 200)):
        try:
            child = node.get_child_at_index(index)
        except GLib.Error:
            continue
        if child:
            yield child


def _pid(node):
    try:
        return node.get_process_id()
    except GLib.Error:
        return 0


def _texts_of(node):
    try:
        yield node.get_name() or ""
        yield node.get_description() or ""
        text = node.get_text_iface()
        if text:
            yield Atspi.Text.get_text(text, 0, Atspi.Text.get_character_count(text))
    except GLib.Error:
        return


def is_checked(node):
    return node.get_state_set().contains(Atspi.StateType.CHECKED)


def centre(node):
    """The middle of it in root coordinates."""
    box = node.get_component_iface().get_extents(Atspi.CoordType.SCREEN)
    return box.x + box.width // 2, box.y + box.height // 2
