"""What stands on the screen, letter by letter and blank by blank: people, guides and scripts go by it."""

from __future__ import annotations

import pytest
from harness import Machine, ShownControl, Started, Window, wait_until, write

TITLE = "Marlok Backup Utility"
MESSAGE = "Marlok Info....."
REPLACEMENT = "Marlok Backup Utility File Replacement Program"
DAILY = r"E:\Daily"

TABS = ["Options", "Backup Folder", "Files To Backup", "Review Saved"]
# The check boxes wrap: their blanks break the lines where they are wanted.
BOXES = ["    Run In Background", "    Backup         All Files", "   Output       Message   To Screen"]
FRAME = "Marlok BackUp Utility Program"
LOCATIONS_HEADING = "                        List Of Backup Paths"
SOURCES_HEADING = "                 List Of Files To Be Backed Up"
NO_LOCATION = "         You Have Not Selected A Backup Location"
NO_SOURCE = "        You Have Not Selected Any Files To Backup"
DESCRIPTION = (
    "This program was written to make backing up my files easier and works very well for me. It gives you several "
    "options in how you want to do your backups and if scheduled properly you will never forget to backup your files. "
    "Like all my other programs this one is free and will not bug you to register or pay for more options. If you like "
    "the program and want to make a donation to help defray the cost of developing, maintaining and posting on the "
    "internet, click on the button below and thanks in advance.")  # fmt: skip


def captions(window: Window, kind: str) -> list[str]:
    return [control.text for control in window.controls() if control.kind == kind]


def buttons(window: Window) -> dict[str, bool]:
    """Buttons, check boxes and frames by their captions, and whether they can be used."""
    return {control.text: control.enabled for control in window.controls() if control.kind == "Button"}


def lists(window: Window) -> list[list[str]]:
    """The lines of all list boxes, from left to right and then down."""
    places = [control for control in window.controls() if control.kind == "ListBox"]
    names = {id(control): f"ListBox#{number}" for number, control in enumerate(places, 1)}
    in_order: list[ShownControl] = sorted(places, key=lambda control: (control.top, control.left))
    return [window.lines(names[id(control)]) for control in in_order]


@pytest.fixture
def configured(machine: Machine) -> Machine:
    for name in ("one.doc", "two.doc"):
        write(machine.d / "Data" / name, name)
    machine.configure({DAILY: [r"D:\Data"]})
    return machine


@pytest.fixture
def started(configured: Machine) -> Started:
    return configured.start()


def main_window(machine: Machine, text: str) -> Window:
    window = machine.window(f"{TITLE}|{text}", 20)
    window.controls()  # waits for it
    return machine.window(TITLE)


def close(machine: Machine, window: Window, started: Started) -> None:
    window.close()
    assert machine.wait(started).code == 0


def test_options_without_a_configuration(machine: Machine) -> None:
    started = machine.start()
    window = main_window(machine, "Add Folder To List")
    assert window.tabs() == TABS
    window.tab("Options")

    assert "Select Locations To Backup" in captions(window, "Static")
    assert lists(window) == [["", "", "", NO_LOCATION], ["", "", "", NO_SOURCE]]
    can_be_used = {"Donation": True, "About": True, "Close": True}
    assert buttons(window) == {"Select Backup": False, "Help": False, **dict.fromkeys(BOXES, False), **can_be_used}
    close(machine, window, started)


def test_options_without_a_source(machine: Machine) -> None:
    machine.configure({DAILY: []})
    started = machine.start()
    window = main_window(machine, "Delete Entry From List")
    window.tab("Options")

    assert lists(window) == [[LOCATIONS_HEADING, "", DAILY], ["", "", "", NO_SOURCE]]
    assert not buttons(window)["Select Backup"]
    assert FRAME not in buttons(window)
    close(machine, window, started)


def test_options_before_and_after_a_run_is_chosen(configured: Machine, started: Started) -> None:
    window = main_window(configured, "Select Locations To Backup")

    assert lists(window) == [[LOCATIONS_HEADING, "", DAILY], [SOURCES_HEADING, "", r"D:\Data"]]
    always = dict.fromkeys(["Help", "Donation", "About", "Close"], True)
    assert buttons(window) == {"Select Backup": True, **dict.fromkeys(BOXES, False), FRAME: True, **always}
    assert [window.state(box) for box in BOXES] == ["unchecked", "unchecked", "checked"]

    window.click("Select Backup")
    assert buttons(window) == {"Run Backup": False, **dict.fromkeys(BOXES, False), **always}
    window.select("List Of Backup Paths", DAILY)
    assert buttons(window) == {"Run Backup": True, **dict.fromkeys(BOXES, True), **always}
    close(configured, window, started)


def test_the_tab_of_the_locations(configured: Machine, started: Started) -> None:
    window = main_window(configured, "Select Locations To Backup")
    window.tab("Backup Folder")

    assert "Double Click On File To Remove From List" in captions(window, "Static")
    assert lists(window)[-1] == [DAILY]
    can_be_used = {"Help": True, "Close Program": True}
    assert buttons(window) == {"Add Folder To List": False, "Create Folder": False, **can_be_used}
    window.choose("ComboBox", "D:")
    window.select("Folder", 0)
    assert buttons(window) == {"Add Folder To List": True, "Create Folder": True, **can_be_used}
    window.open("Backup Locations", DAILY)
    asked = configured.answer(MESSAGE, "This Will Remove Selected Backup Path, Continue?", "Yes")
    assert asked.texts == ["This Will Remove Selected Backup Path, Continue?"]
    assert wait_until(lambda: lists(window)[-1] == ["              No Folder Selected"], 5)
    close(configured, window, started)


def test_the_tab_of_the_files(configured: Machine, started: Started) -> None:
    window = main_window(configured, "Select Locations To Backup")
    window.tab("Files To Backup")

    labels = {"Select Files For Each Backup Path", "Click on Backup Location To Show Files"}
    assert labels <= set(captions(window, "Static"))
    can_be_used = {"Help": True, "Close Program": True}
    assert buttons(window) == {"Add Folder To List": False, "Delete Entry From List": False, **can_be_used}
    window.choose("ComboBox", "D:")
    window.open("Folder", 1)
    assert wait_until(lambda: window.lines("Files In This Folder") == ["one.doc", "two.doc"], 5)
    window.select("Files In This Folder", 0)
    assert buttons(window) == {"Add File To List": True, "Delete Entry From List": False, **can_be_used}
    window.select("Folder", 0)
    assert buttons(window) == {"Add Folder To List": True, "Delete Entry From List": False, **can_be_used}
    window.select("Files To Be Backed Up", r"D:\Data")
    assert buttons(window) == {"Add Folder To List": True, "Delete Entry From List": True, **can_be_used}
    window.click("Delete Entry From List")
    question = "This Will Remove Selected File From Lower List, Continue?"
    assert configured.answer(MESSAGE, question, "Yes").texts == [question]
    question = "Do You Want To Delete The Saved File, or Only The List Entry?"
    asked = configured.answer(TITLE, question, "Only Entry")
    assert (asked.texts, asked.buttons) == ([question], ["Only Entry", "File Also", "Cancel"])
    assert wait_until(lambda: window.lines("Files To Be Backed Up") == ["               No Files Selected"], 5)
    close(configured, window, started)


def test_the_tab_of_the_saved_files_and_the_replacement(configured: Machine) -> None:
    assert configured.run("C").code == 0
    started = configured.start()
    window = main_window(configured, "Select Locations To Backup")
    window.tab("Review Saved")

    labels = ["Select A Backup Location To Search", "List of Saved Files", "Number of Files", "Time To Search"]
    assert captions(window, "Static") == labels
    can_be_used = {"Help": True, "Close Program": True, "Show Original Paths": True}
    assert buttons(window) == {"Show Saved Files": True, "Delete Entry": False, **can_be_used}
    window.click("Show Saved Files")
    listed = {"Replace Selected Files": False, "Delete Entry": False, **can_be_used}
    assert wait_until(lambda: buttons(window) == listed, 10)
    window.select("List of Saved Files", 0, 1)
    assert buttons(window) == {"Replace Selected Files": True, "Delete Entry": True, **can_be_used}
    window.click("Show Original Paths")
    assert wait_until(lambda: captions(window, "Static")[1] == "List of Original Path Log", 10)
    shown = {**can_be_used, "Show Original Paths": False}
    assert buttons(window) == {"Show Saved Files": True, "Delete Entry": False, **shown}

    window.click("Show Saved Files")
    assert wait_until(lambda: captions(window, "Static") == labels, 10)
    window.select("List of Saved Files", 0, 1)
    window.click("Replace Selected Files")
    question = "You Are About To Replace Selected Files"
    asked = configured.answer(MESSAGE, question, "OK")
    assert (asked.texts, asked.buttons) == ([question], ["OK", "Cancel"])
    done = configured.window(REPLACEMENT + "|File Replacement Completed", 30)
    assert {"2 Files Were Replaced", "File Replacement Completed"} <= set(captions(done, "Static"))
    assert buttons(done) == {"Close": True}
    done.click("Close")
    assert wait_until(lambda: configured.windows() == [TITLE], 10)
    close(configured, window, started)


def test_about(configured: Machine, started: Started) -> None:
    window = main_window(configured, "Select Locations To Backup")
    window.click("About")
    about = configured.window(TITLE + "|Version 4.0.0")

    assert {"Version 4.0.0", DESCRIPTION} <= set(captions(about, "Static"))
    assert buttons(about) == {"Make Donation": True, "Return": True}
    about.click("Return")
    assert wait_until(lambda: configured.windows() == [TITLE], 10)
    close(configured, main_window(configured, "Select Locations To Backup"), started)
