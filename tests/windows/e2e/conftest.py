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
from disks import fuse_file_system, loop_device, small_file_system, write_fat32_label
from harness import PROGRAM, REPO, Machine
from wine_env import WineEnvironment

DIST = Path(os.environ.get("MARLOK_DIST", REPO / "dist" / "Marlok Backup"))
TOOL = Path(os.environ.get("MARLOK_E2E_TOOL", REPO / "build" / "windows" / "tests" / "e2e_tool.exe"))
# The small disk's size in bytes.
SMALL = 1 << 20
# What has to be free in memory before it is taken for data; in bytes. The largest test of all takes a third of it.
MEMORY = 6 << 30

_numbers = itertools.count(1)


def pytest_configure(config: pytest.Config) -> None:
    config.addinivalue_line("markers", "nightly: takes minutes; run by scripts/test --nightly")
    config.addinivalue_line("markers", "long: takes longer than most; begun first where processes share the tests")

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


def keeps_dos_attributes(folder: Path) -> bool:
    """Wine keeps them in an attribute of the file, which memory file systems have taken for some years only."""
    with tempfile.NamedTemporaryFile(dir=folder) as file:
        try:
            os.setxattr(file.fileno(), "user.DOSATTRIB", b"0x2")
        except OSError:
            return False
    return True


def folder_for_data(beside: Path) -> Path:
    """Where the drives for data and backups are kept: in memory where there is plenty, since tens of thousands of files
    come and go, which takes minutes on a disk that others use as well."""
    memory = Path("/dev/shm")
    usable = memory.is_dir() and os.access(memory, os.W_OK) and shutil.disk_usage(memory).free >= MEMORY
    return memory if usable and keeps_dos_attributes(memory) else beside


@pytest.fixture(scope="session")
def work(wine: WineEnvironment):
    """The folder of the drives: P for programs, D for data, E for backups."""
    # Beside the prefix: the path stays short, which leaves room for the deep folders.
    folder = Path(tempfile.mkdtemp(prefix="e", dir=wine.prefix.parent))
    data = Path(tempfile.mkdtemp(prefix="e", dir=folder_for_data(folder)))
    for letter, place in (("p", folder), ("d", data), ("e", data)):
        (place / letter).mkdir()
        if place != folder:
            (folder / letter).symlink_to(place / letter)
        wine.map_drive(letter, place / letter)
    yield folder
    for made in (folder, data):
        subprocess.run(["chmod", "-R", "u+rwX", str(made)], check=False, stderr=subprocess.DEVNULL)
        subprocess.run(["rm", "-rf", str(made)], check=True)


@pytest.fixture
def machine(wine: WineEnvironment, work: Path):
    name = f"t{next(_numbers)}"
    made = Machine(wine, DIST, TOOL, work, name)
    yield made
    shown = made.windows() if made.has_hands() else []
    left = made.end_what_runs()
    made.unplug_all()
    shutil.rmtree(work / "p" / name)
    assert not left, f"still running at the end of the test: {left}"
    # One that the test did not expect, or that it did not answer.
    assert not shown, f"still on the screen at the end of the test: {shown}"


@pytest.fixture
def small_disk(machine: Machine, work: Path):
    """Drive F, with room for one megabyte: a file system of that size where mounting is allowed. Yields the folder
    and the options for `Machine.run` that do the same elsewhere."""
    with small_file_system(work / "f", SMALL) as mounted:
        machine.plug("f", work / "f")
        yield work / "f", {} if mounted else {"size_limit": SMALL}
        machine.unplug("f")


@pytest.fixture
def fat32_device(tmp_path: Path):
    """A device that says it is a FAT32 volume with the label STICK."""
    write_fat32_label(tmp_path / "fat32.img", "STICK", 0xFA320001)
    with loop_device(tmp_path / "fat32.img") as device:
        yield device


@pytest.fixture
def fuse_disk(request: pytest.FixtureRequest, machine: Machine, work: Path):
    """Drive F, a real file system of the kind that the test asks for (indirectly); yields its folder."""
    with fuse_file_system(request.param, work / "f"):
        machine.plug("f", work / "f")
        yield work / "f"
        machine.unplug("f")
