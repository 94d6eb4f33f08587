#!/usr/bin/python3
"""Holds the include lines to the rules of the house.

Dependencies run one way, as the table below has them, and the operating system stays in win32. Prints each breach as
"file:line: what is wrong" and fails when there is one.

With --headers, compiles every header alone instead (the host compiler, syntax only).
"""

from __future__ import annotations

import os
import re
import subprocess
import sys
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

# Folders that may see the operating system.
WINDOWS_FOLDERS = ("win32/", "restart/", "tests/windows/", "tests/bench/")
# The one file above it that names the real machine.
ENTRY_POINT = "app/EntryPoint.cpp"

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


def check_header_alone(name: str) -> str | None:
    # On standard input, so that the header is no "main file" with a pragma once to complain about.
    googletest = ["-isystem", f"{GOOGLETEST}/googletest/include", "-isystem", f"{GOOGLETEST}/googlemock/include"]
    compiler = ["g++", "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", "-Werror", "-I.", *googletest, "-x", "c++", "-"]
    result = subprocess.run(compiler, cwd=REPO, input=f'#include "{name}"\n', capture_output=True, text=True, check=False)
    return None if result.returncode == 0 else f"{name}:1: does not compile alone\n{result.stderr}"


def check_headers() -> list[str]:
    names = [path.as_posix() for path in repo_files(".h")]
    names = [name for name in names if not may_see_windows(name) and not name.startswith("resources/")]
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        faults = [fault for fault in pool.map(check_header_alone, names) if fault]
    print(f"{len(names)} headers compiled")
    return faults


def main() -> int:
    if sys.argv[1:] not in ([], ["--headers"]):
        print("usage: scripts/check_dependencies.py [--headers]", file=sys.stderr)
        return 2
    faults = check_headers() if sys.argv[1:] else check_includes()
    print("\n".join(faults), end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
