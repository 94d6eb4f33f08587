"""Runs stages, at once where none waits for another, and counts what they checked.

A stage is a function that gets a Job, the handle on its log and its commands, and returns its Count. Whatever goes
wrong in it, a program that dies, an exception, nothing counted at all, is one failure of that stage and stops no other.
"""

from __future__ import annotations

import contextlib
import os
import queue
import shlex
import signal
import subprocess
import sys
import threading
import time
import traceback
from collections.abc import Callable, Iterable
from dataclasses import dataclass, field
from pathlib import Path

# What a failed stage prints of its log.
LOG_TAIL_LINES = 80
# What a command gets to end by itself when it is to, before it is killed; in seconds.
GRACE = 20
# A stage that others do not wait for leaves the processor to those that they do, and to the tests that measure time.
# Where the system shares the processor out among sessions first (autogroups), being nice within one's own says nothing:
# the session as a whole has to be.
PATIENT = ["sh", "-c", '{ echo 15 >/proc/self/autogroup; } 2>/dev/null; exec nice -n 15 "$@"', "patient"]


class StageFailed(Exception):
    """A stage could not do its work; it counts as one failure."""


@dataclass
class Count:
    passed: int = 0
    failed: int = 0
    # Tests of which this machine lacks what they need; neither passed nor failed.
    unavailable: int = 0

    def __add__(self, other: Count) -> Count:
        return Count(
            self.passed + other.passed, self.failed + other.failed, self.unavailable + other.unavailable)  # fmt: skip


class Commands:
    """The commands that run now, each in a session of its own."""

    def __init__(self) -> None:
        self._lock = threading.Lock()
        self._running: set[subprocess.Popen[bytes]] = set()
        self._stopped = False

    def run(self, command: list[str], timeout: float, **options: object) -> int:
        """Runs a command; its exit code. When the time is over, the command ends with all that it started.
        Raises StageFailed then, and after stop()."""
        with self._lock:
            if self._stopped:
                raise StageFailed("the run was stopped")
            process = subprocess.Popen(command, stdin=subprocess.DEVNULL, start_new_session=True, **options)
            self._running.add(process)
        try:
            return process.wait(timeout)
        except subprocess.TimeoutExpired:
            raise StageFailed(f"{command[0]} did not end within {timeout:.0f} seconds") from None
        finally:
            self._end(process)
            with self._lock:
                self._running.discard(process)

    def stop(self) -> None:
        """Lets no command start any more, and asks those that run to end; run() waits for that."""
        with self._lock:
            self._stopped = True
            for process in self._running:
                self._signal(process, signal.SIGTERM)

    def _end(self, process: subprocess.Popen[bytes]) -> None:
        if process.poll() is None:
            self._signal(process, signal.SIGTERM)
            try:
                process.wait(GRACE)
            except subprocess.TimeoutExpired:
                self._signal(process, signal.SIGKILL)
                process.wait()

    @staticmethod
    def _signal(process: subprocess.Popen[bytes], number: int) -> None:
        # The session is the command's own, so this reaches nothing else. Not waited for yet, its id is not used again.
        with contextlib.suppress(ProcessLookupError):
            os.killpg(process.pid, number)


class Job:
    """One run of a stage: its log file, its commands and what it has to tell."""

    def __init__(self, name: str, folder: Path, repo: Path, commands: Commands, patient: bool = False) -> None:
        self.name = name
        self.folder = folder
        self.log = folder / f"{name}.log"
        self.lines: list[str] = []
        self._repo = repo
        self._commands = commands
        self._prefix = PATIENT if patient else []
        self.log.unlink(missing_ok=True)

    def tell(self, text: str) -> None:
        """Something for the person who runs it, shown with the stage's result."""
        self.lines.append(text)

    def run(
        self, command: list[str], timeout: float, env: dict[str, str] | None = None, cwd: Path | None = None,
        log: Path | None = None,
    ) -> int:  # fmt: skip
        """Runs a command with its output in the log, or in `log`; its exit code. May be called by several threads at
        once with logs of their own."""
        with (log or self.log).open("ab") as output:
            output.write(f"$ {shlex.join(command)}\n".encode())
            output.flush()
            return self._commands.run(
                [*self._prefix, *command], timeout, cwd=cwd or self._repo, env=env, stdout=output,
                stderr=subprocess.STDOUT)  # fmt: skip

    def check(self, command: list[str], timeout: float, **options: object) -> Count:
        """A command that counts as one check."""
        return Count(1, 0) if self.run(command, timeout, **options) == 0 else Count(0, 1)


@dataclass
class Stage:
    name: str
    what: str
    run: Callable[[Job], Count]
    nightly: bool = False
    # What has to have passed before, and what has to have ended before, where they belong to the run.
    needs: list[str] = field(default_factory=list)
    after: list[str] = field(default_factory=list)
    # Gives way to the others.
    patient: bool = False


@dataclass
class Result:
    count: Count
    seconds: float
    lines: list[str]


class Schedule:
    """Runs stages as soon as what they wait for is done, and prints their results in the order of the list."""

    def __init__(self, stages: list[Stage], folder: Path, repo: Path, tell: Callable[[str], None]) -> None:
        """Logs go to `folder`; commands run in `repo`; results are printed by `tell`."""
        self._stages = stages
        self._folder = folder
        self._repo = repo
        self._tell = tell
        self._commands = Commands()
        self._ended: queue.SimpleQueue[tuple[str, Result]] = queue.SimpleQueue()
        self._threads: list[threading.Thread] = []

    def run(self) -> dict[str, Result]:
        """Runs them all; their results by name, in their order. Whoever interrupts it finds no command running."""
        results: dict[str, Result] = {}
        waiting, unprinted, running = list(self._stages), list(self._stages), 0
        try:
            while len(results) < len(self._stages):
                for stage in [stage for stage in waiting if self._is_ready(stage, results)]:
                    waiting.remove(stage)
                    self._start(stage, results)
                    running += 1
                if running == 0:
                    raise RuntimeError(f"these stages wait for each other: {[stage.name for stage in waiting]}")
                name, result = self._ended.get()
                running -= 1
                results[name] = result
                while unprinted and unprinted[0].name in results:
                    self._print(unprinted[0], results[unprinted[0].name])
                    unprinted.pop(0)
        finally:
            self._commands.stop()
            for thread in self._threads:
                thread.join()
        return {stage.name: results[stage.name] for stage in self._stages}

    def _is_ready(self, stage: Stage, results: dict[str, Result]) -> bool:
        names = {other.name for other in self._stages}
        return all(other in results for other in {*stage.needs, *stage.after} & names)

    def _start(self, stage: Stage, results: dict[str, Result]) -> None:
        broken = [name for name in stage.needs if name in results and results[name].count.failed]
        thread = threading.Thread(target=self._run_stage, args=(stage, broken), name=stage.name)
        self._threads.append(thread)
        thread.start()

    def _run_stage(self, stage: Stage, broken: list[str]) -> None:
        began = time.monotonic()
        job = Job(stage.name, self._folder, self._repo, self._commands, stage.patient)
        count = Count()
        try:
            if broken:
                raise StageFailed(f"cannot run: {', '.join(broken)} failed")
            count = stage.run(job)
            if count.passed + count.failed == 0:
                raise StageFailed("nothing was checked")
        except (StageFailed, OSError, subprocess.SubprocessError) as failure:
            job.tell(f"  {type(failure).__name__}: {failure}")
            count = Count(0, 1)
        except BaseException:
            # A mistake in the stage itself: it must not make the stage vanish.
            job.tell(traceback.format_exc())
            count = Count(0, 1)
        finally:
            self._ended.put((stage.name, Result(count, time.monotonic() - began, job.lines + log_end(job, count))))

    def _print(self, stage: Stage, result: Result) -> None:
        self._tell(f"==== {stage.name}: {stage.what}")
        for line in result.lines:
            self._tell(line)
        self._tell("  " + row(stage.name, result.count, result.seconds))


def log_end(job: Job, count: Count) -> list[str]:
    """The end of the log of a job that failed."""
    if not count.failed or not job.log.exists():
        return []
    lines = job.log.read_text(encoding="utf-8", errors="replace").splitlines()
    return [f"  ---- the end of {job.log}", *("  " + line for line in lines[-LOG_TAIL_LINES:]), "  ----"]


def row(name: str, count: Count, seconds: float) -> str:
    lacking = f"   {count.unavailable} not available here" if count.unavailable else ""
    return f"{name:14} {count.passed:6} passed {count.failed:4} failed {seconds:7.1f} s{lacking}"


def summary(results: dict[str, Result], seconds: float) -> Iterable[str]:
    """The table of the stages. The stages' own seconds add up to more than the whole run took: they overlap."""
    total = sum((result.count for result in results.values()), Count())
    for name, result in results.items():
        yield row(name, result.count, result.seconds)
    yield row("all", total, seconds)
    yield f"{total.passed} passed, {total.failed} failed"


def tell(text: str) -> None:
    print(text, flush=True)


def cores() -> int:
    """Processors that this process may use."""
    return len(os.sched_getaffinity(0)) if sys.platform == "linux" else os.cpu_count() or 1
