"""The settings window, the recorder, shortcuts that others own, the first commands and the dark appearance."""

from contextlib import contextmanager
from pathlib import Path

from driver import accessibility
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
    """Recording: Escape keeps the old one, another tool's is refused without starting it, a free one is taken"""
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


def start_recording(world):
    world.click_on("Shortcut of Frequent CLIs")
    world.see("Press shortcut…")


def bindings(world):
    return (world.application.read_json("settings.json") or {}).get("hotkeys", {})


def stays_quiet_about_a_taken_shortcut(world):
    """A shortcut that another program owns: no noise, the other shortcuts work, and vantle doctor names it"""
    with world.another_application() as application, grabbed(world.display.name, "u"):
        application.write_settings()
        application.start()
        application.wait_until_live()
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


def brings_two_commands_at_the_first_run(world):
    """The first run writes the two commands that everybody starts with"""
    with world.another_application() as application:
        application.start()
        until("the default commands are written", lambda: application.read_json("FrequentCLIs/commands.json"))
        titles = [command["title"] for command in application.read_json("FrequentCLIs/commands.json")]
        expect(f"they are the two: {titles}", titles == ["Claude — skip permissions", "Codex — YOLO"])


def goes_dark(world):
    """The same windows in the dark appearance"""
    with world.another_application() as application:
        application.write_settings()
        application.write_commands()
        application.write_json("app-settings.json", {"appearance": "dark"})
        application.start()
        application.wait_until_live()
        world.terminal.focus()
        palette = world.summon_palette()
        until("the card is dark", lambda: world.desktop.brightness(palette) < 90, interval=0.05)
        world.picture("palette")
        world.close_palette()
        world.desktop.press("Ctrl+Alt+Space")
        world.see("Image to Prompt")
        world.picture("launcher")
        world.desktop.press("Escape")
        world.quiet()
        world.desktop.press("Ctrl+Alt+comma")
        until("the settings window is shown", lambda: world.titled("Settings"))
        world.picture("settings")


def open_tab(world, number, text):
    """The settings window on one of its tabs, by the keyboard, once `text` is there."""
    world.desktop.press("Ctrl+Alt+comma")
    until("the settings window is active", lambda: is_active(world, "Settings"))
    world.desktop.press(f"Ctrl+{number}")
    world.see(text)


def is_active(world, title):
    window = world.titled(title)
    return window and world.desktop.active_window() == window.id


def place_of(world, tool):
    """The middle of a tool's tile on the launcher page."""
    node = until(f"{tool} is in the grid", lambda: accessibility.find(world.application.pid, tool), 5, 0.05)
    return accessibility.centre(node)


def order(world):
    return world.application.read_json("settings.json").get("toolOrder", [])


def arranges_the_grid(world):
    """The launcher page: a tile is dragged, carried by keys and pinned, and the launcher shows it so at once"""
    with world.another_application() as application:
        application.write_settings()
        application.start()
        application.wait_until_live()
        open_tab(world, 5, "Arrange your grid")
        first, fifth = place_of(world, "Frequent CLIs"), place_of(world, "File Drop")
        world.desktop.drag(first, fifth)
        until("it has File Drop's place", lambda: order(world)[3:5] == ["bulk-upload", "frequent-clis"])
        until("its tile lies there", lambda: place_of(world, "Frequent CLIs") == fifth, interval=0.05)
        world.picture("dragged")
        world.desktop.press("Ctrl+Up")
        until("it is carried a row up", lambda: order(world)[1] == "frequent-clis")
        world.desktop.press("3")
        until("a digit gives it that place", lambda: order(world)[2] == "frequent-clis")
        world.desktop.press("Ctrl+p")
        until("it is pinned", lambda: application.read_json("settings.json")["pinnedTools"] == ["frequent-clis"])
        until("its tile leads the grid", lambda: place_of(world, "Frequent CLIs") == first, interval=0.05)
        world.picture("pinned")
        world.desktop.press("Escape")
        world.quiet()
        world.desktop.press("Ctrl+Alt+Space")
        world.see("Pinned to the front of the grid")
        world.desktop.press("1")
        until("digit 1 starts the pinned tool", world.palette)
        world.close_palette()


def shows_an_example(world):
    """The notifications page: the example toast looks like one, and stays as long as was chosen"""
    open_tab(world, 4, "How long a toast stays")
    world.click_on("Show an Example")
    until("the toast is shown", world.toast)
    world.see("This is how a finished task looks")
    world.picture("toast")
    until("it goes by itself", lambda: not world.toast(), 10)
    world.close_window("Settings")


def keeps_what_was_changed(world):
    """Appearance, open at login and a tool's switch are changed by the keyboard alone, and stay over a restart"""
    with world.another_application() as application:
        application.write_settings()
        application.write_commands()
        application.start()
        application.wait_until_live()
        entry = Path(application.home.name) / "config" / "autostart" / "vantle.desktop"
        open_tab(world, 1, "Open at login")
        world.desktop.press("Tab")
        world.desktop.press("Down")
        until("the window is dark", lambda: world.desktop.brightness(world.titled("Settings")) < 90, interval=0.05)
        world.desktop.press("Tab")
        world.desktop.press("Space")
        until("the desktop starts it at login", lambda: entry.exists() and application.binary in entry.read_text())
        world.picture("general")
        world.desktop.press("Ctrl+2")
        world.desktop.press("Tab")
        world.desktop.type("file")
        world.see("Turns files and folders into one link.")
        world.picture("tool")
        world.desktop.press("Tab")
        world.desktop.press("Space")
        until("the tool is off", lambda: application.read_json("settings.json").get("disabledTools") == ["bulk-upload"])
        application.stop()

        application.start()
        application.wait_until_live()
        open_tab(world, 1, "Open at login")
        until("it is dark again", lambda: world.desktop.brightness(world.titled("Settings")) < 90, interval=0.05)
        until("the switch is on", lambda: is_checked(world, "Open at login"))
        world.desktop.press("Tab")
        world.desktop.press("Tab")
        world.desktop.press("Space")
        until("nothing starts it at login", lambda: not entry.exists())
        open_tab(world, 2, "File Drop")
        world.desktop.press("Tab")
        world.desktop.type("file")
        world.see("File Drop enabled")
        expect("its switch is off", not is_checked(world, "File Drop enabled"))


def is_checked(world, name):
    """Whether the switch of that name is on."""
    return any(
        node.get_name() == name and node.get_role_name() == "check box" and accessibility.is_checked(node)
        for node in accessibility.nodes(world.application.pid)
    )


STEPS = [
    opens_the_settings,
    arranges_the_grid,
    shows_an_example,
    keeps_what_was_changed,
    records_a_shortcut,
    stays_quiet_about_a_taken_shortcut,
    brings_two_commands_at_the_first_run,
    goes_dark,
]
