"""What of others is linked into the programs, and under which licences.

The linker's maps name every library that something was taken from. A library that is not in the table below stops the
build: nobody has looked at its licence yet. Import libraries of Windows are the tool chain's, and so are the start-up
objects.

    components.py FILE MAP…    writes the licences to FILE
"""

from __future__ import annotations

import re
import subprocess
import sys
from collections.abc import Iterable
from dataclasses import dataclass
from pathlib import Path

REPO = Path(__file__).resolve().parents[2]
COMMON_LICENCES = Path("/usr/share/common-licenses")
DOCUMENTS = Path("/usr/share/doc")


class UnknownComponent(Exception):
    """Something is linked in that nobody knows the licence of; the message says what."""


@dataclass(frozen=True)
class Component:
    """Something of others that ships inside the programs, or inside the set-up."""

    name: str
    what: str
    licence: str  # as SPDX spells it
    package: str  # the Debian package whose version it has
    notice: Path  # where that says whose it is and under which terms
    common: tuple[str, ...] = ()  # licences that the notice refers to

    def version(self) -> str:
        """The version of Debian's package. Raises subprocess.CalledProcessError when it is not installed."""
        return subprocess.run(
            ["dpkg-query", "-W", "-f", "${Version}", self.package], capture_output=True, text=True, check=True).stdout  # fmt: skip


GCC = "GPL-3.0-or-later WITH GCC-exception-3.1"
GCC_NOTICE = DOCUMENTS / "gcc-mingw-w64-base" / "copyright"
MINGW_NOTICE = DOCUMENTS / "mingw-w64-common" / "copyright"
STDCXX = Component("libstdc++", "C++ standard library", GCC, "g++-mingw-w64-x86-64-posix", GCC_NOTICE, ("GPL-3",))
LIBGCC = Component("libgcc", "run-time library of the compiler", GCC, "gcc-mingw-w64-x86-64-posix", GCC_NOTICE, ("GPL-3",))
# Some of its files have terms of their own, all of them permissive; the notice has them.
RUNTIME = Component(
    "mingw-w64-runtime", "C run-time library, start-up code and import libraries", "ZPL-2.1 AND LicenseRef-mingw-w64-runtime",
    "mingw-w64-x86-64-dev",
    MINGW_NOTICE)  # fmt: skip
THREADS = Component("winpthreads", "threads", "MIT AND BSD-3-Clause", "mingw-w64-x86-64-dev", MINGW_NOTICE)
# What the set-up program brings along that is not ours: it unpacks and runs the script.
INSTALLER = Component(
    "nsis", "set-up program", "Zlib AND MIT AND CPL-1.0 WITH LZMA-exception", "nsis", DOCUMENTS / "nsis" / "copyright")

LIBRARIES = {
    "libstdc++.a": STDCXX,
    "libgcc.a": LIBGCC,
    "libgcc_eh.a": LIBGCC,
    "libpthread.a": THREADS,
    "libwinpthread.a": THREADS,
}
# Names of import libraries and of the C run-time library's parts, in the tool chain's own folder.
RUNTIME_FOLDER = "/usr/x86_64-w64-mingw32/lib/"

_MEMBER = re.compile(r"^(\S.*?\.a)\(", re.MULTILINE)


def linked_libraries(linker_map: str) -> set[str]:
    """The libraries of others of which something was linked, as paths without ".."."""
    members = linker_map.split("\nDiscarded input sections", 1)[0].split("\nMemory Configuration", 1)[0]
    paths = {Path(found).resolve() for found in _MEMBER.findall(members) if found.startswith("/")}
    return {str(path) for path in paths if not path.is_relative_to(REPO)}


def components_of(linker_maps: Iterable[str]) -> list[Component]:
    """What the maps show, by name. Raises UnknownComponent."""
    found = set()
    for linker_map in linker_maps:
        for library in linked_libraries(linker_map):
            component = LIBRARIES.get(Path(library).name)
            if component is None and library.startswith(RUNTIME_FOLDER):
                component = RUNTIME
            if component is None:
                raise UnknownComponent(f"{library} is linked in: enter its licence in {Path(__file__).name}")
            found.add(component)
    return sorted(found, key=lambda component: component.name)


def read_maps(paths: Iterable[Path]) -> list[str]:
    return [path.read_text(encoding="utf-8", errors="replace") for path in paths]


def licence_text(components: list[Component]) -> str:
    """What ships beside the programs: who made which part, and the terms in full."""
    rule = "=" * 78 + "\r\n"
    lines = ["Marlok Backup Utility holds parts made by others:\r\n\r\n"]
    lines += [f"  {part.name}: {part.what} ({part.licence})\r\n" for part in components]
    lines.append("\r\nThe licence of the program itself is in the file LICENSE. The terms of these parts follow.\r\n")
    notices = sorted({part.notice for part in components})
    common = sorted({COMMON_LICENCES / name for part in components for name in part.common})
    for path in (*notices, *common):
        users = ", ".join(part.name for part in components if path == part.notice or path.name in part.common)
        text = path.read_text(encoding="utf-8", errors="replace")
        lines += ["\r\n", rule, f"Of {users}\r\n", rule, "\r\n", text.replace("\r\n", "\n").replace("\n", "\r\n")]
    return "".join(lines)


def main(arguments: list[str]) -> int:
    if len(arguments) < 2:
        print("usage: components.py FILE MAP…", file=sys.stderr)
        return 2
    try:
        text = licence_text(components_of(read_maps(map(Path, arguments[1:]))))
    except (OSError, UnknownComponent) as fault:
        print(f"components.py: {fault}", file=sys.stderr)
        return 1
    Path(arguments[0]).write_text(text, encoding="utf-8", newline="")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
