"""Stages: what they wait for, what they count, and that none of them can fail unseen."""

from __future__ import annotations

import os
import signal
import subprocess
import sys
import threading
import time
from collections.abc import Callable
from pathlib import Path

import pytest
from schedule import Commands, Count, Job, Result, Schedule, Stage, StageFailed, summary


class Runs:
    """Schedules in a folder of their own, and what they printed."""

    def __init__(self, folder: Path) -> None:
        self.folder = folder
        self.printed: list[str] = []

    def run(self, *stages: Stage) -> dict[str, Result]:
        self.printed.clear()
        return Schedule(list(stages), self.folder, self.folder, self.printed.append).run()

    def one(self, act: Callable[[Job], Count]) -> Result:
        return self.run(Stage("one", "the only one", act))["one"]


@pytest.fixture
def runs(tmp_path: Path) -> Runs:
    return Runs(tmp_path)


def passes(_: Job) -> Count:
    return Count(1, 0)


def fails(_: Job) -> Count:
    return Count(0, 1)


def test_stages_that_do_not_wait_for_each_other_run_at_once(runs: Runs) -> None:
    met = threading.Barrier(2, timeout=20)

    def meet(_: Job) -> Count:
        met.wait()
        return Count(1, 0)

    results = runs.run(Stage("a", "", meet), Stage("b", "", meet))

    assert [result.count for result in results.values()] == [Count(1, 0), Count(1, 0)]


def test_a_stage_begins_when_all_that_it_waits_for_has_ended(runs: Runs) -> None:
    ended: list[str] = []

    def noted(name: str, pause: float = 0) -> Callable[[Job], Count]:
        def act(_: Job) -> Count:
            time.sleep(pause)
            ended.append(name)
            return Count(1, 0)

        return act

    runs.run(
        Stage("last", "", noted("last"), needs=["first"], after=["second"]),
        Stage("second", "", noted("second", 0.2)),
        Stage("first", "", noted("first", 0.1)),
    )  # fmt: skip

    assert ended == ["first", "second", "last"]


def test_what_is_not_part_of_the_run_is_not_waited_for(runs: Runs) -> None:
    assert runs.run(Stage("a", "", passes, needs=["b"], after=["c"]))["a"].count == Count(1, 0)


def test_without_what_it_needs_a_stage_fails_and_does_not_run(runs: Runs) -> None:
    began: list[str] = []

    def note(job: Job) -> Count:
        began.append(job.name)
        return Count(1, 0)

    results = runs.run(
        Stage("broken", "", fails), Stage("needs", "", note, needs=["broken"]),
        Stage("needs that", "", note, needs=["needs"]), Stage("after", "", note, after=["broken"]))  # fmt: skip

    assert began == ["after"]
    assert results["needs"].count == results["needs that"].count == Count(0, 1)
    assert any("cannot run: broken failed" in line for line in results["needs"].lines)
    assert results["after"].count == Count(1, 0)


def test_stages_that_wait_for_each_other_are_a_mistake(runs: Runs) -> None:
    with pytest.raises(RuntimeError, match=r"wait for each other: \['a', 'b'\]"):
        runs.run(Stage("a", "", passes, needs=["b"]), Stage("b", "", passes, after=["a"]))


def dies_with(failure: BaseException) -> Callable[[Job], Count]:
    def act(_: Job) -> Count:
        raise failure

    return act


@pytest.mark.parametrize(
    "act",
    [
        dies_with(StageFailed("it does not work")), dies_with(OSError("no such thing")),
        dies_with(ZeroDivisionError("oh")), dies_with(SystemExit(0)), dies_with(KeyboardInterrupt()),
        lambda job: None, lambda job: Count(),
    ],
)  # fmt: skip
def test_a_stage_that_dies_or_counts_nothing_has_failed(runs: Runs, act: Callable[[Job], Count]) -> None:
    results = runs.run(Stage("dies", "", act), Stage("lives", "", passes))

    assert results["dies"].count == Count(0, 1)
    assert results["dies"].lines
    assert results["lives"].count == Count(1, 0)
    assert list(summary(results, 1))[-1] == "1 passed, 1 failed"


def test_results_are_printed_in_the_order_of_the_list_whoever_is_first(runs: Runs) -> None:
    gate = threading.Event()

    def slow(_: Job) -> Count:
        assert gate.wait(20)
        return Count(1, 0)

    def quick(_: Job) -> Count:
        gate.set()
        return Count(1, 0)

    results = runs.run(Stage("slow", "the slow one", slow), Stage("quick", "the quick one", quick))

    headings = [line for line in runs.printed if line.startswith("====")]
    assert headings == ["==== slow: the slow one", "==== quick: the quick one"]
    assert [line.split()[0] for line in summary(results, 1)] == ["slow", "quick", "all", "2"]


def test_the_last_line_tells_the_sum(runs: Runs) -> None:
    results = runs.run(
        Stage("a", "", lambda job: Count(5, 1)), Stage("b", "", lambda job: Count(2, 0, 3)),
        Stage("c", "", passes))  # fmt: skip

    assert list(summary(results, 1))[-1] == "8 passed, 1 failed"
    assert "3 not available here" in next(line for line in summary(results, 1) if line.startswith("b "))


def test_a_commands_output_is_in_the_log_and_its_end_is_shown_when_it_failed(runs: Runs) -> None:
    result = runs.one(lambda job: job.check(["sh", "-c", "echo said; echo and more >&2; exit 3"], 20))

    assert result.count == Count(0, 1)
    assert "  said" in result.lines
    assert "  and more" in result.lines


def test_the_log_of_an_earlier_run_is_not_kept(runs: Runs) -> None:
    for word in ("old", "new"):
        runs.one(lambda job: job.check(["echo", word], 20))

    assert (runs.folder / "one.log").read_text() == "$ echo new\nnew\n"


def is_running(process_id: int) -> bool:
    try:
        os.kill(process_id, 0)
    except ProcessLookupError:
        return False
    # One that has ended counts as running until its parent looks.
    return Path(f"/proc/{process_id}/stat").read_text().rpartition(") ")[2][0] != "Z"


def wait_until(condition: Callable[[], object]) -> bool:
    end = time.monotonic() + 20
    while not condition():
        if time.monotonic() > end:
            return False
        time.sleep(0.01)
    return True


# Starts a program of its own and waits for it.
FAMILY = 'sleep 600 & echo $! >"$0"; wait'


def test_a_command_that_takes_too_long_ends_with_all_that_it_started(runs: Runs) -> None:
    file = runs.folder / "child"

    result = runs.one(lambda job: job.check(["sh", "-c", FAMILY, str(file)], 1))

    assert result.count == Count(0, 1)
    assert any("did not end within 1 seconds" in line for line in result.lines)
    assert wait_until(lambda: not is_running(int(file.read_text())))


def test_nothing_runs_on_after_the_run_was_stopped(tmp_path: Path) -> None:
    commands = Commands()
    file = tmp_path / "child"
    codes: list[int] = []
    thread = threading.Thread(target=lambda: codes.append(commands.run(["sh", "-c", FAMILY, str(file)], 60)))
    thread.start()
    assert wait_until(lambda: file.exists() and file.read_text().strip())

    commands.stop()
    thread.join(20)

    assert codes and codes[0] != 0
    assert wait_until(lambda: not is_running(int(file.read_text())))
    with pytest.raises(StageFailed, match="the run was stopped"):
        commands.run(["true"], 20)


def test_a_signal_ends_the_whole_run_with_what_it_started(tmp_path: Path) -> None:
    file = tmp_path / "child"
    script = (
        "import sys; sys.path.insert(0, sys.argv[1])\n"
        "from pathlib import Path\n"
        "from schedule import Schedule, Stage\n"
        "from wine_env import end_cleanly_on_signals\n"
        "end_cleanly_on_signals()\n"
        "here = Path(sys.argv[2])\n"
        "act = lambda job: job.check(['sh', '-c', sys.argv[3], str(here / 'child')], 60)\n"
        "Schedule([Stage('a', '', act)], here, here, print).run()\n")  # fmt: skip
    library = str(Path(__file__).resolve().parents[2] / "scripts" / "lib")
    command = [sys.executable, "-c", script, library, str(tmp_path), FAMILY]
    process = subprocess.Popen(command, stderr=subprocess.DEVNULL)
    assert wait_until(lambda: file.exists() and file.read_text().strip())

    process.send_signal(signal.SIGTERM)

    assert process.wait(20) == 128 + signal.SIGTERM
    assert wait_until(lambda: not is_running(int(file.read_text())))


def test_a_patient_stage_gives_way(runs: Runs) -> None:
    def niceness(job: Job) -> Count:
        return job.check(["sh", "-c", "nice"], 20)

    runs.run(Stage("patient", "", niceness, patient=True), Stage("other", "", niceness))

    values = {name: int((runs.folder / f"{name}.log").read_text().splitlines()[-1]) for name in ("patient", "other")}
    assert values["patient"] > values["other"]


@pytest.mark.skipif(not Path("/proc/self/autogroup").exists(), reason="sessions are not told apart here")
def test_the_session_of_a_patient_stage_gives_way_too(runs: Runs) -> None:
    def niceness(job: Job) -> Count:
        return job.check(["cat", "/proc/self/autogroup"], 20)

    runs.run(Stage("patient", "", niceness, patient=True), Stage("other", "", niceness))

    assert (runs.folder / "patient.log").read_text().rstrip().endswith(" nice 15")
    assert (runs.folder / "other.log").read_text().rstrip().endswith(" nice 0")
