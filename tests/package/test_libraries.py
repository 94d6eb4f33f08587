"""The program takes its libraries from Windows, whatever lies beside it."""

from __future__ import annotations

import re
import shutil
import subprocess
from pathlib import Path

import pytest
from harness import PROGRAM, REPO, Machine, wait_until

PLANTED = REPO / "build" / "windows" / "tests" / "planted.dll"
TITLE = "Marlok Backup Utility"

# Libraries that Windows loads from its own folder whoever asks, or from its store of side-by-side versions (that of the
# common controls, which the manifest asks for).
PROTECTED = set(
    "advapi32 comctl32 gdi32 kernel32 msvcrt ole32 oleaut32 rpcrt4 shcore shell32 shlwapi user32".split()  # fmt: skip
)
# What is laid beside the program: those that it uses and Windows does not protect, and some that others of Windows load.
BESIDE = ["version", "wininet", "uxtheme", "dwmapi", "propsys", "cryptbase", "iertutil", "urlmon", "winmm"]


@pytest.mark.parametrize("name", [PROGRAM, "Restart.sec"])
def test_only_protected_libraries_are_loaded_with_the_program(shipped: Path, name: str) -> None:
    headers = subprocess.run(
        ["x86_64-w64-mingw32-objdump", "-p", str(shipped / name)], capture_output=True, text=True, check=True).stdout  # fmt: skip
    libraries = {found.lower() for found in re.findall(r"DLL Name: (\S+)\.dll", headers, re.IGNORECASE)}
    assert libraries, "objdump tells of no library at all"
    assert libraries <= PROTECTED


def traces(folder: Path) -> list[str]:
    return sorted(path.name for path in folder.glob("*.loaded"))


def test_what_lies_beside_the_program_is_not_loaded(machine: Machine, wine) -> None:
    assert PLANTED.exists(), f"{PLANTED} is not there: scripts/build --all"
    for name in BESIDE:
        shutil.copyfile(PLANTED, machine.folder / f"{name}.dll")
    machine.configure({r"E:\Daily": [r"D:\Data"]})
    # The program starts itself again by a copy of this one.
    shutil.copyfile(machine.folder / "Restart.sec", machine.folder / "Restart.exe")
    assert wine.run([machine.windows_folder + r"\Restart.exe", "1", "1"]).returncode == 0
    window = machine.window(TITLE)
    assert wait_until(lambda: window.tabs(), 10)
    window.click("About")  # reads its version record
    about = machine.window("About Marlok Backup Utility")
    assert "Version 4.0.0" in about.texts()
    about.click("Make Donation")  # asks whether there is a connection
    assert wait_until(lambda: machine.windows() != [], 5)
    about.key("Escape")
    window.close()
    assert wait_until(lambda: not machine.running(), 15), machine.running()
    assert traces(machine.folder) == []


def test_the_planted_library_leaves_a_trace_where_it_is_loaded(machine: Machine, wine) -> None:
    """So that none means none."""
    shutil.copyfile(PLANTED, machine.folder / "version.dll")
    # Loads it, and reports that it has nothing to register.
    assert wine.run(["regsvr32.exe", "/s", machine.windows_folder + r"\version.dll"]).returncode != 0
    assert traces(machine.folder) == ["version.dll.loaded"]
