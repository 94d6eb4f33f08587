"""A Wine machine of the build's own: a display, a prefix and a wineserver that live exactly as long as they are used.

As a module:

    with WineEnvironment() as wine:
        wine.map_drive("d", folder)
        wine.run(["program.exe", "argument"])

As a program:

    wine_env.py [--drive d=FOLDER]... PROGRAM [ARGUMENT]...

Every user gets a prefix of its own, cloned from a template that is made once (that is what takes the time), so two
runs at once do not meet. Whatever is started here ends here, on every way out: the X server by its process id (and
with its parent, should that be killed), the Wine processes through the wineserver of their own prefix.
"""

from __future__ import annotations

import ctypes
import fcntl
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
from pathlib import Path

REPO = Path(__file__).resolve().parents[2]

# Raised when the way the template is made changes, so that old ones are not used any more.
TEMPLATE_VERSION = 6

# A browser that writes the addresses it is given to this file of a machine, a line each, in quotation marks.
BROWSER_LOG = Path("drive_c", "asked.txt")
_BROWSER = r'C:\\windows\\system32\\cmd.exe /c echo \"%1\">>C:\\asked.txt'

_MAX_SLOTS = 100
_USUAL_DOTS_PER_INCH = 96
_PR_SET_PDEATHSIG = 1
_libc = ctypes.CDLL(None)


class WineError(RuntimeError):
    """The Wine machine could not be set up; the message says what to do."""


def _die_with_parent() -> None:
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGTERM)


def _lock(path: Path, wait: bool) -> int | None:
    """Takes the lock file; its descriptor, or None when another process holds it and `wait` is not set."""
    descriptor = os.open(path, os.O_RDWR | os.O_CREAT, 0o644)
    try:
        fcntl.flock(descriptor, fcntl.LOCK_EX | (0 if wait else fcntl.LOCK_NB))
    except OSError:
        os.close(descriptor)
        return None
    return descriptor


def _own_user_folders(prefix: Path) -> None:
    """Wine links the desktop and its neighbours to the home folder of whoever runs it; a test machine has its own."""
    for folder, names, _ in os.walk(prefix / "drive_c" / "users"):
        for name in names:
            path = Path(folder, name)
            if path.is_symlink():
                path.unlink()
                path.mkdir()


class _Display:
    """An X server on a free display number, with a screen of `size` ("1280x1024")."""

    def __init__(self, size: str) -> None:
        read_end, write_end = os.pipe()
        try:
            self._process = subprocess.Popen(
                ["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{size}x24", "-nolisten", "tcp", "-noreset"],
                pass_fds=[write_end],
                stdin=subprocess.DEVNULL,
                stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL,
                # A Ctrl-C is for us; Wine still needs its display while it is being shut down.
                start_new_session=True,
                preexec_fn=_die_with_parent,
            )
        except FileNotFoundError:
            os.close(read_end)
            raise WineError("Xvfb is missing: run scripts/setup") from None
        finally:
            os.close(write_end)
        with os.fdopen(read_end) as pipe:
            number = pipe.readline().strip()
        if not number:
            self.close()
            raise WineError("Xvfb did not start")
        self.name = ":" + number

    def close(self) -> None:
        self._process.terminate()
        try:
            self._process.wait(10)
        except subprocess.TimeoutExpired:
            self._process.kill()
            self._process.wait()


class WineEnvironment:
    """A running Wine machine. `prefix` is its folder, `env` the environment for everything that is to run in it."""

    def __init__(
        self, root: Path | None = None, keep: bool = False, screen: str = "1280x1024", dots_per_inch: int = _USUAL_DOTS_PER_INCH
    ) -> None:
        """`root` holds the template and the prefixes (build/wine, or MARLOK_WINE_ROOT). With `keep` the prefix
        stays behind for a look at it; the next run that gets it starts afresh all the same. `screen` is the size of the
        screen in pixels; programs show themselves at `dots_per_inch`, of which 96 is 100 %."""
        self._root = Path(root or os.environ.get("MARLOK_WINE_ROOT") or REPO / "build" / "wine").resolve()
        self._keep = keep
        self._screen = screen
        self._dots_per_inch = dots_per_inch
        self._slot_lock: int | None = None
        self._display: _Display | None = None
        self.prefix = Path()
        self.env: dict[str, str] = {}

    def __enter__(self) -> WineEnvironment:
        try:
            self._root.mkdir(parents=True, exist_ok=True)
            self._display = _Display(self._screen)
            self._take_slot()
            self._ensure_template()
            self._clone_template()
            self._set_resolution()
            # Stays up between programs: a program then starts in a tenth of a second.
            self._wineserver("-p")
        except BaseException:
            self.close()
            raise
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def close(self) -> None:
        """Ends what was started. May be called again."""
        if self._slot_lock is not None:
            self._stop_server(self.prefix)
            if not self._keep:
                shutil.rmtree(self.prefix, ignore_errors=True)
            os.close(self._slot_lock)
            self._slot_lock = None
        if self._display is not None:
            self._display.close()
            self._display = None

    def map_drive(self, letter: str, folder: Path | str) -> None:
        """Makes `folder` the drive `letter`, in place of what it was."""
        link = self.prefix / "dosdevices" / f"{letter.lower()}:"
        link.unlink(missing_ok=True)
        link.symlink_to(folder)

    def command(self, program: str | os.PathLike[str], *arguments: str) -> list[str]:
        """Command line that runs a Windows program in this machine (with `env`)."""
        return ["wine", os.fspath(program), *arguments]

    def run(self, command: list[str], timeout: float = 60) -> subprocess.CompletedProcess[str]:
        """Runs a Windows program and gives back its code and what it said. Ends it when the time is over."""
        # Files, not pipes: the first program brings up Wine's services, which inherit them, and a pipe would end with
        # those.
        with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as errors:
            done = subprocess.run(
                self.command(*command), env=self.env, stdin=subprocess.DEVNULL, stdout=output, stderr=errors,
                timeout=timeout, check=False)  # fmt: skip
            texts = []
            for file in (output, errors):
                file.seek(0)
                texts.append(file.read().decode("utf-8", "replace").replace("\r\n", "\n"))
        return subprocess.CompletedProcess(done.args, done.returncode, texts[0], texts[1])

    def desktop_folder(self) -> Path:
        """The desktop folder of the machine's only user."""
        desktops = [path for path in (self.prefix / "drive_c" / "users").glob("*/Desktop") if "Public" not in path.parts]
        if len(desktops) != 1:
            raise WineError(f"expected one user with a desktop, found {desktops}")
        return desktops[0]

    def _take_slot(self) -> None:
        for number in range(1, _MAX_SLOTS):
            lock = _lock(self._root / f"{number}.lock", wait=False)
            if lock is None:
                continue
            self._slot_lock = lock
            self.prefix = self._root / str(number)
            self.env = self._environment(self.prefix)
            return
        raise WineError(f"more than {_MAX_SLOTS} runs at once in {self._root}")

    def _environment(self, prefix: Path) -> dict[str, str]:
        env = dict(os.environ)
        # File names are UTF-8 whatever the locale of the caller: Wine takes the character set from here.
        for name in [name for name in env if name.startswith("LC_") or name in ("LANG", "LANGUAGE", "WINEARCH")]:
            del env[name]
        env["LC_ALL"] = "C.UTF-8"
        env["WINEPREFIX"] = str(prefix)
        env["WINEDEBUG"] = "-all"
        # No browser engine and no managed run time: they would be downloaded, and nothing here uses them. No menu
        # entries and no file associations in the home folder of whoever runs this.
        env["WINEDLLOVERRIDES"] = "mscoree,mshtml=;winemenubuilder.exe=d"
        # Set before the first process starts: the desktop keeps the display it was born with.
        assert self._display is not None
        env["DISPLAY"] = self._display.name
        return env

    def _ensure_template(self) -> None:
        template = self._root / "template"
        ready = template / "ready"
        version = subprocess.run(["wine", "--version"], env=self.env, capture_output=True, text=True, check=True).stdout
        wanted = f"{TEMPLATE_VERSION} {version.strip()}\n"
        lock = _lock(self._root / "template.lock", wait=True)
        assert lock is not None
        try:
            if ready.exists() and ready.read_text() == wanted:
                return
            self._stop_server(template)
            shutil.rmtree(template, ignore_errors=True)
            log = self._root / "template.log"
            with log.open("wb") as output:
                boot = subprocess.run(
                    ["wineboot", "--init"], env=self._environment(template), stdin=subprocess.DEVNULL, stdout=output,
                    stderr=output, timeout=300, check=False)  # fmt: skip
            self._wait_for_server(template)
            if boot.returncode != 0 or not (template / "user.reg").exists():
                raise WineError(f"wineboot failed ({boot.returncode}):\n{log.read_text(errors='replace')}")
            _own_user_folders(template)
            self._settle_registry(template)
            ready.write_text(wanted)
        finally:
            os.close(lock)

    def _settle_registry(self, template: Path) -> None:
        """What every machine has in its registry from the start, in one run of the registry's own tool."""
        file = template / "settle.reg"
        # The program is made for Windows 10; a prefix is an older one unless it is said. No window manager runs on the
        # display: waiting for one would take two seconds for each dialog, and the windows would have no frames. The
        # browser is one that writes down what it was asked for; Wine's own would start that of whoever runs this.
        lines = [
            "Windows Registry Editor Version 5.00", "",
            r"[HKEY_CURRENT_USER\Software\Wine]", '"Version"="win10"', "",
            r"[HKEY_CURRENT_USER\Software\Wine\X11 Driver]", '"Managed"="N"', "",
            r"[HKEY_CLASSES_ROOT\http\shell\open\command]", f'@="{_BROWSER}"', "",
        ]  # fmt: skip
        file.write_bytes(b"\xff\xfe" + "\r\n".join(lines).encode("utf-16-le"))
        command = ["wine", "reg", "import", "Z:" + str(file).replace("/", "\\")]
        subprocess.run(
            command, env=self._environment(template), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL, check=True, timeout=60)  # fmt: skip
        self._wait_for_server(template)
        file.unlink()

    def _clone_template(self) -> None:
        # A server that a killed run left behind in this slot (the lock is ours, so nobody uses it).
        self._stop_server(self.prefix)
        shutil.rmtree(self.prefix, ignore_errors=True)
        template = self._root / "template"
        system = Path("drive_c") / "windows"
        # The system files are never written: hard links do, and cost neither time nor room.
        skipped = {str(template / system), str(template / "ready")}
        shutil.copytree(
            template,
            self.prefix,
            symlinks=True,
            ignore=lambda folder, names: [name for name in names if os.path.join(folder, name) in skipped],
        )
        shutil.copytree(template / system, self.prefix / system, symlinks=True, copy_function=os.link)

    def _set_resolution(self) -> None:
        """In the registry's file: the first program that starts reads it, and the registry's own tool is one."""
        if self._dots_per_inch == _USUAL_DOTS_PER_INCH:
            return
        file = self.prefix / "user.reg"
        section = re.compile(r"^(\[Control Panel\\\\Desktop\][^\n]*\n)(.*?)(?=^\[|\Z)", re.MULTILINE | re.DOTALL)

        def with_resolution(found: re.Match[str]) -> str:
            others = re.sub(r'^"LogPixels"=.*\n', "", found[2].rstrip("\n") + "\n", flags=re.MULTILINE)
            return f'{found[1]}{others}"LogPixels"=dword:{self._dots_per_inch:08x}\n\n'

        text, count = section.subn(with_resolution, file.read_text(encoding="utf-8"))
        if count != 1:
            raise WineError(f"{file} has {count} sections for the desktop")
        file.write_text(text, encoding="utf-8")

    def _wineserver(self, *arguments: str) -> None:
        subprocess.run(["wineserver", *arguments], env=self.env, stdin=subprocess.DEVNULL, check=True, timeout=60)

    def _wait_for_server(self, prefix: Path) -> None:
        subprocess.run(
            ["wineserver", "-w"], env=self._environment(prefix), stdin=subprocess.DEVNULL, capture_output=True, timeout=120)

    def _stop_server(self, prefix: Path) -> None:
        """Ends every Wine process of one prefix and waits for it; nothing happens when there is none."""
        if not prefix.is_dir():
            return
        env = self._environment(prefix)
        subprocess.run(["wineserver", "-k"], env=env, stdin=subprocess.DEVNULL, capture_output=True, timeout=60)
        try:
            self._wait_for_server(prefix)
        except subprocess.TimeoutExpired:
            subprocess.run(["wineserver", "-k9"], env=env, stdin=subprocess.DEVNULL, capture_output=True, timeout=60)


def end_cleanly_on_signals() -> None:
    """Turns the signals that end a process into an exit, so that `with` blocks and `finally` are passed through."""

    def leave(number: int, _: object) -> None:
        print(f"ended by {signal.Signals(number).name}", file=sys.stderr, flush=True)
        raise SystemExit(128 + number)

    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, leave)


def _main(arguments: list[str]) -> int:
    drives = []
    while arguments and arguments[0].startswith("--"):
        option = arguments.pop(0)
        if option == "--":
            break
        if option != "--drive" or not arguments or arguments[0][1:2] != "=":
            print("usage: [--drive d=FOLDER]... PROGRAM [ARGUMENT]...", file=sys.stderr)
            return 2
        letter, folder = arguments.pop(0).split("=", 1)
        drives.append((letter, Path(folder).resolve()))
    if not arguments:
        print("usage: [--drive d=FOLDER]... PROGRAM [ARGUMENT]...", file=sys.stderr)
        return 2
    end_cleanly_on_signals()
    try:
        with WineEnvironment() as wine:
            for letter, folder in drives:
                wine.map_drive(letter, folder)
            return subprocess.run(wine.command(*arguments), env=wine.env).returncode
    except WineError as failure:
        print(f"wine: {failure}", file=sys.stderr)
        return 1
    except KeyboardInterrupt:
        return 130


if __name__ == "__main__":
    sys.exit(_main(sys.argv[1:]))
