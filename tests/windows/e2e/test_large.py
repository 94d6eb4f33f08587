"""Many files, and big ones."""

from __future__ import annotations

import os
import shutil

import pytest
from harness import Machine, tree_of, working_files_in, write

DAILY = r"E:\Daily"


def seed_files(machine: Machine, count: int, folders: int) -> None:
    moment = 1_700_000_000 * 10**9
    for folder in range(folders):
        (machine.d / "Data" / f"f{folder}").mkdir(parents=True, exist_ok=True)
    for number in range(count):
        path = machine.d / "Data" / f"f{number % folders}" / f"{number}.txt"
        path.write_bytes(b"%d\n" % number)
        os.utime(path, ns=(moment, moment))


def save_and_check(machine: Machine, count: int, timeout: float) -> None:
    machine.configure({DAILY: [r"D:\Data"]})

    ended = machine.run("C", timeout=timeout)

    assert ended.code == 0, machine.errors()[:5]
    assert len(machine.copied()) == count
    assert len(set(machine.listed("Daily"))) == count
    assert tree_of(machine.e / "Daily") == tree_of(machine.d)
    assert working_files_in(machine.e) == []
    assert machine.run("C", timeout=timeout).code == 0
    assert machine.copied() == []


# One more than a 16-bit counter holds, and some.
MANY = 33_000


@pytest.mark.long
def test_more_files_in_one_folder_than_a_16_bit_counter_holds(machine: Machine) -> None:
    # Nearly all of them saved before: each new name in a folder costs Wine a walk through the whole folder. The saved
    # copies are second names of the originals, which are quickly made, but for those that are written to here.
    seed_files(machine, MANY, 1)
    shutil.copytree(machine.d, machine.e / "Daily", copy_function=os.link)
    source, saved = machine.d / "Data" / "f0", machine.e / "Daily" / "Data" / "f0"
    for number in range(0, MANY, 1000):
        (saved / f"{number}.txt").unlink()
    for number in range(500, MANY, 1000):
        (source / f"{number}.txt").unlink()
        write(source / f"{number}.txt", "changed")
    machine.configure({DAILY: [r"D:\Data"]})

    ended = machine.run("C", timeout=120)

    assert ended.code == 0, machine.errors()[:5]
    assert len(machine.copied()) == 2 * MANY // 1000
    assert tree_of(machine.e / "Daily") == tree_of(machine.d)


@pytest.mark.nightly
def test_a_first_run_over_one_folder_of_that_size(machine: Machine) -> None:
    seed_files(machine, MANY, 1)
    save_and_check(machine, MANY, 1800)


def test_a_deep_and_wide_tree_of_folders(machine: Machine) -> None:
    for number in range(600):
        write(machine.d / "Data" / f"a{number % 6}" / f"b{number % 30}" / f"c{number}" / "x.txt", str(number))
    save_and_check(machine, 600, 120)


@pytest.mark.nightly
def test_a_hundred_thousand_files(machine: Machine) -> None:
    seed_files(machine, 100_000, 200)
    save_and_check(machine, 100_000, 1200)


@pytest.mark.nightly
def test_a_file_over_four_gigabytes(machine: Machine) -> None:
    big = write(machine.d / "Data" / "big.img", b"begin")
    with big.open("r+b") as file:
        file.seek(4 * 1024**3 + 123)
        file.write(b"end")
    os.utime(big, (1_700_000_000, 1_700_000_000))
    save_and_check(machine, 1, 1200)
