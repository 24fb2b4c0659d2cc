#!/usr/bin/env python3
"""Draws the twenty item kind icons (16 by 16, 24-bit BMP) into
resources/images/kinds/kindNN.bmp.

Kinds 0 to 9 are a rounded square in the kind's own colour with its letter;
kinds 10 to 19 ("misc 0" to "misc 9") are a disc with the digit. The
background is lime (0, 255, 0), the key colour that the lists leave out, so
no icon colour may be lime. Run from anywhere; no third-party modules.
"""

import colorsys
import os
import struct
import sys

SIZE = 16
LIME = (0, 255, 0)
WHITE = (255, 255, 255)

GLYPHS = {
    "l": ["01100", "00100", "00100", "00100", "00100", "00100", "01110"],
    "v": ["00000", "00000", "10001", "10001", "10001", "01010", "00100"],
    "p": ["00000", "11110", "10001", "10001", "11110", "10000", "10000"],
    "e": ["00000", "00000", "01110", "10001", "11111", "10000", "01110"],
    "m": ["00000", "00000", "11010", "10101", "10101", "10101", "10101"],
    "f": ["00110", "01001", "01000", "11100", "01000", "01000", "01000"],
    "o": ["00000", "00000", "01110", "10001", "10001", "10001", "01110"],
    "t": ["01000", "01000", "11100", "01000", "01000", "01001", "00110"],
    "n": ["00000", "00000", "10110", "11001", "10001", "10001", "10001"],
    "c": ["00000", "00000", "01110", "10000", "10000", "10001", "01110"],
    "0": ["01110", "10001", "10011", "10101", "11001", "10001", "01110"],
    "1": ["00100", "01100", "00100", "00100", "00100", "00100", "01110"],
    "2": ["01110", "10001", "00001", "00010", "00100", "01000", "11111"],
    "3": ["11111", "00010", "00100", "00010", "00001", "10001", "01110"],
    "4": ["00010", "00110", "01010", "10010", "11111", "00010", "00010"],
    "5": ["11111", "10000", "11110", "00001", "00001", "10001", "01110"],
    "6": ["00110", "01000", "10000", "11110", "10001", "10001", "01110"],
    "7": ["11111", "00001", "00010", "00100", "01000", "01000", "01000"],
    "8": ["01110", "10001", "10001", "01110", "10001", "10001", "01110"],
    "9": ["01110", "10001", "10001", "01111", "00001", "00010", "01100"],
}

# Letter and colour of the kinds 0 to 9, in the order of the kind table.
LETTER_KINDS = [
    ("l", (0, 128, 128)),    # Load
    ("v", (40, 90, 200)),    # Variable
    ("p", (128, 60, 170)),   # Property
    ("e", (215, 115, 20)),   # Event
    ("m", (190, 40, 40)),    # Method
    ("f", (30, 125, 50)),    # Function
    ("o", (135, 85, 35)),    # Procedure
    ("t", (200, 50, 140)),   # Tag
    ("n", (120, 20, 60)),    # Method 2
    ("c", (20, 40, 120)),    # Class
]


def darker(colour, factor=0.6):
    return tuple(int(c * factor) for c in colour)


def misc_colour(i):
    r, g, b = colorsys.hsv_to_rgb(i / 10.0, 0.65, 0.72)
    return (int(r * 255), int(g * 255), int(b * 255))


def blank():
    return [[LIME] * SIZE for _ in range(SIZE)]


def rounded_square(pixels, colour):
    edge = darker(colour)
    for y in range(1, 15):
        for x in range(1, 15):
            corner = (x in (1, 14)) and (y in (1, 14))
            if corner:
                continue
            border = x in (1, 14) or y in (1, 14) or (x in (2, 13) and y in (2, 13))
            pixels[y][x] = edge if border else colour


def disc(pixels, colour):
    edge = darker(colour)
    cx = cy = 7.5
    for y in range(SIZE):
        for x in range(SIZE):
            d = ((x - cx) ** 2 + (y - cy) ** 2) ** 0.5
            if d <= 7.2:
                pixels[y][x] = edge if d > 6.1 else colour


def glyph(pixels, char):
    rows = GLYPHS[char]
    for gy, row in enumerate(rows):
        for gx, bit in enumerate(row):
            if bit == "1":
                pixels[4 + gy][5 + gx] = WHITE


def bmp_bytes(pixels):
    row_size = (SIZE * 3 + 3) & ~3
    image = bytearray()
    for y in range(SIZE - 1, -1, -1):  # bottom-up rows
        row = bytearray()
        for r, g, b in pixels[y]:
            row += bytes((b, g, r))
        row += b"\0" * (row_size - len(row))
        image += row
    header = struct.pack("<2sIHHI", b"BM", 54 + len(image), 0, 0, 54)
    info = struct.pack("<IiiHHIIiiII", 40, SIZE, SIZE, 1, 24, 0, len(image), 2835, 2835, 0, 0)
    return header + info + bytes(image)


def icon(kind):
    pixels = blank()
    if kind < 10:
        letter, colour = LETTER_KINDS[kind]
        rounded_square(pixels, colour)
        glyph(pixels, letter)
    else:
        disc(pixels, misc_colour(kind - 10))
        glyph(pixels, str(kind - 10))
    return pixels


def main():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(root, "resources", "images", "kinds")
    os.makedirs(out, exist_ok=True)
    for kind in range(20):
        with open(os.path.join(out, "kind%02d.bmp" % kind), "wb") as f:
            f.write(bmp_bytes(icon(kind)))


if __name__ == "__main__":
    main()
