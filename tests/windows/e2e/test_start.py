"""Starting: what comes before the run, and the windows it may show."""

from __future__ import annotations

from harness import DELETE_LIST, SHORTCUT, Machine, read_link, tree_of, wait_until, write

DAILY = r"E:\Backups\Daily"
TITLE = "Marlok Backup Utility"
MESSAGE = "Marlok Info....."


def configured(machine: Machine) -> Machine:
    write(machine.d / "Data" / "a.doc", "a")
    machine.configure({DAILY: [r"D:\Data"]})
    return machine


def test_pending_deletions_are_made_and_the_list_is_used_up(machine: Machine) -> None:
    configured(machine)
    (machine.e / "Old" / "deep").mkdir(parents=True)
    write(machine.e / "Kept" / "a.doc", "kept")
    (machine.folder / DELETE_LIST).write_bytes(b"E:\\Old\r\n\r\nE:\\not there\r\n")

    assert machine.run("C").code == 0

    assert set(tree_of(machine.e)) - {"Kept", "Kept/a.doc"} == {
        "Backups", "Backups/Daily", "Backups/Daily/Data", "Backups/Daily/Data/a.doc"}  # fmt: skip
    assert (machine.e / "Kept" / "a.doc").exists()
    assert not (machine.folder / DELETE_LIST).exists()


def assert_incomplete(machine: Machine) -> None:
    ended = machine.run("C", "S")
    assert ended.code == 2
    assert 2 < ended.seconds < 15
    lines = machine.log_lines()
    day, rest = lines[0], lines[1:]
    assert day.split(",")[0].endswith("day") and day.split()[-1].isdigit()
    assert rest == [
        "",
        "Program Was Unable To Locate Paths",
        "",
        "Please Check Both Backup Locations",
        "",
        "             And                  ",
        "",
        "      Files To Be Backed Up       ",
        "",
    ]
    link = read_link(machine.desktop / SHORTCUT)
    assert link.target == machine.windows_folder + r"\Backup Log File.txt"
    assert list(machine.e.iterdir()) == []


def test_without_a_location_the_log_says_so(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    assert_incomplete(machine)


def test_without_a_source_the_log_says_so(machine: Machine) -> None:
    machine.configure({DAILY: []})
    assert_incomplete(machine)


def test_the_main_window_comes_up_and_closing_it_ends_the_program(machine: Machine) -> None:
    configured(machine)
    write(machine.folder / "Restart.exe", "left over from a restart")

    process = machine.start()

    window = machine.window(TITLE + "|Select Locations To Backup")
    assert window.front_tab() == "Options"
    # The watcher takes it away after three seconds.
    assert wait_until(lambda: not (machine.folder / "Restart.exe").exists(), 15)
    assert machine.windows() == [TITLE]
    window.close()
    assert machine.wait(process).code == 0
    assert list(machine.e.iterdir()) == []


def test_without_a_configuration_the_main_window_comes_up_by_itself(machine: Machine) -> None:
    process = machine.start()

    # The window that greets has the same title: it goes by itself, and the main one is there to be used.
    assert "Welcome" in machine.window(TITLE + "|Welcome").texts()
    window = machine.window(TITLE + "|Add Folder To List", 20)
    assert window.tabs() == ["Options", "Backup Folder", "Files To Backup", "Review Saved"]
    assert machine.windows() == [TITLE]
    window.close()
    assert machine.wait(process).code == 0


def test_a_second_instance_says_so_and_changes_nothing(machine: Machine) -> None:
    configured(machine)
    first = machine.start()
    window = machine.window(TITLE + "|Select Locations To Backup")
    assert window.front_tab() == "Options"
    (machine.folder / DELETE_LIST).write_bytes(b"D:\\Data\r\n")

    second = machine.start("C")
    assert machine.answer(MESSAGE, "This Program Is Already Running", "OK").buttons == ["OK"]
    assert machine.wait(second).code == 2

    assert (machine.folder / DELETE_LIST).exists()
    assert (machine.d / "Data" / "a.doc").exists()
    assert list(machine.e.iterdir()) == []
    window.close()
    assert machine.wait(first).code == 0


def test_the_result_is_shown_and_its_close_button_starts_the_program_again(machine: Machine) -> None:
    configured(machine)

    process = machine.start("C", r"Backups\Daily", "S")
    result = machine.window(TITLE + "|Backup Program Is Finished", 20)

    assert "1 Files Copied" in result.texts()
    assert machine.copied() == [DAILY + r"\Data\a.doc"]
    result.click("Close")
    assert machine.wait(process).code == 0
    # The restarted program: its main window, and no restart program left after a while.
    machine.window(TITLE + "|Select Locations To Backup", 20).close()
    assert wait_until(lambda: not machine.running(), 20)


def test_the_program_runs_from_any_folder_and_leaves_no_process(machine: Machine) -> None:
    configured(machine)

    for _ in range(3):
        assert machine.run("C").code == 0

    assert machine.running() == {}
    assert not (machine.folder / "Restart.exe").exists()
