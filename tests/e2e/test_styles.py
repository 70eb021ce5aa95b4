"""The two built-in styles, every row with every size: nothing overlaps, nothing is cut off, columns are columns."""
import concurrent.futures
import importlib.util
import itertools
import json
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

from e2e.environment import LINUX, ROOT

SLACK = 1.5  # canvas units: boxes are cut to whole units one by one
MACHINES = ((1, 1), (2, 1), (2, 2), (3, 2), (4, 1), (4, 2))
CELL = 0.75  # width of a digit's cell, in text sizes
SENSORS = 9  # of the shipped profiles, all defined by the shipped settings
DIGITS = 3  # of a load or temperature; their boxes have room for more
LANGUAGES = sorted(path.stem for path in (ROOT / "data/Languages").iterdir())
LONGEST = ("German", "Russian")  # captions, which are looked at in every size; those of the others grow alike


def sheets():
    """What makes the contact sheets makes the profiles and machines of these tests too."""
    spec = importlib.util.spec_from_file_location("styles", ROOT / "docs/pictures/styles.py")
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


def overlap(a, b):
    """How far two boxes lie in each other, the shorter way."""
    across = min(a[0] + a[2], b[0] + b[2]) - max(a[0], b[0])
    down = min(a[1] + a[3], b[1] + b[3]) - max(a[1], b[1])
    return min(across, down)


class Geometry(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.sheets = sheets()
        cls.folder = pathlib.Path(tempfile.mkdtemp(prefix="orvin-styles."))
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.lay_out_data(cls.folder)

    @staticmethod
    def lay_out_data(folder):
        shutil.copytree(ROOT / "data", folder / "Data")
        shutil.copytree(ROOT / "shaders", folder / "Data", dirs_exist_ok=True)
        (folder / "Settings").mkdir()
        (folder / "Data/Profiles/Drawn").mkdir()

    def layout(self, style, rows, cards, cpus, scale, size):
        (self.folder / "Settings/settings.ini").write_text(self.sheets.machine(cards))
        return self.ask(self.folder, self.sheets.profile(style, rows, cards, cpus, scale), size)

    def ask(self, folder, profile, size):
        (folder / "Data/Profiles/Drawn/OSD.xml").write_text(profile)
        width, height = self.sheets.SIZES[size]
        done = subprocess.run([LINUX / "orvin-osd", "rows", "Drawn", "--json", "--data", folder / "Data", "--size",
                               f"{width}x{height}"], capture_output=True, text=True, timeout=300, check=False)
        self.assertEqual(done.returncode, 0, done.stderr)
        return json.loads(done.stdout)

    def parts(self, layout):
        """Name and box of every part that is shown."""
        return [(f"{row['of']} {row['row']} {part['part']}", self.used(row["row"], part)) for row in layout["rows"]
                for part in row["boxes"]]

    @staticmethod
    def used(row, part):
        """A box without the cells at its left that no value of the row needs."""
        x, y, width, height = part["box"]
        most = DIGITS * CELL * height
        if part["part"] == "value" and row.endswith(("Usage", "Temperature")) and width > most:
            x, width = x + width - most, most
        return [x, y, width, height]

    def hold(self, layout):
        left, top, width, height = layout["ground"]
        canvas = layout["canvas"]
        parts = self.parts(layout)
        self.assertGreaterEqual(min(left, top), 0)
        if not self.is_too_much(layout):
            self.assertLessEqual(left + width, canvas[0] + SLACK, "the ground leaves the picture")
        self.assertLessEqual(top + height, canvas[1] + SLACK, "the ground leaves the picture")
        for name, box in parts:
            self.assertGreaterEqual(box[0], left - SLACK, name)
            self.assertGreaterEqual(box[1], top - SLACK, name)
            self.assertLessEqual(box[0] + box[2], left + width + SLACK, name)
            self.assertLessEqual(box[1] + box[3], top + height + SLACK, name)
        seen = {tuple(box): name for name, box in parts}  # three rows of the grid share their card's title
        for (a, one), (b, other) in itertools.combinations(seen.items(), 2):
            self.assertLessEqual(overlap(a, b), SLACK, f"{one} {a} and {other} {b}")

    @staticmethod
    def is_too_much(layout):
        """Lists of several cards at a large scale: not even all of the picture has room for their rows."""
        shown = [row for row in layout["rows"] if row["place"]]
        tall = [part["box"][3] for row in shown for part in row["boxes"]]
        pitch = 1.7 * sum(tall) / len(tall)  # of rows, from the height of their writing
        _, top, width, height = layout["ground"]
        rows_a_column = height / pitch
        return width > layout["canvas"][0] and len(shown) > 2 * rows_a_column and top + height > layout["canvas"][1] * 0.75

    def sensors(self, layout):
        """Rows of sensors have all of their parts, so that the other checks see them."""
        rows = [row for row in layout["rows"] if row["of"].startswith("sensor")]
        self.assertEqual(len(rows), SENSORS)
        for row in rows:
            self.assertEqual([part["part"] for part in row["boxes"]], ["title", "value", "unit"], row)
            self.assertTrue(row["place"])

    def columns(self, layout):
        """Numbers of a list end where the others of their column do; those of figures are larger."""
        ends = {}
        for row in layout["rows"]:
            for part in row["boxes"]:
                if part["part"] == "unit" and row["of"] != "program":
                    ends.setdefault(round(part["box"][0] / 40), set()).add(part["box"][0])
        for group, places in ends.items():
            self.assertLessEqual(max(places) - min(places), 3, (group, places))

    def test_every_row_in_every_size(self):
        combinations = itertools.product(self.sheets.STYLES, self.sheets.SIZES, self.sheets.SCALES)
        for number, (style, size, scale) in enumerate(combinations):
            cards, cpus = MACHINES[number % len(MACHINES)]
            rows = ("all", "three")[number // 2 % 2]
            with self.subTest(style=style, size=size, scale=scale, rows=rows, cards=cards, cpus=cpus):
                layout = self.layout(style, rows, cards, cpus, scale, size)
                self.hold(layout)
                if rows == "all":
                    self.sensors(layout)

    def test_every_machine(self):
        for style, (cards, cpus), scale in itertools.product(self.sheets.STYLES, MACHINES, (100, 150)):
            with self.subTest(style=style, scale=scale, cards=cards, cpus=cpus):
                layout = self.layout(style, "all", cards, cpus, scale, "1080p")
                self.hold(layout)
                self.sensors(layout)
                if style == "RV5" and scale == 100:
                    self.columns(layout)

    def test_every_language(self):
        with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
            for language, layouts in zip(LANGUAGES, pool.map(self.in_language, LANGUAGES)):
                captions = self.captions(language)
                for (style, scale), layout in layouts.items():
                    with self.subTest(language=language, style=style, scale=scale):
                        self.hold(layout)
                        shown = {row["caption"] for row in layout["rows"]}
                        self.assertIn(captions["PowerTarget"], shown, "the language is not the one that was chosen")

    def in_language(self, language):
        """Every row of both styles with the captions of a language."""
        folder = self.folder / language
        folder.mkdir()
        self.lay_out_data(folder)
        choice = f"[{self.sheets.KEY}]\nLanguageXMLFileName = {language}.xml\n"
        (folder / "Settings/settings.ini").write_text(self.sheets.machine(1) + choice)
        settings = folder / "Data/OSD.ini"
        settings.write_text(settings.read_text().replace("UseLanguageXMLString = 0", "UseLanguageXMLString = 1"))
        scales = self.sheets.SCALES if language in LONGEST else self.sheets.SCALES[-1:]
        return {(style, scale): self.ask(folder, self.sheets.profile(style, "all", 1, 1, scale), "1080p")
                for style, scale in itertools.product(self.sheets.STYLES, scales)}

    @staticmethod
    def captions(language):
        text = (ROOT / f"data/Languages/{language}.xml").read_text()
        return dict(re.findall(r'<(\S+) En="([^"]*)"', text))


if __name__ == "__main__":
    unittest.main()
