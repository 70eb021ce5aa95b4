"""The problem report of real programs: what stands in it, that it is kept only when asked for, and that the person is not
in it."""
import os
import pathlib
import pty
import re
import subprocess
import unittest

from e2e.environment import LINUX, WIN64, Display, LinuxPrograms, WinePrograms, wait_until

ENDLESS = ("--frames", "1000000", "--fps-cap", "60")
SECTIONS = ("Versions", "Program", "OpenGL of the program", "Cost of the overlay", "Machine",
            "Settings that differ from what is shipped", "Check of the profile Default",
            "Log of a build of its layout, made now and off screen", "Files that the program has mapped")


class ReportCase(unittest.TestCase):
    def hold(self, text, *words):
        """All sections, in order and with something in each."""
        titles = re.findall(r"^== (.+)\n(?=.)", text, re.M)
        self.assertEqual(tuple(titles), SECTIONS, text)
        for word in words:
            self.assertRegex(text, word)


class Linux(ReportCase):
    def setUp(self):
        screen = Display()
        self.programs = LinuxPrograms(screen.__enter__())
        self.addCleanup(screen.__exit__)
        self.addCleanup(self.programs.close)
        self.programs.env.update(HOME=str(self.programs.folder), USER="petronella")
        self.path = self.programs.folder / "report.txt"

    def host(self, *words):
        process = self.programs.with_overlay([LINUX / "host_glx", *ENDLESS, *words])
        self.programs.wait_for_overlay(process)
        return process

    def test_a_program_with_the_overlay(self):
        process = self.host("--stamps", "/dev/null")
        self.programs.set("FPSLimiter", "FPSTarget = 77")
        code, output = self.programs.ask("report-problem", str(process.pid), "--yes", "-o", self.path)
        self.assertEqual((code, output), (0, f"{self.path}\n"))
        text = self.path.read_text()
        self.hold(text, r"version +4\.", r"renderer +llvmpipe", r"state +running", r"median 0\.\d+ ms, worst \d",
                  r"limit-rate +77 \(shipped: 60\)", r"libORVIN-OSD64-GL\.so", r"GLGraphics|g_fn", r"exit code 0")
        self.assertNotIn(str(self.programs.folder), text)
        self.assertIn("~/", text)
        self.assertNotIn("petronella", text)
        code, output = self.programs.ask("report-problem", str(process.pid), "--yes", "-o", self.path)
        self.assertEqual(code, 1, output)
        self.assertIn("exists; --force writes over it", output)

    def test_without_a_terminal_it_is_only_printed(self):
        process = self.host()
        before = set(self.programs.folder.iterdir())
        code, output = self.programs.ask("report-problem", str(process.pid), "-o", self.path)
        self.assertEqual(code, 0, output)
        self.hold(output)
        self.assertFalse(self.path.exists())
        self.assertLessEqual({path.name[:3] for path in set(self.programs.folder.iterdir()) - before}, {"log"})

    def answered(self, process, answer):
        """(exit code, what was printed) of a person who answers at a terminal."""
        ours, theirs = pty.openpty()
        asker = subprocess.Popen([self.programs.companion, "report-problem", str(process.pid), "-o", self.path],
                                 stdin=theirs, stdout=theirs, stderr=theirs, env=self.programs.env, start_new_session=True)
        os.close(theirs)
        seen = b""
        while b"[y/N]" not in seen:
            seen += os.read(ours, 65536)
        os.write(ours, answer)
        try:
            while piece := os.read(ours, 65536):
                seen += piece
        except OSError:
            pass  # the terminal's other end is closed
        os.close(ours)
        return asker.wait(60), seen.decode(errors="replace")

    def test_a_person_is_asked(self):
        process = self.host()
        code, seen = self.answered(process, b"n\n")
        self.assertEqual(code, 0, seen)
        self.assertFalse(self.path.exists())
        code, seen = self.answered(process, b"y\n")
        self.assertEqual(code, 0, seen)
        self.assertIn(self.path.read_text().splitlines()[0][:30], seen)

    def test_a_program_without_the_overlay_and_none_at_all(self):
        process = self.programs.start(["sleep", "1000"])
        code, output = self.programs.ask("report-problem", str(process.pid))
        self.assertEqual(code, 0, output)
        self.hold(output, r"state +not admitted", "nothing of its OpenGL is known", "no frame was seen")
        self.assertEqual(self.programs.ask("report-problem", "no-such-program"),
                         (3, "orvin-osd: no process is named no-such-program\n"))
        self.assertEqual(self.programs.ask("report-problem", "4194305"),
                         (3, "orvin-osd: no program runs under the number 4194305\n"))

    def test_a_full_disk_and_a_folder_that_is_not_there(self):
        process = self.programs.start(["sleep", "1000"])
        for path, words in (("/dev/full", "No space left on device"), (self.path / "x.txt", "No such file or directory")):
            code, output = self.programs.ask("report-problem", str(process.pid), "--yes", "-o", path)
            self.assertEqual((code, output), (1, f"orvin-osd: cannot write {path}: {words}\n"))
        self.assertTrue(pathlib.Path("/dev/full").is_char_device())


class Wine(ReportCase):
    def test_a_program_with_the_overlay_and_none_at_all(self):
        with Display() as display, WinePrograms(display) as programs:
            process = programs.with_overlay([WIN64 / "host_wgl.exe", "--await-detour", *ENDLESS])
            programs.wait_for_overlay(process)
            path = programs.folder / "report.txt"
            told = "Z:" + str(path).replace("/", "\\")
            code, output = programs.ask("report-problem", "host_wgl", "--yes", "-o", told)
            self.assertEqual(code, 0, output)
            self.hold(path.read_text().replace("\r", ""), r"system +Windows", r"version +\d", r"state +running",
                      r"frames in 2\.0 s", r"(?i)opengl32\.dll")
            code, output = programs.ask("report-problem", "nobody.exe")
            self.assertEqual((code, output), (3, "orvin-osd: no process is named nobody.exe\n"))
