"""What 'doctor' says of real programs in the states that a player meets, and of this machine."""
import json
import os
import pathlib
import shutil
import struct
import subprocess
import unittest

from e2e.environment import LINUX, WIN64, Display, LinuxPrograms, WinePrograms, wait_until

ENDLESS = ("--frames", "1000000", "--fps-cap", "60")


def program_of_32_bits(path):
    """A program of Linux that waits: its header, one segment, and 'pause' in a loop."""
    code = bytes.fromhex("b81d000000cd80ebf7")  # mov eax, 29; int 0x80; jmp back
    start = 0x8048000
    head = b"\x7fELF\x01\x01\x01" + bytes(9) + struct.pack("<2H5I6H", 2, 3, 1, start + 84, 52, 0, 0, 52, 32, 1, 0, 0, 0)
    segment = struct.pack("<8I", 1, 0, start, start, 84 + len(code), 84 + len(code), 5, 4096)
    path.write_bytes(head + segment + code)
    path.chmod(0o755)


class Linux(unittest.TestCase):
    care = False

    def setUp(self):
        screen = Display()
        self.programs = LinuxPrograms(screen.__enter__(), self.care)
        self.addCleanup(screen.__exit__)
        self.addCleanup(self.programs.close)

    def reported(self, process):
        """Until a program has a record and presents frames."""
        wait_until(lambda: f" {process.pid} " in self.programs.ask("status")[1])
        return process

    def hold(self, process, state, *words, code=1):
        """What doctor says of a program, as text and as JSON."""
        def asked():
            found = json.loads(self.programs.ask("doctor", str(process.pid), "--json")[1])
            return found if found["state"] == state else None
        found = wait_until(asked)
        told, output = self.programs.ask("doctor", str(process.pid))
        self.assertEqual(told, code, output)
        self.assertRegex(output, rf"state +{state}\nfound  ")
        for word in words:
            self.assertIn(word, output)
        if code:
            self.assertTrue(found["summary"] and found["why"] and found["next"], found)
        return found

    def host(self, *words, **more):
        return self.reported(self.programs.with_overlay([LINUX / "host_glx", *ENDLESS, *words], **more))

    def test_a_program_in_which_it_draws(self):
        found = self.hold(self.host(), "running", "OpenGL there  4", code=0)
        self.assertTrue(found["glVersion"])
        self.assertEqual((found["bits"], found["sandbox"], found["others"]), (64, "", []))

    def test_an_old_context(self):
        self.hold(self.host(MESA_GL_VERSION_OVERRIDE="2.1"), "old context", "too old", "2.1", "OpenGL 3.2")

    def test_windows_that_take_turns(self):
        self.hold(self.host("--second-window"), "many windows", "several windows", "care-window on")

    def test_a_profile_that_is_missing_and_shaders_that_are(self):
        kept = self.programs.folder / "kept"
        shutil.move(self.programs.data / "Profiles/Default", kept)
        process = self.host()
        self.hold(process, "layout failed", "profile check Default")
        code, output = self.programs.ask("doctor")
        self.assertEqual(code, 1, output)
        self.assertRegex(output, r"profile +at fault\nfound +There is no profile Default\.")
        self.assertIn(f"{process.pid} host_glx", output)
        shutil.move(kept, self.programs.data / "Profiles/Default")
        self.hold(process, "running", code=0)
        self.programs.end(process)
        (self.programs.data / "DrawText_GL.fs").write_text("no shader\n")
        self.hold(self.host(), "shaders failed", "shaders")

    def test_others_in_the_same_program(self):
        other = self.programs.folder / "libMangoHud_test.so"
        libraries = subprocess.run(["ldconfig", "-p"], capture_output=True, text=True, check=True).stdout
        libm = next(line.split(" => ")[1] for line in libraries.splitlines() if "libm.so.6" in line and "x86-64" in line)
        shutil.copy(libm, other)
        found = self.hold(self.host(LD_PRELOAD=str(other)), "running", "MangoHud", code=0)
        self.assertEqual(found["others"], ["MangoHud"])

    def test_programs_that_nobody_let_it_into(self):
        self.hold(self.programs.start([LINUX / "host_glx", *ENDLESS]), "not admitted", "orvin-osd run -- PROGRAM")
        self.hold(self.programs.start([self.programs.companion, "run", "--", "sleep", "1000"]), "not opened", "Wait")

    def test_another_segment(self):
        process = self.programs.with_overlay([LINUX / "host_glx", *ENDLESS],
                                             ORVIN_OSD_SEGMENT=self.programs.folder.name + "-other")
        self.hold(process, "other segment", "ORVIN_OSD_SEGMENT")

    def test_a_program_of_32_bits(self):
        path = self.programs.folder / "small"
        program_of_32_bits(path)
        try:
            process = self.programs.start([path])
        except OSError as error:
            self.skipTest(f"this system runs no programs of 32 bits: {error}")
        found = self.hold(process, "32-bit", "64-bit version")
        self.assertEqual(found["bits"], 32)

    def test_a_sandbox(self):
        words = ["unshare", "--mount", "--propagation", "private", "sh", "-c", 'mount -t tmpfs none /dev/shm && exec "$@"',
                 "sh"]
        if os.geteuid() != 0 or subprocess.run([*words, "true"], capture_output=True).returncode:
            self.skipTest("mounting is not allowed here")
        process = self.programs.start([*words, LINUX / "host_glx", *ENDLESS])
        wait_until(lambda: pathlib.Path(f"/proc/{process.pid}/comm").read_text().strip() == "host_glx")
        self.hold(process, "sandboxed", "sandbox")

    def test_a_program_that_does_not_exist(self):
        self.assertEqual(self.programs.ask("doctor", "no-such-program"),
                         (3, "orvin-osd: no process is named no-such-program\n"))
        code, output = self.programs.ask("doctor", "4194305")
        self.assertEqual(code, 3, output)
        self.assertIn("No program runs under this number.", output)

    def test_this_machine(self):
        code, output = self.programs.ask("doctor")
        self.assertEqual(code, 0, output)
        self.assertRegex(output, r"feed +worth a look\nfound +No feed is alive")
        self.programs.set("FPSLimiter", "FPSTarget = 100000")
        (self.programs.data / "DrawText_GL.fs").unlink()
        process = self.reported(self.programs.start([self.programs.companion, "feed", "--interval", "50"]))
        wait_until(lambda: "publishes" in self.programs.ask("status")[1])
        code, output = self.programs.ask("doctor", "--json")
        self.assertEqual(code, 1, output)
        checks = {check["name"]: check for check in json.loads(output)["machine"]}
        self.assertEqual(sorted(name for name, check in checks.items() if check["fault"]), ["settings", "shaders"])
        self.assertEqual(checks["feed"]["state"], "alive")
        self.assertIn("limit-rate is 100000", checks["settings"]["findings"][0]["found"])
        self.host()  # which keeps the segment
        os.killpg(process.pid, 9)
        process.wait(20)
        code, output = self.programs.ask("doctor")
        self.assertRegex(output, r"feed +at fault\nfound +Values of a feed that was killed")


class LinuxWithCare(unittest.TestCase):
    def test_windows_beside_the_one_that_has_it(self):
        with Display() as display, LinuxPrograms(display, care=True) as programs:
            process = programs.with_overlay([LINUX / "host_glx", *ENDLESS, "--second-window"])
            programs.wait_for_overlay(process)
            code, output = programs.ask("doctor", str(process.pid))
            self.assertEqual(code, 0, output)
            self.assertIn("The program draws other windows too", output)


class Wine(unittest.TestCase):
    def test_a_program_with_the_overlay_and_one_without(self):
        with Display() as display, WinePrograms(display) as programs:
            process = programs.with_overlay([WIN64 / "host_wgl.exe", "--await-detour", *ENDLESS])
            programs.wait_for_overlay(process)
            code, output = programs.ask("doctor", "host_wgl", "--json")
            self.assertEqual(code, 0, output)
            found = json.loads(output)
            self.assertEqual((found["state"], found["detour"], found["bits"]), ("running", "laid", 64))
            self.assertTrue(found["glVersion"])
            code, output = programs.ask("doctor")
            self.assertEqual(code, 0, output)
            self.assertRegex(output, r"\d+ host_wgl\.exe\n")
            programs.end(process)
            programs.wine(WIN64 / "host_wgl.exe", *ENDLESS)
            code, output = wait_until(lambda: (lambda told: told if told[0] == 1 else None)(
                programs.ask("doctor", "host_wgl")))
            self.assertRegex(output, r"state +not admitted\nfound .*\nwhy .*\nnext +'orvin-osd attach \d+'")
            self.assertEqual(programs.ask("doctor", "nobody"), (3, "orvin-osd: no process is named nobody\n"))
