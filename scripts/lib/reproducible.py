#!/usr/bin/python3
"""Builds the packages of the last commit twice, in two folders of different depth and at two times, without any cache,
and compares them byte for byte. Says which differ and where, and fails when one does.

    scripts/lib/reproducible.py [FOLDER]     where the two checkouts lie while it lasts (build/reproducible)
"""

from __future__ import annotations

import os
import shutil
import subprocess
import sys
import time
from pathlib import Path

REPO = Path(__file__).resolve().parents[2]
# So that a time of day that finds its way into a package cannot be the same by chance.
APART = 2.0  # seconds


def build(checkout: Path, commit: str, zone: str) -> Path:
    """Makes the packages of a commit in a checkout of its own; their folder."""
    subprocess.run(["git", "clone", "--quiet", "--no-checkout", "--no-hardlinks", str(REPO), str(checkout)], check=True)
    subprocess.run(["git", "checkout", "--quiet", "--detach", commit], cwd=checkout, check=True)
    environment = dict(os.environ, CCACHE_DISABLE="1", TZ=zone)
    environment.pop("SOURCE_DATE_EPOCH", None)
    subprocess.run(["scripts/package"], cwd=checkout, env=environment, check=True, stdout=subprocess.DEVNULL)
    return checkout / "dist" / "packages"


def difference(first: bytes, second: bytes) -> str:
    if len(first) != len(second):
        return f"{len(first)} and {len(second)} bytes"
    places = [index for index, (one, other) in enumerate(zip(first, second)) if one != other]
    return f"{len(places)} bytes, the first at {places[0]:#x}"


def compare(first: Path, second: Path) -> list[str]:
    """What differs between the files of two folders, a line each."""
    names = sorted({path.relative_to(folder) for folder in (first, second) for path in folder.rglob("*") if path.is_file()})
    faults = [] if names else ["there are no packages"]
    for name in names:
        one, other = first / name, second / name
        if not (one.exists() and other.exists()):
            faults.append(f"{name}: made once only")
        elif one.read_bytes() != other.read_bytes():
            faults.append(f"{name}: {difference(one.read_bytes(), other.read_bytes())}")
    return faults


def main(arguments: list[str]) -> int:
    folder = Path(arguments[0]) if arguments else REPO / "build" / "reproducible"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    # Of one commit, even when another is made while this lasts.
    commit = subprocess.run(["git", "rev-parse", "HEAD"], cwd=REPO, capture_output=True, text=True, check=True).stdout.strip()
    try:
        first = build(folder / "a", commit, "UTC")
        time.sleep(APART)
        second = build(folder / "somewhere" / "further" / "down", commit, "America/New_York")
        faults = compare(first, second)
        for fault in faults:
            print(fault)
        if not faults:
            print((first / "SHA256SUMS").read_text(), end="")
        return 1 if faults else 0
    finally:
        shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
