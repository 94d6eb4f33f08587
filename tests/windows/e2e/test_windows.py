"""The program as a person uses it, from the first start to the finished backup."""

from __future__ import annotations

import os

import pytest
from harness import (
    ERROR_LOG, RUN_LOG, SHORTCUT, Machine, Started, ToolFailed, Window, read_link, tree_of, wait_until, working_files_in,
    write)  # fmt: skip

TITLE = "Marlok Backup Utility"
MESSAGE = "Marlok Info....."
LOCATIONS_HEADING = " " * 24 + "List Of Backup Paths"
SOURCES_HEADING = " " * 17 + "List Of Files To Be Backed Up"
LOCATIONS = "List Of Backup Paths"
SOURCES = "List Of Files To Be Backed Up"
DAILY = r"E:\Daily"


def main_window(machine: Machine, limit: float = 20) -> Window:
    window = machine.window(TITLE, limit)
    window.tabs()  # waits for it
    return window


def stripped(window: Window, name: str) -> list[str]:
    return [line.strip() for line in window.lines(name)]


def copied_at_last(machine: Machine) -> list[str]:
    """What the run log names; nothing while there is none."""
    return machine.copied() if (machine.folder / RUN_LOG).exists() else []


def fill(machine: Machine) -> None:
    """Something to back up."""
    write(machine.d / "Data" / "a.doc", "a")
    write(machine.d / "Data" / "Sub" / "bä.txt", "b")
    write(machine.d / "one.txt", "1")
    write(machine.d / "two.txt", "2")


def configured(machine: Machine, *sources: str) -> None:
    fill(machine)
    machine.configure({DAILY: list(sources or (r"D:\Data",)), r"E:\Weekly": [r"D:\one.txt"]})


def choose_to_run(window: Window, *lines: int | str) -> None:
    window.click("Select Backup")
    window.select(LOCATIONS, *(lines or (DAILY,)))


def closed(machine: Machine, window: Window, started: Started) -> None:
    window.close()
    assert machine.wait(started).code == 0


def test_a_first_start_leads_to_a_finished_backup(machine: Machine) -> None:
    fill(machine)
    started = machine.start()
    greeting = machine.window(TITLE + "|Welcome")
    assert {"Welcome", "Please Select", "Backup Locations"} <= set(greeting.texts())

    # The main window comes by itself, on the tab that needs attention.
    window = machine.window(TITLE + "|Add Folder To List", 20)
    assert window.front_tab() == "Backup Folder"
    assert window.lines("Backup Locations") == [" " * 14 + "No Folder Selected"]
    assert not window.enabled("Add Folder To List")
    with pytest.raises(ToolFailed, match="the tab Review Saved does not come to the front"):
        machine.window(TITLE, 0.3).tab("Review Saved")
    assert window.front_tab() == "Backup Folder"

    window.choose("ComboBox", "E:")
    window.select("Folder", 0)
    window.click("Create Folder")
    question = machine.answer(MESSAGE, "The Path You Have Selected Is", "Yes")
    assert question.buttons == ["Yes", "No"]
    name = machine.window(MESSAGE + "|Enter Name Of Folder")
    name.type("Daily")
    name.click("OK")
    assert wait_until(lambda: "Daily" in stripped(window, "Folder"), 5)
    window.select("Folder", stripped(window, "Folder").index("Daily"))
    window.click("Add Folder To List")
    assert wait_until(lambda: window.lines("Backup Locations") == [DAILY], 5)
    assert machine.registry_values("Target") == {"TargetPath2": DAILY}

    window = machine.window(TITLE)
    window.tab("Files To Backup")
    assert window.selected("Backup Locations") == [DAILY]
    assert window.lines("Files To Be Backed Up") == [" " * 15 + "No Files Selected"]
    window.choose("ComboBox", "D:")
    window.select("Folder", stripped(window, "Folder").index("Data"))
    window.click("Add Folder To List")
    assert wait_until(lambda: window.lines("Files To Be Backed Up") == [r"D:\Data"], 5)
    window.select("Folder", 0)
    assert wait_until(lambda: window.lines("Files In This Folder") == ["one.txt", "two.txt"], 5)
    window.select("Files In This Folder", 0, 1)
    window.click("Add File To List")
    sources = [r"D:\Data", r"D:\one.txt", r"D:\two.txt"]
    assert wait_until(lambda: window.lines("Files To Be Backed Up") == sources, 5)
    assert list(machine.registry_values("Daily").values()) == sources

    window.tab("Options")
    assert window.lines(LOCATIONS) == [LOCATIONS_HEADING, "", DAILY]
    assert window.lines(SOURCES) == [SOURCES_HEADING, "", *sources]
    assert window.tabs() == ["Options", "Backup Folder", "Files To Backup", "Review Saved"]
    choose_to_run(window)
    window.click("Run Backup")

    result = machine.window(TITLE + "|Backup Has Been Completed", 30)
    assert "Total files copied was 4" in result.texts()
    assert result.lines("Files Copied") == [line for line in machine.copied()]
    assert len(machine.copied()) == 4
    with pytest.raises(ToolFailed, match=r"no window .*Copying Changed Files Only!"):
        machine.window(TITLE + "|Copying Changed Files Only!", 0.2).texts()  # its place is taken by the result
    assert "Backup Completed" in machine.window(TITLE + "|Backup Completed").texts()
    assert tree_of(machine.e / "Daily") == tree_of(machine.d)
    assert "was 4" in machine.log_lines()[0]
    link = read_link(machine.desktop / SHORTCUT)
    assert link.target.endswith(RUN_LOG)

    # "Close" ends the program and starts it again.
    first = set(machine.running())
    result.click("Close")
    assert machine.wait(started).code == 0
    again = main_window(machine)
    assert again.lines(LOCATIONS) == [LOCATIONS_HEADING, "", DAILY]
    assert not first & set(machine.running())
    assert wait_until(lambda: not (machine.folder / "Restart.exe").exists(), 15)
    again.close()
    assert wait_until(lambda: not machine.running(), 20)


def test_a_background_run_shows_its_result_alone(machine: Machine) -> None:
    configured(machine)
    started = machine.start()
    window = main_window(machine)
    choose_to_run(window)
    assert window.check("Run In Background") == "checked"
    window.click("Run Backup")

    result = machine.window(TITLE + "|Backup Program Is Finished", 20)
    assert "2 Files Copied" in result.texts()
    assert result.selected("Files Copied") == [machine.copied()[0]]
    assert not (machine.folder / "Command.txt").exists()
    assert tree_of(machine.e / "Daily" / "Data") == tree_of(machine.d / "Data")
    assert not (machine.e / "Weekly").exists()
    # Its close box ends the program without starting it again.
    result.close()
    assert machine.wait(started).code == 0
    assert machine.running() == {}


def test_a_background_run_without_message_ends_the_program(machine: Machine) -> None:
    configured(machine)
    started = machine.start()
    window = main_window(machine)
    choose_to_run(window, DAILY, r"E:\Weekly")
    window.check("Run In Background")
    assert window.check("Output Message To Screen") == "unchecked"
    window.click("Run Backup")

    assert machine.wait(started).code == 0
    assert len(machine.copied()) == 3
    assert (machine.e / "Weekly" / "one.txt").exists()
    assert machine.running() == {}


def test_quiet_runs_leave_the_main_window_and_copy_what_is_new(machine: Machine) -> None:
    configured(machine)
    started = machine.start()
    window = main_window(machine)
    choose_to_run(window)
    window.check("Output Message To Screen")
    window.click("Run Backup")
    assert wait_until(lambda: len(copied_at_last(machine)) == 2 and machine.windows() == [TITLE], 20)
    assert wait_until(lambda: window.enabled("Select Backup"), 5)

    write(machine.d / "Data" / "new.txt", "new", hours_ago=0)
    choose_to_run(window)
    assert window.state("Output Message To Screen") == "unchecked"
    window.click("Run Backup")
    assert wait_until(lambda: copied_at_last(machine) == [DAILY + r"\Data\new.txt"] and machine.windows() == [TITLE], 20)
    closed(machine, window, started)


def test_copying_all_files_empties_the_location_first(machine: Machine) -> None:
    configured(machine)
    write(machine.e / "Daily" / "stale.txt", "stale")
    started = machine.start()
    window = main_window(machine)
    choose_to_run(window)
    assert window.check("Backup All Files") == "checked"
    window.click("Run Backup")
    result = machine.window(TITLE + "|Backup Has Been Completed", 30)
    assert "Total files copied was 2" in result.texts()
    assert not (machine.e / "Daily" / "stale.txt").exists()
    result.close()
    assert machine.wait(started).code == 0


def test_a_file_that_cannot_be_copied_is_told_even_without_message(machine: Machine) -> None:
    configured(machine)
    started = machine.start()
    window = main_window(machine)
    choose_to_run(window)
    window.check("Output Message To Screen")
    with machine.held(r"D:\Data\a.doc"):
        window.click("Run Backup")
        result = machine.window(TITLE + "|Backup Has Been Completed", 30)
        assert '1 Failure, See "Backup Error Log.txt" In The Program\'s Folder' in result.texts()
    assert r"D:\Data\a.doc" in (machine.folder / ERROR_LOG).read_text()
    result.close()
    assert machine.wait(started).code == 1


def test_locations_that_cannot_be_are_refused(machine: Machine) -> None:
    for name in ("with blank", "DeleteFolder", "Good"):
        (machine.e / name).mkdir()
    machine.configure({r"E:\First": [r"D:\Data"]})
    started = machine.start()
    window = main_window(machine)
    window.tab("Backup Folder")
    window.choose("ComboBox", "E:")
    for name, title, said in (
        ("with blank", "Marlok Info", "You Cannot Have A Space in The Backup Location Name"),
        ("DeleteFolder", "Marlok Info", "the name is needed for a file of the program"),
    ):
        window.select("Folder", stripped(window, "Folder").index(name))
        window.click("Add Folder To List")
        assert machine.answer(title, said, "OK").buttons == ["OK"]
    window.select("Folder", stripped(window, "Folder").index("Good"))
    window.click("Add Folder To List")
    assert wait_until(lambda: window.lines("Backup Locations") == [r"E:\First", r"E:\Good"], 5)
    window.click("Add Folder To List")
    machine.answer(MESSAGE, "This Folder Has Already Been Selected!", "OK")

    window.open("Backup Locations", 0)
    machine.answer(MESSAGE, "This Will Remove Selected Backup Path, Continue?", "No")
    assert window.lines("Backup Locations") == [r"E:\First", r"E:\Good"]
    window.open("Backup Locations", 0)
    machine.answer(MESSAGE, "This Will Remove Selected Backup Path, Continue?", "Yes")
    assert wait_until(lambda: window.lines("Backup Locations") == [r"E:\Good"], 5)
    assert machine.registry_values("Target") == {"TargetPath2": r"E:\Good"}
    assert machine.registry_values("First") == {"SourcePath2": r"D:\Data"}
    closed(machine, window, started)


def test_running_without_a_location_is_refused(machine: Machine) -> None:
    configured(machine)
    started = machine.start()
    window = main_window(machine)
    choose_to_run(window)
    window.select(LOCATIONS, 1)
    machine.answer(MESSAGE, "You Must Select a Backup Location First", "OK")
    window.select(LOCATIONS, 0)
    window.click("Run Backup")
    machine.answer(MESSAGE, "You Must Select a Backup Location", "OK")
    assert not (machine.folder / RUN_LOG).exists()
    closed(machine, window, started)


def test_sources_are_taken_off_with_and_without_their_saved_copies(machine: Machine) -> None:
    configured(machine, r"D:\Data", r"D:\one.txt", r"D:\two.txt")
    ended = machine.run("C", "Daily")
    assert ended.code == 0, machine.errors()
    started = machine.start()
    window = main_window(machine)
    window.tab("Files To Backup")

    def remove(line: int, button: str) -> None:
        window.select("Files To Be Backed Up", line)
        window.click("Delete Entry From List")
        machine.answer(MESSAGE, "This Will Remove Selected File From Lower List, Continue?", "Yes")
        asked = machine.answer(TITLE, "Do You Want To Delete The Saved File, or Only The List Entry?", button)
        assert asked.buttons == ["Only Entry", "File Also", "Cancel"]

    remove(0, "Cancel")
    assert len(window.lines("Files To Be Backed Up")) == 3
    remove(1, "Only Entry")
    assert wait_until(lambda: window.lines("Files To Be Backed Up") == [r"D:\Data", r"D:\two.txt"], 5)
    assert (machine.e / "Daily" / "one.txt").exists()
    remove(0, "File Also")
    assert wait_until(lambda: window.lines("Files To Be Backed Up") == [r"D:\two.txt"], 5)
    assert not (machine.e / "Daily" / "Data").exists()
    assert (machine.d / "Data" / "Sub" / "bä.txt").exists()
    assert machine.listed("Daily") == [r"D:\one.txt", r"D:\two.txt"]
    assert machine.registry_values("Daily") == {"SourcePath2": r"D:\two.txt"}
    # An ordinary box has its ordinary buttons again.
    window.select("Files To Be Backed Up", 0)
    window.click("Delete Entry From List")
    assert machine.answer(MESSAGE, "Continue?", "No").buttons == ["Yes", "No"]
    closed(machine, window, started)


def test_everything_goes_with_the_keyboard_alone(machine: Machine) -> None:
    configured(machine)
    started = machine.start()
    window = main_window(machine)
    window.key("Ctrl+Tab")
    assert wait_until(lambda: window.front_tab() == "Backup Folder", 5)
    window.key("Ctrl+Shift+Tab")
    assert wait_until(lambda: window.front_tab() == "Options", 5)
    window.key("F1")
    page = "file:///P:/" + machine.windows_folder[3:].replace("\\", "/").replace(" ", "%20") + "/Help.html"
    assert wait_until(lambda: machine.asked_of_browser()[-1:] == [page + "#options"], 10), machine.asked_of_browser()
    (machine.folder / "Help.html").unlink()
    window.key("F1")
    machine.window(MESSAGE + "|The Help File Could Not Be Opened", 10).key("Escape")
    assert wait_until(lambda: machine.windows() == [TITLE], 5)
    window.key("Alt+S")  # "Select Backup"
    assert wait_until(lambda: "Run Backup" in window.texts(), 5)
    # From wherever the keyboard is now to the list of locations, and down to the first of them.
    for _ in range(12):
        window.key("Tab")
        window.key("PageDown")
        if window.selected(LOCATIONS) == [r"E:\Weekly"]:
            break
    assert window.selected(LOCATIONS) == [r"E:\Weekly"]
    window.key("Up")
    assert wait_until(lambda: window.selected(LOCATIONS) == [DAILY], 5)
    window.key("Alt+R")  # two captions begin so: to the first of them, "Run Backup"
    window.key("Enter")
    result = machine.window(TITLE + "|Backup Has Been Completed", 30)
    assert "Total files copied was 2" in result.texts()
    assert tree_of(machine.e / "Daily" / "Data") == tree_of(machine.d / "Data")
    result.key("Escape")
    assert machine.wait(started).code == 0
    main_window(machine).close()
    assert wait_until(lambda: not machine.running(), 20)


def test_lists_grow_with_the_window(machine: Machine) -> None:
    configured(machine)
    started = machine.start()
    window = main_window(machine)

    def height() -> int:
        return next(control.height for control in window.controls() if control.text == LOCATIONS)

    before = height()
    window.key("Alt+Space")
    window.key("X")
    assert wait_until(lambda: height() > before, 5), f"still {before} pixels high"
    closed(machine, window, started)


# One more than a 16-bit counter holds, and some.
MANY = 33_000
IN_ONE_FOLDER = 100


def seed_many(machine: Machine) -> None:
    moment = 1_700_000_000 * 10**9
    for number in range(MANY):
        folder = machine.d / "Many" / f"f{number // IN_ONE_FOLDER}"
        if number % IN_ONE_FOLDER == 0:
            folder.mkdir(parents=True)
        (folder / f"{number}.txt").write_bytes(b"%d\n" % number)
        os.utime(folder / f"{number}.txt", ns=(moment, moment))


def disturb(machine: Machine, progress: Window) -> None:
    """What an impatient person does during a run: each of it would end the program, or start another run."""
    main = machine.window(TITLE + "|Select Locations To Backup", 5)
    main.key("Escape")
    main.click("Close")
    main.click("Run Backup")
    main.key("Alt+R")
    main.key("Enter")
    progress.key("Escape")


@pytest.mark.long
def test_a_long_run_keeps_painting_and_takes_no_input(machine: Machine) -> None:
    seed_many(machine)
    machine.configure({DAILY: [r"D:\Many"]})
    started = machine.start()
    choose_to_run(main_window(machine))
    machine.window(TITLE).click("Run Backup")

    progress = machine.window(TITLE + "|Copying Daily Files", 30)
    times = progress.paint(2)
    print(f"painted {times.painted} times, the slowest after {times.longest:.2f} s")
    assert times.painted >= 8
    assert times.longest < 2
    disturb(machine, progress)
    assert "Copying Daily Files" in progress.texts()
    assert not (machine.folder / RUN_LOG).exists(), "the run was over too soon"

    assert wait_until(lambda: (machine.folder / RUN_LOG).exists() or started.process.poll() is not None, 240)
    assert started.process.poll() is None, "ended by what was done meanwhile"
    result = machine.window(TITLE + "|Backup Has Been Completed", 60)
    assert f"Total files copied was {MANY}" in result.texts()
    assert result.count("Files Copied") == MANY
    assert len(machine.copied()) == MANY
    assert len(set(machine.listed("Daily"))) == MANY
    assert tree_of(machine.e / "Daily") == tree_of(machine.d)
    assert working_files_in(machine.e) == []
    # What was done meanwhile does nothing later either: the windows are there, and nothing runs again.
    before = (machine.folder / RUN_LOG).stat().st_mtime_ns
    assert "Select Backup" in machine.window(TITLE + "|Select Locations To Backup", 5).texts()
    assert len(machine.windows()) == 3
    assert (machine.folder / RUN_LOG).stat().st_mtime_ns == before
    result.close()
    assert machine.wait(started).code == 0
    assert machine.run("C", timeout=120).code == 0
    assert machine.copied() == []
