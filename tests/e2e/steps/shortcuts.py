"""The keyboard-shortcuts window and the shortcuts page: lights, the hand-over to a tool, recording and resetting."""

from contextlib import contextmanager

from driver import accessibility
from driver.display import run
from driver.waiting import expect, stays, until
from steps.settings import grabbed

KEYBOARD = "Keyboard Shortcuts"
CONTROL_ALT = "Ctrl+Alt"


def lights_up_what_is_held(world):
    """vantle summon shortcuts draws the keyboard; holding Ctrl+Alt lights the keys that complete a combination"""
    window = open_keyboard(world)
    world.see("K, Ctrl+Alt: Ask AI")
    world.picture("rest")
    marked, plain = edge_of(world, "K, Ctrl+Alt: Ask AI"), at_rest(world, window)
    with held(world, CONTROL_ALT):
        until("the key of a tool lights up", lambda: edge_of(world, "K, Ctrl+Alt: Ask AI") != marked)
        world.picture("held")
        stays("the light does not flicker", lambda: edge_of(world, "K, Ctrl+Alt: Ask AI") != marked, 0.5)
        with held(world, "Shift"):
            until("nothing has one modifier more", lambda: edge_of(world, "K, Ctrl+Alt: Ask AI") != marked)
    until("all is as before", lambda: at_rest(world, window) == plain)
    close_keyboard(world)


def leaves_no_light_behind(world):
    """Keys that another program swallows, or that go up in another window, leave no light behind"""
    window = open_keyboard(world)
    plain = at_rest(world, window)
    with grabbed(world.display.name, "x"):
        with held(world, CONTROL_ALT):
            until("the keys light up", lambda: at_rest(world, window) != plain)
            with held(world, "x"):
                # Longer than it takes to notice that somebody else has the keyboard.
                stays("the window stays", lambda: world.titled(KEYBOARD), 0.3)
        until("the lights go out with the keys", lambda: at_rest(world, window) == plain)
    with held(world, "Alt"):
        until("the key that is held lights up", lambda: at_rest(world, window) != plain)
        choose_next_window(world)
    until("Alt+Tab leads away", lambda: world.desktop.active_window() == world.terminal.window)
    with held(world, "Alt"):
        choose_next_window(world)
    until("and back", lambda: world.desktop.active_window() == window.id)
    until("nothing is lit", lambda: at_rest(world, window) == plain)
    close_keyboard(world)


def makes_way_for_a_tool(world):
    """Ctrl+Alt+Return over the window: it goes, and then the palette has the keyboard"""
    world.terminal.focus()
    world.terminal.forget()
    open_keyboard(world)
    world.desktop.press("Ctrl+Alt+Return")
    world.keyed("Frequent CLIs")
    expect("the window is gone while the palette is up", not world.titled(KEYBOARD))
    world.desktop.type("hello")
    until("the palette has the keyboard", lambda: not world.shows("Ask a local model"), interval=0.05)
    world.picture("palette")
    world.desktop.press("Return")
    until("the command stands in the terminal", lambda: world.terminal.typed() == "echo 'Hello, terminal' # typed")


def is_drawn_as_the_keyboard_is(world):
    """With another layout the key moves to where it is pressed"""
    with world.another_application() as application:
        application.begin(hotkeys={"feedback": {"keyCode": 6, "carbonModifiers": 0x1800}})
        open_keyboard(world)
        below = middle_of(world, "Z, Ctrl+Alt: Feedback")
        try:
            run("setxkbmap", "de")
            until("Z is drawn above A", lambda: middle_of(world, "Z, Ctrl+Alt: Feedback") < below, interval=0.05)
            world.picture("german")
        finally:
            run("setxkbmap", "us")
        until("Z is back", lambda: middle_of(world, "Z, Ctrl+Alt: Feedback") == below, interval=0.05)


def middle_of(world, name):
    """How far down it is drawn."""
    node = until(f"{name!r} is drawn", lambda: accessibility.find(world.application.pid, name))
    return accessibility.centre(node)[1]


def open_keyboard(world):
    world.quiet()
    result = world.application.command("summon", "shortcuts")
    expect(f"summon succeeds: {result.stderr.strip()}", result.returncode == 0)
    window = until("the keyboard is shown", lambda: world.titled(KEYBOARD))
    until("it is the active window", lambda: world.desktop.active_window() == window.id)
    world.desktop.move_pointer(960, 1070)
    looks = []

    def is_drawn():
        looks.append(at_rest(world, window))
        return len(set(looks[-1])) > 20 and looks[-1:] == looks[-2:-1]

    until("it is drawn", is_drawn, interval=0.05)
    return world.titled(KEYBOARD)


def choose_next_window(world):
    """Alt is held: the window manager has the keyboard from here on."""
    before = len(list(world.desktop.override_windows()))
    world.desktop.press("Tab")
    until("the window manager offers its windows", lambda: len(list(world.desktop.override_windows())) > before)


def close_keyboard(world):
    world.desktop.press("Escape")
    until("Escape closes the window", lambda: not world.titled(KEYBOARD))


@contextmanager
def held(world, combination):
    world.desktop.hold(combination)
    try:
        yield
    finally:
        world.desktop.release(combination)


def edge_of(world, name):
    """A pixel just inside a key's edge."""
    node = until(f"{name!r} is drawn", lambda: accessibility.find(world.application.pid, name))
    box = node.get_component_iface().get_extents(accessibility.Atspi.CoordType.SCREEN)
    return world.desktop.pixels(box.x + box.width // 2, box.y + 6, 1, 1)


def at_rest(world, window):
    """The keyboard's picture."""
    return world.desktop.pixels(window.x, window.y + 48, window.width, 330)


STEPS = [lights_up_what_is_held, leaves_no_light_behind, makes_way_for_a_tool, is_drawn_as_the_keyboard_is]
