"""A program that offers many kinds of data on the clipboard, and one that reads all that is offered."""

import random
import struct
import threading
import zlib

from Xlib import X, Xatom, display, error
from Xlib.protocol import event

# What no program counts as data.
ABOUT = {"TARGETS", "MULTIPLE", "TIMESTAMP", "SAVE_TARGETS", "DELETE", "INSERT_SELECTION", "INSERT_PROPERTY"}
PIECE = 60_000


def png(size):
    """A PNG of noise, so that it cannot be had by drawing it again."""
    noise = random.Random(size)
    rows = b"".join(b"\0" + noise.randbytes(size * 3) for _ in range(size))
    chunks = [(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 2, 0, 0, 0)), (b"IDAT", zlib.compress(rows)), (b"IEND", b"")]
    body = b"".join(struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data)) for kind, data in chunks)
    return b"\x89PNG\r\n\x1a\n" + body


def everything(pixels=40):
    """Target → (type, bits, bytes): what an office program, a browser and a file manager would offer together."""
    text = "Früher kopiert: “earlier” 🚀\n".encode()
    files = b"file:///tmp/a%20b.txt\r\nfile:///tmp/c.png\r\n"
    return {
        "text/html": ("text/html", 8, b"<meta charset='utf-8'><b>earlier</b>"),
        "UTF8_STRING": ("UTF8_STRING", 8, text),
        "TEXT": ("UTF8_STRING", 8, text),
        "STRING": ("STRING", 8, "Früher".encode("latin-1")),
        "image/png": ("image/png", 8, png(pixels)),
        "text/uri-list": ("text/uri-list", 8, files),
        "x-special/gnome-copied-files": ("x-special/gnome-copied-files", 8, b"copy\nfile:///tmp/c.png"),
        "application/x-zeros": ("application/octet-stream", 8, bytes(range(256)) * 3),
        "LENGTH": ("INTEGER", 32, struct.pack("=I", 77)),
    }


class Owner:
    """Owns the clipboard on a connection and a thread of its own until it is closed or another program takes it."""

    def __init__(self, flavours):
        self.flavours = flavours
        self.connection = display.Display()
        self.window = self.connection.screen().root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
        self.clipboard = self.atom("CLIPBOARD")
        self.pieces = {}
        self.window.set_selection_owner(self.clipboard, X.CurrentTime)
        self.connection.sync()
        self.thread = threading.Thread(target=self._serve, daemon=True)
        self.thread.start()

    def atom(self, name):
        return self.connection.intern_atom(name)

    def _serve(self):
        while True:
            try:
                happened = self.connection.next_event()
            except error.ConnectionClosedError:
                return  # the display has ended
            if happened.type == X.SelectionClear:
                break
            if happened.type == X.SelectionRequest:
                self._answer(happened)
            elif happened.type == X.PropertyNotify and happened.state == X.PropertyDelete:
                self._go_on(happened)
        self.connection.close()

    def _answer(self, request):
        name = self.connection.get_atom_name(request.target)
        granted = True
        if name == "TARGETS":
            known = [self.atom(each) for each in ["TARGETS", "TIMESTAMP", *self.flavours]]
            request.requestor.change_property(request.property, Xatom.ATOM, 32, known)
        elif name in self.flavours:
            self._hand_over(request, *self.flavours[name])
        else:
            granted = False
        answer = event.SelectionNotify(
            time=request.time,
            requestor=request.requestor,
            selection=request.selection,
            target=request.target,
            property=request.property if granted else X.NONE,
        )
        request.requestor.send_event(answer)
        self.connection.flush()

    def _hand_over(self, request, kind, bits, data):
        if len(data) <= PIECE:
            request.requestor.change_property(request.property, self.atom(kind), bits, data)
            return
        self.pieces[request.requestor.id, request.property] = (kind, bits, data)
        request.requestor.change_attributes(event_mask=X.PropertyChangeMask)
        request.requestor.change_property(request.property, self.atom("INCR"), 32, struct.pack("=I", len(data)))

    def _go_on(self, change):
        place = (change.window.id, change.atom)
        if place not in self.pieces:
            return
        kind, bits, data = self.pieces[place]
        change.window.change_property(change.atom, self.atom(kind), bits, data[:PIECE])
        self.connection.flush()
        if data:
            self.pieces[place] = (kind, bits, data[PIECE:])
        else:
            del self.pieces[place]


class Reader:
    """Asks whoever owns the clipboard for all that it offers."""

    def __init__(self):
        self.connection = display.Display()
        self.window = self.connection.screen().root.create_window(
            0, 0, 1, 1, 0, X.CopyFromParent, event_mask=X.PropertyChangeMask
        )
        self.clipboard = self.connection.intern_atom("CLIPBOARD")
        self.place = self.connection.intern_atom("TEST_PLACE")
        self.names = {}

    def everything(self):
        """The same shape as `everything()`; None where an owner that offers something does not hand it over."""
        targets = self._convert("TARGETS")
        if targets is None:
            return {}
        offered = struct.unpack(f"={len(targets[2]) // 4}I", targets[2])
        names = [self._name(atom) for atom in offered]
        return {name: self._convert(name) for name in names if name not in ABOUT}

    def _name(self, atom):
        if atom not in self.names:
            self.names[atom] = self.connection.get_atom_name(atom)
        return self.names[atom]

    def _convert(self, target):
        self.window.delete_property(self.place)
        atom = self.connection.intern_atom(target)
        self.window.convert_selection(self.clipboard, atom, self.place, X.CurrentTime)
        answer = self._await(lambda each: each.type == X.SelectionNotify)
        if answer.property == X.NONE:
            return None
        kind, bits, data = self._take()
        if kind != "INCR":
            return kind, bits, data
        whole = b""
        while True:
            self._await(lambda each: each.type == X.PropertyNotify and each.state == X.PropertyNewValue)
            kind, bits, data = self._take()
            if not data:
                return kind, bits, whole
            whole += data

    def _take(self):
        value = self.window.get_property(self.place, X.AnyPropertyType, 0, 1 << 26, delete=True)
        data = value.value
        if value.format != 8:
            data = data.tobytes() if hasattr(data, "tobytes") else bytes(data)
        return self._name(value.property_type), value.format, bytes(data)

    def _await(self, wanted):
        while True:
            happened = self.connection.next_event()
            if wanted(happened):
                return happened


class Manager:
    """A clipboard manager: keeps what a program that ends asks it to save, in `saved`."""

    def __init__(self):
        self.saved = None
        self.connection = display.Display()
        self.window = self.connection.screen().root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
        self.window.set_selection_owner(self.connection.intern_atom("CLIPBOARD_MANAGER"), X.CurrentTime)
        self.connection.sync()
        threading.Thread(target=self._serve, daemon=True).start()

    def _serve(self):
        request = self.connection.next_event()
        while request.type != X.SelectionRequest:
            request = self.connection.next_event()
        self.saved = Reader().everything()
        answer = event.SelectionNotify(
            time=request.time,
            requestor=request.requestor,
            selection=request.selection,
            target=request.target,
            property=request.property,
        )
        request.requestor.send_event(answer)
        self.connection.close()
