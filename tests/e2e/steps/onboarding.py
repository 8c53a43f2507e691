"""The first run, from the welcome to the first typed command."""

from driver.waiting import expect, stays, until

from .settings import grabbed

WELCOME = "Welcome"


def walks_through_the_first_run(world):
    """A newcomer gets to a typed command by Return and two shortcuts, and a second start shows nothing"""
    with world.another_application() as application:
        application.start()
        window = until("the welcome window is shown", lambda: world.titled(WELCOME), 10)
        expect(f"it is 560 by 640: {window}", (window.width, window.height) == (560, 640))
        until("it is the active window", lambda: world.desktop.active_window() == window.id)
        step(world, "Welcome to Vantle", "welcome")
        world.desktop.press("Return")
        step(world, "Private by default", "privacy")
        world.desktop.press("Return")
        step(world, "What Linux allows", "permissions")
        until("the consent is stored", lambda: stored(application).get("privacyAccepted"))
        world.desktop.press("Return")
        step(world, "Press Ctrl+Alt+Space", "try-it")
        tries_the_launcher(world)
        tries_a_command(world)
        world.picture("tried")
        world.desktop.press("Return")
        step(world, "You are set", "done")
        until("the first run is over", lambda: stored(application).get("onboardingCompleted"))
        world.desktop.press("Return")
        until("the window is gone", lambda: not world.titled(WELCOME))
        expect("nothing was consented to", not application.read_json("app-settings.json"))
        starts_quietly(world, application)


def tries_the_launcher(world):
    world.desktop.press("Ctrl+Alt+Space")
    world.see("Image to Prompt")
    world.see("That is the launcher")
    world.picture("launcher-noticed")
    world.desktop.press("Escape")
    until("the launcher has gone", lambda: not world.shows("Image to Prompt"))


def tries_a_command(world):
    world.summon_palette()
    world.see("Claude — skip permissions")
    world.desktop.press("Return")
    world.see("claude --dangerously-skip-permissions")
    world.see("That is Frequent CLIs")


def starts_quietly(world, application):
    application.restart()
    stays("a second start shows nothing", lambda: not world.windows(), 0.5)


def offers_what_is_free(world):
    """Taken shortcuts: one click binds a free one, and a button stands in for the launcher's"""
    with world.another_application() as application:
        application.write_json("settings.json", {"onboardingReachedPermissions": True})
        with grabbed(world.display.name, "u"), grabbed(world.display.name, "space"):
            application.start()
            world.see("belongs to another program", 10)
            world.picture("taken")
            world.click_on("Use Ctrl+Alt+E for Image to URL")
            until("the free one is bound", lambda: stored(application).get("hotkeys", {}).get("uplink"))
            world.see("Opens with ⌃⌥E now.")
            world.click_on("Continue")
            step(world, "The system does not give Ctrl+Alt+Space to Vantle", "no-launcher-shortcut")
            world.click_on("Open the Launcher")
            world.see("That is the launcher")
            world.desktop.press("Escape")
            world.desktop.press("Ctrl+Alt+e")
            until("the new shortcut starts its tool", world.toast)


def step(world, text, picture):
    world.see(text)
    wait_for_the_fade(world)
    world.picture(picture)


def wait_for_the_fade(world):
    """The step before has faded away once nothing on the window changes."""
    looks = []

    def is_still():
        looks.append(world.desktop.brightness(world.titled(WELCOME)))
        return len(looks) > 2 and looks[-1] == looks[-2] == looks[-3]

    until("the fade is over", is_still, 2, 0.03)


def stored(application):
    return application.read_json("settings.json") or {}


STEPS = [walks_through_the_first_run, offers_what_is_free]
