"""Numbers on the picture: values that are published, read back digit by digit from what a program presents."""
import json
import subprocess
import unittest

from PIL import Image, ImageChops, ImageDraw, ImageFont, ImageStat

from e2e.environment import LINUX, STORE, Display, LinuxPrograms, wait_until
from e2e.test_styles import CELL, sheets

SIZE = (1920, 1080)
SCALE = 150
FRAME = 12  # behind those over which the drawing is spread
INK = 140  # of a digit; grounds and shadows are darker
GLYPH = (16, 24)  # what letters are brought to before they are compared
NUMBERS = (0, 7, 42, 100, 1234, 65, 89, 3, 5678, 90)
DECIMALS = {"VRAM_VOLTAGE": 2, "GPU_VOLTAGE": 1}  # as the settings say; values are published without a point


def face():
    """The file that stands in for the face of the numbers on this machine."""
    done = subprocess.run(["fc-match", "-f", "%{file}", "Arial:bold"], capture_output=True, text=True, check=True)
    return ImageFont.truetype(done.stdout, 96)


def ink(picture):
    """What is written: the box of the bright pixels, and a picture of them alone."""
    bright = picture.convert("L")
    return bright.point(lambda v: 255 if v > INK else 0).getbbox(), bright


def same_size(picture, box):
    return picture.crop(box).resize(GLYPH, Image.LANCZOS)


def glyph_pictures():
    pictures = {}
    for digit in "0123456789":
        canvas = Image.new("L", (128, 160))
        ImageDraw.Draw(canvas).text((20, 10), digit, fill=255, font=face())
        pictures[digit] = same_size(canvas, canvas.getbbox())
        pictures[digit].shape = shape(canvas.getbbox())
    return pictures


def shape(box):
    return (box[2] - box[0]) / (box[3] - box[1])


class Values(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.screen = Display(f"{SIZE[0]}x{SIZE[1]}")
        cls.display = cls.screen.__enter__()
        cls.addClassCleanup(cls.screen.__exit__)
        cls.sheets = sheets()
        cls.glyphs = glyph_pictures()

    def setUp(self):
        self.programs = LinuxPrograms(self.display)
        self.addCleanup(self.programs.close)
        settings = self.programs.data.parent / "Settings"
        settings.mkdir()
        text = self.sheets.machine(1)
        for name, digits in DECIMALS.items():
            text += (f"[{STORE}\\Information Option\\Config\\Sensor\\{name}]\n"
                     f"Display Digit After Decimal Point = {digits}\nDivisor = {10 ** digits}\n")
        (settings / "settings.ini").write_text(text)
        self.number = 0

    def choose(self, style):
        folder = self.programs.data / "Profiles/Drawn"
        folder.mkdir(exist_ok=True)
        (folder / "OSD.xml").write_text(self.sheets.profile(style, "all", 1, 1, SCALE))
        ready = self.programs.folder / "ready"
        self.programs.with_overlay([LINUX / "host_glx", "--frames", "1", "--ready-file", ready, "--wait-file",
                                    self.programs.folder / "never"])
        wait_until(ready.exists)
        self.assertEqual(self.programs.ask("profile-name", "Drawn")[0], 0)

    def places(self):
        """Data name and box of each number that the companion publishes."""
        code, output = self.programs.ask("rows", "Drawn", "--json", "--data", str(self.programs.data), "--size",
                                         f"{SIZE[0]}x{SIZE[1]}")
        self.assertEqual(code, 0, output)
        rows = json.loads(output[output.index("{"):output.rindex("}") + 1])["rows"]
        return {row["data"]: part["box"] for row in rows if row["of"] != "program" and row["data"]
                for part in row["boxes"] if part["part"] == "value" and not row["data"].startswith("POWER_DETECTOR")}

    def publish(self, values):
        for name, value in values.items():
            code, output = self.programs.ask("set", name, str(value))
            self.assertEqual(code, 0, output)

    def picture(self):
        self.number += 1
        shown = self.programs.folder / f"shown{self.number}.ppm"
        process = self.programs.with_overlay([LINUX / "host_glx", "--frames", str(FRAME + 2), "--size",
                                              f"{SIZE[0]}x{SIZE[1]}", "--await-detour", "--dump-ppm", f"{shown}@{FRAME}"])
        self.assertEqual(process.wait(120), 0, process.log.read_text(errors="replace"))
        return Image.open(shown).convert("RGB")

    def letter(self, cell):
        """What stands in a cell of a number: a digit, a point or nothing."""
        box, bright = ink(cell)
        if box is None:
            return ""
        if box[3] - box[1] < cell.height * 0.35:
            return "."
        picture = same_size(bright, box)

        def unlike(digit):
            glyph = self.glyphs[digit]
            return ImageStat.Stat(ImageChops.difference(glyph, picture)).mean[0] + 100 * abs(glyph.shape - shape(box))
        return min(self.glyphs, key=unlike)

    def place(self, name, value, box):
        """The box of a number: numbers with decimals aren't padded, so that one of another length than the sample's
        has a box of another width. It stands with its unit in the middle of a panel: both its ends move alike."""
        x, y, width, height = box
        if name.split("#")[0] not in DECIMALS:
            return box
        own = len(self.written(name, value)) * CELL * height
        return [x + (width - own) / 2, y, own, height]

    def read(self, picture, box):
        """The number in a box, cell by cell."""
        x, y, width, height = box
        cell = CELL * height
        cells = round(width / cell)
        read = [self.letter(picture.crop((round(x + width - (n + 1) * cell), round(y - 1), round(x + width - n * cell),
                                          round(y + height + 1)))) for n in range(cells)]
        return "".join(reversed(read))

    @staticmethod
    def written(name, value):
        digits = DECIMALS.get(name.split("#")[0], 0)
        return f"{value / 10 ** digits:.{digits}f}"

    def fitting(self, places, turn):
        """Another number for each place, none longer than its box."""
        values = {}
        for index, (name, box) in enumerate(places.items()):
            cells = round(box[2] / (CELL * box[3])) - (1 if name.split("#")[0] in DECIMALS else 0)
            values[name] = NUMBERS[(index + 3 * turn) % len(NUMBERS)] % 10 ** cells
        return values

    def hold(self, places, values, picture):
        read = {name: self.read(picture, self.place(name, values[name], box)) for name, box in places.items()}
        expected = {name: self.written(name, values[name]) for name in places}
        self.assertEqual(read, expected)

    def judge(self, style):
        self.choose(style)
        places = self.places()
        self.assertEqual(len(places), 50)  # rows of a card, a CPU and sensors
        for turn in range(3):
            values = self.fitting(places, turn)
            if turn == 0:
                values["GPU_VOLTAGE#0"] = 7  # 0.7, shorter than the sample's text
            self.publish(values)
            self.hold(places, values, self.picture())

    def test_rv5_shows_what_is_published(self):
        self.judge("RV5")

    def test_classic_shows_what_is_published(self):
        self.judge("Classic")


if __name__ == "__main__":
    unittest.main()
