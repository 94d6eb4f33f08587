"""Disks that a test needs and not every machine has: a small one, one that says FAT32, one that is FAT or exFAT."""

from __future__ import annotations

import contextlib
import os
import shutil
import struct
import subprocess
from collections.abc import Iterator
from pathlib import Path

import pytest

# Counted and shown by scripts/test, and no failure.
NOT_AVAILABLE = "not available here: "


def not_available(reason: str) -> None:
    pytest.skip(NOT_AVAILABLE + reason)


def _run(*command: str, path: str | None = None) -> subprocess.CompletedProcess[str]:
    env = None if path is None else {**os.environ, "PATH": path}
    return subprocess.run(command, capture_output=True, text=True, env=env, check=False)


@contextlib.contextmanager
def small_file_system(folder: Path, size: int) -> Iterator[bool]:
    """A file system of so many bytes in `folder`, which is made; False where mounting is not allowed."""
    folder.mkdir()
    mounted = _run("mount", "-t", "tmpfs", "-o", f"size={size}", "tmpfs", str(folder)).returncode == 0
    try:
        yield mounted
    finally:
        if mounted:
            # Lazily: a Wine process may still look at it.
            subprocess.run(["umount", "-l", str(folder)], check=True)
        shutil.rmtree(folder)


@contextlib.contextmanager
def loop_device(image: Path) -> Iterator[str]:
    """A block device that is the image. Without the right to make one, the test is not available."""
    made = _run("losetup", "-f", "--show", str(image)) if shutil.which("losetup") else None
    if made is None or made.returncode != 0:
        not_available("no loop device can be made")
    device = made.stdout.strip()
    try:
        yield device
    finally:
        subprocess.run(["losetup", "-d", device], check=True)


def write_fat32_label(image: Path, label: str, serial: int) -> None:
    """Makes `image` begin as a FAT32 volume does. There is nothing behind it: who looks sees what the volume says of
    itself and no files."""
    sector = bytearray(512)
    # Jump, maker; bytes a sector, sectors a cluster, reserved sectors, tables, entries in the root, sectors (small),
    # medium, sectors of a table (small), of a track, heads, hidden sectors, sectors.
    struct.pack_into(
        "<3s8sHBHBHHBHHHII", sector, 0, b"\xeb\x58\x90", b"MSDOS5.0",
        512, 8, 32, 2, 0, 0, 0xF8, 0, 63, 255, 0, 1 << 20)  # fmt: skip
    # Sectors of a table, flags, version, first cluster of the root, information sector, copy of this one, drive, mark,
    # serial number, label, name.
    struct.pack_into(
        "<IHHIHH12xBBBI11s8s", sector, 36, 1000, 0, 0, 2, 1, 6, 0x80, 0, 0x29, serial,
        label.ljust(11).encode(), b"FAT32   ")  # fmt: skip
    sector[510:] = b"\x55\xaa"
    with image.open("wb") as file:
        file.write(sector)
        file.truncate(64 << 20)


# What makes and mounts a file system of that kind, by its name.
_MAKERS = {"FAT32": ["mkfs.fat", "-F", "32"], "exFAT": ["mkfs.exfat"]}
_MOUNTERS = {"FAT32": "fusefat", "exFAT": "mount.exfat-fuse"}


@contextlib.contextmanager
def fuse_file_system(kind: str, folder: Path) -> Iterator[None]:
    """A real file system of that kind ("FAT32" or "exFAT") of 40 megabytes, empty, in `folder`, which is made. Where
    the machine has no such thing, the test is not available."""
    path = os.environ.get("PATH", "") + ":/usr/sbin:/sbin"
    for needed in (_MAKERS[kind][0], _MOUNTERS[kind], "fusermount"):
        if shutil.which(needed, path=path) is None:
            not_available(f"no {needed}")
    if not os.access("/dev/fuse", os.R_OK | os.W_OK):
        not_available("/dev/fuse cannot be used")
    image = folder.with_name(folder.name + ".img")
    with contextlib.ExitStack() as undo:
        undo.callback(image.unlink, missing_ok=True)
        with image.open("wb") as file:
            file.truncate(40 << 20)
        made = _run(*_MAKERS[kind], str(image), path=path)
        assert made.returncode == 0, made.stderr
        folder.mkdir()
        undo.callback(folder.rmdir)
        command = ["fusefat", "-o", "rw+", str(image), str(folder)]
        if kind == "exFAT":
            command = ["mount.exfat-fuse", undo.enter_context(loop_device(image)), str(folder)]
        mounted = _run(*command, path=path)
        if mounted.returncode != 0:
            not_available(f"{command[0]} cannot mount: {mounted.stderr.strip()}")
        # Not lazily: what is written has to be in the image before its device goes.
        undo.callback(_unmount, folder)
        yield


def _unmount(folder: Path) -> None:
    subprocess.run(["fusermount", "-u", str(folder)], check=True)
