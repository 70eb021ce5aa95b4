"""Programs with several threads, windows and contexts, with the overlay on both platforms."""
import unittest

from PIL import Image

from e2e.open_count import OpenCount
from e2e.panels import boxes
from e2e.pictures import difference_box, differing_outside
from e2e.test_linux import LinuxCase
from e2e.test_wine import WineCase

WIDTH, HEIGHT = 320, 240
SIZE = ["--size", f"{WIDTH}x{HEIGHT}"]
CORE = ["--profile", "core", "--gl", "3.3"]


class Contexts:
    """What holds on either platform."""

    def own_pair(self, thread=1):
        """A thread's picture of the dumped frame, and what that frame presented."""
        names = [f"{name}.ppm" + (f".{thread}" if thread > 1 else "") for name in ("before", "shown")]
        return [Image.open(self.folder / name).convert("RGB") for name in names]

    def dumped(self, frame, *switches):
        """Runs the host with its pictures of a frame kept; its lines."""
        return self.host(*SIZE, "--dump-ppm", f"{self.folder / 'shown.ppm'}@{frame}", "--dump-before",
                         str(self.folder / "before.ppm"), *switches)

    def carries(self, thread=1):
        """Whether the picture carries the overlay; what lies outside its panels is the host's in any case."""
        before, shown = self.own_pair(thread)
        self.assertEqual(differing_outside(before, shown, boxes("Bench", WIDTH, HEIGHT)), 0)
        return difference_box(before, shown) is not None

    def keep_objects(self, lines):
        self.assertGreater(int(lines["objects_made"]), 0)
        self.assertEqual(lines["objects_left"], lines["objects_made"])

    def stay(self):
        (self.programs.data / "OSD.ini").write_text("[HostCare]\nStayWithSurface=1\n")

    def test_four_threads_swap_at_once(self):
        for key in (False, True):
            with self.subTest(StayWithSurface=key):
                if key:
                    self.stay()
                lines = self.dumped(480, "--threads", "4", "--frames", "500")
                swaps = [lines[f"{thread}swaps"] for thread in ("", "thread2.", "thread3.", "thread4.")]
                self.assertEqual(swaps, ["500"] * 4)
                carrying = [self.carries(thread) for thread in (1, 2, 3, 4)]
                if key:
                    self.assertIn(True, carrying)

    def test_a_core_context_made_anew_gets_the_overlay_again(self):
        lines = self.dumped(75, *CORE, "--remake-context", "20", "--objects", "20", "--frames", "80")
        self.assertEqual(lines["contexts_made"], "4")
        self.keep_objects(lines)
        self.assertTrue(self.carries())

    def test_two_core_contexts_on_one_window_keep_their_objects(self):
        self.keep_objects(self.dumped(25, *CORE, "--second-context", "--objects", "60", "--frames", "30"))
        self.carries()

    def test_objects_of_unshared_and_shared_contexts_survive_the_change_of_windows(self):
        for share in ([], ["--share"]):
            with self.subTest(share=share):
                self.keep_objects(self.host(*SIZE, "--windows", "3", "--contexts", "3", "--objects", "60", "--frames",
                                            "24", *share))

    def builds(self, *switches):
        with OpenCount(self.programs.data / "Profiles/Default/OSD.xml") as opens:
            self.dumped(*switches)
            return opens.count()

    def test_the_overlay_stays_with_the_window_that_it_was_built_on(self):
        self.stay()
        once = self.builds(41, "--frames", "42")
        self.assertGreater(once, 0)
        for contexts in ("1", "2"):
            with self.subTest(contexts=contexts):
                both = ["--windows", "2", "--contexts", contexts, "--frames", "42"]
                self.assertEqual(self.builds(41, *both), once)
                self.assertTrue(self.carries(), "the first window's frame")
                self.builds(42, *both)
                self.assertFalse(self.carries(), "the second one's")

    def test_the_second_window_gets_the_overlay_when_the_first_is_closed(self):
        self.stay()
        for contexts in ("1", "2"):
            with self.subTest(contexts=contexts):
                self.dumped(120, "--windows", "2", "--contexts", contexts, "--close-first", "41", "--frames", "121",
                            "--fps-cap", "40")
                self.assertTrue(self.carries())


class LinuxContexts(Contexts, LinuxCase):
    def test_hosts_over_egl_come_through_too(self):
        lines = self.host(*SIZE, *CORE, "--remake-context", "20", "--objects", "20", "--frames", "80", name="host_egl")
        self.keep_objects(lines)
        self.keep_objects(self.host(*SIZE, "--windows", "3", "--contexts", "3", "--objects", "60", "--frames", "24",
                                    name="host_egl"))


class WineContexts(Contexts, WineCase):
    pass


if __name__ == "__main__":
    unittest.main()
