"""The accessibility tree of one moment as values: what each control is called, what it is, and where."""

from collections import namedtuple
from dataclasses import dataclass, field

from driver.accessibility import application_of, children
from gi.repository import Atspi, GLib

ITEMS = {"list item", "tree item", "table cell", "menu item", "check menu item", "radio menu item", "page tab"}
SHOWING = Atspi.StateType.SHOWING
FOCUSABLE = Atspi.StateType.FOCUSABLE
FOCUSED = Atspi.StateType.FOCUSED
SENSITIVE = Atspi.StateType.SENSITIVE
CHECKED = Atspi.StateType.CHECKED
SELECTABLE = Atspi.StateType.SELECTABLE
SELECTED = Atspi.StateType.SELECTED


class Box(namedtuple("Box", "x y width height")):
    """A place in the program's own pixels, the screen's divided by the scale."""

    @property
    def right(self):
        return self.x + self.width

    @property
    def bottom(self):
        return self.y + self.height

    def within(self, other, slack=0):
        return (
            self.x >= other.x - slack
            and self.y >= other.y - slack
            and self.right <= other.right + slack
            and self.bottom <= other.bottom + slack
        )

    def cut(self, other):
        """What both have in common; of no size when that is nothing."""
        x, y = max(self.x, other.x), max(self.y, other.y)
        return Box(x, y, max(0, min(self.right, other.right) - x), max(0, min(self.bottom, other.bottom) - y))

    @property
    def area(self):
        return self.width * self.height


@dataclass(eq=False)
class Control:
    """One showing object. `viewport` is the part of the window in which it can be seen."""

    node: Atspi.Accessible
    role: str
    name: str
    description: str
    states: set
    box: Box
    parent: "Control" = None
    viewport: Box = None
    children: list = field(default_factory=list)

    def __iter__(self):
        yield self
        for child in self.children:
            yield from child

    def has(self, state):
        return state in self.states

    @property
    def shown(self):
        """The part of its box that is not scrolled away."""
        return self.box.cut(self.viewport)

    @property
    def actions(self):
        try:
            return [self.node.get_action_name(number) for number in range(self.node.get_n_actions())]
        except GLib.Error:
            return []

    def act(self, *names):
        """Does the first of the named actions that it has; False when it has none of them."""
        available = self.actions
        wanted = next((name for name in names if name in available), None)
        return wanted is not None and self.node.do_action(available.index(wanted))

    def is_focused(self):
        """Asked anew: the rest of it is of the moment at which the tree was read."""
        return states_of(self.node).contains(FOCUSED)

    def is_checked(self):
        return states_of(self.node).contains(CHECKED)

    def can_be_used(self):
        """Asked anew: another control may have switched it off."""
        return states_of(self.node).contains(SENSITIVE)

    @property
    def label(self):
        """What stands beside it as its label; of a combo box the name is the chosen entry. Else its name."""
        labels = (
            relation.get_target(0).get_name()
            for relation in self.node.get_relation_set()
            if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY
        )
        return next(labels, self.name)

    def fresh_name(self):
        return self.node.get_name()

    def is_selected(self):
        return states_of(self.node).contains(SELECTED)

    def fresh_box(self):
        return box_of(self.node)

    @property
    def surroundings(self):
        """The nearest name around it: a row, a group."""
        parent = self.parent
        while parent and not parent.name:
            parent = parent.parent
        return parent.name if parent else ""

    def __str__(self):
        return f"{self.role} “{self.name}” at {self.box.x},{self.box.y} {self.box.width}×{self.box.height}"


def windows(pid):
    """The showing windows of the process, each with all that shows in it."""
    application = application_of(pid)
    found = [read(node) for node in children(application)] if application else []
    for window in filter(None, found):
        give_viewport(window, window.box)
    return [window for window in found if window]


def read(node, parent=None):
    """None when it does not show, or is gone while we look."""
    try:
        states = states_of(node)
        if not states.contains(SHOWING):
            return None
        name, description = node.get_name() or "", node.get_description() or ""
        control = Control(node, node.get_role_name(), name, description, set(states.get_states()), box_of(node), parent)
        control.children = [below for below in (read(child, control) for child in children(node)) if below]
        return control
    except GLib.Error:
        return None


def give_viewport(control, viewport):
    control.viewport = viewport
    inner = control.box.cut(viewport) if scrolls(control) else viewport
    for child in control.children:
        give_viewport(child, inner)


def scrolls(control):
    """Whether it cuts off what is in it: a list does, or a scroll bar stands in it or in the strip kept for one."""
    if control.role in ("list", "table", "tree"):
        return True
    nearest = [*control.children, *(below for child in control.children for below in child.children)]
    return any(control.role == "scroll bar" for control in nearest)


def states_of(node):
    try:
        return node.get_state_set()
    except GLib.Error:
        return Atspi.StateSet()


def box_of(node):
    extents = node.get_extents(Atspi.CoordType.SCREEN)
    return Box(extents.x, extents.y, extents.width, extents.height)
