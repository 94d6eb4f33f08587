"""Makes the program's help, one HTML file, of the guide: help_page.py GUIDE PAGE.

The page holds its pictures and asks for nothing from elsewhere, so any browser shows it, without a connection too. A
heading that names a tab of the program in quotation marks is found under that name ("4. Run: "Options"" under
#options), others under their words without the number. Links of the guide to itself must lead somewhere, and pictures
must be there: the page is not made otherwise.
"""

from __future__ import annotations

import base64
import html
import re
import struct
import sys
from pathlib import Path

import markdown

STYLE = """
:root { color-scheme: light dark; --text: #1d2733; --back: #ffffff; --soft: #f1f4f8; --line: #cfd8e3; --link: #0b57a8; }
@media (prefers-color-scheme: dark) {
  :root { --text: #e3e8ee; --back: #14181d; --soft: #1f262e; --line: #3a4653; --link: #7db7f5; }
}
* { box-sizing: border-box; }
html { scroll-padding-top: 1rem; }
body { margin: 0; font: 1rem/1.55 "Segoe UI", system-ui, sans-serif; color: var(--text); background: var(--back); }
a { color: var(--link); }
nav { padding: 1rem 1.25rem; background: var(--soft); border-bottom: 1px solid var(--line); }
nav ul { margin: 0; padding-left: 1.1rem; }
nav > div > ul { padding-left: 0; list-style: none; }
nav li { margin: .2rem 0; }
nav > p { margin: 0 0 .5rem; font-weight: 600; }
main { padding: 0 1.25rem 3rem; max-width: 50rem; overflow-wrap: anywhere; }
h1 { font-size: 1.8rem; line-height: 1.2; }
h2 { font-size: 1.35rem; line-height: 1.25; margin-top: 2.2rem; padding-top: .6rem; border-top: 1px solid var(--line); }
img { max-width: 100%; height: auto; border: 1px solid var(--line); border-radius: 4px; }
code { font-family: Consolas, "DejaVu Sans Mono", monospace; font-size: .92em; background: var(--soft); padding: .1em .3em;
  border-radius: 3px; }
table { border-collapse: collapse; width: 100%; margin: 1rem 0; }
th, td { text-align: left; vertical-align: top; padding: .4rem .6rem; border: 1px solid var(--line); }
thead th { background: var(--soft); }
li { margin: .3rem 0; }
@media (min-width: 64rem) {
  body { display: grid; grid-template-columns: 18rem minmax(0, 1fr); }
  nav { position: sticky; top: 0; height: 100vh; overflow-y: auto; border-bottom: 0; border-right: 1px solid var(--line); }
  main { padding: 0 2.5rem 4rem; }
}
@media print {
  :root { --text: #000; --back: #fff; --soft: #fff; --line: #999; --link: #000; color-scheme: light; }
  body { display: block; font-size: 10.5pt; }
  nav { position: static; height: auto; border: 0; break-after: page; }
  main { max-width: none; padding: 0; }
  h2 { break-after: avoid; }
  img, tr { break-inside: avoid; }
  img { max-height: 9cm; width: auto; }
}
"""

PAGE = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; img-src data:; style-src 'unsafe-inline'">
<title>{title}</title>
<style>{style}</style>
</head>
<body>
<nav aria-label="Contents">
<p>Contents</p>
{contents}
</nav>
<main>
{body}
</main>
</body>
</html>
"""

_QUOTED = re.compile(r'["\u201c\u201d]([^"\u201c\u201d]+)["\u201c\u201d]')
_LINK = re.compile(r'href="([^"]*)"')
_IMAGE = re.compile(r'<img alt="([^"]*)" src="([^"]*)" ?/?>')
_ID = re.compile(r'\bid="([^"]*)"')
_PNG = b"\x89PNG\r\n\x1a\n"


class GuideError(Exception):
    """The guide cannot be made a page of; the message says why."""


def section_id(heading: str, separator: str = "-") -> str:
    """What a section is found under."""
    words = html.unescape(heading)
    quoted = _QUOTED.search(words)
    words = quoted[1] if quoted else re.sub(r"^\d+\.\s*", "", words)
    return re.sub(r"[^a-z0-9]+", separator, words.lower()).strip(separator)


def picture(alt: str, file: Path) -> str:
    """The element for a picture, with the picture in it and the room that it takes."""
    if not file.is_file():
        raise GuideError(f"there is no picture {file}")
    data = file.read_bytes()
    if not data.startswith(_PNG):
        raise GuideError(f"{file} is no PNG picture")
    if not alt:
        raise GuideError(f"{file} has no words for those who do not see it")
    width, height = struct.unpack_from(">II", data, 16)
    code = base64.b64encode(data).decode("ascii")
    return f'<img alt="{alt}" width="{width}" height="{height}" src="data:image/png;base64,{code}">'


def check_links(page: str) -> None:
    ids = _ID.findall(page)
    # The converter numbers them, and links would lead to the first.
    twice = {name.split("_")[0] for name in ids if "_" in name}
    if twice:
        raise GuideError(f"several sections are called {', '.join(sorted(twice))}")
    for target in _LINK.findall(page):
        if not target.startswith("#"):
            raise GuideError(f"{target} is not in the page")
        if target[1:] not in ids:
            raise GuideError(f"there is no section {target}")


def make_page(guide: Path) -> str:
    """The page as text. Raises GuideError."""
    text = guide.read_text(encoding="utf-8")
    converter = markdown.Markdown(
        extensions=["tables", "fenced_code", "sane_lists", "toc"],
        extension_configs={"toc": {"slugify": section_id, "toc_depth": "2-2"}},
        output_format="html",
    )
    body = converter.convert(text)
    title = re.search(r"<h1[^>]*>(.*?)</h1>", body)
    if title is None:
        raise GuideError(f"{guide} has no heading of its own")
    page = PAGE.format(title=title[1], style=STYLE, contents=converter.toc, body=body)
    check_links(page)
    page = _IMAGE.sub(lambda found: picture(found[1], guide.parent / found[2]), page)
    if page.count("<img") != page.count('src="data:'):
        raise GuideError("a picture is not in the page")
    return page


def main(arguments: list[str]) -> int:
    if len(arguments) != 2:
        print("usage: help_page.py GUIDE PAGE", file=sys.stderr)
        return 2
    try:
        page = make_page(Path(arguments[0]))
    except GuideError as fault:
        print(f"{arguments[0]}: {fault}", file=sys.stderr)
        return 1
    Path(arguments[1]).write_text(page, encoding="utf-8", newline="\n")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
