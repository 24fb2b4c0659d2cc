#!/usr/bin/env python3
"""Draws the 16 by 16 glyphs of the menus and toolbars.

Writes one PNG strip per image list into this folder and the C++ table
src/controls/WgGlyphs.cpp that the program links in, so the glyphs need no
file at run time. Run it again after changing a drawing:

    python3 resources/images/make_glyphs.py
"""

import os
import struct
import zlib

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.normpath(os.path.join(HERE, "..", ".."))
KEY = (255, 0, 255)  # transparent
S = 16


class Glyph:
    def __init__(self):
        self.px = [[KEY] * S for _ in range(S)]

    def set(self, x, y, c):
        if 0 <= x < S and 0 <= y < S:
            self.px[y][x] = c

    def fill(self, x0, y0, x1, y1, c):  # inclusive
        for y in range(y0, y1 + 1):
            for x in range(x0, x1 + 1):
                self.set(x, y, c)

    def frame(self, x0, y0, x1, y1, c):
        for x in range(x0, x1 + 1):
            self.set(x, y0, c)
            self.set(x, y1, c)
        for y in range(y0, y1 + 1):
            self.set(x0, y, c)
            self.set(x1, y, c)

    def line(self, x0, y0, x1, y1, c):
        dx, dy = abs(x1 - x0), -abs(y1 - y0)
        sx, sy = (1 if x0 < x1 else -1), (1 if y0 < y1 else -1)
        err = dx + dy
        while True:
            self.set(x0, y0, c)
            if x0 == x1 and y0 == y1:
                return
            e2 = 2 * err
            if e2 >= dy:
                err += dy
                x0 += sx
            if e2 <= dx:
                err += dx
                y0 += sy

    def disc(self, cx, cy, r, c):
        for y in range(S):
            for x in range(S):
                if (x - cx) ** 2 + (y - cy) ** 2 <= r * r:
                    self.set(x, y, c)

    def ring(self, cx, cy, r, c):
        for y in range(S):
            for x in range(S):
                d = (x - cx) ** 2 + (y - cy) ** 2
                if (r - 0.5) ** 2 <= d <= (r + 0.5) ** 2:
                    self.set(x, y, c)


BLACK = (0, 0, 0)
WHITE = (255, 255, 255)
GREY = (128, 128, 128)
LIGHT = (200, 200, 200)
NAVY = (24, 56, 140)
BLUE = (52, 104, 208)
SKY = (150, 190, 240)
YELLOW = (248, 208, 80)
DARKYELLOW = (176, 128, 24)
GREEN = (40, 150, 50)
DARKGREEN = (20, 96, 30)
RED = (208, 40, 40)
DARKRED = (140, 20, 20)
BROWN = (150, 96, 48)
ORANGE = (240, 150, 60)


def page(g, x0=2, x1=12):
    g.fill(x0, 1, x1, 14, WHITE)
    g.line(x0, 1, x1 - 3, 1, GREY)
    g.line(x0, 1, x0, 14, GREY)
    g.line(x0, 14, x1, 14, GREY)
    g.line(x1, 4, x1, 14, GREY)
    g.line(x1 - 3, 1, x1, 4, GREY)
    g.line(x1 - 3, 1, x1 - 3, 4, GREY)
    g.line(x1 - 3, 4, x1, 4, GREY)
    g.set(x1 - 1, 2, KEY)
    g.set(x1, 2, KEY)
    g.set(x1, 3, KEY)


def floppy(g):
    g.fill(1, 1, 14, 14, BLUE)
    g.frame(1, 1, 14, 14, NAVY)
    g.fill(4, 2, 11, 6, WHITE)
    g.line(5, 3, 10, 3, LIGHT)
    g.line(5, 5, 10, 5, LIGHT)
    g.fill(4, 9, 11, 13, LIGHT)
    g.fill(8, 10, 9, 12, NAVY)
    g.set(14, 1, KEY)


def pencil(g, x0, y0, length):
    # A diagonal pencil from its tip at (x0, y0) up to the right.
    for i in range(length):
        x, y = x0 + i, y0 - i
        c = ORANGE if i < length - 2 else RED
        g.set(x, y, c)
        g.set(x + 1, y, c)
        g.set(x, y - 1, c)
        g.set(x + 1, y + 1, DARKYELLOW if i < length - 2 else DARKRED)
        g.set(x - 1, y - 1, DARKYELLOW if i < length - 2 else DARKRED)
    g.set(x0, y0, BLACK)
    g.set(x0, y0 + 1, BLACK)
    g.set(x0 - 1, y0 + 1, BLACK)


def g_new():
    g = Glyph()
    page(g)
    g.set(13, 9, YELLOW)
    g.line(11, 9, 15, 9, YELLOW)
    g.line(13, 7, 13, 11, YELLOW)
    g.set(12, 8, YELLOW)
    g.set(14, 10, YELLOW)
    g.set(12, 10, YELLOW)
    g.set(14, 8, YELLOW)
    return g


def g_open():
    g = Glyph()
    g.fill(1, 3, 6, 4, DARKYELLOW)
    g.fill(1, 4, 12, 13, DARKYELLOW)
    g.fill(2, 5, 11, 12, YELLOW)
    for y in range(7, 14):
        x0 = 3 + (13 - y) // 2
        g.line(x0, y, x0 + 11 - (13 - y) // 3, y, YELLOW)
    g.line(3, 7, 15, 7, DARKYELLOW)
    g.line(1, 13, 12, 13, DARKYELLOW)
    g.line(15, 7, 12, 13, DARKYELLOW)
    g.line(3, 7, 1, 13, DARKYELLOW)
    g.line(11, 1, 14, 1, GREEN)
    g.line(14, 1, 14, 4, GREEN)
    g.line(9, 6, 14, 1, GREEN)
    return g


def g_save():
    g = Glyph()
    floppy(g)
    return g


def g_saveas():
    g = Glyph()
    floppy(g)
    pencil(g, 7, 14, 8)
    return g


def g_exit():
    g = Glyph()
    g.fill(2, 1, 9, 14, BROWN)
    g.frame(2, 1, 9, 14, (96, 56, 24))
    g.fill(4, 3, 7, 12, (190, 130, 70))
    g.set(8, 8, YELLOW)
    g.line(9, 8, 15, 8, RED)
    g.line(12, 5, 15, 8, RED)
    g.line(12, 11, 15, 8, RED)
    g.line(11, 5, 14, 8, RED)
    g.line(11, 11, 14, 8, RED)
    return g


def g_help():
    g = Glyph()
    g.disc(7.5, 7.5, 7, BLUE)
    g.ring(7.5, 7.5, 7, NAVY)
    g.fill(6, 3, 9, 4, WHITE)
    g.fill(9, 4, 10, 7, WHITE)
    g.fill(7, 7, 9, 8, WHITE)
    g.fill(7, 9, 8, 9, WHITE)
    g.fill(7, 11, 8, 12, WHITE)
    g.fill(5, 4, 6, 5, WHITE)
    return g


def g_about():
    g = Glyph()
    g.disc(7.5, 7.5, 7, BLUE)
    g.ring(7.5, 7.5, 7, NAVY)
    g.fill(7, 3, 8, 4, WHITE)
    g.fill(7, 6, 8, 12, WHITE)
    g.fill(6, 6, 6, 6, WHITE)
    g.fill(6, 12, 9, 12, WHITE)
    return g


def g_add():
    g = Glyph()
    g.fill(6, 2, 9, 13, GREEN)
    g.fill(2, 6, 13, 9, GREEN)
    g.frame(6, 2, 9, 13, DARKGREEN)
    g.frame(2, 6, 13, 9, DARKGREEN)
    g.fill(7, 3, 8, 12, GREEN)
    g.fill(3, 7, 12, 8, GREEN)
    return g


def g_rename():
    g = Glyph()
    g.fill(0, 4, 15, 11, WHITE)
    g.frame(0, 4, 15, 11, GREY)
    # "ab" and a text cursor
    g.fill(2, 7, 4, 7, NAVY)
    g.line(2, 8, 2, 9, NAVY)
    g.line(3, 9, 4, 9, NAVY)
    g.line(5, 7, 5, 9, NAVY)
    g.line(7, 5, 7, 9, NAVY)
    g.line(8, 7, 9, 7, NAVY)
    g.line(8, 9, 9, 9, NAVY)
    g.set(10, 8, NAVY)
    g.line(12, 2, 12, 13, BLACK)
    g.line(11, 2, 13, 2, BLACK)
    g.line(11, 13, 13, 13, BLACK)
    return g


def g_edit():
    g = Glyph()
    page(g, 1, 10)
    for y in (5, 7, 9, 11):
        g.line(3, y, 8, y, LIGHT)
    pencil(g, 6, 14, 9)
    return g


def g_delete():
    g = Glyph()
    for d in (-1, 0, 1):
        g.line(3 + d, 3, 12 + d, 12, RED)
        g.line(12 + d, 3, 3 + d, 12, RED)
    g.line(2, 3, 11, 12, DARKRED)
    g.line(13, 3, 4, 12, DARKRED)
    return g


def g_sort():
    g = Glyph()
    for i, y in enumerate((2, 5, 8, 11)):
        g.fill(1, y, 3 + 2 * i, y + 1, NAVY)
    g.line(12, 1, 12, 13, GREEN)
    g.line(11, 1, 11, 13, GREEN)
    for i in range(4):
        g.line(9 + i, 10 + i, 14 - i, 10 + i, GREEN)
    return g


def g_up():
    g = Glyph()
    for i in range(6):
        g.line(7 - i, 3 + i, 8 + i, 3 + i, BLUE)
    g.fill(6, 9, 9, 13, BLUE)
    g.line(2, 8, 7, 3, NAVY)
    g.line(13, 8, 8, 3, NAVY)
    return g


def g_down():
    g = Glyph()
    for i in range(6):
        g.line(7 - i, 12 - i, 8 + i, 12 - i, BLUE)
    g.fill(6, 2, 9, 6, BLUE)
    g.line(2, 7, 7, 12, NAVY)
    g.line(13, 7, 8, 12, NAVY)
    return g


MAIN_MENU = [g_new, g_open, g_save, g_saveas, g_exit, g_help, g_about, g_add, g_rename,
             g_edit, g_delete, g_sort]
ARROWS = [g_up, g_down]


def write_png(path, glyphs):
    w, h = S * len(glyphs), S
    rows = []
    for y in range(h):
        row = bytearray([0])
        for g in glyphs:
            for x in range(S):
                c = g.px[y][x]
                row += bytes(c) + bytes([0 if c == KEY else 255])
        rows.append(bytes(row))

    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body) & 0xFFFFFFFF)

    png = b"\x89PNG\r\n\x1a\n"
    png += chunk(b"IHDR", struct.pack(">IIBBBBB", w, h, 8, 6, 0, 0, 0))
    png += chunk(b"IDAT", zlib.compress(b"".join(rows), 9))
    png += chunk(b"IEND", b"")
    with open(path, "wb") as f:
        f.write(png)


def cpp_table(name, glyphs):
    out = ["const TPixel %s[%d][256] = {" % (name, len(glyphs))]
    for g in glyphs:
        out.append("    {")
        for y in range(S):
            vals = ", ".join("0x%08X" % (0xFF000000 | c[0] << 16 | c[1] << 8 | c[2]) for c in g.px[y])
            out.append("        " + vals + ",")
        out.append("    },")
    out.append("};")
    return "\n".join(out)


def main():
    main_menu = [f() for f in MAIN_MENU]
    arrows = [f() for f in ARROWS]
    write_png(os.path.join(HERE, "MainMenuImageList.png"), main_menu)
    write_png(os.path.join(HERE, "ArrowImageList.png"), arrows)
    src = [
        "// Generated by resources/images/make_glyphs.py; edit the script, not this file.",
        "// clang-format off",
        '#include "controls/WgGlyphs.h"',
        "",
        "namespace {",
        "",
        cpp_table("MainMenuPixels", main_menu),
        "",
        cpp_table("ArrowPixels", arrows),
        "",
        "template <std::size_t N> TWgImageList MakeList(const TPixel (&Pixels)[N][256]) {",
        "    TWgImageList list(16, 16);",
        "    for (const auto& glyph : Pixels) {",
        "        TMemoryBitmap image(16, 16);",
        "        for (int y = 0; y < 16; ++y)",
        "            for (int x = 0; x < 16; ++x)",
        "                image.SetPixel(x, y, glyph[y * 16 + x]);",
        "        list.Add(std::move(image));",
        "    }",
        "    return list;",
        "}",
        "",
        "} // namespace",
        "",
        "TWgImageList MainMenuGlyphs() {",
        "    return MakeList(MainMenuPixels);",
        "}",
        "",
        "TWgImageList ArrowGlyphs() {",
        "    return MakeList(ArrowPixels);",
        "}",
        "",
    ]
    with open(os.path.join(ROOT, "src", "controls", "WgGlyphs.cpp"), "w") as f:
        f.write("\n".join(src))


if __name__ == "__main__":
    main()
