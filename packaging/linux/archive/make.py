#!/usr/bin/env python3
"""Packs the application with the libraries that a desktop may lack, for people without root: unpack it anywhere."""

import argparse
import os
import platform
import re
import shutil
import subprocess
import tarfile
import tempfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
# Every desktop has these, in step with its kernel, its display server and its fonts; a copy would not fit them.
OF_THE_SYSTEM = re.compile(
    r"^(ld-linux.*|lib(c|m|dl|rt|pthread|resolv|util|anl|gcc_s|stdc\+\+"
    r"|GL|GLX|EGL|GLdispatch|OpenGL|gbm|drm|X11|X11-xcb|Xau|Xdmcp|xcb|fontconfig|freetype|expat|z|uuid|asound"
    r"|glib-2\.0|gobject-2\.0|gio-2\.0|gmodule-2\.0|dbus-1|systemd|udev|selinux|mount|blkid|cap)\.so.*)$"
)
# Loaded by name at run time, so no library says that it needs them.
LOADED = ["libsecret-1.so.0", "libcanberra.so.0"]
PLUGINS = """
platforms/libqxcb.so platforms/libqoffscreen.so platforminputcontexts iconengines/libqsvgicon.so imageformats
tls/libqopensslbackend.so tls/libqcertonlybackend.so networkinformation sqldrivers/libqsqlite.so sqldrivers/libqsqlpsql.so
xcbglintegrations platforms/libqwayland-generic.so platforms/libqwayland-egl.so wayland-shell-integration
""".split()


def run(*command, **options):
    return subprocess.run([str(word) for word in command], check=True, capture_output=True, text=True, **options).stdout


def needed_by(binary):
    """Where the libraries are that are loaded with it, by their names."""
    found = {}
    for line in run("ldd", binary).splitlines():
        if match := re.match(r"\s*(\S+) => (\S+)", line):
            if match[2] == "not":
                raise SystemExit(f"{binary}: {match[1]} is not there")
            found[match[1]] = Path(match[2])
    return found


def system_library(name):
    """Where the loader finds it; none when it is not there."""
    found = re.search(rf"^\s*{re.escape(name)} .*=> (\S+)$", run("/sbin/ldconfig", "-p"), re.MULTILINE)
    return Path(found[1]) if found else None


def qt_plugins():
    return Path(run("qtpaths6", "--query", "QT_INSTALL_PLUGINS").strip())


def copy_plugins(target):
    for name in PLUGINS:
        source = qt_plugins() / name
        if source.is_dir():
            shutil.copytree(source, target / name)
        elif source.exists():
            (target / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, target / name)
    copied = sorted(target.rglob("*.so"))
    return copied, [qt_plugins() / path.relative_to(target) for path in copied]


def copy_libraries(binaries, target):
    """Everything that they need, less what is the system's: the names of the latter, and where the others came from."""
    target.mkdir(parents=True, exist_ok=True)
    wanted, left, taken = {}, set(), []
    for name in LOADED:
        if path := system_library(name):
            wanted[name] = path
            wanted |= needed_by(path)
    for binary in binaries:
        wanted |= needed_by(binary)
    for name, path in wanted.items():
        if OF_THE_SYSTEM.match(name):
            left.add(name)
        else:
            shutil.copy(path.resolve(), target / name)
            taken.append(path)
    return left, taken


def copy_licences(sources, target):
    """Those of the system's packages that the libraries and plugins were taken from: they are handed on as well."""
    target.mkdir()
    for path in {str(source.resolve()) for source in sources}:
        # The package may know it by the name that it had before /lib was merged into /usr/lib.
        names = [path, path.removeprefix("/usr")]
        found = subprocess.run(["dpkg-query", "--search", *names], capture_output=True, text=True).stdout
        if not found:
            raise SystemExit(f"{path}: no package has it, so its licence is not known")
        package = found.split(":", 1)[0]
        shutil.copy(f"/usr/share/doc/{package}/copyright", target / package)


def needed_of_the_system(binaries, left):
    """Those of `left` that one of the binaries itself asks for, not only in another library's name."""
    return sorted(left & {name for binary in binaries for name in run("patchelf", "--print-needed", binary).split()})


def fill(folder, build):
    run("cmake", "--install", build, "--component", "application", "--prefix", folder, "--strip")
    run("cmake", "--install", build, "--component", "service", "--prefix", folder / "service", "--strip")
    # One copy of the service is enough here: beside the application.
    shutil.move(folder / "service/bin/vantle-service", folder / "bin/vantle-service")
    shutil.move(folder / "service/share/man/man1/vantle-service.1", folder / "share/man/man1/vantle-service.1")
    shutil.rmtree(folder / "service")
    shutil.rmtree(folder / "libexec")
    library = folder / "lib/vantle"
    programs = [folder / "bin/vantle", folder / "bin/vantle-service"]
    plugins, plugin_sources = copy_plugins(library / "plugins")
    left, library_sources = copy_libraries([*programs, *plugins], library)
    copy_licences([*plugin_sources, *library_sources], folder / "licences")
    # An RPATH, unlike a RUNPATH, holds for what the libraries and plugins load in their turn.
    for program in programs:
        run("patchelf", "--force-rpath", "--set-rpath", "$ORIGIN/../lib/vantle", program)
    (folder / "bin/qt.conf").write_text("[Paths]\nPrefix = ../lib/vantle\nPlugins = plugins\n")
    for name in ("install", "check"):
        shutil.copy(HERE / name, folder / name)
    shutil.copy(HERE.parents[2] / "CHANGELOG.md", folder / "CHANGELOG.md")
    return needed_of_the_system([*programs, *library.rglob("*.so*")], left)


def pack(folder, archive):
    """The same bytes for the same content: names in order, no owner, no time of its own."""
    when = int(os.environ.get("SOURCE_DATE_EPOCH", "0")) or int((folder / "CHANGELOG.md").stat().st_mtime)

    def plain(entry):
        entry.uid = entry.gid = 0
        entry.uname = entry.gname = "root"
        entry.mtime = when
        entry.mode = 0o755 if entry.isdir() or entry.mode & 0o100 else 0o644
        return entry

    with tarfile.open(archive, "w:gz") as tar:
        tar.add(folder, folder.name, filter=plain)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, type=Path)
    parser.add_argument("--version", required=True)
    parser.add_argument("--output", required=True, type=Path)
    options = parser.parse_args()
    name = f"vantle-{options.version}-linux-{platform.machine()}"
    with tempfile.TemporaryDirectory(prefix="vantle-archive-") as place:
        folder = Path(place) / name
        folder.mkdir()
        left = fill(folder, options.build)
        glibc = run("getconf", "GNU_LIBC_VERSION").strip()
        values = {"VERSION": options.version, "GLIBC": glibc, "LIBRARIES": "\n".join(f"    {name}" for name in left)}
        text = (HERE / "README.in").read_text()
        (folder / "README").write_text(re.sub(r"@([A-Z]+)@", lambda match: values[match[1]], text))
        pack(folder, options.output / f"{name}.tar.gz")


if __name__ == "__main__":
    main()
