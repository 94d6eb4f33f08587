"""What ordinary clicks can configure and ordinary days can bring: no saved file, and no original, is lost for it, and
what is not saved is reported."""

from __future__ import annotations

import os
from pathlib import Path

import pytest
from harness import Machine, tree_of, wait_until, without_working_files, working_files_in, write

DAILY = r"E:\Daily"
FAILED = 1
HIDDEN_SYSTEM = 6


def contents(folder: Path) -> dict[str, str]:
    """The files below the folder, by their paths."""
    return {
        str(path.relative_to(folder)): path.read_text(encoding="utf-8")
        for path in sorted(folder.rglob("*"))
        if path.is_file()
    }


def report(machine: Machine) -> str:
    return "\n".join(machine.log_lines("Backup Report.txt"))


# ---- copying everything afresh ----


def test_copy_all_keeps_the_old_copy_of_a_file_that_cannot_be_read(machine: Machine) -> None:
    write(machine.d / "Data" / "mailbox.pst", "mail of yesterday", 48)
    write(machine.d / "Data" / "letter.doc", "letter", 48)
    machine.configure({DAILY: [r"D:\Data"]})
    assert machine.run("C").code == 0
    write(machine.d / "Data" / "mailbox.pst", "mail of today", 24)
    with machine.held(r"D:\Data\mailbox.pst"):
        assert machine.run("A").code == FAILED
    assert contents(machine.e / "Daily") == {"Data/mailbox.pst": "mail of yesterday", "Data/letter.doc": "letter"}
    assert [line.partition(": ")[0] for line in machine.errors()] == [r"D:\Data\mailbox.pst"]


def test_copy_all_deletes_what_no_source_has_and_nothing_while_a_source_is_missing(machine: Machine) -> None:
    write(machine.d / "Data" / "kept.doc", "kept")
    write(machine.d / "More" / "more.doc", "more")
    gone = write(machine.d / "Data" / "gone.doc", "gone")
    machine.configure({DAILY: [r"D:\Data", r"D:\More"]})
    assert machine.run("C").code == 0
    gone.unlink()

    (machine.d / "More").rename(machine.d / "Elsewhere")
    assert machine.run("A").code == FAILED
    whole = {"Data/kept.doc": "kept", "Data/gone.doc": "gone", "More/more.doc": "more"}
    assert contents(machine.e / "Daily") == whole
    assert any("nothing was deleted before copying" in line for line in machine.errors()), machine.errors()

    (machine.d / "Elsewhere").rename(machine.d / "More")
    assert machine.run("A").code == 0, machine.errors()
    assert contents(machine.e / "Daily") == {"Data/kept.doc": "kept", "More/more.doc": "more"}


@pytest.mark.parametrize("copies", [1, 40, 120])
def test_copy_all_that_is_killed_leaves_each_file_old_or_new(machine: Machine, copies: int) -> None:
    names = [f"{number:03}.doc" for number in range(200)]
    for name in names:
        write(machine.d / "Data" / name, "old " * 5000, 48)
    machine.configure({DAILY: [r"D:\Data"]})
    assert machine.run("C").code == 0
    for name in names:
        write(machine.d / "Data" / name, "new " * 5000, 24)
    saved = machine.e / "Daily" / "Data"
    old = {name: (saved / name).stat().st_mtime_ns for name in names}

    process = machine.start("A")
    assert wait_until(lambda: sum((saved / name).stat().st_mtime_ns != old[name] for name in names) >= copies)
    process.kill()

    left = {name: (saved / name).read_text()[:4] for name in names}
    assert set(left.values()) <= {"old ", "new "}
    assert {(saved / name).stat().st_size for name in names} == {20_000}
    assert machine.run("C").code == 0, machine.errors()
    assert without_working_files(tree_of(machine.e / "Daily")) == tree_of(machine.d)
    assert working_files_in(machine.e) == []


def test_a_location_inside_another_keeps_what_is_saved_in_it(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    write(machine.d / "Work" / "b.doc", "b")
    machine.configure({r"E:\All": [r"D:\Data"], r"E:\All\Work Copies": [r"D:\Work"]})
    assert machine.run("C").code == 0, machine.errors()
    assert machine.run("A", "All").code == 0, machine.errors()
    assert contents(machine.e / "All") == {"Data/a.doc": "a", "Work Copies/Work/b.doc": "b"}


def test_a_location_inside_another_under_a_second_letter_keeps_what_is_saved_in_it(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    write(machine.d / "Work" / "b.doc", "b")
    (machine.e / "Backup").mkdir()
    machine.plug("f", machine.e / "Backup")
    machine.configure({r"E:\Backup": [r"D:\Data"], r"F:\Inner": [r"D:\Work"]})
    assert machine.run("C").code == 0, machine.errors()
    for _ in range(2):
        machine.run("A")
        assert contents(machine.e / "Backup") == {"Data/a.doc": "a", "Inner/Work/b.doc": "b"}


def test_the_same_folder_under_two_letters_is_one_folder(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    write(machine.d / "Work" / "b.doc", "b")
    (machine.e / "Backup").mkdir()
    machine.plug("f", machine.e / "Backup")
    machine.configure({r"E:\Backup\S": [r"D:\Data"], r"F:\S": [r"D:\Work"]})
    machine.run("C")
    saved = contents(machine.e / "Backup" / "S")
    assert saved == {"Data/a.doc": "a", "Work/b.doc": "b"}
    machine.run("A")
    assert contents(machine.e / "Backup" / "S") == saved


def test_a_whole_drive_loses_only_what_runs_have_saved_there(machine: Machine) -> None:
    write(machine.d / "Data" / "kept.doc", "kept")
    gone = write(machine.d / "Data" / "gone.doc", "gone")
    machine.configure({"E:\\": [r"D:\Data"]})
    assert machine.run("C").code == 0, machine.errors()
    gone.unlink()
    write(machine.e / "Holidays" / "beach.jpg", "nobody has saved this here")
    write(machine.e / "Data" / "note.txt", "nor this")
    write(machine.e / "$RECYCLE.BIN" / "deleted.doc", "Windows' own")
    write(machine.e / "System Volume Information" / "tracking.log", "Windows' own")
    for folder in (r"E:\$RECYCLE.BIN", r"E:\System Volume Information"):
        machine.attributes(folder, HIDDEN_SYSTEM)

    ended = machine.run("A")

    assert contents(machine.e) == {
        "Data/kept.doc": "kept",
        "Data/note.txt": "nor this",
        "Holidays/beach.jpg": "nobody has saved this here",
        "$RECYCLE.BIN/deleted.doc": "Windows' own",
        "System Volume Information/tracking.log": "Windows' own",
    }
    assert ended.code == FAILED
    assert len(machine.errors()) == 1, machine.errors()
    assert machine.errors()[0].startswith("E:\\: kept: 2 files that no source has")


# ---- what is saved ----


def test_of_two_originals_with_one_saved_path_both_are_reported_and_the_first_is_saved(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "the first", 48)
    other = machine.e / "Other disk"
    write(other / "Data" / "a.doc", "the second, which is newer", 24)
    write(other / "Data" / "b.doc", "without a rival", 24)
    machine.plug("g", other)
    machine.configure({DAILY: [r"D:\Data", r"G:\Data"]})
    for letter in ("C", "C", "A"):
        assert machine.run(letter).code == FAILED
        assert contents(machine.e / "Daily") == {"Data/a.doc": "the first", "Data/b.doc": "without a rival"}
        assert len(machine.errors()) == 1, machine.errors()
        assert machine.errors()[0].startswith(r"G:\Data\a.doc: not saved: D:\Data\a.doc is saved in the same place")
    assert machine.listed("Daily") == [r"D:\Data\a.doc", r"G:\Data\b.doc"]


def test_two_locations_whose_saved_paths_meet_do_not_overwrite_each_other(machine: Machine) -> None:
    write(machine.d / "Daily" / "Docs" / "a.doc", "of the outer one", 48)
    other = machine.e / "Other disk"
    write(other / "Docs" / "a.doc", "of the inner one", 24)
    machine.plug("g", other)
    machine.configure({r"E:\B": [r"D:\Daily"], r"E:\B\Daily": [r"G:\Docs"]})
    for letter in ("C", "C"):
        assert machine.run(letter).code == FAILED
        assert contents(machine.e / "B") == {"Daily/Docs/a.doc": "of the outer one"}
        assert any(line.startswith(r"G:\Docs\a.doc: not saved: D:\Daily\Docs\a.doc") for line in machine.errors())


def test_names_that_differ_only_in_case_are_told_apart(machine: Machine) -> None:
    write(machine.d / "Data" / "README.txt", "upper")
    write(machine.d / "Data" / "readme.txt", "lower")
    machine.configure({DAILY: [r"D:\Data"]})
    for letter in ("C", "C", "A"):
        assert machine.run(letter).code == FAILED
        saved = contents(machine.e / "Daily")
        assert list(saved.values()) in (["upper"], ["lower"]), saved
        assert len(machine.errors()) == 1
        assert "is saved in the same place" in machine.errors()[0]


def test_no_location_is_saved_into_a_location(machine: Machine) -> None:
    write(machine.e / "Docs" / "a.doc", "a")
    write(machine.e / "Old" / "Data" / "b.doc", "another location's copy")
    machine.plug("g", machine.e)
    machine.configure({r"D:\Mirror": ["G:\\"], r"E:\Old": [r"D:\Nothing"], r"G:\Daily": [r"D:\Nothing"]})
    write(machine.d / "Nothing" / "c.doc", "c")
    for _ in range(3):
        machine.run("C")
        assert set(contents(machine.d / "Mirror")) == {"Docs/a.doc"}
    assert set(contents(machine.e / "Daily")) == {"Nothing/c.doc"}


def test_folders_and_files_are_saved_whatever_their_names_look_like(machine: Machine) -> None:
    for folder in ("fp-compiler-3.2.2", "photos.old", "v1.0.2/deeper.x", "Plain"):
        write(machine.d / "Docs" / folder / "changelog", f"of {folder}")
    write(machine.d / "README", "no extension")
    write(machine.d / "x.jpeg", "four letters")
    write(machine.d / "Work.old" / "a.doc", "a source with a dot")
    (machine.e / "Daily").mkdir()
    machine.configure({DAILY: [r"D:\Docs", r"D:\README", r"D:\x.jpeg", r"D:\Work.old"]})
    assert machine.run("C").code == 0, machine.errors()
    assert contents(machine.e / "Daily") == contents(machine.d)
    machine.configure({r"E:\Whole": ["D:\\"]})
    assert machine.run("C").code == 0, machine.errors()
    assert contents(machine.e / "Whole") == contents(machine.d)


def test_the_report_counts_every_file_and_names_those_that_were_passed_over(machine: Machine) -> None:
    new = write(machine.d / "Data" / "new.doc", "new", 48)
    write(machine.d / "Data" / "same.doc", "same", 48)
    write(machine.d / "Data" / "older.doc", "as it was", 48)
    write(machine.d / "Data" / "used.doc", "in use", 48)
    machine.configure({DAILY: [r"D:\Data"]})
    assert machine.run("C").code == 0
    write(machine.d / "Data" / "older.doc", "from an old disk", 96)
    write(new, "newer", 24)
    write(machine.d / "Data" / "used.doc", "written since", 24)
    with machine.held(r"D:\Data\used.doc"):
        assert machine.run("C").code == FAILED
    text = report(machine)
    for line in ("Copied:    1 (5 bytes)", "Unchanged: 1", "Different: 1", "Failed:    1"):
        assert line in text
    failures = text.partition("\nFailures:\n")[2].partition("\n\n")[0]
    assert failures.startswith(r"D:\Data\used.doc: ")
    different = text.partition("Different, but not copied")[2].partition("\n\n")[0]
    assert different.splitlines()[1:] == [r"D:\Data\older.doc"]
    assert f"{DAILY}: something is not saved" in text
    # Another location's good run does not make the failure forgotten.
    write(machine.d / "Work" / "b.doc", "b")
    machine.configure({DAILY: [r"D:\Data"], r"E:\Weekly": [r"D:\Work"]})
    assert machine.run("C", "Weekly").code == 0
    known = next(line for line in report(machine).splitlines() if line.startswith(f"{DAILY}: last"))
    assert "last went well 2" in known and "last failed 2" in known


# ---- journals and other computers ----


def test_a_location_in_which_another_computer_was_cut_short_is_saved_into_but_not_emptied(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    machine.configure({DAILY: [r"D:\Data"]})
    assert machine.run("C").code == 0
    theirs = write(machine.e / "Daily" / "Theirs" / "b.doc", "saved by the other computer")
    journal = write(machine.e / "Daily" / "~Marlok Backup.OTHER.run", "")
    write(machine.d / "Data" / "a.doc", "changed", 1)
    assert machine.run("A").code == FAILED
    assert contents(machine.e / "Daily" / "Data") == {"a.doc": "changed"}
    assert theirs.exists() and journal.exists()
    assert any("another computer" in line for line in machine.errors()), machine.errors()


def test_a_location_in_which_another_run_is_at_work_is_passed_over(machine: Machine) -> None:
    for number in range(400):
        write(machine.d / "Data" / f"{number}.doc", "x" * 10_000)
    write(machine.d / "Work" / "b.doc", "b")
    machine.configure({DAILY: [r"D:\Data"], r"E:\Weekly": [r"D:\Work"]})
    first = machine.start("C", "Daily")
    assert wait_until(lambda: len(list((machine.e / "Daily").rglob("*.doc"))) > 5)
    first.process.kill()
    first.process.wait()
    journal = next((machine.e / "Daily").glob("~Marlok Backup.*.run"))
    before = tree_of(machine.e / "Daily")

    # Another run holds its journal open as long as it lasts.
    with machine.held(rf"{DAILY}\{journal.name}"):
        for letter in ("C", "A"):
            assert machine.run(letter).code == FAILED
            assert [line.partition(": ")[0] for line in machine.errors()] == [DAILY]
            assert "another run is saving into this location" in machine.errors()[0]
            assert tree_of(machine.e / "Daily") == before
            assert contents(machine.e / "Weekly") == {"Work/b.doc": "b"}

    assert machine.run("C").code == 0, machine.errors()
    assert contents(machine.e / "Daily" / "Data") == contents(machine.d / "Data")


def test_nothing_torn_is_taken_for_a_copy_whatever_its_size_and_time_say(machine: Machine) -> None:
    for number in range(60):
        write(machine.d / "Data" / f"{number:02}.doc", f"{number:02} " * 10_000, 48)
    machine.configure({DAILY: [r"D:\Data"]})
    process = machine.start("C")
    saved = machine.e / "Daily" / "Data"
    assert wait_until(lambda: saved.exists() and len(list(saved.glob("*.doc"))) >= 10)
    process.kill()
    # As a lost power leaves them: full length and the right time, without the content.
    for copy in saved.glob("*.doc"):
        stamp = (machine.d / "Data" / copy.name).stat().st_mtime_ns
        copy.write_bytes(bytes(30_000))
        os.utime(copy, ns=(stamp, stamp))
    assert machine.run("C").code == 0, machine.errors()
    assert contents(machine.e / "Daily") == contents(machine.d)
    assert working_files_in(machine.e) == []


def test_a_location_without_sources_is_reported(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    machine.configure({DAILY: [r"D:\Data"], r"E:\Empty": []})
    assert machine.run("C").code == FAILED
    assert [line.partition(": ")[0] for line in machine.errors()] == [r"E:\Empty"]
    assert contents(machine.e / "Daily") == {"Data/a.doc": "a"}


def test_a_lost_list_of_originals_is_made_again(machine: Machine) -> None:
    write(machine.d / "Data" / "a.doc", "a")
    write(machine.d / "Data" / "Sub" / "b.doc", "b")
    machine.configure({DAILY: [r"D:\Data"]})
    assert machine.run("C").code == 0
    before = machine.listed("Daily")
    (machine.folder / "Daily.txt").unlink()
    assert machine.run("C").code == 0, machine.errors()
    assert machine.copied() == []
    assert machine.listed("Daily") == before
