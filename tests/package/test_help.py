"""The help page: that it is whole, and that the program finds its way in it."""

from __future__ import annotations

import base64
import re
from html.parser import HTMLParser
from pathlib import Path

import browser
import help_page
import pytest
from harness import REPO

GUIDE = REPO / "docs" / "guide.md"
# Bytes. The pictures are what takes room; a page that grows past this has one that is too large.
LARGEST = 600_000
SECTIONS = [
    "getting-it", "where-the-program-may-live", "every-evening-by-itself", "names-with-a-space",
    "what-is-not-saved-and-what-to-do", "my-disk-is-dead-my-computer-is-gone", "what-close-does", "exit-codes",
    "a-file-is-in-use", "the-drive-letter-changed", "moving-to-another-computer", "removing-the-program",
]  # fmt: skip


class Page(HTMLParser):
    """What a page holds."""

    def __init__(self, text: str) -> None:
        super().__init__()
        self.ids: list[str] = []
        self.links: list[str] = []
        self.contents: list[str] = []
        self.pictures: list[dict[str, str]] = []
        self.tags: set[str] = set()
        self._open: list[str] = []
        self.feed(text)
        assert self._open == [], f"not closed: {self._open}"

    def handle_starttag(self, tag: str, attributes: list[tuple[str, str | None]]) -> None:
        values = {name: value or "" for name, value in attributes}
        self.tags.add(tag)
        if "id" in values:
            self.ids.append(values["id"])
        if tag == "a":
            (self.contents if "nav" in self._open else self.links).append(values["href"])
        if tag == "img":
            self.pictures.append(values)
        if tag not in ("meta", "img", "br", "hr"):
            self._open.append(tag)

    def handle_endtag(self, tag: str) -> None:
        assert self._open.pop() == tag


@pytest.fixture(scope="module")
def text() -> str:
    return help_page.make_page(GUIDE)


@pytest.fixture(scope="module")
def page(text: str) -> Page:
    return Page(text)


def test_the_page_that_ships_is_the_guide(text: str, shipped: Path) -> None:
    assert (shipped / "Help.html").read_text(encoding="utf-8") == text
    assert len(text.encode()) < LARGEST


def test_every_section_is_in_the_contents_and_every_link_leads_somewhere(page: Page, text: str) -> None:
    headings = re.findall(r'<h2 id="([^"]*)">', text)
    assert page.contents == ["#" + heading for heading in headings]
    assert len(set(page.ids)) == len(page.ids)
    assert page.links, "the guide refers to itself"
    assert all(link.startswith("#") and link[1:] in page.ids for link in page.links)
    assert set(SECTIONS) <= set(headings)


def test_the_sections_that_the_program_asks_for_are_there(page: Page) -> None:
    header = (REPO / "ui" / "Help.h").read_text(encoding="utf-8")
    asked = re.findall(r'inline constexpr const char\* \w+ = "([^"]+)";', header)
    assert len(asked) >= 4
    assert set(asked) <= set(page.ids)


def test_the_pictures_are_in_the_page(page: Page) -> None:
    files = re.findall(r"!\[[^]]+\]\(([^)]+)\)", GUIDE.read_text(encoding="utf-8"))
    found = [base64.b64decode(picture["src"].removeprefix("data:image/png;base64,")) for picture in page.pictures]
    assert found == [(GUIDE.parent / file).read_bytes() for file in files]
    assert all(picture["alt"] for picture in page.pictures)


def test_the_page_needs_nothing_from_elsewhere(text: str, page: Page) -> None:
    assert page.tags.isdisjoint({"script", "link", "iframe", "object", "video", "audio", "base"})
    assert not re.search(r"url\(|@import|https?://|file:", text.lower())


@pytest.mark.parametrize(
    ("guide", "fault"),
    [
        ("# A\n\n[x](#nowhere)\n", "no section #nowhere"),
        ("# A\n\n[x](other.md)\n", "other.md is not in the page"),
        ("# A\n\n![x](absent.png)\n", "no picture"),
        ("# A\n\n![](picture.png)\n", "no words"),
        ("# A\n\n![x](guide.md)\n", "no PNG"),
        ('# A\n\n## 1. "One"\n\n## 2. One\n', "several sections"),
        ("## A\n", "no heading"),
    ],
)
def test_a_guide_with_a_fault_makes_no_page(tmp_path: Path, guide: str, fault: str) -> None:
    (tmp_path / "guide.md").write_text(guide, encoding="utf-8")
    (tmp_path / "picture.png").write_bytes((GUIDE.parent / "pictures" / "replacing-100.png").read_bytes())
    with pytest.raises(help_page.GuideError, match=fault):
        help_page.make_page(tmp_path / "guide.md")


@pytest.mark.parametrize("width", [360, 800, 1400])
@pytest.mark.parametrize("dark", [False, True], ids=["light", "dark"])
def test_a_browser_shows_it_at_any_width(page: Page, shipped: Path, tmp_path: Path, width: int, dark: bool) -> None:
    if browser.program() is None:
        pytest.skip("not available here: a browser (Debian's chromium)")
    seen = browser.look_at(shipped / "Help.html", tmp_path, width, dark)
    assert seen["width"] <= seen["room"] == width, "wider than the window"
    assert seen["pictures"] == len(page.pictures)
    assert seen["missing"] == []
    assert seen["astray"] == []
    assert seen["dark"] is dark
    assert seen["contrast"] >= 7, "text on its background"
    assert seen["hidden"] == [], "a heading that the contents lead to is not at the top when it is asked for"
