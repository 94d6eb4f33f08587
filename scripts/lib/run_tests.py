"""Runs every check and test and counts them; scripts/test is the way in."""

from __future__ import annotations

import argparse
import os
import re
import signal
import subprocess
import sys
import time
import xml.etree.ElementTree as ElementTree
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass, field
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
from repo_files import REPO, repo_files
from wine_env import WineEnvironment, WineError, end_cleanly_on_signals

OUTPUT = REPO / "build" / "test"

# What a failed stage prints of its log.
LOG_TAIL_LINES = 80

# The program needs Windows itself and nothing else.
SYSTEM_LIBRARIES = set(
    """advapi32 comctl32 comdlg32 gdi32 kernel32 msvcrt ole32 oleaut32 shell32 shlwapi user32 uxtheme version
    wininet""".split()
)
MUST_SHIP = {"Marlok Backup.exe", "Restart.sec", "LICENSE", "pc21.gif"}
MAY_SHIP = {"Backup.hlp"}


class StageFailed(Exception):
    """A stage could not do its work; it counts as one failure."""


@dataclass
class Count:
    passed: int = 0
    failed: int = 0

    def __add__(self, other: Count) -> Count:
        return Count(self.passed + other.passed, self.failed + other.failed)


@dataclass
class Stage:
    name: str
    what: str
    run: object
    nightly: bool = False
    needs: list[str] = field(default_factory=list)


def run(log: Path, command: list[str], timeout: float, env: dict[str, str] | None = None, cwd: Path = REPO) -> int:
    """Runs a command with its output in `log`; its exit code. What it started ends with it when the time is over."""
    with log.open("ab") as output:
        output.write(("$ " + " ".join(command) + "\n").encode())
        output.flush()
        process = subprocess.Popen(
            command, cwd=cwd, env=env, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT,
            start_new_session=True)  # fmt: skip
        try:
            return process.wait(timeout)
        except subprocess.TimeoutExpired:
            raise StageFailed(f"{command[0]} did not end within {timeout:.0f} seconds") from None
        finally:
            if process.poll() is None:
                # The session is the command's own, so this reaches nothing else.
                os.killpg(process.pid, signal.SIGTERM)
                try:
                    process.wait(20)
                except subprocess.TimeoutExpired:
                    os.killpg(process.pid, signal.SIGKILL)
                    process.wait()


def check(log: Path, command: list[str], timeout: float) -> Count:
    """A command that counts as one check."""
    return Count(1, 0) if run(log, command, timeout) == 0 else Count(0, 1)


def tell(text: str) -> None:
    print(text, flush=True)


def count_report(report: Path) -> Count:
    """Counts an XML report of GoogleTest or pytest. A skipped test has shown nothing: it counts as failed."""
    count = Count()
    for case in ElementTree.parse(report).getroot().iter("testcase"):
        skipped = case.find("skipped") is not None or case.get("status") == "notrun" or case.get("result") == "skipped"
        faults = case.findall("failure") + case.findall("error")
        name = f"{case.get('classname')}.{case.get('name')}"
        if not faults and not skipped:
            count.passed += 1
            continue
        count.failed += 1
        tell(f"  FAILED {name}" + (" (skipped)" if skipped else ""))
        for fault in faults:
            text = fault.text or fault.get("message") or ""
            tell("    " + "\n    ".join(text.strip().splitlines()[-40:]))
    return count


def count_gtest(report: Path, log: Path, code: int) -> Count:
    """Counts a run of a GoogleTest program. One that died before it could report counts by what it had printed, and
    its death as one more failure."""
    if report.exists():
        count = count_report(report)
        if count.passed + count.failed == 0:
            raise StageFailed("the program ran no test")
        return count + Count(0, 1) if code != 0 and count.failed == 0 else count
    text = log.read_text(encoding="utf-8", errors="replace")
    failed = len(re.findall(r"^\[  FAILED  \] .*\(\d+ ms\)\s*$", text, re.MULTILINE))
    tell(f"  the test program ended with {code} before its last test")
    return Count(len(re.findall(r"^\[       OK \]", text, re.MULTILINE)), failed + 1)


# ---- the stages; each returns its Count or raises StageFailed ----


def format_stage(log: Path) -> Count:
    files = [str(path) for path in repo_files(".cpp", ".h")]
    return check(log, ["clang-format-14", "--dry-run", "-Werror", *files], 120)


def dependencies_stage(log: Path) -> Count:
    return check(log, ["scripts/check_dependencies.py"], 60)


def headers_stage(log: Path) -> Count:
    return check(log, ["scripts/check_dependencies.py", "--headers"], 300)


def build_host_stage(log: Path) -> Count:
    if run(log, ["cmake", "--preset", "host"], 120) != 0:
        return Count(0, 1)
    return check(log, ["cmake", "--build", "--preset", "host"], 900)


def unit_stage(log: Path) -> Count:
    """The tests on the host, a share of them for each core."""
    shards = os.cpu_count() or 1

    def run_shard(index: int) -> tuple[Path, Path, int]:
        report, shard_log = OUTPUT / f"unit-{index}.xml", OUTPUT / f"unit-{index}.log"
        report.unlink(missing_ok=True)
        shard_log.unlink(missing_ok=True)
        env = dict(os.environ, GTEST_TOTAL_SHARDS=str(shards), GTEST_SHARD_INDEX=str(index))
        program = str(REPO / "build" / "host" / "tests" / "unit_tests")
        code = run(shard_log, [program, f"--gtest_output=xml:{report}"], 600, env)
        return report, shard_log, code

    with ThreadPoolExecutor(shards) as pool:
        results = list(pool.map(run_shard, range(shards)))
    count = Count()
    for report, shard_log, code in results:
        with log.open("ab") as whole:
            whole.write(shard_log.read_bytes())
        count += count_gtest(report, shard_log, code)
    return count


def tidy(log: Path, sources: list[str], *options: str) -> Count:
    """clang-tidy on those of `sources` that the host build compiles; one check."""
    database = (REPO / "build" / "host" / "compile_commands.json").read_text()
    sources = [name for name in sources if f'"{REPO / name}"' in database]
    if not sources:
        raise StageFailed("the host build knows none of the sources")
    # The units that take longest first, so that no core waits at the end.
    sources.sort(key=lambda name: -(REPO / name).stat().st_size)

    def look_at(name: str) -> tuple[int, str]:
        command = ["clang-tidy-14", "--quiet", "-p", "build/host", *options, name]
        result = subprocess.run(command, cwd=REPO, stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=300)
        return result.returncode, result.stdout + result.stderr

    failed = 0
    with ThreadPoolExecutor(os.cpu_count()) as pool, log.open("a", encoding="utf-8") as output:
        for code, text in pool.map(look_at, sources):
            if code != 0:
                failed += 1
                output.write(text)
    tell(f"  {len(sources)} sources looked at, {failed} with findings")
    return Count(0, 1) if failed else Count(1, 0)


def is_test_case(path: Path) -> bool:
    return path.is_relative_to("tests") and not path.is_relative_to("tests/machine")


def tidy_stage(log: Path) -> Count:
    return tidy(log, [str(path) for path in repo_files(".cpp") if not is_test_case(path)])


def tidy_tests_stage(log: Path) -> Count:
    # The analyser would walk every path through GoogleTest's macros, which takes minutes and shows nothing of ours.
    return tidy(log, [str(path) for path in repo_files(".cpp") if is_test_case(path)], "--checks=-clang-analyzer-*")


def build_windows_stage(log: Path) -> Count:
    return check(log, ["scripts/build", "--all"], 900)


def dist_stage(log: Path) -> Count:
    """What ships is complete, nothing else ships, and the programs need only Windows."""
    folder = REPO / "dist" / "Marlok Backup"
    shipped = {path.name for path in folder.iterdir()}
    faults = [f"{name} does not ship" for name in MUST_SHIP - shipped]
    faults += [f"{name} ships" for name in shipped - MUST_SHIP - MAY_SHIP]
    for name in ("Marlok Backup.exe", "Restart.sec"):
        headers = subprocess.run(
            ["x86_64-w64-mingw32-objdump", "-p", str(folder / name)], capture_output=True, text=True, check=True).stdout
        for library in re.findall(r"DLL Name: (\S+)\.dll", headers, re.IGNORECASE):
            if library.lower() not in SYSTEM_LIBRARIES:
                faults.append(f"{name} needs {library}.dll")
    log.write_text("".join(fault + "\n" for fault in sorted(faults)))
    return Count(0, 1) if faults else Count(1, 0)


def demo_stage(log: Path) -> Count:
    """The first command of the README does what it says."""
    return check(log, ["scripts/demo"], 300)


def windows_stage(log: Path) -> Count:
    """The tests on the real machine, all in one process."""
    report = OUTPUT / "windows.xml"
    report.unlink(missing_ok=True)
    program = REPO / "build" / "windows" / "tests" / "windows_tests.exe"
    if not program.exists():
        raise StageFailed(f"{program.relative_to(REPO)} is not there")
    with WineEnvironment() as wine:
        path = "Z:" + str(report).replace("/", "\\")
        code = run(log, wine.command(program, f"--gtest_output=xml:{path}"), 300, wine.env, OUTPUT)
    return count_gtest(report, log, code)


def run_pytest(log: Path, selection: str, timeout: float) -> Count:
    report = OUTPUT / f"{log.stem}.xml"
    report.unlink(missing_ok=True)
    env = dict(os.environ, PYTHONDONTWRITEBYTECODE="1")
    code = run(
        log,
        ["/usr/bin/python3", "-m", "pytest", "-p", "no:cacheprovider", "-m", selection, "--durations=10",
         f"--junitxml={report}", "tests/windows/e2e"],
        timeout,
        env,
    )  # fmt: skip
    if not report.exists():
        raise StageFailed(f"pytest ended with {code} and no report")
    count = count_report(report)
    return count + Count(0, 1) if code != 0 and count.failed == 0 else count


def e2e_stage(log: Path) -> Count:
    return run_pytest(log, "not nightly", 600)


def e2e_nightly_stage(log: Path) -> Count:
    return run_pytest(log, "nightly", 3600)


def fuzz_stage(log: Path) -> Count:
    """Every fuzzer for three minutes. One that finds something leaves it in build/test."""
    for command in (["cmake", "--preset", "fuzz"], ["cmake", "--build", "--preset", "fuzz"]):
        if run(log, command, 900) != 0:
            return Count(0, 1)
    folder = REPO / "build" / "fuzz" / "tests" / "fuzz"
    fuzzers = [path for path in sorted(folder.iterdir()) if path.is_file() and os.access(path, os.X_OK)]
    if not fuzzers:
        raise StageFailed("no fuzzer was built")
    count = Count()
    for fuzzer in fuzzers:
        corpus = OUTPUT / "corpus" / fuzzer.name
        corpus.mkdir(parents=True, exist_ok=True)
        options = ["-max_total_time=180", "-timeout=10", f"-artifact_prefix={OUTPUT}/{fuzzer.name}-"]
        count += check(log, [str(fuzzer), *options, str(corpus)], 400)
    return count


STAGES = [
    Stage("format", "the layout of the code", format_stage),
    Stage("dependencies", "dependencies run one way", dependencies_stage),
    Stage("headers", "each header compiles alone", headers_stage),
    Stage("build-host", "the rules, with sanitizers", build_host_stage),
    Stage("unit", "unit tests on the in-memory machine", unit_stage, needs=["build-host"]),
    Stage("tidy", "clang-tidy on the program and the in-memory machine", tidy_stage, needs=["build-host"]),
    Stage("build-windows", "the program and its tests", build_windows_stage),
    Stage("dist", "what ships", dist_stage, needs=["build-windows"]),
    Stage("demo", "the demonstration", demo_stage, needs=["build-windows"]),
    Stage("windows", "tests on the real machine", windows_stage, needs=["build-windows"]),
    Stage("e2e", "the built program, end to end", e2e_stage, needs=["build-windows"]),
    Stage("tidy-tests", "clang-tidy on the test cases", tidy_tests_stage, nightly=True, needs=["build-host"]),
    Stage("e2e-nightly", "the slow end-to-end tests", e2e_nightly_stage, nightly=True, needs=["build-windows"]),
    Stage("fuzz", "the fuzzers", fuzz_stage, nightly=True),
]


def run_stage(stage: Stage, broken: set[str]) -> Count:
    """Runs one stage. Whatever goes wrong in it is a failure of its own and does not stop the others."""
    log = OUTPUT / f"{stage.name}.log"
    log.unlink(missing_ok=True)
    try:
        for needed in stage.needs:
            if needed in broken:
                raise StageFailed(f"cannot run: {needed} failed")
        count = stage.run(log)
    except (StageFailed, WineError, OSError, subprocess.SubprocessError, ElementTree.ParseError) as failure:
        tell(f"  {type(failure).__name__}: {failure}")
        count = Count(0, 1)
    if count.failed:
        broken.add(stage.name)
        if log.exists():
            lines = log.read_text(encoding="utf-8", errors="replace").splitlines()
            tell(f"  ---- the end of {log.relative_to(REPO)}")
            tell("\n".join("  " + line for line in lines[-LOG_TAIL_LINES:]))
            tell("  ----")
    return count


def chosen_stages(arguments: argparse.Namespace, parser: argparse.ArgumentParser) -> list[Stage]:
    unknown = set(arguments.stages) - {stage.name for stage in STAGES}
    if unknown:
        parser.error(f"no such stage: {', '.join(sorted(unknown))}")
    if arguments.stages:
        return [stage for stage in STAGES if stage.name in arguments.stages]
    return [stage for stage in STAGES if arguments.nightly or not stage.nightly]


def main() -> int:
    parser = argparse.ArgumentParser(prog="scripts/test", description="Set-up, build and every test.")
    parser.add_argument("--nightly", action="store_true", help="the slow stages too")
    parser.add_argument("--list", action="store_true", help="name the stages")
    parser.add_argument("stages", nargs="*", metavar="STAGE", help="only these")
    arguments = parser.parse_args()
    if arguments.list:
        for stage in STAGES:
            print(f"{stage.name:14} {stage.what}{' (nightly)' if stage.nightly else ''}")
        return 0
    stages = chosen_stages(arguments, parser)
    end_cleanly_on_signals()
    OUTPUT.mkdir(parents=True, exist_ok=True)
    total, lines, broken = Count(), [], set()
    start = time.monotonic()
    for stage in stages:
        tell(f"==== {stage.name}: {stage.what}")
        began = time.monotonic()
        count = run_stage(stage, broken)
        total += count
        lines.append(f"{stage.name:14} {count.passed:6} passed {count.failed:4} failed {time.monotonic() - began:7.1f} s")
        tell("  " + lines[-1])
    tell("")
    tell("\n".join(lines))
    tell(f"{'all':14} {total.passed:6} passed {total.failed:4} failed {time.monotonic() - start:7.1f} s")
    tell(f"{total.passed} passed, {total.failed} failed")
    return 1 if total.failed or total.passed == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
