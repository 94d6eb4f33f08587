"""Runs that are killed. Nothing that was whole is torn, and the next run finishes the work."""

from __future__ import annotations

import os
import random
import time
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


class Versions:
    """Sources that are changed between runs, and what each of them has held."""

    def __init__(self, machine: Machine, files: int) -> None:
        self._folder = machine.d / "Data"
        self._saved = machine.e / "Daily" / "Data"
        self._names = [f"folder {number % 5}/file {number}.dat" for number in range(files)]
        self._version = 0
        self._held: dict[str, set[bytes]] = {name: set() for name in self._names}

    def write(self, part: float) -> None:
        """Writes a new version of so many of the files, each later than all before."""
        self._version += 1
        for name in random.sample(self._names, int(len(self._names) * part)):
            content = f"{self._version} {name} ".encode() * 200
            write(self._folder / name, content, 10_000 - self._version)
            self._held[name].add(content)

    def copies(self) -> set[str]:
        return {name for name in self._names if (self._saved / name).exists()}

    def torn(self, journals: list[bytes]) -> list[str]:
        """Saved copies that are no version that there ever was, and that no journal knows of."""
        # Of a journal's groups only the last, and what could not be settled, may be torn.
        pieces = [piece for journal in journals for piece in journal.split(b"group ")]
        known = {
            line.split(b"\t")[3]
            for piece in (*pieces[-1:], *(piece for piece in pieces if b"unsettled" in piece))
            for line in piece.splitlines()
            if line.count(b"\t") == 4 and line.split(b"\t")[2] == b"n"
        }
        return [
            name
            for name in self.copies()
            if (self._saved / name).read_bytes() not in self._held[name]
            and f"Data\\{name}".replace("/", "\\").encode() not in known
        ]


def kill_at_random(machine: Machine, kills: int) -> None:
    random.seed(kills)
    versions = Versions(machine, 200)
    machine.configure({DAILY: [r"D:\Data"]})
    versions.write(1.0)
    for number in range(kills):
        copied_before = versions.copies()
        process = machine.start(random.choice(("C", "C", "A")))
        time.sleep(random.uniform(0.05, 0.5))
        process.kill()
        assert wait_until(lambda: not machine.running())
        journals = [path.read_bytes() for path in (machine.e / "Daily").glob("~Marlok Backup.*.run")]
        assert versions.torn(journals) == [], f"after kill {number + 1}"
        assert copied_before <= versions.copies(), f"a copy is gone after kill {number + 1}"
        if number % 10 == 9:
            assert_repaired(machine, tree_of(machine.d))
        versions.write(random.choice((0.1, 0.5, 1.0)))
    assert_repaired(machine, tree_of(machine.d))


def test_killed_at_random(machine: Machine) -> None:
    kill_at_random(machine, 30)


@pytest.mark.nightly
def test_killed_a_thousand_times(machine: Machine) -> None:
    kill_at_random(machine, 1000)
