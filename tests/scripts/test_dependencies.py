"""Which headers are compiled alone, and that one which cannot stand alone is found."""

from __future__ import annotations

from pathlib import Path

import check_dependencies
import pytest
from check_dependencies import check_header_alone, headers_to_compile


@pytest.fixture
def house(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> Path:
    monkeypatch.setattr(check_dependencies, "REPO", tmp_path)
    files = {
        "forms/First.h": "#pragma once\nint first();\n",
        "forms/First.cpp": '#include "forms/First.h"\n',
        "forms/Later.h": "#pragma once\nstd::size_t later();\n",
        "forms/Second.cpp": '#include <cstddef>\n#include "forms/Later.h"\n',
        "tests/unit/Own.h": "#pragma once\n",
        "tests/unit/Own.cpp": '#include "tests/unit/Own.h"\n',
    }
    for name, text in files.items():
        (tmp_path / name).parent.mkdir(parents=True, exist_ok=True)
        (tmp_path / name).write_text(text)
    return tmp_path


def test_a_header_that_a_source_includes_first_is_shown_by_the_build(house: Path) -> None:
    sources = [str(path.relative_to(house)) for path in house.rglob("*.cpp")]
    headers = sorted(str(path.relative_to(house)) for path in house.rglob("*.h"))

    # Behind a precompiled header the first include shows nothing.
    assert headers_to_compile(headers, sources) == ["forms/Later.h", "tests/unit/Own.h"]


def test_a_header_that_cannot_stand_alone_is_found(house: Path) -> None:
    assert check_header_alone("tests/unit/Own.h") is None
    fault = check_header_alone("forms/Later.h")
    assert fault is not None
    assert fault.startswith("forms/Later.h:1: does not compile alone")


def test_headers_for_windows_are_compiled_for_windows(house: Path) -> None:
    (house / "win32").mkdir()
    text = "#pragma once\n#include <windows.h>\ninline HWND none() { return nullptr; }\n"
    (house / "win32" / "Window.h").write_text(text)
    assert check_header_alone("win32/Window.h") is None
