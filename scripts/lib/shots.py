"""Takes pictures of the running program, scene by scene, at several resolutions; scripts/shots is the way in.

A scene is a function with the name of its picture. It gets a machine on which nothing is configured and nothing runs,
drives the program as the end-to-end tests do, and calls `shot()` when the screen is as it is to be seen, or
`shot("after")` for a further picture, whose name then is SCENE-after."""

from __future__ import annotations

import argparse
import contextlib
import shutil
import subprocess
import sys
import tempfile
import time
from collections.abc import Callable, Iterator
from pathlib import Path

REPO = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(REPO / "tests" / "windows" / "e2e"))
sys.path.insert(0, str(REPO / "scripts" / "lib"))
from harness import Machine, Place, ToolFailed, Window, write  # noqa: E402
from wine_env import WineEnvironment, WineError, end_cleanly_on_signals  # noqa: E402

OUTPUT = REPO / "build" / "shots"
DIST = REPO / "dist" / "Marlok Backup"
TOOL = REPO / "build" / "windows" / "tests" / "e2e_tool.exe"

# Percent: the size of the screen, so that a window takes about the same share of it.
SCREENS = {100: "1280x1024", 150: "1920x1440"}
USUAL_DOTS_PER_INCH = 96

# How long a picture may take to come to rest; what moves all the time is taken as it then is.
REST_SECONDS = 2

TITLE = "Marlok Backup Utility"
REPLACEMENT = "Marlok Backup Utility File Replacement Program"
MESSAGE = "Marlok Info....."

Shot = Callable[..., None]
Scene = Callable[[Machine, Shot], None]
SCENES: dict[str, Scene] = {}


def scene(name: str) -> Callable[[Scene], Scene]:
    """Makes a function a scene."""

    def add(function: Scene) -> Scene:
        SCENES[name] = function
        return function

    return add


# ---- the scenes ----


def configure(machine: Machine) -> None:
    """Three locations, their sources, and something in them."""
    documents = ("Documents/Letters/To the bank.doc", "Documents/Notes.txt")
    for path in (*documents, "Pictures/Summer/Harbour.jpg", "Mail/Inbox.dat"):
        write(machine.d / path, path)
    write(machine.e / "Backups" / "Daily" / "Documents" / "Notes.txt", "an earlier state")
    machine.configure(
        {
            r"E:\Backups\Daily": [r"D:\Documents", r"D:\Pictures", r"D:\Mail"],
            r"E:\Backups\Weekly": [r"D:\Documents", r"D:\Pictures"],
            r"E:\Pictures": [r"D:\Pictures"],
        }
    )


def started(machine: Machine) -> Window:
    """The main window of a program that was just started."""
    machine.start()
    window = machine.window(TITLE)
    window.tabs()  # waits for it
    return window


@scene("options-empty")
def options_empty(machine: Machine, shot: Shot) -> None:
    machine.start()
    window = machine.window(TITLE)
    window.tab("Options")
    shot()


@scene("options")
def options(machine: Machine, shot: Shot) -> None:
    configure(machine)
    window = started(machine)
    shot()
    window.click("Select Backup")
    window.select("List Of Backup Paths", r"E:\Backups\Daily", r"E:\Backups\Weekly")
    shot("run")


@scene("backup-folder")
def backup_folder(machine: Machine, shot: Shot) -> None:
    (machine.e / "Backups" / "Daily").mkdir(parents=True)
    (machine.e / "Backups" / "Weekly").mkdir()
    (machine.e / "Films").mkdir()
    write(machine.e / "Backups" / "read me.txt", "x")
    machine.start()
    window = machine.window(TITLE + "|Add Folder To List", 20)
    window.choose("ComboBox", "E:")
    folders = [line.strip() for line in window.lines("Folder")]
    window.open("Folder", folders.index("Backups"))
    shot()
    window.click("Create Folder")
    machine.window(MESSAGE + "|Is This Correct?").texts()
    shot("create")
    machine.answer(MESSAGE, "Is This Correct?", "Yes")
    box = machine.window(MESSAGE + "|Enter Name Of Folder")
    box.type("Monthly")
    shot("name")


@scene("files-to-backup")
def files_to_backup(machine: Machine, shot: Shot) -> None:
    configure(machine)
    for name in ("Budget 2026.xls", "Invoice 17.doc", "Invoice 18.doc", "Letter.doc"):
        write(machine.d / "Documents" / name, name)
    window = started(machine)
    window.tab("Files To Backup")
    window.choose("ComboBox", "D:")
    window.open("Folder", [line.strip() for line in window.lines("Folder")].index("Documents"))
    window.select("Files In This Folder", "Invoice 17.doc", "Invoice 18.doc")
    shot()
    window.select("Files To Be Backed Up", 2)
    window.click("Delete Entry From List")
    machine.answer(MESSAGE, "Continue?", "Yes")
    machine.window(TITLE + "|Do You Want To Delete The Saved File, or Only The List Entry?").texts()
    shot("only-entry")


def run(machine: Machine, window: Window) -> None:
    window.click("Select Backup")
    window.select("List Of Backup Paths", r"E:\Backups\Daily")
    window.click("Run Backup")


@scene("progress")
def progress(machine: Machine, shot: Shot) -> None:
    configure(machine)
    for number in range(12_000):
        (machine.d / "Pictures" / f"{number // 500}").mkdir(exist_ok=True)
        (machine.d / "Pictures" / f"{number // 500}" / f"{number}.jpg").write_bytes(b"x" * 500)
    run(machine, started(machine))
    machine.window(TITLE + "|Copying Backups\\Daily Files", 20).texts()
    time.sleep(1)
    shot()
    machine.window(TITLE + "|Backup Has Been Completed", 60).texts()


@scene("result")
def result(machine: Machine, shot: Shot) -> None:
    configure(machine)
    run(machine, started(machine))
    machine.window(TITLE + "|Backup Has Been Completed", 30).texts()
    machine.window(TITLE + "|Backup Completed", 30).texts()
    shot()


@scene("background-result")
def background_result(machine: Machine, shot: Shot) -> None:
    configure(machine)
    machine.start("C", r"Backups\Daily", "S")
    machine.window(TITLE + "|Backup Program Is Finished", 30).texts()
    shot()


@scene("review-saved")
def review_saved(machine: Machine, shot: Shot) -> None:
    configure(machine)
    assert machine.run("C").code == 0
    window = started(machine)
    window.tab("Review Saved")
    window.click("Show Saved Files")
    window.select("List of Saved Files", 0, 2)
    shot()
    window.click("Replace Selected Files")
    machine.answer(MESSAGE, "You Are About To Replace Selected Files", "OK")
    machine.window(REPLACEMENT + "|File Replacement Completed", 30).texts()
    shot("replaced")
    machine.window(REPLACEMENT).click("Close")
    window.click("Show Original Paths")
    shot("originals")


@scene("replacing")
def replacing(machine: Machine, shot: Shot) -> None:
    configure(machine)
    shutil.rmtree(machine.e / "Backups")
    for number in range(1500):
        write(machine.d / "Pictures" / "2026" / f"IMG_{number:04}.jpg", "x" * 2000)
    assert machine.run("C").code == 0
    window = started(machine)
    window.tab("Review Saved")
    window.click("Show Saved Files")
    window.select("List of Saved Files", 0)
    window.key("Shift+End")
    window.click("Replace Selected Files")
    machine.answer(MESSAGE, "You Are About To Replace Selected Files", "OK")
    machine.window(REPLACEMENT + "|Replacing Selected Files Please Wait!", 10).texts()
    shot()
    machine.window(REPLACEMENT + "|File Replacement Completed", 120).texts()


@scene("about")
def about(machine: Machine, shot: Shot) -> None:
    configure(machine)
    started(machine).click("About")
    machine.window(TITLE + "|Version 4.0.0").texts()
    shot()


@scene("start-up")
def start_up(machine: Machine, shot: Shot) -> None:
    # Last: this window stays for two seconds and a half, and the first program of a machine starts slowly.
    machine.start()
    machine.window(TITLE + "|Welcome").controls()
    shot()


# ---- taking them ----


def around(places: list[Place]) -> str:
    """The smallest rectangle with all the windows in it, as ImageMagick writes one."""
    left, top = min(place.left for place in places), min(place.top for place in places)
    right = max(place.left + place.width for place in places)
    bottom = max(place.top + place.height for place in places)
    return f"{right - left}x{bottom - top}+{left}+{top}"


def take(wine: WineEnvironment, machine: Machine, file: Path) -> None:
    """A picture of all windows on the screen, as soon as two in a row are the same."""
    end = time.monotonic() + REST_SECONDS
    before = b""
    while True:
        places = machine.places()
        if not places:
            raise ToolFailed("there is no window to be seen")
        options = ["-silent", "-window", "root", "-crop", around(places), "+repage", "-strip"]
        # Without the time, which would make every picture another one.
        options += ["-define", "png:exclude-chunks=date,time"]
        subprocess.run(["import", *options, str(file)], env=wine.env, stdin=subprocess.DEVNULL, check=True, timeout=30)
        now = file.read_bytes()
        if now == before or time.monotonic() > end:
            return
        before = now
        time.sleep(0.1)


def play(wine: WineEnvironment, work: Path, name: str, percent: int) -> None:
    machine = Machine(wine, DIST, TOOL, work, name)

    def shot(part: str = "") -> None:
        file = OUTPUT / f"{name}{'-' if part else ''}{part}-{percent}.png"
        take(wine, machine, file)
        print(file.relative_to(REPO), flush=True)

    try:
        SCENES[name](machine, shot)
    finally:
        machine.end_what_runs()


def play_all(wine: WineEnvironment, work: Path, names: list[str], percent: int) -> int:
    """One after the other; how many could not be played."""
    failed = 0
    for name in names:
        try:
            play(wine, work, name, percent)
        except (AssertionError, OSError, subprocess.SubprocessError) as failure:
            print(f"{name} at {percent} %: {failure}", file=sys.stderr, flush=True)
            failed += 1
    return failed


def install_fonts(wine: WineEnvironment) -> None:
    """The type of the system's windows, and the signs on their caption buttons: Wine has them in a package of their
    own."""
    folder = wine.prefix / "drive_c" / "windows" / "Fonts"
    folder.mkdir(exist_ok=True)
    for font in Path("/usr/share/wine/fonts").glob("*.ttf"):
        shutil.copy(font, folder)


@contextlib.contextmanager
def drives(wine: WineEnvironment) -> Iterator[Path]:
    """The folder of the drives: P for the program, D for data, E for backups."""
    folder = Path(tempfile.mkdtemp(prefix="shots", dir=wine.prefix.parent))
    try:
        for letter in "dep":
            (folder / letter).mkdir()
            wine.map_drive(letter, folder / letter)
        yield folder
    finally:
        shutil.rmtree(folder)


def main() -> int:
    parser = argparse.ArgumentParser(prog="scripts/shots", description="Pictures of the running program.")
    parser.add_argument("--list", action="store_true", help="name the scenes")
    parser.add_argument("scenes", nargs="*", metavar="SCENE", help="only these")
    arguments = parser.parse_args()
    if arguments.list:
        print("\n".join(SCENES))
        return 0
    unknown = set(arguments.scenes) - SCENES.keys()
    if unknown:
        parser.error(f"no such scene: {', '.join(sorted(unknown))}")
    end_cleanly_on_signals()
    OUTPUT.mkdir(parents=True, exist_ok=True)
    failed = 0
    for percent, screen in SCREENS.items():
        dots_per_inch = USUAL_DOTS_PER_INCH * percent // 100
        with WineEnvironment(screen=screen, dots_per_inch=dots_per_inch) as wine, drives(wine) as work:
            install_fonts(wine)
            failed += play_all(wine, work, arguments.scenes or list(SCENES), percent)
    return 1 if failed else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except WineError as problem:
        sys.exit(f"shots: {problem}")
