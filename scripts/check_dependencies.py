#!/usr/bin/python3
"""Holds the include lines to the rules of the house.

Dependencies run one way, as the table below has them, and the operating system stays in win32. No circle of includes
goes beyond a class and its collaborator, the drawing of the house in docs/architecture.md is true, and nothing that a
merge or an editor has left lies about. Prints each breach as "file:line: what is wrong" and fails when there is one.

With --headers, compiles headers alone instead (syntax only): those that no source shows to stand alone by including
them first.
"""

from __future__ import annotations

import os
import re
import subprocess
import sys
from collections import deque
from collections.abc import Callable
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from repo_files import REPO, repo_files  # noqa: E402

# Where Debian's package puts its sources, headers included.
GOOGLETEST = "/usr/src/googletest"

# What the files of a folder may include beside those of the folder itself.
MAY_INCLUDE = {
    "text": [],
    "platform": [],
    "paths": ["text"],
    "fileops": ["text", "platform", "paths"],
    "settings": ["text", "platform", "paths"],
    "engine": ["text", "platform", "paths", "fileops", "settings"],
    "forms": ["text", "platform", "paths"],
    "ui": ["text", "platform", "paths", "fileops", "settings", "engine", "forms", "ui/run"],
    "ui/run": ["text", "platform", "paths", "fileops", "settings", "engine", "forms"],
    "app": ["text", "platform", "paths", "fileops", "settings", "engine", "forms", "ui", "ui/run"],
    "win32": ["text", "platform", "paths", "forms", "win32/machine", "win32/views"],
    "win32/machine": ["text", "platform", "paths"],
    "win32/views": ["text", "platform", "paths", "forms", "win32/machine"],
    # A Windows program and nothing else; it shares the owners of handles with the real machine.
    "restart": ["win32/machine"],
}

# The page that draws this table for its readers: a block "```house" with a line "folder -> names" for each folder.
DRAWING = "docs/architecture.md"

# Folders that may see the operating system.
WINDOWS_FOLDERS = ("win32/", "restart/", "tests/windows/", "tests/bench/")
# The one file above it that names the real machine.
ENTRY_POINT = "app/EntryPoint.cpp"

# Units (a header and its source) that know each other round more than one corner, and why they may. One that has come
# undone is taken off.
KNOTS = [
    # The window kit's core: controls belong to a form, forms to the windows, and these fire the forms' timers.
    {"forms/Control", "forms/Controls", "forms/Form", "forms/TabControl", "forms/Windows"},
    # One service on one disk, in three files: its calls, its open files, its copies.
    {"tests/machine/InMemoryCopy", "tests/machine/InMemoryFile", "tests/machine/InMemoryFiles"},
]

# What merges and editors leave beside the files they work on.
LEFTOVERS = (".orig", ".rej", "~")

STANDARD_HEADERS = set(
    """algorithm any array atomic barrier bit bitset charconv chrono codecvt compare complex concepts condition_variable
    coroutine deque exception execution filesystem format forward_list fstream functional future initializer_list iomanip
    ios iosfwd iostream istream iterator latch limits list locale map memory memory_resource mutex new numbers numeric
    optional ostream queue random ranges ratio regex scoped_allocator semaphore set shared_mutex source_location span
    sstream stack stdexcept stop_token streambuf string string_view strstream syncstream system_error thread tuple
    type_traits typeindex typeinfo unordered_map unordered_set utility valarray variant vector version
    cassert cctype cerrno cfenv cfloat cinttypes climits clocale cmath csetjmp csignal cstdarg cstddef cstdint cstdio
    cstdlib cstring ctime cuchar cwchar cwctype""".split()
)

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
SYSTEM_SWITCH = re.compile(r"^\s*#\s*(?:el)?if.*\b(_WIN32|_WIN64|WIN32|__MINGW32__|__linux__|__unix__)\b")


def may_see_windows(name: str) -> bool:
    return name.startswith(WINDOWS_FOLDERS) or name == ENTRY_POINT


def folder_of(name: str) -> str:
    """The folder of the house that a file belongs to; "" when it stands in none."""
    folder = name.rpartition("/")[0]
    if folder.startswith("tests/"):
        return "tests"
    return folder if folder in MAY_INCLUDE else ""


def fault_of_own_include(name: str, included: str) -> str | None:
    """What is wrong with `name` including our header `included`; None when nothing is."""
    folder, target = folder_of(name), folder_of(included)
    if folder == "tests" and "/" not in included and (REPO / name).with_name(included).is_file():
        return None
    if not (REPO / included).is_file():
        return f'"{included}" is no path from the root of the repository'
    if included.startswith("resources/"):
        return None if may_see_windows(name) else "resources belong to the programs"
    if target == "":
        return f"no place in the house for {included}"
    if target.startswith("win32") and may_see_windows(name):
        return None if folder in ("tests", "app") or target in (folder, *MAY_INCLUDE[folder]) else not_for(folder, target)
    if folder == "tests":
        return "the real machine is named by the tests on it alone" if target.startswith("win32") else None
    return None if target in (folder, *MAY_INCLUDE[folder]) else not_for(folder, target)


def not_for(folder: str, target: str) -> str:
    return f"{folder}/ may not include {target}/"


def fault_of_system_include(name: str, included: str) -> str | None:
    if included in STANDARD_HEADERS or may_see_windows(name):
        return None
    if name.startswith("tests/") and included.startswith(("gtest/", "gmock/")):
        return None
    return f"<{included}> is not of the C++ standard library"


def faults_of(name: str) -> list[str]:
    faults = []
    first_own = None
    for number, line in enumerate((REPO / name).read_text(encoding="utf-8").splitlines(), 1):
        if SYSTEM_SWITCH.match(line) and not may_see_windows(name):
            faults.append(f"{name}:{number}: another file is compiled instead of a switch on the operating system")
        match = INCLUDE.match(line)
        if not match:
            continue
        own = match[1] == '"'
        if first_own is None:
            first_own = match[2]
        fault = (fault_of_own_include if own else fault_of_system_include)(name, match[2])
        if fault:
            faults.append(f"{name}:{number}: {fault}")
    if name.endswith(".cpp"):
        header = name[:-4] + ".h"
        if (REPO / header).is_file() and first_own != header:
            faults.append(f'{name}:1: its own header "{header}" comes first')
    elif name.endswith(".h") and "#pragma once" not in (REPO / name).read_text(encoding="utf-8"):
        faults.append(f"{name}:1: no #pragma once")
    return faults


Graph = dict[str, set[str]]
Circle = tuple[str, ...]


def unit_of(name: str) -> str:
    return name.rpartition(".")[0]


def include_graph(names: list[str], called: Callable[[str], str]) -> Graph:
    """What each of `names` includes among them, both by what `called` makes of their names."""
    graph: Graph = {called(name): set() for name in names}
    for name in names:
        lines = (REPO / name).read_text(encoding="utf-8").splitlines()
        included = {match[2] for match in map(INCLUDE.match, lines) if match and match[1] == '"'}
        graph[called(name)] |= {called(header) for header in included.intersection(names)} - {called(name)}
    return graph


def way_between(graph: Graph, start: str, end: str, straight: bool) -> list[str]:
    """The shortest way, both ends included; unless `straight`, over others. Empty when there is none."""
    ways, met = deque([[start]]), {start, end}
    while ways:
        way = ways.popleft()
        following = graph[way[-1]]
        if end in following and (straight or len(way) > 1):
            return [*way, end]
        for step in sorted(following - met):
            met.add(step)
            ways.append([*way, step])
    return []


def circles_in(graph: Graph, pairs: bool) -> set[Circle]:
    """For each step of `graph` the shortest circle that it belongs to, begun at its first name; those of two only when
    `pairs`."""
    circles = set()
    for start, following in graph.items():
        for step in following:
            circle = [start, *way_between(graph, step, start, straight=pairs)[:-1]]
            if len(circle) > 1:
                first = circle.index(min(circle))
                circles.add((*circle[first:], *circle[:first]))
    return circles


def check_circles() -> list[str]:
    names = [path.as_posix() for path in repo_files(".cpp", ".h")]
    # Headers in a circle compile by luck: what the first declares the second has not seen yet.
    headers = circles_in(include_graph([name for name in names if name.endswith(".h")], str), pairs=True)
    faults = [f"{circle[0]}:1: headers in a circle: {' -> '.join([*circle, circle[0]])}" for circle in sorted(headers)]
    # A source may include the header of a class that declares its own: the two work together. Three do not.
    units = circles_in(include_graph(names, unit_of), pairs=False)
    for circle in sorted(units):
        if not any(knot.issuperset(circle) for knot in KNOTS):
            faults.append(f"{circle[0]}.h:1: files in a circle: {' -> '.join([*circle, circle[0]])}")
    for knot in KNOTS:
        loose = knot - {unit for circle in units if knot.issuperset(circle) for unit in circle}
        faults += [f"scripts/check_dependencies.py:1: {unit} is in no circle any more" for unit in sorted(loose)]
    return faults


def drawn_house(lines: list[str]) -> dict[str, tuple[int, list[str]]]:
    """The folders of the drawing with the number of their line and what is behind their arrow. A folder that is drawn
    twice counts as the last one says."""
    drawn, inside = {}, False
    for number, line in enumerate(lines, 1):
        if line.startswith("```"):
            inside = line == "```house"
        elif inside:
            folder, _, names = line.partition("->")
            drawn[folder.strip()] = (number, names.split())
    return drawn


def check_drawing() -> list[str]:
    """The drawing of the house for its readers says what MAY_INCLUDE says."""
    drawn = drawn_house((REPO / DRAWING).read_text(encoding="utf-8").splitlines())
    faults = [f"{DRAWING}:1: {folder} is not drawn" for folder in MAY_INCLUDE if folder not in drawn]
    for folder, (number, names) in drawn.items():
        if folder not in MAY_INCLUDE:
            faults.append(f"{DRAWING}:{number}: {folder} is no folder of the house")
        elif sorted(names) != sorted(MAY_INCLUDE[folder]):
            faults.append(f"{DRAWING}:{number}: {folder} may include {' '.join(MAY_INCLUDE[folder]) or 'nothing'}")
    return faults


def check_leftovers() -> list[str]:
    left = [path.as_posix() for path in repo_files() if path.name.endswith(LEFTOVERS)]
    return [f"{name}:1: left behind by a merge or an editor" for name in left]


def check_includes() -> list[str]:
    names = [path.as_posix() for path in repo_files(".cpp", ".h")]
    faults = []
    for name in names:
        if folder_of(name):
            faults += faults_of(name)
        elif not name.startswith("resources/"):
            faults.append(f"{name}:1: no place in the house for it")
    print(f"{len(names)} files looked at")
    return faults


def is_compiled_behind_others(name: str) -> bool:
    """True for sources of the test programs: the test framework is precompiled and comes before their first line. So do
    the standard library's headers before the program's, but those sources clang-tidy compiles as they are."""
    return name.startswith(("tests/unit/", "tests/contract/")) or name.rpartition("/")[0] == "tests/windows"


def first_include(name: str) -> str | None:
    lines = (REPO / name).read_text(encoding="utf-8").splitlines()
    return next((match[2] for match in map(INCLUDE.match, lines) if match), None)


def headers_to_compile(names: list[str], sources: list[str]) -> list[str]:
    """Of the headers `names`, those that no source includes first: the others are compiled alone already."""
    shown = {first_include(source) for source in sources if not is_compiled_behind_others(source)}
    return [name for name in names if name not in shown]


def check_header_alone(name: str) -> str | None:
    compiler = ["g++"]
    if may_see_windows(name):
        switches = ["UNICODE", "_UNICODE", "NOMINMAX", "WIN32_LEAN_AND_MEAN", "_WIN32_WINNT=0x0A00"]
        compiler = ["x86_64-w64-mingw32-g++-posix", *(f"-D{switch}" for switch in switches)]
    googletest = ["-isystem", f"{GOOGLETEST}/googletest/include", "-isystem", f"{GOOGLETEST}/googlemock/include"]
    options = ["-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", "-Werror", "-I.", *googletest]
    # On standard input, so that the header is no "main file" with a pragma once to complain about.
    command = [*compiler, *options, "-x", "c++", "-"]
    unit = f'#include "{name}"\n'
    result = subprocess.run(command, cwd=REPO, input=unit, capture_output=True, text=True, check=False)
    return None if result.returncode == 0 else f"{name}:1: does not compile alone\n{result.stderr}"


def check_headers() -> list[str]:
    every = [path.as_posix() for path in repo_files(".h") if not path.is_relative_to("resources")]
    names = headers_to_compile(every, [path.as_posix() for path in repo_files(".cpp")])
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        faults = [fault for fault in pool.map(check_header_alone, names) if fault]
    print(f"{len(every)} headers, {len(names)} of them compiled here")
    return faults


def main() -> int:
    if sys.argv[1:] not in ([], ["--headers"]):
        print("usage: scripts/check_dependencies.py [--headers]", file=sys.stderr)
        return 2
    checks = [check_headers] if sys.argv[1:] else [check_includes, check_circles, check_drawing, check_leftovers]
    faults = [fault for check in checks for fault in check()]
    print("\n".join(faults), end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
