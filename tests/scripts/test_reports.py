"""What counts as passed, as failed, and as not available."""

from __future__ import annotations

from pathlib import Path

import pytest
from reports import count_gtest, read_report
from schedule import Count, StageFailed


class Told:
    """Stands for the job, of which only what it is told matters here."""

    def __init__(self) -> None:
        self.lines: list[str] = []

    def tell(self, text: str) -> None:
        self.lines.append(text)


@pytest.fixture
def report(tmp_path: Path) -> Path:
    return tmp_path / "report.xml"


def written(path: Path, *cases: str) -> Path:
    path.write_text(f"<testsuites><testsuite>{''.join(cases)}</testsuite></testsuites>")
    return path


def test_tests_are_counted_by_what_became_of_them(report: Path) -> None:
    found = read_report(written(
        report, '<testcase classname="a" name="1"/>',
        '<testcase classname="a" name="2"><failure>why</failure></testcase>',
        '<testcase classname="a" name="3"><error message="how"/></testcase>',
        '<testcase classname="a" name="4"><skipped message="no reason"/></testcase>',
        '<testcase classname="a" name="5"><skipped message="not available here: no such device"/></testcase>',
        '<testcase classname="a" name="6" status="notrun"/>'))  # fmt: skip

    assert found.count() == Count(1, 4, 1)
    assert found.failed == {"a.2", "a.3", "a.4", "a.6"}
    job = Told()
    found.tell(job)
    assert "    why" in job.lines
    assert "    how" in job.lines
    assert "  FAILED a.4 (skipped)" in job.lines
    assert "  not available here: a.5: no such device" in job.lines


def test_a_test_that_fails_twice_counts_once(report: Path) -> None:
    found = read_report(written(
        report, '<testcase classname="a" name="1"><failure/></testcase>',
        '<testcase classname="a" name="1"><error/></testcase>'))  # fmt: skip

    assert found.count() == Count(0, 1)


def test_a_test_that_is_not_available_and_fails_all_the_same_has_failed(report: Path) -> None:
    found = read_report(written(
        report, '<testcase classname="a" name="1"><skipped message="not available here: x"/></testcase>',
        '<testcase classname="a" name="1"><error/></testcase>'))  # fmt: skip

    assert found.count() == Count(0, 1, 0)


def test_the_reports_of_several_processes_add_up(report: Path, tmp_path: Path) -> None:
    one = read_report(written(report, '<testcase classname="a" name="1"/>'))
    other = read_report(written(tmp_path / "other.xml", '<testcase classname="a" name="2"><failure/></testcase>'))

    assert (one + other).count() == Count(1, 1)


@pytest.mark.parametrize("text", ["", "<testsuites><testcase"])
def test_what_is_no_report_is_a_failure(report: Path, text: str) -> None:
    report.write_text(text)
    with pytest.raises(StageFailed, match="no report"):
        read_report(report)


def test_a_program_that_failed_without_a_failed_test_counts_as_one_failure(report: Path, tmp_path: Path) -> None:
    written(report, '<testcase classname="a" name="1" status="run"/>')

    assert count_gtest(Told(), report, tmp_path / "log", 0) == Count(1, 0)
    assert count_gtest(Told(), report, tmp_path / "log", 1) == Count(1, 1)


def test_a_program_that_ran_no_test_is_a_failure(report: Path, tmp_path: Path) -> None:
    with pytest.raises(StageFailed, match="ran no test"):
        count_gtest(Told(), written(report), tmp_path / "log", 0)


def test_a_program_that_died_counts_by_what_it_had_printed(report: Path, tmp_path: Path) -> None:
    log = tmp_path / "log"
    log.write_text(
        "[ RUN      ] A.B\n[       OK ] A.B (1 ms)\n[ RUN      ] A.C\n[  FAILED  ] A.C (2 ms)\n"
        "[ RUN      ] A.D\n")  # fmt: skip
    job = Told()

    assert count_gtest(job, report, log, -11) == Count(1, 2)
    assert any("ended with -11" in line for line in job.lines)
