"""The commands for authors of profiles: list, new, check, render and the font cache; use and for on a running program."""
import json
import shutil
import signal
import subprocess
import unittest

from PIL import Image, ImageChops

from e2e.environment import LINUX, SHIPPED, STORE_KEYS, Display, LinuxPrograms, WinePrograms, screenshot, wait_until
from e2e.pictures import difference_box

SIZE = "1280x720"


def difference(a, b):
    """Largest difference of the three colours, pixel by pixel."""
    red, green, blue = ImageChops.difference(a, b).split()
    return ImageChops.lighter(ImageChops.lighter(red, green), blue)


def longest_run(picture, level):
    """Most pixels side by side, along a row or a column, that are above a level."""
    longest = 0
    for turned in (picture, picture.transpose(Image.Transpose.TRANSPOSE)):
        data, width = turned.tobytes(), turned.width
        for row in range(turned.height):
            line = bytes(1 if value > level else 0 for value in data[row * width:(row + 1) * width])
            longest = max([longest, *map(len, line.split(b"\0"))])
    return longest


SENSOR_PROFILE = """<?xml version="1.0" encoding="UTF-8"?>
<OSD LayoutStyle="2"><CustomLayout><Settings><Camera/><Info>
<Panel IsShow="1" Name="box" FrameSizeW="200" FrameSizeH="60" ContentSizeW="200" ContentSizeH="60" PanelType="1"
       PanelColorR="20" PanelColorG="20" PanelColorB="20" PanelColorA="255"/>
<NumBox IsShow="1" Name="pump@box" FontName="Arial" FrameSizeW="190" FrameSizeH="50" TextSize="30" TextColorR="255" TextColorG="255"
        TextColorB="255" DataFullName="PUMP_RPM#2"/>
</Info></Settings></CustomLayout></OSD>
"""


class AuthorCase(unittest.TestCase):
    """A data folder of its own and no display: none of this needs one."""

    def setUp(self):
        self.programs = LinuxPrograms("")
        self.addCleanup(self.programs.close)
        self.folder = self.programs.folder
        self.programs.env["TMPDIR"] = str(self.folder)
        self.profiles = self.programs.data / "Profiles"

    def ask(self, *arguments, code=0):
        found, output = self.programs.ask(*arguments)
        self.assertEqual(found, code, output)
        return output

    def render(self, profile, name="picture.png", *arguments):
        path = self.folder / name
        self.ask("profile", "render", profile, "-o", path, "--size", SIZE, *arguments)
        return Image.open(path).convert("RGB")

    def write_profile(self, name, text):
        folder = self.profiles / name
        folder.mkdir(exist_ok=True)
        (folder / "OSD.xml").write_text(text)
        return folder


class Profiles(AuthorCase):
    def test_list_names_the_shipped_profiles_and_their_style(self):
        rows = {row["name"]: row for row in json.loads(self.ask("profile", "list", "--json"))}
        for name in SHIPPED:
            built_in = {"Classic": "Classic", "RV5": "RV5", "Player": "RV5", "Reviewer": "RV5"}
            self.assertEqual(rows[name]["style"], built_in.get(name, "Custom"))
            self.assertEqual(rows[name]["shownIn"], [])
        self.write_profile("Broken", "<OSD")
        self.assertRegex(self.ask("profile", "list"), r"(?m)^Broken +unreadable$")

    def test_new_copies_a_profile_and_refuses_an_existing_one(self):
        self.ask("profile", "new", "Mine", "--from", "Streamer")
        for file in (self.profiles / "Streamer").iterdir():
            self.assertEqual((self.profiles / "Mine" / file.name).read_bytes(), file.read_bytes())
        self.assertIn("exists already", self.ask("profile", "new", "Mine", "--from", "Gauges", code=1))
        self.ask("profile", "new", "../Mine", "--from", "Gauges", code=2)
        self.ask("profile", "new", "Other", "--from", "Nowhere", code=3)
        self.assertFalse((self.profiles / "Other").exists())

    def test_check_passes_what_is_shipped_and_nothing_broken(self):
        for name in SHIPPED:
            with self.subTest(profile=name):
                self.ask("profile", "check", name, "--quiet")
        self.write_profile("Broken", "<OSD")
        self.ask("profile", "check", "Broken", code=1)
        self.ask("profile", "check", "Nowhere", code=3)

    def test_use_refuses_a_profile_that_does_not_pass(self):
        self.write_profile("Broken", "<OSD")
        self.assertIn("does not pass", self.ask("profile", "use", "Broken", code=1))
        self.assertIn("does not pass", self.ask("profile", "for", "some program", "Broken", code=1))
        self.ask("profile", "use", "Nowhere", code=3)
        self.assertIn("holds from the next start", self.ask("profile", "use", "Gauges"))


class Render(AuthorCase):
    def test_the_streamers_bar_fits_upright_pictures(self):
        """Both its ends are seen, with the picture's edges free beside them."""
        for width, height in ((1080, 1920), (720, 1280), (480, 640)):
            with self.subTest(width=width):
                pictures = []
                for profile in ("Streamer", "Empty"):
                    path = self.folder / f"{profile}.png"
                    self.ask("profile", "render", profile, "-o", path, "--size", f"{width}x{height}", "--background", "#808080")
                    pictures.append(Image.open(path).convert("RGB"))
                left, top, right, bottom = difference_box(*pictures)
                self.assertTrue(0 < left < right < width and 0 < top < bottom < height, (left, top, right, bottom))
                self.assertLessEqual(abs(left - (width - right)), 2, "it stands in the middle")

    def test_pictures_are_the_same_each_time_and_have_their_size(self):
        first, second = self.render("Gauges", "a.png", "--seconds", "3"), self.render("Gauges", "b.png", "--seconds", "3")
        self.assertEqual(first.size, (1280, 720))
        self.assertIsNone(difference_box(first, second))

    def test_the_overlay_stands_on_the_background(self):
        shown = self.render("FPS", "shown.png", "--background", "#336699", "--frames", "30")
        plain = Image.new("RGB", shown.size, (0x33, 0x66, 0x99))
        self.assertIsNotNone(difference_box(plain, shown))
        self.assertEqual(shown.getpixel((640, 400)), (0x33, 0x66, 0x99))
        picture = self.folder / "behind.png"
        plain.save(picture)
        self.assertIsNone(difference_box(shown, self.render("FPS", "again.png", "--background", picture, "--frames", "30")))

    def test_graphs_fill_with_simulated_time(self):
        early = self.render("Graphs", "early.png", "--seconds", "1")
        late = self.render("Graphs", "late.png", "--seconds", "12")
        self.assertIsNotNone(difference_box(early, late))

    def test_values_come_from_a_file(self):
        values = self.folder / "values"
        pictures = []
        for load in (7, 93):
            values.write_text(f"; a load\nCPU_USAGE#0 {load}\n")
            pictures.append(self.render("Gauges", "picture.png", "--values", values, "--frames", "90"))
        self.assertIsNotNone(difference_box(*pictures))
        values.write_text("CPU_USAGE#0 much\n")
        output = self.ask("profile", "render", "Gauges", "-o", self.folder / "x.png", "--values", values, code=1)
        self.assertIn("line 1", output)

    def test_a_profile_is_drawn_from_wherever_it_lies(self):
        elsewhere = self.folder / "elsewhere"
        shutil.copytree(self.profiles / "Streamer", elsewhere)
        by_name = self.render("Streamer", "name.png", "--frames", "30")
        for path in (elsewhere, elsewhere / "OSD.xml"):
            self.assertIsNone(difference_box(by_name, self.render(path, "path.png", "--frames", "30")))

    def test_a_profile_without_a_layout_says_why(self):
        for text, words in (("<OSD", "not well formed"), ("<Else/>", "no root OSD"),
                            ('<OSD LayoutStyle="2"/>', "no element of its layout style"),
                            ('<OSD LayoutStyle="2"><CustomLayout/></OSD>', "no Settings")):
            self.write_profile("Broken", text)
            output = self.ask("profile", "render", "Broken", "-o", self.folder / "x.png", code=1)
            self.assertIn(words, output)
            self.assertEqual(len(output.splitlines()), 1, output)
        self.assertFalse((self.folder / "x.png").exists())
        self.ask("profile", "render", "Nowhere", "-o", self.folder / "x.png", code=3)

    def test_nothing_is_left_behind(self):
        self.render("FPS", "picture.png", "--frames", "5")
        self.assertEqual([path.name for path in self.folder.glob("orvin-*")], [])

    def test_watch_draws_again_when_a_file_changes(self):
        shutil.copytree(self.profiles / "FPS", self.profiles / "Watched")
        picture = self.folder / "watched.png"
        process = self.programs.start([self.programs.companion, "profile", "render", "Watched", "-o", picture, "--size",
                                       SIZE, "--frames", "10", "--watch"])
        wait_until(picture.exists)
        first = Image.open(picture).convert("RGB")
        shutil.copy(self.profiles / "Gauges/OSD.xml", self.profiles / "Watched/OSD.xml")
        wait_until(lambda: process.log.read_text().count("drew") >= 2)
        self.assertIsNotNone(difference_box(first, Image.open(picture).convert("RGB")))
        (self.profiles / "Watched/OSD.xml").write_text("<OSD")
        wait_until(lambda: "not well formed" in process.log.read_text())
        self.assertIsNone(process.poll(), "a broken file ends nothing")
        process.send_signal(signal.SIGINT)
        self.assertEqual(process.wait(20), 0)
        self.assertEqual([path.name for path in self.folder.glob("orvin-*")], [])


class FontCache(AuthorCase):
    def test_a_written_file_gives_the_same_pixels(self):
        drawn = self.render("Streamer", "drawn.png", "--seconds", "2")
        path = self.profiles / "Streamer/2-Arial.fnt"
        self.assertEqual(self.ask("fontcache", "write", "Streamer").strip(), str(path))
        self.assertIn("good", self.ask("fontcache", "check", path))
        self.assertIsNone(difference_box(drawn, self.render("Streamer", "loaded.png", "--seconds", "2")))

    def test_the_file_is_what_the_layout_is_made_of(self):
        drawn = self.render("Streamer", "drawn.png", "--seconds", "2")
        self.ask("fontcache", "write", "Streamer")
        path = self.profiles / "Streamer/2-Arial.fnt"
        content = bytearray(path.read_bytes())
        atlas = len(content) - sum((4096 * 4096) >> (2 * level) for level in range(13))
        content[atlas:atlas + 4096 * 4096] = bytes(4096 * 4096)  # glyphs without ink
        path.write_bytes(content)
        self.assertIsNotNone(difference_box(drawn, self.render("Streamer", "blank.png", "--seconds", "2")))
        self.ask("fontcache", "write", "Streamer")  # the bad file has no part in the new one
        self.assertIsNone(difference_box(drawn, self.render("Streamer", "again.png", "--seconds", "2")))

    def test_list_and_check_tell_what_is_wrong(self):
        self.assertEqual(json.loads(self.ask("fontcache", "list", "--json")), [])
        out = self.folder / "out"
        self.ask("fontcache", "write", "Gauges", "--out", out)
        whole = (out / "2-Arial.fnt").read_bytes()
        for length, words in ((0, "empty"), (100, "too short"), (1000, "glyph records"), (len(whole) - 1, "picture")):
            (self.profiles / "Gauges/2-Arial.fnt").write_bytes(whole[:length])
            self.assertIn(words, self.ask("fontcache", "check", self.profiles / "Gauges/2-Arial.fnt", code=1))
            row, = json.loads(self.ask("fontcache", "list", "Gauges", "--json"))
            self.assertFalse(row["good"])
            self.assertIn(words, row["fault"])
        (self.profiles / "Gauges/2-Arial.fnt").write_bytes(b"\6" + whole[1:])
        self.assertIn("version", self.ask("fontcache", "check", self.profiles / "Gauges/2-Arial.fnt", code=1))
        (out / "2-Courier.fnt").write_bytes(whole)
        self.assertIn("Courier", self.ask("fontcache", "check", out / "2-Courier.fnt", code=1))
        self.ask("fontcache", "check", out / "missing.fnt", code=3)


class InAProgram(unittest.TestCase):
    """Choosing profiles reaches running programs at once."""

    @classmethod
    def setUpClass(cls):
        cls.screen = Display("1920x1080")
        cls.display = cls.screen.__enter__()
        cls.addClassCleanup(cls.screen.__exit__)

    def setUp(self):
        self.programs = LinuxPrograms(self.display)
        self.addCleanup(self.programs.close)
        self.shots = 0

    def host(self):
        ready = self.programs.folder / "ready"
        process = self.programs.with_overlay([LINUX / "host_glx", "--size", SIZE, "--frames", "1000000", "--ready-file",
                                               ready])
        wait_until(ready.exists)
        return process

    def shown_in(self):
        code, output = self.programs.ask("profile", "list", "--json")
        self.assertEqual(code, 0, output)
        return {row["name"]: row["shownIn"] for row in json.loads(output) if row["shownIn"]}

    def test_use_and_for_change_what_is_listed_and_the_end_takes_it_back(self):
        process = self.host()
        own = f"host_glx ({process.pid})"
        self.assertEqual(self.shown_in(), {"Default": ["all programs"]})
        for arguments, expected in ((["use", "Gauges"], {"Gauges": ["all programs"]}),
                                    (["for", "host_glx", "Graphs"], {"Gauges": ["all programs"],
                                                                     "Graphs": [own, "host_glx"]}),
                                    (["for", str(process.pid), "FPS"], {"FPS": [own], "Gauges": ["all programs"],
                                                                        "Graphs": ["host_glx"]}),
                                    (["for", "host_glx", "--global"], {"Gauges": ["all programs"]}),
                                    (["use", "Gone", "--force"], {"Gone": ["all programs"]})):
            code, output = self.programs.ask("profile", *arguments)
            self.assertEqual(code, 0, output)
            self.assertEqual(self.shown_in(), expected)
        self.assertEqual(self.programs.ask("profile", "for", "999999999", "FPS")[0], 3)
        self.programs.end(process)

    def test_the_window_shows_the_chosen_profile_without_another_command(self):
        self.host()

        def has_blue_writing():
            """The title of the gauge of the processor, at the upper right, where the other profile has nothing."""
            self.shots += 1
            shot = screenshot(self.display, self.programs.folder / f"shot{self.shots}.png").crop((1020, 90, 1100, 120))
            return sum(1 for r, g, b in shot.getdata() if b > 190 and b - r > 80 and 40 < b - g < 110) > 20

        self.assertEqual(self.programs.ask("profile", "use", "FPS")[0], 0)
        wait_until(lambda: not has_blue_writing())
        self.assertFalse(has_blue_writing(), "nor does the program itself draw such a colour there")
        self.assertEqual(self.programs.ask("profile", "use", "Gauges")[0], 0)
        wait_until(has_blue_writing)


class BothPlatforms(unittest.TestCase):
    """What is drawn on Linux and under Wine: the same layout to the pixel, the edges of glyphs aside."""

    def test_shipped_profiles_agree(self):
        with Display() as display, WinePrograms(display) as wine, LinuxPrograms("") as linux:
            for name in SHIPPED:
                with self.subTest(profile=name):
                    pictures = []
                    for programs in (wine, linux):
                        path = programs.folder / f"{name}.png"
                        shown = path if programs is linux else f"Z:{path}"
                        code, output = programs.ask("profile", "render", name, "-o", shown, "--size", SIZE, "--seconds",
                                                    "8", "--background", "#B0B0B0")
                        self.assertEqual(code, 0, output)
                        pictures.append(Image.open(path).convert("RGB"))
                    apart = difference(*pictures)
                    self.assertLess(apart.getextrema()[1], 120)
                    self.assertLess(longest_run(apart, 32), 16)

    def test_wine_takes_any_name_and_writes_font_files(self):
        with Display() as display, WinePrograms(display) as wine:
            def ask(*arguments):
                code, output = wine.ask(*arguments)
                self.assertEqual(code, 0, output)
                return output

            def render(file):
                ask("profile", "render", "Größe 1", "-o", f"Z:{wine.folder / file}", "--size", SIZE, "--frames", "30")
                return Image.open(wine.folder / file).convert("RGB")

            ask("profile", "new", "Größe 1", "--from", "Streamer")
            ask("profile", "check", "Größe 1", "--quiet")
            drawn = render("drawn.png")
            written = ask("fontcache", "write", "Größe 1").strip()
            self.assertTrue(written.endswith("\\Größe 1\\2-Arial.fnt"), written)
            self.assertIn("good", ask("fontcache", "check", written))
            self.assertIsNone(difference_box(drawn, render("loaded.png")))

    def test_wine_reads_the_sensors_that_the_registry_defines(self):
        """A name and a divisor of a key's own: texts and numbers of the registry come through."""
        with Display() as display, WinePrograms(display) as wine:
            first = wine.run([*wine.wrapper, "reg", "query", STORE_KEYS[0]])[0] == 0  # then that one counts alone
            key = STORE_KEYS[0 if first else 1] + r"\Information Option\Config\Sensor\Water"
            folder = wine.data / "Profiles/Sensors"
            shutil.copytree(wine.data / "Profiles/Empty", folder)
            (folder / "OSD.xml").write_text(SENSOR_PROFILE)
            (wine.folder / "values").write_text("PUMP_RPM#2 1234\n")

            def define(*value):
                code, output = wine.run([*wine.wrapper, "reg", "add", key, "/v", *value, "/f"])
                self.assertEqual(code, 0, output)

            def render(file):
                code, output = wine.ask("profile", "render", "Sensors", "-o", f"Z:{wine.folder / file}", "--size", "320x240",
                                        "--frames", "3", "--values", f"Z:{wine.folder / 'values'}")
                self.assertEqual(code, 0, output)
                return Image.open(wine.folder / file).convert("RGB")

            unknown = 'nobody publishes "PUMP_RPM#2"'
            self.assertIn(unknown, wine.ask("profile", "check", "Sensors")[1])
            self.addCleanup(subprocess.run, [*wine.wrapper, "reg", "delete", key, "/f"], env=wine.env)
            define("DataName", "/d", "PUMP_RPM")
            self.assertNotIn(unknown, wine.ask("profile", "check", "Sensors")[1])
            whole = render("whole.png")
            define("Divisor", "/t", "REG_DWORD", "/d", "10")
            self.assertIsNotNone(difference_box(whole, render("tenth.png")))


if __name__ == "__main__":
    unittest.main()
