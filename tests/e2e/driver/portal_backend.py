"""What stands behind the desktop's portal on a desktop that lends its keyboard and hands out shortcuts.

The portal itself is the real one. Keys that it passes on are pressed on a keyboard that is plugged into the compositor.
"""

import os
import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from .virtual_keyboard import CODES, MASKS  # noqa: E402

NAME = "org.freedesktop.impl.portal.desktop.vantletest"
PATH = "/org/freedesktop/portal/desktop"
PREFIX = "org.freedesktop.impl.portal."

OPENING = '<arg type="o" direction="in"/><arg type="o" direction="in"/><arg type="s" direction="in"/>'
OPTIONS = '<arg type="a{sv}" direction="in"/>'
ANSWER = '<arg type="u" direction="out"/><arg type="a{sv}" direction="out"/>'
KEY = f'<arg type="o" direction="in"/>{OPTIONS}<arg type="i" direction="in"/><arg type="u" direction="in"/>'
INTERFACES = f"""<node>
<interface name="{PREFIX}RemoteDesktop">
  <method name="CreateSession">{OPENING}{OPTIONS}{ANSWER}</method>
  <method name="SelectDevices">{OPENING}{OPTIONS}{ANSWER}</method>
  <method name="Start">{OPENING}<arg type="s" direction="in"/>{OPTIONS}{ANSWER}</method>
  <method name="NotifyKeyboardKeycode">{KEY}</method>
  <method name="NotifyKeyboardKeysym">{KEY}</method>
  <property name="AvailableDeviceTypes" type="u" access="read"/>
  <property name="version" type="u" access="read"/>
</interface>
<interface name="{PREFIX}GlobalShortcuts">
  <method name="CreateSession">{OPENING}{OPTIONS}{ANSWER}</method>
  <method name="BindShortcuts">
    <arg type="o" direction="in"/><arg type="o" direction="in"/><arg type="a(sa{{sv}})" direction="in"/>
    <arg type="s" direction="in"/>{OPTIONS}{ANSWER}
  </method>
  <method name="ListShortcuts"><arg type="o" direction="in"/><arg type="o" direction="in"/>{ANSWER}</method>
  <signal name="Activated"><arg type="o"/><arg type="s"/><arg type="t"/><arg type="a{{sv}}"/></signal>
  <signal name="Deactivated"><arg type="o"/><arg type="s"/><arg type="t"/><arg type="a{{sv}}"/></signal>
  <signal name="ShortcutsChanged"><arg type="o"/><arg type="a(sa{{sv}})"/></signal>
  <property name="version" type="u" access="read"/>
</interface>
<interface name="{PREFIX}Session">
  <method name="Close"/><signal name="Closed"/><property name="version" type="u" access="read"/>
</interface>
</node>"""

SPECIAL = {0xFF0D: "Return", 0xFFE3: "Ctrl", 0xFFE9: "Alt", 0xFFE1: "Shift", 0x20: " "}
SHIFTED = dict(zip('~!@#$%^&*()_+{}|:"<>?', "`1234567890-=[]\\;',./"))


class PortalBackend:
    """Answers on a thread of its own; what the test reads is written there."""

    def __init__(self, keyboard):
        self.keyboard = keyboard
        self.held = 0
        # The shortcuts by their ids, as they were asked for last, and how often.
        self.shortcuts = {}
        self.bindings = 0
        # Questions to the user, and what he says; None: nothing yet.
        self.questions = []
        self.says = 0
        self.waiting = None
        # Keys that are taken before the session is closed; None for all.
        self.keys_left = None
        self.sessions = {}
        context = GLib.MainContext()
        self.loop = GLib.MainLoop(context)
        ready = threading.Event()
        threading.Thread(target=self._serve, args=(context, ready), daemon=True).start()
        if not ready.wait(10):
            raise RuntimeError("the portal's backend has not started")

    def _serve(self, context, ready):
        context.push_thread_default()
        address = os.environ["DBUS_SESSION_BUS_ADDRESS"]
        flags = Gio.DBusConnectionFlags
        self.bus = Gio.DBusConnection.new_for_address_sync(
            address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None
        )
        self.interfaces = {entry.name: entry for entry in Gio.DBusNodeInfo.new_for_xml(INTERFACES).interfaces}
        for name in ("RemoteDesktop", "GlobalShortcuts"):
            self._serve_at(PATH, name)
        Gio.bus_own_name_on_connection(self.bus, NAME, Gio.BusNameOwnerFlags.NONE, None, None)
        source = GLib.timeout_source_new(50)
        source.set_callback(lambda *_: ready.set() or GLib.SOURCE_REMOVE)
        source.attach(context)
        self.loop.run()

    def _serve_at(self, path, name):
        return self.bus.register_object(path, self.interfaces[PREFIX + name], self._called, self._read, None)

    def _read(self, _bus, _sender, _path, _interface, name):
        return GLib.Variant("u", 1)

    def _called(self, _bus, _sender, path, interface, method, arguments, call):
        kind = interface.removeprefix(PREFIX)
        values = arguments.unpack()
        if method.startswith("Notify"):
            self._take_key(values, method.endswith("Keysym"))
            return call.return_value(None)
        if method == "Close":
            self._forget(path)
            return call.return_value(None)
        if method == "CreateSession":
            self.sessions[values[1]] = (kind, self._serve_at(values[1], "Session"))
            return call.return_value(answer(0, {}))
        if method == "BindShortcuts":
            return call.return_value(self._bind(values[2]))
        if method == "Start":
            return self._ask(values, call)
        if method == "SelectDevices":
            self.devices = values[3]
        return call.return_value(answer(0, {}))

    def _bind(self, wishes):
        self.bindings += 1
        self.shortcuts = dict(wishes)
        given = [(name, {"trigger_description": GLib.Variant("s", f"Super+{name}")}) for name in self.shortcuts]
        return answer(0, {"shortcuts": GLib.Variant("a(sa{sv})", given)})

    def _ask(self, values, call):
        self.questions.append(values[1])
        self.waiting = call
        if self.says is not None:
            self._answer()

    def _answer(self):
        call, self.waiting = self.waiting, None
        call.return_value(answer(self.says, {"devices": GLib.Variant("u", 1)}))

    def _take_key(self, values, is_keysym):
        session, _, code, pressed = values
        if self.keys_left is not None:
            self.keys_left -= 1
            if self.keys_left < 0:
                return self._close(session)
        name = SPECIAL.get(code) or chr(code) if is_keysym else None
        shifted = name not in CODES and is_keysym
        plain = SHIFTED.get(name, name.lower()) if shifted else name
        if shifted and pressed:
            self._key("Shift", True)
        self._key(plain if is_keysym else code, bool(pressed))
        if shifted and not pressed:
            self._key("Shift", False)

    def _key(self, name, down):
        mask = MASKS.get(name, 0)
        self.held = self.held | mask if down else self.held & ~mask
        self.keyboard.key(CODES.get(name, name), down, self.held)

    def _close(self, session):
        if session in self.sessions:
            self.bus.emit_signal(None, session, PREFIX + "Session", "Closed", None)
            self._forget(session)

    def _forget(self, session):
        if found := self.sessions.pop(session, None):
            self.bus.unregister_object(found[1])

    def _later(self, work):
        def once(*_):
            work()
            return GLib.SOURCE_REMOVE

        source = GLib.idle_source_new()
        source.set_callback(once)
        source.attach(self.loop.get_context())

    def is_owned(self, name):
        words = ("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "NameHasOwner", GLib.Variant("(s)", (name,)))
        return self.bus.call_sync(*words, None, Gio.DBusCallFlags.NONE, 5000, None).unpack()[0]

    def of(self, kind):
        return [path for path, (own, _) in list(self.sessions.items()) if own == kind]

    def press(self, shortcut):
        """The user presses what was given for it."""
        arguments = GLib.Variant("(osta{sv})", (self.of("GlobalShortcuts")[-1], shortcut, 1, {}))
        self._later(lambda: self.bus.emit_signal(None, PATH, PREFIX + "GlobalShortcuts", "Activated", arguments))

    def answer(self, says):
        """What the user says to the question that he was asked: 0 for yes, 1 for no."""
        self.says = says
        self._later(self._answer)

    def close(self, kind):
        """The desktop ends the sessions of a kind."""
        for session in self.of(kind):
            self._later(lambda path=session: self._close(path))


def answer(code, results):
    return GLib.Variant("(ua{sv})", (code, results))
