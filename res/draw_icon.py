#!/usr/bin/env python3
"""Draws the program's icon: an arrow that leads from one window into another.

    draw_icon.py            writes quillet.ico beside this script
    draw_icon.py --check    compares that file's pictures with the drawing; exit code 1 when they differ
    draw_icon.py --png DIR  writes every image of the icon to DIR as a PNG file, for the eye

Shapes are functions from a point to its signed distance from the outline (negative inside). Their
unit is one sixteenth of the picture, so whole numbers are pixel edges in every size, and a
distance, times the pixels of a unit, says how much of a pixel the shape covers. Nothing but Python's
standard library is needed. Every run gives the same pixels, and the same bytes with the same zlib.
"""

import math
import struct
import sys
import zlib
from pathlib import Path

ICON_FILE = Path(__file__).with_name("quillet.ico")
GRID = 16  # units along each side of the picture
BITMAP_SIZES = (16, 32, 48, 64, 128)
PNG_SIZE = 256

# The largest image has the same number of bytes whatever is drawn, so that a new picture moves
# nothing else in the program file: its layout stays constant.
PNG_BYTES = 21106
PNG_SIGNATURE = b"\x89PNG\r\n\x1a\n"
PNG_HEADER_BYTES = len(PNG_SIGNATURE) + 25  # and the chunk that tells size and colours

# Line width, in pixels, of the windows' frames, and of the light rim around the arrow.
FRAME_PIXELS = {16: 1, 32: 1, 48: 2, 64: 2, 128: 3, 256: 6}
RIM_PIXELS = {16: 0, 32: 1, 48: 2, 64: 2, 128: 4, 256: 8}
CORNER = 0.8  # radius of the windows' corners
DETAIL_FROM = 48  # smaller pictures have no shadows and no caption buttons

WHITE = (255, 255, 255)
SHADOW = (16, 28, 48)
SOURCE = {"frame": (94, 108, 128), "caption": ((158, 172, 190), (128, 144, 166)),
          "body": ((240, 244, 248), (212, 220, 230))}
TARGET = {"frame": (20, 70, 146), "caption": ((62, 140, 232), (26, 96, 196)),
          "body": (WHITE, (224, 236, 250))}
ARROW = ((255, 166, 46), (232, 96, 8))


# --- shapes -----------------------------------------------------------------------------------


def rounded_box(left, top, right, bottom, radius):
    centre_x, centre_y = (left + right) / 2, (top + bottom) / 2
    inner_x, inner_y = (right - left) / 2 - radius, (bottom - top) / 2 - radius

    def distance(x, y):
        across, along = abs(x - centre_x) - inner_x, abs(y - centre_y) - inner_y
        outside = math.hypot(max(across, 0), max(along, 0))
        return outside + min(max(across, along), 0) - radius

    return distance


def disc(centre_x, centre_y, radius):
    return rounded_box(centre_x - radius, centre_y - radius, centre_x + radius, centre_y + radius,
                       radius)


def above(edge):
    return lambda x, y: y - edge


def common(*shapes):
    return lambda x, y: max(shape(x, y) for shape in shapes)


def either(*shapes):
    return lambda x, y: min(shape(x, y) for shape in shapes)


def grown(shape, margin):
    return lambda x, y: shape(x, y) - margin


def elbow(start_x, start_y, end_x, end_y, radius, half_width):
    """A stroke that leads right with a round start, turns in a quarter circle and leads down."""
    centre_x, centre_y = end_x - radius, start_y + radius

    def distance(x, y):
        if x > centre_x and y < centre_y:
            return abs(math.hypot(x - centre_x, y - centre_y) - radius) - half_width
        if y < centre_y:
            return math.hypot(max(start_x - x, 0), y - start_y) - half_width
        return max(abs(x - end_x) - half_width, y - end_y)

    return distance


def polygon(*corners):
    edges = list(zip(corners, corners[1:] + corners[:1]))

    def distance(x, y):
        nearest, inside = math.inf, False
        for (from_x, from_y), (to_x, to_y) in edges:
            run_x, run_y = to_x - from_x, to_y - from_y
            part = ((x - from_x) * run_x + (y - from_y) * run_y) / (run_x ** 2 + run_y ** 2)
            part = min(max(part, 0), 1)
            nearest = min(nearest, math.hypot(x - from_x - part * run_x, y - from_y - part * run_y))
            if (from_y > y) != (to_y > y) and x < from_x + (y - from_y) * run_x / run_y:
                inside = not inside
        return -nearest if inside else nearest

    return distance


# --- picture ----------------------------------------------------------------------------------


class Picture:
    """Square of pixels, each [red, green, blue, alpha] from 0 to 1, colours not premultiplied."""

    def __init__(self, size):
        self.size = size
        self.scale = size / GRID
        self.pixels = [[0.0, 0.0, 0.0, 0.0] for _ in range(size * size)]

    def snapped(self, edge):
        """The pixel edge nearest to a coordinate; from the middle the greater one."""
        return math.floor(edge * self.scale + 0.5) / self.scale

    def fill(self, shape, top_colour, bottom_colour=None, top=0, bottom=GRID):
        """Fills with one colour, or with a run from one at `top` to the other at `bottom`."""
        bottom_colour = bottom_colour or top_colour

        def colour_at(y):
            part = min(max((y - top) / (bottom - top), 0), 1)
            return [(a + (b - a) * part) / 255 for a, b in zip(top_colour, bottom_colour)]

        self._cover(lambda x, y: min(max(0.5 - shape(x, y) * self.scale, 0), 1), colour_at)

    def shade(self, shape, reach, strength):
        """A soft shadow that fades out over `reach` units outside the shape."""

        def opacity(x, y):
            nearness = min(max(1 - shape(x, y) / reach, 0), 1)
            return strength * nearness * nearness

        self._cover(opacity, lambda y: [part / 255 for part in SHADOW])

    def _cover(self, opacity_at, colour_at):
        for row in range(self.size):
            y = (row + 0.5) / self.scale
            colour = colour_at(y)
            for column in range(self.size):
                opacity = opacity_at((column + 0.5) / self.scale, y)
                if opacity > 0:
                    self._blend(self.pixels[row * self.size + column], colour, opacity)

    @staticmethod
    def _blend(pixel, colour, opacity):
        below = pixel[3] * (1 - opacity)
        pixel[3] = opacity + below
        for channel in range(3):
            pixel[channel] = (colour[channel] * opacity + pixel[channel] * below) / pixel[3]

    def rows(self):
        """The rows from the top, each a list of (red, green, blue, alpha), 0 to 255."""
        values = [tuple(int(part * 255 + 0.5) for part in pixel) for pixel in self.pixels]
        return [values[start:start + self.size] for start in range(0, len(values), self.size)]


def draw_window(picture, box, colours):
    """A window whose edges lie on whole pixels, so that they are sharp in every size."""
    left, top, right, bottom = (picture.snapped(edge) for edge in box)
    frame = FRAME_PIXELS[picture.size] / picture.scale
    caption_bottom = picture.snapped(top + 2.5)
    outline = rounded_box(left, top, right, bottom, CORNER)
    inside = rounded_box(left + frame, top + frame, right - frame, bottom - frame,
                         max(CORNER - frame, 0))
    if picture.size >= DETAIL_FROM:
        picture.shade(rounded_box(left, top + 0.3, right, bottom, CORNER), 0.8, 0.3)
    picture.fill(outline, colours["frame"])
    picture.fill(inside, *colours["body"], caption_bottom, bottom)
    picture.fill(common(inside, above(caption_bottom)), *colours["caption"], top, caption_bottom)


def draw_caption_buttons(picture):
    if picture.size >= DETAIL_FROM:
        for number in range(3):
            picture.fill(disc(1.85 + 1.1 * number, 2.4, 0.34), WHITE)


def draw_arrow(picture):
    """From the body of the rear window to the right, round a bend and down into the front one."""
    head = grown(polygon((8.1, 10.3), (13.9, 10.3), (11, 13.6)), 0.3)
    arrow = either(elbow(4, 6, 11, 10.5, 2, 1), head)
    picture.fill(grown(arrow, RIM_PIXELS[picture.size] / picture.scale), WHITE)
    picture.fill(arrow, *ARROW, 5, 14)


def draw(size):
    picture = Picture(size)
    draw_window(picture, (0.5, 1, 10, 10), SOURCE)
    draw_window(picture, (6, 6.5, 15.5, 15.5), TARGET)
    draw_caption_buttons(picture)
    draw_arrow(picture)
    return picture.rows()


# --- files ------------------------------------------------------------------------------------


def bitmap(rows):
    """A device-independent bitmap as icons hold it: rows from the bottom, then the 1-bit mask."""
    size = len(rows)
    colours = b"".join(bytes((blue, green, red, alpha))
                       for row in reversed(rows) for red, green, blue, alpha in row)
    mask = b"".join(mask_row(row) for row in reversed(rows))
    # The height counts both the colours and the mask.
    header = struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, 32, 0, len(colours) + len(mask),
                         0, 0, 0, 0)
    return header + colours + mask


def mask_row(row):
    """One bit per pixel, set where the picture is transparent; rows end at 32-bit boundaries."""
    bits = "".join("1" if alpha < 128 else "0" for *_, alpha in row)
    bits += "0" * (-len(bits) % 32)
    return int(bits, 2).to_bytes(len(bits) // 8, "big")


def png(rows, total_bytes=None):
    """A PNG file; with `total_bytes`, a comment brings it to that size."""
    size = len(rows)
    header = struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)
    parts = [PNG_SIGNATURE, chunk(b"IHDR", header),
             chunk(b"IDAT", zlib.compress(filtered(rows), 9)), chunk(b"IEND", b"")]
    if total_bytes is not None:
        missing = total_bytes - sum(map(len, parts)) - len(chunk(b"tEXt", b""))
        comment = b"Comment\0Keeps the file at its fixed size."
        if missing < len(comment):
            raise SystemExit(f"the picture is {len(comment) - missing} bytes too large")
        parts.insert(2, chunk(b"tEXt", comment.ljust(missing, b" ")))
    return b"".join(parts)


def chunk(kind, content):
    return (struct.pack(">I", len(content)) + kind + content
            + struct.pack(">I", zlib.crc32(kind + content)))


def filtered(rows):
    """Each row as differences from the one above (PNG filter 2), which compress well."""
    previous = bytes(4 * len(rows))
    result = bytearray()
    for row in rows:
        current = bytes(part for pixel in row for part in pixel)
        result.append(2)
        result += bytes((new - old) % 256 for new, old in zip(current, previous))
        previous = current
    return bytes(result)


def icon(images):
    """The icon file of (size, content) pairs, in their order."""
    directory = struct.pack("<HHH", 0, 1, len(images))
    offset = len(directory) + 16 * len(images)
    for size, content in images:
        # A side of 256 pixels is written as 0. No palette, one plane, 32 bits per pixel.
        directory += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(content),
                                 offset)
        offset += len(content)
    return directory + b"".join(content for _, content in images)


def icon_with(largest):
    """The icon file around its largest image, a PNG file."""
    return icon([*((size, bitmap(draw(size))) for size in BITMAP_SIZES), (PNG_SIZE, largest)])


def shows(file, rows):
    """Whether a PNG file shows these pixels, however they are compressed."""
    drawn, kinds = png(rows), {}
    at = len(PNG_SIGNATURE)
    while at < len(file):
        length, kind = struct.unpack_from(">I4s", file, at)
        content = file[at + 8:at + 8 + length]
        if file[at:at + 12 + length] != chunk(kind, content):
            return False
        kinds[kind] = kinds.get(kind, b"") + content
        at += 12 + length
    return file.startswith(drawn[:PNG_HEADER_BYTES]) and zlib.decompress(kinds[b"IDAT"]) == filtered(rows)


def is_as_drawn(file):
    largest = file[-PNG_BYTES:]
    return file == icon_with(largest) and shows(largest, draw(PNG_SIZE))


def main(arguments):
    if arguments == []:
        ICON_FILE.write_bytes(icon_with(png(draw(PNG_SIZE), PNG_BYTES)))
    elif arguments == ["--check"]:
        if not is_as_drawn(ICON_FILE.read_bytes()):
            raise SystemExit(f"{ICON_FILE.name} is not what {Path(__file__).name} draws")
    elif len(arguments) == 2 and arguments[0] == "--png":
        for size in (*BITMAP_SIZES, PNG_SIZE):
            Path(arguments[1], f"quillet-{size}.png").write_bytes(png(draw(size)))
    else:
        raise SystemExit(__doc__)


if __name__ == "__main__":
    main(sys.argv[1:])
