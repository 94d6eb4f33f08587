"""clang-tidy: which sources are looked at again, and that a finding is never passed over."""

from __future__ import annotations

import json
from pathlib import Path

import pytest
import tidy
from schedule import Commands, Count, Job, StageFailed

CHECKS = "-*,misc-redundant-expression,misc-unused-parameters,modernize-use-nullptr"
CONFIGURATION = f'Checks: "{CHECKS}"\nWarningsAsErrors: "*"\n'


class House:
    """A small repository with a configured build."""

    def __init__(self, root: Path) -> None:
        self.root = root
        self.commands: dict[str, str] = {}
        (root / "logs").mkdir()
        self.write(".clang-tidy", CONFIGURATION)
        self.write("build/host/compile_commands.json", "[]")
        self.write("a.h", '#pragma once\n#include "b.h"\n')
        self.write("b.h", "#pragma once\nint b();\n")
        self.add("a.cpp", '#include "a.h"\nint a() { return b(); }\n')
        self.add("c.cpp", "int c() { return 0; }\n")

    def write(self, name: str, text: str) -> None:
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def add(self, name: str, text: str, options: str = "") -> None:
        self.write(name, text)
        self.commands[name] = f"c++ -std=c++20 -I{self.root} {options} -c {self.root / name}"
        entries = [{"directory": str(self.root), "file": str(self.root / file), "command": command}
                   for file, command in self.commands.items()]  # fmt: skip
        self.write("build/host/compile_commands.json", json.dumps(entries))

    def host(self) -> tidy.Look:
        return tidy.Look(self.root / "build/host")

    def look(self, *left_out: str) -> tuple[Count, str]:
        """The verdict, and what the tool's log says; the number of sources looked at is in `looked_at`."""
        job = Job("tidy", self.root / "logs", self.root, Commands())
        sources = [Path(name) for name in self.commands]
        count = tidy.look_at_sources(job, self.root, sources, self.host().without(*left_out))
        numbers = [int(word) for word in job.lines[-1].split() if word.isdigit()]
        self.looked_at = numbers[0] - numbers[1]
        return count, job.log.read_text() if job.log.exists() else ""


@pytest.fixture
def house(tmp_path: Path) -> House:
    return House(tmp_path)


def test_what_was_passed_is_not_looked_at_again(house: House) -> None:
    assert house.look() == (Count(1, 0), "")
    assert house.looked_at == 2
    assert house.look() == (Count(1, 0), "")
    assert house.looked_at == 0


def test_a_header_far_below_makes_its_sources_be_looked_at_again(house: House) -> None:
    house.look()
    house.write("b.h", "#pragma once\nint b();\nvoid* other();\n")
    assert house.look()[0] == Count(1, 0)
    assert house.looked_at == 1


def test_so_do_the_command_the_configuration_and_the_options(house: House) -> None:
    house.look()
    house.add("c.cpp", "int c() { return 0; }\n", "-DSOMETHING")
    house.look()
    assert house.looked_at == 1
    house.write(".clang-tidy", CONFIGURATION + "FormatStyle: file\n")
    house.look()
    assert house.looked_at == 2
    house.look("misc-unused-parameters")
    assert house.looked_at == 2


def test_a_finding_fails_until_it_is_mended(house: House) -> None:
    house.add("c.cpp", "int* c() { return 0; }\n")
    for _ in range(2):
        count, said = house.look()
        assert count == Count(0, 1)
        assert "modernize-use-nullptr" in said
    assert house.looked_at == 1
    house.add("c.cpp", "int* c() { return nullptr; }\n")
    assert house.look() == (Count(1, 0), "")


def test_a_source_that_does_not_compile_fails(house: House) -> None:
    house.add("c.cpp", "int c() { return nothing; }\n")
    count, said = house.look()
    assert count == Count(0, 1)
    assert "nothing" in said


@pytest.mark.parametrize(
    "flags",
    [
        "-Winvalid-pch -include {root}/cmake_pch.hxx",
        "-Winvalid-pch -Xclang -include-pch -Xclang {root}/cmake_pch.hxx.pch "
        "-Xclang -include -Xclang {root}/cmake_pch.hxx",
    ],
)
def test_what_a_precompiled_header_would_bring_has_to_be_included(house: House, flags: str) -> None:
    house.write("cmake_pch.hxx", "int nothing = 1;\n")
    house.add("c.cpp", "int c() { return nothing; }\n", flags.format(root=house.root))
    assert house.look()[0] == Count(0, 1)


def test_checks_can_be_left_out_one_after_the_other(house: House) -> None:
    house.add("c.cpp", "int* c(int unused) { return 0; }\n")
    assert house.look()[1].count("warnings-as-errors") == 2
    assert house.look("misc-unused-parameters")[1].count("warnings-as-errors") == 1
    assert house.look("misc-unused-parameters", "modernize-use-nullptr")[0] == Count(1, 0)
    assert house.host().without("a").without("b").options == ("--checks=-a,-b",)


def test_a_build_that_knows_nothing_is_a_failure(house: House) -> None:
    house.commands = {"elsewhere.cpp": ""}
    with pytest.raises(StageFailed, match="knows none of the sources"):
        house.look()
    (house.root / "build/host/compile_commands.json").unlink()
    with pytest.raises(StageFailed, match="has no compile commands"):
        house.look()
