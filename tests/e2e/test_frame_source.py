"""A video box shows what another program writes into its source's block, on the whole road."""
import pathlib
import unittest

from PIL import Image

from e2e.environment import LINUX, Display, LinuxPrograms, see, wait_until

FRAME = (640, 360)
BOX = (933, 27, 1253, 207)  # 480x270 canvas pixels, 40 from the upper right corner of a picture of 1280x720


class Linux(unittest.TestCase):
    def test_a_frame_that_is_written_while_the_program_runs_stands_in_its_box(self):
        with Display() as display, LinuxPrograms(display, care=True) as programs:
            programs.set("Video", "Enable=1")
            programs.set("Video\\0", "Enable=1", "FileMappingName=Frames", "FrameSize: W=480", "FrameSize: H=270",
                         "BufferSize: W=640", "BufferSize: H=360", "Update: I=1000", "Update: F=60", "Anchor=3",
                         "Position: X=40", "Position: Y=40", "Alpha=0")
            programs.with_overlay([LINUX / "host_glx", "--frames", "1000000", "--size", "1280x720", "--fps-cap", "60"])
            block = pathlib.Path("/dev/shm") / f"Frames-{programs.folder.name}"
            wait_until(block.exists)
            sent = Image.merge("RGB", [Image.linear_gradient("L").resize(FRAME).rotate(turn) for turn in (0, 180)] +
                               [Image.new("L", FRAME, 90)])
            with open(block, "r+b") as file:
                file.write(sent.convert("RGBA").tobytes())
            see(display, programs.folder / "look.png", lambda picture: self.stands(sent, picture.convert("RGB")))

    def stands(self, sent, picture):
        """Whether the box holds the frame, and what lies around it is the program's."""
        points = [(x, y) for x in (0.1, 0.5, 0.9) for y in (0.1, 0.3, 0.7, 0.9)]
        box = [(int(BOX[0] + x * (BOX[2] - BOX[0])), int(BOX[1] + y * (BOX[3] - BOX[1]))) for x, y in points]
        wanted = [sent.getpixel((int(x * FRAME[0]), int(y * FRAME[1]))) for x, y in points]
        inside = all(max(abs(a - b) for a, b in zip(picture.getpixel(at), value)) < 8 for at, value in zip(box, wanted))
        outside = [(BOX[0] - 4, BOX[1] + 60), (BOX[2] + 4, BOX[1] + 60), (BOX[0] + 60, BOX[3] + 4)]
        return inside and all(picture.getpixel(at)[2] > 150 for at in outside)
