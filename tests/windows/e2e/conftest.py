"""Fixtures of the end-to-end tests: one Wine machine for all of them, swept clean for each."""

from __future__ import annotations

import itertools
import os
import shutil
import signal
import subprocess
import tempfile
from pathlib import Path

import pytest
from harness import PROGRAM, REPO, Machine
from wine_env import WineEnvironment

DIST = Path(os.environ.get("MARLOK_DIST", REPO / "dist" / "Marlok Backup"))
TOOL = Path(os.environ.get("MARLOK_E2E_TOOL", REPO / "build" / "windows" / "tests" / "e2e_tool.exe"))
# The small disk's size in bytes.
SMALL = 1 << 20

_numbers = itertools.count(1)


def pytest_configure(config: pytest.Config) -> None:
    config.addinivalue_line("markers", "nightly: takes minutes; run by scripts/test --nightly")
    config.addinivalue_line("markers", "long: takes longer than most; begun first when several processes share the tests")

    def leave(number: int, _: object) -> None:
        # The way out that passes through the fixtures.
        pytest.exit("ended by a signal", 128 + number)

    signal.signal(signal.SIGTERM, leave)
    signal.signal(signal.SIGHUP, leave)


def share() -> Path | None:
    """The folder in which processes that share the tests take them; None when this one runs alone."""
    folder = os.environ.get("MARLOK_E2E_SHARE")
    return Path(folder) if folder else None


def pytest_collection_modifyitems(items: list[pytest.Item]) -> None:
    if share() is not None:
        items.sort(key=lambda item: item.get_closest_marker("long") is None)


def take(folder: Path, number: int) -> bool:
    """Takes the test of that number, unless another process has; every process counts them alike."""
    try:
        os.close(os.open(folder / str(number), os.O_CREAT | os.O_EXCL | os.O_WRONLY))
    except FileExistsError:
        return False
    return True


def pytest_runtestloop(session: pytest.Session) -> bool | None:
    """Runs the tests that no other process has taken; pytest's own loop where this one runs alone."""
    folder = share()
    if folder is None or session.testsfailed or session.config.option.collectonly:
        return None
    (folder / "collected").write_text(str(len(session.items)))
    mine = (item for number, item in enumerate(session.items) if take(folder, number))
    item = next(mine, None)
    while item is not None:
        # The one that follows is taken already: pytest puts away what it does not need.
        following = next(mine, None)
        item.config.hook.pytest_runtest_protocol(item=item, nextitem=following)
        if session.shouldstop:
            raise session.Interrupted(session.shouldstop)
        item = following
    return True


@pytest.fixture(scope="session")
def wine():
    for needed in (DIST / PROGRAM, TOOL):
        assert needed.exists(), f"{needed} is not there: scripts/build --all"
    with WineEnvironment() as environment:
        yield environment


@pytest.fixture(scope="session")
def work(wine: WineEnvironment):
    """The folder of the drives: P for programs, D for data, E for backups."""
    # Beside the prefix: the path stays short, which leaves room for the deep folders.
    folder = Path(tempfile.mkdtemp(prefix="e", dir=wine.prefix.parent))
    for letter in "dep":
        (folder / letter).mkdir()
        wine.map_drive(letter, folder / letter)
    yield folder
    subprocess.run(["chmod", "-R", "u+rwX", str(folder)], check=False, stderr=subprocess.DEVNULL)
    subprocess.run(["rm", "-rf", str(folder)], check=True)


@pytest.fixture
def machine(wine: WineEnvironment, work: Path):
    name = f"t{next(_numbers)}"
    made = Machine(wine, DIST, TOOL, work, name)
    yield made
    left = made.end_what_runs()
    shutil.rmtree(work / "p" / name)
    assert not left, f"still running at the end of the test: {left}"


@pytest.fixture
def small_disk(wine: WineEnvironment, work: Path):
    """Drive F, with room for one megabyte: a file system of that size where mounting is allowed. Yields the folder
    and the options for `Machine.run` that do the same elsewhere."""
    folder = work / "f"
    folder.mkdir()
    wine.map_drive("f", folder)
    mounted = subprocess.run(
        ["mount", "-t", "tmpfs", "-o", f"size={SMALL}", "tmpfs", str(folder)], capture_output=True, check=False)  # fmt: skip
    options = {} if mounted.returncode == 0 else {"size_limit": SMALL}
    yield folder, options
    if mounted.returncode == 0:
        subprocess.run(["umount", "-l", str(folder)], check=True)
    shutil.rmtree(folder)
    (wine.prefix / "dosdevices" / "f:").unlink()
