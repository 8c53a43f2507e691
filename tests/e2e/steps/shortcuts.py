"""The keyboard-shortcuts window and the shortcuts page: lights, the hand-over to a tool, recording and resetting."""

import time
from contextlib import contextmanager

from driver import accessibility
from driver.display import run
from driver.waiting import expect, stays, until
from steps.settings import bindings, grabbed

KEYBOARD = "Keyboard Shortcuts"
CONTROL_ALT = "Ctrl+Alt"


def gives_a_shortcut_back(world):
    """On the shortcuts page a recorded shortcut works at once, and its row's Reset brings the first one back"""
    world.quiet()
    open_page(world)
    world.click_on("Shortcut of Frequent CLIs")
    world.see("Press shortcut…")
    world.desktop.press("Ctrl+Alt+m")
    until("the new binding is saved", lambda: bindings(world).get("frequent-clis", {}).get("keyCode") == 46)
    world.see("Reset shortcut of Frequent CLIs")
    world.picture("recorded")
    world.click_on("Reset shortcut of Frequent CLIs")
    until("the binding is forgotten", lambda: "frequent-clis" not in bindings(world))
    until("nothing is left to reset", lambda: not world.shows("Reset shortcut of"), interval=0.05)
    world.close_window("Settings")
    world.terminal.focus()
    world.summon_palette()
    world.close_palette()


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
    """Ctrl+Alt+Return over the window: it goes, and 0.12 s later the palette has the keyboard"""
    world.terminal.focus()
    world.terminal.forget()
    open_keyboard(world)
    world.desktop.press("Ctrl+Alt+Return")
    started = time.monotonic()
    until("the window goes", lambda: not world.titled(KEYBOARD), interval=0.002)
    gone = time.monotonic() - started
    until("the palette comes", world.palette, interval=0.002)
    came = time.monotonic() - started
    expect(f"the window goes first, after {gone:.3f} s, the palette later, after {came:.3f} s", came - gone > 0.08)
    expect(f"0.12 s, not {came:.3f}", came < 0.6)
    expect("the window is gone while the palette is up", not world.titled(KEYBOARD))
    world.desktop.type("hello")
    until("the palette has the keyboard", lambda: not world.shows("Ask a local model"), interval=0.05)
    world.picture("palette")
    world.desktop.press("Return")
    until("the command stands in the terminal", lambda: world.terminal.typed() == "echo 'Hello, terminal' # typed")


def starts_a_tool_by_its_key(world):
    """Arrows and Return on the keyboard start a tool; Space goes into its popover"""
    world.terminal.focus()
    open_keyboard(world)
    until("the keyboard is at the first key", lambda: focused(world, "T, Ctrl+Alt: Tools"))
    walk_to(world, "B, Ctrl+Alt: Feedback", "Down", "Left", "Left", "Down")
    world.see("Sends us a bug report, feedback or a question.")
    world.picture("popover")
    world.desktop.press("Space")
    until("the popover has the keyboard", lambda: focused(world, "Change Feedback…"))
    world.desktop.press("Escape")
    until("Escape leads back to the key", lambda: focused(world, "B, Ctrl+Alt: Feedback"))
    walk_to(world, "Return, Ctrl+Alt: Frequent CLIs", "Up", "Right", "Right", "Right", "Right", "Right")
    world.desktop.press("Return")
    until("the palette comes", world.palette)
    expect("the window is gone", not world.titled(KEYBOARD))
    world.close_palette()


def names_what_a_shortcut_collides_with(world):
    """A taken combination is named under its row and a free one taken by one click; a reset that collides is named on both rows; resetting all asks first"""
    with world.another_application() as application, grabbed(world.display.name, "u"):
        application.write_settings(hotkeys={"promptify": {"keyCode": 45, "carbonModifiers": 0x1800}})
        application.write_commands()
        application.start()
        application.wait_until_live()
        open_page(world)
        world.see("⌃⌥U is taken by another program, perhaps Openbox.")
        world.see("⌃⌥N is also the shortcut of Image to Prompt")
        world.see("⌃⌥N is also the shortcut of Boilerplates")
        world.picture("named")
        world.click_on("Use Ctrl+Alt+E for Image to URL")
        until("the free one is taken", lambda: bindings(world).get("uplink", {}).get("keyCode") == 14)
        until("the row is content", lambda: not world.shows("is taken by another program"), interval=0.05)
        world.click_on("Reset shortcut of Image to Prompt")
        until("the collision is over", lambda: not world.shows("is also the shortcut"), interval=0.05)
        expect("only the default is left", "promptify" not in bindings(world))
        press_control(world, "Reset all shortcuts")
        world.see("Reset every shortcut?")
        world.picture("asks")
        expect("nothing is reset yet", "uplink" in bindings(world))
        press_control(world, "Reset every shortcut now")
        until("all are defaults again", lambda: not bindings(world))
        world.picture("reset")
        world.click_on("Show Keyboard…")
        until("the keyboard is shown", lambda: world.titled(KEYBOARD))
        world.see("U, Ctrl+Alt: Image to URL")


def is_drawn_as_the_keyboard_is(world):
    """With another layout the key moves to where it is pressed"""
    with world.another_application() as application:
        application.write_settings(hotkeys={"feedback": {"keyCode": 6, "carbonModifiers": 0x1800}})
        application.start()
        application.wait_until_live()
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


def goes_dark_too(world):
    """Keyboard and page in the dark appearance"""
    with world.another_application() as application:
        application.write_settings(disabledTools=["boilerplates"])
        application.write_json("app-settings.json", {"appearance": "dark"})
        application.start()
        application.wait_until_live()
        world.terminal.focus()
        window = open_keyboard(world)
        until("the window is dark", lambda: world.desktop.brightness(window) < 90, interval=0.05)
        plain = at_rest(world, window)
        with held(world, CONTROL_ALT):
            until("the keys light up", lambda: at_rest(world, window) != plain)
            world.picture("held")
        walk_to(world, "N, Ctrl+Alt: Boilerplates", "Down", "Left", "Left", "Down", "Right")
        world.see("Shortcut off")
        world.picture("off")
        open_page(world)
        world.picture("page")


def open_keyboard(world):
    world.quiet()
    result = world.application.command("summon", "shortcuts")
    expect(f"summon succeeds: {result.stderr.strip()}", result.returncode == 0)
    window = until("the keyboard is shown", lambda: world.titled(KEYBOARD))
    until("it is the active window", lambda: world.desktop.active_window() == window.id)
    world.desktop.move_pointer(960, 1070)
    return world.titled(KEYBOARD)


def choose_next_window(world):
    """Alt is held: the window manager has the keyboard from here on."""
    before = len(list(world.desktop.override_windows()))
    world.desktop.press("Tab")
    until("the window manager offers its windows", lambda: len(list(world.desktop.override_windows())) > before)


def close_keyboard(world):
    world.desktop.press("Escape")
    until("Escape closes the window", lambda: not world.titled(KEYBOARD))


def open_page(world):
    world.desktop.press("Ctrl+Alt+h")
    until("the settings window is shown", lambda: world.titled("Settings"))
    world.see("Show Keyboard…")


def walk_to(world, name, *keys):
    for key in keys:
        world.desktop.press(key)
    until(f"the arrows lead to {name}", lambda: focused(world, name))


def focused(world, name):
    node = accessibility.find(world.application.pid, name)
    return node and node.get_state_set().contains(accessibility.Atspi.StateType.FOCUSED)


def press_control(world, name):
    """As a screen reader does, whether or not it is scrolled into view."""
    node = until(f"{name!r} is there", lambda: accessibility.find(world.application.pid, name), 5, 0.05)
    node.do_action(0)


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


STEPS = [
    gives_a_shortcut_back,
    lights_up_what_is_held,
    leaves_no_light_behind,
    makes_way_for_a_tool,
    starts_a_tool_by_its_key,
    names_what_a_shortcut_collides_with,
    is_drawn_as_the_keyboard_is,
    goes_dark_too,
]
