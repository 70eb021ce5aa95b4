"""Rows of this machine: a feed makes them known and takes them back, "rows" lists them, "language" names them."""
import json
import signal
import unittest

from e2e.environment import STORE_KEYS, Display, LinuxPrograms, WinePrograms, wait_until

INFO = "Information Option"


class RowsCase(unittest.TestCase):
    """What both platforms do; the class below it says how the settings of each are read."""
    platform = None

    def setUp(self):
        screen = Display()
        self.programs = self.platform(screen.__enter__())
        self.addCleanup(screen.__exit__)
        self.addCleanup(self.programs.close)
        self.programs.take_settings()

    def ask(self, *words, code=0):
        result, output = self.programs.ask(*words)
        self.assertEqual(result, code, output)
        return output

    def rows(self, profile):
        """Rows of a profile by owner and name."""
        output = self.ask("rows", profile, "--json")
        output = output[output.index("{"):output.rindex("}") + 1]
        return {(row["of"], row["row"]): row for row in json.loads(output)["rows"]}

    def feed(self):
        """Known by what it changes, as what it prints may come late."""
        before = self.store()
        feed = self.programs.start([*self.programs.wrapper, self.programs.companion, "feed"])
        wait_until(lambda: self.store() != before or feed.poll() is not None)
        self.assertIsNone(feed.poll(), feed.log.read_text(errors="replace"))
        return feed

    def test_a_feed_shows_the_rows_that_are_there(self):
        before = self.store()
        unknown = self.rows("RV5")
        self.assertTrue(all(row["supported"] for row in unknown.values()), "a made-up machine has everything")
        feed = self.feed()
        during = self.rows("RV5")
        self.assertTrue(during["CPU 0", "CPUUsage"]["supported"])
        self.assertTrue(during["sensor 0", "RAM_USAGE_MB"]["supported"])
        self.assertEqual(during["sensor 0", "RAM_USAGE_MB"]["caption"], "RAM")
        self.assertFalse(during["card 0", "MBPin1"]["supported"])
        self.assertIsNone(during["card 0", "GPUVoltage"]["place"])
        self.assertNotEqual(self.store(), before)
        self.kill(feed)

    def test_what_a_person_has_set_rules(self):
        self.programs.set(INFO + r"\CPU\CPU Usage", "IsSupport = 0")
        feed = self.feed()
        rows = self.rows("Classic")
        self.assertFalse(rows["CPU 0", "CPUUsage"]["supported"])
        self.assertTrue(rows["CPU 0", "CPUClock"]["supported"])
        self.kill(feed)

    def test_rows_stand_in_the_order_of_the_picture(self):
        classic = {name: row["place"] for name, row in self.rows("Classic").items() if row["place"]}
        order = sorted(classic, key=classic.get)
        self.assertEqual(order[:4], [("program", "FPS"), ("program", "Frametime"), ("program", "SystemTime"),
                                     ("card 0", "GPUClock")])
        self.assertEqual(sorted(classic.values()), list(range(1, len(classic) + 1)))
        self.assertIn("CAPTION", self.ask("rows", "RV5"))
        self.assertIn("items of its own", self.ask("rows", "Gauges", code=1))
        self.ask("rows", "Nowhere", code=3)

    def test_a_language_is_chosen_and_left(self):
        before = self.store()
        listed = {row["name"]: row for row in json.loads(self.ask("language", "list", "--json"))}
        self.assertEqual(len(listed), 8)
        self.assertFalse(any(row["inUse"] for row in listed.values()))
        for name, row in listed.items():
            self.assertTrue(row["readable"], name)
            if self.platform is LinuxPrograms or not row["face"]:  # Wine has none of the faces that Windows comes with
                self.assertEqual(row["lettersMissing"], 0, name)
        self.ask("language", "use", "german")
        self.assertEqual(self.rows("RV5")["card 0", "GPUUsage"]["caption"], "GPU-Auslastung")
        listed = json.loads(self.ask("language", "list", "--json"))
        self.assertEqual([row["name"] for row in listed if row["inUse"]], ["German"])
        self.ask("language", "use", "Klingon", code=3)
        self.ask("language", "off")
        self.assertEqual(self.rows("RV5")["card 0", "GPUUsage"]["caption"], "GPU Usage")
        self.assertEqual(self.store(), before)

    def test_a_new_profile_of_a_style(self):
        self.ask("profile", "new", "Mine", "--style", "rv5")
        self.assertTrue(self.rows("Mine")["program", "FPS"]["place"])
        self.ask("profile", "new", "Mine2", code=2)
        self.ask("profile", "new", "Mine2", "--style", "rv5", "--from", "FPS", code=2)


class Linux(RowsCase):
    platform = LinuxPrograms

    def feed(self):
        feed = self.programs.start([self.programs.companion, "feed"])
        wait_until(lambda: "publishing" in feed.log.read_text() or feed.poll() is not None)
        self.assertIsNone(feed.poll(), feed.log.read_text())
        return feed

    def store(self):
        return (self.programs.data.parent / "Settings/settings.ini").read_text()

    def stop(self, feed, number=signal.SIGINT):
        feed.send_signal(number)
        self.assertEqual(feed.wait(60), 0, feed.log.read_text(errors="replace"))

    def kill(self, feed):
        feed.kill()
        feed.wait(60)

    def test_a_feed_takes_back_what_it_made_known_at_its_end(self):
        before = self.store()
        for number in (signal.SIGINT, signal.SIGTERM):
            feed = self.feed()
            self.assertNotEqual(self.store(), before)
            self.stop(feed, number)
            self.assertEqual(self.store(), before)

    def test_the_rows_of_a_killed_feed_go_with_the_next_one(self):
        before = self.store()
        self.kill(self.feed())
        self.assertNotEqual(self.store(), before)
        self.stop(self.feed())
        self.assertEqual(self.store(), before)

    def test_what_a_person_has_set_stays(self):
        self.programs.set(INFO + r"\CPU\CPU Usage", "IsSupport = 0")
        before = self.store()
        feed = self.feed()
        self.assertFalse(self.rows("Classic")["CPU 0", "CPUUsage"]["supported"])
        self.stop(feed)
        self.assertEqual(self.store(), before)

    def test_settings_that_cannot_be_written_are_told_of_once_and_values_go_out(self):
        folder = self.programs.data.parent / "Settings"
        (folder / "feed.json").mkdir()
        feed = self.programs.start([self.programs.companion, "feed"])
        wait_until(lambda: "CPU_USAGE#0" in self.programs.ask("names")[1])
        self.stop(feed)
        lines = [line for line in feed.log.read_text().splitlines() if "stay as the settings have them" in line]
        self.assertEqual(len(lines), 1, feed.log.read_text())


class Wine(RowsCase):
    platform = WinePrograms

    def store(self):
        """The registry below the overlay's key, as text."""
        for key in STORE_KEYS:
            code, output = self.programs.run([*self.programs.wrapper, "reg", "query", key, "/s"])
            if code == 0:
                return output
        raise AssertionError("there are no settings")

    def kill(self, feed):
        self.programs.end(feed)


del RowsCase

if __name__ == "__main__":
    unittest.main()
