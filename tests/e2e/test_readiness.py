"""What the companion looks at before the overlay enters a program, and that the program comes first."""
import pathlib
import shutil
import unittest

from e2e.environment import LINUX, WIN64, Display, LinuxPrograms, WinePrograms, wait_until
from e2e.pictures import difference_box

from PIL import Image

BARE = "starts without the overlay: "


class ReadinessCase(unittest.TestCase):
    def spoil(self, data, name):
        """Makes the data folder unfit in the way of that name."""
        if name == "no data folder":
            shutil.rmtree(data)
        elif name == "no shaders":
            for path in [*data.glob("*.vs"), *data.glob("*.fs")]:
                path.unlink()
        elif name == "a broken profile":
            (data / "Profiles/Default/OSD.xml").write_text("<OSD")
        else:
            shutil.rmtree(data / "Profiles/Default")

    WAYS = {"no data folder": "there is no data folder ", "no shaders": "DrawBasic_GL_C.vs is missing; ",
            "a broken profile": "the profile Default does not pass; 'orvin-osd profile check Default'",
            "no profile": "there is no profile Default; "}


class Linux(ReadinessCase):
    def setUp(self):
        screen = Display()
        display = screen.__enter__()
        self.addCleanup(screen.__exit__)
        self.programs = LinuxPrograms(display)
        self.addCleanup(self.programs.close)
        self.files = self.programs.folder / "before.ppm", self.programs.folder / "shown.ppm"

    def draw(self, *words, **env):
        """(whether the overlay was on the picture, what was printed) of a host that is started by these words."""
        before, shown = self.files
        code, output = self.programs.run([*words, LINUX / "host_glx", "--frames", "60", "--dump-ppm", f"{shown}@50",
                                          "--dump-before", before], **env)
        self.assertEqual(code, 0, output)
        return difference_box(Image.open(before), Image.open(shown)) is not None, output

    def test_a_run_starts_the_program_bare_where_nothing_can_be_shown(self):
        run = [self.programs.companion, "run", "--"]
        drawn, output = self.draw(*run)
        self.assertTrue(drawn)
        self.assertNotIn(BARE, output)
        kept = self.programs.folder / "kept"
        shutil.copytree(self.programs.data, kept)
        for name, words in self.WAYS.items():
            with self.subTest(name):
                shutil.rmtree(self.programs.data, ignore_errors=True)
                shutil.copytree(kept, self.programs.data)
                self.spoil(self.programs.data, name)
                drawn, output = self.draw(*run)
                self.assertFalse(drawn)
                self.assertIn(BARE + ("shader " if name == "no shaders" else "") + words, output)
                self.assertEqual(output.count("orvin-osd:"), 1, output)

    def test_force_enters_all_the_same(self):
        path = self.programs.data / "Profiles/Default/OSD.xml"
        path.write_text(path.read_text().replace("</Info>", '<NumBox IsShow="1" Name="late"/></Info>', 1))  # without a font
        self.assertFalse(self.draw(self.programs.companion, "run", "--")[0])
        self.assertTrue(self.draw(self.programs.companion, "run", "--force", "--")[0])

    def test_the_preload_part_alone_leaves_a_program_alone_without_shaders(self):
        preload = {"LD_PRELOAD": str(LINUX / "libORVIN-OSD64-GL-preload.so")}
        self.assertTrue(self.draw(**preload)[0])
        self.spoil(self.programs.data, "no shaders")
        ready = self.programs.folder / "ready"
        self.assertFalse(self.draw(**preload)[0])
        process = self.programs.start([LINUX / "host_glx", "--frames", "2", "--ready-file", ready, "--wait-file",
                                       self.programs.folder / "never"], **preload)
        wait_until(ready.exists)
        maps = pathlib.Path(f"/proc/{process.pid}/maps").read_text()
        self.assertIn("libORVIN-OSD64-GL-preload.so", maps)
        self.assertNotIn("libORVIN-OSD64-GL.so", maps)


class Wine(ReadinessCase):
    def test_run_attach_and_hook_leave_programs_bare(self):
        with Display() as display, WinePrograms(display) as programs:
            self.spoil(programs.data, "no profile")
            before, shown = programs.folder / "before.ppm", programs.folder / "shown.ppm"
            code, output = programs.ask("run", "--", WIN64 / "host_wgl.exe", "--frames", "60",
                                        "--dump-ppm", f"{shown}@50", "--dump-before", before)
            self.assertEqual(code, 0, output)
            self.assertIn(BARE + self.WAYS["no profile"], output)
            self.assertIsNone(difference_box(Image.open(before), Image.open(shown)))
            code, output = programs.ask("hook", "--yes")
            self.assertEqual(code, 3, output)
            self.assertIn(self.WAYS["no profile"], output)
