"""What is deleted, what is not, and which lists go on telling the truth after it."""

from __future__ import annotations

import shutil
from collections.abc import Iterator

import pytest
from harness import DELETE_LIST, Machine, Started, Window, tree_of, wait_until, write

TITLE = "Marlok Backup Utility"
REPLACEMENT = "Marlok Backup Utility File Replacement Program"
MESSAGE = "Marlok Info....."
LOCATION_MESSAGE = "Marlok Info"
LIST = "List of Saved Files"
SOURCES = "Files To Be Backed Up"
DAILY = r"E:\Daily"


def back(machine: Machine) -> None:
    """Waits until the main window, which is hidden while a question is open, is there again."""
    assert wait_until(lambda: machine.windows() == [TITLE], 10), machine.windows()


def opened(machine: Machine, tab: str) -> tuple[Started, Window]:
    started = machine.start()
    window = machine.window(TITLE, 20)
    window.tab(tab)
    return started, window


def closed(machine: Machine, window: Window, started: Started) -> None:
    window.close()
    assert machine.wait(started).code == 0


def stripped(window: Window, name: str) -> list[str]:
    return [line.strip() for line in window.lines(name)]


def delete_saved(machine: Machine, window: Window, *lines: int | str) -> None:
    window.select(LIST, *lines)
    window.click("Delete Entry")
    machine.answer(MESSAGE, "You Are About To Delete Selections From The Saved Files", "OK")


def remove_source(machine: Machine, window: Window, line: str, button: str) -> None:
    window.select(SOURCES, line)
    window.click("Delete Entry From List")
    machine.answer(MESSAGE, "This Will Remove Selected File From Lower List, Continue?", "Yes")
    machine.answer(TITLE, "Do You Want To Delete The Saved File, or Only The List Entry?", button)


@pytest.fixture
def saved(machine: Machine) -> Machine:
    """A machine whose data were backed up."""
    write(machine.d / "Data" / "a.doc", "a")
    write(machine.d / "Data" / "Old" / "Deep" / "deep.txt", "deep")
    write(machine.d / "one.txt", "1")
    (machine.d / "Data" / "Nothing").mkdir()
    machine.configure({DAILY: [r"D:\Data", r"D:\one.txt"]})
    (machine.e / "Daily").mkdir()
    assert machine.run("C").code == 0, machine.errors()
    return machine


@pytest.fixture
def pending(saved: Machine) -> Iterator[Machine]:
    """The same machine with a list of pending deletions in which one folder alone may go."""
    (saved.e / "Gone" / "Sub").mkdir(parents=True)
    write(saved.e / "Filled" / "since.txt", "filled")
    (saved.e / "Elsewhere").mkdir()
    (saved.e / "Link").symlink_to(saved.e / "Elsewhere", target_is_directory=True)
    lines = [
        "\\", "C:", "C:\\.", "C:\\..", "C:\\", r"E:\Gone\..", "E:", "E:/", "E:\\", r"E:\*", r"E:\Filled",
        r"E:\Filled\since.txt", r"E:\Link", r"D:\Data", r"..\Elsewhere", saved.windows_folder,
        r"E:\Never", r"E:\Gone"]  # fmt: skip
    (saved.folder / DELETE_LIST).write_bytes("".join(line + "\r\n" for line in lines).encode())
    before = {drive: tree_of(drive) for drive in (saved.d, saved.e)}
    yield saved
    for path in ("Gone", "Gone/Sub"):
        del before[saved.e][path]
    assert {drive: tree_of(drive) for drive in (saved.d, saved.e)} == before
    assert not (saved.folder / DELETE_LIST).exists()
    assert (saved.folder / "Marlok Backup.exe").exists()


def test_pending_deletions_take_empty_folders_alone(pending: Machine) -> None:
    started = pending.start()
    # One box says that something was kept; the log beside the program names every line.
    pending.answer(MESSAGE, 'All 16 are listed in "Backup Error Log.txt"', "OK")
    window = pending.window(TITLE, 20)
    window.tabs()
    assert len(pending.errors()) == 16
    assert any(line.startswith(r"E:\Filled: not deleted") and "since.txt" in line for line in pending.errors())
    closed(pending, window, started)


def test_pending_deletions_of_an_unattended_start_show_no_box(pending: Machine) -> None:
    ended = pending.run("C")
    assert ended.code == 0, pending.errors()
    kept = [line for line in ended.errors.splitlines() if "not deleted: " in line]
    assert len(kept) == 16
    report = pending.log_lines("Backup Report.txt")
    assert report[report.index("Notes:") + 1 :][:16] == kept


def test_only_folders_that_the_deletion_emptied_go(saved: Machine) -> None:
    (saved.e / "Daily" / "Mine").mkdir()
    first = set(saved.running())
    _, window = opened(saved, "Review Saved")
    window.click("Show Saved Files")
    assert wait_until(lambda: len(window.lines(LIST)) == 3, 20)
    delete_saved(saved, window, r"E:\Daily\Data\Old\Deep\deep.txt")
    assert wait_until(lambda: saved.running() and not first & set(saved.running()), 30)
    assert wait_until(lambda: not (saved.e / "Daily" / "Data" / "Old").exists(), 20)
    again = saved.window(TITLE, 20)
    again.tabs()
    # Empty before: nobody's business.
    assert (saved.e / "Daily" / "Mine").is_dir()
    assert (saved.e / "Daily" / "Data" / "Nothing").is_dir()
    again.close()
    assert wait_until(lambda: not saved.running(), 20)


def test_a_location_that_has_gone_away_keeps_its_lists(saved: Machine) -> None:
    listed = saved.listed("Daily")
    sources = saved.registry_values("Daily")
    started, window = opened(saved, "Review Saved")
    window.click("Show Saved Files")
    assert wait_until(lambda: len(window.lines(LIST)) == 3, 20)
    (saved.e / "Daily").rename(saved.e / "Away")
    delete_saved(saved, window, 0, 1, 2)
    saved.answer(MESSAGE, "the backup location cannot be reached", "OK")
    back(saved)
    assert wait_until(lambda: len(window.lines(LIST)) == 1, 10)
    assert stripped(window, LIST)[0].startswith(r"The Backup Location Cannot Be Reached: E:\Daily")
    assert not (saved.folder / DELETE_LIST).exists()

    window.tab("Files To Backup")
    remove_source(saved, window, r"D:\Data", "File Also")
    saved.answer(MESSAGE, "The backup location cannot be reached", "OK")
    assert window.lines(SOURCES) == [r"D:\Data", r"D:\one.txt"]
    assert saved.registry_values("Daily") == sources
    assert saved.listed("Daily") == listed
    assert (saved.e / "Away" / "Data" / "a.doc").exists()
    closed(saved, window, started)


def test_a_line_stays_while_the_other_drive_of_the_list_holds_the_file(saved: Machine) -> None:
    shutil.copytree(saved.e / "Daily", saved.d / "Daily")
    saved.configure({DAILY: [r"D:\Data", r"D:\one.txt"], r"D:\Daily": [r"D:\Data", r"D:\one.txt"]})
    started, window = opened(saved, "Files To Backup")
    remove_source(saved, window, r"D:\one.txt", "File Also")
    assert wait_until(lambda: not (saved.e / "Daily" / "one.txt").exists(), 10)
    assert wait_until(lambda: window.lines(SOURCES) == [r"D:\Data"], 10)
    assert (saved.d / "Daily" / "one.txt").exists()
    assert r"D:\one.txt" in saved.listed("Daily")
    closed(saved, window, started)


def test_lines_of_names_that_only_begin_alike_stay(machine: Machine) -> None:
    for folder in ("Photos", "Photos2019"):
        write(machine.d / folder / "p.jpg", folder)
    machine.configure({DAILY: [r"D:\Photos", r"D:\Photos2019"]})
    (machine.e / "Daily").mkdir()
    assert machine.run("C").code == 0, machine.errors()
    started, window = opened(machine, "Files To Backup")
    remove_source(machine, window, r"D:\Photos", "File Also")
    assert wait_until(lambda: machine.listed("Daily") == [r"D:\Photos2019\p.jpg"], 10)
    assert not (machine.e / "Daily" / "Photos").exists()
    closed(machine, window, started)


def test_two_originals_of_one_place_are_said_and_neither_is_replaced(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "from D")
    write(machine.e / "Data" / "a.doc", "from E")
    (machine.e / "Daily").mkdir()
    machine.configure({DAILY: [r"D:\Data"]})
    assert machine.run("C").code == 0, machine.errors()
    started, window = opened(machine, "Files To Backup")
    window.choose("ComboBox", "E:")
    window.select("Folder", stripped(window, "Folder").index("Data"))
    window.click("Add Folder To List")
    machine.answer(MESSAGE, r"Are Saved In The Same Place: E:\Daily\Data", "OK")
    assert window.lines(SOURCES) == [r"D:\Data", r"E:\Data"]

    # A list of an earlier version may name both.
    (machine.folder / "Daily.txt").write_bytes(b"D:\\Data\\a.doc\r\nE:\\Data\\a.doc\r\n")
    window.tab("Review Saved")
    window.click("Show Saved Files")
    assert wait_until(lambda: window.lines(LIST) == [r"E:\Daily\Data\a.doc"], 20)
    write(machine.d / "Data" / "a.doc", "newer", hours_ago=0)
    window.select(LIST, 0)
    window.click("Replace Selected Files")
    machine.answer(MESSAGE, "You Are About To Replace Selected Files", "OK")
    done = machine.window(REPLACEMENT + "|File Replacement Completed", 30)
    assert '1 File Not Replaced, See "Backup Error Log.txt"' in done.texts()
    assert r"D:\Data\a.doc, E:\Data\a.doc" in machine.errors()[0]
    assert (machine.d / "Data" / "a.doc").read_text() == "newer"
    assert (machine.e / "Data" / "a.doc").read_text() == "from E"
    done.click("Close")
    back(machine)
    closed(machine, window, started)


def test_a_folder_takes_a_name_that_windows_can_hold(machine: Machine) -> None:
    machine.configure({DAILY: [r"D:\Data"]})
    (machine.e / "Sub" / "Deep").mkdir(parents=True)
    started, window = opened(machine, "Backup Folder")
    window.choose("ComboBox", "E:")
    window.open("Folder", stripped(window, "Folder").index("Sub"))
    before = tree_of(machine.e)
    for name, why in ((r"..\..\Up", "Enter one name"), ("CON", "device"), ("trail. ", "at the end")):
        window.click("Create Folder")
        machine.answer(MESSAGE, "The Path You Have Selected Is", "Yes")
        asked = machine.window(MESSAGE + "|Enter Name Of Folder")
        asked.type(name)
        asked.click("OK")
        machine.answer(MESSAGE, why, "OK")
    assert tree_of(machine.e) == before

    window.open("Folder", stripped(window, "Folder").index("Deep"))
    (machine.e / "Sub" / "Deep").rmdir()
    window.click("Create Folder")
    machine.answer(MESSAGE, "The Path You Have Selected Is", "Yes")
    asked = machine.window(MESSAGE + "|Enter Name Of Folder")
    asked.type("New")
    asked.click("OK")
    machine.answer(MESSAGE, r"E:\Sub\Deep\New", "OK")
    assert not window.enabled("Add Folder To List")
    assert not window.enabled("Create Folder")
    assert window.lines("Backup Locations") == [DAILY]
    closed(machine, window, started)


def test_locations_called_target_and_with_a_comma(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    for name in ("Target", "a,b"):
        (machine.e / name).mkdir()
    machine.configure({DAILY: [r"D:\Other"]})
    started, window = opened(machine, "Backup Folder")
    window.choose("ComboBox", "E:")
    window.select("Folder", stripped(window, "Folder").index("a,b"))
    window.click("Add Folder To List")
    machine.answer(LOCATION_MESSAGE, "You Cannot Have A Comma", "OK")
    window.select("Folder", stripped(window, "Folder").index("Target"))
    window.click("Add Folder To List")
    assert wait_until(lambda: window.lines("Backup Locations") == [DAILY, r"E:\Target"], 5)

    window.tab("Files To Backup")
    window.select("Backup Locations", r"E:\Target")
    window.choose("ComboBox", "D:")
    window.select("Folder", stripped(window, "Folder").index("Data"))
    window.click("Add Folder To List")
    assert wait_until(lambda: window.lines(SOURCES) == [r"D:\Data"], 5)
    assert machine.registry_values("Target") == {
        "TargetPath2": DAILY, "TargetPath3": r"E:\Target", "SourcePath2": r"D:\Data"}  # fmt: skip
    assert machine.registry_values("Daily") == {"SourcePath2": r"D:\Other"}
    closed(machine, window, started)
    assert machine.run("C", "Target").code == 0, machine.errors()
    assert (machine.e / "Target" / "Data" / "a.doc").read_text() == "a"


def test_a_single_file_is_saved_by_the_first_run_after_it_was_added(machine: Machine) -> None:
    write(machine.d / "Deep" / "Deeper" / "one.txt", "1")
    (machine.e / "Daily").mkdir()
    machine.configure({DAILY: [r"D:\Never"]})
    started, window = opened(machine, "Files To Backup")
    window.choose("ComboBox", "D:")
    window.open("Folder", stripped(window, "Folder").index("Deep"))
    window.open("Folder", stripped(window, "Folder").index("Deeper"))
    assert wait_until(lambda: window.lines("Files In This Folder") == ["one.txt"], 5)
    window.select("Files In This Folder", 0)
    window.click("Add File To List")
    assert wait_until(lambda: r"D:\Deep\Deeper\one.txt" in window.lines(SOURCES), 5)
    closed(machine, window, started)
    machine.run("C")
    assert (machine.e / "Daily" / "Deep" / "Deeper" / "one.txt").read_text() == "1"


def test_a_list_in_another_encoding_stays_of_one_encoding(saved: Machine) -> None:
    kept = r"D:\Data\früher.doc"
    text = "".join(line + "\n" for line in [*saved.listed("Daily"), kept])
    (saved.folder / "Daily.txt").write_bytes(b"\xff\xfe" + text.encode("utf-16-le"))
    write(saved.d / "Data" / "späte.txt", "late", hours_ago=0)
    assert saved.run("C").code == 0, saved.errors()
    listed = saved.listed("Daily")
    assert kept in listed
    assert r"D:\Data\späte.txt" in listed
    assert len(listed) == 5
