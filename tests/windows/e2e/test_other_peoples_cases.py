"""What other people have collected: strings that break programs, as names, and trees that nobody made for a test."""

from __future__ import annotations

import json
import os
import shutil
import subprocess
from pathlib import Path

import pytest
from harness import Machine, tree_of, wait_until, write

TITLE = "Marlok Backup Utility"
REPLACEMENT = "Marlok Backup Utility File Replacement Program"
MESSAGE = "Marlok Info....."
LIST = "List of Saved Files"
DAILY = r"E:\Daily"

# The Big List of Naughty Strings, under its own licence beside it.
NAUGHTY = Path(__file__).with_name("naughty") / "blns.json"

# Where Debian and others keep modules of Node.js: small files, deep down.
MODULES = (Path("/usr/share/nodejs"), Path("/usr/lib/node_modules"))

# Bytes of a name on the disk below the Wine machine.
LONGEST = 200


def naughty_names() -> list[str]:
    """The strings as names that Windows can hold: its forbidden characters stand as "_"."""
    names: dict[str, str] = {}
    for text in json.loads(NAUGHTY.read_text(encoding="utf-8")):
        name = "".join("_" if ord(letter) < 32 or letter in '\\/:*?"<>|' else letter for letter in text)
        name = name.encode("utf-8", "ignore")[:LONGEST].decode("utf-8", "ignore").rstrip(". ")
        if name:
            names.setdefault(name.casefold(), name)
    return list(names.values())


def showing_saved(machine: Machine, count: int):
    window = machine.window(TITLE, 20)
    window.tab("Review Saved")
    window.click("Show Saved Files")
    assert wait_until(lambda: window.count(LIST) == count, 60), window.count(LIST)
    return window


def test_naughty_strings_are_names_like_others(machine: Machine) -> None:
    names = naughty_names()
    assert len(names) > 300
    for number, name in enumerate(names):
        write(machine.d / "Data" / name, f"{number} as a file")
        write(machine.d / "Data" / "Folders" / name / "inside.txt", f"{number} as a folder")
    machine.configure({DAILY: [r"D:\Data"]})
    before = tree_of(machine.d)
    count = 2 * len(names)

    assert machine.run("C", timeout=120).code == 0, machine.errors()
    assert tree_of(machine.e / "Daily") == before
    assert len(machine.listed("Daily")) == count
    assert machine.run("C", timeout=120).code == 0, machine.errors()
    assert machine.copied() == []
    assert machine.run("A", timeout=120).code == 0, machine.errors()
    assert tree_of(machine.e / "Daily") == before
    assert len(machine.listed("Daily")) == count

    # All come back after the originals are gone, and all can be deleted.
    shutil.rmtree(machine.d / "Data")
    process = machine.start()
    window = showing_saved(machine, count)
    window.select(LIST, 0)
    window.key("Shift+End")
    window.click("Replace Selected Files")
    machine.answer(MESSAGE, "You Are About To Replace Selected Files", "OK")
    done = machine.window(REPLACEMENT + "|File Replacement Completed", 120)
    assert f"{count} Files Were Replaced" in done.texts(), machine.errors()
    assert tree_of(machine.d) == before
    done.click("Close")
    assert wait_until(lambda: machine.windows() == [TITLE], 10)

    assert window.count(LIST) == count
    window.select(LIST, 0)
    window.key("Shift+End")
    window.click("Delete Entry")
    machine.answer(MESSAGE, "You Are About To Delete Selections From The Saved Files", "OK")
    assert wait_until(lambda: not any(names for _, _, names in os.walk(machine.e / "Daily")), 120)
    # The program starts again by itself, which removes the folders.
    assert wait_until(lambda: process.process.poll() is not None and machine.running(), 30)
    assert wait_until(lambda: sum(1 for _ in os.walk(machine.e / "Daily")) <= 1, 60)
    machine.window(TITLE, 20).close()
    assert wait_until(lambda: not machine.running(), 20)


def same_as(source: Path, saved: Path) -> list[str]:
    """What a program that knows nothing of ours finds different: contents, times, missing and added files. Links are
    saved as what they lead to."""
    done = subprocess.run(
        ["rsync", "-nrtcL", "--delete", "--itemize-changes", "--modify-window=1", f"{source}/", f"{saved}/"],
        capture_output=True, text=True, check=False, env={**os.environ, "LC_ALL": "C.UTF-8"})  # fmt: skip
    # A folder's own time is not saved; a link that leads nowhere or round is none of anybody's files.
    return [line for line in done.stdout.splitlines() if not line.startswith((".d", "skipping", "cd"))]


def taken_tree(machine: Machine, *folders: str) -> None:
    """Copies folders of this machine: with what a Windows program sees of them, links as what they lead to."""
    for folder in folders:
        target = machine.d / "Data" / Path(folder).name
        target.mkdir(parents=True)
        subprocess.run(
            ["rsync", "-rtL", "--copy-unsafe-links", "--exclude=*[\\\\:*?\"<>|]*", f"{folder}/", f"{target}/"],
            capture_output=True, check=False)  # fmt: skip
        assert any(target.iterdir()), folder
    # Names that differ only in letter case have no two copies on a Windows disk: other tests show that.
    for place, folders, names in os.walk(machine.d / "Data"):
        seen: set[str] = set()
        for name in [*folders, *names]:
            if name.casefold() in seen:
                twin = Path(place) / name
                shutil.rmtree(twin) if twin.is_dir() else twin.unlink()
            seen.add(name.casefold())


def assert_saved_whole(machine: Machine, timeout: float) -> None:
    machine.configure({DAILY: [r"D:\Data"]})
    files = sum(len(names) for _, _, names in os.walk(machine.d / "Data"))
    assert machine.run("C", timeout=timeout).code == 0, machine.errors()[:20]
    assert len(machine.copied()) == files
    assert same_as(machine.d / "Data", machine.e / "Daily" / "Data") == []
    assert machine.run("C", timeout=timeout).code == 0, machine.errors()[:20]
    assert machine.copied() == []


def test_a_tree_of_documents_is_saved_whole(machine: Machine) -> None:
    taken_tree(machine, "/usr/share/doc", "/usr/share/zoneinfo")
    assert_saved_whole(machine, 240)


@pytest.mark.nightly
def test_all_that_programs_share_is_saved_whole(machine: Machine) -> None:
    taken_tree(machine, "/usr/share")
    assert_saved_whole(machine, 1800)


@pytest.mark.nightly
@pytest.mark.skipif(not any(map(Path.is_dir, MODULES)), reason="this machine has no modules of Node.js")
def test_a_tree_of_modules_is_saved_whole(machine: Machine) -> None:
    taken_tree(machine, *(str(folder) for folder in MODULES if folder.is_dir()))
    assert_saved_whole(machine, 600)
