"""The whole road on Windows, under Wine: companion, message hook, detour, host program, overlay."""
import shutil
import unittest

from PIL import Image

from e2e import sheet
from e2e.environment import (LINUX, STORE_KEYS, WIN64, Display, LinuxPrograms, WinePrograms, glfw_examples, see, see_still,
                             wait_until)
from e2e.panels import boxes
from e2e.pictures import colourful, difference_box, differing_outside, lit


ACCENT = (64, 176, 255)  # the strip of the layout's header
SIMPLE_SIZE = (640, 480)  # client size of the "simple" example
SIMPLE_CORNER = (120, 110)  # pixels that its triangle never reaches, window frame included


class WineCase(unittest.TestCase):
    screen_size = "1280x1024"

    @classmethod
    def setUpClass(cls):
        cls.screen = Display(cls.screen_size)
        cls.display = cls.screen.__enter__()
        cls.addClassCleanup(cls.screen.__exit__)

    def setUp(self):
        self.programs = WinePrograms(self.display)
        self.addCleanup(self.programs.close)
        self.programs.show("Bench")
        self.folder = self.programs.folder

    def host(self, *switches, overlay=True, **env):
        """Runs the host to its end; its key=value lines as a dictionary."""
        command = [WIN64 / "host_wgl.exe", *switches]
        process = (self.programs.with_overlay([*command, "--await-detour"], **env) if overlay else
                   self.programs.wine(*command, **env))
        code = process.wait(300)
        text = process.log.read_text(errors="replace")
        self.assertEqual(code, 0, text)
        return dict(line.rstrip("\r").split("=", 1) for line in text.splitlines() if "=" in line)

    def pictures(self, *switches, frame=90, **env):
        """The host's own picture of a frame and what that frame presents."""
        before, shown = self.folder / "before.ppm", self.folder / "shown.ppm"
        self.host("--frames", str(frame + 5), "--dump-ppm", f"{shown}@{frame}", "--dump-before", str(before),
                  *switches, **env)
        return Image.open(before).convert("RGB"), Image.open(shown).convert("RGB")


    def choose(self, profile):
        """Profile of the programs that start from now on; a host that waits keeps the section alive."""
        ready = self.folder / "holder-ready"
        self.programs.with_overlay([WIN64 / "host_wgl.exe", "--frames", "1", "--ready-file", ready, "--wait-file",
                                    self.folder / "never"])
        wait_until(ready.exists)
        self.assertEqual(self.programs.ask("profile-name", profile)[0], 0)


class Writing(WineCase):
    screen_size = "1920x1080"

    def test_sheet_is_written_as_on_linux(self):
        self.choose("TextSheet")
        before, shown = self.pictures("--size", sheet.SIZE, frame=10)
        self.assertEqual(sheet.faults(shown), [])
        self.assertEqual(differing_outside(before, shown, [sheet.PANEL]), 0)
        here, there = sheet.ink_boxes(shown), sheet.ink_boxes(self.linux_sheet())
        for name in sheet.SAME_FACE:
            with self.subTest(line=name):
                self.assertLessEqual(max(abs(a - b) for a, b in zip(here[name], there[name])), 6)

    def linux_sheet(self):
        with LinuxPrograms(self.display) as linux:
            ready, shown = self.folder / "linux-ready", self.folder / "linux.ppm"
            linux.with_overlay([LINUX / "host_glx", "--frames", "1", "--ready-file", ready, "--wait-file",
                                self.folder / "never"])
            wait_until(ready.exists)
            self.assertEqual(linux.ask("profile-name", "TextSheet")[0], 0)
            process = linux.with_overlay([LINUX / "host_glx", "--frames", "12", "--size", sheet.SIZE, "--dump-ppm",
                                          f"{shown}@10"])
            self.assertEqual(process.wait(120), 0)
        return Image.open(shown).convert("RGB")


class Picture(WineCase):
    def test_panels_stand_on_the_picture_and_the_rest_is_untouched(self):
        for profile in (["--profile", "compat"], ["--profile", "core", "--gl", "3.2"]):
            with self.subTest(profile=profile):
                before, shown = self.pictures("--size", "1280x720", *profile)
                self.assertIsNotNone(difference_box(before, shown))
                self.assertEqual(differing_outside(before, shown, boxes("Bench", 1280, 720)), 0)

    def test_context_below_3_2_is_left_alone(self):
        before, shown = self.pictures(MESA_GL_VERSION_OVERRIDE="3.1")
        self.assertIsNone(difference_box(before, shown))

    def test_no_gl_error_is_left_that_the_bare_program_does_not_have(self):
        bare = self.host("--frames", "60", "--print-errors", overlay=False)
        overlaid = self.host("--frames", "60", "--print-errors")
        self.assertEqual(bare["errors"], overlaid["errors"])


class Robustness(WineCase):
    def limit(self, target):
        for root in STORE_KEYS:
            for name, value in (("Enable", int(target > 0)), ("FPSTarget", target)):
                self.programs.run([*self.programs.wrapper, "reg", "add", root + r"\FPSLimiter", "/v", name, "/t",
                                   "REG_DWORD", "/d", str(value), "/f"])
            # The whole key: an empty one of the 32-bit view would hide the other from later programs.
            self.addCleanup(self.programs.run, [*self.programs.wrapper, "reg", "delete", root, "/f"])

    def test_hosts_of_every_kind_run_to_their_end(self):
        for kind in (["--second-window"], ["--two-threads"], ["--resize-storm"], ["--remake-context", "20"],
                     ["--fresh-surface"], ["--odd-state"]):
            with self.subTest(kind=kind):
                self.assertIn("frames", self.host("--frames", "90", *kind))

    def test_exit_while_another_thread_swaps_ends_with_the_programs_code(self):
        for frames in [1, 2, 3, 5, 9, 20, 40, 60] * 2:
            with self.subTest(frames=frames):
                lines = self.host("--frames", "1000000000", "--exit-while-swapping", str(frames))
                self.assertNotIn("frames", lines)  # it never came to its end

    def test_thread_with_a_small_stack_carries_the_overlay(self):
        """64 KB on Windows; Wine gives no thread less than 1 MB."""
        for overlay in (False, True):
            with self.subTest(overlay=overlay):
                self.assertEqual(self.host("--frames", "90", "--stack-kb", "64", overlay=overlay)["swaps"], "90")

    def test_library_loaded_and_freed_again_and_again_beside_a_thread_that_swaps(self):
        """While the overlay is built, in the limiter's wait and in the real swap; the swap's own bytes come back."""
        for limit in (0, 30):
            with self.subTest(limit=limit):
                self.limit(limit)
                lines = self.host("--frames", "1000000000", "--load-library", self.folder / "ORVIN-OSD64-GL.dll",
                                  "--reloads", "32", overlay=False)
                self.assertEqual([lines[f"reload_{key}"] for key in ("detours", "stayed", "changed")], ["32", "0", "0"])

    def test_random_bytes_in_the_whole_section_while_a_host_swaps(self):
        lines = self.host("--frames", "400", "--scribble", "ORVIN-OSD64-GL.dll")
        self.assertEqual((lines["scribbles_on"], lines["frames"]), ("ORVIN-OSD64-GL.dll", "400"))

    def test_missing_shader_leaves_the_host_running(self):
        shader = self.programs.data / "DrawBasic_GL_C.fs"
        aside = self.folder / "aside"
        shutil.move(shader, aside)
        self.addCleanup(shutil.move, aside, shader)
        before, shown = self.pictures()
        self.assertIsNone(difference_box(before, shown))


class Foreign(WineCase):
    """Example programs of GLFW, which know nothing of the overlay."""

    def look(self, name, overlay):
        program = glfw_examples() / f"{name}.exe"
        look = self.folder / "look.png"
        see(self.display, look, lambda p: not lit(p))
        process = self.programs.with_overlay([program]) if overlay else self.programs.wine(program)
        picture = see(self.display, look, lambda p: colourful(p) and (not overlay or ACCENT in p.getdata()))
        self.assertIsNone(process.poll(), process.log.read_text(errors="replace"))
        self.programs.end(process)
        wait_until(lambda: process.poll() is not None)
        return picture

    def test_simple_keeps_its_picture_outside_the_panels(self):
        """A triangle turns in the middle; the corner of the window stands still and is compared pixel for pixel."""
        corner = (0, 0, *SIMPLE_CORNER)
        bare, overlaid = self.look("simple", False).crop(corner), self.look("simple", True).crop(corner)
        touched = difference_box(bare, overlaid)
        self.assertIsNotNone(touched)
        panels = boxes("Bench", *SIMPLE_SIZE)
        left = touched[0] - min(box[0] for box in panels)
        top = touched[1] - min(box[1] for box in panels)
        outside = [differing_outside(bare, overlaid, [(l + x, t + y, r + x, b + y) for l, t, r, b in panels])
                   for x in range(left - 1, left + 2) for y in range(top - 1, top + 2)]
        self.assertEqual(min(outside), 0)

    def test_gears_carries_the_overlay(self):
        picture = self.look("gears", True)
        self.assertIn(ACCENT, picture.crop((0, 0, 330, 330)).getdata())
        self.assertNotIn(ACCENT, self.look("gears", False).crop((0, 0, 330, 330)).getdata())


class Hooks(WineCase):
    def drawn_over(self, *switches):
        """Whether a host that was started by hand shows the overlay; hosts pump messages, so a system hook finds them."""
        before, shown = self.folder / "plain.ppm", self.folder / "hooked.ppm"
        self.host("--frames", "95", "--dump-ppm", f"{shown}@90", "--dump-before", str(before), *switches, overlay=False)
        return difference_box(Image.open(before).convert("RGB"), Image.open(shown).convert("RGB")) is not None

    def test_system_hook_reaches_programs_until_another_companion_ends_it(self):
        self.assertFalse(self.drawn_over())
        hook = self.programs.wine(self.programs.companion, "hook", "--yes")
        wait_until(lambda: "laid" in self.programs.ask("status")[1])  # the desktop's own process is the first to be entered
        self.assertTrue(self.drawn_over("--await-detour"))
        code, output = self.programs.ask("unhook")
        self.assertEqual(code, 0, output)
        self.assertEqual(hook.wait(30), 0, hook.log.read_text(errors="replace"))
        self.assertFalse(self.drawn_over())


class Commands(WineCase):
    def test_a_batch_file_takes_no_word_that_holds_a_command(self):
        batch = self.folder / "words.bat"
        batch.write_text("@echo off\r\necho ran %1\r\n")
        ask = lambda *words: self.programs.ask("run", "--", *words)
        name = "Z:" + str(batch).replace("/", "\\")
        for bad in ('"&echo injected', "a&echo injected", "%PATH%"):
            for file in (name, name + ".", name.upper()):
                code, output = ask(file, bad)
                self.assertEqual(code, 2, output)
                self.assertIn("batch file", output)
                self.assertNotIn("ran ", output)
        code, output = ask(name, "plain")
        self.assertEqual(code, 0, output)
        self.assertIn("ran plain", output)

    def test_off_and_on_again(self):
        look = self.folder / "look.png"
        alone = self.programs.wine(WIN64 / "host_wgl.exe", "--frames", "1000000")
        bare = see_still(self.display, look, colourful)
        self.programs.end(alone)
        self.choose("Shapes")  # nothing on it moves by itself
        panels = boxes("Shapes", 640, 480)
        process = self.programs.with_overlay([WIN64 / "host_wgl.exe", "--frames", "1000000", "--await-detour"])
        shown = see_still(self.display, look,
                          lambda p: difference_box(bare, p) and differing_outside(bare, p, panels) == 0)
        self.assertEqual(self.programs.ask("off")[0], 0)
        see(self.display, look, lambda p: difference_box(bare, p) is None)
        self.assertEqual(self.programs.ask("on")[0], 0)
        see(self.display, look, lambda p: difference_box(shown, p) is None)
        self.programs.end(process)
