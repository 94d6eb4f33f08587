"""Backs a real folder up with the built program and checks the result; scripts/demo is the way in."""

from __future__ import annotations

import filecmp
import math
import os
import shutil
import struct
import subprocess
import sys
import time
import zlib
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
from wine_env import REPO, WineEnvironment, WineError, end_cleanly_on_signals

DIST = REPO / "dist" / "Marlok Backup"
DEMO = REPO / "build" / "demo"
SETTINGS = r"HKCU\Software\Marlok Software\Fenwold"
LOCATION = r"E:\Backups\Daily"
LOCATION_NAME = r"Backups\Daily"
PROGRAM_FOLDER = r"P:\Marlok Backup"
# Long enough for a big folder; a run that hangs is to be seen all the same.
TIME_LIMIT = 3600


class DemoFailed(Exception):
    """What went wrong, for the person in front of the screen."""


def picture(width: int, height: int, phase: float) -> bytes:
    """A PNG picture of soft colours."""

    def chunk(kind: bytes, data: bytes) -> bytes:
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = bytearray()
    for y in range(height):
        rows.append(0)
        for x in range(width):
            wave = math.sin(x / 37 + phase) + math.cos(y / 29 - phase)
            rows += bytes(int(128 + 60 * math.sin(wave + shift)) for shift in (0, 2, 4))
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(bytes(rows))) + chunk(b"IEND", b"")


def make_sample(folder: Path) -> None:
    """Fills `folder` with what a home folder holds, in small."""
    files = {
        "Letters/Müller, Jürgen.txt": "Lieber Jürgen,\r\n\r\nvielen Dank für die Größenangaben.\r\n" * 40,
        "Letters/Отчёт за ноябрь.txt": "Всё готово.\r\n" * 300,
        "Letters/README": "A file without an extension.\r\n",
        "Accounts/2026/November.csv": "date,amount,purpose\r\n" + "2026-11-01,12.50,bread\r\n" * 2000,
        "Accounts/2026/empty.csv": "",
        "Accounts/.settings": "hidden = yes\r\n",
        "Recipes/🎂 birthday cake.txt": "Flour, eggs, candles.\r\n" * 20,
        "Recipes/日本/味噌汁.txt": "出汁、味噌、豆腐。\r\n" * 20,
        "Pictures/Holidays/Côte d'Azur/beach.png": picture(320, 240, 0.5),
        "Pictures/Holidays/Côte d'Azur/harbour.png": picture(320, 240, 2.5),
        "Pictures/Family/portrait.png": picture(200, 300, 4),
        "Programs/data.bin": os.urandom(3 << 20),
    }
    for number, (name, content) in enumerate(files.items()):
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        # Written at different times, as real files are.
        moment = time.time_ns() - (number + 1) * 26 * 3600 * 10**9
        os.utime(path, ns=(moment, moment))
    (folder / "Accounts" / "2027").mkdir()


def windows_name(folder: Path) -> str:
    """The folder's own name, as the name of the source on drive D."""
    name = folder.name
    if not name:
        raise DemoFailed("a whole system is more than a demonstration needs. Choose a folder.")
    if ("D:\\" + name)[-4] == ".":
        raise DemoFailed(
            f'"{name}" ends in a three-letter extension: as a source it stands for a single file. '
            "Choose the folder above it, or one below."
        )
    if any(character in name for character in '<>:"|?*\\') or name[-1] in ". ":
        raise DemoFailed(f'"{name}" is no name that Windows can spell. Choose another folder.')
    return name


def configure(wine: WineEnvironment, source: str) -> None:
    """Stores one backup location with one source, as the program's own windows would."""
    values = [
        (rf"{SETTINGS}\Target", "TargetPath2", LOCATION),
        (rf"{SETTINGS}\{LOCATION_NAME}", "SourcePath2", source),
    ]
    for key, name, data in values:
        done = wine.run(["reg", "add", key, "/v", name, "/t", "REG_SZ", "/d", data, "/f"])
        if done.returncode != 0:
            raise DemoFailed(f"the configuration could not be stored: {done.stdout}{done.stderr}")


def run_program(wine: WineEnvironment) -> int:
    command = [PROGRAM_FOLDER + r"\Marlok Backup.exe", "C", LOCATION_NAME]
    print(f'running: "{command[0]}" {" ".join(command[1:])}', flush=True)
    began = time.monotonic()
    try:
        done = wine.run(command, timeout=TIME_LIMIT)
    except subprocess.TimeoutExpired:
        raise DemoFailed(f"the program did not end within {TIME_LIMIT} seconds") from None
    print(f"exit code {done.returncode} after {time.monotonic() - began:.1f} s")
    if done.stdout or done.stderr:
        print(done.stdout + done.stderr)
    return done.returncode


def show_log(file: Path, title: str) -> None:
    print(f"\n---- {title}: {file.relative_to(REPO)}")
    lines = file.read_text(encoding="utf-8", errors="replace").splitlines()
    print("\n".join(lines[:40]))
    if len(lines) > 40:
        print(f"... and {len(lines) - 40} more lines")


def compare(source: Path, saved: Path) -> tuple[list[str], list[str]]:
    """Compares a folder with its saved copy byte by byte, times too. What differs, and what of the source Windows
    programs cannot see (links that lead nowhere, sockets and the like)."""
    faults, unseen = [], []
    for folder, folders, files in os.walk(source):
        for name in folders + files:
            original = Path(folder, name)
            copy = saved / original.relative_to(source)
            if not original.is_file() and not original.is_dir():
                unseen.append(str(original))
            elif original.is_dir() and not copy.is_dir() and not original.is_symlink():
                faults.append(f"{copy}: not saved")
            elif original.is_file() and not copy.is_file():
                faults.append(f"{copy}: not saved")
            elif original.is_file() and not filecmp.cmp(original, copy, shallow=False):
                faults.append(f"{copy}: not the content of the original")
            elif original.is_file() and original.stat().st_mtime_ns // 100 != copy.stat().st_mtime_ns // 100:
                # Windows keeps times in steps of 100 nanoseconds.
                faults.append(f"{copy}: not the time of the original")
    for folder, folders, files in os.walk(saved):
        for name in folders + files:
            copy = Path(folder, name)
            if not (source / copy.relative_to(saved)).exists():
                faults.append(f"{copy}: not in the source")
    return faults, unseen


def prepare(arguments: list[str]) -> Path:
    """Empties build/demo and returns the source folder."""
    if arguments:
        source = Path(arguments[0]).resolve()
        if source == DEMO or DEMO in source.parents or source in DEMO.parents:
            raise DemoFailed(f"{source} holds the demonstration itself or is part of it. Choose another folder.")
    if DEMO.exists():
        shutil.rmtree(DEMO)
    for name in ("D", "E", "P"):
        (DEMO / name).mkdir(parents=True)
    shutil.copytree(DIST, DEMO / "P" / DIST.name)
    if arguments:
        return source
    make_sample(DEMO / "D" / "My Documents")
    return DEMO / "D" / "My Documents"


def demonstrate(arguments: list[str]) -> None:
    source = prepare(arguments)
    name = windows_name(source)
    with WineEnvironment() as wine:
        wine.map_drive("d", source.parent)
        wine.map_drive("e", DEMO / "E")
        wine.map_drive("p", DEMO / "P")
        print(f"source:   D:\\{name}  ({source})")
        print(f"location: {LOCATION}  ({DEMO / 'E' / 'Backups' / 'Daily'})")
        configure(wine, f"D:\\{name}")
        code = run_program(wine)
    program = DEMO / "P" / DIST.name
    for file, title in (("Backup Log File.txt", "run log"), ("Backup Error Log.txt", "error log")):
        if (program / file).exists():
            show_log(program / file, title)
    if code != 0:
        raise DemoFailed(f"the program ended with code {code}")
    saved = DEMO / "E" / "Backups" / "Daily" / name
    faults, unseen = compare(source, saved)
    if faults:
        raise DemoFailed("the saved tree is not the source:\n" + "\n".join(faults[:40]))
    if unseen:
        print("\nno files to a Windows program, so not saved:\n" + "\n".join(unseen[:40]))
    files = sum(len(names) for _, _, names in os.walk(saved))
    print(f"\nsaved files: {files}. Compared byte by byte: contents and times are those of the originals.")
    print(f"The saved tree lies in {saved}")


def main() -> int:
    end_cleanly_on_signals()
    try:
        demonstrate(sys.argv[1:])
    except (DemoFailed, WineError, OSError) as failure:
        print(f"\nscripts/demo: {failure}", file=sys.stderr)
        return 1
    except KeyboardInterrupt:
        return 130
    return 0


if __name__ == "__main__":
    sys.exit(main())
