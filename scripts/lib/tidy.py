"""clang-tidy on the sources of a build, those alone that changed since it had nothing to say about them.

A source that it passed leaves a stamp: a hash of everything that could change its mind, which is the source and our
headers that it includes, the compile command, the configuration and the packages of the tool and of the system's
headers.
"""

from __future__ import annotations

import functools
import hashlib
import json
import re
import shlex
import subprocess
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

from schedule import Count, Job, StageFailed, cores

TOOL = "clang-tidy-14"
# One source; the largest takes half a minute when nothing else runs.
TIME_LIMIT = 600
# Their version stands for the tool itself and for the system's headers.
PACKAGES = [TOOL, "libstdc++-12-dev", "libc6-dev", "googletest", "g++-mingw-w64-x86-64-posix", "mingw-w64-x86-64-dev"]

_QUOTED_INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*"([^"]+)"', re.MULTILINE)
# A precompiled header is included by the command line.
_PRECOMPILED = re.compile(
    r"-Winvalid-pch|-Xclang -include(-pch)? -Xclang \S*cmake_pch\.hxx(\.pch)?|-include \S*cmake_pch\.hxx"
)


@dataclass(frozen=True)
class Look:
    """How sources are looked at: with the compile commands of `build` and further arguments for the tool, without the
    checks that are left out."""

    build: Path
    arguments: tuple[str, ...] = ()
    left_out: tuple[str, ...] = ()

    def without(self, *checks: str) -> Look:
        return Look(self.build, self.arguments, (*self.left_out, *checks))

    @property
    def options(self) -> tuple[str, ...]:
        checks = ",".join(f"-{check}" for check in self.left_out)
        return (*self.arguments, f"--checks={checks}") if checks else self.arguments


def host_look(repo: Path) -> Look:
    return Look(repo / "build" / "host")


def windows_look(repo: Path) -> Look:
    """The Windows build as its own compiler sees it: with that one's headers, for its target."""
    folders = [f"--extra-arg=-isystem{folder}" for folder in _header_folders("x86_64-w64-mingw32-g++-posix")]
    target = ("--extra-arg-before=--target=x86_64-w64-mingw32", "--extra-arg=-nostdinc++", "--extra-arg=-nostdlibinc")
    look = Look(repo / "build" / "windows", (*target, *folders))
    # A message of the system carries its pointers in integers. And the system's own headers declare the same names in
    # two namespaces, which is reported wherever they are included.
    return look.without("performance-no-int-to-ptr", "bugprone-forward-declaration-namespace")


def _header_folders(compiler: str) -> list[str]:
    """Where a compiler looks for system headers, without those of its own that stand for its built-in functions."""
    command = [compiler, "-E", "-x", "c++", "-", "-v"]
    said = subprocess.run(command, input="", capture_output=True, text=True, check=True).stderr
    listed = re.search(r"#include <\.\.\.> search starts here:\n(.*?)End of search list", said, re.DOTALL)
    if listed is None:
        raise StageFailed(f"{compiler} does not say where its headers are")
    folders = [str(Path(line.strip()).resolve()) for line in listed[1].splitlines()]
    return [folder for folder in folders if not folder.endswith(("/include-fixed", "-posix/include"))]


class Inputs:
    """What the sources of a repository are made of."""

    def __init__(self, repo: Path) -> None:
        self._repo = repo

    @functools.cached_property
    def _versions(self) -> str:
        """One query for all packages; it fails when one is unknown, what it says counts all the same."""
        query = ["dpkg-query", "-W", "-f", "${Package} ${Version}\n", *PACKAGES]
        return subprocess.run(query, capture_output=True, text=True, check=False).stdout

    @functools.lru_cache(maxsize=None)
    def _includes(self, path: Path) -> tuple[bytes, tuple[Path, ...]]:
        """The content of a file, and those of our own files that it includes: beside it or from the root."""
        content = path.read_bytes()
        names = _QUOTED_INCLUDE.findall(content.decode("utf-8", "replace"))
        places = ((path.parent / name, self._repo / name) for name in names)
        found = (next((place for place in pair if place.is_file()), None) for pair in places)
        return content, tuple(place for place in found if place)

    def all_files_of(self, source: Path) -> dict[Path, bytes]:
        """The source and everything of ours that it includes, however deep."""
        files: dict[Path, bytes] = {}
        new = [source]
        while new:
            path = new.pop()
            if path not in files:
                files[path], further = self._includes(path)
                new += further
        return files

    def stamp(self, source: Path, command: str, options: tuple[str, ...]) -> str:
        digest = hashlib.sha256()
        for part in (self._versions, command, shlex.join(options), (self._repo / ".clang-tidy").read_text()):
            digest.update(part.encode() + b"\0")
        for path, content in sorted(self.all_files_of(source).items()):
            digest.update(str(path.relative_to(self._repo)).encode() + b"\0" + hashlib.sha256(content).digest())
        return digest.hexdigest()


def commands_of(look: Look) -> dict[Path, str]:
    """The compile command of each source of a build; of a source that is compiled twice, any."""
    try:
        entries = json.loads((look.build / "compile_commands.json").read_text())
    except (OSError, ValueError) as fault:
        raise StageFailed(f"{look.build} has no compile commands: {fault}") from None
    return {Path(entry["file"]): entry["command"] for entry in entries}


def without_precompiled_headers(look: Look, folder: Path) -> Path:
    """A folder with the compile commands of the build as they are without precompiled headers: those are another
    compiler's, and a source has to include what it uses."""
    folder.mkdir(parents=True, exist_ok=True)
    entries = json.loads((look.build / "compile_commands.json").read_text())
    for entry in entries:
        entry["command"] = _PRECOMPILED.sub("", entry["command"])
    (folder / "compile_commands.json").write_text(json.dumps(entries))
    return folder


def look_at_sources(job: Job, repo: Path, sources: list[Path], look: Look) -> Count:
    """Looks at those of `sources`, relative to `repo`, that the build compiles; one check. Stamps are kept in
    build/tidy."""
    commands = commands_of(look)
    known = [repo / name for name in sources if repo / name in commands]
    if not known:
        raise StageFailed("the build knows none of the sources")
    stamps = repo / "build" / "tidy" / look.build.name
    database = without_precompiled_headers(look, stamps / "commands")
    inputs = Inputs(repo)
    wanted = {source: inputs.stamp(source, commands[source], look.options) for source in known}

    def stamp_of(source: Path) -> Path:
        return stamps / (str(source.relative_to(repo)).replace("/", "__") + ".stamp")

    def look_at(source: Path) -> bool:
        log = stamp_of(source).with_suffix(".log")
        log.unlink(missing_ok=True)
        passed = job.run([TOOL, "--quiet", "-p", str(database), *look.options, str(source)], TIME_LIMIT, log=log) == 0
        if passed:
            stamp_of(source).write_text(wanted[source])
        return passed

    changed = [source for source in known if not _says(stamp_of(source), wanted[source])]
    # Those that take longest first, so that no processor waits at the end.
    changed.sort(key=lambda source: -source.stat().st_size)
    with ThreadPoolExecutor(cores()) as pool:
        verdicts = list(pool.map(look_at, changed))
    found = [source for source, passed in zip(changed, verdicts) if not passed]
    with job.log.open("ab") as output:
        for source in found:
            output.write(stamp_of(source).with_suffix(".log").read_bytes())
    unchanged = len(known) - len(changed)
    job.tell(f"  {len(known)} sources, {unchanged} unchanged since they were passed, {len(found)} with findings")
    return Count(0, 1) if found else Count(1, 0)


def _says(stamp: Path, text: str) -> bool:
    return stamp.exists() and stamp.read_text() == text
