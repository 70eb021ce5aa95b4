"""The text sheet as the layout's table says, in a window of 1440x1080, where a canvas unit is a pixel."""
from e2e.pictures import holds_color, ink_box

SIZE = "1440x1080"
PANEL = (24, 24, 1416, 744)
WHITE, BLUE, AMBER = (238, 242, 247), (96, 192, 255), (255, 184, 92)
# Name, top inside the panel, line height, colour. The lines of the left column.
LINES = [("regular", 24, 34, WHITE), ("serif", 76, 34, WHITE), ("mono", 128, 34, WHITE), ("Latin-1", 180, 34, BLUE),
         ("Cyrillic", 232, 34, BLUE), ("Greek", 284, 34, BLUE), ("CJK", 336, 34, AMBER), ("beyond 16 bits", 388, 34, AMBER),
         ("size 8", 444, 8, WHITE), ("size 12", 462, 12, WHITE), ("size 16", 486, 16, WHITE), ("size 24", 516, 24, WHITE),
         ("size 48", 556, 48, WHITE), ("size 96", 616, 96, WHITE)]
# Which lines have the same glyphs on both platforms: one face, no help from others, no pairs of code units.
SAME_FACE = {"regular", "serif", "mono", "Latin-1", "Cyrillic", "Greek", "CJK", "size 12", "size 16", "size 24", "size 48", "size 96"}
BLOCKS = (864, 412, 930, 446)
WRAPPED, WRAP_WIDTH = (840, 470, 1416, 610), 420
CLIPPED, CLIP_WIDTH = (840, 600, 1416, 650), 300


def line_box(top, height):
    """Where a line's ink may be: a quarter of its height above, as much below; the right column is left out for the
    lines that stand beside it."""
    right = 860 if top >= 388 else PANEL[2]
    return PANEL[0] + 2, PANEL[1] + top - height // 5, right, PANEL[1] + top + height + height // 3


def ink_boxes(picture):
    return {name: ink_box(picture, line_box(top, height)) for name, top, height, _ in LINES}


def faults(picture):
    """What is wrong with a sheet, a line each; empty when all is well."""
    wrong = []
    boxes = ink_boxes(picture)
    for name, top, height, color in LINES:
        if not boxes[name]:
            wrong.append(f"{name}: nothing is written")
        elif height >= 24 and not holds_color(picture, line_box(top, height), color):
            wrong.append(f"{name}: no pixel has the text's own colour")
    if not holds_color(picture, BLOCKS, AMBER):
        wrong.append("blocks: no pixel has the text's own colour")
    wrapped, clipped = ink_box(picture, WRAPPED), ink_box(picture, CLIPPED)
    left = PANEL[0] + 840
    if not wrapped or wrapped[2] > left + WRAP_WIDTH + 2 or wrapped[3] - wrapped[1] < 60:
        wrong.append(f"wrapped text: {wrapped}")
    if not clipped or clipped[2] > left + CLIP_WIDTH + 2 or clipped[2] < left + CLIP_WIDTH // 2:
        wrong.append(f"clipped text: {clipped}")
    return wrong
