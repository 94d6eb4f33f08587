"""The set-up program and what it installs, seen from outside."""

from __future__ import annotations

import re
import shutil
import subprocess
from pathlib import Path

from harness import Machine, Started, wait_until
from wine_env import WineEnvironment

ENTRY = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Marlok Backup"
UNINSTALLER = "Uninstall.exe"

DONE = 0
NOT_WRITTEN = 2
RUNNING = 3
WRONG_WINDOWS = 4
WRONG_FOLDER = 5


class SetUp:
    """Installs and removes the program on a machine; `machine` runs the installed one from then on."""

    def __init__(self, wine: WineEnvironment, machine: Machine, program: Path) -> None:
        self._wine = wine
        self._machine = machine
        self._program = program
        self._profile = wine.desktop_folder().parent
        self.desktop = machine.desktop
        self.folder = self._profile / "AppData" / "Local" / "Programs" / "Marlok Backup"
        self.menu = self._profile / "AppData/Roaming/Microsoft/Windows/Start Menu/Programs/Marlok Backup"
        self.windows_folder = rf"C:\users\{self._profile.name}\AppData\Local\Programs\Marlok Backup"
        self._portable = (machine.folder, machine.windows_folder)

    # ---- running it ----

    def _command(self, *arguments: str) -> list[str]:
        # Folders go without quotation marks, blanks and all: as several words.
        return [str(self._program), *(word for argument in arguments for word in argument.split(" "))]

    def run(self, *arguments: str, timeout: float = 60) -> int:
        """Installs silently; the exit code."""
        return self._wine.run(self._command("/S", *arguments), timeout=timeout).returncode

    def begin(self, silent: bool = True) -> subprocess.Popen[bytes]:
        """Begins to install."""
        return subprocess.Popen(
            self._wine.command(*self._command(*["/S"] * silent)), env=self._wine.env, stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)  # fmt: skip

    def install(self, *arguments: str) -> None:
        """Installs silently into the usual folder; the machine runs the installed program from now on."""
        assert self.run(*arguments) == DONE
        assert (self.folder / UNINSTALLER).exists(), "the exit code was 0, and nothing is installed"
        self._machine.folder, self._machine.windows_folder = self.folder, self.windows_folder

    def remove(self, *arguments: str) -> int:
        """Runs the uninstaller where it is and waits for it; its exit code. So it cannot delete itself."""
        place = f"_?={self.windows_folder}".split(" ")
        return self._wine.run([str(self.folder / UNINSTALLER), "/S", *arguments, *place]).returncode

    def remove_as_windows_does(self) -> bool:
        """Runs the command that Windows has for it, which comes back at once; whether the folder went within time."""
        command = re.findall(r'"([^"]*)"|(\S+)', self.entry()["QuietUninstallString"])
        self._wine.run([quoted or bare for quoted, bare in command])
        return wait_until(lambda: not self.folder.exists(), 20)

    def portable(self) -> tuple[Path, str]:
        """Where a copy lies that was not installed."""
        return self._portable

    # ---- what there is ----

    def entry(self) -> dict[str, str]:
        """The values of the entry in the list of installed programs; none when there is no entry."""
        # By a file: what the tool prints has the few letters of a code page.
        file = self._profile / "entry.reg"
        file.unlink(missing_ok=True)
        self._wine.run(["reg", "export", ENTRY, "Z:" + str(file).replace("/", "\\"), "/y"])
        if not file.exists():
            return {}
        lines = file.read_text(encoding="utf-16").splitlines()
        found = [re.fullmatch(r'"(.+?)"=(?:"(.*)"|dword:(.*))', line) for line in lines]
        return {match[1]: re.sub(r"\\(.)", r"\1", match[2]) if match[3] is None else match[3] for match in found if match}

    def start_idle(self) -> Started:
        """Starts the installed program and waits for its window."""
        started = self._machine.start()
        self._machine.window("Marlok Backup Utility").tabs()
        return started

    def schedule(self, folder: str, name: str, program: str) -> None:
        """Makes a task of the user's in a folder of the Task Scheduler."""
        file = self._profile / "task.xml"
        file.write_text(
            '<?xml version="1.0" encoding="UTF-16"?>\n'
            '<Task version="1.2" xmlns="http://schemas.microsoft.com/windows/2004/02/mit/task">'
            f"<Actions><Exec><Command>{program}</Command></Exec></Actions></Task>",
            encoding="utf-16",
        )
        path = "Z:" + str(file).replace("/", "\\")
        done = self._wine.run(["schtasks", "/create", "/tn", rf"{folder}\{name}", "/xml", path, "/f"])
        assert done.returncode == 0, done.stdout + done.stderr

    def tasks(self) -> list[str]:
        """All tasks of the machine, and their folders, with the folders before them."""
        top = self._task_folder()
        return sorted(str(path.relative_to(top)) for path in top.rglob("*"))

    def _task_folder(self) -> Path:
        return self._wine.prefix / "drive_c" / "windows" / "system32" / "tasks"

    def clear(self) -> None:
        """Puts the machine back to where nothing is installed."""
        self._machine.end_what_runs()
        self._machine.folder, self._machine.windows_folder = self._portable
        for folder in (self.folder, self.menu, self._profile / "Elsewhere"):
            shutil.rmtree(folder, ignore_errors=True)
        for task in self.tasks():
            if "/" not in task:
                shutil.rmtree(self._task_folder() / task)
        for key in (ENTRY, r"HKCU\Software\Marlok Software"):
            self._wine.run(["reg", "delete", key, "/f"])
