"""Runs every check and test and counts them; scripts/test is the way in."""

from __future__ import annotations

import argparse
import os
import re
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
import tidy
from repo_files import REPO, repo_files
from reports import Report, count_gtest, read_report
from schedule import Count, Job, Schedule, Stage, StageFailed, cores, summary, tell
from wine_env import end_cleanly_on_signals

OUTPUT = REPO / "build" / "test"

# The end-to-end tests wait more than they compute; so many processes, each with a Wine machine of its own, share them.
E2E_PROCESSES = 2

# The program needs Windows itself and nothing else.
SYSTEM_LIBRARIES = set(
    """advapi32 comctl32 comdlg32 gdi32 kernel32 msvcrt ole32 oleaut32 shell32 shlwapi user32 uxtheme version
    wininet""".split()
)
MUST_SHIP = {"Marlok Backup.exe", "Restart.sec", "LICENSE", "THIRD-PARTY-LICENSES", "Help.html", "pc21.gif"}
MAY_SHIP = {"Backup.hlp"}


# ---- the stages; each returns its Count or raises StageFailed ----


def packages_stage(job: Job) -> Count:
    """What the compilers do not need is installed while they run, and the Wine machines' template made, which waits
    more than it computes."""
    count = job.check(["scripts/setup"], 1800)
    return count if count.failed else count + job.check(["scripts/wine", "cmd", "/c", "ver"], 600)


def runner_stage(job: Job) -> Count:
    return pytest(job, "runner", ["tests/scripts"], 120).count()


def format_stage(job: Job) -> Count:
    files = [str(path) for path in repo_files(".cpp", ".h")]
    return job.check(["clang-format-14", "--dry-run", "-Werror", *files], 120)


def dependencies_stage(job: Job) -> Count:
    return job.check(["scripts/check_dependencies.py"], 60)


def headers_stage(job: Job) -> Count:
    return job.check(["scripts/check_dependencies.py", "--headers"], 600)


def build_environment() -> dict[str, str]:
    # Two builds run at once: neither is to start more than the machine has room for.
    return dict(os.environ, CMAKE_BUILD_PARALLEL_LEVEL=str(cores()))


def build_windows_stage(job: Job) -> Count:
    return job.check(["scripts/build", "--all"], 1800, env=build_environment())


def build_host_stage(job: Job) -> Count:
    if job.run(["cmake", "--preset", "host"], 300) != 0:
        return Count(0, 1)
    return job.check(["cmake", "--build", "--preset", "host"], 1800, env=build_environment())


def unit_stage(job: Job) -> Count:
    """The tests on the host, a share of them for each processor."""
    shards = cores()

    def run_shard(index: int) -> tuple[Path, Path, int]:
        report, log = OUTPUT / f"unit-{index}.xml", OUTPUT / f"unit-{index}.log"
        report.unlink(missing_ok=True)
        log.unlink(missing_ok=True)
        env = dict(os.environ, GTEST_TOTAL_SHARDS=str(shards), GTEST_SHARD_INDEX=str(index))
        program = str(REPO / "build" / "host" / "tests" / "unit_tests")
        return report, log, job.run([program, f"--gtest_output=xml:{report}"], 1200, env=env, log=log)

    with ThreadPoolExecutor(shards) as pool:
        results = list(pool.map(run_shard, range(shards)))
    count = Count()
    for report, log, code in results:
        with job.log.open("ab") as whole:
            whole.write(log.read_bytes())
        count += count_gtest(job, report, log, code)
    return count


def is_test_case(path: Path) -> bool:
    return path.is_relative_to("tests") and not path.is_relative_to("tests/machine")


def is_for_windows(path: Path) -> bool:
    return path.parts[0] in ("win32", "restart") or path == Path("app/EntryPoint.cpp")


def sweeps_stage(job: Job) -> Count:
    """The sweeps of the unit tests at every step, which takes minutes; `unit` leaves steps out where many are alike."""
    program = str(REPO / "build" / "host" / "tests" / "unit_tests")
    env = dict(os.environ, MARLOK_EVERY_STEP="1")
    return Count(1, 0) if job.run([program, "--gtest_filter=*Sweep*"], 3600, env=env) == 0 else Count(0, 1)


# The analyser walks every path through a function, and takes more than half of the time: it looks at night.
ANALYSER = "clang-analyzer-*"


def rules_sources() -> list[Path]:
    return [path for path in repo_files(".cpp") if not is_test_case(path) and not is_for_windows(path)]


def windows_sources() -> list[Path]:
    return list(filter(is_for_windows, repo_files(".cpp")))


def tidy_stage(job: Job) -> Count:
    return tidy.look_at_sources(job, REPO, rules_sources(), tidy.host_look(REPO).without(ANALYSER))


def tidy_win32_stage(job: Job) -> Count:
    return tidy.look_at_sources(job, REPO, windows_sources(), tidy.windows_look(REPO).without(ANALYSER))


def analyser_stage(job: Job) -> Count:
    return tidy.look_at_sources(job, REPO, rules_sources(), tidy.host_look(REPO)) + tidy.look_at_sources(
        job, REPO, windows_sources(), tidy.windows_look(REPO)
    )


def tidy_tests_stage(job: Job) -> Count:
    # The analyser would walk every path through GoogleTest's macros, which takes minutes and shows nothing of ours.
    cases = [path for path in repo_files(".cpp") if is_test_case(path)]
    on_windows = [path for path in cases if path.is_relative_to("tests/windows") or path.is_relative_to("tests/bench")]
    on_host = [path for path in cases if path not in on_windows]
    looks = ((on_host, tidy.host_look(REPO)), (on_windows, tidy.windows_look(REPO)))
    counts = [tidy.look_at_sources(job, REPO, sources, look.without(ANALYSER)) for sources, look in looks]
    return sum(counts, Count())


def dist_stage(job: Job) -> Count:
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
    job.log.write_text("".join(fault + "\n" for fault in sorted(faults)))
    return Count(0, 1) if faults else Count(1, 0)


def demo_stage(job: Job) -> Count:
    """The first command of the README does what it says."""
    return job.check(["scripts/demo"], 600)


def windows_stage(job: Job) -> Count:
    """The tests on the real machine, all in one process."""
    report = OUTPUT / "windows.xml"
    report.unlink(missing_ok=True)
    program = REPO / "build" / "windows" / "tests" / "windows_tests.exe"
    if not program.exists():
        raise StageFailed(f"{program.relative_to(REPO)} is not there")
    path = "Z:" + str(report).replace("/", "\\")
    code = job.run([str(REPO / "scripts" / "wine"), str(program), f"--gtest_output=xml:{path}"], 600, cwd=OUTPUT)
    return count_gtest(job, report, job.log, code)


def pytest(job: Job, name: str, arguments: list[str], timeout: float, env: dict[str, str] | None = None) -> Report:
    """Runs pytest; its report, in which a process that failed without a failed test has one."""
    report = OUTPUT / f"{name}.xml"
    report.unlink(missing_ok=True)
    log = OUTPUT / f"{name}.log"
    log.unlink(missing_ok=True)
    code = job.run(
        ["/usr/bin/python3", "-m", "pytest", "-p", "no:cacheprovider", "--durations=10", f"--junitxml={report}",
         *arguments],
        timeout, env=dict(os.environ, PYTHONDONTWRITEBYTECODE="1", **(env or {})), log=log)  # fmt: skip
    if not report.exists():
        raise StageFailed(f"pytest ended with {code} and no report; see {log}")
    found = read_report(report)
    if code != 0 and not found.failed:
        found.fail(f"{name}: pytest", f"ended with {code}")
    found.tell(job)
    return found


def e2e_stage(job: Job) -> Count:
    """Several processes, each of which takes the next test that none has taken yet."""
    share = OUTPUT / "e2e-share"
    subprocess.run(["rm", "-rf", str(share)], check=True)
    share.mkdir(parents=True)
    selection = ["-m", "not nightly", "tests/windows/e2e"]

    def run_process(number: int) -> Report:
        return pytest(job, f"e2e-{number}", selection, 900, {"MARLOK_E2E_SHARE": str(share)})

    with ThreadPoolExecutor(E2E_PROCESSES) as pool:
        report = sum(pool.map(run_process, range(E2E_PROCESSES)), Report())
    wanted = int((share / "collected").read_text())
    if len(report.names) != wanted:
        raise StageFailed(f"{len(report.names)} of {wanted} tests ran")
    return report.count()


def release_stage(job: Job) -> Count:
    """The packages can be made of what was built."""
    return job.check(["scripts/package", "--built", "--allow-changes"], 600)


def installer_stage(job: Job) -> Count:
    """The packages hold what they should, and what they install works."""
    return pytest(job, job.name, ["tests/package"], 600).count()


def help_browser_stage(job: Job) -> Count:
    """The help page in a browser, which is too large to be asked for in every run."""
    if job.run(["scripts/setup", "browser"], 900) != 0:
        return Count(0, 1)
    return pytest(job, job.name, ["tests/package/test_help.py"], 300).count()


def reproducible_stage(job: Job) -> Count:
    return job.check(["scripts/lib/reproducible.py"], 3600)


def e2e_nightly_stage(job: Job) -> Count:
    return pytest(job, job.name, ["-m", "nightly", "tests/windows/e2e"], 3600).count()


def fuzz_stage(job: Job) -> Count:
    """Every fuzzer for three minutes. One that finds something leaves it in build/test."""
    for command in (["cmake", "--preset", "fuzz"], ["cmake", "--build", "--preset", "fuzz"]):
        if job.run(command, 900) != 0:
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
        count += job.check([str(fuzzer), *options, str(corpus)], 400)
    return count


# In the order in which their results are shown. The tests that measure time and the builds that they need go first;
# what nothing waits for gives way to them.
STAGES = [
    Stage("packages", "what is needed is installed, and a Wine machine made", packages_stage),
    Stage("format", "the layout of the code", format_stage, needs=["packages"]),
    Stage("dependencies", "dependencies run one way", dependencies_stage),
    Stage("runner", "the test run itself", runner_stage, needs=["packages"]),
    Stage("headers", "each header compiles alone", headers_stage, patient=True),
    Stage("build-windows", "the program and its tests", build_windows_stage),
    Stage("demo", "the demonstration", demo_stage, needs=["packages", "build-windows"]),
    # The demonstration lays out again what these look at.
    Stage("dist", "what ships", dist_stage, needs=["build-windows"], after=["demo"]),
    Stage("windows", "tests on the real machine", windows_stage, needs=["packages", "build-windows"], after=["demo"]),
    Stage("e2e", "the built program, end to end", e2e_stage, needs=["packages", "build-windows"], after=["demo"]),
    Stage("release", "the packages", release_stage, needs=["packages", "build-windows"], after=["demo"]),
    Stage("installer", "installing, upgrading and removing", installer_stage, needs=["release"], after=["windows"]),
    Stage("build-host", "the rules, with sanitizers", build_host_stage, patient=True),
    Stage("unit", "unit tests on the in-memory machine", unit_stage, needs=["build-host"], patient=True),
    Stage(
        "tidy", "clang-tidy on the program and the in-memory machine", tidy_stage, needs=["packages", "build-host"],
        patient=True),
    Stage(
        "tidy-win32", "clang-tidy on the real machine", tidy_win32_stage,
        needs=["packages", "build-windows"], after=["tidy"], patient=True),
    Stage(
        "analyser", "clang-tidy with its analyser on the program", analyser_stage, nightly=True,
        needs=["packages", "build-host", "build-windows"], after=["tidy", "tidy-win32"], patient=True),
    Stage(
        "tidy-tests", "clang-tidy on the test cases", tidy_tests_stage, nightly=True,
        needs=["packages", "build-host", "build-windows"], after=["tidy"], patient=True),
    Stage(
        "e2e-nightly", "the slow end-to-end tests", e2e_nightly_stage, nightly=True,
        needs=["packages", "build-windows"], after=["windows", "e2e"]),
    Stage("help-browser", "the help page in a browser", help_browser_stage, nightly=True, needs=["release"]),
    Stage(
        "reproducible", "two builds give the same bytes", reproducible_stage, nightly=True,
        needs=["packages", "build-windows"], after=["e2e-nightly"], patient=True),
    Stage(
        "sweeps", "a failure and a death at every step", sweeps_stage, nightly=True, needs=["build-host"],
        after=["tidy-tests"], patient=True),
    Stage("fuzz", "the fuzzers", fuzz_stage, nightly=True, needs=["packages"], after=["tidy-tests"], patient=True),
]  # fmt: skip


def chosen_stages(arguments: argparse.Namespace, parser: argparse.ArgumentParser) -> list[Stage]:
    unknown = set(arguments.stages) - {stage.name for stage in STAGES}
    if unknown:
        parser.error(f"no such stage: {', '.join(sorted(unknown))}")
    if arguments.stages:
        return [stage for stage in STAGES if stage.name in {"packages", *arguments.stages}]
    return [stage for stage in STAGES if arguments.nightly or not stage.nightly]


def main() -> int:
    parser = argparse.ArgumentParser(prog="scripts/test", description="Set-up, build and every test.")
    parser.add_argument("--nightly", action="store_true", help="the slow stages too")
    parser.add_argument("--list", action="store_true", help="name the stages")
    parser.add_argument("stages", nargs="*", metavar="STAGE", help="only these, and the set-up")
    arguments = parser.parse_args()
    if arguments.list:
        for stage in STAGES:
            when = " (nightly)" if stage.nightly else ""
            print(f"{stage.name:14} {stage.what}{when}")
        return 0
    stages = chosen_stages(arguments, parser)
    end_cleanly_on_signals()
    OUTPUT.mkdir(parents=True, exist_ok=True)
    start = time.monotonic()
    results = Schedule(stages, OUTPUT, REPO, tell).run()
    tell("")
    for line in summary(results, time.monotonic() - start):
        tell(line)
    total = sum((result.count for result in results.values()), Count())
    return 1 if total.failed or total.passed == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
