#!/usr/bin/env python3
"""Draws the two skins of Lexsmith, light and dark, as folders of an ini text
and 24-bit BMP files, ready for `skinpack pack`.

    python3 scripts/skins/make_skins.py OUTDIR [--preview]

writes OUTDIR/light and OUTDIR/dark (and a preview PNG of each with
--preview). Standard library only.
"""

import os
import struct
import sys
import zlib

MAGENTA = (255, 0, 255)


# ---------------------------------------------------------------- raster

class Image:
    def __init__(self, w, h, fill=MAGENTA):
        self.w, self.h = w, h
        self.px = [[fill] * w for _ in range(h)]

    def put(self, x, y, c):
        if 0 <= x < self.w and 0 <= y < self.h:
            self.px[y][x] = c

    def get(self, x, y):
        return self.px[y][x]

    def fill(self, x0, y0, x1, y1, c):
        for y in range(max(y0, 0), min(y1, self.h)):
            row = self.px[y]
            for x in range(max(x0, 0), min(x1, self.w)):
                row[x] = c

    def vgrad(self, x0, y0, x1, y1, c0, c1):
        n = max(y1 - y0, 1)
        for i, y in enumerate(range(y0, y1)):
            t = i / (n - 1) if n > 1 else 0
            self.fill(x0, y, x1, y + 1, mix(c0, c1, t))

    def hgrad(self, x0, y0, x1, y1, c0, c1):
        n = max(x1 - x0, 1)
        for i, x in enumerate(range(x0, x1)):
            t = i / (n - 1) if n > 1 else 0
            self.fill(x, y0, x + 1, y1, mix(c0, c1, t))

    def frame(self, x0, y0, x1, y1, c):
        self.fill(x0, y0, x1, y0 + 1, c)
        self.fill(x0, y1 - 1, x1, y1, c)
        self.fill(x0, y0, x0 + 1, y1, c)
        self.fill(x1 - 1, y0, x1, y1, c)

    def blit(self, src, x, y, transparent=False):
        for sy in range(src.h):
            for sx in range(src.w):
                c = src.px[sy][sx]
                if transparent and c == MAGENTA:
                    continue
                self.put(x + sx, y + sy, c)

    def pattern(self, x, y, rows, c):
        for dy, row in enumerate(rows):
            for dx, ch in enumerate(row):
                if ch == '#':
                    self.put(x + dx, y + dy, c)
                elif ch == '+':
                    self.put(x + dx, y + dy, mix(self.get_safe(x + dx, y + dy), c, 0.45))

    def get_safe(self, x, y):
        if 0 <= x < self.w and 0 <= y < self.h:
            c = self.px[y][x]
            return (128, 128, 128) if c == MAGENTA else c
        return (128, 128, 128)

    def round_corners(self, x0, y0, x1, y1, radius, corners="tl tr bl br", outline=None):
        """Makes the pixels outside a rounded corner magenta; with an outline
        colour, draws the arc."""
        arcs = {2: ["11", "1"], 3: ["111", "1", "1"], 4: ["1111", "11", "1", "1"],
                5: ["11111", "111", "11", "1", "1"], 6: ["111111", "1111", "11", "1", "1", "1"]}
        shape = arcs[radius]
        for key in corners.split():
            for dy, row in enumerate(shape):
                n = len(row)
                for dx in range(n):
                    x = x0 + dx if key[1] == 'l' else x1 - 1 - dx
                    y = y0 + dy if key[0] == 't' else y1 - 1 - dy
                    self.put(x, y, MAGENTA)
                if outline is not None:
                    x = x0 + n if key[1] == 'l' else x1 - 1 - n
                    y = y0 + dy if key[0] == 't' else y1 - 1 - dy
                    self.put(x, y, outline)
            if outline is not None:
                # the diagonal steps between the arc rows
                for dy in range(len(shape) - 1):
                    n, m = len(shape[dy]), len(shape[dy + 1])
                    for k in range(m, n):
                        x = x0 + k if key[1] == 'l' else x1 - 1 - k
                        y = y0 + dy + 1 if key[0] == 't' else y1 - 2 - dy
                        self.put(x, y, outline)


def mix(a, b, t):
    return tuple(int(round(a[i] + (b[i] - a[i]) * t)) for i in range(3))


def strip(cells):
    """Cells side by side, all of one height."""
    w = sum(c.w for c in cells)
    out = Image(w, cells[0].h)
    x = 0
    for c in cells:
        out.blit(c, x, 0)
        x += c.w
    return out


def stack(cells):
    out = Image(cells[0].w, sum(c.h for c in cells))
    y = 0
    for c in cells:
        out.blit(c, 0, y)
        y += c.h
    return out


def bmp_bytes(img):
    stride = (img.w * 3 + 3) & ~3
    data = bytearray()
    for y in range(img.h - 1, -1, -1):
        row = bytearray()
        for (r, g, b) in img.px[y]:
            row += bytes((b, g, r))
        row += b"\0" * (stride - len(row))
        data += row
    header = struct.pack("<2sIHHI", b"BM", 54 + len(data), 0, 0, 54)
    info = struct.pack("<IiiHHIIiiII", 40, img.w, img.h, 1, 24, 0, len(data), 2835, 2835, 0, 0)
    return header + info + bytes(data)


def png_bytes(img, scale=1):
    raw = bytearray()
    for y in range(img.h * scale):
        raw.append(0)
        for x in range(img.w * scale):
            raw += bytes(img.px[y // scale][x // scale])

    def chunk(tag, payload):
        c = struct.pack(">I", len(payload)) + tag + payload
        return c + struct.pack(">I", zlib.crc32(tag + payload) & 0xFFFFFFFF)

    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", img.w * scale,
                                                              img.h * scale, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(bytes(raw), 9)) + chunk(b"IEND", b""))


# ---------------------------------------------------------------- glyphs

GLYPHS = {
    "close": ["#.....#", ".#...#.", "..#.#..", "...#...", "..#.#..", ".#...#.", "#.....#"],
    "max": ["#########", "#########", "#.......#", "#.......#", "#.......#", "#.......#",
            "#.......#", "#########"],
    "restore": ["..######", "..######", "..#....#", "######.#", "######.#", "#....###",
                "#....#..", "#....#..", "######.."],
    "min": ["########", "########"],
    "down": ["#######", ".#####.", "..###..", "...#..."],
    "up": ["...#...", "..###..", ".#####.", "#######"],
    "left": ["...#", "..##", ".###", "####", ".###", "..##", "...#"],
    "right": ["#...", "##..", "###.", "####", "###.", "##..", "#..."],
    "check": ["......##", ".....##.", "#...##..", "##.##...", ".###....", "..#....."],
    "dot": [".##.", "####", "####", ".##."],
    "gripv": ["#####", ".....", "#####", ".....", "#####"],
    "griph": ["#.#.#", "#.#.#", "#.#.#", "#.#.#", "#.#.#"],
}


def glyph_size(name):
    rows = GLYPHS[name]
    return len(rows[0]), len(rows)


def centred(img, name, c, x0=0, y0=0, w=None, h=None, dx=0, dy=0):
    w = img.w if w is None else w
    h = img.h if h is None else h
    gw, gh = glyph_size(name)
    img.pattern(x0 + (w - gw) // 2 + dx, y0 + (h - gh) // 2 + dy, GLYPHS[name], c)


# ---------------------------------------------------------------- themes

LIGHT = dict(
    name="Lexsmith Light",
    title=((76, 128, 196), (54, 98, 162)), title_off=((196, 202, 212), (176, 183, 195)),
    title_line=(40, 72, 124), title_line_off=(150, 156, 168),
    title_text=(255, 255, 255), title_text_off=(70, 76, 86),
    border=(54, 98, 162), border_off=(176, 183, 195),
    face=(236, 238, 242), face_hi=(250, 251, 253), face_lo=(218, 222, 229),
    window=(255, 255, 255), text=(28, 30, 34), text_off=(150, 154, 160),
    line=(168, 174, 186), line_dark=(120, 128, 142), shadow=(160, 166, 176),
    hover=(224, 236, 252), hover_line=(92, 146, 214), press=(196, 216, 242),
    accent=(46, 116, 204), accent_hi=(104, 164, 236), accent_text=(255, 255, 255),
    close_hover=(214, 58, 52), close_press=(170, 38, 34),
    menubar=((242, 244, 247), (230, 233, 238)), menu=(251, 252, 253),
    glyph=(255, 255, 255), glyph_off=(104, 110, 122), check=(36, 98, 178),
    track=(226, 229, 234), thumb=((198, 204, 214), (182, 189, 201)), thumb_line=(150, 157, 170),
    custom=[(46, 116, 204), (196, 214, 238), (92, 128, 180), (96, 112, 140), (128, 84, 190),
            (40, 160, 170), (120, 120, 120), (0, 0, 0), (255, 255, 255), (250, 232, 160)],
)

DARK = dict(
    name="Lexsmith Dark",
    # The window's own face stays light: the editor's panels, headers and
    # captions write black text on it. The frame and the menu bar are dark.
    window_face=(206, 209, 214),
    title=((52, 55, 62), (38, 40, 46)), title_off=((58, 60, 65), (50, 52, 57)),
    title_line=(22, 23, 26), title_line_off=(30, 31, 34),
    title_text=(232, 234, 238), title_text_off=(130, 134, 140),
    border=(38, 40, 46), border_off=(50, 52, 57),
    face=(45, 47, 52), face_hi=(62, 65, 71), face_lo=(36, 38, 42),
    window=(30, 31, 35), text=(222, 224, 228), text_off=(110, 114, 120),
    line=(66, 70, 78), line_dark=(84, 88, 96), shadow=(28, 29, 32),
    hover=(60, 66, 78), hover_line=(86, 156, 222), press=(34, 72, 110),
    accent=(38, 132, 214), accent_hi=(86, 168, 238), accent_text=(255, 255, 255),
    close_hover=(200, 50, 46), close_press=(150, 32, 30),
    menubar=((44, 46, 51), (38, 40, 45)), menu=(40, 42, 47),
    glyph=(220, 222, 226), glyph_off=(120, 124, 130), check=(98, 176, 244),
    track=(36, 38, 42), thumb=((84, 88, 96), (72, 76, 84)), thumb_line=(100, 105, 115),
    custom=[(86, 168, 238), (120, 130, 150), (24, 25, 28), (70, 74, 82), (170, 128, 230),
            (80, 196, 204), (150, 150, 150), (0, 0, 0), (255, 255, 255), (90, 80, 40)],
)


def rgb_text(c):
    return "%d,%d,%d" % c


# ---------------------------------------------------------------- images

TITLE_H, SIDE_W, BOTTOM_H = 30, 4, 4


def crop(img, x0, y0, x1, y1):
    out = Image(x1 - x0, y1 - y0)
    for y in range(y0, y1):
        out.px[y - y0] = img.px[y][x0:x1]
    return out


def window_frames(t):
    """The whole frame of a small window, active and inactive, drawn in one
    piece and then cut into the four parts the painter puts together: the
    left and right parts carry the rounded corners of the title and of the
    bottom, so the parts meet without a seam at any window size."""
    w, h = 120, TITLE_H + 8 + BOTTOM_H
    parts = {"top": [], "left": [], "right": [], "bottom": []}
    for grad, col, line in ((t["title"], t["border"], t["title_line"]),
                            (t["title_off"], t["border_off"], t["title_line_off"])):
        img = Image(w, h, col)
        img.vgrad(0, 0, w, TITLE_H, grad[0], grad[1])
        img.fill(1, 1, w - 1, 2, mix(grad[0], (255, 255, 255), 0.25))
        img.fill(SIDE_W - 1, TITLE_H, SIDE_W, h - BOTTOM_H, mix(col, line, 0.5))
        img.fill(w - SIDE_W, TITLE_H, w - SIDE_W + 1, h - BOTTOM_H, mix(col, line, 0.5))
        img.fill(SIDE_W, h - BOTTOM_H, w - SIDE_W, h - BOTTOM_H + 1, mix(col, line, 0.5))
        img.frame(0, 0, w, h, line)
        img.round_corners(0, 0, w, h, 5, "tl tr", outline=line)
        img.round_corners(0, 0, w, h, 2, "bl br", outline=line)
        parts["left"].append(crop(img, 0, 0, SIDE_W, h))
        parts["right"].append(crop(img, w - SIDE_W, 0, w, h))
        parts["top"].append(crop(img, SIDE_W, 0, w - SIDE_W, TITLE_H))
        parts["bottom"].append(crop(img, SIDE_W, h - BOTTOM_H, w - SIDE_W, h))
    return parts


def title_button(t, glyph):
    """4 frames: normal, pressed, hover, inactive; 28 by 20."""
    cells = []
    is_close = glyph == "close"
    top = t["title"]
    for state in ("normal", "pressed", "hover", "inactive"):
        img = Image(28, 20)
        col = t["glyph"] if state != "inactive" else t["title_text_off"]
        if state == "hover":
            back = t["close_hover"] if is_close else mix(top[0], (255, 255, 255), 0.18)
            img.fill(0, 0, 28, 20, back)
            img.round_corners(0, 0, 28, 20, 3)
            col = (255, 255, 255) if is_close else col
        elif state == "pressed":
            back = t["close_press"] if is_close else mix(top[1], (0, 0, 0), 0.2)
            img.fill(0, 0, 28, 20, back)
            img.round_corners(0, 0, 28, 20, 3)
            col = (255, 255, 255) if is_close else col
        centred(img, glyph, col, dy=0)
        cells.append(img)
    return strip(cells)


def mdi_controls(t):
    cells = []
    for glyph in ("min", "restore", "close"):
        for state in ("normal", "pressed", "inactive", "hover"):
            img = Image(16, 14)
            col = t["text"] if state != "inactive" else t["text_off"]
            if state in ("pressed", "hover"):
                img.fill(0, 0, 16, 14, t["press"] if state == "pressed" else t["hover"])
                img.frame(0, 0, 16, 14, t["hover_line"])
            g = {"min": ["######"], "restore": ["..####", "..#..#", "####.#", "#..###", "#..#..",
                                                 "####.."],
                 "close": ["#....#", ".#..#.", "..##..", "..##..", ".#..#.", "#....#"]}[glyph]
            img.pattern((16 - len(g[0])) // 2, (14 - len(g)) // 2 + (4 if glyph == "min" else 0),
                        g, col)
            cells.append(img)
    return strip(cells)


def rounded_box(w, h, fill_top, fill_bottom, line, radius=3, inner=None):
    img = Image(w, h)
    img.vgrad(0, 0, w, h, fill_top, fill_bottom)
    if inner is not None:
        img.fill(1, 1, w - 1, 2, inner)
    img.frame(0, 0, w, h, line)
    img.round_corners(0, 0, w, h, radius, outline=line)
    return img


def push_buttons(t):
    """5 frames: normal, pressed, disabled, hover, focused."""
    face = t["face"]
    normal = rounded_box(24, 22, t["face_hi"], t["face_lo"], t["line_dark"], 3, t["face_hi"])
    pressed = rounded_box(24, 22, t["press"], mix(t["press"], t["face_hi"], 0.4),
                          t["hover_line"], 3)
    disabled = rounded_box(24, 22, face, face, t["line"], 3)
    hover = rounded_box(24, 22, mix(t["hover"], t["face_hi"], 0.5), t["hover"],
                        t["hover_line"], 3)
    focused = rounded_box(24, 22, t["face_hi"], t["face_lo"], t["accent"], 3, t["face_hi"])
    focused.frame(1, 1, 23, 21, mix(t["accent"], t["face_hi"], 0.55))
    focused.round_corners(0, 0, 24, 22, 3, outline=t["accent"])
    return strip([normal, pressed, disabled, hover, focused])


def check_strip(t, radio):
    """4 cells of 16: unchecked, checked, unchecked disabled, checked
    disabled; the box or circle on the face colour."""
    cells = []
    for checked, enabled in ((False, True), (True, True), (False, False), (True, False)):
        img = Image(16, 16, t["face"])
        line = t["line_dark"] if enabled else t["line"]
        back = t["window"] if enabled else t["face"]
        img.fill(1, 1, 15, 15, back)
        img.frame(1, 1, 15, 15, line)
        if radio:
            img.round_corners(1, 1, 15, 15, 4, outline=line)
            for y in range(16):
                for x in range(16):
                    if img.get(x, y) == MAGENTA:
                        img.put(x, y, t["face"])
        else:
            img.round_corners(1, 1, 15, 15, 2, outline=line)
            for y in range(16):
                for x in range(16):
                    if img.get(x, y) == MAGENTA:
                        img.put(x, y, t["face"])
        if checked:
            col = t["check"] if enabled else t["text_off"]
            if radio:
                img.pattern(6, 6, GLYPHS["dot"], col)
            else:
                img.pattern(4, 5, GLYPHS["check"], col)
        cells.append(img)
    return strip(cells)


def sunk_edge(t):
    """Edit frame, 4 frames: normal, focused, disabled, hover; 20 by 21."""
    cells = []
    for line, back in ((t["line"], t["window"]), (t["accent"], t["window"]),
                       (t["line"], t["face"]), (t["hover_line"], t["window"])):
        img = Image(20, 21, back)
        img.frame(0, 0, 20, 21, line)
        img.fill(1, 1, 19, 2, mix(back, t["shadow"], 0.25))
        cells.append(img)
    return strip(cells)


def combo_button(t):
    """The button part of a combo box, 4 frames: normal, pressed, disabled,
    hover; 19 by 21 with a left separator."""
    cells = []
    for back, line in ((t["face_hi"], t["line"]), (t["press"], t["accent"]),
                       (t["face"], t["line"]), (t["hover"], t["hover_line"])):
        img = Image(19, 21, back)
        img.vgrad(1, 1, 18, 20, back, mix(back, t["face_lo"], 0.6))
        img.frame(0, 0, 19, 21, line)
        img.fill(0, 0, 1, 21, mix(line, back, 0.3))
        cells.append(img)
    return strip(cells)


def combo_arrows(t):
    cells = []
    for col in (t["text"], t["accent"], t["text_off"], t["text"], t["text"]):
        img = Image(9, 6)
        centred(img, "down", col)
        cells.append(img)
    return strip(cells)


def arrow_cell(t, glyph, state):
    img = Image(17, 17, t["track"])
    if state in ("pressed", "hover"):
        back = t["press"] if state == "pressed" else t["hover"]
        img.fill(1, 1, 16, 16, back)
        img.frame(1, 1, 16, 16, t["hover_line"])
        img.round_corners(1, 1, 16, 16, 2, outline=t["hover_line"])
        for y in range(17):
            for x in range(17):
                if img.get(x, y) == MAGENTA:
                    img.put(x, y, t["track"])
    col = t["text_off"] if state == "disabled" else t["text"]
    gw, gh = glyph_size(glyph)
    img.pattern((17 - gw) // 2, (17 - gh) // 2, GLYPHS[glyph], col)
    return img


def scrollbar_strip(t):
    cells = []
    for glyph in ("left", "right", "up", "down"):
        for state in ("normal", "pressed", "disabled", "hover"):
            cells.append(arrow_cell(t, glyph, state))
    for grip in ("griph", "gripv"):
        for col in (t["thumb_line"], t["accent_text"], t["accent"]):
            img = Image(17, 17)
            centred(img, grip, col)
            cells.append(img)
    cells.append(Image(17, 17))
    return strip(cells)


def scroll_track(t, vertical):
    cells = []
    for back in (t["track"], t["face_lo"], t["face"], t["track"]):
        img = Image(8, 17, back)
        img.fill(0, 0, 8, 1, mix(back, t["shadow"], 0.35))
        if vertical:
            img = Image(17, 8, back)
            img.fill(0, 0, 1, 8, mix(back, t["shadow"], 0.35))
        cells.append(img)
    return strip(cells)


def scroll_thumb(t, vertical):
    cells = []
    top, bottom = t["thumb"]
    for a, b, line in ((top, bottom, t["thumb_line"]),
                       (t["accent_hi"], t["accent"], t["accent"]),
                       (mix(top, t["accent_hi"], 0.35), mix(bottom, t["accent"], 0.35),
                        t["hover_line"])):
        w, h = (17, 16) if vertical else (16, 17)
        img = Image(w, h, t["track"])
        x0, y0, x1, y1 = (2, 0, 15, 16) if vertical else (0, 2, 16, 15)
        if vertical:
            img.hgrad(x0, y0, x1, y1, a, b)
        else:
            img.vgrad(x0, y0, x1, y1, a, b)
        img.frame(x0, y0, x1, y1, line)
        img.round_corners(x0, y0, x1, y1, 3, outline=line)
        for y in range(h):
            for x in range(w):
                if img.get(x, y) == MAGENTA:
                    img.put(x, y, t["track"])
        cells.append(img)
    return strip(cells)


def tabs(t):
    """5 frames: normal, selected, disabled, hover, selected-hover; 40 by 24
    on magenta with rounded top corners."""
    cells = []
    specs = ((t["face_lo"], t["face"], t["line"]), (t["face_hi"], t["window"], t["line_dark"]),
             (t["face"], t["face"], t["line"]), (t["hover"], t["face"], t["hover_line"]),
             (t["face_hi"], t["window"], t["accent"]))
    for i, (a, b, line) in enumerate(specs):
        img = Image(40, 24)
        y0 = 0 if i in (1, 4) else 2
        img.vgrad(0, y0, 40, 24, a, b)
        img.fill(0, y0, 40, y0 + 1, line)
        img.fill(0, y0, 1, 24, line)
        img.fill(39, y0, 40, 24, line)
        if i in (1, 4):
            img.fill(1, y0 + 1, 39, y0 + 3, t["accent"])
        img.round_corners(0, y0, 40, 24, 3, "tl tr", outline=line)
        cells.append(img)
    return strip(cells)


def tab_pane(t):
    img = Image(24, 24, t["window"] if t is LIGHT else t["face_hi"])
    img.frame(0, 0, 24, 24, t["line_dark"] if t is LIGHT else t["line"])
    return img


def menubar(t):
    frames = []
    for k in (0, 1):
        a, b = t["menubar"]
        if k:
            a, b = mix(a, t["face"], 0.5), mix(b, t["face"], 0.5)
        img = Image(32, 20)
        img.vgrad(0, 0, 32, 20, a, b)
        img.fill(0, 19, 32, 20, t["line"])
        frames.append(img)
    return stack(frames)


def menu_item(t):
    """5 frames: normal, separator, disabled, selected, (unused).

    A separator takes the bottom rows of the second frame that fit its
    height, magenta showing the menu through: an etched line there. The
    selected frame is dark enough for the highlight text on it."""
    cells = []
    for i in range(5):
        img = Image(24, 20, t["menu"])
        if i == 1:
            img.fill(0, 0, 24, 20, MAGENTA)
            img.fill(4, 15, 20, 16, t["line_dark"])
            img.fill(4, 16, 20, 17, mix(t["line_dark"], t["menu"], 0.75))
        if i == 3:
            img.fill(2, 1, 22, 19, mix(t["accent"], t["menu"], 0.1))
            img.frame(2, 1, 22, 19, mix(t["accent"], t["line_dark"], 0.3))
            img.round_corners(2, 1, 22, 19, 2, outline=mix(t["accent"], t["line_dark"], 0.3))
            for y in range(20):
                for x in range(24):
                    if img.get(x, y) == MAGENTA:
                        img.put(x, y, t["menu"])
        cells.append(img)
    return strip(cells)


def menu_background(t):
    img = Image(24, 24, t["menu"])
    img.frame(0, 0, 24, 24, t["line_dark"])
    img.frame(1, 1, 23, 23, t["menu"])
    img.frame(2, 2, 22, 22, t["menu"])
    return img


def progress(t):
    trough = Image(24, 16, t["window"] if t is LIGHT else t["face_lo"])
    trough.frame(0, 0, 24, 16, t["line"])
    bar = Image(24, 16)
    bar.vgrad(0, 0, 24, 16, t["accent_hi"], t["accent"])
    bar.fill(0, 0, 24, 1, mix(t["accent_hi"], (255, 255, 255), 0.4))
    bar.frame(0, 0, 24, 16, mix(t["accent"], (0, 0, 0), 0.2))
    return strip([trough, bar])


def progress_chunk(t):
    img = Image(8, 12)
    img.vgrad(0, 0, 7, 12, t["accent_hi"], t["accent"])
    return img


def headerbar(t):
    cells = []
    for a, b in ((t["face_hi"], t["face_lo"]), (t["press"], t["face"]), (t["face"], t["face"]),
                 (t["hover"], t["face_hi"]), (t["face_hi"], t["face_lo"])):
        img = Image(24, 22)
        img.vgrad(0, 0, 24, 22, a, b)
        img.fill(0, 21, 24, 22, t["line"])
        img.fill(23, 3, 24, 19, t["line"])
        cells.append(img)
    return strip(cells)


def status_edges(t):
    cells = []
    for line in (t["line"], t["shadow"], t["line"]):
        img = Image(16, 20, t["face"])
        img.fill(0, 0, 16, 1, line)
        img.fill(15, 3, 16, 17, line)
        cells.append(img)
    return strip(cells)


def toolbars(t):
    """Tool button faces, 5 frames: normal, pressed, disabled, hover, down."""
    cells = []
    for i in range(5):
        img = Image(24, 24)
        if i == 0 or i == 2:
            img.fill(0, 0, 24, 24, MAGENTA)
        else:
            back = {1: t["press"], 3: t["hover"], 4: mix(t["press"], t["face"], 0.4)}[i]
            img = rounded_box(24, 24, back, back, t["hover_line"], 2)
        cells.append(img)
    return strip(cells)


def group_edge(t):
    cells = []
    for line in (t["line"], t["line"]):
        img = Image(16, 16)
        img.fill(1, 1, 15, 15, t["face"])
        img.frame(0, 0, 16, 16, line)
        img.round_corners(0, 0, 16, 16, 3, outline=line)
        cells.append(img)
    return strip(cells)


def group_label(t):
    img = Image(16, 18, t["face"])
    return img


def track_thumb(t, kind):
    """Track bar thumbs: 5 frames; kind is horz, vert, left, right, up, down."""
    w, h = (11, 20) if kind in ("horz", "left", "right") else (20, 11)
    if kind in ("left", "right"):
        w, h = 20, 11
    if kind in ("up", "down"):
        w, h = 11, 20
    cells = []
    for a, b, line in ((t["face_hi"], t["face_lo"], t["line_dark"]),
                       (t["press"], t["face"], t["accent"]),
                       (t["face"], t["face"], t["line"]),
                       (t["hover"], t["face_hi"], t["hover_line"]),
                       (t["face_hi"], t["face_lo"], t["accent"])):
        img = Image(w, h)
        img.vgrad(0, 0, w, h, a, b)
        img.frame(0, 0, w, h, line)
        img.round_corners(0, 0, w, h, 2, outline=line)
        cells.append(img)
    return strip(cells)


def updown(t, vertical):
    """8 frames: the four states (normal, pressed, disabled, hover) of the
    first arrow, then of the second."""
    cells = []
    glyphs = ("up", "down") if vertical else ("left", "right")
    for glyph in glyphs:
        for state in ("normal", "pressed", "disabled", "hover"):
            back = {"normal": t["face_hi"], "pressed": t["press"], "disabled": t["face"],
                    "hover": t["hover"]}[state]
            img = Image(16, 11, back)
            img.frame(0, 0, 16, 11, t["line"])
            col = t["text_off"] if state == "disabled" else t["text"]
            if vertical:
                img.pattern(5, 4, GLYPHS[glyph][1:] if glyph == "up" else GLYPHS[glyph][:3],
                            col)
            else:
                img.pattern(6, 2, GLYPHS[glyph], col)
            cells.append(img)
    return strip(cells)


def track_groove(t, vertical):
    img = Image(16, 4, t["face"])
    img.fill(0, 0, 16, 1, t["shadow"])
    img.fill(0, 1, 16, 2, t["line_dark"])
    img.fill(0, 2, 16, 3, t["face_lo"])
    img.fill(0, 3, 16, 4, t["face_hi"])
    if vertical:
        out = Image(4, 16)
        for y in range(16):
            for x in range(4):
                out.put(x, y, img.get(y, 3 - x))
        return out
    return img


# ---------------------------------------------------------------- the skin

def make_skin(t, out):
    os.makedirs(out, exist_ok=True)
    files = {}

    def save(name, img):
        files[name] = img
        with open(os.path.join(out, name), "wb") as f:
            f.write(bmp_bytes(img))
        return name

    frames = window_frames(t)
    save("top.bmp", stack(frames["top"]))
    save("left.bmp", strip(frames["left"]))
    save("right.bmp", strip(frames["right"]))
    save("bottom.bmp", stack(frames["bottom"]))
    save("close.bmp", title_button(t, "close"))
    save("maximize.bmp", title_button(t, "max"))
    save("restore.bmp", title_button(t, "restore"))
    save("minimize.bmp", title_button(t, "min"))
    save("mdicontrols.bmp", mdi_controls(t))
    save("buttons.bmp", push_buttons(t))
    save("check.bmp", check_strip(t, False))
    save("radio.bmp", check_strip(t, True))
    save("sunkedge.bmp", sunk_edge(t))
    save("combobutton.bmp", combo_button(t))
    save("comboarrows.bmp", combo_arrows(t))
    save("scrollbar.bmp", scrollbar_strip(t))
    save("horzscroll.bmp", scroll_track(t, False))
    save("vertscroll.bmp", scroll_track(t, True))
    save("horzthumb.bmp", scroll_thumb(t, False))
    save("vertthumb.bmp", scroll_thumb(t, True))
    save("tabs.bmp", tabs(t))
    save("tabpane.bmp", tab_pane(t))
    save("menubar.bmp", menubar(t))
    save("menuitem.bmp", menu_item(t))
    save("menuback.bmp", menu_background(t))
    save("progress.bmp", progress(t))
    save("chunk.bmp", progress_chunk(t))
    save("headerbar.bmp", headerbar(t))
    save("statusbar.bmp", status_edges(t))
    save("toolbars.bmp", toolbars(t))
    save("groupedge.bmp", group_edge(t))
    save("grouplabel.bmp", group_label(t))
    for kind in ("horz", "vert", "left", "right", "up", "down"):
        save("thumb%s.bmp" % kind, track_thumb(t, kind))
    save("updownhorz.bmp", updown(t, False))
    save("updownvert.bmp", updown(t, True))
    save("track.bmp", track_groove(t, False))
    save("trackvert.bmp", track_groove(t, True))

    c = t
    ini = f"""; {t['name']}: drawn by scripts/skins/make_skins.py, packed by skinpack.
[TitlebarSkin]
SkinName={t['name']}

[Personality]
Top=top.bmp
TopFrame=2
TopTopHeight=12
TopBotHeight=12
TopStretch=1
TopTrans=1
Left=left.bmp
LeftFrame=2
LeftTopHeight=30
LeftBotHeight=4
LeftStretch=1
LeftTrans=1
Right=right.bmp
RightFrame=2
RightTopHeight=30
RightBotHeight=4
RightStretch=1
RightTrans=1
Bottom=bottom.bmp
BottomFrame=2
BottomTopHeight=4
BottomBotHeight=4
BottomStretch=1
BottomTrans=1
TextShift=30
TextShiftVert=0
TextRightClip=100
TextAlignment=0
ActiveTextR={c['title_text'][0]}
ActiveTextG={c['title_text'][1]}
ActiveTextB={c['title_text'][2]}
InActiveTextR={c['title_text_off'][0]}
InActiveTextG={c['title_text_off'][1]}
InActiveTextB={c['title_text_off'][2]}
menuBar=menubar.bmp
TileMenu=1
TileLeftMenu=2
TileRightMenu=2

[Fonts]
FontHeight=14

[Colours]
WindowText={rgb_text(c['text'])}
ButtonText={rgb_text(c['text'])}
ButtonFace={rgb_text(c.get('window_face', c['face']))}
ButtonHilight={rgb_text(c['face_hi'])}
Buttonlight={rgb_text(c['face_hi'])}
ButtonShadow={rgb_text(c['shadow'])}
ButtonDkShadow={rgb_text(c['line_dark'])}
Scrollbar={rgb_text(c['track'])}
HilightText={rgb_text(c['accent_text'])}
Hilight={rgb_text(c['accent'])}
Menubar={rgb_text(c['menubar'][0])}
MenuBarText={rgb_text(c['text'])}
Menu={rgb_text(c['menu'])}
MenuText={rgb_text(c['text'])}
TitleTextActive={rgb_text(c['title_text'])}
TitleTextNoActive={rgb_text(c['title_text_off'])}

[Colour.Window]
color={rgb_text(c['window'])}

[Colour.Accent]
color={rgb_text(c['accent'])}

[Customcolors]
""" + "".join(f"Color{i}={rgb_text(col)}\n" for i, col in enumerate(c["custom"])) + f"""
[Button.SysMenu]
Action=3
Align=0
Xcoord=8
Ycoord=7
Visibility=0
frame=1

[Button.Close]
ButtonImage=close.bmp
Action=0
Align=1
Xcoord=34
Ycoord=5
Visibility=0
frame=4

[Button.Maximize]
ButtonImage=maximize.bmp
Action=1
Align=1
Xcoord=64
Ycoord=5
Visibility=2
frame=4

[Button.Restore]
ButtonImage=restore.bmp
Action=1
Align=1
Xcoord=64
Ycoord=5
Visibility=1
frame=4

[Button.Minimize]
ButtonImage=minimize.bmp
Action=2
Align=1
Xcoord=94
Ycoord=5
Visibility=0
frame=4

[MDICONTROLS]
Image=mdicontrols.bmp

[Buttons]
Bitmap=buttons.bmp
LeftWidth=4
TopHeight=4
RightWidth=4
BottomHeight=4
Trans=1
Tile=0
CheckButton=check.bmp
RadioButton=radio.bmp
CheckButtonFrame=4
RadioButtonFrame=4
NormalColour2={rgb_text(c['text'])}
MouseOverColour2={rgb_text(c['text'])}
PressedColour2={rgb_text(c['text'])}

[SunkEdge]
Image=sunkedge.bmp
LeftWidth=2
TopHeight=2
RightWidth=2
BottomHeight=2

[ComboButton]
Image=combobutton.bmp
LeftWidth=2
TopHeight=2
RightWidth=2
BottomHeight=2

[ExtraImages]
Image=comboarrows.bmp
Trans=1

[Scrollbar]
Image=scrollbar.bmp
Trans=1

[HorzScroll]
Image=horzscroll.bmp
LeftWidth=1
RightWidth=1
TopHeight=1
BottomHeight=1

[VertScroll]
Image=vertscroll.bmp
LeftWidth=1
RightWidth=1
TopHeight=1
BottomHeight=1

[HorzScrollThumb]
Image=horzthumb.bmp
FrameCount=3
LeftWidth=5
RightWidth=5
TopHeight=4
BottomHeight=4
Trans=0

[VertScrollThumb]
Image=vertthumb.bmp
FrameCount=3
LeftWidth=4
RightWidth=4
TopHeight=5
BottomHeight=5
Trans=0

[Tabs]
Image=tabs.bmp
LeftWidth=4
TopHeight=4
RightWidth=4
BottomHeight=2
Trans=1
NormalColour2={rgb_text(c['text'])}
MouseOverColour2={rgb_text(c['text'])}

[Tab.Pane]
Image=tabpane.bmp
LeftWidth=2
TopHeight=2
RightWidth=2
BottomHeight=2

[MenuItem]
Image=menuitem.bmp
LeftWidth=4
TopHeight=3
RightWidth=4
BottomHeight=3

[MenuBackground]
Image=menuback.bmp
LeftWidth=3
TopHeight=3
RightWidth=3
BottomHeight=3

[Progress]
Bitmap=progress.bmp
LeftWidth=2
TopHeight=2
RightWidth=2
BottomHeight=2
Style=0
Trans=0

[Progress.Chunk]
Image=chunk.bmp
Frame=1
Trans=1

[Headerbar]
Image=headerbar.bmp
Frame=5
LeftWidth=2
TopHeight=2
RightWidth=2
BottomHeight=2
NormalColour2={rgb_text(c['text'])}

[StatusBarEdges]
Image=statusbar.bmp
LeftWidth=2
TopHeight=2
RightWidth=2
BottomHeight=2

[ToolBars]
Image=toolbars.bmp
LeftWidth=4
TopHeight=4
RightWidth=4
BottomHeight=4
Trans=1

[GroupBoxEdge]
Image=groupedge.bmp
LeftWidth=5
TopHeight=5
RightWidth=5
BottomHeight=5
Trans=1

[GroupBox]
Image=grouplabel.bmp
BackgroundLeftShift=4
BackgroundRightShift=4
BackgroundAlignment=0

[Trackbar.ThumbHorz]
Image=thumbhorz.bmp
Trans=1

[Trackbar.ThumbVert]
Image=thumbvert.bmp
Trans=1

[Trackbar.ThumbLeft]
Image=thumbleft.bmp
Trans=1

[Trackbar.ThumbRight]
Image=thumbright.bmp
Trans=1

[Trackbar.ThumbUp]
Image=thumbup.bmp
Trans=1

[Trackbar.ThumbDown]
Image=thumbdown.bmp
Trans=1

[UpDown.Horz]
Image=updownhorz.bmp

[UpDown.Vert]
Image=updownvert.bmp

[Track]
Image=track.bmp
LeftWidth=3
TopHeight=1
RightWidth=3
BottomHeight=1
Frame=1

[TRACKVERT]
Image=trackvert.bmp
LeftWidth=1
TopHeight=3
RightWidth=1
BottomHeight=3
Frame=1
"""
    with open(os.path.join(out, "skin.ini"), "wb") as f:
        f.write(ini.replace("\n", "\r\n").encode("ascii"))
    with open(os.path.join(out, "files.lst"), "w") as f:
        f.write("skin.ini\n" + "".join(n + "\n" for n in files))
    return files


def mirror(img):
    out = Image(img.w, img.h)
    for y in range(img.h):
        out.px[y] = list(reversed(img.px[y]))
    return out


# ---------------------------------------------------------------- preview

def nine(img, frame, frames, vertical, margins, w, h):
    """Nearest-neighbour nine-slice of one frame, like the engine's."""
    if vertical:
        fh = img.h // frames
        fx, fy, fw = 0, (frame - 1) * fh, img.w
    else:
        fw = img.w // frames
        fx, fy, fh = (frame - 1) * fw, 0, img.h
    l, tp, r, b = margins
    if l + r > w:
        l = r = 0
    if tp + b > h:
        tp = b = 0
    out = Image(w, h)

    def part(dx, dy, dw, dh, sx, sy, sw, sh):
        if dw <= 0 or dh <= 0 or sw <= 0 or sh <= 0:
            return
        for y in range(dh):
            for x in range(dw):
                out.put(dx + x, dy + y, img.get(fx + sx + x * sw // dw, fy + sy + y * sh // dh))

    mw, mh, cw, ch = fw - l - r, fh - tp - b, w - l - r, h - tp - b
    part(0, 0, l, tp, 0, 0, l, tp)
    part(0, h - b, l, b, 0, fh - b, l, b)
    part(w - r, 0, r, tp, fw - r, 0, r, tp)
    part(0, tp, l, ch, 0, tp, l, mh)
    part(l, 0, cw, tp, l, 0, mw, tp)
    part(l, tp, cw, ch, l, tp, mw, mh)
    part(w - r, h - b, r, b, fw - r, fh - b, r, b)
    part(w - r, tp, r, ch, fw - r, tp, r, mh)
    part(l, h - b, cw, b, l, fh - b, mw, b)
    return out


def cell(img, k, n):
    w = img.w // n
    out = Image(w, img.h)
    for y in range(img.h):
        out.px[y] = img.px[y][(k - 1) * w:k * w]
    return out


def preview(t, files, path):
    W, H = 420, 300
    face = t["face"]
    canvas = Image(W + 20, H + 20, (128, 132, 140) if t is LIGHT else (90, 94, 100))
    win = Image(W, H, face)
    # As the engine puts the frame together: the sides full height with the
    # corners, top and bottom between them.
    win.blit(nine(files["left.bmp"], 1, 2, False, (0, 30, 0, 4), 4, H), 0, 0, True)
    win.blit(nine(files["right.bmp"], 1, 2, False, (0, 30, 0, 4), 4, H), W - 4, 0, True)
    win.blit(nine(files["top.bmp"], 1, 2, True, (12, 0, 12, 0), W - 8, 30), 4, 0)
    win.blit(nine(files["bottom.bmp"], 1, 2, True, (4, 0, 4, 0), W - 8, 4), 4, H - 4)
    for name, x in (("close.bmp", 34), ("maximize.bmp", 64), ("minimize.bmp", 94)):
        win.blit(cell(files[name], 3 if name == "close.bmp" else 1, 4), W - x, 5, True)
    win.blit(nine(files["menubar.bmp"], 1, 2, True, (2, 0, 2, 0), W - 8, 20), 4, 30)
    y = 60
    for k, x in ((1, 14), (4, 104), (2, 194), (5, 284)):
        win.blit(nine(files["buttons.bmp"], k, 5, False, (4, 4, 4, 4), 80, 26), x, y, True)
    y = 100
    for k in range(4):
        win.blit(cell(files["check.bmp"], k + 1, 4), 14 + k * 24, y)
        win.blit(cell(files["radio.bmp"], k + 1, 4), 124 + k * 24, y)
    edge = nine(files["sunkedge.bmp"], 1, 4, False, (2, 2, 2, 2), 160, 22)
    win.blit(edge, 240, 96)
    y = 130
    for k, x in ((1, 14), (2, 88), (1, 162)):
        win.blit(nine(files["tabs.bmp"], k, 5, False, (4, 4, 4, 2), 72, 24), x, y, True)
    win.blit(nine(files["tabpane.bmp"], 1, 1, False, (2, 2, 2, 2), 300, 60), 14, 154)
    win.blit(nine(files["progress.bmp"], 1, 2, False, (2, 2, 2, 2), 200, 16), 30, 170)
    win.blit(nine(files["progress.bmp"], 2, 2, False, (2, 2, 2, 2), 120, 16), 30, 170)
    sb = files["scrollbar.bmp"]
    win.blit(nine(files["horzscroll.bmp"], 1, 4, False, (1, 1, 1, 1), 300, 17), 14, 224)
    win.blit(cell(sb, 1, 23), 14, 224, True)
    win.blit(cell(sb, 5, 23), 297, 224, True)
    win.blit(nine(files["horzthumb.bmp"], 1, 3, False, (5, 4, 5, 4), 70, 17), 60, 224)
    win.blit(cell(sb, 17, 23), 86, 224, True)
    win.blit(nine(files["vertscroll.bmp"], 1, 4, False, (1, 1, 1, 1), 17, 180), W - 30, 60)
    win.blit(cell(sb, 9, 23), W - 30, 60, True)
    win.blit(cell(sb, 13, 23), W - 30, 223, True)
    win.blit(nine(files["vertthumb.bmp"], 3, 3, False, (4, 5, 4, 5), 17, 60), W - 30, 100)
    win.blit(cell(sb, 22, 23), W - 30, 122, True)
    win.blit(nine(files["statusbar.bmp"], 1, 3, False, (2, 2, 2, 2), W - 8, 20), 4, H - 24)
    menu = nine(files["menuback.bmp"], 1, 1, False, (3, 3, 3, 3), 120, 70)
    menu.blit(nine(files["menuitem.bmp"], 4, 5, False, (4, 3, 4, 3), 114, 20), 3, 23)
    win.blit(menu, 330 - 120, 50 + 0)
    canvas.blit(win, 10, 10, True)
    with open(path, "wb") as f:
        f.write(png_bytes(canvas, 2))


def main():
    if len(sys.argv) < 2:
        print(__doc__)
        return 2
    out = sys.argv[1]
    for theme, folder in ((LIGHT, "light"), (DARK, "dark")):
        files = make_skin(theme, os.path.join(out, folder))
        if "--preview" in sys.argv:
            preview(theme, files, os.path.join(out, folder + "-preview.png"))
    return 0


if __name__ == "__main__":
    sys.exit(main())
