"""A real browser, without a screen, that says how it shows a page."""

from __future__ import annotations

import html
import json
import re
import shutil
import subprocess
from pathlib import Path

# What the page itself measures once it is laid out. Contrast is that of WCAG 2.
SCRIPT = """
<script>
addEventListener("load", () => {
  const light = colour => {
    const parts = colour.match(/[0-9.]+/g).slice(0, 3).map(part => part / 255)
      .map(part => part <= 0.03928 ? part / 12.92 : Math.pow((part + 0.055) / 1.055, 2.4));
    return 0.2126 * parts[0] + 0.7152 * parts[1] + 0.0722 * parts[2];
  };
  const style = getComputedStyle(document.body);
  const [low, high] = [light(style.color), light(style.backgroundColor)].sort((a, b) => a - b);
  const pictures = [...document.images];
  const links = [...document.querySelectorAll("a")];
  const edge = document.documentElement.clientWidth;
  const hidden = [];
  for (const link of document.querySelectorAll("nav a")) {
    const target = document.querySelector(link.getAttribute("href"));
    target.scrollIntoView();
    const top = target.getBoundingClientRect().top;
    const end = Math.ceil(scrollY + innerHeight) >= document.documentElement.scrollHeight;
    if (top < 0 || (top > 40 && !end)) hidden.push(link.getAttribute("href"));
  }
  const wide = [...document.querySelectorAll("main *, nav *")]
    .filter(element => element.getBoundingClientRect().right > edge + 1).map(element => element.tagName);
  const seen = {
    width: document.documentElement.scrollWidth, room: innerWidth, pictures: pictures.length,
    missing: pictures.filter(picture => !picture.complete || picture.naturalWidth === 0).map(picture => picture.alt),
    astray: links.filter(link => !document.querySelector(link.getAttribute("href"))).map(link => link.href).concat(wide),
    dark: matchMedia("(prefers-color-scheme: dark)").matches, contrast: (high + 0.05) / (low + 0.05), hidden,
  };
  parent.postMessage(JSON.stringify(seen), "*");
});
</script>
"""
# The page round it: a browser's window cannot be as narrow as a telephone's, but a frame can.
FRAME = """<!DOCTYPE html><body style="margin: 0"><pre id="seen"></pre>
<script>addEventListener("message", event => document.getElementById("seen").textContent = event.data);</script>
<iframe src="page.html" style="width: WIDTHpx; height: 900px; border: 0"></iframe>
"""


def program() -> str | None:
    """The browser; None when there is none."""
    return shutil.which("chromium")


def look_at(page: Path, work: Path, width: int, dark: bool) -> dict[str, object]:
    """How the page is shown in a window of that width."""
    # The page forbids scripts; this copy has one that measures.
    text = page.read_text(encoding="utf-8")
    text = re.sub(r'<meta http-equiv="Content-Security-Policy"[^>]*>', "", text).replace("</body>", SCRIPT + "</body>")
    (work / "page.html").write_text(text, encoding="utf-8")
    frame = work / "frame.html"
    frame.write_text(FRAME.replace("WIDTH", str(width)), encoding="utf-8")
    name = program()
    assert name is not None
    command = [
        name, "--headless=new", "--no-sandbox", "--disable-gpu", "--hide-scrollbars", "--no-first-run",
        f"--user-data-dir={work / 'profile'}", "--window-size=1600,1000", "--virtual-time-budget=5000",
        f"--blink-settings=preferredColorScheme={0 if dark else 1}", "--dump-dom", frame.as_uri(),
    ]  # fmt: skip
    done = subprocess.run(command, capture_output=True, text=True, timeout=120, check=False)
    found = re.search(r'<pre id="seen">(.+?)</pre>', done.stdout, re.DOTALL)
    assert found, f"the browser ended with {done.returncode} and showed nothing: {done.stderr[-2000:]}"
    return json.loads(html.unescape(found[1]))
