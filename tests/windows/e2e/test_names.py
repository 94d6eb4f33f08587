"""File names and paths of every kind the system allows."""

from __future__ import annotations

import os
import time
from pathlib import Path

from harness import Machine, tree_of, working_files_in, write

DAILY = r"E:\Daily"

# What Linux takes for the longest path, with the zero at its end.
UNIX_LIMIT = 4096


def run_clean(machine: Machine, *arguments: str) -> list[str]:
    ended = machine.run(*arguments)
    assert ended.code == 0, machine.errors()
    return machine.copied()


def test_names_of_all_scripts(machine: Machine) -> None:
    names = [
        "Grüße aus Köln.txt",
        "résumé.doc",
        "Отчёт за год.txt",
        "Ελληνικά.txt",
        "日本語のファイル.txt",
        "한국어.txt",
        "עברית.txt",
        "العربية.txt",
        "🎂 birthday 🎉.jpg",
        "e\u0301 decomposed.txt",
        "\u00e9 composed.txt",
        "100% & more; (really) [x] {y} 'z' ^ ~ # @ ! =.txt",
        " leading blank.txt",
        "İstanbul ı.txt",
        ".hidden",
        "two..dots...txt",
        "long " + "n" * 200 + ".txt",
    ]
    for name in names:
        write(machine.d / "Data" / name, name)
        write(machine.d / "Data" / "Ordner Überfluß 文件夹 📁" / name, name)
    machine.configure({DAILY: [r"D:\Data"]})

    copied = run_clean(machine, "C")

    assert tree_of(machine.e / "Daily") == tree_of(machine.d)
    expected = [rf"{DAILY}\Data\{name}" for name in names]
    expected += [rf"{DAILY}\Data\Ordner Überfluß 文件夹 📁\{name}" for name in names]
    assert sorted(copied) == sorted(expected)
    assert sorted(machine.listed("Daily")) == sorted(path.replace(DAILY, "D:") for path in expected)
    assert run_clean(machine, "C") == []


def test_names_with_a_blank_or_dot_at_the_end(machine: Machine) -> None:
    # Ordinary paths cannot name these; the long form of a path can.
    for name in ("blank at the end.txt ", "dot at the end.", "folder. /inside.txt"):
        write(machine.d / "Data" / name, name)
    machine.configure({DAILY: [r"D:\Data"]})

    assert len(run_clean(machine, "C")) == 3

    assert tree_of(machine.e / "Daily") == tree_of(machine.d)


def test_a_location_and_sources_with_letters_of_other_scripts(machine: Machine) -> None:
    write(machine.d / "Данные" / "a.txt", "a")
    machine.configure({r"E:\Резерв\Größe": [r"D:\Данные"]})

    assert run_clean(machine, "C", r"резерв\größe") == [r"E:\Резерв\Größe\Данные\a.txt"]

    assert (machine.e / "Резерв" / "Größe" / "Данные" / "a.txt").read_text() == "a"
    assert machine.listed(r"Резерв\Größe") == [r"D:\Данные\a.txt"]


def test_letter_case_does_not_make_another_copy(machine: Machine) -> None:
    write(machine.d / "Data" / "Letter.doc", "one")
    machine.configure({DAILY: [r"D:\Data"]})
    run_clean(machine, "C")
    (machine.e / "Daily" / "Data" / "Letter.doc").rename(machine.e / "Daily" / "Data" / "LETTER.DOC")

    assert run_clean(machine, "C") == []

    write(machine.d / "Data" / "Letter.doc", "two", hours_ago=1)
    assert run_clean(machine, "C") == [DAILY + r"\Data\Letter.doc"]
    saved = list((machine.e / "Daily" / "Data").iterdir())
    assert len(saved) == 1
    assert saved[0].read_text() == "two"


def make_deep(root: Path, length: int, component: str) -> str:
    """Makes a chain of folders so that the path of a file "a.txt" in the last one, counted from `root` without the
    separator before it, has `length` characters. Returns that path, with the file written."""
    names = []
    left = length - len("/a.txt")
    while left > 0:
        # The rest is shared out so that no component is left empty.
        size = len(component) if left > 2 * len(component) else (left if left <= len(component) else left // 2)
        names.append(component[:size])
        left -= size + 1
    folder = root / "/".join(names)
    folder.mkdir(parents=True)
    file = folder / "a.txt"
    file.write_text("deep")
    moment = time.time_ns() - 24 * 3600 * 10**9
    os.utime(file, ns=(moment, moment))
    path = str(file.relative_to(root))
    assert len(path) == length, (len(path), length)
    return path


def save_deep(machine: Machine, length: int, component: str) -> None:
    path = make_deep(machine.d, length, component)
    machine.configure({DAILY: ["D:\\" + component]})

    copied = run_clean(machine, "C")

    assert copied == [DAILY + "\\" + path.replace("/", "\\")]
    assert tree_of(machine.e / "Daily") == tree_of(machine.d)
    assert working_files_in(machine.e) == []
    # Once more over what is there: another way through the program than a first copy.
    source = machine.d / path
    source.write_text("deeper")
    assert run_clean(machine, "C") == copied
    assert (machine.e / "Daily" / path).read_text() == "deeper"
    assert run_clean(machine, "C") == []


def test_paths_just_around_the_classic_limit(machine: Machine) -> None:
    for length in range(235, 265, 3):
        make_deep(machine.d / f"n{length}", length, "folder-of-some-length")
    machine.configure({DAILY: [rf"D:\n{length}" for length in range(235, 265, 3)]})

    assert len(run_clean(machine, "C")) == 10

    assert tree_of(machine.e / "Daily") == tree_of(machine.d)


def test_a_path_of_more_than_a_thousand_characters(machine: Machine) -> None:
    save_deep(machine, 1500, "a-folder-with-quite-a-long-name-that-goes-on-and-on")


def test_a_path_near_four_thousand_characters(machine: Machine, wine) -> None:
    # The real path of a saved copy has the drive's folder before it, and its neighbour a longer name.
    root = max(len(str(machine.e)), len(str(wine.prefix / "dosdevices" / "e:")))
    room = UNIX_LIMIT - 1 - root - len("/Daily/") - len("~Marlok Backup.part")
    assert room > 3800
    save_deep(machine, room, "x" * 100)
