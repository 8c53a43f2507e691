"""A keychain of one's own."""

import os
import subprocess
from contextlib import contextmanager

from .waiting import until


@contextmanager
def keyring(application):
    """An open keyring in the application's own home, in place of what the bus may have started."""
    daemon = subprocess.Popen(
        ["gnome-keyring-daemon", "--foreground", "--replace", "--unlock", "--components=secrets"],
        env=application.environment,
        stdin=subprocess.PIPE,
        stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
    )
    daemon.stdin.write(b"secret")
    daemon.stdin.close()
    question = ["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus", "/"]
    question += ["org.freedesktop.DBus.GetConnectionUnixProcessID", "string:org.freedesktop.secrets"]

    def is_ours():
        answer = subprocess.run(question, capture_output=True, text=True).stdout
        return answer.strip().endswith(f" {daemon.pid}")

    try:
        until("the keyring is open", is_ours, 10, 0.05)
        yield
    finally:
        daemon.terminate()
        daemon.wait(5)


def remember(account, secret):
    """Puts a credential of the program's into the open keyring."""
    from gi.repository import Gio, GLib

    bus = Gio.DBusConnection.new_for_address_sync(
        os.environ["DBUS_SESSION_BUS_ADDRESS"],
        Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION,
    )

    def call(path, interface, method, arguments):
        name, whole = "org.freedesktop.secrets", f"org.freedesktop.Secret.{interface}"
        return bus.call_sync(name, path, whole, method, arguments, None, Gio.DBusCallFlags.NONE, 5000, None)

    service = "/org/freedesktop/secrets"
    _, session = call(service, "Service", "OpenSession", GLib.Variant("(sv)", ("plain", GLib.Variant("s", ""))))
    attributes = {"user": account, "server": "Vantle", "type": "plaintext", "xdg:schema": "org.qt.keychain"}
    properties = {
        "org.freedesktop.Secret.Item.Label": GLib.Variant("s", account),
        "org.freedesktop.Secret.Item.Attributes": GLib.Variant("a{ss}", attributes),
    }
    value = (session, b"", secret.encode(), "text/plain")
    item = GLib.Variant("(a{sv}(oayays)b)", (properties, value, True))
    call(f"{service}/aliases/default", "Collection", "CreateItem", item)
