"""What a run does when something cannot be done: the rest is saved, the rest is told, nothing is lost."""

from __future__ import annotations

import os
from pathlib import Path

import pytest
from harness import (
    DELETE_LIST,
    ERROR_LOG,
    MISSING_DRIVE,
    SHORTCUT,
    Ended,
    Machine,
    tree_of,
    working_files_in,
    write,
)

DAILY = r"E:\Backups\Daily"
NAME = r"Backups\Daily"


def assert_told(machine: Machine, ended: Ended, *paths: str) -> None:
    """The run ended as one in which something failed, and its error log has a line for each of the paths."""
    lines = machine.errors()
    assert ended.code == 1, lines
    for path in paths:
        matching = [line for line in lines if line.startswith(path + ": ")]
        assert len(matching) == 1, (path, lines)
        assert len(matching[0]) > len(path) + 2, "no reason"
    # The records of the run are there whatever failed.
    machine.copied()
    assert (machine.desktop / SHORTCUT).exists()
    assert not (machine.folder / "Command.txt").exists()


def test_a_file_in_use_is_told_and_the_rest_is_saved(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    write(machine.d / "Data" / "open.mdb", "in use")
    write(machine.d / "Data" / "z.doc", "z")
    machine.configure({DAILY: [r"D:\Data"]})

    with machine.held(r"D:\Data\open.mdb"):
        ended = machine.run("C", NAME)

    assert_told(machine, ended, r"D:\Data\open.mdb")
    assert len(machine.errors()) == 1
    assert machine.errors()[0].endswith(": the file is in use by another program (error 32)")
    assert set(tree_of(machine.e / "Backups/Daily")) == {"Data", "Data/a.doc", "Data/z.doc"}
    assert len(machine.copied()) == 2
    assert r"D:\Data\open.mdb" not in machine.listed(NAME)

    assert machine.run("C", NAME).code == 0
    assert machine.copied() == [DAILY + r"\Data\open.mdb"]
    assert not (machine.folder / ERROR_LOG).exists()


def test_the_old_copy_of_a_file_in_use_stays_whole(machine: Machine) -> None:
    write(machine.d / "Data" / "open.mdb", "one")
    machine.configure({DAILY: [r"D:\Data"]})
    assert machine.run("C", NAME).code == 0
    saved = tree_of(machine.e)
    write(machine.d / "Data" / "open.mdb", "two", hours_ago=1)

    with machine.held(r"D:\Data\open.mdb"):
        ended = machine.run("C", NAME)

    assert_told(machine, ended, r"D:\Data\open.mdb")
    assert tree_of(machine.e) == saved


def test_a_source_that_is_not_there_is_told(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    machine.configure({DAILY: [r"D:\Gone", r"D:\gone.txt", r"D:\Data"]})

    ended = machine.run("C", NAME)

    assert_told(machine, ended, r"D:\Gone", r"D:\gone.txt")
    assert machine.copied() == [DAILY + r"\Data\a.doc"]


def test_copy_all_keeps_what_was_saved_of_a_source_that_is_not_there(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    write(machine.d / "Stick" / "b.doc", "b")
    machine.configure({DAILY: [r"D:\Data", r"D:\Stick"]})
    assert machine.run("A", NAME).code == 0
    (machine.d / "Stick").rename(machine.d / "pulled out")

    ended = machine.run("A", NAME)

    assert ended.code == 1
    assert (machine.e / "Backups/Daily/Stick/b.doc").read_text() == "b"


def test_a_single_file_without_a_folder_to_go_to_is_told(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    machine.configure({DAILY: [r"D:\Data\a.doc"]})

    ended = machine.run("C", NAME)

    assert_told(machine, ended, r"D:\Data\a.doc")
    assert machine.copied() == []


def test_a_location_on_a_drive_that_is_not_there(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    away = rf"{MISSING_DRIVE}:\Backups"
    machine.configure({away: [r"D:\Data"], r"E:\Weekly": [r"D:\Data"]})

    ended = machine.run("C")

    assert ended.code == 1
    assert any(line.startswith(away) for line in machine.errors()), machine.errors()
    assert machine.copied() == [r"E:\Weekly\Data\a.doc"]


def test_a_location_that_cannot_be_written(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    # The kernel's own files: nobody makes a folder there, whatever the rights.
    machine.plug("r", Path("/proc/self/task"))
    machine.configure({r"R:\Backups": [r"D:\Data"]})

    ended = machine.run("C")

    assert ended.code == 1
    assert any(line.startswith("R:\\Backups") for line in machine.errors()), machine.errors()
    assert machine.copied() == []


def test_a_location_that_is_a_file(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    write(machine.e / "Backups", "a file where the folder should be")
    machine.configure({r"E:\Backups": [r"D:\Data"]})

    ended = machine.run("A")

    assert ended.code == 1
    assert machine.errors() != []
    assert machine.copied() == []
    assert (machine.e / "Backups").read_text() == "a file where the folder should be"


def test_a_full_disk_leaves_no_torn_copy(machine: Machine, small_disk: tuple[Path, dict[str, int]]) -> None:
    disk, options = small_disk
    write(machine.d / "Data" / "a small.doc", "fits")
    write(machine.d / "Data" / "big.bin", os.urandom(2 << 20))
    machine.configure({r"F:\Daily": [r"D:\Data"]})

    ended = machine.run("C", **options)

    assert_told(machine, ended, r"D:\Data\big.bin")
    assert set(tree_of(disk)) == {"Daily", "Daily/Data", "Daily/Data/a small.doc"}
    assert machine.copied() == [r"F:\Daily\Data\a small.doc"]


def test_a_full_disk_keeps_the_old_copy(machine: Machine, small_disk: tuple[Path, dict[str, int]]) -> None:
    disk, options = small_disk
    big = write(machine.d / "Data" / "big.bin", os.urandom(600_000))
    machine.configure({r"F:\Daily": [r"D:\Data"]})
    assert machine.run("C", **options).code == 0
    saved = tree_of(disk)
    write(big, os.urandom(2 << 20), hours_ago=1)

    ended = machine.run("C", **options)

    assert_told(machine, ended, r"D:\Data\big.bin")
    assert tree_of(disk) == saved
    assert machine.copied() == []


@pytest.mark.parametrize("location", [r"E:\DeleteFolder", r"E:\deletefolder", r"E:\DeleteFolder.", r"E:\Command"])
def test_a_location_must_not_take_the_name_of_a_program_file(machine: Machine, location: str) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    write(machine.d / "Data" / "deep" / "b.doc", "b")
    machine.configure({location: [r"D:\Data"], r"E:\Weekly": [r"D:\Data"]})
    originals = tree_of(machine.d)

    for _ in range(2):
        ended = machine.run("C")

        assert ended.code == 1
        assert any(line.startswith(location + ": ") for line in machine.errors()), machine.errors()
        assert tree_of(machine.d) == originals
        assert not (machine.folder / DELETE_LIST).exists()
    assert set(tree_of(machine.e)) == {
        "Weekly", "Weekly/Data", "Weekly/Data/a.doc", "Weekly/Data/deep", "Weekly/Data/deep/b.doc"}  # fmt: skip


def test_a_location_that_holds_its_own_source_is_left_alone(machine: Machine) -> None:
    write(machine.d / "Work" / "Data" / "a.doc", "the original")
    machine.configure({r"D:\Work": [r"D:\Work\Data"]})
    before = tree_of(machine.d)

    ended = machine.run("A")

    assert_told(machine, ended, r"D:\Work", r"D:\Work\Data")
    assert tree_of(machine.d) == before


def test_a_location_that_holds_a_source_of_another_is_not_emptied(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    write(machine.d / "Work" / "Plans" / "b.doc", "the original")
    machine.configure({r"D:\Work": [r"D:\Data"], r"E:\Weekly": [r"D:\Work\Plans"]})

    ended = machine.run("A")

    assert_told(machine, ended, r"D:\Work")
    assert (machine.d / "Work/Plans/b.doc").read_text() == "the original"
    assert sorted(machine.copied()) == [r"D:\Work\Data\a.doc", r"E:\Weekly\Work\Plans\b.doc"]


def test_a_location_that_holds_the_program_is_not_emptied(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    location = machine.windows_folder.rsplit("\\", 1)[0]
    machine.configure({location: [r"D:\Data"]})
    shipped = tree_of(machine.folder)

    ended = machine.run("A")

    assert ended.code == 1
    assert any(line.startswith(location + ": ") for line in machine.errors()), machine.errors()
    assert shipped.items() <= tree_of(machine.folder).items()
    assert (machine.folder.parent / "Data" / "a.doc").read_text() == "a"


def test_a_source_that_holds_the_location_does_not_nest_it(machine: Machine) -> None:
    write(machine.e / "All" / "a.doc", "a")
    machine.configure({r"E:\All\Daily": [r"E:\All"]})

    machine.run("C")
    first = set(tree_of(machine.e))
    machine.run("C")

    assert set(tree_of(machine.e)) == first
    assert first == {"All", "All/a.doc", "All/Daily", "All/Daily/All", "All/Daily/All/a.doc"}


def test_copy_all_deletes_nothing_through_a_folder_link(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    outside = machine.e / "Photos"
    write(outside / "only copy.jpg", "not of this location")
    write(outside / "2023" / "another.jpg", "neither")
    before = tree_of(outside)
    location = machine.e / "Backups" / "Daily"
    (location / "sub").mkdir(parents=True)
    for link in (location / "link", location / "sub" / "link"):
        link.symlink_to(outside, target_is_directory=True)
    machine.configure({DAILY: [r"D:\Data"]})

    machine.run("A", NAME)

    assert tree_of(outside) == before
    assert (location / "Data" / "a.doc").read_text() == "a"


def test_links_that_lead_round_are_not_followed(machine: Machine) -> None:
    write(machine.d / "Data" / "sub" / "a.doc", "a")
    (machine.d / "Data" / "sub" / "up").symlink_to("..", target_is_directory=True)
    machine.configure({DAILY: [r"D:\Data"]})

    machine.run("C", NAME)

    files = [path for path in tree_of(machine.e / "Backups" / "Daily") if path.endswith("a.doc")]
    assert files == ["Data/sub/a.doc"]
    assert working_files_in(machine.e) == []
