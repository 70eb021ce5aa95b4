"""Video boxes and the control block on real programs: the companion writes, programs show."""
import contextlib
import json
import mmap
import os
import pathlib
import random
import shutil
import signal
import struct
import subprocess
import unittest

from PIL import Image, ImageChops

from e2e.environment import DATA, LINUX, STORE_KEYS, WIN64, see, wait_until
from e2e.open_count import OpenCount
from e2e.test_linux import LinuxCase
from e2e.test_wine import WineCase

BARS = [(255, 255, 255), (255, 255, 0), (0, 255, 255), (0, 255, 0), (255, 0, 255), (255, 0, 0), (0, 0, 255)]
SETUP = ("--setup", "--size", "320x180", "--fps", "60", "--box", "480x270", "--anchor", "5", "--frames", "1",
         "--test-pattern")


def runs(picture, y):
    """Colours of a row's long runs, from left to right, each once in a row."""
    colours, last, length = [], None, 0
    for x in range(picture.width):
        colour = picture.getpixel((x, y))
        length = length + 1 if colour == last else 1
        last = colour
        if length == 12 and (not colours or colours[-1] != colour):
            colours.append(colour)
    return colours


def shows_bars(picture):
    """Whether some row has the bars of the test pattern in their order. The line that crosses them is white, and may
    hide one."""
    for y in range(4, picture.height, 12):
        seen = [colour for colour in runs(picture, y) if colour in BARS[1:]]
        if sum(a == b for a, b in zip(seen, BARS[1:])) >= 5 or seen == BARS[1:]:
            return True
    return False


FRAME = (320, 180)
QUARTERS = [(200, 40, 90), (20, 170, 60), (40, 80, 220), (230, 210, 30)]  # each row from the left, the upper one first


def frame_of_quarters(order="RGBA"):
    """A frame of four colours as raw bytes."""
    picture = Image.new("RGB", (2, 2))
    picture.putdata(QUARTERS)
    picture = picture.resize(FRAME, Image.NEAREST)
    return picture.convert("RGBA").tobytes("raw", order)


def box_of(picture, colour):
    """Smallest box of the pixels of a colour, or None."""
    wrong = ImageChops.difference(picture, Image.new("RGB", picture.size, colour)).convert("RGB")
    red, green, blue = wrong.split()
    return ImageChops.lighter(ImageChops.lighter(red, green), blue).point(lambda v: 255 if v < 3 else 0).getbbox()


def shows_quarters(picture, size=(213, 120)):
    """Whether the frame of four colours stands somewhere, upright, in a box of that size."""
    boxes = [box_of(picture, colour) for colour in QUARTERS]
    if None in boxes:
        return False
    left, top = boxes[0][:2]
    for number, box in enumerate(boxes):
        column, row = number % 2, number // 2
        wanted = (left + column * size[0] / 2, top + row * size[1] / 2,
                  left + (column + 1) * size[0] / 2, top + (row + 1) * size[1] / 2)
        if max(abs(a - b) for a, b in zip(box, wanted)) > 4:
            return False
    return True


class LinuxVideo(LinuxCase):
    def blocks(self):
        return sorted(pathlib.Path("/dev/shm").glob(f"*Video*{self.folder.name}*"))

    def video(self, *arguments):
        return self.programs.start([self.programs.companion, "video", *arguments])

    def program(self, name="host_glx", **more):
        stop = self.folder / f"stop{len(self.programs.started)}"
        process = self.programs.with_overlay(
            [LINUX / name, "--frames", "1000000", "--fps-cap", "60", "--stop-file", stop], **more)
        process.stop = stop
        self.programs.wait_for_overlay(process)
        return process

    def end(self, process):
        process.stop.touch()
        self.assertEqual(process.wait(60), 0, process.log.read_text(errors="replace"))

    def sources(self):
        return json.loads(self.programs.ask("video", "list", "--json")[1])

    def test_the_pattern_plays_in_a_program_and_stops_with_its_writer(self):
        self.programs.show("Empty")
        code, output = self.programs.ask("video", "0", *SETUP)
        self.assertEqual(code, 0, output)
        process = self.program()
        self.assertFalse(self.sources()[0]["writer"])
        self.assertTrue(self.sources()[0]["reader"])
        writer = self.video("0", "--test-pattern")
        first = see(self.display, self.folder / "look.png", shows_bars)
        self.assertTrue(self.sources()[0]["writer"])
        see(self.display, self.folder / "look.png", lambda p: shows_bars(p) and p.tobytes() != first.tobytes())
        writer.send_signal(signal.SIGTERM)
        self.assertEqual(writer.wait(30), 0, writer.log.read_text(errors="replace"))
        see(self.display, self.folder / "look.png", shows_bars)  # the last frame stays
        self.end(process)
        self.assertEqual(self.blocks(), [])

    def test_frames_of_another_program_come_by_standard_input_in_both_orders(self):
        self.programs.show("Empty")
        self.assertEqual(self.programs.ask("video", "0", *SETUP)[0], 0)
        for name, order in (("host_glx", "rgba"), ("host_glx", "bgra"), ("host_egl", "rgba")):
            process = self.program(name)
            subprocess.run([self.programs.companion, "video", "0", "--format", order], env=self.programs.env,
                           input=frame_of_quarters(order.upper()) * 3, check=True, timeout=120,
                           stdout=subprocess.DEVNULL)
            see(self.display, self.folder / "look.png", shows_quarters)
            self.end(process)

    def fed(self, frames, *more, **streams):
        """Exit code and words of a writer whose input is these bytes."""
        streams = streams or {"input": frames}
        done = subprocess.run([self.programs.companion, "video", "0", *more], env=self.programs.env, text=False,
                              stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, timeout=120, **streams)
        return done.returncode, done.stderr.decode()

    def test_an_input_without_whole_frames_is_told_of(self):
        self.assertEqual(self.programs.ask("video", "0", *SETUP)[0], 0)
        frame = frame_of_quarters()
        for frames, code, words in ((frame * 2, 0, ""), (b"", 1, "no frame came"), (frame[:-1], 1, "230399 bytes"),
                                    (frame + b"xy", 1, "ended 2 bytes into a frame")):
            with self.subTest(len(frames)):
                self.assertEqual(self.fed(frames)[0], code)
                output = self.fed(frames)[1]
                self.assertIn(words, output)
                self.assertLessEqual(output.count("\n"), 1)
        closed = self.fed(b"", preexec_fn=lambda: [os.close(number) for number in (0, 1)])
        self.assertEqual((closed[0], "no frame came" in closed[1]), (1, True), closed)
        self.assertEqual(self.blocks(), [])

    def test_a_writer_that_waits_for_input_ends_when_it_is_told_to(self):
        self.assertEqual(self.programs.ask("video", "0", *SETUP)[0], 0)
        for number in (signal.SIGINT, signal.SIGTERM):
            for sent in (b"", frame_of_quarters() + b"some more"):
                writer = subprocess.Popen([self.programs.companion, "video", "0"], env=self.programs.env,
                                          stdin=subprocess.PIPE, stdout=subprocess.DEVNULL)
                self.addCleanup(writer.stdin.close)
                writer.stdin.write(sent)
                writer.stdin.flush()
                wait_until(lambda: self.sources()[0]["writer"])
                writer.send_signal(number)
                self.assertEqual(writer.wait(60), 0)
                self.assertEqual(self.blocks(), [])

    def test_a_second_writer_is_refused_and_the_first_goes_on(self):
        self.assertEqual(self.programs.ask("video", "0", *SETUP)[0], 0)
        writer = self.video("0", "--test-pattern")
        wait_until(lambda: self.sources()[0]["writer"])
        code, output = self.programs.ask("video", "0", "--test-pattern")
        self.assertEqual(code, 1, output)
        self.assertIn("another program writes", output)
        self.assertIsNone(writer.poll())

    def test_a_block_that_is_cut_emptied_or_taken_away_leaves_the_program_running(self):
        self.programs.show("Empty")
        self.assertEqual(self.programs.ask("video", "0", *SETUP)[0], 0)
        process = self.program()
        writer = self.video("0", "--test-pattern")
        see(self.display, self.folder / "look.png", shows_bars)
        control = pathlib.Path(f"/dev/shm/TavoCtrl-{self.folder.name}")
        for path in (self.blocks()[0], control):
            for size in (4096, 1, 0):
                os.truncate(path, size)
                ticks = process.log.stat().st_mtime_ns, self.swaps(process)
                wait_until(lambda ticks=ticks: self.swaps(process) > ticks[1])
                self.assertIsNone(process.poll())
        self.programs.end(writer)
        self.blocks()[0].unlink()
        self.end(process)

    def test_a_writer_that_scribbles_into_frames_while_they_are_shown_harms_nobody(self):
        """Half-written frames, heads of any size and moment: two patterns and random bytes without any order."""
        self.programs.show("Empty")
        self.assertEqual(self.programs.ask("video", "0", *SETUP)[0], 0)
        process = self.program()
        wait_until(self.blocks)
        noise, path = random.Random(7), self.blocks()[0]
        with open(path, "r+b") as file, mmap.mmap(file.fileno(), 0) as block:
            ticks = self.swaps(process)
            while self.swaps(process) < ticks + 100:
                for _ in range(50):
                    struct.pack_into("<4I", block, 0, *(noise.choice((0, 1, 320, 180, 4096, noise.getrandbits(32)))
                                                        for _ in range(4)))
                    struct.pack_into("<I", block, 4 * noise.randrange(16), noise.getrandbits(32))
                    place = noise.randrange(len(block) - 4096)
                    block[place:place + 4096] = noise.randbytes(4096)
                self.assertIsNone(process.poll())
        writer = self.video("0", "--test-pattern")  # and in the end all is well again
        see(self.display, self.folder / "look.png", shows_bars)
        self.programs.end(writer)
        self.end(process)

    def swaps(self, process):
        """Processor ticks of a program, which grow while it draws."""
        words = pathlib.Path(f"/proc/{process.pid}/stat").read_text().rsplit(")", 1)[1].split()
        return int(words[11]) + int(words[12])

    def test_a_block_of_another_size_or_kind_leaves_the_program_without_video(self):
        self.assertEqual(self.programs.ask("video", "0", *SETUP)[0], 0)
        path = pathlib.Path(f"/dev/shm/ORVIN-OSD-Video-0-{self.folder.name}")
        for make in (lambda: path.write_bytes(b"x" * 4096), lambda: path.symlink_to("/etc/hostname"), path.mkdir):
            make()
            self.host("--frames", "30")
            path.rmdir() if path.is_dir() and not path.is_symlink() else path.unlink()

    def counted_program(self):
        """A program with a copy of the data of its own. Its `opens` counts its builds: each reads one file once, and two
        programs that open a file at one moment would be counted as one."""
        own = self.folder / f"data{len(self.programs.started)}"
        shutil.copytree(self.programs.data, own / DATA)
        opens = self.enterContext(OpenCount(own / DATA / "OSD_Ref.xml"))
        process = self.program(ORVIN_OSD_APPDATA=str(own))
        process.opens = opens
        self.hosts.append(process)

    @contextlib.contextmanager
    def stopped_program(self):
        """Holds the block: a request goes with it when all its other users rebuild at one moment."""
        self.counted_program()
        self.wait_for_builds(1)
        process = self.hosts.pop()
        os.kill(process.pid, signal.SIGSTOP)
        try:
            yield
        finally:
            os.kill(process.pid, signal.SIGCONT)
            self.end(process)

    def wait_for_builds(self, *numbers):
        """Until the programs have built that often since the last wait, and no more while they go on drawing."""
        counts = [0] * len(numbers)

        def enough():
            for place, process in enumerate(self.hosts):
                counts[place] += process.opens.count()
            return all(count >= number for count, number in zip(counts, numbers))
        wait_until(enough)
        for process in self.hosts:
            ticks = self.swaps(process)
            wait_until(lambda p=process, t=ticks: self.swaps(p) > t + 5)
        enough()
        self.assertEqual(counts, list(numbers))

    def test_one_request_rebuilds_two_programs_once_each(self):
        self.programs.show("Empty")
        self.hosts = []
        with self.stopped_program():
            self.counted_program()
            self.wait_for_builds(1)
            self.counted_program()
            self.wait_for_builds(0, 1)
            self.assertEqual(self.programs.ask("control", "rebuild")[0], 0)
            self.wait_for_builds(1, 1)
            # One that starts now finds the request and builds once more.
            self.counted_program()
            self.wait_for_builds(0, 0, 2)
        self.assertEqual(self.programs.ask("control", "off")[0], 0)
        self.wait_for_builds(0, 0, 0)
        for process in self.hosts:
            self.end(process)
        self.assertEqual(self.controls(), [])

    def test_one_program_alone_rebuilds_at_each_request(self):
        """Its block goes and comes with each build."""
        self.programs.show("Empty")
        self.hosts = []
        self.counted_program()
        self.wait_for_builds(1)
        for _ in range(3):
            self.assertEqual(self.programs.ask("control", "rebuild")[0], 0)
            self.wait_for_builds(1)
        self.end(self.hosts[0])
        self.assertEqual(self.controls(), [])

    def controls(self):
        return list(pathlib.Path("/dev/shm").glob(f"TavoCtrl*{self.folder.name}*"))

    def test_a_panel_is_held_in_the_colour_that_is_asked_for(self):
        """The panel behind the watermark; the panels of the next layout have their own colours."""
        file = self.programs.data / "Profiles/RV5/OSD.xml"
        file.write_text(file.read_text().replace(
            '<Watermark IsShow="0"/>', '<Watermark IsShow="1" Text="MARK" FontScale="12" Anchor="5" PanelType="1" '
            'PanelColorR="250" PanelColorG="120" PanelColorB="10" PanelOpacity="100"/>'))
        self.programs.show("RV5")
        process = self.program()
        look, own, colour = self.folder / "look.png", (250, 120, 10), (16, 200, 48)
        place = box_of(see(self.display, look, lambda picture: box_of(picture, own)), own)
        code, output = self.programs.ask("control", "recolour", "0", "#10C830")
        self.assertEqual(code, 0, output)
        self.assertEqual(box_of(see(self.display, look, lambda picture: box_of(picture, colour)), colour), place)
        self.assertEqual(self.programs.ask("control", "rebuild")[0], 0)
        see(self.display, look, lambda picture: box_of(picture, own) == place)
        self.end(process)

    def test_without_a_program_nobody_is_asked(self):
        for request in (("rebuild",), ("recolour", "0", "#102030"), ("off",)):
            self.assertEqual(self.programs.ask("control", *request)[0], 3)
        self.assertEqual(self.controls(), [])

    def test_settings_that_others_wrote_stay_and_a_source_is_turned_off(self):
        self.programs.set("FPSLimiter", "; of mine", "Enable = 0")
        self.assertEqual(self.programs.ask("video", "3", *SETUP, "--transparency", "25", "--position", "7,-8")[0], 0)
        text = (self.programs.data.parent / "Settings/settings.ini").read_text()
        self.assertIn("; of mine\nEnable = 0", text)
        row = self.sources()[3]
        self.assertEqual((row["on"], row["frame_width"], row["box_height"], row["anchor"], row["x"], row["y"],
                          row["alpha"]), (True, 320, 270, 5, 7, -8, 25))
        self.assertEqual(self.programs.ask("video", "3", "--disable")[0], 0)
        self.assertFalse(self.sources()[3]["on"])
        code, output = self.programs.ask("video", "3", "--test-pattern")
        self.assertEqual(code, 1)
        self.assertIn("--setup", output)


    def test_a_rendered_profile_shows_the_pattern_and_a_check_knows_the_source(self):
        self.assertEqual(self.programs.ask("video", "2", *SETUP)[0], 0)
        code, output = self.programs.ask("profile", "render", "Empty", "-o", self.folder / "drawn.png", "--seconds", "1")
        self.assertEqual(code, 0, output)
        self.assertTrue(shows_bars(Image.open(self.folder / "drawn.png").convert("RGB")))
        self.assertEqual(self.programs.ask("video", "2", "--setup", "--box", "400x400", "--frames", "1",
                                           "--test-pattern")[0], 0)
        code, output = self.programs.ask("profile", "check", "Empty")
        self.assertIn("video source 2: frames of 320 by 180 leave bars", output)


class WineVideo(WineCase):
    def setUp(self):
        super().setUp()
        self.addCleanup(self.forget_settings)
        self.forget_settings()

    def forget_settings(self):
        for key in STORE_KEYS:
            self.programs.run([*self.programs.wrapper, "reg", "delete", key, "/f"])

    def test_frames_of_another_program_and_the_pattern_play_in_a_program(self):
        self.programs.show("Empty")
        code, output = self.programs.ask("video", "0", *SETUP)
        self.assertEqual(code, 0, output)
        stop = self.folder / "stop"
        process = self.programs.with_overlay([WIN64 / "host_wgl.exe", "--frames", "1000000", "--fps-cap", "60",
                                              "--stop-file", stop, "--await-detour"])
        self.programs.wait_for_overlay(process)  # a block that nobody has opened goes with its writer
        subprocess.run([*self.programs.wrapper, self.programs.companion, "video", "0", "--format", "bgra"],
                       env=self.programs.env, input=frame_of_quarters("BGRA") * 180, check=True, timeout=180,
                       stdout=subprocess.DEVNULL)
        see(self.display, self.folder / "look.png", shows_quarters)
        writer = self.programs.wine(self.programs.companion, "video", "0", "--test-pattern")
        see(self.display, self.folder / "look.png", shows_bars)
        row = json.loads(self.programs.ask("video", "list", "--json")[1])[0]
        self.assertTrue(row["writer"] and row["reader"])
        code, output = self.programs.ask("video", "0", "--test-pattern")
        self.assertEqual(code, 1, output)
        self.programs.end(writer)
        stop.touch()

    def test_each_request_rebuilds_a_program(self):
        self.programs.show("Empty")
        stop = self.folder / "stop"
        with OpenCount(self.programs.data / "OSD_Ref.xml") as opens:
            process = self.programs.with_overlay([WIN64 / "host_wgl.exe", "--frames", "1000000", "--fps-cap", "60",
                                                  "--stop-file", stop, "--await-detour"])
            self.programs.wait_for_overlay(process)
            wait_until(lambda: opens.count() > 0)
            for _ in range(2):
                self.assertEqual(self.programs.ask("control", "rebuild")[0], 0)
                wait_until(lambda: opens.count() > 0)
            self.assertEqual(self.programs.ask("control", "off")[0], 0)
        stop.touch()
        self.assertEqual(process.wait(120), 0)

    def test_without_a_program_nobody_is_asked(self):
        self.assertEqual(self.programs.ask("control", "rebuild")[0], 3)


if __name__ == "__main__":
    unittest.main()
