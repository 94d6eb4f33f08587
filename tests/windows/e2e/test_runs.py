"""What a run says, to whom, and what it leaves to others: arguments, second starts, files in use, drives."""

from __future__ import annotations

import time

from harness import ERROR_LOG, MISSING_DRIVE, RUN_LOG, Machine, Window, tree_of, wait_until, working_files_in, write

TITLE = "Marlok Backup Utility"
MESSAGE = "Marlok Info....."
PUT_JOURNAL = "~Marlok Backup.put"


def main_window(machine: Machine) -> Window:
    window = machine.window(TITLE)
    assert wait_until(lambda: window.front_tab() == "Options")
    return window


def run_here(window: Window, *locations: str) -> None:
    window.click("Select Backup")
    window.select("ListBox", *locations)


def test_arguments_that_choose_nothing_are_reported(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    machine.configure({r"E:\Daily": [r"D:\Data"]})

    assert machine.run("C", "Dayly").code == 2
    assert [line.split(":")[0] for line in machine.errors()] == ["Dayly"]
    assert tree_of(machine.e) == {}

    assert machine.run("C", "Daily", "Weekly").code == 1
    assert [line.split(":")[0] for line in machine.errors()] == ["Weekly"]
    assert (machine.e / "Daily/Data/a.doc").exists()
    # The report is written when all of that is known.
    assert machine.errors()[0] in machine.log_lines("Backup Report.txt")

    assert machine.run("Daily").code == 1
    assert "the first argument says what is to be copied" in machine.errors()[0]

    assert machine.run("C", "Daily").code == 0
    assert machine.errors() == []


def test_a_start_while_the_program_runs_says_so_and_ends_by_itself(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    machine.configure({r"E:\Daily": [r"D:\Data"]})
    (machine.folder / ERROR_LOG).write_bytes(b"D:\\Data: what a run has reported\r\n")
    first = machine.start()
    window = main_window(machine)

    began = time.monotonic()
    second = machine.start("C", "Daily")
    assert "This Program Is Already Running" in machine.window(MESSAGE).texts()
    assert machine.wait(second, timeout=45).code == 2, "nobody answered"
    assert time.monotonic() - began < 40
    lines = machine.errors()
    assert lines[0] == r"D:\Data: what a run has reported"
    assert len(lines) == 2 and "the program was running already" in lines[1]
    assert tree_of(machine.e) == {}

    window.close()
    assert machine.wait(first).code == 0


def test_a_command_file_in_use_is_named_and_left_as_it_is(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    machine.configure({r"E:\Daily": [r"D:\Data"]})
    (machine.folder / "Command.txt").write_bytes(b"A\r\nOther\r\n")

    with machine.held(machine.windows_folder + r"\Command.txt"):
        ended = machine.run("C", "Daily")

    assert ended.code == 2
    assert "Command.txt: the file is in use by another program" in ended.errors
    assert (machine.folder / "Command.txt").read_bytes() == b"A\r\nOther\r\n"
    assert tree_of(machine.e) == {}


def test_an_error_log_in_use_is_said_on_standard_error(machine: Machine) -> None:
    machine.configure({r"E:\Daily": [r"D:\Gone"]})
    (machine.folder / ERROR_LOG).write_bytes(b"old\r\n")

    with machine.held(machine.windows_folder + "\\" + ERROR_LOG):
        ended = machine.run("C", "Daily")

    assert ended.code == 1
    assert r"D:\Gone: " in ended.errors
    assert (machine.folder / ERROR_LOG).read_bytes() == b"old\r\n"


def test_a_drive_that_is_not_there_is_reported_with_what_to_do(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    machine.configure({rf"{MISSING_DRIVE}:\Daily": [r"D:\Data"]})

    assert machine.run("C").code == 1

    start = rf"{MISSING_DRIVE}:\Daily: Drive {MISSING_DRIVE}: is not connected. Connect it, then run the backup again"
    assert any(line.startswith(start) for line in machine.errors()), machine.errors()


def test_a_background_run_backs_up_what_is_selected_and_nothing_else(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    machine.configure({r"E:\Save": [r"D:\Data"], r"E:\Saved": [r"D:\Data"]})
    started = machine.start()
    window = main_window(machine)
    run_here(window, r"E:\Save")
    window.check("Run In Background")
    window.click("Run Backup")

    result = machine.window(TITLE + "|Backup Program Is Finished", 20)
    assert wait_until((machine.folder / RUN_LOG).exists)
    assert machine.copied() == [r"E:\Save\Data\a.doc"]
    assert not (machine.e / "Saved").exists()
    result.close()
    assert machine.wait(started).code == 0


def test_keys_pass_over_the_heading_and_the_empty_line(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    machine.configure({r"E:\Save": [r"D:\Data"], r"E:\Saved": [r"D:\Data"]})
    started = machine.start()
    window = main_window(machine)
    run_here(window, r"E:\Saved")
    for key, line in (("Up", r"E:\Save"), ("Up", r"E:\Save"), ("Down", r"E:\Saved"), ("Home", r"E:\Save")):
        window.key(key)
        assert wait_until(lambda line=line: window.selected("ListBox") == [line], 5), (key, window.selected("ListBox"))
    window.select("ListBox", 0)
    window.key("Down")
    assert wait_until(lambda: window.selected("ListBox") == [r"E:\Save"], 5), window.selected("ListBox")
    assert machine.windows() == [TITLE]
    window.close()
    assert machine.wait(started).code == 0


def test_a_background_run_with_failures_stays_whatever_was_asked_for(machine: Machine) -> None:
    machine.configure({r"E:\Save": [r"D:\Gone"]})
    started = machine.start()
    window = main_window(machine)
    run_here(window, r"E:\Save")
    window.check("Run In Background")
    window.check("Output Message To Screen")
    window.click("Run Backup")

    result = machine.window(TITLE + "|Backup Program Is Finished", 20)
    assert '1 Failure, See "Backup Error Log.txt" In The Program\'s Folder' in result.texts()
    result.close()
    assert machine.wait(started).code == 1


def test_a_whole_drive_is_emptied_only_when_the_person_says_so(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    for answer, stays in (("Keep", True), ("Delete", False)):
        write(machine.e / "Photos" / "own.jpg", "a picture")
        machine.configure({"E:\\": [r"D:\Data"]})
        started = machine.start()
        window = main_window(machine)
        run_here(window, "E:\\")
        window.check("Backup All Files")
        window.click("Run Backup")
        said = machine.answer(TITLE, "The whole drive E:\\", answer)
        assert said.buttons == ["Keep", "Delete"]
        assert "any more): 1 (9 bytes)" in said.texts[0].replace("\r\n", " ")
        result = machine.window(TITLE + "|Backup Has Been Completed", 30)
        assert wait_until(lambda result=result: result.enabled("Close"))
        assert (machine.e / "Photos" / "own.jpg").exists() == stays
        assert (machine.e / "Data" / "a.doc").read_text() == "a"
        result.close()
        assert machine.wait(started).code == (1 if stays else 0)


def test_what_a_killed_replacement_left_is_put_in_order_by_the_next_start(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    write(machine.d / "Data" / "~Marlok Backup.part", "half a fi")
    write(machine.d / "Data" / "~Marlok Backup.old", "moved away")
    (machine.folder / PUT_JOURNAL).write_bytes(b"D:\\Data\\b.doc\t~Marlok Backup.old\r\n")
    machine.configure({r"E:\Daily": [r"D:\Data"]})

    assert machine.run("C").code == 0

    assert working_files_in(machine.d) == []
    assert (machine.d / "Data" / "b.doc").read_text() == "moved away"
    assert set(tree_of(machine.e / "Daily")) == {"Data", "Data/a.doc", "Data/b.doc"}
    assert not (machine.folder / PUT_JOURNAL).exists()
