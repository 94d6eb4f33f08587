"""A run from the command line: what is copied, what is not, and the records it leaves."""

from __future__ import annotations

import os
import time

from harness import ERROR_LOG, RUN_LOG, SHORTCUT, Entry, Machine, read_link, same_time, tree_of, working_files_in, write

DAILY = r"E:\Backups\Daily"
NAME = r"Backups\Daily"


def seed_documents(machine: Machine) -> None:
    write(machine.d / "Data" / "letter.doc", "Dear Anna,")
    write(machine.d / "Data" / "README", "no extension")
    write(machine.d / "Data" / "empty.txt", "")
    write(machine.d / "Data" / "2024" / "taxes" / "sums.csv", "1;2;3\r\n" * 1000)
    write(machine.d / "Data" / "2024" / "picture.jpeg", os.urandom(300_000))
    (machine.d / "Data" / "nothing here").mkdir()


def run_clean(machine: Machine, *arguments: str) -> list[str]:
    """A run in which nothing fails; the saved copies its log names."""
    ended = machine.run(*arguments)
    assert (ended.code, ended.output, ended.errors) == (0, "", ""), machine.errors()
    assert not (machine.folder / ERROR_LOG).exists()
    assert not (machine.folder / "Command.txt").exists()
    assert working_files_in(machine.e) == []
    assert working_files_in(machine.folder) == []
    return machine.copied()


def test_the_first_run_saves_the_tree(machine: Machine) -> None:
    seed_documents(machine)
    machine.configure({DAILY: [r"D:\Data"]})
    before = tree_of(machine.d)

    copied = run_clean(machine, "C", NAME)

    assert tree_of(machine.d) == before
    saved = tree_of(machine.e / "Backups" / "Daily")
    assert saved.pop("Data") == Entry()
    assert saved == {path: entry for path, entry in tree_of(machine.d).items() if path != "Data"}
    assert sorted(copied) == [
        DAILY + r"\Data\2024\picture.jpeg",
        DAILY + r"\Data\2024\taxes\sums.csv",
        DAILY + r"\Data\README",
        DAILY + r"\Data\empty.txt",
        DAILY + r"\Data\letter.doc",
    ]


def test_the_program_folder_holds_the_records_and_nothing_else(machine: Machine) -> None:
    seed_documents(machine)
    machine.configure({DAILY: [r"D:\Data"]})
    shipped = set(tree_of(machine.folder))

    run_clean(machine, "C", NAME)

    records = {RUN_LOG, "Backup Report.txt", "Backup History.txt", "Backups", "Backups/Daily.txt"}
    assert set(tree_of(machine.folder)) - shipped == records
    assert shipped <= set(tree_of(machine.folder))


def test_the_configuration_stays_as_it_is(machine: Machine) -> None:
    seed_documents(machine)
    machine.configure({DAILY: [r"D:\Data", r"D:\Data\2024"]})

    run_clean(machine, "A", NAME)

    assert machine.registry_values("Target") == {"TargetPath2": DAILY}
    assert machine.registry_values(NAME) == {"SourcePath2": r"D:\Data", "SourcePath3": r"D:\Data\2024"}


def test_a_second_run_copies_nothing(machine: Machine) -> None:
    seed_documents(machine)
    machine.configure({DAILY: [r"D:\Data"]})
    run_clean(machine, "C", NAME)
    saved = tree_of(machine.e)

    assert run_clean(machine, "C", NAME) == []

    assert tree_of(machine.e) == saved
    assert len(machine.log_lines()) == 1


def test_only_what_was_written_later_is_copied_again(machine: Machine) -> None:
    seed_documents(machine)
    machine.configure({DAILY: [r"D:\Data"]})
    run_clean(machine, "C", NAME)
    write(machine.d / "Data" / "letter.doc", "Dear Anna and Bert,", hours_ago=1)

    assert run_clean(machine, "C", NAME) == [DAILY + r"\Data\letter.doc"]

    assert (machine.e / "Backups/Daily/Data/letter.doc").read_text() == "Dear Anna and Bert,"
    assert tree_of(machine.e / "Backups/Daily") == tree_of(machine.d)


def test_an_older_source_and_one_of_the_same_time_are_not_copied(machine: Machine) -> None:
    older = write(machine.d / "Data" / "older.doc", "one")
    same = write(machine.d / "Data" / "same.doc", "one")
    machine.configure({DAILY: [r"D:\Data"]})
    run_clean(machine, "C", NAME)
    saved = tree_of(machine.e)
    write(older, "from an old medium", hours_ago=1000)
    write(same, "another size")
    same_time(same, machine.e / "Backups/Daily/Data/same.doc")

    assert run_clean(machine, "C", NAME) == []

    assert tree_of(machine.e) == saved


def test_copy_all_empties_the_location_first(machine: Machine) -> None:
    seed_documents(machine)
    machine.configure({DAILY: [r"D:\Data"]})
    run_clean(machine, "C", NAME)
    location = machine.e / "Backups" / "Daily"
    write(location / "Data" / "deleted from the source.doc", "stale")
    write(location / "Old" / "deep" / "stale.doc", "stale")
    write(location / "write protected.doc", "stale").chmod(0o444)
    write(machine.e / "Backups" / "beside.doc", "not of this location")
    write(machine.d / "Data" / "letter.doc", "older than what was saved", hours_ago=500)

    copied = run_clean(machine, "A", NAME)

    assert len(copied) == 5
    assert tree_of(location) == tree_of(machine.d)
    assert (machine.e / "Backups" / "beside.doc").read_text() == "not of this location"


def test_only_the_named_location_runs(machine: Machine) -> None:
    seed_documents(machine)
    machine.configure({DAILY: [r"D:\Data"], r"E:\Weekly": [r"D:\Data\2024"]})

    copied = run_clean(machine, "C", "Weekly")

    assert sorted(copied) == [r"E:\Weekly\Data\2024\picture.jpeg", r"E:\Weekly\Data\2024\taxes\sums.csv"]
    assert not (machine.e / "Backups").exists()
    assert not (machine.folder / "Backups").exists()


def test_letter_case_and_part_of_the_path_do_to_name_a_location(machine: Machine) -> None:
    seed_documents(machine)
    machine.configure({DAILY: [r"D:\Data\2024\taxes"], r"E:\Old\Backups": [r"D:\Data\2024\taxes"]})

    copied = run_clean(machine, "c", "backups")

    assert copied == [DAILY + r"\Data\2024\taxes\sums.csv", r"E:\Old\Backups\Data\2024\taxes\sums.csv"]


def test_without_a_named_location_all_run(machine: Machine) -> None:
    seed_documents(machine)
    machine.configure({DAILY: [r"D:\Data\2024\taxes"], r"E:\Weekly": [r"D:\Data\2024\taxes"]})

    copied = run_clean(machine, "C")

    assert copied == [DAILY + r"\Data\2024\taxes\sums.csv", r"E:\Weekly\Data\2024\taxes\sums.csv"]


def test_commas_and_slashes_separate_like_blanks_and_the_last_letter_counts(machine: Machine) -> None:
    write(machine.d / "Data" / "letter.doc", "one")
    machine.configure({r"E:\Week": [r"D:\Data"]})
    run_clean(machine, "/A,Week")
    stale = write(machine.e / "Week" / "stale.doc", "kept when only what changed is copied")

    assert run_clean(machine, "/A,Week,/C") == []

    assert stale.exists()


def test_an_unknown_letter_copies_what_changed(machine: Machine) -> None:
    write(machine.d / "Data" / "letter.doc", "one")
    machine.configure({DAILY: [r"D:\Data"]})
    stale = write(machine.e / "Backups" / "Daily" / "stale.doc", "kept")

    # The first argument is taken for the letter, whatever it is; one that is none is reported.
    assert machine.run("x").code == 1

    assert machine.copied() == [DAILY + r"\Data\letter.doc"]
    assert stale.exists()
    assert [line.partition(":")[0] for line in machine.errors()] == ["x"]


def test_a_location_that_is_not_configured_leaves_a_log_of_one_line(machine: Machine) -> None:
    seed_documents(machine)
    machine.configure({DAILY: [r"D:\Data"]})

    machine.run("C", r"Backups\Monthly")

    assert machine.copied() == []
    assert (machine.desktop / SHORTCUT).exists()
    assert list(machine.e.iterdir()) == []
    assert not (machine.folder / "Command.txt").exists()


def test_a_single_file_is_saved_where_its_folder_is(machine: Machine) -> None:
    seed_documents(machine)
    machine.configure({DAILY: [r"D:\Data\2024\taxes", r"D:\Data\2024\taxes\sums.csv", r"D:\Data\letter.doc"]})

    copied = run_clean(machine, "C", NAME)

    assert copied == [DAILY + r"\Data\2024\taxes\sums.csv", DAILY + r"\Data\letter.doc"]


def test_equal_paths_on_two_drives_share_one_target(machine: Machine) -> None:
    write(machine.d / "Data" / "from d.txt", "d")
    write(machine.e / "Data" / "from e.txt", "e")
    machine.configure({DAILY: [r"D:\Data", r"E:\Data"]})

    run_clean(machine, "C", NAME)

    assert set(tree_of(machine.e / "Backups" / "Daily")) == {"Data", "Data/from d.txt", "Data/from e.txt"}


def test_the_log_names_copies_in_the_order_of_the_originals(machine: Machine) -> None:
    seed_documents(machine)
    machine.configure({DAILY: [r"D:\Data\2024", r"D:\Data"]})

    copied = run_clean(machine, "C", NAME)

    assert machine.listed(NAME) == [path.replace(DAILY, "D:") for path in copied]


def test_the_list_of_originals_grows_and_names_each_once(machine: Machine) -> None:
    seed_documents(machine)
    machine.configure({DAILY: [r"D:\Data"]})
    run_clean(machine, "C", NAME)
    first = machine.listed(NAME)
    write(machine.d / "Data" / "letter.doc", "changed", hours_ago=1)
    write(machine.d / "Data" / "new.doc", "new")

    assert len(run_clean(machine, "C", NAME)) == 2

    assert machine.listed(NAME) == [*first, r"D:\Data\new.doc"]


def test_the_shortcut_on_the_desktop_opens_the_log(machine: Machine) -> None:
    seed_documents(machine)
    machine.configure({DAILY: [r"D:\Data"]})
    write(machine.desktop / SHORTCUT, "an old one")

    run_clean(machine, "C", NAME)

    link = read_link(machine.desktop / SHORTCUT)
    assert link.target == machine.windows_folder + "\\" + RUN_LOG
    assert link.working_folder.rstrip("\\") == machine.windows_folder
    assert link.description == "Backup Log File"
    assert link.icon == machine.windows_folder + r"\Marlok Backup.exe"
    assert (link.icon_index, link.show) == (0, 1)


def test_the_header_tells_the_time_of_the_run(machine: Machine) -> None:
    write(machine.d / "Data" / "letter.doc", "one")
    machine.configure({DAILY: [r"D:\Data"]})
    # Formatted the way the program does it; the zone is the same for both.
    before = time.localtime()
    run_clean(machine, "C", NAME)
    after = time.localtime()

    def header(moment: time.struct_time) -> str:
        day = time.strftime("%A, %b ", moment) + str(moment.tm_mday) + time.strftime(" %Y", moment)
        return f"Total files copied {day} At {time.strftime('%I:%M %p', moment)} Was 1"

    assert machine.log_lines()[0] in (header(before), header(after))


def test_attributes_are_saved(machine: Machine) -> None:
    words = {"read only.txt": 0x21, "hidden.txt": 0x22, "system.txt": 0x26, "plain.txt": 0x20}
    for name, word in words.items():
        write(machine.d / "Data" / name, name)
        assert machine.attributes(rf"D:\Data\{name}", word) == word
    machine.configure({DAILY: [r"D:\Data"]})

    assert len(run_clean(machine, "C", NAME)) == len(words)

    saved = {name: machine.attributes(rf"{DAILY}\Data\{name}") for name in words}
    assert saved == words


def test_a_saved_copy_that_is_read_only_or_hidden_is_renewed(machine: Machine) -> None:
    words = {"read only.txt": 0x21, "hidden.txt": 0x22}
    for name, word in words.items():
        write(machine.d / "Data" / name, "one")
        machine.attributes(rf"D:\Data\{name}", word)
    machine.configure({DAILY: [r"D:\Data"]})
    run_clean(machine, "C", NAME)
    for name in words:
        file = machine.d / "Data" / name
        file.chmod(0o644)
        write(file, "two", hours_ago=1)
    for name, word in words.items():
        machine.attributes(rf"D:\Data\{name}", word)

    assert len(run_clean(machine, "C", NAME)) == len(words)

    assert tree_of(machine.e / "Backups/Daily") == tree_of(machine.d)
    assert {name: machine.attributes(rf"{DAILY}\Data\{name}") for name in words} == words
