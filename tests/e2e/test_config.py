"""Settings of the overlay, shown and changed by their names."""
import json
import unittest

from e2e.environment import LINUX, STORE_KEYS, WIN64, Display, LinuxPrograms, WinePrograms, wait_until


class ConfigCase:
    def ask(self, *words, code=0):
        result, output = self.programs.ask(*words)
        self.assertEqual(result, code, output)
        return output.replace("\r", "")

    def value(self, name):
        return self.ask("config", name).splitlines()[0]

    def listed(self):
        return {row["name"]: row for row in json.loads(self.ask("config", "--json"))}

    def test_each_setting_is_listed_and_changed_where_it_stands(self):
        rows = self.listed()
        self.assertIn("limit-rate", self.ask("config"))
        for name, given, shown in (("limit-rate", "144", "144"), ("shot-type", "jpg", "jpg"), ("photo-x", "-20", "-20"),
                                   ("clock", "12", "12"), ("warning-color-2", "#0a0B0c", "#0A0B0C"),
                                   ("care-draw", "off", "off"), ("language", "German", "German.xml")):
            with self.subTest(name=name):
                self.assertEqual(self.ask("config", name, given), f"{name} = {shown}\n")
                self.assertEqual(self.value(name), shown)
                self.assertEqual(self.listed()[name]["value"], shown)
        self.assertEqual(self.value("language-captions"), "on")
        for name in ("limit-rate", "shot-type", "photo-x", "clock", "warning-color-2", "care-draw", "language"):
            self.ask("config", name, "--default")
            self.assertEqual(self.value(name), rows[name]["default"])
        self.assertEqual(self.value("language-captions"), "off")

    def test_what_cannot_be_is_refused_and_changes_nothing(self):
        for words, code, reason in ((("limit-rate", "0"), 2, "1 to 1000"), (("no-such", "1"), 2, "no setting no-such"),
                                    (("shot-folder", "no/such"), 3, "there is no folder"),
                                    (("language", "Klingon"), 3, "there is no language")):
            output = self.ask("config", *words, code=code)
            self.assertRegex(output, r"\Aorvin-osd: .*" + reason + r".*\n\Z")
        self.assertEqual(self.value("limit-rate"), "60")

    def test_a_program_that_runs_obeys_at_once(self):
        self.ask("config", "limit", "off")
        self.hold()
        waiting = lambda: [row["commandWaiting"] for row in json.loads(self.ask("status", "--json"))["instances"]]
        self.assertEqual(waiting(), [False])
        self.ask("config", "limit-rate", "30")
        self.assertEqual(waiting(), [True])


class Linux(ConfigCase, unittest.TestCase):
    def setUp(self):
        screen = Display()
        self.programs = LinuxPrograms(screen.__enter__(), care=True)
        self.addCleanup(screen.__exit__)
        self.addCleanup(self.programs.close)
        self.settings = self.programs.data.parent / "Settings/settings.ini"

    def hold(self):
        ready = self.programs.folder / "ready"
        self.programs.with_overlay([LINUX / "host_glx", "--frames", "3", "--ready-file", ready, "--wait-file",
                                    self.programs.folder / "never"])
        wait_until(ready.exists)

    def test_the_frame_limit_holds_a_program(self):
        """The limit is seen in the program's own frames, not only in the store."""
        self.ask("config", "limit-rate", "50")
        self.ask("config", "limit", "on")
        process = self.programs.with_overlay([LINUX / "host_glx", "--frames", "1000000", "--stop-file",
                                              self.programs.folder / "never"])
        self.programs.wait_for_overlay(process, frame_time=True)
        time = lambda: json.loads(self.ask("status", "--json"))["instances"][0]["frameTimeMs"]
        wait_until(lambda: 19 < time() < 30)
        self.ask("config", "limit", "off")
        wait_until(lambda: time() < 15)

    def test_comments_and_links_of_a_package_survive(self):
        installed = self.programs.folder / "installed.ini"
        ini = self.programs.data / "OSD.ini"
        ini.rename(installed)
        ini.symlink_to(installed)
        before = installed.read_text()
        self.ask("config", "warning-blink", "off")
        self.assertEqual(installed.read_text(), before)
        self.assertFalse(ini.is_symlink())
        self.assertEqual([line for line in ini.read_text().splitlines() if line.startswith(";")],
                         [line for line in before.splitlines() if line.startswith(";")])
        self.assertIn("Twinkle = 0", ini.read_text())

    def test_the_store_is_written_as_the_manual_says(self):
        self.ask("config", "frame-interval", "250")
        self.ask("config", "shot-folder", self.programs.folder)
        text = self.settings.read_text()
        self.assertRegex(text, r"\[SOFTWARE\\Zarn\\ORVIN-OSD\\Information Option\]\nUpdateFrameDataInterval = 250\n")
        self.assertIn(f'DirPath = "{self.programs.folder}"', text)

    def test_a_file_in_a_wide_encoding_is_left_alone(self):
        ini = self.programs.data / "OSD.ini"
        ini.write_bytes("[Info]\n".encode("utf-16"))
        self.assertIn("save it as UTF-8 first", self.ask("config", "debug-rows", "on", code=1))
        self.assertEqual(ini.read_bytes(), "[Info]\n".encode("utf-16"))

    def test_a_section_that_stands_twice_is_told(self):
        (self.programs.data / "OSD.ini").write_text("[Info]\nX = 1\n[A]\n[Info]\nDebugMode = 0\n")
        self.assertIn("twice", self.ask("config", "debug-rows", "on", code=1))


class Windows(ConfigCase, unittest.TestCase):
    def setUp(self):
        screen = Display()
        self.programs = WinePrograms(screen.__enter__(), care=True)
        self.addCleanup(screen.__exit__)
        self.addCleanup(self.programs.close)
        self.addCleanup(self.forget)

    def forget(self):
        for key in (*STORE_KEYS, STORE_KEYS[1].replace("ORVIN-OSD", "OrvinDeck")):
            self.programs.run([*self.programs.wrapper, "reg", "delete", key, "/f"])

    def hold(self):
        ready = self.programs.folder / "ready"
        self.programs.with_overlay([WIN64 / "host_wgl.exe", "--await-detour", "--frames", "3", "--ready-file", ready,
                                    "--wait-file", self.programs.folder / "never"])
        wait_until(ready.exists)

    def test_the_registry_is_written_as_the_manual_says(self):
        self.ask("config", "frame-interval", "250")
        code, output = self.programs.run([*self.programs.wrapper, "reg", "query", STORE_KEYS[1] + r"\Information Option",
                                          "/v", "UpdateFrameDataInterval"])
        self.assertEqual(code, 0, output)
        self.assertRegex(output, r"REG_DWORD\s+0xfa")
