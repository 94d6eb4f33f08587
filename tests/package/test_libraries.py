"""The program takes its libraries from Windows, whatever lies beside it."""

from __future__ import annotations

import re
import shutil
import subprocess
from pathlib import Path

import pytest
from harness import PROGRAM, REPO, Machine, wait_until

PLANTED = REPO / "build" / "windows" / "tests" / "planted.dll"
LOADER = REPO / "build" / "windows" / "tests" / "load_by_name.exe"
TITLE = "Marlok Backup Utility"

# Libraries that Windows loads from its own folder whoever asks, or from its store of side-by-side versions (that of the
# common controls, which the manifest asks for).
PROTECTED = set(
    "advapi32 comctl32 gdi32 kernel32 msvcrt ole32 oleaut32 rpcrt4 shcore shell32 shlwapi user32".split()  # fmt: skip
)
# Those of the others that the program uses.
BESIDE = ["version", "wininet"]
# Wine's own window library is linked to this one, so every program with windows has it before its first line. That of
# Windows is not; the test above has to do for it.
WINE_LOADS = {"version.dll.loaded"}


@pytest.mark.parametrize("name", [PROGRAM, "Restart.sec"])
def test_only_protected_libraries_are_loaded_with_the_program(shipped: Path, name: str) -> None:
    headers = subprocess.run(
        ["x86_64-w64-mingw32-objdump", "-p", str(shipped / name)], capture_output=True, text=True, check=True).stdout  # fmt: skip
    libraries = {found.lower() for found in re.findall(r"DLL Name: (\S+)\.dll", headers, re.IGNORECASE)}
    assert libraries, "objdump tells of no library at all"
    assert libraries <= PROTECTED


def traces(folder: Path) -> set[str]:
    return {path.name.lower() for path in folder.glob("*.loaded")}


def loaded(machine: Machine) -> set[str]:
    """The libraries in the programs that run."""
    lines = [line for process in machine.running() for line in Path(f"/proc/{process}/maps").read_text().splitlines()]
    return {line.rsplit("/", 1)[-1].lower() for line in lines if "/" in line}


@pytest.fixture
def planted(machine: Machine, wine, monkeypatch: pytest.MonkeyPatch) -> Path:
    """The program's folder, with libraries in it that the program is not to load."""
    assert PLANTED.exists(), f"{PLANTED} is not there: scripts/build --all"
    for name in BESIDE:
        shutil.copyfile(PLANTED, machine.folder / f"{name}.dll")
    # Wine prefers its own libraries to others, unless it is told otherwise; Windows has no such preference.
    monkeypatch.setitem(wine.env, "WINEDLLOVERRIDES", f"{wine.env['WINEDLLOVERRIDES']};{','.join(BESIDE)}=n,b")
    return machine.folder


def test_what_lies_beside_a_program_that_takes_no_care_is_loaded(planted: Path, machine: Machine, wine) -> None:
    """So that the test below can fail."""
    shutil.copyfile(LOADER, planted / LOADER.name)
    for name in BESIDE:
        assert wine.run([f"{machine.windows_folder}\\{LOADER.name}", name]).returncode == 0
    assert traces(planted) == {f"{name}.dll.loaded" for name in BESIDE}


def test_what_lies_beside_the_program_is_not_loaded(planted: Path, machine: Machine, wine) -> None:
    machine.configure({r"E:\Daily": [r"D:\Data"]})
    # The program starts itself again by a copy of this one.
    shutil.copyfile(planted / "Restart.sec", planted / "Restart.exe")
    assert wine.run([machine.windows_folder + r"\Restart.exe", "1", "1"]).returncode == 0
    window = machine.window(TITLE)
    window.click("About")  # reads the program's version record
    machine.window(TITLE + "|Version 4.0.0").key("Escape")
    assert wait_until(lambda: machine.windows() == [TITLE], 10), machine.windows()
    # Asks whether there is a connection, and then for a browser that it can drive, for which no test has the time.
    window.click("Donation")
    assert wait_until(lambda: "wininet.dll" in loaded(machine), 15)
    assert machine.end_what_runs()
    assert traces(planted) - WINE_LOADS == set()
