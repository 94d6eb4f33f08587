"""Installing, upgrading and removing the program with the set-up program."""

from __future__ import annotations

import re
import subprocess
from pathlib import Path

from harness import ERROR_LOG, PROGRAM, REPO, RUN_LOG, Machine, read_link, tree_of, wait_until, write
from setup_program import DONE, NOT_WRITTEN, RUNNING, UNINSTALLER, WRONG_FOLDER, WRONG_WINDOWS, SetUp

LOCATION = r"E:\Backups\Daily"
TITLE = "Marlok Backup Utility"
SETUP_TITLE = "Marlok Backup Utility Setup "  # the blank is NSIS's
LIST = Path("Backups", "Daily.txt")


def contents(folder: Path) -> dict[str, bytes]:
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def back_up(machine: Machine) -> None:
    """Backs up two files with the installed program, and checks that it did."""
    write(machine.d / "Data" / "a.doc", "one")
    write(machine.d / "Data" / "b.doc", "two")
    machine.configure({LOCATION: [r"D:\Data"]})
    ended = machine.run("C")
    assert (ended.code, machine.errors()) == (0, [])
    assert tree_of(machine.e / "Backups" / "Daily" / "Data") == tree_of(machine.d / "Data")


# ---- installing ----


def test_a_silent_installation_brings_what_ships_and_nothing_else(setup: SetUp, shipped: Path, version: str) -> None:
    setup.install()
    installed = contents(setup.folder)
    assert installed.pop(UNINSTALLER)[:2] == b"MZ"
    assert installed == contents(shipped)
    links = {path.name: read_link(path).target for path in setup.menu.iterdir()}
    assert links == {
        "Marlok Backup.lnk": setup.windows_folder + "\\" + PROGRAM,
        "Marlok Backup Help.lnk": setup.windows_folder + r"\Help.html",
    }
    assert list(setup.desktop.iterdir()) == [], "an icon on the desktop is for those who ask for it"
    entry = setup.entry()
    kilobytes = int(entry.pop("EstimatedSize"), 16)
    assert abs(kilobytes * 1024 - sum(map(len, contents(shipped).values()))) <= 1024
    assert entry == {
        "DisplayName": "Marlok Backup Utility",
        "DisplayVersion": version,
        "DisplayIcon": setup.windows_folder + rf"\{PROGRAM},0",
        "Publisher": "Marlok",
        "InstallLocation": setup.windows_folder,
        "UninstallString": rf'"{setup.windows_folder}\{UNINSTALLER}"',
        "QuietUninstallString": rf'"{setup.windows_folder}\{UNINSTALLER}" /S',
        "NoModify": "00000001",
        "NoRepair": "00000001",
    }


def test_the_installed_program_backs_up(setup: SetUp, machine: Machine) -> None:
    setup.install()
    back_up(machine)
    assert (setup.folder / RUN_LOG).exists()
    assert machine.listed(r"Backups\Daily") == [r"D:\Data\a.doc", r"D:\Data\b.doc"]


def test_a_folder_with_any_name_and_an_icon_can_be_asked_for(setup: SetUp, machine: Machine) -> None:
    assert setup.run("/DESKTOPICON", r"/D=D:\Grüße an R&D\Ωμέγα 日本") == DONE
    assert (machine.d / "Grüße an R&D" / "Ωμέγα 日本" / PROGRAM).exists()
    assert not setup.folder.exists()
    assert setup.entry()["InstallLocation"] == r"D:\Grüße an R&D\Ωμέγα 日本"
    # In a link the path has the letters of a code page; the shell's own list beside it has all.
    target = read_link(setup.desktop / "Marlok Backup.lnk").target
    assert target.startswith("D:\\Grüße an R&D\\") and target.endswith("\\" + PROGRAM), target
    # The next version goes where this one is.
    (machine.d / "Grüße an R&D" / "Ωμέγα 日本" / PROGRAM).write_bytes(b"an earlier version")
    assert setup.run() == DONE
    assert (machine.d / "Grüße an R&D" / "Ωμέγα 日本" / PROGRAM).stat().st_size > 100_000
    assert not setup.folder.exists()


def test_nothing_is_installed_where_the_user_cannot_write(setup: SetUp, wine, machine: Machine) -> None:
    write(machine.d / "file", "a file, no folder")
    for folder in (r"C:\Program Files\Marlok", r"C:\windows\Marlok", r"Q:\Marlok", r"D:\file\Marlok"):
        assert setup.run(f"/D={folder}") == WRONG_FOLDER, folder
        assert setup.entry() == {}, folder
    for place in ("Program Files", "windows"):
        assert not (wine.prefix / "drive_c" / place / "Marlok").exists()
    assert (machine.d / "file").read_text() == "a file, no folder"
    assert not setup.folder.exists()


def test_files_of_others_are_not_replaced(setup: SetUp, machine: Machine) -> None:
    for number, name in enumerate(("LICENSE", "Uninstall.exe", "Restart.exe", "help.HTML")):
        folder = machine.d / f"Project{number}"
        write(folder / name, "none of the program's")
        before = tree_of(folder)
        assert setup.run(rf"/D=D:\Project{number}") == WRONG_FOLDER, name
        assert tree_of(folder) == before
    # What the program leaves behind when it is removed is no such file, nor is any other.
    write(machine.d / "Project" / "Backup Report.txt", "of an earlier installation")
    write(machine.d / "Project" / "main.c", "none of the program's")
    assert setup.run(r"/D=D:\Project") == DONE
    assert (machine.d / "Project" / "main.c").read_text() == "none of the program's"


def test_a_person_installs_with_three_clicks(setup: SetUp, machine: Machine) -> None:
    window = machine.window(SETUP_TITLE)
    running = setup.begin(silent=False)
    window.click("Next >")
    window.click("Install")
    window.click("Finish")  # "Start Marlok Backup Utility" is marked
    assert running.wait(20) == DONE
    machine.folder, machine.windows_folder = setup.folder, setup.windows_folder
    program = machine.window(TITLE)
    assert program.tabs()
    # The next one asks for the program's end, and takes no for an answer.
    running = setup.begin(silent=False)
    assert "is running" in " ".join(machine.answer(SETUP_TITLE, "", "Cancel").texts)
    assert running.wait(20) == RUNNING
    program.close()
    assert wait_until(lambda: not machine.running(), 15)


def test_an_older_windows_is_refused(setup: SetUp, wine) -> None:
    key = ["HKCU\\Software\\Wine", "/v", "Version", "/d"]
    wine.run(["reg", "add", *key, "win7", "/f"])
    try:
        assert setup.run() == WRONG_WINDOWS
    finally:
        wine.run(["reg", "add", *key, "win10", "/f"])
    assert not setup.folder.exists()


# ---- upgrading ----


def make_earlier(setup: SetUp) -> None:
    """Makes what is installed an earlier version of itself."""
    for name in (PROGRAM, "Restart.sec", "Help.html"):
        (setup.folder / name).write_bytes(b"an earlier version")


def test_an_upgrade_keeps_logs_lists_and_settings(setup: SetUp, machine: Machine, shipped: Path) -> None:
    setup.install()
    back_up(machine)
    write(setup.folder / ERROR_LOG, "D:\\x: missing\r\n")
    before = {name: data for name, data in contents(setup.folder).items() if name.endswith(".txt")}
    assert {RUN_LOG, str(LIST), "Backup History.txt", "Backup Report.txt"} < set(before)
    make_earlier(setup)
    write(setup.folder / "Restart.exe", "an earlier copy of Restart.sec")
    setup.install()
    after = contents(setup.folder)
    assert {name: data for name, data in after.items() if name.endswith(".txt")} == before
    assert {name: data for name, data in after.items() if name not in before and name != UNINSTALLER} == contents(shipped)
    assert machine.registry_values("Target") == {"TargetPath2": LOCATION}
    assert machine.registry_values(r"Backups\Daily") == {"SourcePath2": r"D:\Data"}


def test_an_upgrade_waits_for_a_program_that_runs(setup: SetUp, machine: Machine, shipped: Path) -> None:
    setup.install()
    program = setup.start_idle()
    (setup.folder / "Help.html").write_bytes(b"an earlier version")
    before = tree_of(setup.folder)
    assert setup.run("/WAIT=1") == RUNNING
    assert tree_of(setup.folder) == before
    # Left to itself it waits for longer than that, and goes on when the program has ended.
    waiting = setup.begin()
    try:
        waiting.wait(4)
        raise AssertionError(f"did not wait: {waiting.returncode}")
    except subprocess.TimeoutExpired:
        pass
    assert tree_of(setup.folder) == before
    machine.window("Marlok Backup Utility").close()
    assert machine.wait(program).code == 0
    assert waiting.wait(20) == DONE
    assert (setup.folder / "Help.html").read_bytes() == (shipped / "Help.html").read_bytes()


def test_an_upgrade_that_cannot_be_finished_leaves_the_earlier_program(setup: SetUp) -> None:
    setup.install()
    make_earlier(setup)
    version = setup.entry()
    (setup.folder / "LICENSE").unlink()
    (setup.folder / "LICENSE").mkdir()
    assert setup.run() == NOT_WRITTEN
    assert (setup.folder / PROGRAM).read_bytes() == b"an earlier version"
    assert setup.entry() == version
    assert not list(setup.folder.glob("~*")), "what was unpacked is still there"


# ---- removing ----


def configured(setup: SetUp, machine: Machine) -> None:
    """Installed and used, with files that are not the program's beside it, and tasks."""
    setup.install()
    back_up(machine)
    write(setup.folder / "user.dat", "none of the program's")
    write(setup.folder / "Notes.txt", "none of the program's either")
    write(setup.folder / "Restart.exe", "a copy of Restart.sec")
    setup.schedule("Marlok Backup", "Every day", setup.windows_folder + "\\" + PROGRAM)
    setup.schedule("Marlok Backup", "At log-on & later", setup.windows_folder + "\\" + PROGRAM)
    setup.schedule("Others", "Marlok Backup", r"C:\other.exe")


def test_removing_takes_what_was_installed_and_leaves_the_rest(setup: SetUp, machine: Machine, shipped: Path) -> None:
    configured(setup, machine)
    saved = tree_of(machine.e)
    before = contents(setup.folder)
    assert setup.remove() == DONE
    gone = {path.name for path in shipped.iterdir()} | {"Restart.exe", UNINSTALLER}
    left = {name: data for name, data in contents(setup.folder).items() if name != UNINSTALLER}
    assert left == {name: data for name, data in before.items() if name not in gone}
    assert setup.entry() == {}
    assert not setup.menu.exists()
    assert machine.registry_values("Target") == {"TargetPath2": LOCATION}
    assert (setup.desktop / "Backup Log File.lnk").exists()
    assert tree_of(machine.e) == saved
    assert setup.tasks() == ["Others", "Others/Marlok Backup"]


def test_removing_with_data_takes_logs_lists_and_settings_too(setup: SetUp, machine: Machine, wine) -> None:
    configured(setup, machine)
    machine.configure({LOCATION: [r"D:\Data"], r"E:\Weekly": [r"D:\Data"]})
    assert machine.run("C").code == 0
    saved = tree_of(machine.e)
    elsewhere = r"HKCU\Software\Marlok Software\Another"
    wine.run(["reg", "add", elsewhere, "/v", "Kept", "/d", "yes", "/f"])
    assert setup.remove("/REMOVEDATA") == DONE
    left = {name: data for name, data in contents(setup.folder).items() if name != UNINSTALLER}
    assert left == {"user.dat": b"none of the program's", "Notes.txt": b"none of the program's either"}
    assert not (setup.folder / "Backups").exists()
    assert list(setup.desktop.iterdir()) == []
    assert wine.run(["reg", "query", r"HKCU\Software\Marlok Software\Fenwold"]).returncode != 0
    assert "yes" in wine.run(["reg", "query", elsewhere]).stdout
    assert tree_of(machine.e) == saved


def test_removing_with_data_knows_every_text_file_of_the_program() -> None:
    names = re.findall(r'"([^"]+\.txt)"', (REPO / "paths" / "ProgramFiles.h").read_text(encoding="utf-8"))
    assert len(names) >= 7
    script = (REPO / "packaging" / "setup.nsi").read_text(encoding="utf-8")
    data = script.split('Section /o "un.Logs, lists and settings"')[1].split("SectionEnd")[0]
    assert [name for name in names if f'Delete "$INSTDIR\\{name}"' not in data] == []


def test_removing_with_data_leaves_the_links_of_another_copy(setup: SetUp, machine: Machine) -> None:
    setup.install()
    installed = machine.folder, machine.windows_folder
    machine.folder, machine.windows_folder = setup.portable()
    back_up(machine)
    machine.folder, machine.windows_folder = installed
    assert setup.remove("/REMOVEDATA") == DONE
    assert read_link(setup.desktop / "Backup Log File.lnk").target.startswith("P:")


def test_the_command_that_windows_has_removes_everything(setup: SetUp) -> None:
    setup.install("/DESKTOPICON")
    assert (setup.desktop / "Marlok Backup.lnk").exists()
    assert setup.remove_as_windows_does()
    assert wait_until(lambda: setup.entry() == {}, 10)
    assert not setup.menu.exists()
    assert list(setup.desktop.iterdir()) == []


def test_nothing_is_removed_while_the_program_runs(setup: SetUp, machine: Machine) -> None:
    setup.install()
    program = setup.start_idle()
    before = tree_of(setup.folder)
    assert setup.remove("/REMOVEDATA", "/WAIT=1") == RUNNING
    assert tree_of(setup.folder) == before
    assert setup.entry()
    machine.window("Marlok Backup Utility").close()
    assert machine.wait(program).code == 0
