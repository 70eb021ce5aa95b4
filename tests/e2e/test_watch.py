"""What 'watch' tells of programs, and how it helps them."""
import json
import os
import re
import signal
import time
import unittest

from e2e.environment import LINUX, Display, LinuxPrograms, wait_until

RATE = 10  # slow enough that a busy machine can do better
FRAME = 1000 / RATE  # milliseconds


class Linux(unittest.TestCase):
    def setUp(self):
        screen = Display()
        self.programs = LinuxPrograms(screen.__enter__())  # without care: a late frame ends the limiter
        self.addCleanup(screen.__exit__)
        self.addCleanup(self.programs.close)
        self.stop = self.programs.folder / "stop"

    def host(self, *switches):
        process = self.programs.with_overlay([LINUX / "host_glx", "--frames", "100000000", "--stop-file", self.stop,
                                              *switches])
        self.programs.wait_for_overlay(process, frame_time=True)
        return process

    def watch(self, *words):
        process = self.programs.start([self.programs.companion, *(words or ("watch",))])
        self.addCleanup(self.programs.end, process)
        wait_until(lambda: "carries the overlay" in process.log.read_text())
        return process

    def frame_time(self):
        return json.loads(self.programs.ask("status", "--json")[1])["instances"][0]["frameTimeMs"] or 0

    def kill_limiter(self, process):
        """Halts the program in the middle of its wait until the limiter waits no more."""
        def dead():
            os.kill(process.pid, signal.SIGSTOP)
            time.sleep(0.15)  # the wait that is missed; the test waits for what comes of it
            os.kill(process.pid, signal.SIGCONT)
            time.sleep(0.3)
            return 0 < self.frame_time() < 0.7 * FRAME
        wait_until(dead)

    def limited_host(self):
        for name, value in (("limit", "on"), ("limit-rate", str(RATE))):
            self.assertEqual(self.programs.ask("config", name, value)[0], 0)
        process = self.host()
        wait_until(lambda: self.frame_time() > 0.9 * FRAME)
        return process

    def test_a_limiter_that_died_is_revived(self):
        process = self.limited_host()
        self.kill_limiter(process)
        watch = self.watch()
        wait_until(lambda: "has its frame limit of 10 again" in watch.log.read_text())
        text = watch.log.read_text()
        self.assertRegex(text, r"host_glx \(%d\) runs far above its frame limit of 10: held to \d+ for a second "
                               r"\(attempt 1\)" % process.pid)
        wait_until(lambda: self.frame_time() > 0.9 * FRAME)
        self.assertEqual(self.programs.ask("config", "limit-rate")[1].splitlines()[0], "10")
        self.assertIsNone(process.poll())

    def test_a_watch_that_is_ended_in_the_middle_gives_the_limit_back(self):
        process = self.limited_host()
        self.kill_limiter(process)
        watch = self.watch()
        wait_until(lambda: "for a second" in watch.log.read_text())
        self.programs.end(watch)
        self.assertEqual(self.programs.ask("config", "limit-rate")[1].splitlines()[0], "10")

    def test_a_feed_watches_too(self):
        process = self.host("--fps-cap", "100")
        feed = self.watch("feed", "--watch", "--interval", "100")
        self.assertRegex(feed.log.read_text(), r"\d\d:\d\d:\d\d host_glx \(%d\) carries the overlay\n" % process.pid)

    def test_programs_that_stand_still_and_end_are_told(self):
        process = self.host("--fps-cap", "100")
        watch = self.watch()
        os.kill(process.pid, signal.SIGSTOP)
        wait_until(lambda: "has presented no frame for 5 seconds" in watch.log.read_text())
        os.kill(process.pid, signal.SIGCONT)
        wait_until(lambda: "presents frames again" in watch.log.read_text())
        self.stop.touch()
        wait_until(lambda: re.search("has ended|carries the overlay no more", watch.log.read_text()))
        for line in watch.log.read_text().splitlines():
            self.assertRegex(line, r"\A\d\d:\d\d:\d\d \S")
        watch.send_signal(signal.SIGINT)
        self.assertEqual(watch.wait(60), 0)

    def test_a_profile_that_does_not_load_is_told_and_so_is_its_end(self):
        self.host("--fps-cap", "100")
        watch = self.watch()
        document = self.programs.data / "Profiles/Default/OSD.xml"
        good = document.read_bytes()
        document.write_text("<OSD>")
        wait_until(lambda: re.search(r"the profile Default does not pass; 'orvin-osd profile check Default' tells why",
                                     watch.log.read_text()))
        document.write_bytes(good)
        wait_until(lambda: "the profile Default loads now" in watch.log.read_text())

    def test_a_feed_that_died_is_told(self):
        self.host("--fps-cap", "100")
        watch = self.watch()
        feed = self.programs.start([self.programs.companion, "feed", "--interval", "50"])
        wait_until(lambda: "publishing" in feed.log.read_text())
        feed.kill()
        feed.wait(10)
        wait_until(lambda: re.search(r"No feed is alive; \d+ values of one that was killed", watch.log.read_text()))
