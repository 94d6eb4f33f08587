"""The files of the repository that the checks look at."""

from __future__ import annotations

import subprocess
from pathlib import Path

REPO = Path(__file__).resolve().parents[2]

_NOT_OURS = {"build", "dist", ".git", ".cache"}


def repo_files(*suffixes: str) -> list[Path]:
    """Paths relative to the repository, sorted: those that end so, or all of them. Files that are new and not yet added
    count; ignored ones do not. In a copy of the repository without its history, every file outside the build
    folders."""
    listing = subprocess.run(
        ["git", "-c", f"safe.directory={REPO}", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        cwd=REPO,
        capture_output=True,
        text=True,
        check=False,
    )
    if listing.returncode == 0:
        names = [Path(name) for name in listing.stdout.split("\0") if name]
    else:
        names = [path.relative_to(REPO) for path in REPO.rglob("*") if path.is_file()]
        names = [name for name in names if name.parts[0] not in _NOT_OURS]
    wanted = [name for name in names if not suffixes or name.suffix in suffixes]
    return sorted({name for name in wanted if (REPO / name).is_file()})
