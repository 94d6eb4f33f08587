"""Fixtures of the tests of packages: those of the end-to-end tests, and the packages."""

from __future__ import annotations

import importlib.util
import sys
import zipfile
from pathlib import Path

import pytest

REPO = Path(__file__).resolve().parents[2]
E2E = REPO / "tests" / "windows" / "e2e"
for folder in (E2E, REPO / "scripts" / "lib"):
    sys.path.insert(0, str(folder))

import package  # noqa: E402
from setup_program import SetUp  # noqa: E402

_spec = importlib.util.spec_from_file_location("e2e_conftest", E2E / "conftest.py")
assert _spec is not None and _spec.loader is not None
_e2e = importlib.util.module_from_spec(_spec)
_spec.loader.exec_module(_e2e)
wine, work, machine = _e2e.wine, _e2e.work, _e2e.machine


@pytest.fixture(scope="session")
def packages() -> Path:
    """The folder with the packages."""
    assert (package.PACKAGES / "SHA256SUMS").exists(), f"no packages in {package.PACKAGES}: scripts/package"
    return package.PACKAGES


@pytest.fixture(scope="session")
def version() -> str:
    return package.version_of(REPO)


@pytest.fixture(scope="session")
def shipped(packages: Path, version: str, tmp_path_factory: pytest.TempPathFactory) -> Path:
    """What ships: the portable archive, unpacked."""
    folder = tmp_path_factory.mktemp("portable")
    with zipfile.ZipFile(packages / f"Marlok-Backup-{version}-portable.zip") as archive:
        archive.extractall(folder)
    return folder / "Marlok Backup"


@pytest.fixture
def setup(wine, machine, packages: Path, version: str):
    """The set-up program, on a machine on which nothing is installed."""
    made = SetUp(wine, machine, packages / f"Marlok-Backup-{version}-setup.exe")
    yield made
    made.clear()
