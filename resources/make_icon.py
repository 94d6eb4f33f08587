#!/usr/bin/env python3
"""Draws the program's icon: a drive with a circular arrow, in calm blue. Writes program.ico beside this script, or the
folder given as the first argument; with "--png" each size as a PNG file as well. Needs nothing but Python itself.

The drawing is a handful of shapes in a unit square, each a distance function; a pixel is the mean of its samples. Small
sizes are drawn with heavier strokes, not shrunk from a large one."""

import math
import struct
import sys
import zlib
from pathlib import Path

SIZES = (16, 24, 32, 48, 64, 256)
SAMPLES = 4  # in each direction of a pixel


def mix(a, b, share):
    share = min(1.0, max(0.0, share))
    return tuple(x + (y - x) * share for x, y in zip(a, b))


def rounded_box(x, y, left, top, right, bottom, radius):
    dx = abs(x - (left + right) / 2) - (right - left) / 2 + radius
    dy = abs(y - (top + bottom) / 2) - (bottom - top) / 2 + radius
    return math.hypot(max(dx, 0), max(dy, 0)) + min(max(dx, dy), 0) - radius


def triangle(x, y, corners):
    """Negative inside, corners in the order of a clock; near enough to a distance for flat edges."""
    worst = -9.0
    for i in range(3):
        (ax, ay), (bx, by) = corners[i], corners[(i + 1) % 3]
        length = math.hypot(bx - ax, by - ay)
        worst = max(worst, ((x - ax) * (by - ay) - (y - ay) * (bx - ax)) / length)
    return worst


class Drawing:
    CENTRE = (0.5, 0.385)

    def __init__(self, size):
        small = size <= 24
        self.ring = 0.26 if small else 0.265  # middle of the stroke
        self.stroke = 0.135 if small else 0.105
        self.halo = 0.05 if small else 0.035
        self.head = 0.165 if small else 0.135
        self.radius = 0.07
        self.details = size >= 32
        # The arrow runs clockwise from the right nearly once round to the upper right, where its head is.
        self.start = math.radians(8)
        self.end = math.radians(292)
        self.corners = self.head_corners()

    def point(self, angle, radius):
        return (self.CENTRE[0] + radius * math.cos(angle), self.CENTRE[1] + radius * math.sin(angle))

    def head_corners(self):
        base = self.end - math.radians(4)
        tip = self.point(base + self.head * 1.25 / self.ring, self.ring * 1.02)
        return (self.point(base, self.ring + self.head), tip, self.point(base, self.ring - self.head))

    def arrow(self, x, y):
        dx, dy = x - self.CENTRE[0], y - self.CENTRE[1]
        angle = math.atan2(dy, dx) % (2 * math.pi)
        start = self.start % (2 * math.pi)
        along = (angle - start) % (2 * math.pi)
        sweep = (self.end - self.start) % (2 * math.pi)
        if along <= sweep:
            stroke = abs(math.hypot(dx, dy) - self.ring) - self.stroke / 2
        else:
            sx, sy = self.point(self.start, self.ring)
            stroke = math.hypot(x - sx, y - sy) - self.stroke / 2
        return min(stroke, triangle(x, y, self.corners))

    def colour(self, x, y):
        """Colour and opacity at a point."""
        arrow = self.arrow(x, y)
        if arrow <= 0:
            return mix((86, 163, 232), (38, 108, 186), (y - 0.08) / 0.6), 1.0
        body = rounded_box(x, y, 0.05, 0.56, 0.95, 0.95, self.radius)
        inside = math.hypot(x - self.CENTRE[0], y - self.CENTRE[1]) < self.ring
        # A gap of the background keeps arrow and drive apart, and the ring is seen through.
        if body > 0 or arrow <= self.halo or inside:
            return (255, 255, 255), 0.0
        shade = mix((74, 104, 143), (38, 58, 92), (y - 0.56) / 0.39)
        if self.details:
            if rounded_box(x, y, 0.15, 0.815, 0.60, 0.855, 0.02) <= 0:
                return mix(shade, (255, 255, 255), 0.45), 1.0
            if y < 0.60 and body > -0.035:
                return mix(shade, (255, 255, 255), 0.25), 1.0
        light = 0.055 if not self.details else 0.04
        if math.hypot(x - 0.82, y - 0.835) <= light:
            return (142, 232, 170), 1.0
        return shade, 1.0


def render(size):
    """Rows of RGBA pixels."""
    drawing = Drawing(size)
    rows = []
    for row in range(size):
        pixels = []
        for column in range(size):
            red = green = blue = opacity = 0.0
            for i in range(SAMPLES * SAMPLES):
                x = (column + (i % SAMPLES + 0.5) / SAMPLES) / size
                y = (row + (i // SAMPLES + 0.5) / SAMPLES) / size
                colour, alpha = drawing.colour(x, y)
                red += colour[0] * alpha
                green += colour[1] * alpha
                blue += colour[2] * alpha
                opacity += alpha
            if opacity:
                pixels.append((round(red / opacity), round(green / opacity), round(blue / opacity),
                               round(255 * opacity / SAMPLES**2)))
            else:
                pixels.append((0, 0, 0, 0))
        rows.append(pixels)
    return rows


def png(rows):
    size = len(rows)
    raw = b"".join(b"\0" + bytes(value for pixel in row for value in pixel) for row in rows)

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b"")


def bitmap(rows):
    """The older form of an icon's image, which every reader takes: bottom row first, then a mask of one bit a pixel."""
    size = len(rows)
    colours = b"".join(bytes((b, g, r, a)) for row in reversed(rows) for r, g, b, a in row)
    mask_row = (size + 31) // 32 * 4
    mask = b""
    for row in reversed(rows):
        bits = "".join("1" if pixel[3] == 0 else "0" for pixel in row).ljust(mask_row * 8, "0")
        mask += int(bits, 2).to_bytes(mask_row, "big")
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, len(colours) + len(mask), 0, 0, 0, 0)
    return header + colours + mask


def icon(images):
    """`images`: (size, bytes) pairs."""
    offset = 6 + 16 * len(images)
    directory = struct.pack("<HHH", 0, 1, len(images))
    for size, data in images:
        directory += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    return directory + b"".join(data for _, data in images)


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--png"]
    folder = Path(arguments[0]) if arguments else Path(__file__).parent
    images = []
    for size in SIZES:
        rows = render(size)
        images.append((size, png(rows) if size >= 256 else bitmap(rows)))
        if "--png" in sys.argv:
            (folder / f"icon-{size}.png").write_bytes(png(rows))
    (folder / "program.ico").write_bytes(icon(images))


if __name__ == "__main__":
    main()
