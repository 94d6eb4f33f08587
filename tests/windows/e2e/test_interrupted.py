"""Runs that are killed. Nothing that was whole is torn, and the next run finishes the work."""

from __future__ import annotations

import os
from pathlib import Path

import pytest
from harness import Machine, Tree, file_entry, tree_of, wait_until, without_working_files, working_files_in, write

DAILY = r"E:\Daily"
FILES = 1500

# Enough to be caught while it is copied.
MEGABYTES = 300


def seed_many(folder: Path, version: str, hours_ago: float) -> None:
    for number in range(FILES):
        content = f"{version} {number} ".encode() * (1 + number % 500)
        write(folder / f"folder {number % 15}" / f"file {number}.dat", content, hours_ago)


def files_in(folder: Path) -> int:
    return sum(len(files) for _, _, files in os.walk(folder))


def kill_after(machine: Machine, copies: int, is_copied) -> int:
    """Kills a run once so many files are copied; how many were by then. The run must not have ended by itself."""
    process = machine.start("C")
    assert wait_until(lambda: is_copied() >= copies, 60), f"{is_copied()} of {copies} copied"
    process.kill()
    reached = is_copied()
    assert reached < FILES, "the run had ended before it could be killed"
    return reached


def assert_repaired(machine: Machine, wanted: Tree) -> None:
    """The next run leaves what a run that was never disturbed would have left."""
    ended = machine.run("C")
    assert ended.code == 0, machine.errors()
    assert tree_of(machine.e / "Daily") == wanted
    assert working_files_in(machine.e) == []
    assert working_files_in(machine.folder) == []
    originals = ["D:\\" + path.replace("/", "\\") for path, entry in wanted.items() if entry.content is not None]
    assert sorted(machine.listed("Daily")) == sorted(originals)
    assert machine.run("C").code == 0
    assert machine.copied() == []


@pytest.mark.parametrize("copies", [1, 40, 700])
def test_a_first_run_that_was_killed(machine: Machine, copies: int) -> None:
    seed_many(machine.d / "Data", "one", 24)
    machine.configure({DAILY: [r"D:\Data"]})
    wanted = tree_of(machine.d)

    kill_after(machine, copies, lambda: files_in(machine.e / "Daily" / "Data"))

    assert_repaired(machine, wanted)


@pytest.mark.parametrize("copies", [1, 300])
def test_a_run_over_older_copies_that_was_killed(machine: Machine, copies: int) -> None:
    seed_many(machine.d / "Data", "one", 48)
    machine.configure({DAILY: [r"D:\Data"]})
    assert machine.run("C").code == 0
    old = tree_of(machine.e / "Daily")
    seed_many(machine.d / "Data", "the second version of", 24)
    new = tree_of(machine.d)
    # The saved copies by the order of the run: the log of the first one.
    saved = [machine.e / path[3:].replace("\\", "/") for path in machine.copied()]

    def renewed() -> int:
        count = 0
        for path in saved:
            if path.stat().st_mtime_ns // 100 == old[str(path.relative_to(machine.e / "Daily"))].written:
                break
            count += 1
        return count

    kill_after(machine, copies, renewed)

    left = without_working_files(tree_of(machine.e / "Daily"))
    assert left.keys() == old.keys()
    torn = [path for path in left if left[path] not in (old[path], new[path])]
    assert torn == []
    assert_repaired(machine, new)


def test_a_big_file_that_was_being_replaced(machine: Machine) -> None:
    big = write(machine.d / "Data" / "big.bin", os.urandom(1 << 20), 48)
    machine.configure({DAILY: [r"D:\Data"]})
    assert machine.run("C").code == 0
    saved = machine.e / "Daily" / "Data" / "big.bin"
    old = file_entry(saved)
    write(big, os.urandom(1 << 20) * MEGABYTES, 24)

    process = machine.start("C")
    assert wait_until(lambda: any(part.stat().st_size > 1 << 20 for part in saved.parent.glob("~Marlok*.part")), 30)
    process.kill()

    assert file_entry(saved) == old
    assert_repaired(machine, tree_of(machine.d))


def test_a_big_file_that_was_being_saved_for_the_first_time(machine: Machine) -> None:
    write(machine.d / "Data" / "big.bin", os.urandom(1 << 20) * MEGABYTES, 24)
    machine.configure({DAILY: [r"D:\Data"]})

    process = machine.start("C")
    assert wait_until(lambda: any(f.stat().st_size > 1 << 20 for f in (machine.e / "Daily").rglob("*.*")), 30)
    process.kill()

    assert_repaired(machine, tree_of(machine.d))


def test_killed_again_and_again(machine: Machine) -> None:
    seed_many(machine.d / "Data", "one", 24)
    machine.configure({DAILY: [r"D:\Data"]})
    wanted = tree_of(machine.d)

    reached = 0
    for _ in range(4):
        reached = kill_after(machine, reached + 100, lambda: files_in(machine.e / "Daily" / "Data"))

    assert_repaired(machine, wanted)


def test_a_killed_run_of_another_location_is_left_alone(machine: Machine) -> None:
    seed_many(machine.d / "Data", "one", 24)
    write(machine.d / "Small" / "a.doc", "a")
    machine.configure({DAILY: [r"D:\Data"], r"E:\Weekly": [r"D:\Small"]})
    kill_after(machine, 50, lambda: files_in(machine.e / "Daily" / "Data"))

    ended = machine.run("C", "Weekly")

    assert ended.code == 0, machine.errors()
    assert machine.copied() == [r"E:\Weekly\Small\a.doc"]
