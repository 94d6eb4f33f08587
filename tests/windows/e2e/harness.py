"""The built program on a Wine machine: its folder, its drives, its registry, its runs and what they leave."""

from __future__ import annotations

import contextlib
import hashlib
import os
import re
import resource
import select
import shutil
import signal
import struct
import subprocess
import sys
import time
from collections.abc import Callable, Iterator
from dataclasses import dataclass
from pathlib import Path

REPO = Path(__file__).resolve().parents[3]
sys.path.insert(0, str(REPO / "scripts" / "lib"))
from wine_env import BROWSER_LOG, WineEnvironment  # noqa: E402

PROGRAM = "Marlok Backup.exe"
RUN_LOG = "Backup Log File.txt"
ERROR_LOG = "Backup Error Log.txt"
SHORTCUT = "Backup Log File.lnk"
DELETE_LIST = "DeleteFolder.txt"
# What a run keeps in a location while it writes there.
WORKING_FILES = "~Marlok Backup.*"

# A drive letter that leads nowhere.
MISSING_DRIVE = "N"

_DAYS = "Sunday|Monday|Tuesday|Wednesday|Thursday|Friday|Saturday"
_MONTHS = "Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec"
# An unattended run writes "At" and "Was"; one that a person watches writes "was" alone.
HEADER = re.compile(
    rf"Total files copied (?:{_DAYS}), (?:{_MONTHS}) [1-9]\d? 20\d\d "
    r"(?:At (?:0[1-9]|1[0-2]):[0-5]\d [AP]M Was|(?:0[1-9]|1[0-2]):[0-5]\d [AP]M was) (\d+)"
)


@dataclass
class Started:
    """A program that was started, and where what it says goes."""

    process: subprocess.Popen[bytes]
    output: Path
    errors: Path
    began: float

    def kill(self) -> None:
        """Ends it from outside, at once, wherever it is."""
        self.process.kill()
        self.process.wait()


@dataclass
class Ended:
    """A program that has ended."""

    code: int
    output: str
    errors: str
    seconds: float


@dataclass(frozen=True)
class Entry:
    """A file (`content` is its hash) or a folder (both values None), as a tree compares it."""

    content: str | None = None
    # The last-write time in 100-nanosecond intervals, which is what Windows keeps.
    written: int | None = None


Tree = dict[str, Entry]


def file_entry(path: bytes | os.PathLike[str]) -> Entry:
    digest = hashlib.sha256()
    with open(path, "rb") as file:
        while block := file.read(1 << 20):
            digest.update(block)
    return Entry(digest.hexdigest(), os.stat(path).st_mtime_ns // 100)


def tree_of(folder: Path) -> Tree:
    """Everything below `folder` by its relative path. A link counts as a folder that is not entered."""
    tree: Tree = {}
    for here, folders, files in os.walk(folder):
        for name in folders:
            tree[os.path.relpath(os.path.join(here, name), folder)] = Entry()
        for name in files:
            path = os.path.join(here, name)
            tree[os.path.relpath(path, folder)] = file_entry(path)
    return tree


def write(path: Path, content: str | bytes, hours_ago: float = 24) -> Path:
    """Writes a file, and the folders to it, as it would have been written so long ago."""
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content if isinstance(content, bytes) else content.encode())
    moment = time.time_ns() - int(hours_ago * 3600e9)
    os.utime(path, ns=(moment, moment))
    return path


def same_time(path: Path, other: Path) -> None:
    """Gives `path` the last-write time of `other`."""
    moment = other.stat().st_mtime_ns
    os.utime(path, ns=(moment, moment))


@dataclass
class Link:
    """A shortcut file, read by its published layout."""

    target: str = ""
    description: str = ""
    working_folder: str = ""
    icon: str = ""
    icon_index: int = 0
    show: int = 0


def read_link(path: Path) -> Link:
    data = path.read_bytes()
    size, flags = struct.unpack_from("<I16xI", data)
    assert size == 0x4C, "no shortcut header"
    link = Link(icon_index=struct.unpack_from("<i", data, 56)[0], show=struct.unpack_from("<I", data, 60)[0])
    at = size
    if flags & 0x01:  # the target as a list of shell items
        at += 2 + struct.unpack_from("<H", data, at)[0]
    if flags & 0x02:  # the target as a path
        length, header, _, _, base = struct.unpack_from("<5I", data, at)
        if header >= 0x24:
            base = struct.unpack_from("<I", data, at + 28)[0]
            text = data[at + base : at + length].decode("utf-16-le", "replace").split("\0")[0]
        else:
            text = data[at + base : at + length].split(b"\0")[0].decode("cp1252")
        link.target = text
        at += length
    strings = []
    for bit in (0x04, 0x08, 0x10, 0x20, 0x40):  # description, relative path, working folder, arguments, icon
        text = ""
        if flags & bit:
            characters = struct.unpack_from("<H", data, at)[0]
            width = 2 if flags & 0x80 else 1
            raw = data[at + 2 : at + 2 + characters * width]
            text = raw.decode("utf-16-le" if width == 2 else "cp1252")
            at += 2 + characters * width
        # Wine counts the zero at the end, Windows does not.
        strings.append(text.rstrip("\0"))
    link.description, _, link.working_folder, _, link.icon = strings
    return link


class ToolFailed(AssertionError):
    """What the tool was to do on the screen could not be done; the message says why."""


class Hands:
    """The tool, kept running: it sees what is on the screen and uses it, a call in some milliseconds."""

    # What it takes longer than its own limit before it counts as stuck.
    _GRACE = 30

    def __init__(self, command: list[str], env: dict[str, str]) -> None:
        self._process = subprocess.Popen(
            command, env=env, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)  # fmt: skip
        self._unread = b""

    def call(self, *words: str, limit: float) -> list[str]:
        """Does what the words say; what the tool tells, by lines."""
        assert not any(character in word for word in words for character in "\t\r\n"), words
        assert self._process.stdin is not None
        self._process.stdin.write("\t".join(words).encode() + b"\n")
        self._process.stdin.flush()
        end = time.monotonic() + limit + self._GRACE
        lines: list[str] = []
        while not (line := self._line(end)).startswith("\a"):
            lines.append(line)
        code, reason = line[1:].split(" ", 1)
        if code != "0":
            there = "" if words[0] == "windows" else f"; windows: {self.call('windows', limit=5)}"
            raise ToolFailed(f"{' '.join(words)}: {_read_escapes(reason)}{there}")
        return lines

    def _line(self, end: float) -> str:
        assert self._process.stdout is not None
        while b"\n" not in self._unread:
            ready, _, _ = select.select([self._process.stdout], [], [], max(0.0, end - time.monotonic()))
            block = os.read(self._process.stdout.fileno(), 1 << 16) if ready else b""
            if not block:
                raise ToolFailed("the tool is stuck" if not ready else "the tool has died")
            self._unread += block
        line, self._unread = self._unread.split(b"\n", 1)
        return line.rstrip(b"\r").decode("utf-8", "replace")

    def close(self) -> None:
        """Ends the tool; its standard input's end does."""
        try:
            self._process.communicate(timeout=5)
        except subprocess.TimeoutExpired:
            self._process.kill()
            self._process.communicate()


_ESCAPES = {"\\r": "\r", "\\n": "\n", "\\t": "\t", "\\\\": "\\"}


def _read_escapes(text: str) -> str:
    return re.sub(r"\\[rnt\\]", lambda match: _ESCAPES[match[0]], text)


@dataclass(frozen=True)
class ShownControl:
    """A control on the screen, its place in pixels from the corner of the window's client area."""

    kind: str
    number: int
    left: int
    top: int
    width: int
    height: int
    enabled: bool
    text: str


@dataclass(frozen=True)
class Place:
    """Where a window is on the screen, in pixels."""

    left: int
    top: int
    width: int
    height: int


@dataclass(frozen=True)
class Dialog:
    """What a dialog said before it was answered."""

    texts: list[str]
    buttons: list[str]


@dataclass(frozen=True)
class PaintTimes:
    """How often a window painted itself when it was asked to, and how long (in seconds) it took at most to do so and
    to answer a message."""

    painted: int
    longest: float
    longest_reply: float


class Window:
    """A window of the program as a person uses it, by mouse and keyboard. `title` may be "Title", "Title#2" (the second
    of that title, the topmost first) or "Title|text" (the one that shows that text). Lists and buttons go by what they
    are called, however it is broken into lines, or by their class: "ComboBox" is the first that can be seen, "ListBox#2"
    the second. What is not there yet is waited for, `limit` seconds at most."""

    def __init__(self, hands: Hands, title: str, limit: float) -> None:
        self._hands = hands
        self.title = title
        self._limit = limit

    def _call(self, verb: str, *words: str) -> list[str]:
        return self._hands.call(verb, self.title, *words, str(self._limit), limit=self._limit)

    def controls(self) -> list[ShownControl]:
        """All controls that can be seen."""
        found = []
        for line in self._call("controls"):
            kind, number, left, top, width, height, enabled, text = line.split("\t")
            place = (int(number), int(left), int(top), int(width), int(height))
            found.append(ShownControl(kind, *place, enabled == "enabled", _read_escapes(text)))
        return found

    def texts(self) -> list[str]:
        """The texts of all controls that can be seen, as they are said: blanks and line breaks as one blank each."""
        return [" ".join(control.text.replace("&", "").split()) for control in self.controls()]

    def lines(self, name: str) -> list[str]:
        """The lines of a list or combo box."""
        return [_read_escapes(line[1:]) for line in self._call("lines", name)]

    def count(self, name: str) -> int:
        """How many lines it has. For long lists: to read a line takes a millisecond."""
        return int(self._call("count", name)[0])

    def selected(self, name: str) -> list[str]:
        """Its selected lines."""
        return [_read_escapes(line[1:]) for line in self._call("lines", name) if line.startswith("*")]

    def select(self, name: str, *lines: int | str) -> None:
        """Selects these lines of a list box and no others, clicking them: by number, from 0, or by text."""
        self._call("select", name, ",".join(str(self._number(name, line)) for line in lines))

    def open(self, name: str, line: int | str) -> None:
        """Clicks a line twice."""
        self._call("open", name, str(self._number(name, line)))

    def _number(self, name: str, line: int | str) -> int:
        if isinstance(line, int):
            return line
        assert wait_until(lambda: line in self.lines(name), self._limit), f"no line {line!r} in {self.lines(name)}"
        return self.lines(name).index(line)

    def choose(self, name: str, prefix: str) -> None:
        """Chooses the first line of a combo box that starts with that."""
        self._call("choose", name, prefix)

    def tab(self, caption: str) -> None:
        """Brings a tab to the front."""
        self._call("tab", caption)

    def tabs(self) -> list[str]:
        return [line[1:] for line in self._call("tabs")]

    def front_tab(self) -> str:
        return next(line[1:] for line in self._call("tabs") if line.startswith("*"))

    def click(self, button: str) -> None:
        """Clicks a button once it is enabled."""
        self._call("click", button)

    def check(self, box: str) -> str:
        """Clicks a check box; "checked", "unchecked" or "greyed"."""
        return self._call("check", box)[0].split()[0]

    def state(self, box: str) -> str:
        return self._call("state", box)[0].split()[0]

    def enabled(self, button: str) -> bool:
        return self._call("state", button)[0].split()[1] == "enabled"

    def type(self, text: str) -> None:
        """Replaces the text of the edit field that has the keyboard or is the only one."""
        self._call("type", text)

    def key(self, keys: str) -> None:
        """Presses keys together: "F1", "Ctrl+Tab", "Alt+H", "Enter"."""
        self._call("key", keys)

    def answer(self, text: str, button: str) -> Dialog:
        """Waits until the window shows `text` (a part of it does, "" for any), clicks the button and waits until the
        window has gone."""
        said = [line.split(" ", 1) for line in self._call("answer", text, button)]
        texts, buttons = ([_read_escapes(rest) for kind, rest in said if kind == wanted] for wanted in ("text", "button"))
        return Dialog(texts, buttons)

    def paint(self, seconds: float) -> PaintTimes:
        """Makes the window paint itself again and again, so long."""
        said = self._hands.call("paint", self.title, str(seconds), str(self._limit), limit=seconds + self._limit)
        painted, longest, reply = said[0].split()
        return PaintTimes(int(painted), int(longest) / 1000, int(reply) / 1000)

    def close(self) -> None:
        """Asks it to close."""
        self._call("close")


@dataclass(frozen=True)
class Volume:
    """What a volume says of itself."""

    file_system: str
    serial: int
    kind: str
    label: str


def label_volume(folder: Path, label: str, serial: int) -> Path:
    """What the folder is to say of itself when it is plugged in as a drive."""
    folder.mkdir(exist_ok=True)
    (folder / ".windows-label").write_text(label + "\n", encoding="utf-8")
    (folder / ".windows-serial").write_text(f"{serial:08X}\n")
    return folder


class Machine:
    """One test's machine: the program in a folder of its own, empty drives D (data) and E (backups), an empty
    configuration and an empty desktop."""

    def __init__(self, wine: WineEnvironment, dist: Path, tool: Path, work: Path, name: str) -> None:
        self._wine = wine
        self._tool = tool
        self._work = work
        self._started: list[Started] = []
        self._plugged: list[str] = []
        self._configured = False
        self._hands: Hands | None = None
        self.d = self._empty(work / "d")
        self.e = self._empty(work / "e")
        # Blanks in it, as where programs are kept.
        self.windows_folder = rf"P:\{name}\Marlok Backup"
        self.folder = work / "p" / name / "Marlok Backup"
        shutil.copytree(dist, self.folder)
        self.desktop = self._empty(wine.desktop_folder())

    @staticmethod
    def _empty(folder: Path) -> Path:
        folder = folder.resolve()
        if folder.exists():
            # rm goes deeper than shutil does; its own limit is the memory.
            subprocess.run(["chmod", "-R", "u+rwX", str(folder)], check=True, stderr=subprocess.DEVNULL)
            subprocess.run(["find", str(folder), "-mindepth", "1", "-delete"], check=True)
        folder.mkdir(parents=True, exist_ok=True)
        return folder

    # ---- configuration ----

    def configure(self, locations: dict[str, list[str]]) -> None:
        """Replaces the configuration: sources by location, in this order. Locations of the same name share a list."""
        root = r"HKEY_CURRENT_USER\Software\Marlok Software"
        keys = {"Target": {f"TargetPath{n}": path for n, path in enumerate(locations, 2)}}
        for location, sources in locations.items():
            values = {f"SourcePath{n}": path for n, path in enumerate(sources, 2)}
            # The location's path without its drive root.
            keys.setdefault(location[3:], {}).update(values)
        lines = ["Windows Registry Editor Version 5.00", "", f"[-{root}]", ""]
        for key, values in keys.items():
            if values:
                lines.append(rf"[{root}\Fenwold\{key}]")
                lines += [f'"{name}"="{data}"'.replace("\\", "\\\\") for name, data in values.items()]
                lines.append("")
        file = self._work / "seed.reg"
        file.write_bytes(b"\xff\xfe" + "\r\n".join(lines + [""]).encode("utf-16-le"))
        done = self._wine.run(["reg", "import", "Z:" + str(file).replace("/", "\\")])
        assert done.returncode == 0, done.stdout + done.stderr
        self._configured = True

    def registry_values(self, section: str) -> dict[str, str]:
        """The text values of a section as the system's own tool tells them."""
        done = self._wine.run(["reg", "query", rf"HKCU\Software\Marlok Software\Fenwold\{section}"])
        values = {}
        for line in done.stdout.splitlines():
            match = re.match(r"\s+(.+?)\s+REG_SZ\s+(.*)", line)
            if match:
                values[match[1]] = match[2].rstrip()
        return values

    # ---- running ----

    def start(self, *arguments: str, size_limit: int | None = None) -> Started:
        """Starts the program from a folder that is not its own. With `size_limit`, no file it writes can grow past so
        many bytes: writing further fails with an error, as on a full disk."""
        if not self._configured:
            # Another test's configuration may be there still.
            self.configure({})

        def limit() -> None:
            if size_limit is not None:
                signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
                resource.setrlimit(resource.RLIMIT_FSIZE, (size_limit, size_limit))

        number = len(self._started)
        # Files, not pipes: a program that this one starts inherits them, and a pipe would end with that one.
        output, errors = self._work / f"output{number}", self._work / f"errors{number}"
        with output.open("wb") as output_file, errors.open("wb") as errors_file:
            process = subprocess.Popen(
                self._wine.command(self.windows_folder + "\\" + PROGRAM, *arguments),
                env=self._wine.env,
                cwd=self._work,
                stdin=subprocess.DEVNULL,
                stdout=output_file,
                stderr=errors_file,
                preexec_fn=limit,
                restore_signals=False,
            )
        started = Started(process, output, errors, time.monotonic())
        self._started.append(started)
        return started

    def wait(self, started: Started, timeout: float = 30) -> Ended:
        """Waits for a started program. One that does not end fails the test, with the windows it shows."""
        try:
            code = started.process.wait(timeout)
        except subprocess.TimeoutExpired:
            windows = self.tool("windows").output.splitlines()
            raise AssertionError(f"did not end within {timeout} seconds; windows: {windows}") from None
        return Ended(
            code,
            started.output.read_text(encoding="utf-8", errors="replace"),
            started.errors.read_text(encoding="utf-8", errors="replace"),
            time.monotonic() - started.began,
        )

    def run(self, *arguments: str, timeout: float = 60, **options: int) -> Ended:
        return self.wait(self.start(*arguments, **options), timeout)

    def tool(self, *arguments: str, timeout: float = 30) -> Ended:
        began = time.monotonic()
        done = self._wine.run([str(self._tool), *arguments], timeout=timeout)
        return Ended(done.returncode, done.stdout, done.stderr, time.monotonic() - began)

    # ---- drives that come and go ----

    def plug(self, letter: str, folder: Path, kind: str = "fixed", device: str | None = None) -> None:
        """Makes the folder a drive, in place of what was there: another disk under its letter, or a second letter for
        a folder. Its label and serial number are what `label_volume` has written; with a block device, that one tells
        them and the name of its file system, while the files are the folder's."""
        done = self.tool("plug", letter, kind, str(folder), *([device] if device else []))
        assert done.code == 0, done.errors
        if letter not in self._plugged:
            self._plugged.append(letter)

    def unplug(self, letter: str) -> None:
        """Takes a drive away, as when a stick is pulled out."""
        self._plugged.remove(letter)
        done = self.tool("unplug", letter)
        (self._wine.prefix / "dosdevices" / f"{letter}::").unlink(missing_ok=True)
        assert done.code == 0, done.errors

    def unplug_all(self) -> None:
        for letter in list(self._plugged):
            self.unplug(letter)

    def volume(self, root: str) -> Volume:
        """What Windows programs are told about the volume with that root."""
        done = self.tool("volume", root)
        assert done.code == 0, done.errors
        file_system, serial, kind, label = done.output.rstrip("\n").split("\t")
        return Volume(file_system, int(serial), {2: "removable", 3: "fixed"}.get(int(kind), kind), _read_escapes(label))

    # ---- using the program as a person does ----

    def has_hands(self) -> bool:
        """Whether the test looked at the screen."""
        return self._hands is not None

    def hands(self) -> Hands:
        if self._hands is None:
            self._hands = Hands(self._wine.command(self._tool, "serve"), self._wine.env)
        return self._hands

    def window(self, title: str, limit: float = 15) -> Window:
        return Window(self.hands(), title, limit)

    def windows(self) -> list[str]:
        """The titles of all windows on the screen, the topmost first."""
        return self.hands().call("windows", limit=5)

    def places(self) -> list[Place]:
        """Where they are."""
        lines = self.hands().call("places", limit=5)
        return [Place(*(int(number) for number in line.split("\t")[:4])) for line in lines]

    def answer(self, title: str, text: str, button: str, limit: float = 15) -> Dialog:
        """Waits for a dialog of that title that shows that text, and clicks the button."""
        return self.window(title, limit).answer(text, button)

    @contextlib.contextmanager
    def held(self, windows_path: str) -> Iterator[None]:
        """While it lasts, another program keeps the file open for itself alone."""
        holder = subprocess.Popen(
            self._wine.command(self._tool, "hold", windows_path),
            env=self._wine.env,
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            encoding="utf-8",
        )
        try:
            assert holder.stdout is not None
            assert holder.stdout.readline().strip() == "held"
            yield
            holder.communicate(timeout=20)
            assert holder.returncode == 0
        finally:
            holder.kill()
            holder.wait()

    def attributes(self, windows_path: str, word: int | None = None) -> int:
        """The attribute word of a file as Windows programs see it, set to `word` first when there is one."""
        done = self.tool("attributes", windows_path, *([] if word is None else [str(word)]))
        assert done.code == 0, done.errors
        return int(done.output)

    def asked_of_browser(self) -> list[str]:
        """The addresses that programs of this machine have opened in the browser, in order, since it was made."""
        log = self._wine.prefix / BROWSER_LOG
        return log.read_text().replace('"', "").split() if log.exists() else []

    def running(self) -> dict[int, str]:
        """The programs of this test's program folder that run now, whoever started them: their command lines by process
        id. In a Wine process the command line begins with the Windows path of the program."""
        found = {}
        for folder in Path("/proc").glob("[0-9]*"):
            try:
                command = (folder / "cmdline").read_bytes()
                environment = (folder / "environ").read_bytes()
            except OSError:
                continue  # ended meanwhile, or somebody else's
            ours = f"WINEPREFIX={self._wine.prefix}".encode() in environment.split(b"\0")
            if ours and command.startswith(self.windows_folder.encode()):
                found[int(folder.name)] = command.replace(b"\0", b" ").decode(errors="replace").strip()
        return found

    def end_what_runs(self) -> list[str]:
        """Ends programs that a test left running and says which."""
        if self._hands is not None:
            self._hands.close()
            self._hands = None
        left = self.running()
        for process_id in left:
            with contextlib.suppress(ProcessLookupError):
                os.kill(process_id, signal.SIGKILL)
        for started in self._started:
            if started.process.poll() is None:
                started.process.kill()
            started.process.wait()
        return list(left.values())

    # ---- what a run leaves ----

    def log_lines(self, name: str = RUN_LOG) -> list[str]:
        """The lines of a text file beside the program; each is ended by a carriage return and line feed."""
        data = (self.folder / name).read_bytes()
        assert data.endswith(b"\r\n"), data[-80:]
        lines = data[:-2].split(b"\r\n")
        assert not any(b"\r" in line or b"\n" in line for line in lines)
        return [line.decode("utf-8") for line in lines]

    def copied(self) -> list[str]:
        """The saved copies that the run log names. Checks the log's form on the way."""
        lines = self.log_lines()
        match = HEADER.fullmatch(lines[0])
        assert match, lines[0]
        if match[1] == "0":
            assert len(lines) == 1, lines
            return []
        assert lines[1] == ""
        assert int(match[1]) == len(lines) - 2
        return lines[2:]

    def errors(self) -> list[str]:
        """The lines of the error log; none when there is no such file."""
        return self.log_lines(ERROR_LOG) if (self.folder / ERROR_LOG).exists() else []

    def listed(self, location_name: str) -> list[str]:
        """The originals that the list of a location names."""
        file = self.folder / (location_name.replace("\\", "/") + ".txt")
        return [] if file.read_bytes() == b"" else self.log_lines(str(file.relative_to(self.folder)))


def working_files_in(folder: Path) -> list[Path]:
    return sorted(folder.rglob(WORKING_FILES))


def without_working_files(tree: Tree) -> Tree:
    return {path: entry for path, entry in tree.items() if not Path(path).match(WORKING_FILES)}


def wait_until(condition: Callable[[], object], seconds: float = 20) -> bool:
    """Polls until the condition holds; False when it does not within that time."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if condition():
            return True
        time.sleep(0.005)
    return bool(condition())
