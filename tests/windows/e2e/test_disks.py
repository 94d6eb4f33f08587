"""Disks that are exchanged, that have two letters, that keep less of a file than others; and what the machine is."""

from __future__ import annotations

from pathlib import Path

import pytest
from harness import Machine, Volume, label_volume, tree_of, working_files_in, write

TITLE = "Marlok Backup Utility"


def test_the_machine_says_that_it_is_windows_10(machine: Machine, wine) -> None:
    said = wine.run(["cmd", "/c", "ver"]).stdout
    assert "Version 10.0." in said or "Windows 10.0." in said


def test_another_disk_under_the_same_letter_says_so(machine: Machine) -> None:
    one = label_volume(machine.e / "one", "STICK ONE", 0x1234ABCD)
    two = label_volume(machine.e / "two", "STICK TWO", 0xBEEF)

    machine.plug("f", one)
    assert machine.volume("F:\\") == Volume("NTFS", 0x1234ABCD, "fixed", "STICK ONE")
    machine.plug("f", two, "removable")
    assert machine.volume("F:\\") == Volume("NTFS", 0xBEEF, "removable", "STICK TWO")
    machine.plug("g", one)
    assert machine.volume("G:\\").serial == 0x1234ABCD
    machine.unplug("f")
    assert "error 3" in machine.tool("volume", "F:\\").errors


def test_a_disk_that_was_pulled_out_is_reported_and_taken_up_again(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    machine.configure({r"F:\Daily": [r"D:\Data"]})
    disk = label_volume(machine.e / "disk", "STICK ONE", 0x1000)
    machine.plug("f", disk)
    assert machine.run("C").code == 0, machine.errors()
    assert machine.copied() == [r"F:\Daily\Data\a.doc"]

    machine.unplug("f")
    assert machine.run("C").code == 1
    assert any(line.startswith(r"F:\Daily") for line in machine.errors())
    assert (disk / "Daily" / "Data" / "a.doc").read_text() == "a"

    machine.plug("f", disk)
    assert machine.run("C").code == 0, machine.errors()
    assert machine.copied() == []


def test_a_disk_that_is_put_in_is_there_to_be_chosen(machine: Machine) -> None:
    disk = label_volume(machine.e / "disk", "STICK ONE", 0x1000)
    (disk / "Daily").mkdir()
    machine.configure({r"E:\Weekly": [r"D:\Data"]})
    started = machine.start()
    machine.window(TITLE + "|Select Locations To Backup", 20).tabs()
    window = machine.window(TITLE)
    window.tab("Backup Folder")
    assert not any(line.startswith("F:") for line in window.lines("ComboBox"))

    machine.plug("f", disk, "removable")
    window.tab("Options")
    window.tab("Backup Folder")
    window.choose("ComboBox", "F:")

    assert [line for line in window.lines("ComboBox") if line.startswith("F:")] == ["F: [STICK ONE] (removable disk)"]
    assert [line.strip() for line in window.lines("Folder")] == ["F:\\", "Daily"]
    window.close()
    assert machine.wait(started).code == 0


def test_a_second_letter_leads_to_the_same_files(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    machine.plug("g", machine.e)
    machine.configure({r"G:\Daily": [r"D:\Data"]})
    assert machine.run("C").code == 0, machine.errors()

    machine.configure({r"E:\Daily": [r"D:\Data"]})
    assert machine.run("C").code == 0, machine.errors()
    assert machine.copied() == []
    assert set(tree_of(machine.e)) == {"Daily", "Daily/Data", "Daily/Data/a.doc"}


def test_a_location_that_holds_a_source_under_another_letter_is_not_emptied(machine: Machine) -> None:
    original = write(machine.e / "Work" / "Data" / "a.doc", "the original")
    write(machine.e / "Work" / "beside.doc", "another file that was there")
    machine.plug("g", machine.e)
    machine.configure({r"G:\Work": [r"E:\Work\Data"]})

    ended = machine.run("A")

    assert ended.code == 1
    assert any(line.startswith(r"G:\Work: ") for line in machine.errors()), machine.errors()
    assert original.read_text() == "the original"
    assert (machine.e / "Work" / "beside.doc").exists()


def test_a_fat32_disk_says_so(machine: Machine, fat32_device: str) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    (machine.e / "stick").mkdir()
    machine.plug("f", machine.e / "stick", "removable", fat32_device)
    assert machine.volume("F:\\") == Volume("FAT32", 0xFA320001, "removable", "STICK")

    machine.configure({r"F:\Daily": [r"D:\Data"]})
    assert machine.run("C").code == 0, machine.errors()
    assert machine.copied() == [r"F:\Daily\Data\a.doc"]


@pytest.mark.parametrize("fuse_disk", ["FAT32", "exFAT"], indirect=True)
def test_a_disk_that_cuts_times_down_takes_a_backup(machine: Machine, fuse_disk: Path) -> None:
    originals = [write(machine.d / "Data" / f"{number}.doc", str(number)) for number in range(5)]
    machine.configure({r"F:\Daily": [r"D:\Data"]})

    assert machine.run("C").code == 0, machine.errors()

    assert len(machine.copied()) == 5
    for original in originals:
        saved = fuse_disk / "Daily" / "Data" / original.name
        assert saved.read_text() == original.read_text()
        assert 0 <= original.stat().st_mtime - saved.stat().st_mtime < 2
    assert working_files_in(fuse_disk) == []
