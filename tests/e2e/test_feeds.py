"""A feed that was killed: its values do not pass for living ones."""
import json
import os
import signal
import unittest

from e2e.environment import LINUX, WIN64, Display, LinuxPrograms, WinePrograms, wait_until


class FeedCase:
    def hold(self, *words):
        ready = self.programs.folder / "ready"
        process = self.programs.start([*words, "--frames", "3", "--ready-file", ready, "--wait-file",
                                       self.programs.folder / "never"])
        wait_until(ready.exists)
        return process

    def status(self):
        code, output = self.programs.ask("status", "--json")
        self.assertEqual(code, 0, output)
        return json.loads(output)["feed"]

    def kill_a_feed(self):
        feed = self.programs.start([*self.programs.wrapper, self.programs.companion, "feed", "--interval", "50"])
        wait_until(lambda: self.status()["state"] == "alive" or feed.poll() is not None)
        alive = self.status()
        self.assertEqual((alive["state"], alive["takenBack"]), ("alive", False), alive)
        self.assertGreater(alive["values"], 0)
        self.kill(feed)

    def test_values_of_a_killed_feed_are_taken_back_and_told(self):
        self.hold(*self.host)
        self.assertEqual(self.status()["state"], "none")
        self.kill_a_feed()
        code, output = self.programs.ask("status")
        self.assertEqual(code, 0, output)
        self.assertRegex(output, r"No feed is alive; \d+ values of one that was killed, [\d.]+ s old, were taken back\.")
        self.assertEqual(self.status(), {"state": "none", "pid": None, "ageMs": None, "values": 0,
                                         "takenBack": False})
        self.assertNotIn("published", self.programs.ask("names")[1])

    def test_a_value_by_hand_survives_a_killed_feed(self):
        self.hold(*self.host)
        self.kill_a_feed()
        self.assertEqual(self.programs.ask("set", "MINE#0", "5")[0], 0)
        state = self.status()
        self.assertEqual((state["state"], state["values"]), ("once", 1), state)


class Linux(FeedCase, unittest.TestCase):
    def setUp(self):
        screen = Display()
        self.programs = LinuxPrograms(screen.__enter__())
        self.addCleanup(screen.__exit__)
        self.addCleanup(self.programs.close)
        self.host = (self.programs.companion, "run", "--force", "--", LINUX / "host_glx")

    def kill(self, feed):
        feed.kill()
        feed.wait(10)

    def test_the_next_program_starts_without_them(self):
        self.hold(*self.host)
        self.kill_a_feed()
        code, output = self.programs.run([self.programs.companion, "run", "--force", "--", LINUX / "host_glx",
                                          "--frames", "2"])
        self.assertEqual(code, 0, output)
        self.assertRegex(output, r"orvin-osd: No feed is alive; \d+ values of one that was killed, .* were taken back")
        self.assertEqual(self.status()["state"], "none")


class Windows(FeedCase, unittest.TestCase):
    def setUp(self):
        screen = Display()
        self.programs = WinePrograms(screen.__enter__())
        self.addCleanup(screen.__exit__)
        self.addCleanup(self.programs.close)
        self.host = (*self.programs.wrapper, self.programs.companion, "run", "--force", "--", WIN64 / "host_wgl.exe",
                     "--await-detour")

    def kill(self, feed):
        """As a task manager does, by its process of the system below."""
        ids = [int(i) for i in os.listdir("/proc") if i.isdigit() and self.is_feed(i)]
        self.assertEqual(len(ids), 1, ids)
        os.kill(ids[0], signal.SIGKILL)
        feed.wait(60)

    def is_feed(self, number):
        try:
            with open(f"/proc/{number}/cmdline", "rb") as file:
                words = file.read().split(b"\0")
            with open(f"/proc/{number}/environ", "rb") as file:
                marked = self.programs.mark in file.read()
        except OSError:
            return False
        return marked and words[0].endswith(b"orvin-osd.exe") and b"feed" in words[:3]
