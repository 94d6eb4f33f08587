"""Counts the reports of GoogleTest and pytest."""

from __future__ import annotations

import re
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass, field
from pathlib import Path

from schedule import Count, StageFailed

# How a test says that this machine lacks what it needs: counted and shown, and no failure.
NOT_AVAILABLE = "not available here: "
# What is shown of a failed test.
TEXT_LINES = 40


@dataclass
class Report:
    """What a report says: its tests by name, those of them that failed, and lines for the person who runs it."""

    names: set[str] = field(default_factory=set)
    failed: set[str] = field(default_factory=set)
    unavailable: dict[str, str] = field(default_factory=dict)
    lines: list[str] = field(default_factory=list)

    def __add__(self, other: Report) -> Report:
        return Report(
            self.names | other.names, self.failed | other.failed, self.unavailable | other.unavailable,
            self.lines + other.lines)  # fmt: skip

    def fail(self, name: str, text: str) -> None:
        self.names.add(name)
        self.failed.add(name)
        self.lines.append(f"  FAILED {name}: {text}")

    def count(self) -> Count:
        lacking = set(self.unavailable) - self.failed
        return Count(len(self.names) - len(self.failed) - len(lacking), len(self.failed), len(lacking))

    def tell(self, job) -> None:
        for line in self.lines:
            job.tell(line)
        for name, reason in sorted(self.unavailable.items()):
            job.tell(f"  not available here: {name}: {reason}")


def read_report(path: Path) -> Report:
    """Reads an XML report of GoogleTest or pytest. A skipped test has shown nothing: it counts as failed, unless it
    says that what it needs is not available here.
    Raises StageFailed when the file is no report."""
    report = Report()
    try:
        cases = ElementTree.parse(path).getroot().iter("testcase")
    except (OSError, ElementTree.ParseError) as fault:
        raise StageFailed(f"no report: {fault}") from None
    for case in cases:
        # A test that fails and then fails again while it is put away has two entries.
        name = f"{case.get('classname')}.{case.get('name')}"
        report.names.add(name)
        skipped = case.find("skipped")
        passed_over = skipped is not None or case.get("status") == "notrun" or case.get("result") == "skipped"
        reason = "" if skipped is None else skipped.get("message") or ""
        faults = case.findall("failure") + case.findall("error")
        if passed_over and not faults and reason.startswith(NOT_AVAILABLE):
            report.unavailable[name] = reason.removeprefix(NOT_AVAILABLE)
        elif passed_over or faults:
            report.failed.add(name)
            report.lines.append(f"  FAILED {name}" + (" (skipped)" if passed_over else ""))
            for fault in faults:
                text = fault.text or fault.get("message") or ""
                report.lines.append("    " + "\n    ".join(text.strip().splitlines()[-TEXT_LINES:]))
    return report


def count_gtest(job, report: Path, log: Path, code: int) -> Count:
    """Counts a run of a GoogleTest program. One that died before it could report counts by what it had printed, and
    its death as one more failure."""
    if report.exists():
        found = read_report(report)
        found.tell(job)
        if not found.names:
            raise StageFailed("the program ran no test")
        count = found.count()
        return count + Count(0, 1) if code != 0 and count.failed == 0 else count
    text = log.read_text(encoding="utf-8", errors="replace")
    failed = len(re.findall(r"^\[  FAILED  \] .*\(\d+ ms\)\s*$", text, re.MULTILINE))
    job.tell(f"  the test program ended with {code} before its last test")
    return Count(len(re.findall(r"^\[       OK \]", text, re.MULTILINE)), failed + 1)
