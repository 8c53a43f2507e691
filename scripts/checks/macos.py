"""The macOS backend, compiled and linked as far as that goes without a Mac.

The Objective-C++ files are compiled against our own declarations of the system's interface (src/platform/mac/check, a
folder a framework), the Qt side with the system's compiler and Qt. What a linker would do then is done here by name: each
side of the seam against the other, and what the objects want from the system against the frameworks that CMake links.
"""

import json
import os
import re
import shlex
import shutil
import subprocess
import threading
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from checks import mach_o

PRETENCE = Path(__file__).with_name("on_a_mac.cmake")
CLANG = os.environ.get("CLANGXX", "clang++-19")
GXX = os.environ.get("CXX", "g++")
SEAM = "_ZN3mac"

OBJECTIVE_CXX = (
    "-fobjc-arc -fblocks -fno-exceptions -std=c++20 -x objective-c++ -nostdinc++ -nostdlibinc -Werror -Wall -Wextra"
    " -Wpedantic -Wnon-virtual-dtor -Wold-style-cast -Wshadow -Wconversion -Wmissing-prototypes"
    " -Wundeclared-selector -Wunguarded-availability -Wstrict-selector-match -Wselector -Wprotocol"
    " -Woverriding-method-mismatch -Wsuper-class-method-mismatch -Wnullable-to-nonnull-conversion"
    " -Wimplicit-retain-self -Warc-repeated-use-of-weak"
).split()
QT_SIDE = (
    "-std=c++23 -fPIC -Werror -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wsuggest-override"
    " -Woverloaded-virtual -DQT_NO_CAST_FROM_ASCII -DQT_NO_CAST_TO_ASCII -DQT_NO_FOREACH -DQT_NO_KEYWORDS"
).split()

# Without the first nothing is ever released; with the others the compiler understands and warns as it does here.
NEEDED = ("-fobjc-arc", "-fno-exceptions", "-std=c++20", "-Wundeclared-selector", "-Wunguarded-availability")

# Folders of declarations that are no frameworks: their library is part of every program that is linked with Foundation.
ALWAYS_LINKED = {"dispatch", "objc"}
# What the compiler itself calls: the runtimes of Objective-C, of blocks and of C++, and the C library.
RUNTIME = re.compile(
    r"objc_\w+|_objc_empty_\w+|OBJC_(META)?CLASS_\$_NSObject|__objc_personality_v0"
    r"|_Block_object_(assign|dispose)|_NSConcrete(Stack|Global)Block|_Unwind_Resume"
    r"|__gxx_personality_v0|mem(cpy|move|set)|bzero|__stack_chk_(fail|guard)"
)
# What literals in the source stand for; no header declares it.
LITERALS = {
    "__CFConstantStringClassReference": "CoreFoundation",
    "__NSArray0__": "CoreFoundation",
    "__NSDictionary0__": "CoreFoundation",
}


class Backend:
    """The backend's folder in a source tree, and where its objects go."""

    def __init__(self, root, work):
        self.root = Path(root)
        self.folder = self.root / "src/platform/mac"
        self.work = Path(work)

    def sources(self, suffix):
        return sorted(self.folder.glob(f"*{suffix}"))

    def object(self, source):
        return self.work / (source.name + ".o")

    def has_objects(self, suffix):
        return all(self.object(source).is_file() for source in self.sources(suffix))


def problems(backend, only=None):
    """Everything that does not fit. `only` names sources: the others are not compiled, and what they decide is left out."""
    found = list(cmake_problems(backend)) + portable_problems(backend) + compilation_problems(backend, only)
    if found:
        return found  # a link of what does not compile says nothing
    return symbol_problems(backend) + seam_problems(backend)


# Compiling


def compilation_problems(backend, only=None):
    calls = []
    for source in backend.sources(".mm"):
        calls.append((source, compile_objective_cxx))
        if "@implementation" in source.read_text():
            calls.append((source, stray_methods))
    calls += [(source, compile_qt_side) for source in backend.sources(".cpp")]
    calls = [(source, call) for source, call in calls if not only or source.name in only]
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        return [problem for answer in pool.map(lambda pair: pair[1](backend, pair[0]), calls) for problem in answer]


def run(name, command):
    done = subprocess.run(command, capture_output=True, text=True, check=False, env={**os.environ, "LC_ALL": "C"})
    return [] if done.returncode == 0 else [f"{name} does not compile:\n{done.stderr.strip()}"]


def objective_cxx(backend, processor):
    return [CLANG, "-target", f"{processor}-apple-macos14.0", *OBJECTIVE_CXX, "-isystem", str(backend.folder / "check"),
            "-I", str(backend.root / "src")]  # fmt: skip


def compile_objective_cxx(backend, source):
    """For both processors: the other one has another BOOL."""
    target = ["-c", str(source), "-o", str(backend.object(source))]
    found = run(source.name, [*objective_cxx(backend, "arm64"), *target])
    return found or run(f"{source.name} (x86_64)", [*objective_cxx(backend, "x86_64"), "-fsyntax-only", str(source)])


def compile_qt_side(backend, source):
    qt = subprocess.run(["pkg-config", "--cflags", "Qt6Gui"], capture_output=True, text=True, check=True).stdout
    includes = qt.replace("-I", "-isystem ").split()
    cache = [shutil.which("ccache")] if shutil.which("ccache") else []
    target = ["-I", str(backend.root / "src"), "-c", str(source), "-o", str(backend.object(source))]
    return run(source.name, [*cache, GXX, *QT_SIDE, *includes, *target])


def stray_methods(backend, source):
    """Methods that no interface or protocol declares: nothing but a mistake in the selector brings them about."""
    command = [*objective_cxx(backend, "arm64"), "-fsyntax-only", "-Xclang", "-ast-dump=json", str(source)]
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    if done.returncode:
        return []  # the compilation says why
    nodes = json.loads(done.stdout)["inner"]
    return [
        f"{source.name}: {node['name']} implements {method}, which overrides nothing and is declared nowhere"
        for node in nodes
        if node["kind"] == "ObjCImplementationDecl"
        for method in sorted(methods(node) - declared_methods(node["name"], nodes))
    ]


def methods(node):
    inner = (child for child in node.get("inner", []) if not child.get("isImplicit"))
    return {("- " if child.get("instance", True) else "+ ") + child["name"] for child in inner if child["kind"] == "ObjCMethodDecl"}


def declared_methods(name, nodes):
    """Those of a class or protocol, its extensions, and all that it inherits from."""
    found = set()
    for node in nodes:
        extends = node["kind"] == "ObjCCategoryDecl" and node.get("interface", {}).get("name") == name
        if extends or (node["kind"] in ("ObjCInterfaceDecl", "ObjCProtocolDecl") and node.get("name") == name):
            found |= methods(node)
            ancestors = [node["super"]] if "super" in node and not extends else []
            for ancestor in ancestors + node.get("protocols", []):
                if ancestor.get("name", name) != name:
                    found |= declared_methods(ancestor["name"], nodes)
    # A class that has the name of its protocol is looked for once under it, so the protocol's are in already.
    return found


# Linking


def symbol_problems(backend):
    """What the objects want from the system must be in a framework that is linked, and each of those must be wanted."""
    linked, folders = configuration(backend).frameworks, declaring_folders(backend)
    found, used = [], set()
    for source in backend.sources(".mm"):
        for symbol in sorted(undefined_symbols(backend, source)):
            folder = folder_of(symbol, folders)
            used.add(folder)
            if folder is None:
                found.append(f"{source.name}: {symbol} is declared nowhere in check/")
            elif folder not in ALWAYS_LINKED | linked:
                found.append(f"{source.name}: {symbol} is in {folder}, a framework that CMake does not link")
    unused = sorted(linked - used) if backend.has_objects(".mm") else []
    return found + [f"CMakeLists.txt links {name}, which nothing uses" for name in unused]


def undefined_symbols(backend, source):
    """What the object wants from the system, and not from the other side of the seam."""
    if not backend.object(source).is_file():
        return set()
    _, undefined = mach_o.symbols(backend.object(source).read_bytes())
    return {symbol for symbol in undefined if not RUNTIME.fullmatch(symbol) and not symbol.startswith(SEAM)}


def folder_of(symbol, folders):
    return LITERALS.get(symbol) or folders.get(re.sub(r"^OBJC_(META)?CLASS_\$_", "@", symbol))


def declaring_folders(backend):
    """Which folder declares a function, a variable or, with an @ before it, a class."""
    found = {}
    for header in sorted((backend.folder / "check").glob("*/*.h")):
        text = re.sub(r"//[^\n]*|SINCE\([^)]*\)|__attribute__\(\([^;]*?\)\)(?=\s*[;\w])", " ", header.read_text())
        for declaration in re.findall(r"\bEXTERN\b([^;]*);", text):
            function = re.search(r"(\w+)\s*\(", declaration)
            found[function[1] if function else declaration.split()[-1]] = header.parent.name
        for name in re.findall(r"@interface (\w+)", text):
            found["@" + name] = header.parent.name
    return found


def seam_problems(backend):
    """The types are part of the mangled names: what is defined with others than it is called with is missing here."""
    defined, called, own = set(), set(), set()
    for compiled in filter(Path.is_file, map(backend.object, backend.sources(".mm"))):
        defined |= {name for name in mach_o.symbols(compiled.read_bytes())[0] if name.startswith(SEAM)}
    for compiled in filter(Path.is_file, map(backend.object, backend.sources(".cpp"))):
        listed = subprocess.run(["nm", "--extern-only", compiled], capture_output=True, text=True, check=True).stdout
        called |= set(re.findall(rf" U ({SEAM}\w+)", listed))
        own |= set(re.findall(rf" [TW] ({SEAM}\w+)", listed))
    called -= own  # the Qt side's own functions have the same namespace
    missing = sorted(called - defined) if backend.has_objects(".mm") else []
    unused = sorted(defined - called) if backend.has_objects(".cpp") else []
    return [f"the Qt side calls {readable(name)}, which no .mm file defines" for name in missing] + [
        f"{readable(name)} is called by nobody" for name in unused
    ]


def portable_problems(backend):
    """What the portable headers promise as functions must be there on a Mac too, in no other system's folder."""
    platform = backend.folder.parent
    sources = [*platform.glob("*.cpp"), *platform.glob("null/*.cpp"), *backend.sources(".cpp")]
    text = "\n".join(source.read_text() for source in sources)
    return [
        f"{header.name} declares {name}, which is defined nowhere for macOS"
        for header in sorted(platform.glob("*.h"))
        for name in re.findall(r"^\w[\w:<>, *&]*? [*&]?(\w+)\([^;{}]*\);", header.read_text(), re.MULTILINE)
        if not re.search(rf"^\w[\w:<>, *&]*? [*&]?{name}\([^;{{}}]*\) {{", text, re.MULTILINE)
    ]


def readable(name):
    return subprocess.run(["c++filt", name], capture_output=True, text=True, check=True).stdout.strip()


# CMake


class Configuration:
    """What CMake does with the folder when it takes this machine for a Mac: the switches of each source, by name, and the
    frameworks that the application is linked with."""

    def __init__(self, backend):
        self.switches, self.frameworks = {}, set()
        self.problem = None
        build = backend.work / "cmake"
        command = ["cmake", "-G", "Ninja", "-S", str(backend.root), "-B", str(build), "-DBUILD_TESTING=OFF",
                   f"-DCMAKE_PROJECT_Vantle_INCLUDE={PRETENCE}", *(f"-DCMAKE_{language}_COMPILER={shutil.which(CLANG)}"
                   for language in ("CXX", "OBJCXX"))]  # fmt: skip
        done = subprocess.run(command, capture_output=True, text=True, check=False)
        if done.returncode:
            self.problem = f"CMake fails as on a Mac:\n{done.stderr.strip()}"
            return
        for entry in json.loads((build / "compile_commands.json").read_text()):
            source = Path(entry["file"])
            if source.parent == backend.folder:
                self.switches[source.name] = shlex.split(entry["command"])
        rule = re.search(r"^build bin/vantle: .*?^  LINK_LIBRARIES = (.*?)$", (build / "build.ninja").read_text(), re.S | re.M)
        self.frameworks = set(re.findall(r"-framework (\w+)", rule[1]))


configurations, configuring = {}, threading.Lock()


def configuration(backend):
    """It takes a second, so trees that differ elsewhere share it."""
    text = (backend.folder / "CMakeLists.txt").read_text()
    with configuring:
        if text not in configurations:
            configurations[text] = Configuration(backend)
        return configurations[text]


def cmake_problems(backend):
    """What is compiled here must be what CMake compiles on a Mac, with the same switches."""
    configured = configuration(backend)
    if configured.problem:
        yield configured.problem
        return
    for source in backend.sources(".cpp") + backend.sources(".mm"):
        switches = configured.switches.get(source.name)
        if switches is None:
            yield f"CMake does not compile {source.name}"
        elif source.suffix == ".mm":
            yield from (f"CMake compiles {source.name} without {switch}" for switch in NEEDED if switch not in switches)
    text = call((backend.folder / "CMakeLists.txt").read_text(), "set_source_files_properties")
    options = re.search(r'COMPILE_OPTIONS "([^"]*)"', text)
    for option in options[1].split(";") if options else []:
        if option not in OBJECTIVE_CXX:
            yield f"CMake compiles with {option}, this check without"


def call(text, command):
    found = re.search(rf"^{command}\((.*?)\)\s*$", text, re.DOTALL | re.MULTILINE)
    return found[1] if found else ""
