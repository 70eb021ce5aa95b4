"""What a user has chosen lasts from one program to the next."""
import json
import pathlib
import unittest

from e2e.environment import LINUX, WIN64, Display, LinuxPrograms, WinePrograms, wait_until


class ChoicesCase(unittest.TestCase):
    def shown(self, programs):
        """Profiles that are shown, or will be, and in what."""
        code, output = programs.ask("profile", "list", "--json")
        self.assertEqual(code, 0, output)
        return {row["name"]: row["shownIn"] for row in json.loads(output) if row["shownIn"]}

    def hold(self, programs, *words):
        """A host that shows the overlay and waits."""
        ready = programs.folder / f"ready{len(programs.started)}"
        process = programs.start([*words, "--frames", "3", "--ready-file", ready, "--wait-file",
                                  programs.folder / "never"])
        wait_until(ready.exists)
        return process


class Linux(ChoicesCase):
    def setUp(self):
        screen = Display()
        self.programs = LinuxPrograms(screen.__enter__())
        self.addCleanup(screen.__exit__)
        self.addCleanup(self.programs.close)
        self.run_host = (self.programs.companion, "run", "--", LINUX / "host_glx")

    def ask(self, *words, code=0):
        result, output = self.programs.ask(*words)
        self.assertEqual(result, code, output)
        return output

    def test_a_profile_that_is_used_shows_in_later_programs_too(self):
        self.assertIn("holds from the next start", self.ask("profile", "use", "FPS"))
        self.assertEqual(self.shown(self.programs), {"FPS": ["all programs from their next start"]})
        for _ in range(2):
            process = self.hold(self.programs, *self.run_host)
            self.assertEqual(self.shown(self.programs), {"FPS": ["all programs"]})
            self.programs.end(process)
        self.ask("profile-name", "")
        self.hold(self.programs, *self.run_host)
        self.assertEqual(self.shown(self.programs), {"Default": ["all programs"]})

    def test_a_program_has_its_own_from_its_first_frame(self):
        self.assertIn("holds from its next start", self.ask("profile", "for", "HOST_GLX", "Gauges"))
        for _ in range(2):
            process = self.hold(self.programs, *self.run_host)
            self.assertEqual(self.shown(self.programs), {"Default": ["all programs"],
                                                         "Gauges": [f"host_glx ({process.pid})", "host_glx"]})
            self.programs.end(process)
        self.ask("profile", "for", "host_glx", "--global")
        self.hold(self.programs, *self.run_host)
        self.assertEqual(self.shown(self.programs), {"Default": ["all programs"]})

    def test_a_feed_brings_choices_into_programs_that_came_another_way(self):
        self.ask("profile", "use", "FPS")
        self.ask("profile", "for", "host_glx", "Gauges")
        self.programs.env["LD_PRELOAD"] = str(LINUX / "libORVIN-OSD64-GL-preload.so")
        process = self.hold(self.programs, LINUX / "host_glx")
        del self.programs.env["LD_PRELOAD"]
        self.assertEqual(self.shown(self.programs)["Default"], ["all programs"])
        self.programs.start([self.programs.companion, "feed"])
        own = f"host_glx ({process.pid})"
        wait_until(lambda: self.shown(self.programs) == {"FPS": ["all programs"], "Gauges": [own, "host_glx"]})
        # A choice for this one program is not taken back by what is remembered.
        self.ask("profile", "for", str(process.pid), "--global")
        feed = self.programs.start([self.programs.companion, "feed", "--once"])
        self.assertEqual(feed.wait(60), 0)
        self.assertEqual(self.shown(self.programs), {"FPS": ["all programs"], "Gauges": ["host_glx"]})

    def test_a_file_that_is_not_understood_is_told_and_stops_nothing(self):
        self.ask("profile", "use", "FPS")
        file = next(self.programs.folder.rglob("choices.json"))
        file.write_text("{")
        process = self.hold(self.programs, *self.run_host)
        self.assertIn(f"orvin-osd: {file} is not understood", process.log.read_text())
        self.assertEqual(self.shown(self.programs), {"Default": ["all programs"]})
        self.assertIn("is not understood", self.ask("profile", "use", "FPS", code=1))
        file.unlink()
        self.ask("profile", "use", "Gauges")
        self.assertEqual(json.loads(file.read_text()), {"profile": "Gauges"})

    def test_nothing_waits_for_a_program_that_never_draws(self):
        self.ask("profile", "use", "FPS")
        code, output = self.programs.run([self.programs.companion, "run", "--", "echo", "done"], timeout=20)
        self.assertEqual((code, output), (0, "done\n"))
        wait_until(lambda: not list(self.holders()))

    def holders(self):
        """Processes of the companion that belong to this test."""
        mark = f"ORVIN_OSD_SEGMENT={self.programs.folder.name}".encode()
        for path in pathlib.Path("/proc").glob("[0-9]*/environ"):
            try:
                if mark in path.read_bytes().split(b"\0") and b"orvin-osd" in (path.parent / "comm").read_bytes():
                    yield path.parent.name
            except OSError:
                pass


class Wine(ChoicesCase):
    def test_profiles_of_all_and_of_one_program_last(self):
        with Display() as display, WinePrograms(display) as programs:
            self.assertEqual(programs.ask("profile", "use", "FPS")[0], 0)
            self.assertEqual(programs.ask("profile", "for", "host_wgl.exe", "Gauges")[0], 0)
            self.hold(programs, *programs.wrapper, programs.companion, "run", "--", WIN64 / "host_wgl.exe")
            shown = self.shown(programs)
            self.assertEqual(shown["FPS"], ["all programs"])
            self.assertRegex(shown["Gauges"][0], r"host_wgl.exe \(\d+\)")
            self.assertEqual(shown["Gauges"][1:], ["host_wgl"])
