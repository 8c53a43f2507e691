"""The keyboard's way through a window: Tab reaches every control once, in reading order, and is always seen."""

from driver.waiting import StepFailed, until

from .rules import SLACK
from .tree import FOCUSABLE, ITEMS, SELECTED, SENSITIVE

# A ring may be drawn a little outside of its control.
AROUND = 3
# So many bytes must differ clearly: the smallest ring, around a box of 16 pixels, is a few hundred.
LEAST_CHANGE = 60
# A row whose controls differ in height still is a row.
SAME_ROW = 12


class Walk:
    """One walk; `faults` is what was wrong with it, in words."""

    def __init__(self, stage, window):
        self.stage = stage
        self.window = window
        self.stops = [control for control in window if is_stop(control)]
        self.home = min(self.stops, key=lambda stop: (stop.box.y, stop.box.x), default=None)
        self.order = []
        # What the keyboard's arrival brought up may stand anywhere.
        self.newcomers = []
        self.faults = []

    def take(self):
        if not self.stops:
            return self.faults
        current = self.focused()
        if not current:
            self.faults.append("nothing has the keyboard when it opens")
            self.stage.desktop.press("Tab")
            current = self.next_after(None)
        while current and current not in self.order:
            self.order.append(current)
            current = self.step(current)
        if current and current is not self.order[0]:
            self.faults.append(f"Tab comes back to {current} before it has been everywhere")
        self.faults += [f"Tab never reaches {stop}" for stop in self.stops if self.is_due(stop)]
        return self.faults

    def is_due(self, stop):
        if stop in self.order:
            return False
        # Of a group of radio buttons the chosen one stands for all.
        return stop.role != "radio button" or not any(mate in self.order for mate in stop.parent.children)

    def step(self, current):
        """One Tab away from `current`; the stop that it leads to, None when it leads nowhere."""
        where = current.fresh_box()
        area = self.drawn(current)
        lit = self.stage.pixels(area)
        self.stage.desktop.press("Tab")
        reached = self.next_after(current)
        if reached is None:
            if len(self.stops) > 1:
                self.faults.append(f"Tab leads nowhere from {current}")
            return None
        if current.fresh_box() == where:
            self.expect_change(current, area, lit)
        self.look_at_place(current, reached)
        return reached

    def next_after(self, current):
        try:
            # Alone, it has nowhere to go.
            return until("the keyboard moves", lambda: self.moved_from(current), 2 if len(self.stops) > 1 else 0.3, 0.003)
        except StepFailed:
            return self.newcomer()

    def newcomer(self):
        """A stop that was not one before: the keyboard's arrival elsewhere can make it so."""
        window = self.stage.readable(self.window.name) or ()
        found = next((control for control in window if is_stop(control) and control.is_focused()), None)
        if found and not any(stop.node == found.node for stop in self.stops):
            self.stops.append(found)
            self.newcomers.append(found)
            return found
        return None

    def moved_from(self, current):
        focused = self.focused()
        return focused if focused is not current else None

    def focused(self):
        return next((stop for stop in self.stops if stop.is_focused()), None)

    def drawn(self, control):
        """Where a control shows that it has the keyboard: a list does so at its chosen row."""
        rows = [row for row in control if row is not control and (row.is_focused() or row.has(SELECTED))]
        box = rows[0].fresh_box() if rows else control.fresh_box()
        return box._replace(
            x=box.x - AROUND, y=box.y - AROUND, width=box.width + 2 * AROUND, height=box.height + 2 * AROUND
        )

    def expect_change(self, control, area, lit):
        try:
            until("it changes", lambda: difference(lit, self.stage.pixels(area)) >= LEAST_CHANGE, 3, 0.003)
        except StepFailed:
            self.faults.append(f"one does not see that the keyboard is at {control}")

    def look_at_place(self, current, reached):
        before, now = current.fresh_box(), reached.fresh_box()
        # A list may be longer than what can be seen of it.
        if reached.role not in ("list", "table", "tree") and not now.within(reached.viewport, SLACK):
            self.faults.append(f"scrolled away while it has the keyboard: {reached}, now at {now.x},{now.y}")
        backwards = now.y < before.y - SAME_ROW and now.x < before.right
        # The way is a ring, and begins wherever the keyboard was.
        if backwards and reached not in (self.order[0], self.home, *self.newcomers):
            self.faults.append(f"Tab goes back from {current} to {reached}")


def is_stop(control):
    if not (control.has(FOCUSABLE) and control.has(SENSITIVE)) or control.role in ITEMS:
        return False
    return control.parent is not None and not has_keeper(control)


def has_keeper(control):
    """Whether the keyboard is another's for it: of a spin box for its field, of a grid for its tiles."""
    parent = control.parent
    while parent:
        if parent.role in ("spin button", "combo box", "list"):
            return True
        parent = parent.parent
    return False


def difference(before, after):
    """How many bytes of two pictures differ clearly."""
    if len(before) != len(after):
        return len(before)
    both = int.from_bytes(before, "big") ^ int.from_bytes(after, "big")
    return len(both.to_bytes(len(before), "big").translate(None, bytes(range(32))))
