"""Screenshots of real programs: each type and mode is the window's picture, read back by another program's decoder."""
import pathlib
import re
import signal
import subprocess
import unittest

from PIL import Image, ImageChops

from e2e.environment import (LINUX, WIN64, Display, LinuxPrograms, WinePrograms, screenshot, see_still,
                             wait_until)
from e2e.pictures import shows_shapes

SETTINGS = r"SOFTWARE\Zarn\ORVIN-OSD"
WINDOW = (0, 0, 640, 480)  # of the host on the display
MANY = "100000000"


def pixels(path):
    return Image.open(path).convert("RGB")


def mean_difference(one, other):
    histogram = ImageChops.difference(one, other).convert("L").histogram()
    return sum(value * count for value, count in enumerate(histogram)) / (one.width * one.height)


class Screenshots:
    """What both platforms share: programs, of a kind, and a folder for their pictures."""

    @classmethod
    def setUpClass(cls):
        display = Display()
        cls.display = display.__enter__()
        cls.addClassCleanup(display.__exit__)

    def setUp(self):
        self.programs = self.KIND(self.display, care=True)
        self.addCleanup(self.programs.close)
        self.folder = self.programs.folder
        self.out = self.folder / "out"
        self.out.mkdir()


class LinuxScreenshots(Screenshots, unittest.TestCase):
    KIND = LinuxPrograms

    def begin(self, profile="Shapes"):
        """A program whose picture, and the overlay on it, stand still."""
        self.programs.show(profile)
        process = self.programs.with_overlay([LINUX / "host_glx", "--frames", MANY])
        self.programs.wait_for_overlay(process)
        return process

    def shoot(self, *more):
        code, output = self.programs.ask("shot", "--folder", self.out, *more)
        self.assertEqual(code, 0, output)
        return [pathlib.Path(line) for line in output.splitlines()]

    def window(self, condition=shows_shapes):
        """The window without the shutter: two looks in a row are equal."""
        return see_still(self.display, self.programs.folder / "root.png",
                         lambda picture: condition(picture.crop(WINDOW))).crop(WINDOW)

    def test_is_the_window_with_and_without_the_overlay(self):
        self.begin()
        shown = self.window()
        one, = self.shoot("--type", "png")
        self.assertEqual(pixels(one).tobytes(), shown.tobytes(), "the overlay is on it, and no shutter")
        two, = self.shoot("--type", "bmp")
        self.assertEqual(pixels(two).tobytes(), shown.tobytes(), "the shutter of the first is not on the second")
        jpeg, = self.shoot("--type", "jpg")
        self.assertLess(mean_difference(pixels(jpeg), shown), 4)
        bare, = self.shoot("--type", "png", "--without-overlay")
        self.assertNotEqual(pixels(bare).tobytes(), shown.tobytes())
        self.programs.ask("off")
        without = self.window(lambda picture: picture.tobytes() != shown.tobytes())
        self.assertEqual(pixels(bare).tobytes(), without.tobytes())

    def test_heic_is_read_back_by_another_program(self):
        self.begin()
        shown = self.window()
        code, output = self.programs.ask("shot", "--folder", self.out, "--type", "heic")
        if code and "no encoder for HEIC" in output:
            self.skipTest("libheif or its encoder is not there")
        self.assertEqual(code, 0, output)
        read = self.folder / "read.png"
        subprocess.run(["convert", f"heic:{output.strip()}", f"png:{read}"], check=True, timeout=120)
        self.assertLess(mean_difference(pixels(read), shown), 4)

    def test_all_types_have_one_name_and_the_settings_come_back(self):
        self.begin()
        self.programs.take_settings()
        file = self.programs.data.parent / "Settings/settings.ini"
        before = file.read_bytes()
        files = self.shoot("--type", "all")
        self.assertEqual(sorted(path.suffix for path in files), [".bmp", ".jpg", ".png"])
        self.assertEqual(len({path.stem for path in files}), 1)
        self.assertEqual(file.read_bytes(), before)
        self.assertEqual([path.name for path in file.parent.iterdir()], ["settings.ini"])

    def test_a_link_to_the_settings_stays_one(self):
        self.begin()
        self.programs.take_settings()
        file = self.programs.data.parent / "Settings/settings.ini"
        real = self.programs.folder / "installed.ini"
        file.rename(real)
        file.symlink_to(real)
        text = real.read_bytes()
        self.shoot("--without-overlay")
        self.assertTrue(file.is_symlink())
        self.assertEqual(real.read_bytes(), text)

    def test_reasons_are_told(self):
        for words, reason in ((["nobody"], "no running program"), (["--folder", self.programs.folder / "gone"], "no ")):
            code, output = self.programs.ask("shot", *words)
            self.assertEqual(code, 1)
            self.assertIn(reason, output)
        process = self.begin()
        code, output = self.programs.ask("shot", "--folder", self.programs.folder / "gone")
        self.assertEqual((code, "there is no folder" in output), (1, True), output)
        folder = self.programs.data.parent / "Settings"
        folder.mkdir(exist_ok=True)
        (folder / "settings.ini").write_text(f"[{SETTINGS}\\Camera]\nCapMode = 3\n")
        code, output = self.programs.ask("shot")
        self.assertEqual((code, "capture mode 3" in output), (1, True), output)
        (folder / "settings.ini").unlink()
        process.send_signal(signal.SIGSTOP)
        code, output = self.programs.ask("shot", "--timeout", "1")
        process.send_signal(signal.SIGCONT)
        self.assertEqual((code, "presents no frames" in output), (1, True), output)

    def test_an_interrupted_one_gives_the_settings_back(self):
        process = self.begin()
        folder = self.programs.data.parent / "Settings"
        process.send_signal(signal.SIGSTOP)
        asking = self.programs.start([self.programs.companion, "shot", "--folder", self.out])
        wait_until(lambda: (folder / "settings.ini").exists())
        asking.send_signal(signal.SIGINT)
        self.assertEqual(asking.wait(60), 1)
        process.send_signal(signal.SIGCONT)
        self.assertFalse((folder / "settings.ini").exists())

    def test_a_hundred_in_a_row_are_whole(self):
        self.begin()
        shown = self.window()
        (self.programs.data.parent / "Settings").mkdir(exist_ok=True)
        (self.programs.data.parent / "Settings/settings.ini").write_text(
            f"[{SETTINGS}\\Camera]\nDirPath = {self.out}\n")
        self.programs.ask("send", "4", "--arg", "16")
        names = set()
        for _ in range(100):
            code, output = self.programs.ask("shot")
            self.assertEqual(code, 0, output)
            names.add(output.strip())
        self.assertEqual(len(names), 100)
        for name in names:
            self.assertEqual(pixels(name).tobytes(), shown.tobytes(), name)
        self.assertEqual(len(list(self.out.iterdir())), 100)

    def test_a_program_that_ends_meanwhile_leaves_a_whole_file_or_none(self):
        for number in range(6):
            process = self.begin()
            (self.programs.data.parent / "Settings").mkdir(exist_ok=True)
            (self.programs.data.parent / "Settings/settings.ini").write_text(
                f"[{SETTINGS}\\Camera]\nDirPath = {self.out}\n")
            self.programs.ask("send", "4", "--arg", "16")
            self.programs.ask("send", "5", "--byte", "1")
            process.send_signal(signal.SIGKILL if number % 2 else signal.SIGTERM)
            process.wait(60)
        for path in self.out.iterdir():
            self.assertRegex(path.name, re.compile(r"^Screenshot\(\d+\)-\d{8}-\d{4}-\d{4}\.png$"))
            self.assertEqual(pixels(path).size, (640, 480))

    def test_is_the_window_however_the_program_reads_pixels(self):
        self.programs.show("Shapes")
        for switches in ((), ("--profile", "core", "--gl", "3.3")):
            process = self.programs.with_overlay([LINUX / "host_glx", "--frames", MANY, "--odd-reading", "--print-errors",
                                                  *switches])
            self.programs.wait_for_overlay(process)
            shown = self.window()
            one, = self.shoot("--type", "png")
            self.assertEqual(pixels(one).tobytes(), shown.tobytes(), switches)
            self.programs.end(process)
            self.assertNotIn("error", process.log.read_text(errors="replace"))

    def test_of_a_window_that_nobody_sees_is_what_it_presents(self):
        self.programs.show("Shapes")
        process = self.programs.with_overlay([LINUX / "host_glx", "--frames", MANY, "--hide-from", "30", "--fps-cap", "60"])
        self.programs.wait_for_overlay(process)
        wait_until(lambda: screenshot(self.display, self.folder / "root.png").getbbox() is None)
        one, = self.shoot("--type", "png")
        hidden = pixels(one)
        self.programs.end(process)
        self.begin()
        self.assertEqual(hidden.tobytes(), self.window().tobytes())

    def test_on_a_full_disk_leaves_no_file_and_the_program_running(self):
        """The disk is a small one of its own, which the program and the companion see and nobody else."""
        own = ["unshare", "--user", "--map-root-user", "--mount"]
        if subprocess.run([*own, "true"], stderr=subprocess.DEVNULL).returncode:
            self.skipTest("this system lets nobody mount a disk of his own")
        self.programs.show("Shapes")
        process = self.programs.with_overlay(
            [*own, "sh", "-c", 'mount -t tmpfs -o size=16k none "$0" && exec "$@"', self.out, LINUX / "host_glx",
             "--frames", MANY])
        self.programs.wait_for_overlay(process)
        inside = ["nsenter", f"--target={process.pid}", "--user", "--mount", "--preserve-credentials"]
        for words in (("--type", "bmp"), ("--type", "jpg"), ("--type", "all"), ("--type", "bmp", "--without-overlay")):
            code, output = self.programs.run([*inside, self.programs.companion, "shot", "--folder", self.out,
                                              "--timeout", "2", *words])
            self.assertEqual(code, 1, output)
            self.assertEqual(len(output.splitlines()), 1, output)
            self.assertRegex(output, "no finished file of process.* the disk there has .* KB left")
        code, output = self.programs.run([*inside, "ls", "-A", self.out])
        self.assertEqual((code, output), (0, ""))
        self.assertIsNone(process.poll())
        shown = self.window()
        self.programs.run([*inside, "mount", "-o", "remount,size=8m", self.out])
        code, output = self.programs.run([*inside, self.programs.companion, "shot", "--folder", self.out])
        self.assertEqual(code, 0, output)
        code, _ = self.programs.run([*inside, "cp", output.strip(), self.folder / "one.png"])
        self.assertEqual(pixels(self.folder / "one.png").tobytes(), shown.tobytes())


class WineScreenshots(Screenshots, unittest.TestCase):
    KIND = WinePrograms

    def begin(self):
        """The picture that a program's window shows, read from the screen, and the program's own below the overlay."""
        self.programs.show("Shapes")
        shown, own = self.folder / "shown.ppm", self.folder / "own.ppm"
        process = self.programs.with_overlay([WIN64 / "host_wgl.exe", "--frames", MANY, "--fps-cap", "60", "--await-detour",
                                              "--dump-ppm", f"{shown}@200", "--dump-before", own])
        self.programs.wait_for_overlay(process)
        size = len(b"P6\n640 480\n255\n") + 640 * 480 * 3
        wait_until(lambda: all(path.exists() and path.stat().st_size == size for path in (own, shown)))
        return pixels(shown), pixels(own)

    def shoot(self, *more):
        code, output = self.programs.ask("shot", "--folder", self.out, *more)
        self.assertEqual(code, 0, output)
        return [self.out / re.split(r"[/\\]", line.strip())[-1] for line in output.splitlines()]

    def test_each_type_and_mode_is_the_windows_picture(self):
        shown, own = self.begin()
        self.assertNotEqual(shown.tobytes(), own.tobytes())
        for mode, picture in (((), shown), (("--without-overlay",), own)):
            for kind in ("png", "bmp", "jpg"):
                with self.subTest(kind=kind, mode=mode):
                    file, = self.shoot("--type", kind, *mode)
                    self.assertEqual(file.suffix, f".{kind}")
                    if kind == "jpg":
                        self.assertLess(mean_difference(pixels(file), picture), 4)
                    else:
                        self.assertEqual(pixels(file).tobytes(), picture.tobytes())
        files = self.shoot("--type", "all")
        self.assertEqual(sorted(path.suffix for path in files), [".bmp", ".jpg", ".png"])
        for file in files:
            self.assertLess(mean_difference(pixels(file), shown), 4)
        code, output = self.programs.ask("shot", "--folder", self.out, "--type", "heic")
        self.assertEqual((code, "HEIC" in output), (1, True), output)
        self.assertEqual(len(list(self.out.iterdir())), 9)

    def test_of_a_minimised_window_there_is_none_and_the_program_goes_on(self):
        """Such a window has no area here, so nothing is written."""
        self.programs.show("Shapes")
        stop = self.folder / "stop"
        process = self.programs.with_overlay([WIN64 / "host_wgl.exe", "--frames", MANY, "--fps-cap", "60", "--await-detour",
                                              "--hide-from", "200", "--stop-file", stop])
        self.programs.wait_for_overlay(process)
        def refused():
            code, output = self.programs.ask("shot", "--folder", self.out, "--timeout", "2")
            return output if code == 1 else None
        self.assertIn("no finished file of process", wait_until(refused))
        before = sorted(self.out.iterdir())  # those of frames ahead of it
        self.assertEqual(self.programs.ask("shot", "--folder", self.out, "--timeout", "2")[0], 1)
        self.assertEqual(sorted(self.out.iterdir()), before)
        stop.touch()
        self.assertEqual(process.wait(60), 0)


if __name__ == "__main__":
    unittest.main()
