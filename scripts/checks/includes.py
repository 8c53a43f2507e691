"""Who may include whom: downwards only, and no widgets where there is no display."""

import re
from collections import defaultdict
from pathlib import Path, PurePosixPath

BELOW = {
    "base": {"base"},
    "platform": {"base", "platform"},
    "backend": {"base", "platform", "backend"},
    "core": {"base", "platform", "core"},
    "services": {"base", "platform", "core", "services"},
    "tool": {"base", "platform", "core", "services", "tool"},
    "core/ui": {"base", "platform", "core", "core/ui"},
    "services view": {"base", "platform", "core", "services", "core/ui", "services view"},
    "tool view": {"base", "platform", "core", "services", "core/ui", "services view", "tool", "tool view"},
    "cli": {"base", "platform", "core", "services", "tool", "cli"},
    "app": {"base", "platform", "core", "services", "core/ui", "services view", "tool", "tool view", "cli", "app"},
    "service": {"base", "service"},
}
# Leaves that tools share; of the history only the scanner and which agents it reads.
SHARED_TOOL_FILES = (
    "tools/asking/",
    "tools/keystrokes/",
    "tools/projects/",
    "tools/session_history/session_scanner",
    "tools/session_history/vibe_history_settings.h",
)
# What the backends of one family of systems share.
SHARED_BACKENDS = ("platform/xdg/", "platform/portal/")
# Stands in for a system's own headers, so it has their include root.
SYSTEM_DECLARATIONS = "platform/mac/check"
WIDGETS = re.compile(
    r"Q(Widget|Application|MainWindow|Dialog|DialogButtonBox|MessageBox|FileDialog|ColorDialog|FontDialog|Menu|MenuBar"
    r"|Label|Frame|Splitter|ScrollArea|ScrollBar|TabWidget|TabBar|StackedWidget|ToolBar|ToolButton|PushButton|CheckBox"
    r"|RadioButton|AbstractButton|ButtonGroup|ComboBox|LineEdit|TextEdit|PlainTextEdit|TextBrowser|SpinBox|Slider"
    r"|ProgressBar|Style|StyleFactory|StyleOption|StylePainter|ProxyStyle|CommonStyle|SystemTrayIcon|ToolTip|WhatsThis"
    r"|Layout|BoxLayout|[HV]BoxLayout|GridLayout|FormLayout|StackedLayout|SizeGrip|RubberBand|Graphics\w+"
    r"|AbstractItemView|AbstractScrollArea|(List|Tree|Table|Header|Column)(View|Widget)|AbstractItemDelegate"
    r"|StyledItemDelegate|ItemDelegate|Completer|KeySequenceEdit|Shortcut(?=Widget))"
)
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
SYSTEM_CONDITION = re.compile(r"^\s*#\s*(?:el)?if(?:n?def)?\b.*\b(?:Q_OS_\w+|__APPLE__|__linux__|_WIN32)", re.MULTILINE)


class Tree:
    """The sources below one folder: their includes, and the library that each belongs to."""

    def __init__(self, root):
        self.root = Path(root)
        self.files = {
            str(PurePosixPath(path.relative_to(self.root))): path.read_text()
            for path in sorted(self.root.rglob("*"))
            if path.suffix in {".h", ".cpp", ".mm"} and not path.is_relative_to(self.root / SYSTEM_DECLARATIONS)
        }
        self.includes = {name: INCLUDE.findall(text) for name, text in self.files.items()}
        self.library = self._libraries()

    def _libraries(self):
        """Source file → library, from target_sources; a header goes with the source of its name."""
        library = {}
        for listing in self.root.rglob("CMakeLists.txt"):
            folder = PurePosixPath(listing.parent.relative_to(self.root))
            text = re.sub(r"#[^\n]*", "", listing.read_text())
            for target, sources in re.findall(r"target_sources\(\s*(\w+)\s+([^)]*)\)", text):
                for source in re.findall(r"[\w./-]+\.(?:cpp|mm|h)\b", sources):
                    library[str(folder / source)] = target
        for name in self.files:
            if name.endswith(".h"):
                beside = [library[name[:-2] + suffix] for suffix in (".cpp", ".mm") if name[:-2] + suffix in library]
                if beside:
                    library.setdefault(name, beside[0])
        return library

    def own_includes(self, name):
        return [target for bracket, target in self.includes[name] if bracket == '"']

    def widgets(self, name):
        """The widget headers that a file includes itself."""
        return [target for bracket, target in self.includes[name] if bracket == "<" and WIDGETS.fullmatch(target)]

    def reachable(self, name):
        """The file and everything of the tree that it includes, directly or not."""
        seen, waiting = set(), [name]
        while waiting:
            current = waiting.pop()
            if current in seen or current not in self.files:
                continue
            seen.add(current)
            waiting += self.own_includes(current)
        return seen

    def layer(self, name):
        parts = name.split("/")
        is_view = self.library.get(name) == "vantle_ui" or (name not in self.library and bool(self.widgets(name)))
        if parts[0] == "platform":
            return "backend" if len(parts) > 2 else "platform"
        if parts[:2] == ["core", "ui"]:
            return "core/ui"
        if parts[0] in {"services", "capture"}:
            return "services view" if is_view else "services"
        if parts[0] == "tools":
            return "tool view" if is_view else "tool"
        return parts[0]


def problems(root):
    """One line for each breach of the rules below `root` (the folder src)."""
    tree = Tree(root)
    for name in tree.files:
        yield from _directions(tree, name)
        yield from _systems(tree, name)
    yield from _widgets_in_logic(tree)
    yield from _cycles(tree)


def _directions(tree, name):
    layer = tree.layer(name)
    if layer not in BELOW:
        yield f"{name}: the folder {layer}/ has no place among the layers"
        return
    for target in tree.own_includes(name):
        if ".." in target.split("/"):
            yield f'{name}: "{target}" goes up; name it from src/'
        elif target not in tree.files:
            if not target.endswith(".moc"):
                yield f'{name}: "{target}" is not below src/'
        elif tree.layer(target) not in BELOW[layer]:
            yield f"{name} ({layer}) must not include {target} ({tree.layer(target)})"
        elif _is_sideways(name, target):
            yield f"{name}: a tool must not include another tool: {target}"


def _is_sideways(name, target):
    def folder(path):
        return path.split("/")[:2]

    if tree_part(name) == tree_part(target) == "platform" and target.count("/") > 1:
        return folder(name) != folder(target) and not target.startswith(SHARED_BACKENDS)
    if tree_part(name) != "tools" or tree_part(target) != "tools" or folder(name) == folder(target):
        return False
    return not target.startswith(SHARED_TOOL_FILES)


def tree_part(path):
    return path.split("/")[0]


def _systems(tree, name):
    if not name.startswith("platform/"):
        for match in SYSTEM_CONDITION.finditer(tree.files[name]):
            line = tree.files[name].count("\n", 0, match.end()) + 1
            yield f"{name}:{line}: a condition on the operating system outside platform/"


def _widgets_in_logic(tree):
    for name, library in sorted(tree.library.items()):
        if library != "vantle_logic" or name not in tree.files:
            continue
        for reached in sorted(tree.reachable(name)):
            for widget in tree.widgets(reached):
                yield f"{name}: vantle_logic knows no widgets, but reaches <{widget}> through {reached}"


def _cycles(tree):
    """Folders that include each other, directly or round about; one line for each such group.

    A plain value that includes nothing above the platform's interfaces closes no circle, and a folder is one with the
    folders inside it.
    """
    edges = defaultdict(set)
    for name in tree.files:
        for target in tree.own_includes(name):
            here, there = name.rpartition("/")[0], target.rpartition("/")[0]
            if target in tree.files and not _is_leaf(tree, target) and not _are_nested(here, there):
                edges[here].add(there)
    seen = set()
    for folder in sorted(edges):
        group = {other for other in _reach(edges, folder) if folder in _reach(edges, other)}
        if group and folder not in seen:
            seen |= group
            yield "a cycle of folders: " + ", ".join(sorted(group))


def _is_leaf(tree, header):
    both = [name for name in (header, header[:-2] + ".cpp") if name in tree.files]
    targets = {target for name in both for target in tree.own_includes(name)} - {header}
    return all(tree.layer(target) in {"base", "platform"} for target in targets if target in tree.files)


def _are_nested(one, other):
    return one == other or f"{one}/".startswith(f"{other}/") or f"{other}/".startswith(f"{one}/")


def _reach(edges, start):
    seen, waiting = set(), [*edges[start]]
    while waiting:
        current = waiting.pop()
        if current not in seen:
            seen.add(current)
            waiting += edges.get(current, ())
    return seen
