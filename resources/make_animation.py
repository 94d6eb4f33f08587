#!/usr/bin/env python3
"""Draws the animation shown during a backup: sheets that fly out of a folder into a drive, in the style of the
program's icon. Writes pc21.gif beside this script, or into the folder given as the first argument. Needs nothing but
Python itself and make_icon.py.

Shapes are distance functions in pixels: how far a pixel's middle is inside tells how much of it is covered, which
smooths every edge. The background is the dark blue of the frame in which the animation is shown, so that no edge of the
picture is seen. Every frame is whole: a viewer that knows nothing of partial frames shows it right."""

import math
import struct
import sys
from collections import Counter
from pathlib import Path

from make_icon import mix, rounded_box

WIDTH, HEIGHT = 320, 120
FRAMES = 36
FRAME_TIME = 7  # hundredths of a second
COLOURS = 256
BACKGROUND = (0, 0, 128)

PAPER, PAPER_EDGE = (255, 255, 255), (206, 220, 238)
INK, LIGHT_BLUE, BLUE = (150, 170, 198), (104, 178, 242), (38, 108, 186)
FOLDER_BACK = ((58, 128, 204), (38, 100, 176))
FOLDER_FRONT = ((122, 190, 248), (52, 126, 206))
DRIVE_TOP = ((128, 152, 186), (104, 130, 168))
DRIVE_FRONT = ((86, 114, 154), (46, 66, 102))
SLOT = (22, 32, 58)
DARK_GREEN, GREEN = (66, 132, 104), (142, 240, 176)

SLOT_Y = 63.0
# Where a sheet's middle is from the folder to the inside of the drive: the four points of a Bezier curve.
PATH = ((60.0, 80.0), (66.0, 12.0), (320.0, -2.0), (246.0, 92.0))
SHEET = (15.5, 19.5)  # half of a sheet's width and height
CORNER = 9.0  # its folded corner
KINDS = (0, 1, 0, 2)  # what is on the sheets that are on their way


class Canvas:
    def __init__(self):
        self.rows = [[BACKGROUND] * WIDTH for _ in range(HEIGHT)]

    def fill(self, box, distance, paint, opacity=1.0):
        """Paints what lies within `distance`, sought in the box (left, top, right, bottom). `paint` is a colour, or a
        pair of colours for the top and the bottom of the box."""
        left, top, right, bottom = box
        for row in range(max(0, math.floor(top - 1)), min(HEIGHT, math.ceil(bottom + 1))):
            y = row + 0.5
            colour = mix(*paint, (y - top) / (bottom - top)) if isinstance(paint[0], tuple) else paint
            pixels = self.rows[row]
            for column in range(max(0, math.floor(left - 1)), min(WIDTH, math.ceil(right + 1))):
                cover = min(1.0, 0.5 - distance(column + 0.5, y)) * opacity
                if cover > 0:
                    pixels[column] = mix(pixels[column], colour, cover)

    def box(self, left, top, right, bottom, radius, paint, opacity=1.0):
        def distance(x, y):
            return rounded_box(x, y, left, top, right, bottom, radius)

        self.fill((left, top, right, bottom), distance, paint, opacity)

    def disc(self, x, y, radius, paint, opacity=1.0):
        self.fill((x - radius, y - radius, x + radius, y + radius), lambda px, py: math.hypot(px - x, py - y) - radius,
                  paint, opacity)  # fmt: skip


def polygon(corners):
    """Distance to a polygon without dents, corners in the order of a clock."""
    edges = []
    for (ax, ay), (bx, by) in zip(corners, corners[1:] + corners[:1]):
        length = math.hypot(bx - ax, by - ay)
        edges.append((ax, ay, (bx - ax) / length, (by - ay) / length, length))

    def distance(x, y):
        inside = max((x - ax) * dy - (y - ay) * dx for ax, ay, dx, dy, _ in edges)
        if inside <= 0:
            return inside
        nearest_edge = math.inf
        for ax, ay, dx, dy, length in edges:
            along = min(length, max(0.0, (x - ax) * dx + (y - ay) * dy))
            nearest_edge = min(nearest_edge, math.hypot(x - ax - along * dx, y - ay - along * dy))
        return nearest_edge

    return distance


def box_of(corners):
    xs, ys = zip(*corners)
    return min(xs), min(ys), max(xs), max(ys)


def bezier(points, t):
    a, b, c, d = (1 - t) ** 3, 3 * t * (1 - t) ** 2, 3 * t * t * (1 - t), t**3
    return tuple(a * p + b * q + c * r + d * s for p, q, r, s in zip(*points))


class Sheet:
    """A sheet of paper on its way, `along` from 0 to 1; `kind` tells what is on it."""

    def __init__(self, kind, along):
        self.kind = kind
        self.x, self.y = bezier(PATH, along)
        # Leans into the flight, upright at both ends where it has to fit through an opening.
        angle = math.radians(19) * math.sin(math.pi * min(1, along / 0.84)) ** 2
        self.cosine, self.sine = math.cos(angle), math.sin(angle)
        self.scale = 1 - 0.14 * along
        self.into_drive = along > 0.6

    def place(self, x, y):
        """From the sheet's own coordinates to the picture's."""
        x, y = x * self.scale, y * self.scale
        return self.x + x * self.cosine - y * self.sine, self.y + x * self.sine + y * self.cosine

    def shape(self, canvas, corners, paint, opacity=1.0):
        placed = [self.place(*corner) for corner in corners]
        distance = polygon(placed)
        if self.into_drive:
            # What is in the slot already is not seen.
            canvas.fill(box_of(placed), lambda x, y: max(distance(x, y), y - SLOT_Y), paint, opacity)
        else:
            canvas.fill(box_of(placed), distance, paint, opacity)

    def bar(self, canvas, left, top, right, bottom, paint):
        self.shape(canvas, [(left, top), (right, top), (right, bottom), (left, bottom)], paint)

    def draw(self, canvas):
        w, h = SHEET
        outline = [(-w, -h), (w - CORNER, -h), (w, -h + CORNER), (w, h), (-w, h)]
        # A shadow a little below sets overlapping sheets apart.
        self.shape(canvas, [(x + 1.5, y + 2) for x, y in outline], (0, 0, 64), 0.45)
        self.shape(canvas, outline, (PAPER, (232, 240, 250)))
        self.shape(canvas, [(w - CORNER, -h), (w, -h + CORNER), (w - CORNER, -h + CORNER)], PAPER_EDGE)
        (self.text, self.picture, self.chart)[self.kind](canvas)

    def text(self, canvas):
        self.bar(canvas, -10.5, -13.5, 2, -10.5, BLUE)
        for top, right in ((-5.5, 10.5), (-0.5, 10.5), (4.5, 10.5), (9.5, 4)):
            self.bar(canvas, -10.5, top, right, top + 2, INK)

    def picture(self, canvas):
        self.bar(canvas, -10.5, -6, 10.5, 11, (188, 220, 250))
        self.shape(canvas, [(-10.5, 11), (-4, 1), (2.5, 11)], BLUE)
        self.shape(canvas, [(-3, 11), (4.5, -1.5), (10.5, 8.5), (10.5, 11)], LIGHT_BLUE)
        self.bar(canvas, -8, -4, -4.5, -0.5, (252, 204, 92))
        self.bar(canvas, -10.5, -13.5, 0, -11, INK)

    def chart(self, canvas):
        self.bar(canvas, -10.5, -13.5, 1, -11, INK)
        for left, top, paint in ((-9, 2, LIGHT_BLUE), (-2.5, -4, BLUE), (4, -1, (84, 190, 132))):
            self.bar(canvas, left, top, left + 5, 10, paint)
        self.bar(canvas, -10.5, 10.5, 10.5, 12, INK)


def draw_folder_back(canvas):
    canvas.box(26, 46, 56, 66, 4, FOLDER_BACK[0])
    canvas.box(26, 52, 98, 104, 4.5, FOLDER_BACK)


def draw_folder_front(canvas):
    # Grown by the radius of its corners.
    distance = polygon([(26.0, 68.0), (98.0, 68.0), (94.4, 102.0), (29.6, 102.0)])
    canvas.fill((22, 64, 102, 106), lambda x, y: distance(x, y) - 4, FOLDER_FRONT)
    canvas.box(27, 65.2, 97, 66.6, 0.7, (255, 255, 255), 0.5)


def draw_drive_top(canvas):
    distance = polygon([(217.0, 57.0), (289.0, 57.0), (300.0, 75.0), (206.0, 75.0)])
    canvas.fill((203, 54, 303, 75), lambda x, y: distance(x, y) - 3, DRIVE_TOP)
    canvas.box(229, SLOT_Y - 2.6, 277, SLOT_Y + 1.2, 1.9, SLOT)


def draw_drive_front(canvas, light):
    """`light`, from 0 to 1, is how much the lamp shines."""
    canvas.box(203, 68, 303, 106, 5.5, DRIVE_FRONT)
    canvas.box(206, 68.6, 300, 70.2, 0.8, (255, 255, 255), 0.38)
    canvas.box(214, 90, 262, 94.5, 2.2, mix(DRIVE_FRONT[0], (255, 255, 255), 0.5))
    for radius, opacity in ((8.5, 0.10), (6.5, 0.16)):
        canvas.disc(288, 91.5, radius, GREEN, opacity * light)
    canvas.disc(288, 91.5, 4.4, mix(DARK_GREEN, GREEN, light))


def flight(share):
    """How far along the way a sheet is: it waits a little in the folder and in the drive and is swiftest in between."""
    return share - 0.11 * math.sin(2 * math.pi * share)


def draw_frame(number):
    canvas = Canvas()
    draw_folder_back(canvas)
    draw_drive_top(canvas)
    sheets = []
    for index, kind in enumerate(KINDS):
        sheets.append(Sheet(kind, flight((number / FRAMES + index / len(KINDS)) % 1)))
    # The one that is nearer the drive lies above.
    for sheet in sorted(sheets, key=lambda sheet: sheet.x):
        sheet.draw(canvas)
    draw_folder_front(canvas)
    # The lamp flashes as each sheet goes in.
    draw_drive_front(canvas, math.cos(math.pi * (number / FRAMES * len(KINDS) + 0.32)) ** 2)
    return [[tuple(round(value) for value in pixel) for pixel in row] for row in canvas.rows]


# ---- the file ----


def choose_palette(counts):
    """The colours of the picture in COLOURS - 1 groups of about the same weight, and the background as it is."""
    groups = [[colour for colour in counts if colour != BACKGROUND]]

    def spread(group):
        return max((max(values) - min(values), channel) for channel, values in enumerate(zip(*group)))

    def weight(group):
        return spread(group)[0] * sum(counts[colour] for colour in group) ** 0.5

    while len(groups) < COLOURS - 1:
        groups.sort(key=weight)
        group = groups.pop()
        channel = spread(group)[1]
        group.sort(key=lambda colour: colour[channel])
        half, total, index = sum(counts[colour] for colour in group) / 2, 0, 0
        while index < len(group) - 2 and total < half:
            total += counts[group[index]]
            index += 1
        groups += [group[: max(1, index)], group[max(1, index) :]]
    palette = [BACKGROUND]
    for group in groups:
        total = sum(counts[colour] for colour in group)
        palette.append(tuple(round(sum(c[i] * counts[c] for c in group) / total) for i in range(3)))
    return palette


def nearest(palette, colour):
    def difference(index):
        red, green, blue = (a - b for a, b in zip(palette[index], colour))
        # What the eye tells apart best counts most.
        return 3 * red * red + 6 * green * green + 2 * blue * blue

    return min(range(len(palette)), key=difference)


def compress(pixels, bits):
    """The picture's data in the format's own form: codes of growing width over a growing dictionary, in blocks."""
    clear, end = 1 << bits, (1 << bits) + 1
    out, buffer, filled = bytearray(), 0, 0
    width, table = bits + 1, {}

    def put(code):
        nonlocal buffer, filled
        buffer |= code << filled
        filled += width
        while filled >= 8:
            out.append(buffer & 0xFF)
            buffer >>= 8
            filled -= 8

    put(clear)
    prefix = pixels[0]
    for pixel in pixels[1:]:
        if (prefix, pixel) in table:
            prefix = table[prefix, pixel]
            continue
        put(prefix)
        code = end + 1 + len(table)
        if code < 4096:
            table[prefix, pixel] = code
            # A code of the next width can come from now on.
            if code == 1 << width:
                width += 1
        else:
            put(clear)
            width, table = bits + 1, {}
        prefix = pixel
    put(prefix)
    put(end)
    if filled:
        out.append(buffer & 0xFF)
    blocks = [bytes((len(out[at : at + 255]),)) + out[at : at + 255] for at in range(0, len(out), 255)]
    return bytes((bits,)) + b"".join(blocks) + b"\0"


def animation(frames):
    counts = Counter(pixel for frame in frames for row in frame for pixel in row)
    palette = choose_palette(counts)
    index_of = {colour: nearest(palette, colour) for colour in counts}
    bits = (COLOURS - 1).bit_length()
    data = b"GIF89a" + struct.pack("<HHBBB", WIDTH, HEIGHT, 0xF0 | (bits - 1), 0, 0)
    data += b"".join(bytes(colour) for colour in palette)
    data += b"\x21\xff\x0bNETSCAPE2.0\x03\x01\0\0\0"  # for ever
    for frame in frames:
        pixels = [index_of[pixel] for row in frame for pixel in row]
        data += b"\x21\xf9\x04\x04" + struct.pack("<H", FRAME_TIME) + b"\0\0"
        data += b"\x2c" + struct.pack("<HHHHB", 0, 0, WIDTH, HEIGHT, 0) + compress(pixels, bits)
    return data + b"\x3b"


def main():
    folder = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).parent
    (folder / "pc21.gif").write_bytes(animation([draw_frame(number) for number in range(FRAMES)]))


if __name__ == "__main__":
    main()
