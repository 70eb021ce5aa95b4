"""Picture files through the decoders of both platforms: the same corpus, the same pixels, the same refusals."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

from PIL import Image

from e2e.environment import LINUX, ROOT, STATE, WIN64, Display

sys.path.insert(0, str(ROOT / "tests/images"))
import make_corpus  # noqa: E402

BGRA = 47
# What differs between the platforms' pixels, and why. A bound: the largest difference of a byte and the mean one.
BOUNDS = {
    "jpeg_grey.jpg": ("rounding of the decoders", 2, 0.1),
    "jpeg_rgb_444.jpg": ("rounding of the decoders", 2, 0.1),
    "jpeg_progressive.jpg": ("rounding of the decoders", 2, 0.1),
    "jpeg_turned.jpg": ("rounding of the decoders", 2, 0.1),
    "jpeg_cmyk.jpg": ("rounding of the decoders", 2, 0.1),
    "jpeg_rgb_420.jpg": ("Wine's decoder enlarges colour by its transform, ours by interpolation", 96, 8),
    "jpeg_rgb_422.jpg": ("Wine's decoder enlarges colour by its transform, ours by interpolation", 96, 8),
}
OTHER_PIXELS = {
    "bmp_rle8_jump.bmp": "Wine leaves pixels that no run reaches as its memory was; ours have the first colour",
    "gif_small_tables.gif": "Wine takes an index beyond a local table from an older palette; ours is black",
}
ONLY_LINUX = {
    "heif_rgb.heic": "Wine has no decoder for it",
    "tiff_rgb_jpeg.tif": "Wine's libtiff is built without JPEG",
    "tiff_rgb_planes.tif": "Wine reads no separate planes",
}


def rgba(pixels, bgra):
    pixels = bytearray(pixels)
    if bgra:
        pixels[0::4], pixels[2::4] = pixels[2::4], pixels[0::4]
    for at in range(0, len(pixels), 4):
        if pixels[at + 3] == 0:
            pixels[at:at + 3] = b"\0\0\0"
    return bytes(pixels)


class Loaded:
    """One line of image_dump and the frames beside it."""

    def __init__(self, folder, line):
        self.name, self.state, *rest = line.split(" ")
        self.ok = self.state == "ok"
        self.facts = dict(part.split("=", 1) for part in rest) if self.ok else {}
        if self.ok:
            raw = (folder / f"{self.name}.frames").read_bytes()
            self.pixels = rgba(raw, int(self.facts.pop("format")) == BGRA)
            self.facts.pop("source")  # the order of bytes, which says nothing about the picture


def dump(program, folder, display=""):
    names = sorted(path.name for path in folder.iterdir())
    wine = [ROOT / "cmake/wine-run"] if program.suffix == ".exe" else []
    done = subprocess.run([*wine, program, ".", *names], cwd=folder, stdout=subprocess.PIPE, text=True, check=True, timeout=300,
                          env={**os.environ, "DISPLAY": display})
    loaded = [Loaded(folder, line.rstrip("\r")) for line in done.stdout.splitlines() if line]
    assert [one.name for one in loaded] == names, "a picture is missing: " + done.stdout[-300:]
    return {one.name: one for one in loaded}


class ImageFiles(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        base = pathlib.Path(tempfile.mkdtemp(prefix="images-", dir=STATE))
        cls.addClassCleanup(shutil.rmtree, base)
        cls.folder = base / "linux"
        make_corpus.make(cls.folder)
        shutil.copytree(cls.folder, base / "win64")
        cls.linux = dump(LINUX / "image_dump", cls.folder)
        with Display() as display:  # what Wine starts without one would stay, and give the next programs no window
            cls.win64 = dump(WIN64 / "image_dump.exe", base / "win64", display)

    def test_both_platforms_refuse_the_same_files(self):
        for name, one in self.linux.items():
            with self.subTest(name):
                self.assertEqual(one.ok, not name.startswith("bad_"))
                self.assertEqual(self.win64[name].ok, one.ok and name not in ONLY_LINUX)

    def test_both_platforms_read_the_same_facts(self):
        for name, one in self.linux.items():
            if one.ok and name not in ONLY_LINUX:
                with self.subTest(name):
                    self.assertEqual(one.facts, self.win64[name].facts)

    def test_both_platforms_read_the_same_pixels(self):
        for name, one in self.linux.items():
            if not one.ok or name in ONLY_LINUX or name in OTHER_PIXELS:
                continue
            with self.subTest(name):
                _, most, mean = BOUNDS.get(name, ("", 0, 0))
                differences = [abs(a - b) for a, b in zip(one.pixels, self.win64[name].pixels, strict=True)]
                self.assertLessEqual(max(differences), most)
                self.assertLessEqual(sum(differences) / len(differences), mean)

    def see_as(self, name, expected):
        with self.subTest(name):
            self.assertEqual(self.linux[name].pixels, rgba(expected, False))

    def test_another_program_reads_the_same_pixels(self):
        """Stills, as Pillow has them; what it reads in another way by its own choice is left out."""
        others = {"jpeg_cmyk.jpg", "bmp_32_alpha.bmp", "bmp_rle8_jump.bmp", "bmp_rle4.bmp", "tiff_CMYK.tif",
                  "tiff_rgb_16.tif", "tiff_rgba_multiplied.tif", "tiff_pages.tif", "tiff_larger_page.tif",
                  "heif_rgb.heic", "tiff_turned.tif", "png_rgb_one_clear.png", "png_grey_one_clear.png"}
        seen = 0
        for name, one in self.linux.items():
            kind = name.split("_")[0]
            if not one.ok or name in others or "_16" in name or kind == "gif" and not name.startswith("gif_still"):
                continue
            if name in ("gif_still_smaller.gif", "gif_still_outside.gif"):
                continue
            with Image.open(self.folder / name) as image:
                self.see_as(name, image.convert("RGBA").tobytes())
            seen += 1
        self.assertGreater(seen, 60)

    def test_png_of_16_bits_keeps_the_high_byte(self):
        for kind, order in {0: "0", 2: "012", 4: "01", 6: "0123"}.items():
            sample = make_corpus.sample_of(kind, 16)
            expected = bytearray()
            for y in range(make_corpus.SIDE_H):
                for x in range(make_corpus.SIDE_W):
                    high = [sample(x, y, int(c)) >> 8 for c in order]
                    alpha = [high.pop()] if kind >= 4 else [255]
                    expected += bytes((high * 3 if len(high) == 1 else high) + alpha)
            self.see_as(f"png_type{kind}_16.png", expected)
            self.see_as(f"png_type{kind}_16_interlaced.png", expected)

    def facts(self, name):
        return self.linux[f"{name}.gif"].facts

    def test_pixel_aspect_gives_the_display_size(self):
        sizes = {0: "37x23", 1: "9x23", 17: "18x23", 48: "36x23", 49: "37x23", 50: "37x22", 113: "37x11", 255: "37x5"}
        for aspect, size in sizes.items():
            self.assertEqual(self.facts(f"gif_aspect_{aspect}")["display"], size)

    def test_loop_blocks(self):
        loops = {"netscape": "1:5", "animexts": "1:4660", "forever": "0:0", "foreign": "0:0", "foreign_first": "0:0",
                 "none": "0:0", "kind_2": "0:0", "two_parts": "1:5", "late": "0:0"}
        for name, loop in loops.items():
            self.assertEqual(self.facts(f"gif_loop_{name}")["loop"], loop, name)

    def test_delays(self):
        self.assertEqual(self.facts("gif_delay_0")["delays"], "90,90,90,90,")
        self.assertEqual(self.facts("gif_no_control")["delays"], "90,90,90,90,")
        self.assertEqual(self.facts("gif_disposal_1")["delays"], "100,200,300,400,")
        self.assertEqual(self.facts("gif_still_clear")["delays"], "")

    def test_1100_frames_leave_1000(self):
        facts = self.facts("gif_1100_frames")
        self.assertEqual((facts["file"], facts["frames"], facts["stored"]), ("1100", "1000", "1000"))


if __name__ == "__main__":
    unittest.main()
