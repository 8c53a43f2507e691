"""A keyboard plugged into a compositor that knows virtual ones: real key codes, so that bindings by position match too.

Speaks the wire protocol by itself: two requests of the registry and five of the keyboard are all there is.
"""

import ctypes
import os
import socket
import struct
import time

DISPLAY, REGISTRY, CALLBACK, SEAT, MANAGER, KEYBOARD = 1, 2, 3, 4, 5, 6
FIRST_FREE = 7

# evdev codes of a US keyboard.
ROWS = {2: "1234567890-=", 16: "qwertyuiop[]", 30: "asdfghjkl;'`", 43: "\\zxcvbnm,./"}
CODES = {character: first + index for first, row in ROWS.items() for index, character in enumerate(row)}
CODES |= {" ": 57, "Return": 28, "Escape": 1, "Tab": 15, "F5": 63, "Down": 108, "Ctrl": 29, "Alt": 56, "Shift": 42, "Super": 125}
# Bits of the modifiers in a keymap of the usual rules.
MASKS = {"Shift": 1, "Ctrl": 4, "Alt": 8, "Super": 64}


class VirtualKeyboard:
    def __init__(self, runtime_folder, display, pace=0.01):
        """`pace` is what a hand needs from one key to the next, in seconds."""
        self.pace = pace
        self.socket = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self.socket.settimeout(10)
        self.socket.connect(os.path.join(runtime_folder, display))
        self.start = time.monotonic()
        self.free = FIRST_FREE
        self._request(DISPLAY, 1, struct.pack("=I", REGISTRY))
        self._request(DISPLAY, 0, struct.pack("=I", CALLBACK))
        found = self._globals()
        self._bind(found, "wl_seat", SEAT)
        self._bind(found, "zwp_virtual_keyboard_manager_v1", MANAGER)
        self._request(MANAGER, 0, struct.pack("=II", SEAT, KEYBOARD))
        self._send_keymap()
        self._settle()

    def close(self):
        self.socket.close()

    def press(self, combination):
        """Ctrl+Alt+u, say: all down in that order and up again, at the pace of a hand."""
        names = combination.split("+")
        held = 0
        for name in names:
            held |= MASKS.get(name, 0)
            self.key(CODES[name], True, held)
        for name in reversed(names):
            held &= ~MASKS.get(name, 0)
            self.key(CODES[name], False, held)
        self._settle()

    def type(self, text):
        """Lower-case letters, digits and what stands on a key by itself."""
        for character in text:
            self.press(character)

    def key(self, code, down, held):
        """One key goes down or up; `held` are the modifiers that are down then."""
        self._request(KEYBOARD, 1, struct.pack("=III", int((time.monotonic() - self.start) * 1000), code, down))
        if code in [CODES[name] for name in MASKS]:
            self._request(KEYBOARD, 2, struct.pack("=IIII", held, 0, 0, 0))
        time.sleep(self.pace)

    def _send_keymap(self):
        text = keymap() + b"\0"
        file = os.memfd_create("keymap")
        os.write(file, text)
        message = struct.pack("=II", 1, len(text))
        self._request(KEYBOARD, 0, message, [file])
        os.close(file)

    def _bind(self, found, interface, number):
        name, version = found[interface]
        text = interface.encode() + b"\0"
        padded = text + b"\0" * (-len(text) % 4)
        body = struct.pack("=II", name, len(text)) + padded + struct.pack("=II", min(version, 1), number)
        self._request(REGISTRY, 0, body)

    def _settle(self):
        """Until the compositor has seen all requests."""
        done, self.free = self.free, self.free + 1
        self._request(DISPLAY, 0, struct.pack("=I", done))
        for sender, _, _ in self._events():
            if sender == done:
                return

    def _globals(self):
        found = {}
        for sender, kind, body in self._events():
            if sender == CALLBACK:
                return found
            if sender == REGISTRY and kind == 0:
                name, length = struct.unpack_from("=II", body)
                interface = body[8 : 8 + length - 1].decode()
                found[interface] = (name, struct.unpack_from("=I", body, 8 + (length + 3) // 4 * 4)[0])
        return found

    def _events(self):
        while True:
            sender, head = struct.unpack("=II", self._read(8))
            body = self._read((head >> 16) - 8)
            if sender == DISPLAY and head & 0xFFFF == 0:
                raise RuntimeError(f"the compositor refuses: {body}")
            yield sender, head & 0xFFFF, body

    def _read(self, length):
        data = b""
        while len(data) < length:
            piece = self.socket.recv(length - len(data))
            if not piece:
                raise RuntimeError("the compositor has hung up")
            data += piece
        return data

    def _request(self, target, number, body, files=()):
        message = struct.pack("=II", target, (8 + len(body)) << 16 | number) + body
        if files:
            socket.send_fds(self.socket, [message], list(files))
        else:
            self.socket.sendall(message)


def keymap():
    """The text of the US layout's keymap."""
    xkb = ctypes.CDLL("libxkbcommon.so.0")
    for function in ("xkb_context_new", "xkb_keymap_new_from_names", "xkb_keymap_get_as_string"):
        getattr(xkb, function).restype = ctypes.c_void_p
    names = (ctypes.c_char_p * 5)(b"evdev", b"pc105", b"us", None, None)
    context = ctypes.c_void_p(xkb.xkb_context_new(0))
    compiled = ctypes.c_void_p(xkb.xkb_keymap_new_from_names(context, names, 0))
    return ctypes.string_at(ctypes.c_void_p(xkb.xkb_keymap_get_as_string(compiled, 1)))
