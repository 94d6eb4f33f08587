"""The benchmarks: see scripts/bench.

Peers take turns within a round, so that a machine that gets slower gets slower for all of them; figures are medians of
the rounds. A first copy starts without a target, its removal not being timed.
"""

from __future__ import annotations

import argparse
import json
import os
import platform
import random
import shutil
import statistics
import subprocess
import sys
import time
from pathlib import Path

from wine_env import REPO, WineEnvironment, end_cleanly_on_signals

# A person's hands on the program's windows, as the end-to-end tests have them.
sys.path.insert(0, str(REPO / "tests" / "windows" / "e2e"))
from harness import Hands, Window, wait_until  # noqa: E402

WORK = REPO / "build" / "bench"
DIST = REPO / "dist" / "Marlok Backup"
E2E_TOOL = REPO / "build" / "windows" / "tests" / "e2e_tool.exe"
BINARIES = REPO / "build" / "windows" / "tests" / "bench"
SETTINGS = r"HKCU\Software\Marlok Software\Fenwold"
LIST_LINES = 100_000
LOCATIONS = 300
TITLE = "Marlok Backup Utility"
RUN_LOG = "Backup Log File.txt"

# What is measured besides the trees.
OTHERS = ("list", "review", "locations", "window")


def make_small(folder: Path, count: int) -> None:
    """Files of 300 bytes to 4 KB, 100 a folder."""
    pick = random.Random(count)
    for number in range(count):
        place = folder / f"group{number // 2000}" / f"folder{number // 100}"
        if number % 100 == 0:
            place.mkdir(parents=True)
        (place / f"file{number}.txt").write_bytes(pick.randbytes(pick.randint(300, 4000)))


def make_flat(folder: Path, count: int) -> None:
    folder.mkdir(parents=True)
    for number in range(count):
        (folder / f"file{number}.dat").write_bytes(b"x" * (number % 500))


def make_big(folder: Path) -> None:
    folder.mkdir(parents=True)
    pick = random.Random(1)
    for number in range(50):
        (folder / f"big{number}.bin").write_bytes(pick.randbytes(20 * 1000 * 1000))


TREES = {
    "small10k": (10_000, lambda folder: make_small(folder, 10_000)),
    "small100k": (100_000, lambda folder: make_small(folder, 100_000)),
    "big": (50, make_big),
    "flat": (50_000, lambda folder: make_flat(folder, 50_000)),
}


class Bench:
    """One run: the Wine machine, the program in it, the figures."""

    def __init__(self, wine: WineEnvironment, rounds: int, most_for_copy_all: int) -> None:
        self.wine = wine
        self.rounds = rounds
        self.most_for_copy_all = most_for_copy_all
        self.seconds: dict[str, list[float]] = {}
        self.peak_kb = 0
        self.program_folder = WORK / "program"
        shutil.copytree(DIST, self.program_folder)
        # A signed-in user has a desktop. Without one, Wine starts and ends a desktop process with every program that
        # touches the screen, which no user's machine does.
        self.desktop = subprocess.Popen(
            wine.command("notepad"), env=wine.env, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)  # fmt: skip
        time.sleep(5)
        for letter, name in (("s", "sources"), ("t", "targets"), ("p", "program")):
            (WORK / name).mkdir(exist_ok=True)
            wine.map_drive(letter, WORK / name)

    def timed(self, name: str, command: list[str], watch_memory: bool = False) -> None:
        os.sync()
        start = time.monotonic()
        process = subprocess.Popen(
            self.wine.command(*command), env=self.wine.env, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)  # fmt: skip
        while watch_memory and process.poll() is None:
            self.peak_kb = max(self.peak_kb, self._peak_of_program())
            time.sleep(0.1)
        code = process.wait()
        passed = time.monotonic() - start
        if code != 0:
            raise SystemExit(f"{command[0]} ended with {code}")
        self.seconds.setdefault(name, []).append(passed)
        print(f"  {name}: {passed:.2f} s", flush=True)

    def _peak_of_program(self) -> int:
        """Largest resident set so far of the program's process, in KB."""
        for status in Path("/proc").glob("[0-9]*/status"):
            try:
                if "Marlok Backup.exe" in (status.parent / "cmdline").read_text(errors="replace"):
                    for line in status.read_text().splitlines():
                        if line.startswith("VmHWM"):
                            return int(line.split()[1])
            except OSError:
                continue
        return 0

    def configure(self, source: str) -> None:
        self.wine.run(["reg", "delete", SETTINGS, "/f"])
        for key, name, value in (("Target", "TargetPath2", r"T:\ours"), ("ours", "SourcePath2", source)):
            done = self.wine.run(["reg", "add", f"{SETTINGS}\\{key}", "/v", name, "/d", value, "/f"])
            if done.returncode != 0:
                raise SystemExit(f"reg add failed: {done.stderr}")

    def program(self, mode: str) -> list[str]:
        return [str(self.program_folder / "Marlok Backup.exe"), mode, "ours"]

    def tree(self, name: str) -> None:
        print(f"{name}:", flush=True)
        source = WORK / "sources" / name
        TREES[name][1](source)
        windows_source = f"S:\\{name}"
        self.configure(windows_source)
        xcopy = ["xcopy", windows_source, f"T:\\xcopy\\{name}", "/e", "/i", "/q", "/h", "/y", "/k"]
        bare = [str(BINARIES / "bare_copy.exe"), windows_source, f"T:\\bare\\{name}"]
        listing = [str(BINARIES / "bare_list.exe"), windows_source, f"T:\\ours\\{name}"]
        peak = name == "small100k"
        self.wine.run(["cmd", "/c", "exit"])
        first = [("ours", self.program("C")), ("xcopy", xcopy), ("bare", bare)]
        for turn in range(self.rounds):
            for target in ("ours", "xcopy", "bare"):
                shutil.rmtree(WORK / "targets" / target, ignore_errors=True)
            (WORK / "targets" / "bare").mkdir()
            # Who comes first pays for what the disk still has to do about the removal: each peer in its turn.
            for peer, command in first[turn % 3 :] + first[: turn % 3]:
                self.timed(f"{name} first {peer}", command, peak and peer == "ours")
            self.timed(f"{name} nochange ours", self.program("C"))
            self.timed(f"{name} nochange xcopy", [*xcopy, "/d"])
            self.timed(f"{name} nochange bare", listing)
            if TREES[name][0] <= self.most_for_copy_all:
                self.timed(f"{name} all ours", self.program("A"))
                self.timed(f"{name} all xcopy", xcopy)
                self.timed(f"{name} all bare", bare)
        for folder in (source, WORK / "targets" / "ours", WORK / "targets" / "xcopy", WORK / "targets" / "bare"):
            shutil.rmtree(folder)

    def original_list(self) -> dict[str, float]:
        """Milliseconds of the list's own figures; and runs that add to a long list and to none."""
        print("list:", flush=True)
        done = self.wine.run([str(BINARIES / "list_scaling.exe"), "T:"], timeout=300)
        figures = {line.split()[0]: float(line.split()[1]) for line in done.stdout.splitlines()}
        for name, value in figures.items():
            print(f"  {name}: {value:.2f} ms", flush=True)
        make_small(WORK / "sources" / "added", 1000)
        self.configure(r"S:\added")
        lines = "".join(f"C:\\Data\\old\\folder{n // 100}\\file{n}.txt\r\n" for n in range(LIST_LINES))
        for _ in range(self.rounds):
            for name, text in (("empty", None), ("long", lines)):
                shutil.rmtree(WORK / "targets" / "ours", ignore_errors=True)
                list_file = self.program_folder / "ours.txt"
                list_file.unlink(missing_ok=True)
                if text is not None:
                    list_file.write_text(text)
                self.timed(f"list {name}", self.program("C"))
        shutil.rmtree(WORK / "sources" / "added")
        return figures

    def review(self) -> dict[str, float]:
        """Milliseconds of listing 100,000 saved files, by the program and bare."""
        print("review:", flush=True)
        folder = WORK / "targets" / "saved"
        make_small(folder, 100_000)
        done = self.wine.run([str(BINARIES / "review_listing.exe"), r"T:\saved"], timeout=600)
        if done.returncode != 0:
            raise SystemExit(f"review_listing ended with {done.returncode}: {done.stderr}")
        figures = {line.split()[0]: float(line.split()[1]) for line in done.stdout.splitlines()}
        for name, value in figures.items():
            print(f"  {name}: {value:.2f}", flush=True)
        shutil.rmtree(folder)
        return figures

    def locations(self) -> None:
        """Runs of many locations with one file each, of which one file has changed."""
        print("locations:", flush=True)
        source = WORK / "sources" / "one" / "file.txt"
        source.parent.mkdir()
        values = {"Target": {f"TargetPath{n}": rf"T:\many\L{n}" for n in range(2, LOCATIONS + 2)}}
        for n in range(2, LOCATIONS + 2):
            values[rf"many\L{n}"] = {"SourcePath2": r"S:\one"}
        self.wine.run(["reg", "delete", SETTINGS, "/f"])
        self.import_settings(values)
        program = str(self.program_folder / "Marlok Backup.exe")
        for number in range(self.rounds):
            for mode, name in (("C", "changed"), ("A", "all")):
                source.write_text(f"{number} {mode}")
                self.timed(f"locations {name}", [program, mode])
        shutil.rmtree(source.parent)
        shutil.rmtree(WORK / "targets" / "many")

    def import_settings(self, values: dict[str, dict[str, str]]) -> None:
        lines = ["Windows Registry Editor Version 5.00", ""]
        for key, texts in values.items():
            lines.append(f"[{SETTINGS.replace('HKCU', 'HKEY_CURRENT_USER')}\\{key}]")
            lines += [f'"{name}"="{text}"'.replace("\\", "\\\\") for name, text in texts.items()]
            lines.append("")
        file = WORK / "settings.reg"
        file.write_bytes(b"\xff\xfe" + "\r\n".join(lines).encode("utf-16-le"))
        done = self.wine.run(["reg", "import", "Z:" + str(file).replace("/", "\\")])
        if done.returncode != 0:
            raise SystemExit(f"reg import failed: {done.stderr}")

    def window(self) -> None:
        """A first copy that a window shows, and one that nobody watches: from the first saved file to the log."""
        print("window:", flush=True)
        make_small(WORK / "sources" / "watched", 10_000)
        self.configure(r"S:\watched")
        program = str(self.program_folder / "Marlok Backup.exe")
        for _ in range(self.rounds):
            for name in ("unattended", "interactive"):
                shutil.rmtree(WORK / "targets" / "ours", ignore_errors=True)
                (self.program_folder / RUN_LOG).unlink(missing_ok=True)
                arguments = ["C"] if name == "unattended" else []
                process = subprocess.Popen(
                    self.wine.command(program, *arguments), env=self.wine.env, stdin=subprocess.DEVNULL,
                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)  # fmt: skip
                if name == "interactive":
                    self.press_run()
                if not wait_until((self.program_folder / RUN_LOG).exists, 600):
                    raise SystemExit(f"the {name} run wrote no log")
                if name == "interactive":
                    process.kill()
                process.wait()
                files = (WORK / "targets" / "ours").rglob("*.txt")
                first = min(file.stat().st_ctime for file in files)
                self.seconds.setdefault(f"window {name}", []).append(
                    (self.program_folder / RUN_LOG).stat().st_mtime - first)  # fmt: skip
                print(f"  window {name}: {self.seconds[f'window {name}'][-1]:.2f} s", flush=True)
        shutil.rmtree(WORK / "sources" / "watched")

    def press_run(self) -> None:
        hands = Hands(self.wine.command(str(E2E_TOOL), "serve"), self.wine.env)
        window = Window(hands, TITLE, 30)
        window.click("Select Backup")
        window.select("ListBox", r"T:\ours")
        window.click("Run Backup")
        hands.close()

    def median(self, name: str) -> float:
        return statistics.median(self.seconds[name])


def ratio_rows(bench: Bench, trees: list[str]) -> list[tuple[str, str, str]]:
    rows = []

    def row(what: str, value: float, most: float | None = None) -> None:
        wanted = "" if most is None else f"at most {most}: {'reached' if value <= most else 'NOT reached'}"
        rows.append((what, f"{value:.2f}", wanted))

    for tree in trees:
        m = lambda kind, peer: bench.median(f"{tree} {kind} {peer}")  # noqa: E731
        small = tree.startswith("small")
        row(f"{tree}: first copy / xcopy", m("first", "ours") / m("first", "xcopy"), 0.70 if small else None)
        row(f"{tree}: first copy / bare CopyFileEx loop", m("first", "ours") / m("first", "bare"), 1.15)
        row(f"{tree}: no-change run / xcopy /d", m("nochange", "ours") / m("nochange", "xcopy"), 0.15 if small else None)
        row(f"{tree}: no-change run / bare listing of both trees", m("nochange", "ours") / m("nochange", "bare"))
        if f"{tree} all ours" in bench.seconds:
            row(f"{tree}: copy-all run / xcopy over", m("all", "ours") / m("all", "xcopy"), 1.0 if small else None)
            row(f"{tree}: copy-all run / bare CopyFileEx loop over", m("all", "ours") / m("all", "bare"))
    if {"small10k", "small100k"} <= set(trees):
        per_file = [bench.median(f"{tree} first ours") / TREES[tree][0] for tree in ("small100k", "small10k")]
        row("cost per file at 100,000 files / at 10,000", per_file[0] / per_file[1], 1.15)
    return rows


def other_rows(bench: Bench, wanted: list[str]) -> list[tuple[str, str, str]]:
    rows = []
    for name, what, ours, peer, most in (
        ("locations", f"{LOCATIONS} locations: copy-all run / changed-files run", "all", "changed", 2.0),
        ("window", "10,000 files: run in the window / unattended run", "interactive", "unattended", 1.2),
    ):
        if name in wanted:
            value = bench.median(f"{name} {ours}") / bench.median(f"{name} {peer}")
            rows.append((what, f"{value:.2f}", f"at most {most}: {'reached' if value <= most else 'NOT reached'}"))
    return rows


def list_rows(bench: Bench, figures: dict[str, float]) -> list[tuple[str, str, str]]:
    both = figures["read"] + figures["write"]
    rows = [
        (f"adding {name[4:]} paths to a list of 100,000 / reading and writing it", f"{value / both:.2f}", "")
        for name, value in figures.items()
        if name.startswith("add_")
    ]
    rows.append(
        ("run of 1,000 new files, list of 100,000 / no list", f"{bench.median('list long') / bench.median('list empty'):.2f}", "")
    )
    return rows


def review_rows(figures: dict[str, float]) -> list[tuple[str, str, str]]:
    value = figures["ours"] / figures["bare"]
    return [
        ("listing 100,000 saved files / bare listing into a bare list box", f"{value:.2f}",
         f"at most 1.5: {'reached' if value <= 1.5 else 'NOT reached'}"),
        ("filling the list with a million lines, seconds", f"{figures['million'] / 1000:.2f}", ""),
    ]  # fmt: skip


def report(bench: Bench, rows: list[tuple[str, str, str]]) -> str:
    version = subprocess.run(["wine", "--version"], env=bench.wine.env, capture_output=True, text=True, check=True)
    lines = [
        "# Benchmarks",
        "",
        f"{os.cpu_count()} cores, {platform.system()} {platform.release()}, {version.stdout.strip()}; medians of "
        f"{bench.rounds} rounds, peers in turn, one prefix.",
        "",
        "| Ratio | | Wanted |",
        "|---|---|---|",
        *(f"| {what} | {value} | {wanted} |" for what, value, wanted in rows),
        "",
        "| Seconds | median | least | most |",
        "|---|---|---|---|",
        *(
            f"| {name} | {statistics.median(values):.2f} | {min(values):.2f} | {max(values):.2f} |"
            for name, values in bench.seconds.items()
        ),
        "",
    ]
    return "\n".join(lines)


def main() -> int:
    parser = argparse.ArgumentParser(prog="scripts/bench")
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--copy-all-up-to", type=int, default=100_000, metavar="FILES",
                        help="measure copy-all runs on trees of so many files at most")  # fmt: skip
    parser.add_argument("tree", nargs="*", help=" ".join([*TREES, *OTHERS]))
    options = parser.parse_args()
    wanted = options.tree or [*TREES, *OTHERS]
    unknown = [name for name in wanted if name not in (*TREES, *OTHERS)]
    if unknown:
        parser.error(f"no such tree: {', '.join(unknown)}")
    end_cleanly_on_signals()
    shutil.rmtree(WORK, ignore_errors=True)
    WORK.mkdir(parents=True)
    trees = [name for name in wanted if name in TREES]
    try:
        with WineEnvironment() as wine:
            bench = Bench(wine, options.rounds, options.copy_all_up_to)
            for name in trees:
                bench.tree(name)
            rows = ratio_rows(bench, trees)
            if "list" in wanted:
                rows += list_rows(bench, bench.original_list())
            if "review" in wanted:
                rows += review_rows(bench.review())
            if "locations" in wanted:
                bench.locations()
            if "window" in wanted:
                bench.window()
            rows += other_rows(bench, wanted)
            if bench.peak_kb:
                mb = bench.peak_kb / 1024
                rows.append(
                    ("peak resident memory of the program at 100,000 files, MB", f"{mb:.0f}",
                     f"at most 60: {'reached' if mb <= 60 else 'NOT reached'}"))  # fmt: skip
            text = report(bench, rows)
            (WORK / "bench.md").write_text(text)
            (WORK / "bench.json").write_text(json.dumps({"seconds": bench.seconds, "ratios": rows}, indent=1))
    finally:
        for name in ("sources", "targets", "program"):
            shutil.rmtree(WORK / name, ignore_errors=True)
    print(text)
    return 0


if __name__ == "__main__":
    sys.exit(main())
