"""Where the panels of the fixed layouts stand in a window, worked out independently of the library.

The rows are read from the layout's table; a canvas is 1080 units high whatever the window's size, and a panel hangs by
its anchor code, which counts as on a telephone keypad.
"""
import math
import re

from e2e.environment import ROOT

CANVAS_HEIGHT = 1080
OUTSET = 1  # frames reach one unit past their size
ROW = re.compile(r"(Flat|Frosted)\(\d+, \{(\d), (-?\d+), (-?\d+), (\d+), (\d+)\}")


def rows(layout):
    """(kind, anchor code, x, y, w, h) of each panel of a layout."""
    text = (ROOT / "config/fixed_layout.cpp").read_text()
    table = re.search(rf"g_a{layout}\[\] = \{{(.*?)\n\}};", text, re.S).group(1)
    return [(m[0], *map(int, m[1:])) for m in ROW.findall(table)]


def place(row, canvas_width):
    """Canvas rectangle (left, top, right, bottom)."""
    _, code, x, y, w, h = row
    column, line = (code - 1) % 3, (code - 1) // 3
    left = (x, (canvas_width - w) / 2 + x, canvas_width - w - x)[column]
    middle = (CANVAS_HEIGHT - h) / 2 + (-y if code == 5 else y)
    top = (y, middle, CANVAS_HEIGHT - h - y)[line]
    return left, top, left + w, top + h


def boxes(layout, width, height, kinds=("Flat", "Frosted"), outset=OUTSET):
    """Pixel boxes of a window of the given size that the layout's panels may touch."""
    canvas_width = int(CANVAS_HEIGHT * (width / height))
    fx, fy = width / canvas_width, height / CANVAS_HEIGHT
    placed = [place(row, canvas_width) for row in rows(layout) if row[0] in kinds]
    return [(max(0, math.floor((l - outset) * fx)), max(0, math.floor((t - outset) * fy)),
             min(width, math.ceil((r + outset) * fx)), min(height, math.ceil((b + outset) * fy)))
            for l, t, r, b in placed]


def frosted_boxes(layout, width, height):
    """Pixel boxes that lie wholly inside frosted panels."""
    return [(l + 3, t + 3, r - 3, b - 3) for l, t, r, b in boxes(layout, width, height, ("Frosted",), 0)]
