#!/usr/bin/env python3
"""Draws the pictures on the left side of the wizards as 24-bit BMP files.

  draw_wizard_bitmaps.py OUT_DIR [--rc RC] [--ids H]

Writes OUT_DIR/wizard_<id>.bmp for every wizard picture, optionally a
resource script that names them as BITMAP resources (absolute paths) and a
header with their symbolic IDs. Standard library only: the shapes are filled
as polygons on a canvas three times the size and averaged down, which gives
their edges a smooth border.
"""
import math
import os
import struct
import sys

WIDTH, HEIGHT = 164, 314
SCALE = 3

TOP = (18, 52, 112)
BOTTOM = (86, 140, 204)
WHITE = (255, 255, 255)
INK = (40, 86, 160)
LINE = (196, 210, 228)
ORANGE = (246, 158, 36)
GREEN = (52, 168, 83)
RED = (214, 48, 49)
YELLOW = (255, 206, 64)


def mix(a, b, t):
    return tuple(int(round(a[i] + (b[i] - a[i]) * t)) for i in range(3))


def background(y):
    return mix(TOP, BOTTOM, min(1.0, max(0.0, y / (HEIGHT - 12))))


class Canvas:
    """Rows of RGB bytes at SCALE times the picture size."""

    def __init__(self):
        self.w, self.h = WIDTH * SCALE, HEIGHT * SCALE
        self.rows = []
        for y in range(self.h):
            self.rows.append(bytearray(bytes(background(y / SCALE)) * self.w))

    def fill(self, contours, color):
        """Fills polygons (lists of (x, y) in picture pixels), even-odd rule.
        color is an RGB tuple or a function of the picture row."""
        edges = []
        for pts in contours:
            for i in range(len(pts)):
                (x0, y0), (x1, y1) = pts[i], pts[(i + 1) % len(pts)]
                if y0 != y1:
                    edges.append((x0 * SCALE, y0 * SCALE, x1 * SCALE, y1 * SCALE))
        if not edges:
            return
        top = max(0, int(min(min(e[1], e[3]) for e in edges)))
        bottom = min(self.h, int(math.ceil(max(max(e[1], e[3]) for e in edges))) + 1)
        for y in range(top, bottom):
            cy = y + 0.5
            xs = []
            for x0, y0, x1, y1 in edges:
                if (y0 <= cy < y1) or (y1 <= cy < y0):
                    xs.append(x0 + (cy - y0) * (x1 - x0) / (y1 - y0))
            xs.sort()
            c = color(cy / SCALE) if callable(color) else color
            px = bytes(c)
            row = self.rows[y]
            for a, b in zip(xs[0::2], xs[1::2]):
                start = max(0, int(round(a)))
                end = min(self.w, int(round(b)))
                if end > start:
                    row[start * 3:end * 3] = px * (end - start)

    def pixels(self):
        """The picture at its real size: each pixel the mean of its samples."""
        out = []
        n = SCALE * SCALE
        for y in range(HEIGHT):
            sums = [0] * (self.w * 3)
            for r in self.rows[y * SCALE:(y + 1) * SCALE]:
                sums = [s + v for s, v in zip(sums, r)]
            line = bytearray()
            for x in range(WIDTH):
                base = x * SCALE * 3
                for ch in range(3):
                    total = 0
                    for k in range(SCALE):
                        total += sums[base + k * 3 + ch]
                    line.append((total + n // 2) // n)
            out.append(line)
        return out


# --- shapes: each returns a list of contours -----------------------------

def rect(x, y, w, h):
    return [[(x, y), (x + w, y), (x + w, y + h), (x, y + h)]]


def ellipse(cx, cy, rx, ry, steps=72):
    return [[(cx + rx * math.cos(2 * math.pi * i / steps), cy + ry * math.sin(2 * math.pi * i / steps))
             for i in range(steps)]]


def rounded(x, y, w, h, r, steps=8):
    pts = []
    for cx, cy, start in ((x + w - r, y + r, -90), (x + w - r, y + h - r, 0), (x + r, y + h - r, 90),
                          (x + r, y + r, 180)):
        for i in range(steps + 1):
            a = math.radians(start + 90 * i / steps)
            pts.append((cx + r * math.cos(a), cy + r * math.sin(a)))
    return [pts]


def ring(cx, cy, r, width):
    return ellipse(cx, cy, r, r) + ellipse(cx, cy, r - width, r - width)


def segment(x0, y0, x1, y1, width):
    dx, dy = x1 - x0, y1 - y0
    length = math.hypot(dx, dy)
    nx, ny = -dy / length * width / 2, dx / length * width / 2
    return [[(x0 + nx, y0 + ny), (x1 + nx, y1 + ny), (x1 - nx, y1 - ny), (x0 - nx, y0 - ny)]]


def arrow(x0, y0, x1, y1, width, head):
    """A straight arrow from (x0, y0) with its point at (x1, y1)."""
    dx, dy = x1 - x0, y1 - y0
    length = math.hypot(dx, dy)
    ux, uy = dx / length, dy / length
    bx, by = x1 - ux * head, y1 - uy * head
    nx, ny = -uy, ux
    w, hw = width / 2, head * 0.75
    return [[(x0 + nx * w, y0 + ny * w), (bx + nx * w, by + ny * w), (bx + nx * hw, by + ny * hw), (x1, y1),
             (bx - nx * hw, by - ny * hw), (bx - nx * w, by - ny * w), (x0 - nx * w, y0 - ny * w)]]


def star(cx, cy, outer, inner, points=5):
    pts = []
    for i in range(points * 2):
        r = outer if i % 2 == 0 else inner
        a = -math.pi / 2 + math.pi * i / points
        pts.append((cx + r * math.cos(a), cy + r * math.sin(a)))
    return [pts]


def shadow(y):
    return mix(background(y), (0, 0, 0), 0.35)


# --- motifs ---------------------------------------------------------------

def table(c, x, y, w, rows, cols, row_h=13, highlight=None, highlight_color=None, filled=True):
    """A table card: header row, grid lines, optional highlighted row."""
    h = row_h * (rows + 1)
    c.fill(rounded(x + 4, y + 4, w, h, 3), shadow)
    c.fill(rounded(x, y, w, h, 3), WHITE)
    c.fill(rounded(x, y, w, row_h, 3) + [], INK)
    c.fill(rect(x, y + row_h - 3, w, 3), INK)
    if highlight is not None:
        c.fill(rect(x + 1, y + row_h * (highlight + 1), w - 2, row_h), highlight_color)
    for r in range(1, rows + 1):
        c.fill(rect(x, y + row_h * (r + 1) - 1, w, 1), LINE)
    for k in range(1, cols):
        cx = x + w * k / cols
        c.fill(rect(cx, y + row_h, 1, h - row_h), LINE)
        c.fill(rect(cx, y + 2, 1, row_h - 4), mix(INK, WHITE, 0.35))
    if filled:
        # Short bars stand for the values in the cells.
        for r in range(rows):
            for k in range(cols):
                cw = w / cols
                bar = cw * (0.35 + 0.3 * ((r * 7 + k * 3) % 4) / 3)
                c.fill(rect(x + cw * k + 5, y + row_h * (r + 1) + row_h / 2 - 1.5, bar - 6, 3),
                       (150, 164, 186))
    for k in range(cols):
        cw = w / cols
        c.fill(rect(x + cw * k + 5, y + row_h / 2 - 1.5, cw * 0.5, 3), mix(INK, WHITE, 0.75))


def document(c, x, y, w, h, lines=5):
    fold = w * 0.28
    c.fill([[(x + 4, y + 4), (x + w - fold + 4, y + 4), (x + w + 4, y + fold + 4), (x + w + 4, y + h + 4),
             (x + 4, y + h + 4)]], shadow)
    c.fill([[(x, y), (x + w - fold, y), (x + w, y + fold), (x + w, y + h), (x, y + h)]], WHITE)
    c.fill([[(x + w - fold, y), (x + w, y + fold), (x + w - fold, y + fold)]], (206, 216, 232))
    for i in range(lines):
        ly = y + fold + 6 + i * 7
        if ly + 3 > y + h - 4:
            break
        c.fill(rect(x + 6, ly, (w - 12) * (1.0 if i % 3 != 2 else 0.6), 2.4), (150, 164, 186))


def badge(c, cx, cy, r, color):
    c.fill(ellipse(cx + 2, cy + 2, r, r), shadow)
    c.fill(ellipse(cx, cy, r, r), WHITE)
    c.fill(ellipse(cx, cy, r - 2.5, r - 2.5), color)


def pencil(c, x0, y0, x1, y1, width=9):
    """A pencil lying from its end (x0, y0) to its point (x1, y1)."""
    dx, dy = x1 - x0, y1 - y0
    length = math.hypot(dx, dy)
    ux, uy = dx / length, dy / length
    nx, ny = -uy * width / 2, ux * width / 2
    tip = 14
    bx, by = x1 - ux * tip, y1 - uy * tip
    ex, ey = x0 + ux * 8, y0 + uy * 8
    c.fill([[(x0 + nx + 3, y0 + ny + 3), (bx + nx + 3, by + ny + 3), (x1 + 3, y1 + 3), (bx - nx + 3, by - ny + 3),
             (x0 - nx + 3, y0 - ny + 3)]], shadow)
    c.fill([[(x0 + nx, y0 + ny), (ex + nx, ey + ny), (ex - nx, ey - ny), (x0 - nx, y0 - ny)]], (232, 120, 140))
    c.fill([[(ex + nx, ey + ny), (bx + nx, by + ny), (bx - nx, by - ny), (ex - nx, ey - ny)]], YELLOW)
    c.fill([[(ex, ey), (bx, by), (bx - nx, by - ny), (ex - nx, ey - ny)]], (236, 178, 40))
    c.fill([[(bx + nx, by + ny), (x1, y1), (bx - nx, by - ny)]], (238, 214, 170))
    c.fill([[(x1 - ux * 5 + nx * 0.35, y1 - uy * 5 + ny * 0.35), (x1, y1),
             (x1 - ux * 5 - nx * 0.35, y1 - uy * 5 - ny * 0.35)]], (60, 60, 70))


def database(c, cx, y, rx, h):
    """The cylinder of a database, faint under the motif."""
    body = lambda yy: mix(background(yy), WHITE, 0.16)
    rim = lambda yy: mix(background(yy), WHITE, 0.30)
    ry = rx * 0.28
    c.fill(ellipse(cx, y + h, rx, ry) + [], body)
    c.fill(rect(cx - rx, y, 2 * rx, h), body)
    for band in (h / 3, 2 * h / 3):
        c.fill(ellipse(cx, y + band, rx, ry), rim)
        c.fill(ellipse(cx, y + band - 2, rx, ry), body)
    c.fill(ellipse(cx, y, rx, ry), rim)


def decorate(c):
    # A soft light from the upper right and the database at the foot.
    for r, t in ((150, 0.05), (110, 0.05), (70, 0.05)):
        c.fill(ellipse(WIDTH + 10, -20, r, r), lambda yy, t=t: mix(background(yy), WHITE, t * 3))
    database(c, WIDTH / 2, 232, 46, 44)


TABLE_X, TABLE_Y, TABLE_W = 30, 118, 104


def draw_import(c):  # 10013: a text file flows into a new table
    decorate(c)
    document(c, 18, 30, 50, 64)
    table(c, TABLE_X, TABLE_Y, TABLE_W, 4, 3)
    c.fill(arrow(74, 62, 104, 104, 9, 18), ORANGE)


def draw_add(c):  # 10014: records of another table are added
    decorate(c)
    table(c, 16, 34, 62, 3, 2, row_h=11)
    table(c, TABLE_X, TABLE_Y, TABLE_W, 4, 3, highlight=3, highlight_color=(212, 240, 218))
    c.fill(arrow(84, 66, 108, 106, 9, 18), ORANGE)
    badge(c, 126, 190, 17, GREEN)
    c.fill(rect(118, 187.5, 16, 5), WHITE)
    c.fill(rect(123.5, 182, 5, 16), WHITE)


def draw_create(c):  # 10019: a new, empty table
    decorate(c)
    table(c, TABLE_X, TABLE_Y, TABLE_W, 4, 3, filled=False)
    c.fill(star(50, 62, 26, 11), lambda yy: mix(YELLOW, WHITE, 0.15))
    c.fill(star(50, 62, 15, 6.5), WHITE)
    c.fill(star(96, 40, 10, 4.2), mix(YELLOW, WHITE, 0.4))
    pencil(c, 144, 84, 104, 150)


def draw_delete(c):  # 10020: records are removed
    decorate(c)
    table(c, TABLE_X, TABLE_Y, TABLE_W, 4, 3, highlight=1, highlight_color=(250, 208, 208))
    c.fill(segment(TABLE_X + 6, TABLE_Y + 13 * 2 + 6.5, TABLE_X + TABLE_W - 6, TABLE_Y + 13 * 2 + 6.5, 2.5), RED)
    badge(c, 82, 62, 30, RED)
    c.fill(segment(70, 50, 94, 74, 7), WHITE)
    c.fill(segment(94, 50, 70, 74, 7), WHITE)


def draw_update(c):  # 10021: records are changed in place
    decorate(c)
    table(c, TABLE_X, TABLE_Y, TABLE_W, 4, 3, highlight=2, highlight_color=(255, 238, 176))
    pencil(c, 150, 60, 98, 154, 11)
    # Two arrows chasing each other: the old value turns into the new one.
    for start in (200, 20):
        pts_out, pts_in = [], []
        for i in range(13):
            a = math.radians(start + 130 * i / 12)
            pts_out.append((62 + 26 * math.cos(a), 62 + 26 * math.sin(a)))
            pts_in.append((62 + 19 * math.cos(a), 62 + 19 * math.sin(a)))
        c.fill([pts_out + pts_in[::-1]], WHITE)
        a = math.radians(start + 130)
        tip = math.radians(start + 152)
        c.fill([[(62 + 32 * math.cos(a), 62 + 32 * math.sin(a)), (62 + 22.5 * math.cos(tip), 62 + 22.5 * math.sin(tip)),
                 (62 + 13 * math.cos(a), 62 + 13 * math.sin(a))]], WHITE)


def draw_export(c):  # 10022: records leave the table for a file
    decorate(c)
    table(c, 16, 40, TABLE_W, 4, 3)
    document(c, 96, 150, 52, 66)
    c.fill(arrow(70, 124, 96, 166, 9, 18), ORANGE)


PICTURES = [
    (10013, 'IMPORT_TABLE', draw_import),
    (10014, 'ADD_RECORDS', draw_add),
    (10019, 'CREATE_TABLE', draw_create),
    (10020, 'DELETE_RECORDS', draw_delete),
    (10021, 'UPDATE_RECORDS', draw_update),
    (10022, 'EXPORT_RECORDS', draw_export),
]


def write_bmp(path, rows):
    stride = WIDTH * 3
    padding = (4 - stride % 4) % 4
    size = (stride + padding) * HEIGHT
    data = bytearray()
    data += struct.pack('<2sIHHI', b'BM', 54 + size, 0, 0, 54)
    data += struct.pack('<IiiHHIIiiII', 40, WIDTH, HEIGHT, 1, 24, 0, size, 2835, 2835, 0, 0)
    for row in reversed(rows):
        line = bytearray(stride)
        line[0::3], line[1::3], line[2::3] = row[2::3], row[1::3], row[0::3]
        data += line + bytes(padding)
    write_if_changed(path, bytes(data))


def write_if_changed(path, raw):
    try:
        with open(path, 'rb') as f:
            if f.read() == raw:
                return
    except OSError:
        pass
    with open(path, 'wb') as f:
        f.write(raw)


def main():
    args = sys.argv[1:]
    if not args or args[0].startswith('-'):
        sys.exit(__doc__)
    out = args[0]
    opts = dict(zip(args[1::2], args[2::2]))
    os.makedirs(out, exist_ok=True)
    for number, _, draw in PICTURES:
        canvas = Canvas()
        draw(canvas)
        write_bmp(os.path.join(out, f'wizard_{number}.bmp'), canvas.pixels())
    if '--rc' in opts:
        lines = ['// Generated by scripts/draw_wizard_bitmaps.py.']
        for number, _, _ in PICTURES:
            path = os.path.abspath(os.path.join(out, f'wizard_{number}.bmp')).replace('\\', '/')
            lines.append(f'{number} BITMAP "{path}"')
        write_if_changed(opts['--rc'], ('\n'.join(lines) + '\n').encode('cp1252'))
    if '--ids' in opts:
        lines = ['// Generated by scripts/draw_wizard_bitmaps.py.', '#pragma once', '',
                 '// Pictures on the left side of the wizards.', 'namespace kodbc::bitmap {']
        lines += [f'inline constexpr int {sym} = {number};' for number, sym, _ in PICTURES]
        lines += ['} // namespace kodbc::bitmap', '']
        write_if_changed(opts['--ids'], '\n'.join(lines).encode('utf-8'))


if __name__ == '__main__':
    main()
