"""Saved files found again, put back and deleted, as a person does it."""

from __future__ import annotations

import os
import re
import shutil
import signal
from collections.abc import Iterator
from pathlib import Path

import pytest
from harness import DELETE_LIST, Machine, Window, file_entry, read_link, tree_of, wait_until, working_files_in, write

TITLE = "Marlok Backup Utility"
REPLACEMENT = "Marlok Backup Utility File Replacement Program"
MESSAGE = "Marlok Info....."
DAILY = r"E:\Daily"
LIST = "List of Saved Files"
PATHS = "List of Original Path Log"
READ_ONLY = 1
HIDDEN = 2


def review(machine: Machine) -> Window:
    """The main window on its tab "Review Saved"."""
    window = machine.window(TITLE, 20)
    window.tab("Review Saved")
    return window


def back(machine: Machine) -> None:
    """Waits until the main window, which is hidden while a question is open, is there again."""
    assert wait_until(lambda: machine.windows() == [TITLE], 10), machine.windows()


def counters(window: Window) -> list[str]:
    return [control.text for control in window.controls() if control.kind == "Edit"]


def showing_saved(window: Window, count: int) -> Window:
    window.click("Show Saved Files")
    assert wait_until(lambda: counters(window)[0] == f"{count:,}", 30)
    return window


@pytest.fixture
def saved(machine: Machine) -> Machine:
    """A machine whose documents, with names of all kinds, were backed up."""
    names = [
        "Letters/Müller, Jürgen.txt", "Letters/README", "Letters/page.html", "Letters/日本/味噌汁.txt",
        "Letters/🎂 cake.txt", "Letters/empty.dat", "Letters/.settings", "Letters/Old/deep.txt",
    ]  # fmt: skip
    for number, name in enumerate(names):
        write(machine.d / "Docs" / name, "" if "empty" in name else f"{number} {name}", hours_ago=24 + number)
    deep = machine.d / "Docs"
    for number in range(12):
        deep = deep / f"a folder with a rather long name, number {number}"
    write(deep / "end.txt", "deep down")
    machine.attributes(r"D:\Docs\Letters\README", READ_ONLY)
    machine.attributes(r"D:\Docs\Letters\empty.dat", HIDDEN)
    machine.configure({DAILY: [r"D:\Docs"]})
    assert machine.run("C").code == 0
    return machine


@pytest.fixture
def started(saved: Machine) -> Iterator[Machine]:
    """The same machine with the program running. It is closed at the end unless the test has ended it: nothing but its
    main window may be there then."""
    process = saved.start()
    yield saved
    if process.process.poll() is None:
        back(saved)
        saved.window(TITLE).close()
        assert saved.wait(process).code == 0


def test_everything_comes_back_after_the_originals_are_gone(saved: Machine) -> None:
    before = tree_of(saved.d / "Docs")
    attributes = [saved.attributes(r"D:\Docs\Letters" + "\\" + name) for name in ("README", "empty.dat")]
    shutil.rmtree(saved.d / "Docs")
    process = saved.start()
    window = showing_saved(review(saved), 9)
    assert len(window.lines(LIST)) == 9
    assert re.fullmatch(r"\d+\.\d\d  Seconds", counters(window)[1])
    assert not window.enabled("Replace Selected Files")

    window.select(LIST, *range(9))
    window.click("Replace Selected Files")
    saved.answer(MESSAGE, "You Are About To Replace Selected Files", "OK")
    done = saved.window(REPLACEMENT + "|File Replacement Completed", 30)
    assert "9 Files Were Replaced" in done.texts()
    assert tree_of(saved.d / "Docs") == before
    assert [saved.attributes(r"D:\Docs\Letters" + "\\" + name) for name in ("README", "empty.dat")] == attributes
    lines = saved.log_lines("Replaced File Log.txt")
    assert re.fullmatch(r"Total files replaced \w+day, \w{3} \d\d? \d{4} At \d\d:\d\d [AP]M was 9", lines[0])
    assert lines[1] == ""
    assert sorted(lines[2:]) == sorted(saved.listed("Daily"))
    link = read_link(saved.desktop / "Replaced File Log.lnk")
    assert link.target.endswith("Replaced File Log.txt")
    assert link.description == "Replaced Log File"
    assert working_files_in(saved.d) == []

    done.click("Close")
    assert wait_until(lambda: saved.windows() == [TITLE], 10)
    window.close()
    assert saved.wait(process).code == 0


def test_what_cannot_be_put_back_is_told_and_the_rest_comes_back(started: Machine) -> None:
    machine = started
    letters = machine.d / "Docs" / "Letters"
    listed = machine.folder / "Daily.txt"
    listed.write_bytes(b"".join(line for line in listed.read_bytes().splitlines(True) if b"page.html" not in line))
    window = showing_saved(review(machine), 9)
    (machine.e / "Daily" / "Docs" / "Letters" / ".settings").unlink()
    for name in ("README", "page.html", "Old/deep.txt", "Müller, Jürgen.txt"):
        write(letters / name, "changed since", hours_ago=0)
    lines = window.lines(LIST)
    chosen = [next(i for i, line in enumerate(lines) if line.endswith(name))
              for name in ("page.html", ".settings", "deep.txt", "Jürgen.txt")]  # fmt: skip
    window.select(LIST, *sorted(chosen))
    with machine.held(r"D:\Docs\Letters\Old\deep.txt"):
        window.click("Replace Selected Files")
        machine.answer(MESSAGE, "You Are About To Replace Selected Files", "OK")
        messages = set()
        for _ in range(2):
            box = machine.answer(MESSAGE, r"E:\Daily\Docs\Letters", "OK")
            messages.add(" ".join(box.texts).split()[-1])
        assert messages == {"Log", "Backup"} or messages == {"File"}
        machine.answer(MESSAGE, "All Selected Files, With The Exception of 1 Files, Copied", "OK")
        done = machine.window(REPLACEMENT + "|File Replacement Completed", 30)
        texts = done.texts()
    assert "2 Files Were Replaced" in texts
    assert '1 File Not Replaced, See "Backup Error Log.txt"' in texts
    assert r"D:\Docs\Letters\Old\deep.txt" in machine.errors()[0]
    assert (letters / "Müller, Jürgen.txt").read_text() != "changed since"
    assert (letters / "Old" / "deep.txt").read_text() == "changed since"
    assert (letters / "page.html").read_text() == "changed since"
    assert working_files_in(machine.d) == []
    done.click("Close")


def test_the_list_of_original_paths_is_shown_and_shortened(started: Machine) -> None:
    machine = started
    window = review(machine)
    window.click("Show Original Paths")
    paths = machine.listed("Daily")
    assert wait_until(lambda: window.lines(PATHS) == paths, 10)
    assert counters(window)[0] == "9"
    window.select(PATHS, 0, 2)
    window.click("Delete Entry")
    machine.answer(MESSAGE, "You Are About To Delete Selections From The Original Path Log", "Cancel")
    back(machine)
    assert machine.listed("Daily") == paths
    window.click("Delete Entry")
    machine.answer(MESSAGE, "You Are About To Delete Selections From The Original Path Log", "OK")
    back(machine)
    kept = [paths[1], *paths[3:]]
    assert wait_until(lambda: window.lines(PATHS) == kept, 10)
    assert machine.listed("Daily") == kept
    assert counters(window)[0] == "7"
    window.select(PATHS, *range(7))
    window.click("Delete Entry")
    machine.answer(MESSAGE, "You Are About To Delete", "OK")
    assert wait_until(lambda: not (machine.folder / "Daily.txt").exists(), 10)
    assert counters(window)[0] == "0"


def test_deleted_files_go_and_their_folders_after_the_restart(started: Machine) -> None:
    machine = started
    originals = tree_of(machine.d)
    first = set(machine.running())
    window = showing_saved(review(machine), 9)
    line = next(i for i, text in enumerate(window.lines(LIST)) if text.endswith("deep.txt"))
    window.select(LIST, line)
    window.click("Delete Entry")
    machine.answer(MESSAGE, "You Are About To Delete Selections From The Saved Files", "Cancel")
    back(machine)
    assert (machine.e / "Daily" / "Docs" / "Letters" / "Old" / "deep.txt").exists()
    window.click("Delete Entry")
    machine.answer(MESSAGE, "You Are About To Delete Selections From The Saved Files", "OK")

    # The program ends and comes back by itself; the folder that held nothing else goes with its next start.
    assert wait_until(lambda: machine.running() and not first & set(machine.running()), 30)
    again = machine.window(TITLE, 20)
    again.tabs()
    letters = machine.e / "Daily" / "Docs" / "Letters"
    assert wait_until(lambda: not (letters / "Old").exists(), 10)
    assert (letters / "README").exists()
    assert not (machine.folder / DELETE_LIST).exists()
    assert len(machine.listed("Daily")) == 8
    assert not any("deep.txt" in path for path in machine.listed("Daily"))
    assert tree_of(machine.d) == originals
    again.close()
    assert wait_until(lambda: not machine.running(), 20)


def test_an_empty_location_says_so(machine: Machine) -> None:
    (machine.e / "Empty").mkdir()
    machine.configure({r"E:\Empty": [r"D:\Docs"]})
    process = machine.start()
    window = review(machine)
    window.click("Show Saved Files")
    assert wait_until(lambda: window.lines(LIST) == [" " * 30 + "No Files In Backup Folder"], 10)
    assert counters(window)[0] == "0"
    window.click("Show Original Paths")
    assert wait_until(lambda: window.lines(PATHS) == [" " * 35 + "No Files In Original List"], 10)
    window.close()
    assert machine.wait(process).code == 0


def test_thousands_are_counted_with_commas(machine: Machine) -> None:
    for number in range(1234):
        write(machine.e / "Many" / f"{number % 7}" / f"{number}.txt", "x")
    machine.configure({r"E:\Many": [r"D:\Docs"]})
    process = machine.start()
    window = showing_saved(review(machine), 1234)
    assert counters(window)[0] == "1,234"
    window.close()
    assert machine.wait(process).code == 0


# Enough to be caught while they are put back.
BIG = 300


def big_files(machine: Machine, version: str, hours_ago: float) -> str:
    """Writes all of them, each with the same content; what `file_entry` says of that."""
    folder = machine.d / "Docs" / "Big"
    for number in range(BIG):
        path = write(folder / f"{number}.bin", version.encode() * 20_000, hours_ago)
    return file_entry(path).content


def contents(machine: Machine) -> list[str]:
    """The contents of the originals; what lies beside them while one is written does not count."""
    folder = machine.d / "Docs" / "Big"
    return [file_entry(path).content for path in folder.iterdir() if not path.name.startswith("~")]


def replace_all(machine: Machine) -> int:
    """Begins to put all of them back, and what stands behind them in the list; how many files that are."""
    machine.start()
    window = showing_saved(review(machine), 9 + BIG)
    lines = window.lines(LIST)
    first = next(number for number, line in enumerate(lines) if "Big" in line)
    window.select(LIST, first)
    window.key("Shift+End")
    window.click("Replace Selected Files")
    machine.answer(MESSAGE, "You Are About To Replace Selected Files", "OK")
    return len(lines) - first


def test_killed_while_files_are_put_back_every_original_is_whole(saved: Machine) -> None:
    machine = saved
    old = big_files(machine, "what was saved", 24)
    assert machine.run("C").code == 0
    folder = machine.d / "Docs" / "Big"
    for round_number, enough in enumerate((1, 60, 150)):
        new = big_files(machine, f"changed, round {round_number}", 0)
        # Read by their times alone while they come back: that is quick enough to be in between.
        before = {path: path.stat().st_mtime_ns for path in folder.glob("[!~]*")}
        replace_all(machine)

        def back_again() -> int:
            return sum(path.exists() and path.stat().st_mtime_ns != moment for path, moment in before.items())

        assert wait_until(lambda: back_again() >= enough, 30)
        for process_id in machine.running():
            os.kill(process_id, signal.SIGKILL)
        assert wait_until(lambda: not machine.running(), 20)
        # Windows exchanges two files in two steps: an original that was on its way has its name back after a start.
        assert machine.run("C", "no such location").code == 2
        found = contents(machine)
        assert len(found) == BIG
        assert set(found) == {old, new}, "whole, and killed on the way"

    count = replace_all(machine)
    done = machine.window(REPLACEMENT + "|File Replacement Completed", 30)
    assert f"{count} Files Were Replaced" in done.texts()
    assert contents(machine) == [old] * BIG
    assert working_files_in(machine.d) == []
    done.click("Close")
    back(machine)
    machine.window(TITLE).close()
    assert wait_until(lambda: not machine.running(), 20)
