#!/usr/bin/env python3
"""Makes the artwork of the shipped profile Emblem, a picture with soft edges and an animation, and the pictures that
the manual's profiles show.

The animation has no table of colours for the file as a whole: with one, a colour of it would be laid under all frames,
and nothing of them would be clear. All of its frames cover the same pixels, so none has to be taken away.
"""
import math
import pathlib
import struct

from PIL import Image, ImageDraw

HERE = pathlib.Path(__file__).resolve().parent
FOLDER = HERE.parent.parent / "data/Profiles/Emblem"
SIDE, FINE = 128, 4  # pixels of the emblem, and how many times finer it is drawn
RING, TICKS, DELAY = 128, 24, 6  # pixels of the ring, its ticks, hundredths of a second each frame
TEAL, DEEP = (64, 214, 196), (18, 92, 104)


def mix(a, b, part):
    return tuple(round(x + (y - x) * part) for x, y in zip(a, b))


def blade(centre, radius, turn):
    """A fan's blade: an arc out, another back."""
    points = [(0.16, 0.0), (0.55, -0.28), (0.93, -0.16), (0.98, 0.16), (0.62, 0.06), (0.24, 0.34)]
    return [(centre + radius * r * math.cos(turn + a), centre + radius * r * math.sin(turn + a)) for r, a in points]


def emblem():
    side = SIDE * FINE
    image = Image.new("RGBA", (side, side), (*TEAL, 0))
    draw = ImageDraw.Draw(image)
    edge = 3 * FINE  # what lies at the very edge would blend with black
    draw.ellipse((edge, edge, side - edge, side - edge), fill=(10, 24, 30, 190), outline=(*TEAL, 255), width=4 * FINE)
    for i in range(7):
        turn = 2 * math.pi * i / 7 - math.pi / 2
        draw.polygon(blade(side / 2, side / 2 * 0.86, turn), fill=(*mix(TEAL, DEEP, i / 9), 255))
    hub = side * 0.09
    draw.ellipse((side / 2 - hub, side / 2 - hub, side / 2 + hub, side / 2 + hub), fill=(226, 250, 246, 255))
    return image.resize((SIDE, SIDE), Image.LANCZOS)


def ring():
    """Which tick a pixel belongs to, from 1; 0 is clear."""
    image = Image.new("L", (RING, RING), 0)
    draw = ImageDraw.Draw(image)
    for i in range(TICKS):
        turn = 2 * math.pi * i / TICKS - math.pi / 2
        inner, outer = RING * 0.43, RING * 0.485
        ends = [(RING / 2 + r * math.cos(turn), RING / 2 + r * math.sin(turn)) for r in (inner, outer)]
        draw.line(ends, fill=i + 1, width=5)
    return image


def packed(pixels, bits):
    """Codes of a GIF: a dictionary that grows to 12 bits and then begins anew."""
    out, held, count = bytearray(), 0, 0

    def put(code, width):
        nonlocal held, count
        held |= code << count
        count += width
        while count >= 8:
            out.append(held & 255)
            held >>= 8
            count -= 8

    clear, width = 1 << bits, bits + 1
    codes = {bytes([i]): i for i in range(clear)}
    put(clear, width)
    word = b""
    for pixel in pixels:
        longer = word + bytes([pixel])
        if longer in codes:
            word = longer
            continue
        put(codes[word], width)
        codes[longer] = len(codes) + 2
        if codes[longer] == 1 << width and width < 12:
            width += 1
        elif codes[longer] == 4095:
            put(clear, width)
            codes, width = {bytes([i]): i for i in range(clear)}, bits + 1
        word = bytes([pixel])
    put(codes[word], width)
    put(clear + 1, width)
    put(0, 7)
    return b"".join(bytes([len(out[i:i + 255])]) + out[i:i + 255] for i in range(0, len(out), 255)) + b"\0"


def animation():
    """A light that runs around once in some seconds, with a tail."""
    ticks, bits = ring().tobytes(), 5
    gif = b"GIF89a" + struct.pack("<HHBBB", RING, RING, 0, 0, 0)
    gif += b"\x21\xFF\x0BNETSCAPE2.0\x03\x01\0\0\0"
    for light in range(TICKS):
        table = [(0, 0, 0)]
        for tick in range(TICKS):
            behind = (light - tick) % TICKS
            table.append(mix((70, 186, 172), (36, 60, 68), min(1, behind / 10)))
        table += [(0, 0, 0)] * ((1 << bits) - len(table))
        gif += b"\x21\xF9\x04" + bytes([1 << 2 | 1]) + struct.pack("<HB", DELAY, 0) + b"\0"
        gif += b"\x2C" + struct.pack("<HHHHB", 0, 0, RING, RING, 0x80 | bits - 1)
        gif += bytes(value for color in table for value in color) + bytes([bits]) + packed(ticks, bits)
    return gif + b";"


def landscape(width, height):
    """Sky, a sun on the left, hills: it shows what is its top and what its left."""
    image = Image.new("RGB", (width, height), (96, 160, 214))
    draw = ImageDraw.Draw(image)
    draw.ellipse((width * 0.1, height * 0.1, width * 0.1 + 36, height * 0.1 + 36), fill=(250, 214, 92))
    draw.polygon([(0, height * 0.75), (width * 0.45, height * 0.4), (width, height * 0.8), (width, height), (0, height)],
                 fill=(62, 118, 76))
    draw.polygon([(width * 0.3, height), (width * 0.85, height * 0.55), (width, height * 0.7), (width, height)],
                 fill=(38, 82, 58))
    return image


def main():
    for name in ("image-fit", "image-tilt"):
        landscape(160, 100).save(HERE / "profiles" / name / "picture.png", optimize=True)
    landscape(80, 160).save(HERE / "profiles/image-fit/tall.png", optimize=True)
    FOLDER.mkdir(parents=True, exist_ok=True)
    emblem().save(FOLDER / "emblem.png", optimize=True)
    (FOLDER / "ring.gif").write_bytes(animation())


if __name__ == "__main__":
    main()
