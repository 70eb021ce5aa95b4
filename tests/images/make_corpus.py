#!/usr/bin/env python3
"""Makes pictures of every kind that the decoders read, and some that they must refuse, in a folder.

Pillow and ImageMagick write what they can; what they write only as they please (depths and passes of PNG, heads of BMP,
records of GIF in a given order) is written here byte by byte. Usage: make_corpus.py FOLDER
"""
import pathlib
import random
import struct
import subprocess
import sys
import zlib

from PIL import Image

SIDE_W, SIDE_H = 37, 23  # odd, so that rows are padded


def gradient(mode="RGBA", size=(SIDE_W, SIDE_H)):
    """Every channel differs from every other, alpha goes through 0 and 255."""
    image = Image.new("RGBA", size)
    width, height = size
    image.putdata([(x * 255 // (width - 1), y * 255 // (height - 1), (x * 7 + y * 13) % 256,
                    min(255, max(0, (x + y) * 300 // (width + height) - 20))) for y in range(height) for x in range(width)])
    return image if mode == "RGBA" else image.convert("RGB") if mode == "RGB" else image.convert("RGB").convert(mode)


def convert(*arguments):
    subprocess.run(["convert", *map(str, arguments)], check=True, stdin=subprocess.DEVNULL)


# --- PNG ---------------------------------------------------------------------------------------------------------
CHANNELS = {0: 1, 2: 3, 3: 1, 4: 2, 6: 4}
ADAM7 = ((0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4), (0, 2, 2, 4), (1, 0, 2, 2), (0, 1, 1, 2))


def chunk(name, data):
    return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))


def png_rows(kind, depth, sample, xs, ys):
    out = b""
    for y in ys:
        row = bits = 0
        for x in xs:
            for c in range(CHANNELS[kind]):
                row = row << depth | sample(x, y, c)
                bits += depth
        row <<= -bits % 8
        out += b"\0" + row.to_bytes((bits + 7) // 8, "big") if bits else b""
    return out


def png(kind, depth, sample, interlaced, width=SIDE_W, height=SIDE_H, extra=b""):
    passes = ADAM7 if interlaced else ((0, 0, 1, 1),)
    data = b"".join(png_rows(kind, depth, sample, range(x, width, dx), range(y, height, dy)) for x, y, dx, dy in passes)
    head = struct.pack(">IIBBBBB", width, height, depth, kind, 0, 0, int(interlaced))
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + extra + chunk(b"IDAT", zlib.compress(data)) + chunk(b"IEND", b"")


def sample_of(kind, depth):
    """Samples over the whole range of a depth, alpha at both ends too."""
    most = (1 << depth) - 1
    return lambda x, y, c: min(most, (x * 5 + y * 11 + c * 37 + (x * y * 257 if depth == 16 else 0)) % (most * 5 // 4 + 1))


def pngs(folder):
    draw = random.Random(3)
    colors = bytes(draw.randrange(256) for _ in range(256 * 3))
    for kind, depths in {0: (1, 2, 4, 8, 16), 2: (8, 16), 3: (1, 2, 4, 8), 4: (8, 16), 6: (8, 16)}.items():
        for depth in depths:
            extra = chunk(b"PLTE", colors[:3 << depth]) if kind == 3 else b""
            for name, interlaced in (("", False), ("_interlaced", True)):
                (folder / f"png_type{kind}_{depth}{name}.png").write_bytes(
                    png(kind, depth, sample_of(kind, depth), interlaced, extra=extra))
    palette = gradient("RGB").quantize(16)
    palette.save(folder / "png_palette_one_clear.png", transparency=3)
    palette.save(folder / "png_palette_graded.png", transparency=bytes(range(0, 160, 10)))
    gradient("L").save(folder / "png_grey_one_clear.png", transparency=100)
    gradient("RGB").save(folder / "png_rgb_one_clear.png", transparency=gradient("RGB").getpixel((5, 5)))
    Image.new("RGBA", (1, 1), (1, 2, 3, 4)).save(folder / "png_one_pixel.png")
    whole = (folder / "png_type6_8.png").read_bytes()
    huge = png(2, 8, lambda x, y, c: 0, False, 1, 1)
    huge = huge[:8] + chunk(b"IHDR", struct.pack(">IIBBBBB", 60000, 60000, 8, 2, 0, 0, 0)) + huge[33:]
    (folder / "bad_png_too_large.png").write_bytes(huge)
    (folder / "bad_png_truncated.png").write_bytes(whole[:len(whole) // 2])
    (folder / "bad_png_header_only.png").write_bytes(whole[:33])
    (folder / "png_named_wrongly.bmp").write_bytes(whole)


# --- JPEG --------------------------------------------------------------------------------------------------------
def jpegs(folder):
    size = (61, 45)
    picture = gradient("RGB", size)
    gradient("L", size).save(folder / "jpeg_grey.jpg", quality=90)
    picture.save(folder / "jpeg_rgb_444.jpg", quality=90, subsampling=0)
    picture.save(folder / "jpeg_rgb_422.jpg", quality=90, subsampling=1)
    picture.save(folder / "jpeg_rgb_420.jpg", quality=90, subsampling=2)
    picture.save(folder / "jpeg_progressive.jpg", quality=90, progressive=True, subsampling=0)
    picture.convert("CMYK").save(folder / "jpeg_cmyk.jpg", quality=95)
    turned = Image.Exif()
    turned[0x0112] = 6
    picture.save(folder / "jpeg_turned.jpg", quality=90, subsampling=0, exif=turned)
    whole = (folder / "jpeg_rgb_444.jpg").read_bytes()
    (folder / "bad_jpeg_truncated.jpg").write_bytes(whole[:len(whole) // 2])


# --- BMP ---------------------------------------------------------------------------------------------------------
def bmp(width, height, bits, pixels, palette=(), packing=0, masks=(), head=40, core=False):
    colors = b"".join(struct.pack("<3B" if core else "<3Bx", *c) for c in palette)
    if core:
        info = struct.pack("<IHHHH", 12, width, height, 1, bits)
    else:
        info = struct.pack("<IiiHHIIiiII", head, width, height, 1, bits, packing, len(pixels), 2835, 2835, len(palette), 0)
        info += b"".join(struct.pack("<I", m) for m in masks)
        info += bytes(max(0, head - len(info)))
    offset = 14 + len(info) + len(colors)
    return struct.pack("<2sIHHI", b"BM", offset + len(pixels), 0, 0, offset) + info + colors + pixels


def rows(width, height, bits, value):
    """Rows from the bottom, padded to four bytes; the first pixel of a byte in its high bits."""
    out = b""
    for y in reversed(range(height)):
        row = 0
        for x in range(width):
            row = row << bits | value(x, y)
        count = width * bits
        row <<= -count % 8
        row = row.to_bytes((count + 7) // 8, "big")
        out += row + bytes(-len(row) % 4)
    return out


def wide_rows(width, height, size, value):
    return b"".join(b"".join(value(x, y).to_bytes(size, "little") for x in range(width)) + bytes(-width * size % 4)
                    for y in reversed(range(height)))


def bmps(folder):
    width, height = SIDE_W, SIDE_H
    draw = random.Random(1)
    palette = [tuple(draw.randrange(256) for _ in range(3)) for _ in range(256)]

    def save(name, *arguments, **more):
        (folder / f"bmp_{name}.bmp").write_bytes(bmp(*arguments, **more))
    for bits in (1, 4, 8):
        data = rows(width, height, bits, lambda x, y: (x * 3 + y * 5) % (1 << bits))
        save(bits, width, height, bits, data, palette[:1 << bits])
        save(f"{bits}_core", width, height, bits, data, palette[:1 << bits], core=True)
        save(f"{bits}_top_down", width, -height, bits, data, palette[:1 << bits])
    save("8_few_colors", width, height, 8, rows(width, height, 8, lambda x, y: (x + y) % 10), palette[:10])
    word = wide_rows(width, height, 2, lambda x, y: (x * 1771 + y * 2049) % 65536)
    save("16", width, height, 16, word)
    save("16_565", width, height, 16, word, packing=3, masks=(0xF800, 0x7E0, 0x1F))
    save("16_555_masks", width, height, 16, word, packing=3, masks=(0x7C00, 0x3E0, 0x1F))
    save("24", width, height, 24, wide_rows(width, height, 3, lambda x, y: (x * 460000 + y * 7919) % (1 << 24)))
    save("24_top_down", width, -height, 24, wide_rows(width, height, 3, lambda x, y: (x * 460000 + y * 7919) % (1 << 24)))
    long = wide_rows(width, height, 4, lambda x, y: (x * 117000000 + y * 7919) % (1 << 32))
    save("32", width, height, 32, long)
    save("32_masks", width, height, 32, long, packing=3, masks=(0xFF0000, 0xFF00, 0xFF))
    save("32_alpha", width, height, 32, long, packing=3, masks=(0xFF0000, 0xFF00, 0xFF, 0xFF000000), head=108)
    # 8 bits: a run, single values with padding, end of row, a jump, end.
    save("rle8", 8, 4, 8, bytes([8, 1, 0, 0, 3, 2, 0, 5, 9, 8, 7, 6, 5, 0, 0, 0, 4, 3, 4, 4, 0, 0, 8, 250, 0, 0, 0, 1]),
         palette, packing=1)
    save("rle8_jump", 8, 4, 8, bytes([8, 1, 0, 0, 2, 2, 0, 2, 2, 1, 4, 9, 0, 1]), palette, packing=1)
    save("rle4", 8, 4, 4, bytes([8, 0x12, 0, 0, 3, 0x34, 0, 5, 0x56, 0x78, 0x90, 0, 0, 0, 8, 0xAB, 0, 0, 8, 0xCD, 0, 0, 0, 1]),
         palette[:16], packing=2)
    whole = (folder / "bmp_24.bmp").read_bytes()
    (folder / "bad_bmp_truncated.bmp").write_bytes(whole[:len(whole) // 2])


# --- GIF ---------------------------------------------------------------------------------------------------------
def lzw(indexes, bits=8):
    """A clear code often enough that codes never grow."""
    size, clear = bits + 1, 1 << bits
    codes = []
    for at in range(0, len(indexes), (1 << bits) - 3):
        codes += [clear, *indexes[at:at + (1 << bits) - 3]]
    codes.append(clear + 1)
    value = count = 0
    out = bytearray()
    for code in codes:
        value |= code << count
        count += size
        while count >= 8:
            out.append(value & 255)
            value >>= 8
            count -= 8
    if count:
        out.append(value & 255)
    return bytes([bits]) + b"".join(bytes([len(out[i:i + 255])]) + bytes(out[i:i + 255]) for i in range(0, len(out), 255)) + b"\0"


def table(colors):
    return b"".join(bytes(c) for c in colors)


def screen(width, height, colors=None, background=0, aspect=0, version=b"GIF89a"):
    flags = 0 if colors is None else 0x80 | (len(colors).bit_length() - 2)
    return version + struct.pack("<HHBBB", width, height, flags, background, aspect) + (table(colors) if colors else b"")


def control(delay, disposal=0, transparent=None):
    return struct.pack("<BBBBHBB", 0x21, 0xF9, 4, disposal << 2 | (transparent is not None), delay, transparent or 0, 0)


def frame(left, top, width, height, indexes, colors=None, interlaced=False):
    if interlaced:
        order = [y for first, step in ((0, 8), (4, 8), (2, 4), (1, 2)) for y in range(first, height, step)]
        indexes = [indexes[y * width + x] for y in order for x in range(width)]
    flags = (0 if colors is None else 0x80 | (len(colors).bit_length() - 2)) | (0x40 if interlaced else 0)
    return struct.pack("<BHHHHB", 0x2C, left, top, width, height, flags) + (table(colors) if colors else b"") + lzw(list(indexes))


def application(name=b"NETSCAPE2.0", data=(b"\x01\x05\x00",)):
    return b"\x21\xFF" + bytes([len(name)]) + name + b"".join(bytes([len(d)]) + d for d in data) + b"\0"


def gifs(folder):
    draw = random.Random(2)
    colors = [tuple(draw.randrange(256) for _ in range(3)) for _ in range(256)]
    other = [(255 - r, g, b) for r, g, b in colors]
    width, height = SIDE_W, SIDE_H
    full = [(x * 5 + y * 3) % 256 for y in range(height) for x in range(width)]
    small = [(x * 11 + y * 29) % 256 for y in range(9) for x in range(10)]
    end = b"\x3B"

    def save(name, *parts):
        (folder / f"{name}.gif").write_bytes(b"".join(parts) + end)
    save("gif_still", screen(width, height, colors), frame(0, 0, width, height, full))
    save("gif_still_87", screen(width, height, colors, version=b"GIF87a"), frame(0, 0, width, height, full))
    save("gif_still_interlaced", screen(width, height, colors), frame(0, 0, width, height, full, interlaced=True))
    save("gif_still_clear", screen(width, height, colors), control(0, 0, 7), frame(0, 0, width, height, full))
    save("gif_still_smaller", screen(width, height, colors, 3), frame(5, 6, 10, 9, small))
    save("gif_still_outside", screen(width, height, colors), frame(width - 5, height - 4, 10, 9, small))
    for disposal in range(8):
        save(f"gif_disposal_{disposal}", screen(width, height, colors, 9), application(),
             control(10, 1), frame(0, 0, width, height, full), control(20, disposal, 7), frame(3, 4, 10, 9, small),
             control(30, 1, 7), frame(20, 10, 10, 9, small), control(40, 0, 7), frame(1, 1, 10, 9, small))
    save("gif_local_tables", screen(width, height, colors), control(5), frame(0, 0, width, height, full, other),
         control(5), frame(2, 2, 10, 9, small), control(5, 0, 7), frame(20, 3, 10, 9, small, other, True))
    save("gif_no_global_table", screen(width, height), control(5), frame(0, 0, width, height, full, other),
         control(5), frame(2, 2, 10, 9, small, colors))
    save("gif_small_tables", screen(width, height, colors[:4], 3), control(5), frame(0, 0, width, height, [i % 4 for i in full]),
         control(5), frame(2, 2, 10, 9, [i % 6 for i in small], other[:4]))
    save("gif_delay_0", screen(width, height, colors), *[control(0) + frame(i, i, 10, 9, small) for i in range(4)])
    save("gif_no_control", screen(width, height, colors), *[frame(i, i, 10, 9, small) for i in range(4)])
    for aspect in (0, 1, 17, 48, 49, 50, 113, 255):
        save(f"gif_aspect_{aspect}", screen(width, height, colors, aspect=aspect), frame(0, 0, width, height, full))
    for name, block in {"netscape": application(), "animexts": application(b"ANIMEXTS1.0", (b"\x01\x34\x12",)),
                        "forever": application(data=(b"\x01\0\0",)), "foreign": application(b"SOMETHING01"),
                        "foreign_first": application(b"SOMETHING01") + application(), "none": b"",
                        "short": application(data=(b"\x01\x05",)), "empty": application(data=()),
                        "kind_2": application(data=(b"\x02\x05\0\0\0",)),
                        "two_parts": application(data=(b"\x01\x05\0", b"\x02\x01\0\0\0"))}.items():
        save(f"gif_loop_{name}", screen(width, height, colors), block, control(3), frame(0, 0, width, height, full),
             control(4), frame(2, 2, 10, 9, small))
    save("gif_loop_late", screen(width, height, colors), control(3), frame(0, 0, width, height, full), application(),
         control(4), frame(2, 2, 10, 9, small))
    save("gif_1100_frames", screen(16, 12, colors), *[control(2) + frame(i % 6, i % 3, 10, 9, [(p + i) % 256 for p in small])
                                                     for i in range(1100)])
    save("gif_background_beyond", screen(width, height, colors[:4], 200), control(5, 2), frame(0, 0, 10, 9, [1] * 90),
         control(5, 2), frame(10, 10, 10, 9, [2] * 90))
    save("bad_gif_screen_too_large", screen(65535, 65535, colors), frame(0, 0, 10, 9, small))
    save("bad_gif_frame_too_large", screen(10, 9, colors), control(5), frame(0, 0, 10, 9, small), control(5),
         frame(0, 0, 65535, 65535, small))
    save("bad_gif_frames_too_large", screen(8000, 4000, colors), *[control(5) + frame(0, 0, 10, 9, small)] * 5)
    save("gif_no_size", screen(0, 0, colors), frame(0, 0, 10, 9, small))
    whole = (folder / "gif_disposal_2.gif").read_bytes()
    (folder / "bad_gif_truncated.gif").write_bytes(whole[:len(whole) // 2])
    (folder / "gif_no_end.gif").write_bytes(whole[:-1])
    picture = gradient("RGB")
    picture.quantize(200).save(folder / "gif_pillow.gif")
    convert("-delay", 7, "-dispose", "previous", "-size", "40x30", "xc:red", "plasma:fractal", "-loop", 3, folder / "gif_magick.gif")


# --- TIFF --------------------------------------------------------------------------------------------------------
def tiffs(folder):
    for mode in ("1", "L", "RGB", "RGBA", "P", "CMYK"):
        gradient(mode if mode in ("RGB", "RGBA") else "RGB").convert(mode).save(folder / f"tiff_{mode}.tif")
    for packing in ("tiff_lzw", "tiff_adobe_deflate", "packbits", "jpeg"):
        gradient("RGB").save(folder / f"tiff_rgb_{packing}.tif", compression=packing)
    gradient("1").save(folder / "tiff_1_group4.tif", compression="group4")
    pages = [gradient("RGB"), gradient("L"), gradient("RGB", (20, 11)), gradient("RGB", (80, 11))]
    pages[0].save(folder / "tiff_pages.tif", save_all=True, append_images=pages[1:3])
    pages[0].save(folder / "tiff_larger_page.tif", save_all=True, append_images=[pages[3], pages[1]])
    convert(folder / "tiff_RGB.tif", "-depth", 16, folder / "tiff_rgb_16.tif")
    convert(folder / "tiff_RGB.tif", "-endian", "MSB", folder / "tiff_rgb_big_endian.tif")
    convert(folder / "tiff_RGB.tif", "-interlace", "plane", folder / "tiff_rgb_planes.tif")
    convert(folder / "tiff_RGBA.tif", "-alpha", "associate", "-define", "tiff:alpha=associated", folder / "tiff_rgba_multiplied.tif")
    convert(folder / "tiff_RGB.tif", "-orient", "RightTop", folder / "tiff_turned.tif")
    for packing in ("None", "LZW"):
        convert(folder / "tiff_RGB.tif", "-compress", packing, "-define", "tiff:tile-geometry=16x16",
                folder / f"tiff_tiles_{packing}.tif")
    whole = (folder / "tiff_RGB.tif").read_bytes()
    (folder / "bad_tiff_truncated.tif").write_bytes(whole[:len(whole) // 2])


def others(folder):
    try:
        gradient("RGB", (64, 48)).save(folder / "source.tmp.png")
        convert(folder / "source.tmp.png", "-quality", 90, folder / "heif_rgb.heic")
    except subprocess.CalledProcessError:
        print("no HEIF encoder here: no such picture")
    (folder / "source.tmp.png").unlink()
    (folder / "bad_empty.png").write_bytes(b"")
    (folder / "bad_text.png").write_bytes(b"This is no picture.\n" * 40)
    (folder / "bad_signature_only.gif").write_bytes(b"GIF89a")
    (folder / "bad_heif_empty.heic").write_bytes(b"\0\0\0\x18ftypheic\0\0\0\0heicmif1")


def make(folder):
    folder.mkdir(parents=True, exist_ok=True)
    for kind in (pngs, jpegs, bmps, gifs, tiffs, others):
        kind(folder)


if __name__ == "__main__":
    make(pathlib.Path(sys.argv[1]))
