"""What a user does and sees on an X display: keys and clicks through XTEST, windows, focus and pixels."""

import time
from collections import namedtuple
from contextlib import contextmanager

from Xlib import X, XK, display, error, protocol
from Xlib.ext import xtest

from .waiting import until

KEYSYMS = {
    "Ctrl": "Control_L",
    "Alt": "Alt_L",
    "Shift": "Shift_L",
    "Super": "Super_L",
    "Return": "Return",
    "Space": "space",
    "comma": "comma",
    "Backspace": "BackSpace",
}
# What the US layout has on a key's second level.
SHIFTED = set('ABCDEFGHIJKLMNOPQRSTUVWXYZ~!@#$%^&*()_+{}|:"<>?')

# A window in root coordinates.
Shape = namedtuple("Shape", "id x y width height title")


class Desktop:
    """One connection to the display. Key names are "Ctrl+Alt+Return", texts are of the US layout."""

    def __init__(self, name):
        self.display = display.Display(name)
        self.root = self.display.screen().root

    # Keyboard and pointer

    def press(self, combination):
        """Presses and releases a combination at once."""
        codes = [self._code(part) for part in combination.split("+")]
        for code in codes:
            xtest.fake_input(self.display, X.KeyPress, code)
        for code in reversed(codes):
            xtest.fake_input(self.display, X.KeyRelease, code)
        self.display.sync()

    def hold(self, combination):
        for part in combination.split("+"):
            xtest.fake_input(self.display, X.KeyPress, self._code(part))
        self.display.sync()

    def release(self, combination):
        for part in reversed(combination.split("+")):
            xtest.fake_input(self.display, X.KeyRelease, self._code(part))
        self.display.sync()

    @contextmanager
    def keyboard_kept(self):
        """Every key comes here meanwhile, as it does to a locked screen; waits until it is free."""
        until("the keyboard is free", self._take_keyboard, 5, 0.002)
        try:
            yield
        finally:
            self.display.ungrab_keyboard(X.CurrentTime)
            self.display.sync()

    def is_keyboard_taken(self):
        """Whether a program has it to itself, as panels do."""
        if not self._take_keyboard():
            return True
        self.display.ungrab_keyboard(X.CurrentTime)
        self.display.sync()
        return False

    def _take_keyboard(self):
        answer = self.root.grab_keyboard(False, X.GrabModeAsync, X.GrabModeAsync, X.CurrentTime)
        return answer == X.GrabSuccess

    def type(self, text, pause=0.0):
        """Types characters one by one, `pause` seconds apart."""
        for character in text:
            # The keysym of a printable ASCII character is its code.
            code = self.display.keysym_to_keycode(ord(character))
            if not code:
                raise ValueError(f"no key types {character!r}")
            self._tap(code, shifted=character in SHIFTED)
            if pause:
                time.sleep(pause)

    def move_pointer(self, x, y):
        xtest.fake_input(self.display, X.MotionNotify, x=x, y=y)
        self.display.sync()

    def click(self, x, y, button=1):
        self.move_pointer(x, y)
        xtest.fake_input(self.display, X.ButtonPress, button)
        xtest.fake_input(self.display, X.ButtonRelease, button)
        self.display.sync()

    def drag(self, start, end, steps=8):
        """Carries what lies at `start` to `end` with the first button held, as a hand does."""
        self.move_pointer(*start)
        xtest.fake_input(self.display, X.ButtonPress, 1)
        for step in range(1, steps + 1):
            self.move_pointer(*(a + (b - a) * step // steps for a, b in zip(start, end)))
            time.sleep(0.02)
        xtest.fake_input(self.display, X.ButtonRelease, 1)
        self.display.sync()

    def held_keys(self):
        """Key codes that are down; none should be once everything is released."""
        bits = self.display.query_keymap()
        return [8 * i + bit for i, byte in enumerate(bits) for bit in range(8) if byte >> bit & 1]

    def _code(self, name):
        keysym = XK.string_to_keysym(KEYSYMS.get(name, name.lower() if len(name) == 1 else name))
        return self.display.keysym_to_keycode(keysym)

    def _tap(self, code, shifted):
        shift = self._code("Shift")
        if shifted:
            xtest.fake_input(self.display, X.KeyPress, shift)
        xtest.fake_input(self.display, X.KeyPress, code)
        xtest.fake_input(self.display, X.KeyRelease, code)
        if shifted:
            xtest.fake_input(self.display, X.KeyRelease, shift)
        self.display.sync()

    # Windows

    def active_window(self):
        """The id that the window manager calls active; 0 for none."""
        value = self.root.get_full_property(self.display.intern_atom("_NET_ACTIVE_WINDOW"), X.AnyPropertyType)
        return value.value[0] if value and len(value.value) else 0

    def stacking(self):
        """The ids of the windows that the window manager manages, the one in front last."""
        names = self.display.intern_atom("_NET_CLIENT_LIST_STACKING")
        value = self.root.get_full_property(names, X.AnyPropertyType)
        return list(value.value) if value else []

    def close(self, window):
        """Asks the window manager to close it, as its close button does."""
        self._ask("_NET_CLOSE_WINDOW", window.id, [X.CurrentTime, 2, 0, 0, 0])

    def activate(self, number):
        """Asks the window manager to bring the window of that id forward, as a taskbar does."""
        self._ask("_NET_ACTIVE_WINDOW", number, [2, X.CurrentTime, 0, 0, 0])

    def _ask(self, name, number, values):
        message = protocol.event.ClientMessage(
            window=number, client_type=self.display.intern_atom(name), data=(32, values)
        )
        self.root.send_event(message, event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self.display.sync()

    def windows_of(self, pid, minimum=40, depth=3):
        """The visible windows of a process, those of some size, on top last; icons in trays lie deeper than others."""
        shapes = (self._shape_if_visible(window, pid) for window in self._tree(self.root, depth))
        return [shape for shape in shapes if shape and min(shape.width, shape.height) >= minimum]

    def override_windows(self):
        """The visible windows that no window manager has put into a frame, as menus and panels are."""
        for window in self._tree(self.root, depth=1):
            try:
                attributes = window.get_attributes()
                size = window.get_geometry()
            except (error.BadWindow, error.BadDrawable):
                continue
            if attributes.override_redirect and attributes.map_state == X.IsViewable:
                yield Shape(window.id, size.x, size.y, size.width, size.height, window.get_wm_name() or "")

    def _shape_if_visible(self, window, pid):
        try:
            owner = window.get_full_property(self.display.intern_atom("_NET_WM_PID"), X.AnyPropertyType)
            if not owner or owner.value[0] != pid or window.get_attributes().map_state != X.IsViewable:
                return None
            size = window.get_geometry()
            corner = self.root.translate_coords(window, 0, 0)
            return Shape(window.id, corner.x, corner.y, size.width, size.height, window.get_wm_name() or "")
        except (error.BadWindow, error.BadDrawable):
            return None  # gone while we looked

    def brightness(self, window):
        """The mean of the colour channels in the middle of a window's area, as it is on the screen."""
        width, height = window.width // 2, window.height // 2
        image = self.pixels(window.x + width // 2, window.y + height // 2, width, height)
        colours = bytes(byte for index, byte in enumerate(image) if index % 4 != 3)
        return sum(colours) / len(colours)

    def pixels(self, x, y, width, height):
        """What is on that part of the screen, four bytes a pixel; a panel's margin may reach beyond its edges."""
        right, bottom = (min(end, size) for end, size in zip((x + width, y + height), self.screen_size))
        x, y = max(x, 0), max(y, 0)
        width, height = right - x, bottom - y
        return self.root.get_image(x, y, width, height, X.ZPixmap, 0xFFFFFFFF).data

    @property
    def screen_size(self):
        screen = self.display.screen()
        return screen.width_in_pixels, screen.height_in_pixels

    def _tree(self, window, depth):
        try:
            children = window.query_tree().children
        except error.BadWindow:
            return
        for child in children:
            yield child
            if depth > 1:
                yield from self._tree(child, depth - 1)
