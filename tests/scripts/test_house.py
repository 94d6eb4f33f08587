"""What the house is held to beside its include table: no circles, a true drawing, nothing left lying about."""

from __future__ import annotations

from collections.abc import Callable
from pathlib import Path

import check_dependencies
import pytest
import repo_files
from check_dependencies import check_circles, check_drawing, check_leftovers

House = Callable[[dict[str, str]], None]


@pytest.fixture
def house(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> House:
    """Builds a house of these files, by their names and texts, in place of the repository."""
    monkeypatch.setattr(check_dependencies, "REPO", tmp_path)
    monkeypatch.setattr(repo_files, "REPO", tmp_path)
    monkeypatch.setattr(check_dependencies, "KNOTS", [])

    def build(files: dict[str, str]) -> None:
        for name, text in files.items():
            (tmp_path / name).parent.mkdir(parents=True, exist_ok=True)
            (tmp_path / name).write_text(text)

    return build


def including(*names: str) -> str:
    return "".join(f'#include "{name}"\n' for name in names)


def ring(*units: str) -> dict[str, str]:
    """Units of which each header declares itself alone, and each source includes the next one's header."""
    files = {}
    for unit, following in zip(units, (*units[1:], units[0])):
        files[f"{unit}.h"] = "#pragma once\n"
        files[f"{unit}.cpp"] = including(f"{unit}.h", f"{following}.h")
    return files


def test_a_class_and_its_collaborator_may_know_each_other(house: House) -> None:
    house(
        {
            "ui/Window.h": including("ui/First.h", "ui/Second.h"),
            "ui/First.h": "class Window;\n",
            "ui/First.cpp": including("ui/First.h", "ui/Window.h"),
            "ui/Second.h": "class Window;\n",
            "ui/Second.cpp": including("ui/Second.h", "ui/Window.h"),
        }
    )
    assert check_circles() == []


def test_three_in_a_circle_are_refused(house: House) -> None:
    house(ring("ui/A", "ui/B", "ui/C"))
    assert check_circles() == ["ui/A.h:1: files in a circle: ui/A -> ui/B -> ui/C -> ui/A"]


def test_a_circle_through_a_pair_is_refused_too(house: House) -> None:
    files = ring("ui/A", "ui/B", "ui/C")
    files["ui/B.cpp"] += including("ui/A.h")
    house(files)
    assert check_circles() == ["ui/A.h:1: files in a circle: ui/A -> ui/B -> ui/C -> ui/A"]


def test_headers_that_include_each_other_are_refused(house: House) -> None:
    house({"ui/A.h": including("ui/B.h"), "ui/B.h": including("ui/A.h")})
    assert check_circles() == ["ui/A.h:1: headers in a circle: ui/A.h -> ui/B.h -> ui/A.h"]


def test_a_knot_is_let_be_until_it_has_come_undone(house: House, monkeypatch: pytest.MonkeyPatch) -> None:
    house(ring("ui/A", "ui/B", "ui/C"))
    monkeypatch.setattr(check_dependencies, "KNOTS", [{"ui/A", "ui/B", "ui/C"}])
    assert check_circles() == []
    monkeypatch.setattr(check_dependencies, "KNOTS", [{"ui/A", "ui/B"}])
    assert len(check_circles()) == 3  # the circle leaves the knot, and its two units are in none that does not
    monkeypatch.setattr(check_dependencies, "KNOTS", [{"ui/A", "ui/B", "ui/C", "ui/D"}])
    assert check_circles() == ["scripts/check_dependencies.py:1: ui/D is in no circle any more"]


def test_the_drawing_says_what_the_table_says(house: House, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setattr(check_dependencies, "MAY_INCLUDE", {"text": [], "paths": ["text"], "ui": ["text", "paths"]})
    page = "docs/architecture.md"
    house({page: "```house\nui -> paths text\npaths -> text\ntext ->\n```\n```\ncellar -> text\n```\n"})
    assert check_drawing() == []
    house({page: "```house\nui -> text\npaths -> text\n```\n"})
    assert check_drawing() == [f"{page}:1: text is not drawn", f"{page}:2: ui may include text paths"]
    house({page: "```house\nui -> paths text\npaths -> text\ntext -> paths\ncellar ->\n```\n"})
    assert check_drawing() == [f"{page}:4: text may include nothing", f"{page}:5: cellar is no folder of the house"]


def test_leftovers_are_found(house: House) -> None:
    house({"ui/A.cpp": "", "ui/A.cpp.orig": "", "docs/guide.md.rej": "", "scripts/test~": "", "docs/original.md": ""})
    found = sorted(fault.partition(":")[0] for fault in check_leftovers())
    assert found == ["docs/guide.md.rej", "scripts/test~", "ui/A.cpp.orig"]
