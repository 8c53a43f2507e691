"""The service section of the settings: hosts of one's own, the credential in a real keychain, the built-in service."""

import os
import subprocess
import tempfile
from contextlib import contextmanager
from pathlib import Path

from driver import accessibility
from driver.display import run
from driver.keyring import keyring
from driver.waiting import expect, until

CREDENTIAL = "a-credential-of-the-tour"


def tests_the_built_in_service(world):
    """Settings → General: Test starts the built-in service, which answers, and which ends with the program"""
    with world.another_application() as application:
        application.begin()
        open_general(world)
        world.see("Starts on this computer when a tool needs it")
        press(world, "Service: Test")
        world.see("✓ The built-in service answers.")
        world.picture("answers")
        service = until("the service runs", lambda: child_of(application.pid))
        application.stop()
        until("it ends with the program", lambda: not Path(f"/proc/{service}").exists())


def uses_hosts_of_ones_own(world):
    """Own hosts typed into the window are checked, saved and tested, with the credential in the keychain"""
    with world.another_application() as application, keyring(application), own_service(world) as (port, stop):
        application.begin()
        open_general(world)
        choose_own_hosts(world)
        enter(world, "API URL", "http://far.example")
        world.see("It has to begin with https://")
        world.picture("wrong")
        enter(world, "API URL", f"http://127.0.0.1:{port}")
        saved = {"api": f"http://127.0.0.1:{port}", "useOwnHosts": True}
        until("the host is saved", lambda: application.read_json("services.json") == saved)
        press(world, "Service: Test")
        world.see("Enter your credential first.")
        enter(world, "Your credential", CREDENTIAL)
        world.see("In the keychain")
        press(world, "Service: Test")
        world.see("✓ The service answers. Your plan: self-hosted.")
        world.picture("answers")
        kept = [path for path in application.folder.rglob("*") if path.is_file() and CREDENTIAL in path.read_text()]
        expect(f"the credential is in no file: {kept}", not kept and CREDENTIAL not in application.log())
        stop()
        press(world, "Service: Test")
        world.see("The service cannot be reached: Connection refused")
        world.picture("refused")


def open_general(world):
    world.quiet()
    world.desktop.press("Ctrl+Alt+comma")
    until("the settings window is shown", lambda: world.titled("Settings"))
    until("it is the active window", lambda: world.desktop.active_window() == world.titled("Settings").id)


def choose_own_hosts(world):
    # Qt names such a box by what is chosen in it, and does not say when its list has the keyboard.
    node = until("the choice is there", lambda: control(world, "Built-in"), 5, 0.05)
    world.desktop.click(*accessibility.centre(node))
    until("its list is open", lambda: "Own hosts" in [n.get_name() for n in accessibility.nodes(world.application.pid)])
    world.desktop.press("Down")
    world.desktop.press("Return")
    until("own hosts are chosen", lambda: control(world, "Own hosts"), 5, 0.05)


def control(world, name):
    """What can take the keyboard and has that name; its row's label has the same one."""
    for node in accessibility.nodes(world.application.pid):
        states = node.get_state_set()
        if (node.get_name() or "").startswith(name) and states.contains(accessibility.Atspi.StateType.FOCUSABLE):
            return node
    return None


def focus(world, name):
    node = until(f"{name!r} is there", lambda: control(world, name), 5, 0.05)
    node.get_component_iface().grab_focus()
    is_focused = lambda: node.get_state_set().contains(accessibility.Atspi.StateType.FOCUSED)  # noqa: E731
    until(f"{name!r} has the keyboard", is_focused, 5, 0.05)


def press(world, name):
    focus(world, name)
    world.desktop.press("space")


def enter(world, name, text):
    focus(world, name)
    world.desktop.press("Ctrl+a")
    run("xdotool", "type", "--delay", "0", text)
    world.desktop.press("Return")


def child_of(pid):
    children = Path(f"/proc/{pid}/task/{pid}/children").read_text().split()
    return next((child for child in children if "vantle-service" in Path(f"/proc/{child}/comm").read_text()), None)


@contextmanager
def own_service(world):
    """A service that somebody runs by himself, where the program can reach it."""
    with tempfile.TemporaryDirectory(prefix="vantle-service-") as folder:
        credential = Path(folder) / "credential"
        credential.write_text(CREDENTIAL)
        program = str(Path(world.application.binary).with_name("vantle-service"))
        command = [program, "serve", "--listen", "127.0.0.1:0", "--data", folder, "--credential-file", str(credential)]
        process = subprocess.Popen(
            world.network.command(command) if world.network else command,
            env=os.environ,
            stderr=subprocess.PIPE,
            stdin=subprocess.DEVNULL,
            text=True,
        )
        port = int(process.stderr.readline().rsplit(":", 1)[1])

        def stop():
            if process.poll() is None:
                process.terminate()
                process.wait(5)

        try:
            yield port, stop
        finally:
            stop()
            process.stderr.close()


STEPS = [tests_the_built_in_service, uses_hosts_of_ones_own]
