"""The settings window, the recorder, shortcuts that others own and the dark appearance."""

from contextlib import contextmanager

from driver.waiting import expect, stays, until
from Xlib import X, XK, display


def opens_the_settings(world):
    """Ctrl+Alt+, opens the settings window; Ctrl+Alt+H and Ctrl+Alt+T choose its tabs"""
    world.quiet()
    world.desktop.press("Ctrl+Alt+comma")
    until("the settings window is shown", lambda: world.titled("Settings"))
    until("it is the active window", lambda: world.desktop.active_window() == world.titled("Settings").id)
    world.picture("general")
    world.desktop.press("Ctrl+Alt+h")
    world.see("Suggest a Tool")
    world.picture("shortcuts")
    world.desktop.press("Ctrl+Alt+t")
    world.see("Types a saved command into the terminal you are in.")
    world.picture("tools")
    world.close_window("Settings")


def records_a_shortcut(world):
    """Recording: Escape keeps the old one, another tool's is refused without starting it, a free one is taken and given back"""
    world.desktop.press("Ctrl+Alt+t")
    until("the settings window is shown", lambda: world.titled("Settings"))
    start_recording(world)
    world.picture("recording")
    world.desktop.press("Escape")
    world.see("⌃⌥↩")
    expect("Escape keeps the binding", not bindings(world))

    start_recording(world)
    world.desktop.press("Ctrl+Alt+u")
    world.see("Already used by Image to URL")
    world.picture("conflict")
    stays("the tool is not started", lambda: not world.toast(), 0.3)
    world.desktop.press("Ctrl+Alt+j")
    until("the new binding is saved", lambda: bindings(world).get("frequent-clis", {}).get("keyCode") == 38)
    world.see("⌃⌥J")
    world.close_window("Settings")

    world.terminal.focus()
    world.desktop.press("Ctrl+Alt+j")
    until("the new shortcut opens the palette", world.palette)
    world.close_palette()
    world.desktop.press("Ctrl+Alt+Return")
    stays("the old one no longer does", lambda: not world.palette(), 0.3)

    world.desktop.press("Ctrl+Alt+t")
    until("the settings window is shown", lambda: world.titled("Settings"))
    start_recording(world)
    world.desktop.press("Ctrl+Alt+Return")
    world.see("⌃⌥↩")
    world.close_window("Settings")
    world.terminal.focus()
    world.summon_palette()
    world.close_palette()


def start_recording(world):
    world.click_on("Shortcut of Frequent CLIs")
    world.see("Press shortcut…")


def bindings(world):
    return (world.application.read_json("settings.json") or {}).get("hotkeys", {})


def stays_quiet_about_a_taken_shortcut(world):
    """A shortcut that another program owns: no noise, the other shortcuts work, and vantle doctor names it"""
    with world.another_application() as application, grabbed(world.display.name, "u"):
        application.begin()
        stays("no window and no toast", lambda: not world.windows(), 0.5)
        report = application.command("doctor").stdout
        lines = [line for line in report.splitlines() if "Image to URL" in line]
        expect(f"doctor names the tool and its shortcut:\n{report}", any("⌃⌥U" in line for line in lines))
        world.terminal.focus()
        world.summon_palette()
        world.close_palette()


@contextmanager
def grabbed(name, key):
    """Another program that owns Ctrl+Alt+key."""
    other = display.Display(name)
    code = other.keysym_to_keycode(XK.string_to_keysym(key))
    root = other.screen().root
    for locks in (0, X.LockMask, X.Mod2Mask, X.LockMask | X.Mod2Mask):
        root.grab_key(code, X.ControlMask | X.Mod1Mask | locks, False, X.GrabModeAsync, X.GrabModeAsync)
    other.sync()
    try:
        yield
    finally:
        other.close()


def goes_dark(world):
    """The appearance is chosen by keyboard: the window is dark at once, and so is all of the program after a restart"""
    with world.another_application() as application:
        application.write_commands()
        application.begin()
        world.desktop.press("Ctrl+Alt+comma")
        world.see("Open at login")
        until("it is the active window", lambda: world.desktop.active_window() == world.titled("Settings").id)
        world.desktop.press("Tab")
        world.desktop.press("Down")
        until("the window is dark", lambda: world.desktop.brightness(world.titled("Settings")) < 90, interval=0.05)
        application.restart()
        world.terminal.focus()
        palette = world.summon_palette()
        until("the card is dark", lambda: world.desktop.brightness(palette) < 90, interval=0.05)
        world.picture("palette")
        world.close_palette()


STEPS = [opens_the_settings, records_a_shortcut, stays_quiet_about_a_taken_shortcut, goes_dark]
