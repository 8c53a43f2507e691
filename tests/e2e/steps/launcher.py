"""The grid, what it starts, the offline toast and the second screen."""

import time

from driver.waiting import StepFailed, expect, until


class Skipped(Exception):
    """This machine cannot show the step."""


def starts_a_tool_from_the_launcher(world):
    """Ctrl+Alt+Space, typing and Return start Frequent CLIs; Escape there returns to the launcher, twice closes it"""
    world.terminal.focus()
    open_launcher(world)
    world.picture("grid")
    world.desktop.type("frequent")
    until("only one tool is left", lambda: not world.shows("Ask AI"), interval=0.05)
    world.picture("filtered")
    world.desktop.press("Return")
    world.keyed("Frequent CLIs")
    world.expect_terminal_active("under the palette")
    world.desktop.press("Escape")
    world.see("Frequent CLIs")
    world.keyed("Vantle Launcher")
    expect("the palette has gone", not world.palette())
    world.desktop.press("Escape")
    world.quiet()
    world.expect_terminal_active("at the end")


def refuses_network_tools_offline(world):
    """Without a route a network tool shows the offline toast for 4 s and records nothing; with one it works again"""
    if not world.network:
        raise Skipped(world.no_network)
    world.network.go_offline()
    try:
        shown_at, used = summon_until(world, "Image to URL needs the internet")
        world.see("You're offline — it re-enables the moment the connection returns.")
        world.picture("offline")
        until("the toast goes", lambda: not world.toast(), 8)
        lasted = time.monotonic() - shown_at
        expect(f"the toast stays for about 4 s, not {lasted:.1f}", 3.5 < lasted < 7.5)
        expect("no use is recorded", uses(world, "uplink") == used)
    finally:
        world.network.go_online()
    until("the tool works again", lambda: uses_after_summon(world) > used, 8, interval=0.2)
    world.see("No image on the clipboard")
    world.quiet()


def follows_the_pointer(world):
    """With the pointer on the second screen, palette and toast appear there"""
    world.terminal.focus()
    world.desktop.move_pointer(2500, 700)
    palette = world.summon_palette()
    world.picture("palette", screens="both")
    expect(f"the palette is centred on the second screen: {palette}", abs(middle(palette) - 2560) <= 1)
    expect(f"its middle stands at 62 % of the height: {palette}", abs(palette.y + palette.height / 2 - 410) <= 12)
    world.close_palette()
    world.desktop.press("Ctrl+Alt+U")
    toast = until("a toast is shown", world.toast)
    expect(f"the toast is centred on the second screen: {toast}", abs(middle(toast) - 2560) <= 1)
    world.picture("toast", screens="both")
    world.desktop.move_pointer(960, 900)
    world.quiet()


def middle(window):
    return window.x + window.width // 2


def open_launcher(world):
    world.quiet()
    world.desktop.press("Ctrl+Alt+Space")
    until("the launcher is shown", world.windows)
    world.see("Image to Prompt")


def uses(world, tool):
    return (world.application.read_json("settings.json") or {}).get("toolUsage", {}).get(tool, 0)


def summon_until(world, text):
    """Presses Ctrl+Alt+U; news of the route may be a moment behind. When it was shown, and the uses before it."""
    for _ in range(3):
        world.quiet()
        used = uses(world, "uplink")
        world.desktop.press("Ctrl+Alt+U")
        shown_at = time.monotonic()
        until("a toast is shown", world.toast)
        try:
            world.see(text, 2)
            return shown_at, used
        except StepFailed as failure:
            last = failure
    raise last


def uses_after_summon(world):
    world.desktop.press("Ctrl+Alt+U")
    return uses(world, "uplink")


STEPS = [starts_a_tool_from_the_launcher, refuses_network_tools_offline, follows_the_pointer]
