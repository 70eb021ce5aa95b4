#!/usr/bin/python3
"""Makes the shutter, which confirms a screenshot: data/Screenshot.png and data/Screenshot.anm.

The picture is a dark disc with an aperture of six blades, away from the corner in which it is shown. The file of
steps lets it come up quickly, stay for a moment and go."""
import math
import pathlib
import struct

from PIL import Image, ImageDraw

DATA = pathlib.Path(__file__).resolve().parent.parent.parent / "data"
SIZE, FINE = 192, 4         # pixels of the picture, no fewer than a 4K window shows; drawn so many times larger
CENTER, RADIUS = 108, 76    # of the disc
DARK, LIGHT = (18, 22, 28), (236, 240, 244)
DURATION, STEPS = 900, 54   # milliseconds, and one step for each frame of a display of 60 a second
SIDE, COMES, GOES = 72, 0.20, 0.16  # canvas units; parts of the duration
# All sides are whole pixels in windows of 480, 600, 720, 1080, 1440 and 2160 lines: a pixel that the edge cuts would
# take the dark border of the picture in.
UNIT = 9


def point(radius, degrees):
    angle = math.radians(degrees)
    return ((CENTER + radius * math.cos(angle)) * FINE, (CENTER + radius * math.sin(angle)) * FINE)


def circle(radius):
    return [(CENTER - radius) * FINE, (CENTER - radius) * FINE, (CENTER + radius) * FINE, (CENTER + radius) * FINE]


def blades():
    """White where the aperture is: a ring, cut by six lines from the edge of the opening to the rim."""
    mask = Image.new("L", (SIZE * FINE, SIZE * FINE), 0)
    draw = ImageDraw.Draw(mask)
    outer, inner, gap = RADIUS - 16, 22, 4.8
    draw.ellipse(circle(outer), fill=255)
    draw.polygon([point(inner, 60 * i) for i in range(6)], fill=0)
    for i in range(6):
        start, end = point(inner, 60 * i), point(outer + 4, 60 * i - 62)
        draw.line([start, end], fill=0, width=round(gap * FINE))
    return mask


def alpha():
    mask = Image.new("L", (SIZE * FINE, SIZE * FINE), 0)
    ImageDraw.Draw(mask).ellipse(circle(RADIUS), fill=190)
    mask.paste(235, mask=blades())
    return mask.resize((SIZE, SIZE), Image.LANCZOS)


def picture():
    """Colour also where nothing is seen, so that no edge gets another one from there."""
    colors = Image.new("RGB", (SIZE * FINE, SIZE * FINE), DARK)
    colors.paste(LIGHT, mask=blades())
    made = colors.resize((SIZE, SIZE), Image.LANCZOS)
    made.putalpha(alpha())
    return made


def side(part):
    """At a part of the duration: up with a soft end, still, away."""
    if part < COMES:
        return SIDE * (1 - (1 - part / COMES) ** 3)
    if part > 1 - GOES:
        return SIDE * ((1 - part) / GOES) ** 2
    return SIDE


def main():
    picture().save(DATA / "Screenshot.png", optimize=True)
    sides = [round(side((i + 0.5) / STEPS) / UNIT) * UNIT for i in range(STEPS)]
    (DATA / "Screenshot.anm").write_bytes(struct.pack(f"<{STEPS + 2}I", DURATION, STEPS, *sides))


if __name__ == "__main__":
    main()
