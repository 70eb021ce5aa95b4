"""Every profile that is shipped, on real programs of both platforms: it shows, looks alike, and takes turns."""
import unittest

from PIL import Image, ImageChops

from e2e.demo import condition
from e2e.environment import LINUX, SHIPPED, WIN64, Display, LinuxPrograms, WinePrograms, see, see_still, wait_until
from e2e.panels import is_custom, named_boxes
from e2e.pictures import colourful, difference_box, differing_inside, differing_outside, ink_box

SIZE = (1280, 720)
# Behind the frames over which the first drawing is spread, and early enough that no interval of the overlay's own
# figures is over: they stand at 0 on both platforms.
EARLY = 12
VALUES = {"CPU_USAGE#0": 38, "GPU_USAGE#0": 86, "CPU_TEMP#0": 61, "GPU_TEMP#0": 74}
INK = 190  # brighter than any ground
BUILT_IN = ("Classic", "Player", "RV5", "Reviewer")  # layouts that stand in OSD_Ref.xml
CLOCK = "Streamer"  # shows the time of day, which is never the same twice


def host_of(platform):
    return LINUX / "host_glx" if platform is LinuxPrograms else WIN64 / "host_wgl.exe"


class ShippedCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = Display("1920x1080")
        cls.display = cls.screen.__enter__()
        cls.addClassCleanup(cls.screen.__exit__)

    def programs(self, platform):
        programs = platform(self.display, care=True)
        self.addCleanup(programs.close)
        return programs

    def hold(self, programs, platform):
        """A program that waits keeps published values and the chosen profile alive."""
        ready = programs.folder / "holder-ready"
        programs.with_overlay([host_of(platform), "--frames", "1", "--ready-file", ready, "--wait-file",
                               programs.folder / "never"])
        wait_until(ready.exists)
        for name, value in VALUES.items():
            self.assertEqual(programs.ask("set", name, str(value))[0], 0)

    def pictures(self, programs, platform, profile, frame=EARLY, size=SIZE):
        """The host's own picture of a frame and what that frame presents."""
        before, shown = programs.folder / f"{profile}-before.ppm", programs.folder / f"{profile}.ppm"
        self.assertEqual(programs.ask("profile-name", profile)[0], 0)
        process = programs.with_overlay([host_of(platform), "--frames", str(frame + 2), "--size", f"{size[0]}x{size[1]}",
                                         "--await-detour", "--dump-ppm", f"{shown}@{frame}", "--dump-before", before])
        self.assertEqual(process.wait(120), 0, process.log.read_text(errors="replace"))
        return Image.open(before).convert("RGB"), Image.open(shown).convert("RGB")


class Alike(ShippedCase):
    def test_both_platforms_show_each_profile_alike(self):
        taken = {}
        for platform in (LinuxPrograms, WinePrograms):
            programs = self.programs(platform)
            self.hold(programs, platform)
            taken[platform] = {profile: self.pictures(programs, platform, profile) for profile in SHIPPED}
            programs.close()
        for profile in SHIPPED:
            with self.subTest(profile=profile):
                here, there = taken[LinuxPrograms][profile], taken[WinePrograms][profile]
                self.assertIsNone(difference_box(here[0], there[0]), "the host's own pictures")
                self.judge(profile, here, there)

    def judge(self, profile, here, there):
        if profile in BUILT_IN:
            return self.judge_whole(here, there)
        grounds = named_boxes(profile, *SIZE)
        self.assertEqual(difference_box(*here), difference_box(*there), "what the overlay touches")
        for picture in (here, there):
            self.assertEqual(differing_outside(*picture, grounds.values()), 0)
        for name, box in grounds.items():
            self.assertGreater(differing_inside(*here, box), 0.9, name)
            self.assertLess(self.far_off(here[1], there[1], box), 0.02, name)
            if profile == CLOCK:
                continue
            inks = [ink_box(picture[1], box, INK) for picture in (here, there)]
            self.assertIsNotNone(inks[0], name)
            self.assertLessEqual(max(abs(a - b) for a, b in zip(*inks)), 3, (name, inks))

    def judge_whole(self, here, there):
        """A profile that names no boxes: rows of writing on a ground that is fitted to them."""
        boxes = [difference_box(*pictures) for pictures in (here, there)]
        self.assertIsNotNone(boxes[0])
        self.assertLessEqual(max(abs(a - b) for a, b in zip(*boxes)), 3, boxes)
        self.assertLess(self.far_off(here[1], there[1], boxes[0]), 0.02)

    @staticmethod
    def far_off(a, b, box):
        """Share of pixels in the box whose values are not near each other."""
        difference = ImageChops.difference(a.crop(box), b.crop(box)).convert("L")
        return sum(difference.histogram()[64:]) / (difference.width * difference.height)


class Change(ShippedCase):
    def test_profiles_take_turns_on_a_running_program_that_loses_no_frame(self):
        for platform in (LinuxPrograms, WinePrograms):
            with self.subTest(platform=platform.__name__):
                programs = self.programs(platform)
                bare = self.bare(programs, platform)
                stop = programs.folder / "stop"
                process = programs.with_overlay([host_of(platform), "--frames", "1000000", "--size", "1280x720",
                                                 "--stop-file", stop, "--fps-cap", "60"])
                wait_until(lambda: programs.ask("set", "CPU_USAGE#0", "38")[0] == 0)
                programs.wait_for_overlay(process)
                for profile in ("Default", "Gauges", "FPS", "Graphs", "Default"):
                    self.turn(programs, profile, bare)
                stop.touch()
                self.assertEqual(process.wait(60), 0, process.log.read_text(errors="replace"))
                lines = dict(line.rstrip("\r").split("=", 1)
                             for line in process.log.read_text(errors="replace").splitlines() if "=" in line)
                self.assertEqual(lines["frames"], lines["swaps"])
                programs.close()

    def turn(self, programs, profile, bare):
        """A profile stands where it belongs and nothing of the one before is left."""
        self.assertEqual(programs.ask("profile-name", profile)[0], 0)
        self.assertEqual(programs.ask("reload")[0], 0)
        grounds = list(named_boxes(profile, *SIZE).values())
        left, top, right, bottom = grounds[0]
        inner = (left + 4, top + 4, right - 4, bottom - 4)
        see(self.display, programs.folder / "turn.png", lambda picture:
            differing_inside(bare, picture, inner) > 0.9 and differing_outside(bare, picture, grounds) == 0)

    def bare(self, programs, platform):
        """The program's picture without the overlay."""
        look = programs.folder / "bare.png"
        alone = programs.start([*programs.wrapper, host_of(platform), "--frames", "1000000", "--size", "1280x720"])
        picture = see_still(self.display, look, colourful)
        programs.end(alone)
        return picture


class Moving(ShippedCase):
    def test_graphs_grow_while_the_program_runs(self):
        programs = self.programs(LinuxPrograms)
        self.hold(programs, LinuxPrograms)
        before, early = self.pictures(programs, LinuxPrograms, "Graphs")
        programs.set("Information Option", "UpdateFrameDataInterval=20", "UpdateStatisticInterval=20")
        _, late = self.pictures(programs, LinuxPrograms, "Graphs", frame=200)
        block = next(iter(named_boxes("Graphs", *SIZE).values()))
        self.assertGreater(differing_inside(early, late, block), 0.02)


class Demo(ShippedCase):
    """The demo draws each of them, and has to know what to wait for."""

    def test_what_its_pictures_have_to_show_is_known_of_each_profile(self):
        programs = self.programs(LinuxPrograms)
        programs.take_settings()
        bare = Image.new("RGB", SIZE)
        for profile in SHIPPED:
            with self.subTest(profile=profile):
                self.assertEqual(is_custom(profile), profile not in BUILT_IN)
                self.assertFalse(condition(programs, profile, bare, [], True)(bare), "an overlay is to be seen")


if __name__ == "__main__":
    unittest.main()
