"""The news after an update, what is sent, the export of the data and its deletion."""

from contextlib import contextmanager
from pathlib import Path

from driver.waiting import expect, stays, until

WELCOME = "Welcome"
NEWS = "What's New"
SETTINGS = "Settings"


def tells_once_what_is_new(world):
    """After a version change a window says once what is new; later it opens from outside with every version"""
    with world.another_application() as application:
        application.write_settings()
        remember_version(application, "0.0.9")
        application.start()
        until("the news are shown", lambda: world.titled(NEWS), 10)
        world.see("Vantle 0.1.0 is installed")
        world.see("You had 0.0.9 before.")
        world.see("Updates come with your package manager.")
        world.picture("news")
        world.desktop.press("Escape")
        until("Escape closes them", lambda: not world.titled(NEWS))
        application.restart()
        stays("the second start says nothing", lambda: not world.windows(), 0.5)
        application.command("summon", "whats-new")
        world.see("What's new in Vantle")


def deletes_everything_and_starts_anew(world):
    """Delete All Data asks in place, and ends in the first run with nothing of the old data"""
    with privacy_page(world) as application:
        data = application.folder
        at_login = opened_at_login(application)
        commands = application.read_json("FrequentCLIs/commands.json")
        world.click_on("Delete All Data…")
        world.see("This cannot be undone.")
        world.picture("question")
        world.desktop.press("Escape")
        until("Escape takes the question back", lambda: not world.shows("This cannot be undone."))
        expect("the window is still there", world.titled(SETTINGS))
        world.click_on("Delete All Data…")
        world.click_on("Delete Everything")
        application.follow()
        until("the welcome window is shown", lambda: world.titled(WELCOME), 10)
        world.picture("welcome")
        until("the default commands are written", lambda: application.read_json("FrequentCLIs/commands.json"))
        expect("they are not the old ones", application.read_json("FrequentCLIs/commands.json") != commands)
        expect("the settings are gone", not (data / "settings.json").exists() and not (data / "services.json").exists())
        left = sorted(entry.name for entry in data.parent.iterdir())
        expect(f"nothing stands beside the new data: {left}", left == ["Vantle"])
        expect("it does not open at login any more", not list(at_login.iterdir()))


def opened_at_login(application):
    """The folder with the entry that lets the desktop start the program."""
    folder = Path(application.environment["XDG_CONFIG_HOME"]) / "autostart"
    folder.mkdir(mode=0o700)
    entry = f"[Desktop Entry]\nType=Application\nName=Vantle\nExec={application.binary}\n"
    (folder / "vantle.desktop").write_text(entry)
    return folder


def remember_version(application, version):
    """Lets `version` be the one that ran last."""
    defaults = Path(application.environment["XDG_CONFIG_HOME"]) / "Vantle" / "Vantle.ini"
    defaults.parent.mkdir(mode=0o700)
    defaults.write_text(f"[General]\nupdates.lastVersion={version}\n")


@contextmanager
def privacy_page(world):
    """A program of its own with the page in front."""
    with world.another_application() as application:
        application.write_commands()
        application.begin()
        world.desktop.press("Ctrl+Alt+comma")
        until("the settings window is shown", lambda: world.titled(SETTINGS))
        world.click_on("Privacy")
        world.see("Your data")
        yield application


STEPS = [tells_once_what_is_new, deletes_everything_and_starts_anew]
