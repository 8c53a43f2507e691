"""The menu: at the icon in a real tray, and at the top right without one."""

import subprocess
from contextlib import contextmanager

from driver.waiting import expect, stays, until
from steps.palette import text_of

MENU_WIDTH = 416


@contextmanager
def tray(*options):
    """A panel with a tray at the top of the left screen, dark and 28 pixels high."""
    panel = subprocess.Popen(
        ["trayer", "--edge", "top", "--align", "left", "--margin", "1500", "--widthtype", "request", "--height", "28"]
        + ["--expand", "true", "--transparent", "true", "--alpha", "0", "--tint", "0x202020", *options],
        stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
    )
    try:
        yield
    finally:
        panel.terminate()
        panel.wait()


def icon(world):
    """The icon in the tray; None where it is not."""
    small = world.desktop.windows_of(world.application.pid, minimum=10, depth=5)
    return next((window for window in small if window.height <= 28 and window.y < 28), None)


def menu(world):
    return next((window for window in world.windows() if window.width == MENU_WIDTH), None)


def is_light_on_dark(world, window):
    pixels = world.desktop.pixels(window.x, window.y, window.width, window.height)
    colours = [byte for index, byte in enumerate(pixels) if index % 4 != 3]
    return max(colours) > 240 and sum(colours) / len(colours) < 100


def click(world, window):
    world.desktop.click(window.x + window.width // 2, window.y + window.height // 2)


def opens_at_the_tray_icon(world):
    """A click on the tray icon opens the menu under it; typing and Return start a tool for the terminal behind"""
    with tray():
        world.quiet()
        world.terminal.focus()
        world.terminal.forget()
        at = until("the icon is in the tray", lambda: icon(world), 10)
        until("it is drawn light on the dark tray", lambda: is_light_on_dark(world, at))
        click(world, at)
        shown = until("the menu is shown", lambda: menu(world))
        margin = 48
        below = shown.y + margin - (at.y + at.height)
        expect(f"it hangs right below the icon: {shown}, {at}", 0 <= below <= 12)
        expect(f"it is centred on the icon: {shown}, {at}", abs(middle(shown) - middle(at)) <= 1)
        world.see("Frequent CLIs")
        world.stays_terminal_active("under the menu")
        world.picture("open")
        world.desktop.type("freq")
        until("only one tool is left", lambda: not world.shows("Ask AI"), interval=0.05)
        world.picture("filtered")
        world.desktop.press("Return")
        world.keyed("Frequent CLIs")
        expect("the menu has gone", not menu(world))
        world.desktop.type("hello", pause=0.01)
        world.desktop.press("Return")
        until("the command is typed", lambda: world.terminal.typed() == text_of("Say hello"))
        world.expect_terminal_active("at the end")


def middle(window):
    return window.x + window.width // 2


def closes_by_the_icon(world):
    """A second click on the icon closes the menu and leaves it closed; so do Escape and a click elsewhere"""
    with tray():
        world.quiet()
        world.terminal.focus()
        at = until("the icon is in the tray", lambda: icon(world), 10)
        click(world, at)
        until("the menu is shown", lambda: menu(world))
        # Slower than a double click.
        stays("it stays", lambda: menu(world), 0.6)
        click(world, at)
        until("it is closed", lambda: not menu(world))
        stays("it stays closed", lambda: not menu(world), 0.5)
        click(world, at)
        until("a third click opens it", lambda: menu(world))
        world.desktop.press("Escape")
        until("Escape closes it", lambda: not menu(world))
        stays("nothing opens it again", lambda: not menu(world), 0.6)
        click(world, at)
        until("the menu is shown", lambda: menu(world))
        world.desktop.click(300, 700)
        until("a click elsewhere closes it", lambda: not menu(world))
        world.expect_terminal_active("at the end")


def opens_without_a_tray(world):
    """vantle summon menu opens it at the top right of the pointer's screen, and closes it again"""
    world.quiet()
    world.terminal.focus()
    world.desktop.move_pointer(960, 900)
    summon(world)
    shown = until("the menu is shown", lambda: menu(world))
    expect(f"it stands in the corner: {shown}", (shown.x + shown.width - 48, shown.y + 48) == (1914, 6))
    world.stays_terminal_active("under the menu")
    world.click_on("Settings…")
    until("the settings window is shown", lambda: world.titled("Settings"))
    expect("the menu has gone", not menu(world))
    world.close_window("Settings")
    summon(world)
    until("the menu is shown", lambda: menu(world))
    summon(world)
    until("it is closed", lambda: not menu(world))


def summon(world):
    result = world.application.command("summon", "menu")
    expect(f"summon succeeds: {result.stderr.strip()}", result.returncode == 0)


def is_dark_and_quits(world):
    """The menu in the dark appearance, with the marks of a machine without a network; its last entry ends the program"""
    if world.network:
        world.network.go_offline()
    try:
        with world.another_application() as application, tray():
            application.begin({"app-settings.json": {"appearance": "dark"}}, disabledTools=["vibe-history"])
            at = until("the icon is in the tray", lambda: icon(world), 10)
            click(world, at)
            shown = until("the menu is shown", lambda: menu(world))
            until("the card is dark", lambda: world.desktop.brightness(shown) < 90, interval=0.05)
            if world.network:
                until("a tool is marked", lambda: world.shows("Needs the internet — offline right now"), interval=0.05)
            world.picture("open")
            world.desktop.press("End")
            world.desktop.press("Return")
            until("the program has ended", lambda: not application.is_running())
    finally:
        if world.network:
            world.network.go_online()


STEPS = [opens_at_the_tray_icon, closes_by_the_icon, opens_without_a_tray, is_dark_and_quits]
