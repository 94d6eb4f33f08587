"""The tests' own hands: what they do on the screen is what a person does, and what they see is what there is."""

from __future__ import annotations

import os
import signal
import threading
import time
from collections.abc import Iterator

import pytest
from harness import Machine, ToolFailed, Window, wait_until, write

TITLE = "Marlok Backup Utility"
MESSAGE = "Marlok Info....."
LOCATIONS = {r"E:\Backups\Daily": [r"D:\Data"], r"E:\Weekly": [r"D:\Data", r"D:\Photos", r"D:\Mail", r"D:\More"]}


@pytest.fixture
def window(machine: Machine) -> Iterator[Window]:
    for folder in ("Data", "Photos"):
        write(machine.d / folder / "a.doc", "a")
    machine.configure(LOCATIONS)
    started = machine.start()
    window = machine.window(TITLE)
    yield window
    window.close()
    assert machine.wait(started).code == 0


def test_it_sees_the_controls(machine: Machine, window: Window) -> None:
    controls = {control.text: control for control in window.controls()}

    listed, button = controls["List Of Backup Paths"], controls["Close"]
    assert (listed.kind, button.kind) == ("ListBox", "Button")
    assert 0 < listed.left < listed.left + listed.width < button.left
    assert button.enabled
    assert "Backup All Files" in window.texts()
    assert window.state("Output Message To Screen") == "checked"
    assert not window.enabled("Output Message To Screen")
    assert window.tabs() == ["Options", "Backup Folder", "Files To Backup", "Review Saved"]
    assert window.front_tab() == "Options"
    assert machine.windows() == [TITLE]


def test_it_uses_tabs_lists_and_combo_boxes(window: Window) -> None:
    window.tab("Backup Folder")
    assert window.front_tab() == "Backup Folder"
    assert window.lines("Backup Locations") == list(LOCATIONS)
    window.choose("ComboBox", "d:")
    assert [line[:2] for line in window.selected("ComboBox")] == ["D:"]
    assert wait_until(lambda: [line.strip() for line in window.lines("Folder")] == ["D:\\", "Data", "Photos"], 5)
    window.open("Folder", 2)
    assert wait_until(lambda: [line.strip() for line in window.lines("Folder")] == ["D:\\", "Photos"], 5)

    window.key("Ctrl+Tab")
    assert window.front_tab() == "Files To Backup"
    window.select("Backup Locations", r"E:\Weekly")
    assert window.selected("Backup Locations") == [r"E:\Weekly"]
    sources = LOCATIONS[r"E:\Weekly"]
    assert wait_until(lambda: window.lines("Files To Be Backed Up") == sources, 5)
    window.select("Files To Be Backed Up", 3, 0, 2)
    assert window.selected("Files To Be Backed Up") == [sources[0], *sources[2:]]
    window.select("Files To Be Backed Up", 1)
    assert window.selected("Files To Be Backed Up") == [sources[1]]


def test_it_answers_dialogs_and_types(machine: Machine, window: Window) -> None:
    window.tab("Backup Folder")
    window.choose("ComboBox", "d:")
    window.open("Folder", 1)
    window.click("Create Folder")

    question = machine.answer(MESSAGE, "Is This Correct?", "Yes")
    assert question.buttons == ["Yes", "No"]
    assert r"D:\Data" in question.texts[0]
    box = machine.window(MESSAGE + "|Enter Name Of Folder")
    box.type("Neu & schön 日本")
    assert "Neu & schön 日本" in [control.text for control in box.controls()]
    # What a person cannot reach is not reached.
    with pytest.raises(ToolFailed, match="another one has to be answered first"):
        machine.window(TITLE, 0.2).click("Help")
    box.click("OK")

    assert wait_until(lambda: (machine.d / "Data" / "Neu & schön 日本").is_dir(), 5)
    assert wait_until(lambda: "Neu & schön 日本" in [line.strip() for line in window.lines("Folder")], 5)


def test_it_checks_boxes(window: Window) -> None:
    window.click("Select Backup")
    window.select("List Of Backup Paths", list(LOCATIONS)[0])

    assert window.check("Backup All Files") == "checked"
    assert window.state("Backup All Files") == "checked"
    assert window.check("Backup All Files") == "unchecked"


def test_it_sees_a_window_that_does_not_paint(machine: Machine, window: Window) -> None:
    smooth = window.paint(0.5)
    assert smooth.painted >= 2

    [process_id] = machine.running()
    os.kill(process_id, signal.SIGSTOP)
    wake = threading.Timer(0.6, os.kill, (process_id, signal.SIGCONT))
    wake.start()
    began = time.monotonic()
    frozen = window.paint(1.5)
    wake.join()

    assert time.monotonic() - began >= 1.5
    assert frozen.longest >= 0.4
    assert frozen.painted >= 1


def test_what_is_not_there_is_told(machine: Machine, window: Window) -> None:
    assert window.front_tab() == "Options"
    quick = machine.window(TITLE, 0.1)
    with pytest.raises(ToolFailed, match=r"no tab Nowhere; there are \[Options\] \[Backup Folder\]"):
        quick.tab("Nowhere")
    with pytest.raises(ToolFailed, match="no control Nothing in the window"):
        quick.lines("Nothing")
    with pytest.raises(ToolFailed, match="no line 7 in a list of"):
        quick.select("List Of Backup Paths", 7)
    with pytest.raises(ToolFailed, match="the control is disabled"):
        quick.check("Output Message To Screen")
